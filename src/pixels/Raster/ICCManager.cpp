#include <Raster/ICCManager.h>
#include <Raster/ProfileDescription.h>

#include <Kernel/Trace.h>

#include <lcms2.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Raster {

namespace {

bool HasPlace(ColourSpace model)
{
    return model > ColourSpace::None && static_cast<int>(model) < c_colourSpaceCount;
}

/// A page has a handful of profiles. A file with thousands makes some of its transforms again.
constexpr std::size_t c_maxTransforms = 64;

/// The CIE illuminant under which profiles connect; sRGB's own white is brought to it.
cmsCIExyY GetD50()
{
    return *cmsD50_xyY();
}

void* MakeGrayLikeSrgb()
{
    // IEC 61966-2-1, as a parametric curve of type 4 (ICC.1:2010, 10.16).
    const cmsFloat64Number c_parameters[] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve* const curve = cmsBuildParametricToneCurve(nullptr, 4, c_parameters);
    const cmsCIExyY white = GetD50();
    void* const profile = cmsCreateGrayProfile(&white, curve);
    cmsFreeToneCurve(curve);
    return profile;
}

ColourSpace GetModelOf(void* profile)
{
    const cmsColorSpaceSignature space = cmsGetColorSpace(profile);
    switch (space) {
    case cmsSigGrayData:
        return ColourSpace::Gray;
    case cmsSigRgbData:
        return ColourSpace::Rgb;
    case cmsSigCmykData:
        return ColourSpace::Cmyk;
    case cmsSigLabData:
        return ColourSpace::Lab;
    default:
        return cmsChannelsOf(space) == 3 ? ColourSpace::OtherRgb : ColourSpace::None;
    }
}

/// 0 to 1; what is no number is 0.
float ToUnit(double value)
{
    return value > 0 ? static_cast<float>(std::min(value, 1.0)) : 0.0f;
}

/// The light that an ink leaves when black lies over it. Black takes its share first, so full black is black whatever
/// else is printed.
double GetLight(double ink, double black)
{
    return 1 - std::min(1.0, ink * (1 - black) + black);
}

PixelRgbF MakeRgbaByFormula(const ModelPixel& pixel)
{
    const auto& c = pixel.components;
    switch (pixel.model) {
    case ColourSpace::Gray: {
        const auto gray = static_cast<float>(c[0]);
        return PixelRgbF(gray, gray, gray, pixel.alpha);
    }
    case ColourSpace::Rgb:
    case ColourSpace::OtherRgb:
        return PixelRgbF(static_cast<float>(c[0]), static_cast<float>(c[1]), static_cast<float>(c[2]), pixel.alpha);
    case ColourSpace::Cmyk:
        return PixelRgbF(ToUnit(GetLight(c[0], c[3])), ToUnit(GetLight(c[1], c[3])), ToUnit(GetLight(c[2], c[3])),
                         pixel.alpha);
    case ColourSpace::Lab:
    case ColourSpace::None:
        break;
    }
    return PixelRgbF(0, 0, 0, pixel.alpha);
}

} // namespace

Kernel::Consolidated<ICCProfile> ICCManager::ICCProfileSet::GetProfileFor(ColourSpace model) const
{
    if (!HasPlace(model)) return nullptr;
    return profiles[static_cast<std::size_t>(model)];
}

void ICCManager::ICCProfileSet::SetProfile(ColourSpace model, Kernel::Consolidated<ICCProfile> profile)
{
    if (HasPlace(model)) profiles[static_cast<std::size_t>(model)] = std::move(profile);
}

Kernel::Consolidated<ICCProfile> ICCManager::ICCProfileSet::GetProfileForFormat(Format format) const
{
    return GetProfileFor(GetColourSpaceOf(format));
}

void ICCManager::ICCProfileSet::SetProfileForFormat(Format format, Kernel::Consolidated<ICCProfile> profile)
{
    SetProfile(GetColourSpaceOf(format), std::move(profile));
}

ICCManager& ICCManager::GetInstance()
{
    static ICCManager manager;
    return manager;
}

ICCManager::ICCManager(InstalledProfiles machineProfiles) : installedProfiles(std::move(machineProfiles))
{
    const cmsCIExyY white = GetD50();
    defaultProfiles.SetProfile(ColourSpace::Gray, CreateProfile(MakeGrayLikeSrgb()));
    defaultProfiles.SetProfile(ColourSpace::Rgb, CreateProfile(cmsCreate_sRGBProfile()));
    defaultProfiles.SetProfile(ColourSpace::Lab, CreateProfile(cmsCreateLab4Profile(&white)));
}

Kernel::Consolidated<ICCProfile> ICCManager::AddProfileFromMemory(const void* bytes, unsigned int length,
                                                                  const char* name)
{
    void* const handle = cmsOpenProfileFromMem(bytes, length);
    if (!handle) return nullptr;
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    auto profile = Kernel::MakeCounted<ICCProfile>(std::vector<std::uint8_t>(first, first + length), GetModelOf(handle),
                                                   name ? name : GetProfileDescription(handle));
    cmsCloseProfile(handle);
    return Kernel::ConsolidateObjectSacrifice(profile);
}

Kernel::Consolidated<ICCProfile> ICCManager::CreateProfile(void* handle)
{
    if (!handle) return nullptr;
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(handle, nullptr, &size);
    std::vector<std::uint8_t> bytes(size);
    const bool isSaved = size > 0 && cmsSaveProfileToMem(handle, bytes.data(), &size);
    cmsCloseProfile(handle);
    if (!isSaved) return nullptr;
    // Without the time of its creation (ICC.1:2010, 7.2.1), so that equal profiles have equal bytes.
    constexpr std::size_t c_datePlace = 24;
    constexpr std::size_t c_dateLength = 12;
    if (bytes.size() > c_datePlace + c_dateLength) std::fill_n(bytes.begin() + c_datePlace, c_dateLength, 0);
    return AddProfileFromMemory(bytes.data(), static_cast<unsigned int>(bytes.size()), nullptr);
}

Kernel::Consolidated<ICCProfile> ICCManager::GetProfileForString(const std::string& name)
{
    std::vector<std::uint8_t> bytes;
    {
        const std::lock_guard guard(lock);
        bytes = installedProfiles.Find(name);
    }
    return AddProfileFromMemory(bytes.data(), static_cast<unsigned int>(bytes.size()), name.c_str());
}

Kernel::Consolidated<ICCProfile> ICCManager::GetDefaultProfile(ColourSpace model) const
{
    return defaultProfiles.GetProfileFor(model);
}

bool ICCManager::CanApplyProfileToFormat(const Kernel::Consolidated<ICCProfile>& profile, Format format)
{
    const ColourSpace model = GetColourSpaceOf(format);
    return profile && model != ColourSpace::None && profile->GetColourSpace() == model;
}

Kernel::Counted<const ICCTransform> ICCManager::GetTransformForProfiles(const Kernel::Consolidated<ICCProfile>& source,
                                                                        const Kernel::Consolidated<ICCProfile>& dest,
                                                                        RenderingIntent intent,
                                                                        bool hasBlackPointCompensation)
{
    if (!source || !dest) return nullptr;
    const std::lock_guard guard(lock);
    const auto known = std::ranges::find_if(transforms, [&](const CachedTransform& entry) {
        return entry.source == source && entry.dest == dest && entry.intent == intent &&
               entry.hasBlackPointCompensation == hasBlackPointCompensation;
    });
    if (known != transforms.end()) return known->transform;

    const auto transform = ICCTransform::Create(*source, *dest, intent, hasBlackPointCompensation);
    if (!transform) {
        Kernel::Trace("Colour engine failed to create transform between %1 and %2\r\n", source->GetName(),
                      dest->GetName());
    }
    if (transforms.size() == c_maxTransforms) transforms.erase(transforms.begin());
    transforms.push_back({source, dest, intent, hasBlackPointCompensation, transform});
    return transform;
}

PixelRgbF ICCManager::MakeRgba(const ModelPixel& pixel, const ICCProfileSet& profiles)
{
    const auto target = GetDefaultProfile(ColourSpace::Rgb);
    const auto usual = GetDefaultProfile(pixel.model);
    const auto given = profiles.GetProfileFor(pixel.model);
    Kernel::Counted<const ICCTransform> transform;
    if (given && given != usual) {
        transform = GetTransformForProfiles(given, target, profiles.intent, profiles.hasBlackPointCompensation);
    }
    if (!transform && pixel.model == ColourSpace::Lab) {
        transform = GetTransformForProfiles(usual, target, profiles.intent, profiles.hasBlackPointCompensation);
    }
    if (!transform) return MakeRgbaByFormula(pixel);
    const auto rgb = transform->Convert(pixel.components);
    return PixelRgbF(ToUnit(rgb[0]), ToUnit(rgb[1]), ToUnit(rgb[2]), pixel.alpha);
}

} // namespace Raster
