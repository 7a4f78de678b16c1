#pragma once

#include <Raster/ICCManager.h>

#include <algorithm>
#include <string>

namespace Quillet {

/// The bytes of sRGB, said to be a profile of another model: four letters at byte 16 (ICC.1:2010, 7.2.8).
inline std::string MakeTestProfile(const std::string& model = "RGB ")
{
    const auto& bytes = Raster::ICCManager::GetInstance().GetDefaultProfile(Raster::ColourSpace::Rgb)->GetBytes();
    std::string profile(bytes.begin(), bytes.end());
    std::ranges::copy(model, profile.begin() + 16);
    return profile;
}

} // namespace Quillet
