#pragma once

#include <Story/Delta.h>
#include <Story/GlyphString.h>
#include <Story/NumberFormat.h>
#include <Story/ParagraphAtt.h>

#include <string>

namespace Story {

enum class ListType : int { None = 0, Bullet = 1, Number = 2 };

/// Bits: what makes a list begin anew with its first number.
enum class RestartNumberingType : int {
    None = 0,
    AfterOtherText = 1, ///< Paragraphs that are no items stand between.
    AtStart = 2,        ///< The list's own start.
    Both = 3,
};

/// The list that a paragraph is an item of.
class QUILLET_API ListAtt : public Kernel::Countable
{
public:
    explicit ListAtt(ListType newType = ListType::None) : type(newType) {}

    void SetBulletString(const GlyphString& string) { text = string; }
    void SetNumberString(const GlyphString& string) { text = string; }
    void SetNumberFormat(NumberFormat newFormat) { format = newFormat; }
    void SetRestartNumberingType(RestartNumberingType newType) { restartType = newType; }
    void SetStartNumberingAt(int number) { start = number; }
    void SetIsRestartNumbering(bool isRestarted) { isRestart = isRestarted; }
    void SetAlign(AlignX::Type newAlign) { align = newAlign; }
    /// Points from the frame's left to the text behind the marker.
    void SetTabStopIndent(double indent) { tabStopIndent = indent; }
    /// The character style of the marker, by its name in the style sheet, and what it holds.
    void SetStyleName(const std::string& name, Kernel::Counted<const Delta> newDelta)
    {
        styleName = name;
        delta = std::move(newDelta);
    }
    std::size_t GetHash() const;

    friend QUILLET_API bool operator==(const ListAtt& a, const ListAtt& b);

    ListType type;
    /// The marker: what stands around the number, or the bullet, and the tab behind it.
    GlyphString text;
    NumberFormat format = NumberFormat::Decimal;
    RestartNumberingType restartType = RestartNumberingType::None;
    int start = 1;
    bool isRestart = false;
    /// How the marker stands at the first line's indent.
    AlignX::Type align = AlignX::Left;
    double tabStopIndent = 0;
    std::string styleName;
    Kernel::Counted<const Delta> delta;
};

} // namespace Story
