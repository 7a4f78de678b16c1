#pragma once

#include "colour/ColourSpace.h"

#include <Quillet/ErrorForwarder.h>

#include <string>

namespace Quillet {

class DeviceCmykColourSpace;
class DeviceGrayColourSpace;
class DeviceRgbColourSpace;
class Parser;
class Ref;
class Resources;

/// Decides which colour space a name or an array of the document stands for. One belongs to each document, and to the
/// thread that works on it.
///
/// All `Make` operations give null for failure; faults in the syntax raise the parser's kind, and an unknown name
/// raises nothing. `resources` may be null.
class QUILLET_API ColourSpaceFactory : public Kernel::Countable, public ErrorForwarder
{
public:
    explicit ColourSpaceFactory(const ErrorHandler* documentHandler = nullptr);
    ~ColourSpaceFactory() override;

    /// Reads a name, an array, or a reference to one of these.
    Kernel::Counted<const ColourSpace> Make(Kernel::Counted<Parser> parser,
                                            Kernel::NonCounted<const Resources> resources) const;
    /// The same for an array whose opening bracket is the parser's current token; reads up to the closing one.
    Kernel::Counted<const ColourSpace> MakeFromArray(Kernel::Counted<Parser> parser,
                                                     Kernel::NonCounted<const Resources> resources) const;
    /// The space of a family or resource name. `parser` stands behind the name in an array, and is read up to its
    /// closing bracket, or not at all by a space that has no parameters; null where there is no array.
    Kernel::Counted<const ColourSpace> Make(const std::string& name, Kernel::Counted<Parser> parser,
                                            Kernel::NonCounted<const Resources> resources) const;
    /// The device space with that many components; gray for a count that has none.
    Kernel::Counted<const ColourSpace> Make(Kernel::NonCounted<const Resources> resources, int componentCount) const;

    /// A device space, or what the resources put in its place. Never null.
    Kernel::Counted<const ColourSpace> MakeDeviceGray(Kernel::NonCounted<const Resources> resources) const;
    Kernel::Counted<const ColourSpace> MakeDeviceRgb(Kernel::NonCounted<const Resources> resources) const;
    Kernel::Counted<const ColourSpace> MakeDeviceCmyk(Kernel::NonCounted<const Resources> resources) const;
    /// `device`, or the colour space that `resources` have under `defaultName`.
    Kernel::Counted<const ColourSpace> MakeDevice(const char* defaultName, Kernel::Counted<const ColourSpace> device,
                                                  Kernel::NonCounted<const Resources> resources) const;

    /// Reads the catalog's array of output intents (ISO 32000-2, 14.11.5) up to the first that gives a profile, which
    /// becomes that of the device of its model.
    void ReadOutputIntents(const Ref& ref);
    /// Whether there is an output profile now.
    bool ReadOutputIntent(const Ref& ref);
    void UpdateOutputProfile();
    /// Null if no intent gives one.
    Kernel::Consolidated<Raster::ICCProfile> GetOutputProfile() const { return outputProfile; }

    Kernel::Counted<DeviceGrayColourSpace> deviceGray;
    Kernel::Counted<DeviceRgbColourSpace> deviceRgb;
    Kernel::Counted<DeviceCmykColourSpace> deviceCmyk;
    Kernel::Consolidated<Raster::ICCProfile> outputProfile;
    /// "N" of the last output profile; 0 without one.
    int outputComponents = 0;

private:
    /// The device that stands for a calibrated space of that name, whatever its parameters; null for another name.
    Kernel::Counted<const ColourSpace> MakeCalibrated(const std::string& name) const;

    /// Within the look-up of a default space device names mean the devices: a default is often defined through its own.
    mutable bool isInDefaultLookup = false;
};

} // namespace Quillet
