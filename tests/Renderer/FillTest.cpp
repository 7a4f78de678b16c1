#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/FillGradient.h>
#include <Renderer/FillSolid.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Renderer;
using Raster::AffineTransform::Params;

Kernel::Consolidated<Fill> Solid(float alpha)
{
    return Kernel::ConsolidateObjectPostAlloc(FillSolid(ColourRGB::Create(1, 0, 0, alpha, "")));
}

Kernel::Consolidated<Gradient> MakeRamp(float alpha, double position = 1)
{
    const auto white = ColourGrayscale::Create(1, 1, 1, "");
    return Gradient::Create({{white, 0}, {white->MakeWithAlpha(alpha), position}});
}

Kernel::Consolidated<Fill> MakeGradient(FillGradient::FillGradientType type, float alpha, double position = 1)
{
    return Kernel::ConsolidateObjectPostAlloc(FillGradient(type, MakeRamp(alpha, position)));
}

constexpr auto c_normal = FillBlendMode::Normal;

TEST(Fill, AlphaMultipliesWhatTheColourHas)
{
    constexpr double c_infinity = std::numeric_limits<double>::infinity();
    constexpr std::tuple<float, double, float> c_rows[] = {
        {1, 1, 1},    {1, 0.5, 0.5f}, {0.5f, 0.5, 0.25f},       {0, 1, 0},
        {1, 1.25, 1}, {1, -1, 0},     {0.5f, c_infinity, 0.5f}, {1, std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const auto& [own, asked, expected] : c_rows) {
        const Kernel::Consolidated<Fill> result = Solid(own)->MakeWithAlpha(asked);
        EXPECT_EQ(result, Solid(expected)) << own << " " << asked;
        EXPECT_EQ(result->IsOpaque(), expected == 1) << own << " " << asked;
    }
}

TEST(FillDescriptor, NothingIsEmptyAndTransparentIsNot)
{
    const Kernel::Counted<FillDescriptor> none = FillDescriptor::CreateNone();
    EXPECT_TRUE(none->IsEmpty());
    EXPECT_EQ(none->fill->MakeWithAlpha(0.5), none->fill);
    EXPECT_TRUE(FillDescriptor(nullptr, c_normal).IsEmpty());
    EXPECT_TRUE(FillDescriptor(nullptr, c_normal).IsEqual(*none));
    EXPECT_FALSE(FillDescriptor(Solid(0), c_normal).IsEmpty());
    EXPECT_EQ(FillSolid(nullptr).GetColour(), ColourGrayscale::Create(0, 1, 1, ""));
}

TEST(FillDescriptor, CopyIsMovedAfterItsOwnPlacement)
{
    const auto placed = MakeGradient(FillGradient::Linear, 1);
    const FillDescriptor scaled(placed, true, Params::Scale(2, 3), c_normal, false);
    const FillDescriptor moved(scaled, Params::Translation(10, 20));
    EXPECT_EQ(moved.transform, (Params{2, 0, 10, 0, 3, 20}));

    const FillDescriptor bare(placed, c_normal);
    EXPECT_TRUE(FillDescriptor(bare, Params::Scale(2, 2)).hasTransform);
    EXPECT_FALSE(scaled.IsEqual(FillDescriptor(scaled, Params::Translation(0, 1))));
    EXPECT_FALSE(scaled.IsEqual(bare));
    // The place of a flat colour does not count.
    const FillDescriptor solid(Solid(1), c_normal);
    const FillDescriptor turned(solid, Params{0, -1, 0, 1, 0, 0});
    EXPECT_FALSE(turned.hasTransform);
    const FillDescriptor scaledSolid(Solid(1), true, Params::Scale(2, 2), c_normal, true);
    for (const FillDescriptor* other : {&turned, &scaledSolid}) {
        EXPECT_TRUE(solid.IsEqual(*other));
        EXPECT_EQ(solid.GetHash(), other->GetHash());
    }
    EXPECT_FALSE(solid.IsEqual(FillDescriptor(Solid(1), FillBlendMode::Multiply)));
}

TEST(FillBlendMode, NamesAndModesBelongTogether)
{
    namespace Mode = FillBlendMode;
    const char* const names[] = {"Normal",     "Multiply",   "Screen",    "Overlay",   "Darken",     "Lighten",
                                 "ColorDodge", "ColorBurn",  "HardLight", "SoftLight", "Difference", "Exclusion",
                                 "Hue",        "Saturation", "Color",     "Luminosity"};
    for (int mode = Mode::Normal; mode <= Mode::Luminosity; ++mode) {
        EXPECT_EQ(Mode::GetByName(names[mode]), mode);
        EXPECT_STREQ(Mode::GetName(static_cast<Mode::BlendMode>(mode)), names[mode]);
    }
    EXPECT_EQ(Mode::GetByName("Compatible"), Mode::Normal);
    for (const char* name : {"", "normal", "Colour", static_cast<const char*>(nullptr)})
        EXPECT_EQ(static_cast<int>(Mode::GetByName(name)), 38) << (name ? name : "null");
}

TEST(FillGradient, EqualRampsAreOneFill)
{
    EXPECT_EQ(MakeGradient(FillGradient::Linear, 1), MakeGradient(FillGradient::Linear, 1));
    EXPECT_NE(MakeGradient(FillGradient::Linear, 1), MakeGradient(FillGradient::Elliptical, 1));
    EXPECT_NE(MakeGradient(FillGradient::Linear, 1), MakeGradient(FillGradient::Linear, 0.5f));
    EXPECT_NE(MakeGradient(FillGradient::Linear, 1), MakeGradient(FillGradient::Linear, 1, 0.5));
}

TEST(FillGradient, AlphaGoesToEveryStop)
{
    const FillGradient fill(FillGradient::Elliptical, MakeRamp(0.5f));
    EXPECT_TRUE(fill.HasPlacement());
    EXPECT_FALSE(fill.IsOpaque());
    EXPECT_TRUE(FillGradient(FillGradient::Linear, MakeRamp(1)).IsOpaque());
    const auto weaker = fill.MakeWithAlpha(0.5);
    const auto& gradient = *dynamic_cast<const FillGradient&>(*weaker).gradient;
    EXPECT_EQ(gradient.stops[0].colour->GetAlpha(), 0.5f);
    EXPECT_EQ(gradient.stops[1].colour->GetAlpha(), 0.25f);
    EXPECT_EQ(gradient.stops[1].midpoint, 0.5);

    const FillGradient none(FillGradient::Linear, nullptr);
    EXPECT_TRUE(none.IsEmpty());
    EXPECT_FALSE(none.IsOpaque());
    EXPECT_TRUE(none.MakeWithAlpha(0.5)->IsEmpty());
}

} // namespace
