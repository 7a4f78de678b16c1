#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Raster/ICCProfile.h>
#include <Raster/RenderingIntent.h>

#include <array>
#include <memory>

namespace Raster {

/// A conversion between the colours of two profiles, for one colour at a time. Immutable: any number of threads may
/// use it.
class QUILLET_API ICCTransform : public Kernel::Countable
{
public:
    /// Null for profiles that Little CMS cannot connect.
    static Kernel::Counted<const ICCTransform> Create(const ICCProfile& source, const ICCProfile& dest,
                                                      RenderingIntent intent, bool hasBlackPointCompensation);

    /// Components in the units of `ModelPixel`. What comes out may lie outside them for colours that the destination
    /// does not have.
    std::array<double, 4> Convert(const std::array<double, 4>& components) const;

private:
    ICCTransform(void* handle, bool isFromInk, bool isToInk);

    struct Deleter
    {
        void operator()(void* handle) const;
    };
    /// Of Little CMS.
    std::unique_ptr<void, Deleter> transform;
    // Little CMS counts inks in percent.
    double inputScale;
    double outputScale;
};

} // namespace Raster
