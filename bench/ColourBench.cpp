/// Colours: what it costs to convert one for the screen, and to intern one.

#include <Kernel/Consolidated.h>
#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/ColourNamed.h>
#include <Renderer/ColourRGB.h>
#include <Raster/ICCManager.h>

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

/// Lab of inks in the plainest way, in the 16 bits of older profiles (ICC.1:2010, 10.8).
cmsInt32Number PutLabOfInks(const cmsUInt16Number inks[], cmsUInt16Number lab[], void*)
{
    const auto light = [&](int ink) { return (65535 - inks[ink]) * (65535 - inks[3]) / 65535.0; };
    lab[0] = static_cast<cmsUInt16Number>((light(0) + light(1) + light(2)) / 65535 * 65280 / 3);
    lab[1] = static_cast<cmsUInt16Number>(32768 + (light(0) - light(1)) / 4);
    lab[2] = static_cast<cmsUInt16Number>(32768 + (light(1) - light(2)) / 4);
    return 1;
}

/// As large as those of printing conditions are, which no machine is sure to have.
void* MakeInkProfile()
{
    void* const profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.1);
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

void Convert(benchmark::State& state, Kernel::Consolidated<Colour> (*make)())
{
    const auto colour = make();
    for (auto _ : state)
        benchmark::DoNotOptimize(colour->GetRgbaPixel({}));
    state.SetItemsProcessed(state.iterations());
}

void ConvertByProfile(benchmark::State& state, Kernel::Consolidated<Colour> (*make)())
{
    const auto colour = make();
    const Profiles profiles = MakeProfiles();
    // A profile of no use would look quick. That of Lab gives the same colours as the default one does.
    const bool isSame = colour->GetRgbaPixel(profiles) == colour->GetRgbaPixel({});
    if (!profiles.GetProfileFor(colour->GetModel()) || (isSame && colour->GetModel() != Raster::ColourSpace::Lab)) {
        state.SkipWithError("the profile changes nothing");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(colour->GetRgbaPixel(profiles));
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(Convert, Gray, MakeGray);
BENCHMARK_CAPTURE(Convert, Rgb, MakeRgb);
BENCHMARK_CAPTURE(Convert, Cmyk, MakeCmyk);
BENCHMARK_CAPTURE(Convert, Lab, MakeLab);
BENCHMARK_CAPTURE(Convert, Spot, MakeSpot);
BENCHMARK_CAPTURE(ConvertByProfile, Gray, MakeGray);
BENCHMARK_CAPTURE(ConvertByProfile, Rgb, MakeRgb);
BENCHMARK_CAPTURE(ConvertByProfile, Cmyk, MakeCmyk);
BENCHMARK_CAPTURE(ConvertByProfile, Lab, MakeLab);
BENCHMARK_CAPTURE(ConvertByProfile, Spot, MakeSpot);

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
            const int row = number / 1000;
            const auto green = static_cast<float>(row) / 1000;
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
void Double(benchmark::internal::Benchmark* bench)
{
    for (int count = 10000; count <= 160000; count *= 2)
        bench->Arg(count);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK(InternDifferent)->Apply(Double);

} // namespace
