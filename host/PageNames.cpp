#include "PageNames.h"

#include "PageRange.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Host {

namespace {

namespace fs = std::filesystem;

/// Where the number of a page goes in a file's name, which may be an ending alone.
std::size_t FindEnding(const std::string& out)
{
    return std::min(out.rfind('.'), out.size());
}

/// The page whose file has that name, from 1; 0 for none. Names without their folders.
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
    fs::path path(out);
    std::string name = path.filename().string();
    name.insert(FindEnding(name), "-" + std::to_string(page));
    return path.replace_filename(name).string();
}

std::string FindPageName(const std::string& out, const PageRange& range, const std::string& file)
{
    const fs::path path(out);
    std::error_code error;
    fs::directory_iterator entry(path.has_parent_path() ? path.parent_path() : ".", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const int page = ParsePageName(path.filename().string(), entry->path().filename().string());
        std::error_code none;
        if (page > 0 && range.Contains(page - 1) && fs::equivalent(entry->path(), file, none))
            return MakePageName(out, page);
    }
    return {};
}

} // namespace Host
