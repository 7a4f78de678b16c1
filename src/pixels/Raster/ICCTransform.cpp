#include <Raster/ICCTransform.h>

#include <lcms2.h>

namespace Raster {

namespace {

struct ProfileCloser
{
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using ProfileHandle = std::unique_ptr<void, ProfileCloser>;

ProfileHandle Open(const ICCProfile& profile)
{
    const auto& bytes = profile.GetBytes();
    return ProfileHandle(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
}

cmsUInt32Number GetDoubleFormat(const ProfileHandle& profile)
{
    constexpr cmsUInt32Number c_bytesOfDouble = 0;
    return cmsFormatterForColorspaceOfProfile(profile.get(), c_bytesOfDouble, TRUE);
}

/// A profile may claim a space of up to 15 channels, and a colour has four.
bool HasModel(const ICCProfile& profile)
{
    return profile.GetColourSpace() != ColourSpace::None;
}

} // namespace

void ICCTransform::Deleter::operator()(void* handle) const
{
    cmsDeleteTransform(handle);
}

ICCTransform::ICCTransform(void* handle, bool isFromInk, bool isToInk)
    : transform(handle), inputScale(isFromInk ? 100 : 1), outputScale(isToInk ? 0.01 : 1)
{}

Kernel::Counted<const ICCTransform> ICCTransform::Create(const ICCProfile& source, const ICCProfile& dest,
                                                         RenderingIntent intent, bool hasBlackPointCompensation)
{
    if (!HasModel(source) || !HasModel(dest)) return nullptr;
    const ProfileHandle from = Open(source);
    const ProfileHandle to = Open(dest);
    if (!from || !to) return nullptr;
    const cmsUInt32Number flags = hasBlackPointCompensation ? cmsFLAGS_BLACKPOINTCOMPENSATION : 0;
    void* const handle = cmsCreateTransform(from.get(), GetDoubleFormat(from), to.get(), GetDoubleFormat(to),
                                            static_cast<cmsUInt32Number>(intent), flags);
    if (!handle) return nullptr;
    return Kernel::Counted<const ICCTransform>(new ICCTransform(handle, source.GetColourSpace() == ColourSpace::Cmyk,
                                                                dest.GetColourSpace() == ColourSpace::Cmyk));
}

std::array<double, 4> ICCTransform::Convert(const std::array<double, 4>& components) const
{
    std::array<double, 4> in = components;
    for (double& value : in)
        value *= inputScale;
    std::array<double, 4> out{};
    cmsDoTransform(transform.get(), in.data(), out.data(), 1);
    for (double& value : out)
        value *= outputScale;
    return out;
}

} // namespace Raster
