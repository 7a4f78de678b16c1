#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/FillNone.h>
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

TEST(Fill, EmptyIsNotTransparent)
{
    const Kernel::Consolidated<Fill> none = FillNone::Get();
    EXPECT_TRUE(none->IsEmpty());
    EXPECT_FALSE(none->IsOpaque());
    EXPECT_EQ(none->GetColour(), nullptr);
    EXPECT_EQ(none->MakeWithAlpha(0.5), none);

    EXPECT_FALSE(Solid(0)->IsEmpty());
    EXPECT_EQ(Solid(0)->GetKind(), Fill::Kind::Solid);
    EXPECT_EQ(Solid(1)->GetColour(), ColourRGB::Create(1, 0, 0, 1, ""));
    EXPECT_EQ(FillSolid(nullptr).GetColour(), ColourGrayscale::Create(0, 1, 1, ""));
}

TEST(FillDescriptor, NoneIsOneEmptyObject)
{
    const Kernel::Counted<FillDescriptor> none = FillDescriptor::CreateNone();
    EXPECT_EQ(none, FillDescriptor::CreateNone());
    EXPECT_TRUE(none->IsEmpty());
    EXPECT_EQ(none->blendMode, FillBlendMode::Normal);

    const FillDescriptor nullFill(nullptr, FillBlendMode::Normal);
    EXPECT_TRUE(nullFill.IsEmpty());
    EXPECT_TRUE(nullFill.IsEqual(*none));
    EXPECT_FALSE(FillDescriptor(Solid(0), FillBlendMode::Normal).IsEmpty());
}

TEST(FillDescriptor, CopyIsMovedAfterItsOwnPlacement)
{
    const FillDescriptor scaled(Placed(), true, Params::Scale(2, 3), FillBlendMode::Multiply, true);
    const FillDescriptor moved(scaled, Params::Translation(10, 20));
    EXPECT_EQ(moved.transform, (Params{2, 0, 10, 0, 3, 20}));
    EXPECT_TRUE(moved.hasTransform);
    EXPECT_EQ(moved.fill, scaled.fill);
    EXPECT_EQ(moved.blendMode, FillBlendMode::Multiply);
    EXPECT_TRUE(moved.isScaledWithObject);
    EXPECT_EQ(scaled.transform, Params::Scale(2, 3));

    const FillDescriptor bare(Placed(), FillBlendMode::Normal);
    EXPECT_FALSE(bare.hasTransform);
    EXPECT_EQ(FillDescriptor(bare, Params::Scale(2, 2)).transform, Params::Scale(2, 2));
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
    EXPECT_FALSE(solid.IsEqual(FillDescriptor(Solid(0.5f), FillBlendMode::Normal)));

    const FillDescriptor bitmap(Placed(), true, Params::Scale(2, 2), FillBlendMode::Normal, false);
    EXPECT_TRUE(bitmap.IsEqual(FillDescriptor(bitmap, Params{})));
    EXPECT_FALSE(bitmap.IsEqual(FillDescriptor(bitmap, Params::Translation(0, 1))));
    EXPECT_FALSE(bitmap.IsEqual(FillDescriptor(Placed(), FillBlendMode::Normal)));
}

} // namespace
