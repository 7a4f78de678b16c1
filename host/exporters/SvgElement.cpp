#include "exporters/SvgElement.h"

#include "exporters/Costs.h"
#include "exporters/LongText.h"
#include "exporters/NumberText.h"
#include "exporters/PathData.h"
#include "exporters/XmlWriter.h"

#include <Quillet/Budget.h>

#include <Kernel/CharTraits.h>

#include <algorithm>
#include <cmath>

namespace Host {

using namespace Quillet;
using Params = Raster::AffineTransform::Params;

std::string MakeNumber(double value, int decimals)
{
    std::string text;
    AppendNumber(text, value, decimals);
    return text;
}

void SetTransform(XmlWriter& svg, const Params& transform, const char* name)
{
    LongText& text = svg.BeginAttribute(name);
    text.Append("matrix(");
    for (const double value : {transform.a, transform.b, transform.c, transform.d}) {
        const double size = std::abs(value);
        // Nine digits that count, however small the scale.
        AppendNumber(text, value, size > 0 && size < 1 ? std::min(15, 9 - static_cast<int>(std::log10(size))) : 9);
        text.Put(' ');
    }
    AppendNumber(text, transform.e, 6);
    text.Put(' ');
    AppendNumber(text, transform.f, 6);
    text.Put(')');
    svg.EndAttribute();
}

std::string MakePathData(const Geometry::PolyCurveDbl& path, const Params& toPage)
{
    LongText text;
    AppendPathData(text, path, toPage);
    return text.Join();
}

void SetPathData(XmlWriter& svg, const Geometry::PolyCurveDbl& path, const Params& toPage)
{
    AppendPathData(svg.BeginAttribute("d"), path, toPage);
    svg.EndAttribute();
}

bool IsXmlCharacter(char32_t code)
{
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    return !isControl && code != 0xFFFE && code != 0xFFFF && Kernel::CharTraits::IsScalarValue(code);
}

std::string MakeXmlText(std::string_view text)
{
    std::string clean;
    if (!Budget::Spend(text.size() * Costs::c_svgTextByte)) return clean;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t code = Kernel::CharTraits::DecodeCodePoint(text, end);
        const std::string_view bytes = text.substr(start, end - start);
        // Bytes that are no UTF-8 decode to the replacement character.
        const bool isBroken = code == Kernel::CharTraits::c_replacement && bytes != "\uFFFD";
        if (!isBroken && IsXmlCharacter(code)) clean += bytes;
    }
    return clean;
}

void AddStyle(std::string& style, const char* declaration)
{
    if (!style.empty()) style += ';';
    style += declaration;
}

} // namespace Host
