#include <Kernel/DemangleTypeName.h>

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string_view>

namespace Kernel {

namespace {

/// Where the last name starts. A "::" within brackets belongs to a template argument, a function's parameters or the
/// name of an unnamed namespace.
std::size_t FindUnqualifiedName(std::string_view name)
{
    int depth = 0;
    for (std::size_t i = name.size(); i > 1; --i) {
        const char c = name[i - 1];
        if (c == '>' || c == ')' || c == '}') ++depth;
        if (c == '<' || c == '(' || c == '{') --depth;
        if (depth == 0 && c == ':' && name[i - 2] == ':') return i;
    }
    return 0;
}

} // namespace

std::string DemangleTypeName(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           std::free);
    const std::string_view name = status == 0 ? demangled.get() : type.name();
    return std::string(name.substr(FindUnqualifiedName(name)));
}

} // namespace Kernel
