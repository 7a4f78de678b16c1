#include "fonts/StandardCMaps.h"

#include "document/FileSource.h"
#include "fonts/CMapInterpreter.h"

#include <Quillet/Budget.h>

#include <Kernel/FileSystem.h>

#include <algorithm>
#include <map>
#include <mutex>

namespace Quillet {

namespace {

/// A name comes from the file, and may not lead out of the folder.
bool IsFileName(const std::string& name)
{
    return !name.empty() && name.front() != '.' && name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}

Kernel::Counted<const FontEncoding> ReadCMap(const std::string& name)
{
    if (name == "Identity-H" || !IsFileName(name)) return MakeIdentityCMap();
    const Budget::Reprieve reprieve;
    try {
        const auto source = Kernel::MakeCounted<FileSource>();
        source->Open((Kernel::FileSystem::GetResourcesDirectory() / "Standard CMaps" / (name + ".txt")).string());
        return CMapInterpreter(source).encoding;
    } catch (Error::Type) {
        return MakeIdentityCMap();
    }
}

} // namespace

Kernel::Counted<const FontEncoding> MakeIdentityCMap()
{
    static const auto& identity = *new Kernel::Counted<const FontEncoding>([] {
        const Budget::Reprieve reprieve;
        auto encoding = Kernel::MakeCounted<FontEncoding>("Identity-H");
        encoding->AddCodeSpaceRange(2, 0, 0, 0xFFFF);
        encoding->AddMapRange(0, 0xFFFF, char32_t{0});
        encoding->OnComplete();
        return encoding;
    }());
    return identity;
}

Kernel::Counted<const FontEncoding> GetStandardCMap(const std::string& name)
{
    // Names without a CMap are kept too, but a file may make up any number of them.
    constexpr int c_maxUnknown = 1024;
    static int unknownCount = 0;
    static std::mutex mutex;
    static auto& known = *new std::map<std::string, Kernel::Counted<const FontEncoding>>;
    const std::lock_guard lock(mutex);
    if (const auto found = known.find(name); found != known.end()) return found->second;
    auto encoding = ReadCMap(name);
    const bool isUnknown = encoding == MakeIdentityCMap();
    if (!isUnknown || unknownCount < c_maxUnknown) {
        known.emplace(name, encoding);
        unknownCount += isUnknown ? 1 : 0;
    }
    return encoding;
}

Kernel::Counted<const FontEncoding> GetCidToUnicode(const Kernel::Counted<const FontEncoding>& encoding)
{
    if (!encoding || encoding->registry.empty() || encoding->ordering.empty()) return nullptr;
    return GetStandardCMap(encoding->registry + "-" + encoding->ordering + "-UCS2");
}

Kernel::Counted<const FontEncoding> GetCidToUnicode(const std::string& registry, const std::string& ordering)
{
    constexpr std::string_view c_orderings[] = {"GB1", "CNS1", "Japan1", "Korea1", "KR"};
    if (registry != "Adobe" || std::ranges::find(c_orderings, ordering) == std::end(c_orderings)) return nullptr;
    return GetStandardCMap(registry + "-" + ordering + "-UCS2");
}

} // namespace Quillet
