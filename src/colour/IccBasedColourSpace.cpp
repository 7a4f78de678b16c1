#include "colour/IccBasedColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "filters/Stream.h"
#include "colour/RasterFormatPicker.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <Raster/ICCManager.h>

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
    SetNestedIn(alternate.Get());
    profile = ReadProfile(dictionary);
}

Kernel::Consolidated<Raster::ICCProfile> IccBasedColourSpace::ReadProfile(Kernel::Counted<Dictionary> dictionary)
{
    std::vector<char> bytes;
    Stream(dictionary).ReadBlock(bytes);
    if (!Budget::Spend(Limits::c_profileUnits + bytes.size())) return nullptr;
    auto profile = Raster::ICCManager::GetInstance().AddProfileFromMemory(
        bytes.data(), static_cast<unsigned int>(bytes.size()), nullptr);
    dictionary->Check(static_cast<bool>(profile), Error::UnimplementedColourProfile);
    return profile;
}

void IccBasedColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    if (profile) {
        picker.Add(Raster::Format::None, profile, isExplicit);
    } else {
        alternate->AddRasterFormats(picker, isExplicit);
    }
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
