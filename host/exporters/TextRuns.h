#pragma once

#include <Quillet/TextLineObject.h>

#include <string>
#include <vector>

namespace Host {

/// Characters of a line in a row that look alike.
struct TextRun
{
    Quillet::TextLineObject::Chars::const_iterator first;
    Quillet::TextLineObject::Chars::const_iterator last;
    /// From the start of the line, in points.
    double start = 0;
};

std::vector<TextRun> SplitIntoRuns(const Quillet::TextLineObject& line);

/// The characters in UTF-8. A space is one, however the font reaches it; a glyph without a character is U+FFFD.
std::string GetRunText(Quillet::TextLineObject::Chars::const_iterator first,
                       Quillet::TextLineObject::Chars::const_iterator last);

} // namespace Host
