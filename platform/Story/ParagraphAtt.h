#pragma once

/// Attributes of paragraphs, by the kind of their values. The numbers are those that hosts store.
namespace Story {

namespace ParagraphAtt {

enum Int : int {
    Alignment = 0,   ///< An `AlignX::Type`.
    LeadingMode = 1, ///< A `LeadingMode::Type`.
};

enum Double : int {
    Leading = 1,         ///< Points from baseline to baseline.
    LeftIndent = 2,      ///< Points from the frame's left.
    RightIndent = 3,     ///< Points from the frame's right, inward.
    FirstLineIndent = 4, ///< Points from the frame's left: below the left indent, the first line hangs.
    SpaceBefore = 5,     ///< Points.
    TabSpacing = 7,      ///< Points between default stops.
    WordSpaceMin = 8,    ///< Ratios to the font's space.
    WordSpaceDesired = 9,
    WordSpaceMax = 10,
};

enum Object : int {
    Tabs = 0,    ///< `TabStops`
    List = 1,    ///< `ListAtt`
    DropCap = 2, ///< `DropCapAtt`
};

} // namespace ParagraphAtt

namespace AlignX {
enum Type : int {
    Left = 0,
    Centre = 1,
    Right = 2,
    Justified = 3, ///< The last line stands left.
    JustifiedCentre = 4,
    JustifiedRight = 5,
    JustifiedAll = 6,
    Mixed = 7, ///< No alignment of a paragraph: what a column answers whose paragraphs differ.
};
} // namespace AlignX

namespace LeadingMode {
enum Type : int {
    Automatic = 0,
    Exact = 2,
};
} // namespace LeadingMode

} // namespace Story
