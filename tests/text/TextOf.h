#pragma once

#include <Quillet/GroupObject.h>
#include <Quillet/TextLineObject.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace Quillet::Test {

using Lines = std::vector<Kernel::Counted<TextLineObject>>;

template <typename Kind>
void Collect(const GroupObject& group, std::vector<Kernel::Counted<Kind>>& found)
{
    for (const auto& child : group.children) {
        if (const GroupObject* inner = child->AsGroup()) Collect(*inner, found);
        if (auto object = Kernel::DynamicCast<Kind>(child)) found.push_back(std::move(object));
    }
}

/// The lines of a tree, in paint order.
inline Lines GetLines(const GroupObject& root)
{
    Lines lines;
    Collect(root, lines);
    return lines;
}

/// With four decimals, without trailing zeros and the sign of what rounds to 0.
inline std::string ToText(double value)
{
    char text[400];
    std::snprintf(text, sizeof text, "%.4f", value);
    std::string number(text);
    if (number.find('.') != std::string::npos) {
        number.resize(number.find_last_not_of('0') + 1);
        if (number.back() == '.') number.pop_back();
    }
    return number == "-0" ? "0" : number;
}

/// A font of the machine that runs the tests, with a width of half an em for every character.
inline std::string MakeFont(const std::string& name, const std::string& entries = "")
{
    std::string font = "<< /Type /Font /Subtype /Type1 /BaseFont /";
    font.append(name).append(" /Encoding /WinAnsiEncoding /FirstChar 0 /LastChar 255 /Widths [");
    for (int i = 0; i < 256; ++i)
        font += " 500";
    return font.append("] ").append(entries).append(" >>");
}

inline constexpr const char* c_sans = "NimbusSans-Regular";

} // namespace Quillet::Test
