#pragma once

#include <Geometry/AffineTransform.h>
#include <Geometry/PolyCurveDbl.h>

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace Host {

class LongText;

// Elements of an SVG and their values. What is appended is paid for (`Quillet::Budget`), and comes in any case.

pugi::xml_node Append(pugi::xml_node parent, const char* name);

/// Gives the value as the document keeps it.
const char* Set(pugi::xml_node node, const char* name, const std::string& value);

std::string MakeNumber(double value, int decimals = 6);
std::string MakeTransform(const Raster::AffineTransform::Params& transform);
/// Of a path in its own space, from which `toPage` leads to the page.
std::string MakePathData(const Geometry::PolyCurveDbl& path, const Raster::AffineTransform::Params& toPage);

/// All that a document has, which is paid for since it stands there.
LongText WriteXml(const pugi::xml_document& document, bool hasDeclaration);

/// What XML can hold (XML 1.0, 2.2).
bool IsXmlCharacter(char32_t code);
/// The characters of a text that XML can hold; none if there is no more to pay for them.
std::string MakeXmlText(std::string_view text);

/// Appends to the value of a "style".
void AddStyle(std::string& style, const char* declaration);

} // namespace Host
