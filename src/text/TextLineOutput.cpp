#include <Quillet/TextLineObject.h>

#include <Quillet/ColumnObject.h>

#include <Kernel/LogicalOrder.h>
#include <Story/GlyphSink.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

namespace Quillet {

namespace {

constexpr double c_sameTransform = 1e-6;
constexpr char32_t c_paragraphEnd = 0x2029;

/// A blank is one whether the file says so or the font.
char32_t GetCharacter(const Char& c)
{
    return c.unicode == 0 && c.isSpace ? U' ' : c.unicode;
}

/// Of the characters from `first` on, which stand as they are seen: a story takes them as they are typed. Empty where
/// that is the same.
std::vector<Kernel::ReadCharacter> GetReadingOrder(const TextLineObject::Chars& chars, std::size_t first)
{
    const auto begin = chars.begin() + static_cast<std::ptrdiff_t>(first);
    if (std::none_of(begin, chars.end(), [](const Char& c) { return Kernel::IsRightToLeft(c.unicode); })) return {};
    std::u32string text;
    std::transform(begin, chars.end(), std::back_inserter(text), GetCharacter);
    return Kernel::GetLogicalOrder(text);
}

template <typename Measure>
double GetLargest(const TextLineObject::Chars& chars, Measure measure)
{
    double largest = 0;
    const Story::GlyphAtts* known = nullptr;
    for (const Char& c : chars) {
        if (c.atts.Get() != known) largest = std::max(largest, measure(*c.atts));
        known = c.atts.Get();
    }
    return largest;
}

} // namespace

void TextLineObject::AppendTo(Story::GlyphSink& sink, bool isWrapped) const
{
    if (isParagraphFront) {
        sink.SetParagraphAtts(paragraphAtts ? Kernel::ConsolidateObjectClone(paragraphAtts)
                                            : Story::ParagraphAtts::GetDefault());
    }
    const std::size_t first = GetMarkerEnd();
    // A drop cap comes first, wherever it is seen.
    const bool hasCap = isParagraphFront && paragraphAtts && paragraphAtts->GetDropCap();
    const auto capEnd = hasCap ? static_cast<std::size_t>(GetDropCapEnd() - chars.begin()) : 0;
    const std::size_t text = std::max(first, capEnd);
    const std::vector<Kernel::ReadCharacter> order = GetReadingOrder(chars, text);
    const Story::GlyphAtts* sent = nullptr;
    for (std::size_t i = first; i < chars.size(); ++i) {
        const Kernel::ReadCharacter* const read = order.empty() || i < text ? nullptr : &order[i - text];
        const Char& c = chars[read ? text + read->place : i];
        const char32_t character = read && read->isMirrored ? Kernel::GetMirrored(GetCharacter(c)) : GetCharacter(c);
        if (c.atts.Get() != sent) sink.SetGlyphAtts(c.atts);
        sent = c.atts.Get();
        if (c.glyphIndex >= 1) {
            sink.AddGlyphIndex(c.glyphIndex, character);
        } else {
            sink.Add(character);
        }
    }
    if (IsColumnBack()) return;
    if (isParagraphBack) {
        sink.Add(c_paragraphEnd);
    } else if (!isWrapped || needsLineBreak) {
        sink.Add(Story::GlyphFactory::Instance().GetHardBreak(Story::HardBreak::Line));
    } else if (chars.empty() || !chars.back().IsTab()) {
        sink.Add(U' ');
    }
}

bool TextLineObject::IsColumnBack() const
{
    if (!parent || parent->GetKind() != Kind::Column) return false;
    const auto& lines = static_cast<const ColumnObject&>(*parent).lines;
    return !lines.empty() && lines.back().Get() == this;
}

bool TextLineObject::HasArtTransform() const
{
    const auto isSame = [](double a, double b) { return std::abs(a - b) <= c_sameTransform; };
    // Turned back, so that the baseline is level. What is mirrored has one scale below 0.
    const double across = std::hypot(transform.a, transform.b);
    if (!isSame(across, 1)) return true;
    const double down = transform.GetDeterminant() / across;
    const double slant = (transform.a * transform.c + transform.b * transform.d) / across;
    return !isSame(down, 1) || !isSame(slant, 0);
}

double TextLineObject::GetSpaceAbove() const
{
    return GetLargest(chars, [](const Story::GlyphAtts& atts) { return atts.GetTypographicAscent(); });
}

double TextLineObject::GetMinSpaceBelow() const
{
    return GetLargest(chars, [](const Story::GlyphAtts& atts) { return atts.GetDescent(); });
}

} // namespace Quillet
