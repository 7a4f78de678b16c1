#include "colour/RasterFormatPicker.h"

namespace Quillet {

namespace {

int GetRank(Raster::Format format)
{
    switch (format) {
    case Raster::Format::Gray8:
        return 1;
    case Raster::Format::Gray16:
        return 2;
    case Raster::Format::Lab16:
        return 3;
    case Raster::Format::Rgb8:
        return 4;
    case Raster::Format::Rgb16:
        return 5;
    case Raster::Format::RgbFloat:
        return 6;
    case Raster::Format::Cmyk8:
        return 7;
    case Raster::Format::AlphaOnly8:
    case Raster::Format::AlphaOnly16:
    case Raster::Format::None:
    case Raster::Format::AlphaOnlyFloat:
        break;
    }
    return 0;
}

Raster::Format GetFormatOf(Raster::ColourSpace model)
{
    switch (model) {
    case Raster::ColourSpace::Gray:
        return Raster::Format::Gray8;
    case Raster::ColourSpace::Rgb:
    case Raster::ColourSpace::OtherRgb:
        return Raster::Format::Rgb8;
    case Raster::ColourSpace::Cmyk:
        return Raster::Format::Cmyk8;
    case Raster::ColourSpace::Lab:
        return Raster::Format::Lab16;
    case Raster::ColourSpace::None:
        break;
    }
    return Raster::Format::None;
}

} // namespace

int RasterFormatPicker::Add(Raster::Format used, const Kernel::Consolidated<Raster::ICCProfile>& profile,
                            bool isExplicitUse)
{
    if (profile) {
        AddProfile(profile, isExplicitUse);
        if (used == Raster::Format::None) used = GetFormatOf(profile->GetColourSpace());
    }
    if (const int usedRank = GetRank(used); usedRank > rank) {
        rank = usedRank;
        format = used;
    }
    return rank;
}

void RasterFormatPicker::AddProfile(const Kernel::Consolidated<Raster::ICCProfile>& profile, bool isExplicitUse)
{
    const Raster::ColourSpace model = profile->GetColourSpace();
    if (model == Raster::ColourSpace::None) return;
    bool& isModelExplicit = isExplicit[static_cast<std::size_t>(model)];
    if (profiles.GetProfileFor(model) && isModelExplicit && !isExplicitUse) return;
    profiles.SetProfile(model, profile);
    isModelExplicit = isExplicitUse;
}

Raster::ICCManager::ICCProfileSet RasterFormatPicker::GetProfiles(const Raster::ICCManager::ICCProfileSet& base) const
{
    Raster::ICCManager::ICCProfileSet result = base;
    for (int i = 1; i < Raster::c_colourSpaceCount; ++i) {
        const auto model = static_cast<Raster::ColourSpace>(i);
        if (auto profile = profiles.GetProfileFor(model)) result.SetProfile(model, profile);
    }
    return result;
}

} // namespace Quillet
