#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/FillSolid.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Renderer;
using Raster::AffineTransform::Params;

/// Stands for any fill whose look depends on its place.
class PlacedFill : public Fill
{
public:
    Kind GetKind() const override { return Kind::Bitmap; }
    bool IsOpaque() const override { return true; }
    Kernel::Consolidated<Fill> MakeWithAlpha(double) const override
    {
        return Kernel::ConsolidateObjectPostAlloc(*this);
    }
    std::size_t GetHash() const override { return 1; }
    bool IsEqual(const Kernel::Consolidatable&) const override { return true; }
};

Kernel::Consolidated<Fill> Solid(float alpha)
{
    return Kernel::ConsolidateObjectPostAlloc(FillSolid(ColourRGB::Create(1, 0, 0, alpha, "")));
}

Kernel::Consolidated<Fill> Placed()
{
    return Kernel::ConsolidateObjectPostAlloc(PlacedFill());
}

TEST(Fill, AlphaMultipliesWhatTheColourHas)
{
    constexpr double c_infinity = std::numeric_limits<double>::infinity();
    constexpr struct
    {
        float own;
        double asked;
        float result;
    } c_rows[] = {
        {1, 1, 1},    {1, 0.5, 0.5f}, {0.5f, 0.5, 0.25f},       {0, 1, 0},
        {1, 1.25, 1}, {1, -1, 0},     {0.5f, c_infinity, 0.5f}, {1, std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const auto& row : c_rows) {
        const Kernel::Consolidated<Fill> result = Solid(row.own)->MakeWithAlpha(row.asked);
        EXPECT_EQ(result, Solid(row.result)) << row.own << " " << row.asked;
        EXPECT_EQ(result->IsOpaque(), row.result == 1) << row.own << " " << row.asked;
    }
}

TEST(FillDescriptor, NothingIsEmptyAndTransparentIsNot)
{
    const Kernel::Counted<FillDescriptor> none = FillDescriptor::CreateNone();
    EXPECT_TRUE(none->IsEmpty());
    EXPECT_EQ(none->fill->MakeWithAlpha(0.5), none->fill);
    EXPECT_TRUE(FillDescriptor(nullptr, FillBlendMode::Normal).IsEmpty());
    EXPECT_TRUE(FillDescriptor(nullptr, FillBlendMode::Normal).IsEqual(*none));
    EXPECT_FALSE(FillDescriptor(Solid(0), FillBlendMode::Normal).IsEmpty());
    EXPECT_EQ(FillSolid(nullptr).GetColour(), ColourGrayscale::Create(0, 1, 1, ""));
}

TEST(FillDescriptor, CopyIsMovedAfterItsOwnPlacement)
{
    const FillDescriptor scaled(Placed(), true, Params::Scale(2, 3), FillBlendMode::Multiply, true);
    const FillDescriptor moved(scaled, Params::Translation(10, 20));
    EXPECT_EQ(moved.transform, (Params{2, 0, 10, 0, 3, 20}));

    const FillDescriptor bare(Placed(), FillBlendMode::Normal);
    EXPECT_TRUE(FillDescriptor(bare, Params::Scale(2, 2)).hasTransform);
}

TEST(FillDescriptor, PlaceOfAFlatColourDoesNotCount)
{
    const FillDescriptor solid(Solid(1), FillBlendMode::Normal);
    const FillDescriptor turned(solid, Params{0, -1, 0, 1, 0, 0});
    EXPECT_FALSE(turned.hasTransform);
    const FillDescriptor placed(Solid(1), true, Params::Scale(2, 2), FillBlendMode::Normal, true);
    for (const FillDescriptor* other : {&turned, &placed}) {
        EXPECT_TRUE(solid.IsEqual(*other));
        EXPECT_EQ(solid.GetHash(), other->GetHash());
    }
    EXPECT_FALSE(solid.IsEqual(FillDescriptor(Solid(1), FillBlendMode::Multiply)));

    const FillDescriptor bitmap(Placed(), true, Params::Scale(2, 2), FillBlendMode::Normal, false);
    EXPECT_FALSE(bitmap.IsEqual(FillDescriptor(bitmap, Params::Translation(0, 1))));
    EXPECT_FALSE(bitmap.IsEqual(FillDescriptor(Placed(), FillBlendMode::Normal)));
}

} // namespace
