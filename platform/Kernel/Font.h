#pragma once

#include <Kernel/Export.h>
#include <Kernel/Panose.h>

#include <cstddef>
#include <map>
#include <string>

namespace Kernel {

/// Where an instance of a variable font lies on the font's axes, by tag ("wght").
class QUILLET_API FontVariationParams
{
public:
    bool IsEmpty() const { return axes.empty(); }
    /// The sum of the differences on all axes that either names; 0 for the same instance.
    double GetDistance(const FontVariationParams& other) const;

    friend bool operator==(const FontVariationParams&, const FontVariationParams&) = default;

    std::map<std::string, double> axes;
};

/// Widths as OpenType has them (OS/2, usWidthClass).
namespace FontWidth {

enum Type : int {
    UltraCondensed = 1,
    ExtraCondensed = 2,
    Condensed = 3,
    SemiCondensed = 4,
    Normal = 5,
    SemiExpanded = 6,
    Expanded = 7,
    ExtraExpanded = 8,
    UltraExpanded = 9,
};

} // namespace FontWidth

/// What identifies a font: the words by which a document asks for one, and by which the machine answers. It need not
/// exist anywhere.
class QUILLET_API Font
{
public:
    /// What text gets that asks for nothing. Loads the font configuration.
    static const Font& GetDefault();
    /// No name and no family: no font.
    static const Font& GetEmpty();

    bool IsEmpty() const { return postscriptName.empty() && family.empty(); }
    void SetPostscriptName(const std::string& name) { postscriptName = name; }
    void ResetPostscriptName() { postscriptName.clear(); }
    void SetFamily(const std::string& name) { family = name; }
    void SetWeight(int newWeight) { weight = newWeight; }
    void SetWidth(FontWidth::Type newWidth) { width = newWidth; }
    void SetIsItalic(bool isOn) { isItalic = isOn; }
    void SetPanose(const Panose& newPanose) { panose = newPanose; }
    void SetVariationParams(const FontVariationParams& params) { variationParams = params; }

    /// Both are of one variable family.
    bool IsVariationOf(const Font& other) const;
    std::size_t GetHash() const;

    friend bool operator==(const Font&, const Font&) = default;

    std::string postscriptName;
    std::string family;
    /// From 100 to 900; 400 is regular.
    int weight = 400;
    FontWidth::Type width = FontWidth::Normal;
    bool isItalic = false;
    Panose panose;
    FontVariationParams variationParams;
    /// The font's file has axes; false for what a document asks for.
    bool isVariable = false;
};

/// How near a font of the machine must come.
enum class FontMatchType {
    Any = 0,    ///< The nearest, whatever it is.
    Looser = 1, ///< An instance of the variable family that the request names.
    Strict = 2, ///< That very font: by PostScript name, or without one by family and style.
};

/// The font of the machine that comes nearest to `font`; one without name and family if none comes near enough.
QUILLET_API Font GetClosestAvailableFont(const Font& font, FontMatchType match);

/// The instance of a variable font that a PostScript name stands for: "Family_550wght_80wdth", where the machine has
/// that family; else a font without name and family.
QUILLET_API Font TryParseVariableFontName(const Font& font);

} // namespace Kernel

template <>
struct std::hash<Kernel::Font>
{
    std::size_t operator()(const Kernel::Font& font) const noexcept { return font.GetHash(); }
};
