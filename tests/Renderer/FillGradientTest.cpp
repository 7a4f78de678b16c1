#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillGradient.h>

#include <gtest/gtest.h>

namespace {

using namespace Renderer;

Kernel::Consolidated<Gradient> MakeRamp(float alpha, double position = 1)
{
    const auto white = ColourGrayscale::Create(1, 1, 1, "");
    return Gradient::Create({{white, 0}, {white->MakeWithAlpha(alpha), position}});
}

TEST(FillGradient, EqualRampsAreOneFill)
{
    EXPECT_EQ(MakeRamp(1), MakeRamp(1));
    EXPECT_NE(MakeRamp(1), MakeRamp(0.5f));
    EXPECT_NE(MakeRamp(1), MakeRamp(1, 0.5));
    const auto make = [](FillGradient::FillGradientType type, const Kernel::Consolidated<Gradient>& ramp) {
        return Kernel::ConsolidateObjectPostAlloc(FillGradient(type, ramp));
    };
    EXPECT_EQ(make(FillGradient::Linear, MakeRamp(1)), make(FillGradient::Linear, MakeRamp(1)));
    EXPECT_NE(make(FillGradient::Linear, MakeRamp(1)), make(FillGradient::Elliptical, MakeRamp(1)));
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
