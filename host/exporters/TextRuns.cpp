#include "exporters/TextRuns.h"

#include <Kernel/CharTraits.h>

#include <algorithm>

namespace Host {

using Chars = Quillet::TextLineObject::Chars;

std::vector<TextRun> SplitIntoRuns(const Quillet::TextLineObject& line)
{
    std::vector<TextRun> runs;
    double pen = 0;
    for (auto first = line.chars.begin(); first != line.chars.end();) {
        const auto last =
            std::find_if(first, line.chars.end(), [first](const auto& c) { return !(c.atts == first->atts); });
        runs.push_back({first, last, pen});
        pen += line.GetWidth(first, last);
        first = last;
    }
    return runs;
}

std::string GetRunText(Chars::const_iterator first, Chars::const_iterator last)
{
    std::string text;
    for (; first != last; ++first) {
        const char32_t unknown = first->isSpace ? U' ' : Kernel::CharTraits::c_replacement;
        Kernel::CharTraits::AppendCodePoint(text, first->unicode != 0 ? first->unicode : unknown);
    }
    return text;
}

} // namespace Host
