#pragma once

#include "TextOf.h"

#include <Quillet/TextLineObject.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// Lines without a document, for tests of what is done to them.
namespace Quillet::Test {

using Atts = TextLineObject::Atts;
using Line = Kernel::Counted<TextLineObject>;

inline constexpr const char* c_mono = "NimbusMonoPS-Regular";
inline constexpr double c_nan = std::numeric_limits<double>::quiet_NaN();

template <typename Change>
Atts Changed(const Atts& atts, Change change)
{
    const Kernel::Counted<Story::GlyphAtts> clone = atts->Clone();
    change(*clone);
    return Kernel::ConsolidateObjectSacrifice(clone);
}

inline Atts With(const Atts& atts, Story::GlyphAtt::Double attribute, double value)
{
    return Changed(atts, [&](Story::GlyphAtts& a) { a.Set(attribute, value); });
}

/// In the fixed font, in which every character is 6 points wide at 10 points.
inline Atts MakeAtts(double size = 10, double shift = 0, const char* name = c_mono)
{
    return Changed(Story::GlyphAtts::GetDefault(), [&](Story::GlyphAtts& atts) {
        Kernel::Font font;
        font.SetPostscriptName(name);
        atts.SetDesiredFont(font);
        atts.Set(Story::GlyphAtt::Size, size);
        atts.Set(Story::GlyphAtt::BaselineShift, shift);
    });
}

inline Char MakeChar(char32_t unicode, double width, const Atts& atts)
{
    Char c;
    c.unicode = unicode;
    c.width = width;
    c.atts = atts;
    c.isSpace = unicode == U' ';
    c.isFontAvailable = true;
    return c;
}

inline Line MakeLine(TextLineObject::Chars chars)
{
    auto line = Kernel::MakeCounted<TextLineObject>(7);
    line->chars = std::move(chars);
    line->width = line->GetWidth(line->chars.begin(), line->chars.end());
    line->textHeight = line->GetTextHeight(line->chars.begin(), line->chars.end());
    return line;
}

/// A line in words: a character and its width, "_" for a space, ">" for a tab, "~" for a soft hyphen and "=" for a
/// hyphen. Behind that "!" for a character with a gap behind, "?" for one of a font without a space, "%" for one of a
/// font that the machine lacks, "^" for other attributes, "@" with a size, and ":" with points below the baseline.
inline Line ParseLine(const std::string& text)
{
    TextLineObject::Chars chars;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto has = [&word](char flag) { return word.find(flag, 1) != word.npos; };
        const auto get = [&](char flag, double otherwise) {
            return has(flag) ? std::stod(word.substr(word.find(flag, 1) + 1)) : otherwise;
        };
        const Atts atts = MakeAtts(get('@', 10), get(':', 0));
        const char32_t unicode = word[0] == '_'   ? U' '
                                 : word[0] == '>' ? U'\t'
                                 : word[0] == '~' ? char32_t{0xAD}
                                                  : static_cast<unsigned char>(word[0]);
        Char c =
            MakeChar(unicode, std::stod(word.substr(1)), has('^') ? With(atts, Story::GlyphAtt::Shear, 0.25) : atts);
        c.isKerned = has('!');
        c.isSpaceDefined = !has('?');
        c.isFontAvailable = !has('%');
        chars.push_back(std::move(c));
    }
    return MakeLine(std::move(chars));
}

inline Line At(double x, double y, Line line)
{
    line->position = {x, y};
    line->UpdateBBox();
    return line;
}

inline double GetWidth(const TextLineObject& line)
{
    return line.GetWidth(line.chars.begin(), line.chars.end());
}

/// Each glyph and its place on the page, in millionths of a point.
inline std::vector<std::tuple<char32_t, long, long>> GetPlaces(const TextLineObject& line)
{
    std::vector<std::tuple<char32_t, long, long>> places;
    double pen = line.position.x;
    for (const Char& c : line.chars) {
        const double y = line.position.y - c.atts->Get(Story::GlyphAtt::BaselineShift);
        if (!c.isSpace && !c.IsTab()) places.emplace_back(c.unicode, std::lround(pen * 1e6), std::lround(y * 1e6));
        pen += c.width;
    }
    return places;
}

inline std::string PrintLine(const TextLineObject& line)
{
    std::string text;
    for (const Char& c : line.chars) {
        if (!text.empty()) text += ' ';
        text += c.isSpace ? '_' : c.IsTab() ? '>' : c.unicode == 0x2010 ? '=' : static_cast<char>(c.unicode);
        text += ToText(c.width);
    }
    return text;
}

} // namespace Quillet::Test
