#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <pixels/Format.h>
#include <pixels/ICCProfile.h>

#include <array>

namespace Raster {

/// ICC.1:2010, 7.2.15.
enum class RenderingIntent : int {
    Perceptual = 0,
    RelativeColorimetric = 1,
    Saturation = 2,
    AbsoluteColorimetric = 3,
};

/// Everything about profiles.
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
};

} // namespace Raster
