#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>

#include <string>
#include <string_view>

namespace Host {

class XmlWriter;

// Values of an SVG's elements.

std::string MakeNumber(double value, int decimals = 6);
void SetTransform(XmlWriter& svg, const Raster::AffineTransform::Params& transform, const char* name = "transform");
/// Of a path in its own space, from which `toPage` leads to the page.
std::string MakePathData(const Geometry::PolyCurveDbl& path, const Raster::AffineTransform::Params& toPage);
/// "M", "L", "C" and "Z" as the value of an attribute.
void SetPathData(XmlWriter& svg, const Geometry::PolyCurveDbl& path, const Raster::AffineTransform::Params& toPage);

/// What XML can hold (XML 1.0, 2.2).
bool IsXmlCharacter(char32_t code);
/// The characters of a text that XML can hold; none if there is no more to pay for them.
std::string MakeXmlText(std::string_view text);

/// Appends to the value of a "style".
void AddStyle(std::string& style, const char* declaration);

} // namespace Host
