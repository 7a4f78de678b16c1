#pragma once

/// Attributes of glyphs, by the kind of their values. The numbers are those that hosts store.
namespace Story::GlyphAtt {

enum Double : int {
    Size = 0,             ///< Points.
    LetterSpacing = 4,    ///< Ems.
    BaselineShift = 5,    ///< Points, downward.
    Kerning = 6,          ///< 0 is automatic, -1 none.
    HorizontalScale = 10, ///< A ratio.
    Shear = 12,           ///< How far x goes with each unit that y goes down.
};

enum Int : int {
    Underline = 0,
    Strikeout = 1,
};

enum Object : int {
    Fill = 0,
    StrokeFill = 1,
    LineStyle = 2,
    HighlightFill = 4,
    UnderlineFill = 5,
    StrikeoutFill = 6,
};

enum String : int {
    Language = 1, ///< A BCP 47 tag.
};

} // namespace Story::GlyphAtt
