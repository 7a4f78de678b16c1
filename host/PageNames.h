#pragma once

#include <string>

namespace Host {

class PageRange;

/// The file of a page, from 1, where each has one of its own: "out-3.svg" for "out.svg".
std::string MakePageName(const std::string& out, int page);

/// Which of the names that `MakePageName` makes for the pages of a range leads to `file`, be it by a link; empty for
/// none. It takes as long as the folder is, and not as long as a file claims to be.
std::string FindPageName(const std::string& out, const PageRange& range, const std::string& file);

} // namespace Host
