#include "colour/ColourSpaceFactory.h"

#include "colour/DeviceCmykColourSpace.h"
#include "colour/DeviceGrayColourSpace.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/IccBasedColourSpace.h"
#include "colour/IndexedColourSpace.h"
#include "colour/PatternColourSpace.h"
#include "content/Resources.h"
#include "document/Guard.h"
#include "document/Parser.h"

#include <Kernel/Trace.h>

namespace Quillet {

ColourSpaceFactory::ColourSpaceFactory(const ErrorHandler* documentHandler)
    : ErrorForwarder(documentHandler), deviceGray(Kernel::MakeCounted<DeviceGrayColourSpace>()),
      deviceRgb(Kernel::MakeCounted<DeviceRgbColourSpace>()), deviceCmyk(Kernel::MakeCounted<DeviceCmykColourSpace>())
{}

ColourSpaceFactory::~ColourSpaceFactory() = default;

Kernel::Counted<const ColourSpace> ColourSpaceFactory::Make(Kernel::Counted<Parser> parser,
                                                            Kernel::NonCounted<const Resources> resources) const
{
    parser->NextToken();
    parser = parser->OptionalDereference();
    if (parser->tokenType == Token::TokenName) {
        const std::string name = parser->GetTokenName();
        // Behind a bare name stands what does not belong to it, up to the end of the file.
        const bool readsOn = name == "Pattern" || name == "ICCBased" || name == "Indexed";
        return Make(name, readsOn ? nullptr : parser, resources);
    }
    if (!parser->Check(parser->tokenType == Token::TokenArrayStart, parser->errorType)) return nullptr;
    return MakeFromArray(parser, resources);
}

Kernel::Counted<const ColourSpace>
ColourSpaceFactory::MakeFromArray(Kernel::Counted<Parser> parser, Kernel::NonCounted<const Resources> resources) const
{
    // Spaces are defined through others, and in a damaged file through each other.
    const Guard::Descent descent;
    if (!parser->Check(static_cast<bool>(descent), parser->errorType)) return nullptr;

    const std::string name = parser->NextName();
    const unsigned long long position = parser->GetPosition();
    auto space = Make(name, parser, resources);
    if (parser->GetPosition() == position) parser->NextToken();
    if (!parser->Check(parser->tokenType == Token::TokenArrayEnd, parser->errorType)) return nullptr;
    return space;
}

Kernel::Counted<const ColourSpace> ColourSpaceFactory::Make(const std::string& name, Kernel::Counted<Parser> parser,
                                                            Kernel::NonCounted<const Resources> resources) const
{
    const Kernel::Counted<const Resources> owned(resources.Get());
    if (name == "DeviceGray" || name == "G") return MakeDeviceGray(resources);
    if (name == "DeviceRGB" || name == "RGB") return MakeDeviceRgb(resources);
    if (name == "DeviceCMYK" || name == "CMYK") return MakeDeviceCmyk(resources);
    if (name == "Pattern") return Kernel::MakeCounted<const PatternColourSpace>(parser, owned, this);
    if (parser) {
        if (name == "ICCBased") return IccBasedColourSpace::Make(parser, resources, this);
        if (name == "Indexed") {
            return Kernel::MakeCounted<const IndexedColourSpace>(parser, owned,
                                                                 Kernel::Counted<const ColourSpaceFactory>(this));
        }
        if (name == "CalGray") return MakeCalibrated("Quillet: CalGray\n", parser, deviceGray);
        if (name == "CalRGB") return MakeCalibrated("Quillet: CalRGB\n", parser, deviceRgb);
    }
    return resources ? resources->GetColourSpace(name) : nullptr;
}

Kernel::Counted<const ColourSpace> ColourSpaceFactory::Make(Kernel::NonCounted<const Resources> resources,
                                                            int componentCount) const
{
    switch (componentCount) {
    case 3:
        return MakeDeviceRgb(resources);
    case 4:
        return MakeDeviceCmyk(resources);
    default:
        return MakeDeviceGray(resources);
    }
}

Kernel::Counted<const ColourSpace>
ColourSpaceFactory::MakeDeviceGray(Kernel::NonCounted<const Resources> resources) const
{
    return MakeDevice("DefaultGray", deviceGray, resources);
}

Kernel::Counted<const ColourSpace>
ColourSpaceFactory::MakeDeviceRgb(Kernel::NonCounted<const Resources> resources) const
{
    return MakeDevice("DefaultRGB", deviceRgb, resources);
}

Kernel::Counted<const ColourSpace>
ColourSpaceFactory::MakeDeviceCmyk(Kernel::NonCounted<const Resources> resources) const
{
    return MakeDevice("DefaultCMYK", deviceCmyk, resources);
}

Kernel::Counted<const ColourSpace> ColourSpaceFactory::MakeDevice(const char* defaultName,
                                                                  Kernel::Counted<const ColourSpace> device,
                                                                  Kernel::NonCounted<const Resources> resources) const
{
    if (!resources || isInDefaultLookup) return device;
    struct Lookup
    {
        explicit Lookup(bool& isOn) : flag(isOn) { flag = true; }
        ~Lookup() { flag = false; }
        bool& flag;
    };
    const Lookup lookup(isInDefaultLookup);
    auto space = resources->GetColourSpace(defaultName);
    return space ? space : device;
}

Kernel::Counted<const ColourSpace> ColourSpaceFactory::MakeCalibrated(const char* trace, Kernel::Counted<Parser> parser,
                                                                      Kernel::Counted<const ColourSpace> device) const
{
    Kernel::Trace(trace);
    if (parser->NextToken() == Token::TokenDictStart) parser->SkipToDictionaryEnd();
    parser->NextToken();
    return device;
}

} // namespace Quillet
