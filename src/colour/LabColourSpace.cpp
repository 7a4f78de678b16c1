#include "colour/LabColourSpace.h"

#include "colour/Round.h"
#include "document/Dictionary.h"
#include "colour/RasterFormatPicker.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <Renderer/ColourLAB.h>
#include <Raster/ICCManager.h>

#include <lcms2.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Quillet {

namespace {

const std::vector<double> c_defaultRange{-100, 100, -100, 100};

bool IsUsableRange(const std::vector<double>& range)
{
    return range.size() == 4 && range[1] - range[0] >= 1.0 && range[3] - range[2] >= 1.0;
}

std::uint16_t MakeChannel(double value, double minimum, double maximum)
{
    constexpr double c_channelMaximum = 65535.0;
    const double clamped = value < minimum ? minimum : std::min(value, maximum);
    return static_cast<std::uint16_t>(Round((clamped - minimum) * c_channelMaximum / (maximum - minimum)));
}

} // namespace

Kernel::Counted<const ColourSpace> LabColourSpace::Make(Kernel::Counted<Parser> parser,
                                                        Kernel::NonCounted<const Resources>,
                                                        Kernel::NonCounted<const ColourSpaceFactory>)
{
    const Ref parameters = parser->NextRef();
    // An array without parameters is at its end already; the skips would run on through the file.
    if (parser->tokenType != Token::TokenArrayEnd) {
        parser->SkipToObjectEnd();
        parser->SkipToArrayEnd();
    }
    if (auto cached = parameters.GetCache<LabColourSpace>()) return cached;
    auto space = Kernel::MakeCounted<const LabColourSpace>(parameters);
    parameters.SetCache(space);
    return space;
}

LabColourSpace::LabColourSpace(const Ref& parameters)
{
    Budget::Spend(Limits::c_profileUnits);
    Dictionary dictionary(parameters);
    std::vector<double> white;
    const bool hasWhite = dictionary.GetRealVec("WhitePoint", white);
    if (!dictionary.Check(hasWhite && white.size() == 3, dictionary.errorType)) return;

    // X, Y and Z where the profile wants x, y and Y: nothing is computed through this white point but what hosts make
    // of the profile, and they have always got it so.
    const cmsCIExyY whitePoint{white[0], white[1], white[2]};
    profile = Raster::ICCManager::GetInstance().CreateProfile(cmsCreateLab2Profile(&whitePoint));

    const bool hasRange = dictionary.GetRealVec("Range", range);
    if (IsUsableRange(range)) return;
    dictionary.Check(!hasRange, dictionary.errorType);
    range = c_defaultRange;
}

void LabColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    picker.Add(Raster::Format::Lab16, profile, isExplicit);
}

Kernel::Consolidated<Renderer::Colour> LabColourSpace::MakeColour(const Colour& colour) const
{
    const std::vector<double>& ends = range.empty() ? c_defaultRange : range;
    const Raster::PixelLab16 pixel(MakeChannel(colour[0], 0, 100), MakeChannel(colour[1], ends[0], ends[1]),
                                   MakeChannel(colour[2], ends[2], ends[3]), std::numeric_limits<std::uint16_t>::max());
    return Renderer::ColourLAB::Create(pixel, 1.0, 1.0, {}, {ends[0], ends[1], ends[2], ends[3]});
}

std::vector<double> LabColourSpace::GetDefaultDecodeVec(int) const
{
    return {0, 1, 0, 1, 0, 1};
}

} // namespace Quillet
