#include "colour/ColourSpaceFactory.h"

#include "colour/DeviceCmykColourSpace.h"
#include "colour/DeviceGrayColourSpace.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/IccBasedColourSpace.h"
#include "colour/IndexedColourSpace.h"
#include "colour/LabColourSpace.h"
#include "colour/MultitoneColourSpace.h"
#include "colour/PatternColourSpace.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"

#include <Kernel/Trace.h>
#include <Raster/ICCManager.h>

#include <algorithm>
#include <iterator>

namespace Quillet {

namespace {

struct StandardOutputIntent
{
    std::string_view identifier;
    const char* profileName;
};

/// Printing conditions by the names of the characterisation registry, and the profiles that hosts have for them.
constexpr StandardOutputIntent c_standardOutputIntents[] = {
    {"CGATS TR 001", "U.S. Web Coated (SWOP) v2"},
    {"FOGRA27", "Coated FOGRA27 (ISO 12647-2:2004)"},
    {"FOGRA28", "Web Coated FOGRA28 (ISO 12647-2:2004)"},
    {"FOGRA29", "Uncoated FOGRA28 (ISO 12647-2:2004)"},
    {"FOGRA39", "Coated FOGRA39 (ISO 12647-2:2004)"},
    {"JC200103", "Japan Color 2001 Coated"},
    {"JC200104", "Japan Color 2001 Uncoated"},
    {"JCN2002", "Japan Color 2002 Newspaper"},
};

Kernel::Consolidated<Raster::ICCProfile> FindProfile(const std::string& conditionIdentifier)
{
    auto& manager = Raster::ICCManager::GetInstance();
    if (auto profile = manager.GetProfileForString(conditionIdentifier)) return profile;
    const auto* row =
        std::ranges::find(c_standardOutputIntents, conditionIdentifier, &StandardOutputIntent::identifier);
    return row != std::end(c_standardOutputIntents) ? manager.GetProfileForString(row->profileName) : nullptr;
}

} // namespace

ColourSpaceFactory::ColourSpaceFactory(const ErrorHandler* documentHandler)
    : ErrorForwarder(documentHandler), deviceGray(Kernel::MakeCounted<DeviceGrayColourSpace>()),
      deviceRgb(Kernel::MakeCounted<DeviceRgbColourSpace>()), deviceCmyk(Kernel::MakeCounted<DeviceCmykColourSpace>())
{}

ColourSpaceFactory::~ColourSpaceFactory() = default;

Kernel::Counted<const ColourSpace> ColourSpaceFactory::Make(Kernel::Counted<Parser> parser,
                                                            Kernel::NonCounted<const Resources> resources) const
{
    parser = parser->NextValue();
    if (parser->tokenType == Token::TokenName) {
        const std::string name = parser->GetTokenName();
        if (auto device = MakeCalibrated(name)) return device;
        // Behind a bare name stands what does not belong to it, up to the end of the file.
        return Make(name, nullptr, resources);
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
    // Spaces that are kept can be built upon one by one, without ever going deep here.
    if (!parser->Check(!space || space->nesting <= Limits::c_maxDescent, parser->errorType)) return nullptr;
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
        if (name == "Separation" || name == "DeviceN") {
            return Kernel::MakeCounted<const MultitoneColourSpace>(parser, owned,
                                                                   Kernel::Counted<const ColourSpaceFactory>(this));
        }
        if (name == "Lab") return LabColourSpace::Make(parser, resources, this);
        if (auto device = MakeCalibrated(name)) {
            // An array without parameters is at its end already.
            if (parser->NextToken() == Token::TokenDictStart) parser->SkipToDictionaryEnd();
            if (parser->tokenType != Token::TokenArrayEnd) parser->NextToken();
            return device;
        }
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

Kernel::Counted<const ColourSpace> ColourSpaceFactory::MakeCalibrated(const std::string& name) const
{
    const bool isGray = name == "CalGray";
    if (!isGray && name != "CalRGB") return nullptr;
    Kernel::Trace("Quillet: %1\n", name);
    if (isGray) return deviceGray;
    return deviceRgb;
}

void ColourSpaceFactory::ReadOutputIntents(const Ref& ref)
{
    // What an earlier file of the same document object asked for is forgotten.
    outputProfile = nullptr;
    outputComponents = 0;
    for (DeviceColourSpace* device :
         {static_cast<DeviceColourSpace*>(deviceGray.Get()), static_cast<DeviceColourSpace*>(deviceRgb.Get()),
          static_cast<DeviceColourSpace*>(deviceCmyk.Get())}) {
        device->SetICCProfile(nullptr);
    }
    if (ref.IsNull()) return;
    Parser parser(ref);
    if (!parser.Skip(Token::TokenArrayStart)) return;
    while (parser.NextToken() != Token::TokenArrayEnd && !parser.AtEnd()) {
        if (ReadOutputIntent(parser.GetTokenRef())) return;
        if (parser.tokenType == Token::TokenDictStart) parser.SkipToObjectEnd();
    }
}

bool ColourSpaceFactory::ReadOutputIntent(const Ref& ref)
{
    Dictionary intent(ref);
    if (const Ref stream = intent.GetRef("DestOutputProfile"); !stream.IsNull()) {
        const auto dictionary = Kernel::MakeCounted<Dictionary>(stream);
        outputProfile = IccBasedColourSpace::ReadProfile(dictionary);
        outputComponents = dictionary->GetInt("N", 0);
    }
    if (!outputProfile) outputProfile = FindProfile(intent.GetString("OutputConditionIdentifier"));
    UpdateOutputProfile();
    return static_cast<bool>(outputProfile);
}

void ColourSpaceFactory::UpdateOutputProfile()
{
    if (!outputProfile) return;
    switch (outputProfile->GetColourSpace()) {
    case Raster::ColourSpace::Gray:
        deviceGray->SetICCProfile(outputProfile);
        break;
    case Raster::ColourSpace::Rgb:
        deviceRgb->SetICCProfile(outputProfile);
        break;
    case Raster::ColourSpace::Cmyk:
        deviceCmyk->SetICCProfile(outputProfile);
        break;
    case Raster::ColourSpace::None:
    case Raster::ColourSpace::Lab:
    case Raster::ColourSpace::OtherRgb:
        break;
    }
}

} // namespace Quillet
