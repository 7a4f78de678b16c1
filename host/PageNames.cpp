#include "PageNames.h"

#include "PageRange.h"

#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Host {

namespace {

/// Where the number of a page goes.
std::size_t FindEnding(const std::string& out)
{
    const auto slash = out.rfind('/');
    const auto dot = out.rfind('.');
    return dot == out.npos || (slash != out.npos && dot < slash) ? out.size() : dot;
}

/// The page whose file has that name, from 1; 0 for none.
int ParsePageName(const std::string& out, const std::string& name)
{
    const std::string_view stem = std::string_view(out).substr(0, FindEnding(out));
    const std::string_view ending = std::string_view(out).substr(FindEnding(out));
    if (!name.starts_with(stem) || !name.ends_with(ending) || name.size() <= stem.size() + 1 + ending.size()) return 0;
    const char* first = name.data() + stem.size() + 1;
    int page = 0;
    std::from_chars(first, name.data() + name.size() - ending.size(), page);
    return page > 0 && MakePageName(out, page) == name ? page : 0;
}

} // namespace

std::string MakePageName(const std::string& out, int page)
{
    const std::size_t ending = FindEnding(out);
    return out.substr(0, ending) + "-" + std::to_string(page) + out.substr(ending);
}

std::string FindPageName(const std::string& out, const PageRange& range, const std::string& file)
{
    const std::size_t nameStart = out.rfind('/') + 1;
    const std::string folder = nameStart == 0 ? "." : out.substr(0, nameStart);
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = out.substr(0, nameStart) + entry->path().filename().string();
        const int page = ParsePageName(out, name);
        std::error_code none;
        if (page > 0 && range.Contains(page - 1) && std::filesystem::equivalent(name, file, none)) return name;
    }
    return {};
}

} // namespace Host
