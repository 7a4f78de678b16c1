#include "colour/IccBasedColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "content/Resources.h"
#include "document/Dictionary.h"

namespace Quillet {

Kernel::Counted<const ColourSpace> IccBasedColourSpace::Make(Kernel::Counted<Parser> parser,
                                                             Kernel::NonCounted<const Resources> resources,
                                                             Kernel::NonCounted<const ColourSpaceFactory> factory)
{
    const Ref stream = parser->NextRef();
    // An array without a stream is at its end already; the skip would run on through the file.
    if (parser->tokenType != Token::TokenArrayEnd) parser->SkipToArrayEnd();
    if (auto cached = stream.GetCache<IccBasedColourSpace>()) return cached;
    stream.SetCache(Kernel::MakeCounted<const IccBasedColourSpace>(stream, resources, factory));
    return stream.GetCache<IccBasedColourSpace>();
}

IccBasedColourSpace::IccBasedColourSpace(const Ref& stream, Kernel::NonCounted<const Resources> resources,
                                         Kernel::NonCounted<const ColourSpaceFactory> factory)
{
    const auto dictionary = Kernel::MakeCounted<Dictionary>(stream);
    const int componentCount = dictionary->GetInt("N", 1);
    if (dictionary->DictionarySeek("Alternate")) alternate = factory->Make(dictionary, resources);
    if (!alternate) alternate = factory->Make(resources, componentCount);
}

Kernel::Consolidated<Renderer::Colour> IccBasedColourSpace::MakeColour(const Colour& colour) const
{
    return alternate->MakeColour(colour);
}

std::vector<double> IccBasedColourSpace::GetDefaultDecodeVec(int bitsPerComponent) const
{
    return alternate->GetDefaultDecodeVec(bitsPerComponent);
}

} // namespace Quillet
