#pragma once

#include "Problems.h"
#include "StyleNames.h"
#include "exporters/LongText.h"

#include <Raster/ICCManager.h>

#include <string>
#include <string_view>

namespace Quillet {
class GroupObject;
class Page;
class PdfDocument;
} // namespace Quillet

namespace Host {

/// What there is of a page while it is written.
struct PageView
{
    const Quillet::Page& page;
    /// From 0.
    int index;
    const Quillet::GroupObject& root;
    /// Of a page that is not written as a whole, they have `CutShort` afterwards.
    Problems& problems;
    /// Ids count from here, where those of the page's objects counted from 0.
    long long firstId;
    /// For the styles of the page, how the file calls them.
    const StyleNames::Names& styleNames;
    /// Of the document.
    const std::string& title;
    /// By which colours become sRGB.
    const Raster::ICCManager::ICCProfileSet& profiles;
};

/// What `convert` can write. What is made is paid for (`Quillet::Budget`) by whoever makes it.
struct Format
{
    /// As the option has it, and as names of files end.
    std::string_view name;
    /// Else all pages are one file.
    bool isFileAPage;
    LongText (*makePage)(const PageView& view);
    /// Of one file: what stands before the pages, between two, and behind them. Null for nothing.
    LongText (*makeHead)(const Quillet::PdfDocument& document);
    std::string_view separator;
    LongText (*makeTail)(const Story::StyleSheet& styles);
};

/// Null for a name that is none; capitals do not matter.
const Format* FindFormat(std::string_view name);
/// All names, with `separator` between them and `lastSeparator` before the last one.
std::string GetFormatNames(std::string_view separator, std::string_view lastSeparator);

} // namespace Host
