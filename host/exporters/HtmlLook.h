#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>
#include <Geometry/WindingOrderMode.h>
#include <Raster/ICCManager.h>
#include <Story/GlyphAtts.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Host {

/// "12.5pt".
std::string MakePoints(double value);

/// A value of "clip-path"; `toBox` leads from the path's space to the element's box, in points.
std::string MakeClip(const Geometry::PolyCurveDbl& path, Geometry::WindingOrderMode winding,
                     const Raster::AffineTransform::Params& toBox);

/// As the value of an attribute, or as text; without what HTML cannot hold. Nothing if there is no more to pay for it.
std::string MakeHtmlText(std::string_view text);

/// Declarations of CSS.
class HtmlStyle
{
public:
    void Set(std::string_view property, std::string value) { declarations.emplace_back(property, std::move(value)); }
    void Append(const HtmlStyle& other)
    {
        declarations.insert(declarations.end(), other.declarations.begin(), other.declarations.end());
    }
    void SetPoints(std::string_view property, double value) { Set(property, MakePoints(value)); }
    /// As the value of an attribute.
    std::string MakeText() const;
    /// The attribute, with a space before it; nothing for no declarations.
    std::string MakeAttribute() const;

    bool IsEmpty() const { return declarations.empty(); }

private:
    friend class HtmlLook;

    std::vector<std::pair<std::string, std::string>> declarations;
};

/// How glyphs look, as CSS has it.
class HtmlLook
{
public:
    /// `scale` is how much wider glyphs are shown than these declarations say.
    HtmlLook(const Story::GlyphAtts& atts, const Raster::ICCManager::ICCProfileSet& profiles, double scale);

    /// What a paragraph hands on to its runs: nothing that these cannot take back.
    HtmlStyle MakeBase() const { return inherited; }
    /// What a run has that its paragraph has not.
    HtmlStyle MakeDifference(const HtmlLook& base) const;
    /// The same for the marker of an item, as variables of CSS.
    HtmlStyle MakeMarker(const HtmlLook& base) const;

private:
    /// Both always have the same properties, in the same order.
    HtmlStyle inherited;
    /// Only those that are not as usual.
    HtmlStyle own;
};

} // namespace Host
