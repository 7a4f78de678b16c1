/// Colours: what it costs to convert one for the screen, and to intern one.

#include <Kernel/Consolidated.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <pixels/ICCManager.h>

#include <benchmark/benchmark.h>
#include <lcms2.h>

#include <algorithm>
#include <vector>

namespace {

using namespace Renderer;

using Profiles = Raster::ICCManager::ICCProfileSet;

Kernel::Consolidated<Colour> MakeGray()
{
    return ColourGrayscale::Create(0.3, 1, 1, "");
}

Kernel::Consolidated<Colour> MakeRgb()
{
    return ColourRGB::Create(0.1f, 0.4f, 0.7f, 1, "");
}

Kernel::Consolidated<Colour> MakeCmyk()
{
    return ColourCMYK::Create(Raster::PixelCmyk8(200, 100, 50, 20, 255), 1, 1, "");
}

Kernel::Consolidated<Colour> MakeLab()
{
    return ColourLAB::Create(Raster::PixelLab16(40000, 30000, 45000, 65535), 1, 1, "");
}

Kernel::Consolidated<Colour> MakeSpot()
{
    return Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<ColourNamed>("Sunset", true, MakeCmyk()));
}

/// Lab of inks in the plainest way, in 16 bits (ICC.1:2010, 10.10).
cmsInt32Number PutLabOfInks(const cmsUInt16Number inks[], cmsUInt16Number lab[], void*)
{
    const auto light = [&](int ink) { return (65535 - inks[ink]) * (65535 - inks[3]) / 65535.0; };
    lab[0] = static_cast<cmsUInt16Number>((light(0) + light(1) + light(2)) / 3);
    lab[1] = static_cast<cmsUInt16Number>(32896 + (light(0) - light(1)) / 4);
    lab[2] = static_cast<cmsUInt16Number>(32896 + (light(1) - light(2)) / 4);
    return 1;
}

/// As large as those of printing conditions are, which no machine is sure to have.
void* MakeInkProfile()
{
    void* const profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 4.2);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* const pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* const table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
    cmsStageSampleCLut16bit(table, PutLabOfInks, nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return profile;
}

/// A profile for each model that is none of the default ones, so that each takes part.
Profiles MakeProfiles()
{
    auto& manager = Raster::ICCManager::GetInstance();
    const cmsCIExyY white = *cmsD50_xyY();
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, 1.8);
    cmsToneCurve* const curves[] = {curve, curve, curve};
    Profiles profiles;
    profiles.SetProfile(Raster::ColourSpace::Gray, manager.CreateProfile(cmsCreateGrayProfile(&white, curve)));
    profiles.SetProfile(Raster::ColourSpace::Rgb,
                        manager.CreateProfile(cmsCreateRGBProfile(&white, &primaries, curves)));
    profiles.SetProfile(Raster::ColourSpace::Cmyk, manager.CreateProfile(MakeInkProfile()));
    profiles.SetProfile(Raster::ColourSpace::Lab, manager.CreateProfile(cmsCreateLab2Profile(&white)));
    cmsFreeToneCurve(curve);
    return profiles;
}

void Convert(benchmark::State& state, Kernel::Consolidated<Colour> (*make)(), Profiles (*makeProfiles)())
{
    const auto colour = make();
    const Profiles profiles = makeProfiles();
    const auto rgb = colour->GetRgbaPixel(profiles);
    // A profile that could not be used would look quick, and so like no profile.
    const bool isByProfile = colour->GetModel() == Raster::ColourSpace::Lab || !(rgb == colour->GetRgbaPixel({}));
    if (profiles.GetProfileFor(colour->GetModel()) && !isByProfile) state.SkipWithError("the profile changes nothing");
    for (auto _ : state)
        benchmark::DoNotOptimize(colour->GetRgbaPixel(profiles));
    state.SetItemsProcessed(state.iterations());
}

Profiles MakeNoProfiles()
{
    return {};
}

BENCHMARK_CAPTURE(Convert, Gray, MakeGray, MakeNoProfiles);
BENCHMARK_CAPTURE(Convert, GrayByProfile, MakeGray, MakeProfiles);
BENCHMARK_CAPTURE(Convert, Rgb, MakeRgb, MakeNoProfiles);
BENCHMARK_CAPTURE(Convert, RgbByProfile, MakeRgb, MakeProfiles);
BENCHMARK_CAPTURE(Convert, Cmyk, MakeCmyk, MakeNoProfiles);
BENCHMARK_CAPTURE(Convert, CmykByProfile, MakeCmyk, MakeProfiles);
BENCHMARK_CAPTURE(Convert, Lab, MakeLab, MakeNoProfiles);
BENCHMARK_CAPTURE(Convert, LabByProfile, MakeLab, MakeProfiles);
BENCHMARK_CAPTURE(Convert, Spot, MakeSpot, MakeNoProfiles);
BENCHMARK_CAPTURE(Convert, SpotByProfile, MakeSpot, MakeProfiles);

/// Interns `count` colours of which `differentCount` differ, and lets go of them all.
void InternColours(benchmark::State& state, int count, int differentCount)
{
    const std::size_t sizeBefore = Kernel::InternTable::GetSize();
    std::size_t size = 0;
    std::vector<Kernel::Consolidated<Colour>> colours(static_cast<std::size_t>(count));
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) {
            const int number = i % differentCount;
            const auto red = static_cast<float>(number % 1000) / 1000;
            const auto green = static_cast<float>(number / 1000) / 1000;
            colours[static_cast<std::size_t>(i)] = ColourRGB::Create(red, green, 0.5f, 1, "");
        }
        size = Kernel::InternTable::GetSize() - sizeBefore;
        std::ranges::fill(colours, nullptr);
    }
    if (size != static_cast<std::size_t>(differentCount)) state.SkipWithError("not as many colours as there are");
    state.SetItemsProcessed(count * state.iterations());
}

void InternSame(benchmark::State& state)
{
    InternColours(state, static_cast<int>(state.range(0)), 1);
}

void InternDifferent(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    InternColours(state, count, count);
    state.SetComplexityN(count);
}

BENCHMARK(InternSame)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(InternDifferent)->RangeMultiplier(2)->Range(10000, 160000)->Unit(benchmark::kMillisecond)->Complexity();

} // namespace
