#include "colour/MultitoneColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "colour/Function.h"
#include "colour/Round.h"
#include "document/Resources.h"
#include "document/Limits.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRegistration.h>

#include <algorithm>
#include <cstdint>

namespace Quillet {

namespace {

using Kernel::Consolidated;

constexpr const char* c_none = "None";

Consolidated<Renderer::Colour> MakeCmyk(std::uint8_t cyan, std::uint8_t magenta, std::uint8_t yellow,
                                        std::uint8_t black, std::uint8_t alpha = 255)
{
    return Renderer::ColourCMYK::Create(Raster::PixelCmyk8(cyan, magenta, yellow, black, alpha), 1.0, 1.0, {});
}

Consolidated<Renderer::Colour> MakeWithTint(const Consolidated<Renderer::Colour>& colour, double tint)
{
    if (colour->GetModel() < Raster::ColourSpace::Gray || colour->GetModel() > Raster::ColourSpace::Lab) return colour;
    const Kernel::Counted<Renderer::Colour> copy = colour->Clone();
    copy->tint = tint;
    return Kernel::ConsolidateObjectSacrifice(copy);
}

} // namespace

MultitoneColourSpace::MultitoneColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> resources,
                                           Kernel::Counted<const ColourSpaceFactory> factory)
{
    parser->NextToken();
    std::vector<std::string> names;
    parser->GetTokenNameVec(names);
    if (!parser->Check(names.size() <= Limits::c_maxColourants, parser->errorType)) return;
    componentCount = static_cast<int>(names.size());

    alternate = factory->Make(parser, resources);
    if (!parser->Check(alternate && !alternate->IsSpecial(), parser->errorType)) return;

    SetNestedIn(alternate.Get());
    transform = Function::Make(parser->NextRef());
    parser->SkipToObjectEnd();
    parser->NextToken();
    if (parser->tokenType == Token::TokenDictStart || parser->tokenType == Token::TokenRef) {
        parser->SkipToObjectEnd();
        parser->NextToken();
    }
    parser->Check(parser->tokenType == Token::TokenArrayEnd, parser->errorType);

    if (componentCount == 1) {
        namedColour = GetNamedColour(names.front());
    } else if (componentCount > 1 && !HasColour(names)) {
        namedColour = MakeCmyk(0, 0, 0, 255);
    }
}

MultitoneColourSpace::~MultitoneColourSpace() = default;

void MultitoneColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    if (alternate) alternate->AddRasterFormats(picker, isExplicit);
}

Consolidated<Raster::ICCProfile> MultitoneColourSpace::GetICCProfile() const
{
    return alternate ? alternate->GetICCProfile() : nullptr;
}

Consolidated<Renderer::Colour> MultitoneColourSpace::GetNamedColour(const std::string& name) const
{
    if (name == "All" || name == "Registration") return Renderer::ColourRegistration::Create(1.0);
    if (name == c_none) return MakeCmyk(0, 0, 0, 0, 0);
    if (name == "Black") return MakeCmyk(0, 0, 0, 255);
    if (name == "Yellow") return MakeCmyk(0, 0, 255, 0);
    if (name == "Magenta") return MakeCmyk(0, 255, 0, 0);
    if (name == "Cyan") return MakeCmyk(255, 0, 0, 0);
    return Kernel::ConsolidateObjectPostAlloc(
        Renderer::ColourNamed(name, true, BaseMakeColour(Colour(std::vector{1.0}))));
}

bool MultitoneColourSpace::HasColour(const std::vector<std::string>& names)
{
    return std::ranges::any_of(names, [](const std::string& name) { return name != c_none; });
}

Consolidated<Renderer::Colour> MultitoneColourSpace::BaseMakeColour(const Colour& colour) const
{
    if (!alternate || !transform) return Renderer::ColourGrayscale::Create(0.0, 1.0, 1.0, {});
    Colour result(alternate->GetComponentCount());
    transform->Call(result.components.data(), result.components.size(), colour.components.data(),
                    colour.components.size());
    return alternate->MakeColour(result);
}

Consolidated<Renderer::Colour> MultitoneColourSpace::MakeColour(const Colour& colour) const
{
    constexpr int c_fullTint = 255;
    if (!namedColour) return BaseMakeColour(colour);
    if (componentCount > 1 || Round(colour[0] * c_fullTint) >= c_fullTint) return namedColour;
    return MakeWithTint(BaseMakeColour(colour), colour[0]);
}

std::vector<double> MultitoneColourSpace::GetDefaultDecodeVec(int) const
{
    std::vector<double> ranges;
    for (int i = 0; i < componentCount; ++i)
        ranges.insert(ranges.end(), {0.0, 1.0});
    return ranges;
}

} // namespace Quillet
