#include "colour/PatternColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "document/Resources.h"
#include "document/Parser.h"

#include <Renderer/ColourGrayscale.h>

namespace Quillet {

PatternColourSpace::PatternColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> scope,
                                       Kernel::NonCounted<const ColourSpaceFactory> factory)
    : resources(scope ? scope->GetTwin() : nullptr)
{
    if (parser) ReadUnderlying(*parser, scope, factory);
}

PatternColourSpace::~PatternColourSpace() = default;

void PatternColourSpace::ReadUnderlying(Parser& array, Kernel::NonCounted<const Resources> scope,
                                        Kernel::NonCounted<const ColourSpaceFactory> factory)
{
    if (array.NextToken() == Token::TokenArrayEnd) return;
    const Kernel::Counted<Parser> parser = array.OptionalDereference();
    if (parser->tokenType == Token::TokenName) {
        underlying = factory->Make(parser->GetTokenName(), nullptr, scope);
    } else if (parser->tokenType == Token::TokenArrayStart) {
        underlying = factory->MakeFromArray(parser, scope);
    }
    SetNestedIn(underlying.Get());
    array.NextToken();
    array.Check(underlying && !underlying->IsPattern(), array.errorType);
}

bool PatternColourSpace::IsColouredPattern(const std::string&) const
{
    return false;
}

void PatternColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    if (underlying) underlying->AddRasterFormats(picker, isExplicit);
}

Kernel::Consolidated<Raster::ICCProfile> PatternColourSpace::GetICCProfile() const
{
    return underlying ? underlying->GetICCProfile() : nullptr;
}

Kernel::Counted<Renderer::FillDescriptor> PatternColourSpace::MakeDefaultFillDescriptor() const
{
    return Renderer::FillDescriptor::CreateNone();
}

Kernel::Counted<Renderer::FillDescriptor>
PatternColourSpace::MakePatternFillDescriptor(const Colour&, const std::string&,
                                              Kernel::NonCounted<GraphicsStateStack>) const
{
    if (resources) resources->OnError(Error::UnimplementedFill);
    return Renderer::FillDescriptor::CreateNone();
}

Kernel::Consolidated<Renderer::Colour> PatternColourSpace::MakeColour(const Colour&) const
{
    return Renderer::ColourGrayscale::Create(0.0, 1.0, 1.0, {});
}

std::vector<double> PatternColourSpace::GetDefaultDecodeVec(int) const
{
    return {};
}

} // namespace Quillet
