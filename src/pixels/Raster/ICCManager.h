#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <Kernel/Counted.h>
#include <Raster/Format.h>
#include <Raster/ICCProfile.h>
#include <Raster/ICCTransform.h>
#include <Raster/InstalledProfiles.h>
#include <Raster/ModelPixel.h>
#include <Raster/Pixel.h>
#include <Raster/RenderingIntent.h>

#include <array>
#include <mutex>
#include <string>
#include <vector>

namespace Raster {

/// Everything about profiles: where they come from, and what they make of colours. One for the process; any number of
/// threads may use it.
class QUILLET_API ICCManager
{
public:
    /// One profile for each colour model, and how to convert between them.
    class QUILLET_API ICCProfileSet
    {
    public:
        RenderingIntent intent = RenderingIntent::RelativeColorimetric;
        bool hasBlackPointCompensation = true;

        /// Null if there is none, and always for `None`.
        Kernel::Consolidated<ICCProfile> GetProfileFor(ColourSpace model) const;
        /// Replaces the model's profile; null takes it away. `None` has no place and stays without.
        void SetProfile(ColourSpace model, Kernel::Consolidated<ICCProfile> profile);

        /// The same by the model of a format's colour channels.
        Kernel::Consolidated<ICCProfile> GetProfileForFormat(Format format) const;
        void SetProfileForFormat(Format format, Kernel::Consolidated<ICCProfile> profile);

        friend bool operator==(const ICCProfileSet&, const ICCProfileSet&) = default;

    private:
        /// By the model's number.
        std::array<Kernel::Consolidated<ICCProfile>, c_colourSpaceCount> profiles;
    };

    static ICCManager& GetInstance();
    /// For tests: what `GetInstance` gives knows the machine's own profiles.
    explicit ICCManager(InstalledProfiles machineProfiles = {});

    /// Copies the bytes; null if they are no profile. `name` is for messages; null takes the profile's description.
    Kernel::Consolidated<ICCProfile> AddProfileFromMemory(const void* bytes, unsigned int length, const char* name);
    /// Takes over a handle of Little CMS; null for null.
    Kernel::Consolidated<ICCProfile> CreateProfile(void* handle);
    /// The installed profile with that description, in UTF-8; null if there is none.
    Kernel::Consolidated<ICCProfile> GetProfileForString(const std::string& name);
    /// What colours without a profile are taken for: sRGB, gray with the same curve, and Lab under D50. Null for the
    /// other models, whose colours are converted by formula.
    Kernel::Consolidated<ICCProfile> GetDefaultProfile(ColourSpace model) const;
    /// The profile describes colours of the format's model.
    static bool CanApplyProfileToFormat(const Kernel::Consolidated<ICCProfile>& profile, Format format);

    /// One transform for each way to ask, kept for the next time. Null if either profile is, and for profiles that
    /// cannot be connected; that is found out, and traced, once.
    Kernel::Counted<const ICCTransform> GetTransformForProfiles(const Kernel::Consolidated<ICCProfile>& source,
                                                                const Kernel::Consolidated<ICCProfile>& dest,
                                                                RenderingIntent intent, bool hasBlackPointCompensation);

    /// The colour in sRGB by way of its model's profile in `profiles`; without one, or with one that is of no use, by
    /// formula, or for Lab by the default profile. Gray and RGB of the default profiles come as they are, even outside
    /// 0 to 1; all others give 0 to 1.
    PixelRgbF MakeRgba(const ModelPixel& pixel, const ICCProfileSet& profiles);

private:
    struct CachedTransform
    {
        Kernel::Consolidated<ICCProfile> source;
        Kernel::Consolidated<ICCProfile> dest;
        RenderingIntent intent;
        bool hasBlackPointCompensation;
        Kernel::Counted<const ICCTransform> transform;
    };

    std::mutex lock;
    InstalledProfiles installedProfiles;
    std::vector<CachedTransform> transforms;
    ICCProfileSet defaultProfiles;
};

} // namespace Raster
