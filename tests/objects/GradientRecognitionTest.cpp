#include "MakeObjects.h"

#include "objects/reduction/GradientRecognition.h"

#include <Renderer/ColourCMYK.h>
#include <Renderer/ColourGrayscale.h>
#include <Renderer/ColourLAB.h>
#include <Renderer/FillGradient.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace Quillet::Test {
namespace {

using Colour = Kernel::Consolidated<Renderer::Colour>;

Colour MakeRed(double share)
{
    return Renderer::ColourRGB::Create(static_cast<float>(1 - share), 0, static_cast<float>(share), 1, {});
}

Colour MakeGray(double share)
{
    return Renderer::ColourGrayscale::Create(share, 1, 1, {});
}

Kernel::Counted<PathObject> MakeStrip(const Rect& rect, const Colour& colour)
{
    return Kernel::MakeCounted<PathObject>(nullptr, rect, MakePaint(colour));
}

/// Strips of width 2 and height 50 from (10, 20) on.
Kernel::Counted<GroupObject> MakeStack(int count, const std::function<Colour(double)>& makeColour = MakeRed)
{
    auto group = MakeGroup();
    for (int i = 0; i < count; ++i)
        group->Add(MakeStrip({10.0 + 2 * i, 20, 12.0 + 2 * i, 70}, makeColour(double(i) / (count - 1))));
    group->UpdateBBox();
    return group;
}

/// Around (x, 30).
Kernel::Counted<PathObject> MakeEllipse(double x, double width, double height, const Colour& colour)
{
    auto object = MakeStrip({}, colour);
    const auto oval = MakeOval(Params::Translation(x, 30) * Params::Scale(width / 2, height / 2));
    object->SetPath(MakePath(oval), Geometry::WindingOrderMode::NonZero, false);
    return object;
}

const Renderer::Gradient& GetGradient(const Object& object)
{
    const auto& path = static_cast<const PathObject&>(object);
    return *static_cast<const Renderer::FillGradient&>(*path.brushDescriptor->fill).gradient;
}

TEST(GradientRecognition, FindsStacksOfStrips)
{
    const auto none = [](PathObject&) {};
    const auto box = [](Rect rect) { return [rect](PathObject& strip) { strip.SetBBox(rect); }; };
    const auto clip = [](PathObject& strip) { strip.SetClipPath(MakeRectangle({0, 0, 90, 90}), {}); };
    const auto stroke = [](PathObject& strip) {
        strip.penDescriptor = MakePaint();
        strip.lineStyleDescriptor = MakeLine(1);
    };
    const struct
    {
        const char* name;
        int count, changed;
        std::function<void(PathObject&)> change;
        bool isGradient = false;
    } rows[] = {
        {"16 strips", 16, 0, none, true},
        {"15 strips", 15, 0, none},
        {"a shorter one", 20, 5, box({20, 20, 22, 69.996}), true},
        {"one too short", 20, 5, box({20, 20, 22, 69.99})},
        {"a narrow gap", 20, 19, box({48.0005, 20, 50, 70}), true},
        {"a gap", 20, 19, box({48.002, 20, 50, 70})},
        {"one that goes on below", 20, 19, box({10, 70, 48, 90})},
        {"a turned one", 20, 7, [](auto& strip) { strip.SetTransform(MakeTurn(1)); }},
        {"a stroke", 20, 7, stroke},
        {"a clipped one", 20, 7, clip},
    };
    for (const auto& row : rows) {
        const auto group = MakeStack(row.count);
        row.change(static_cast<PathObject&>(*group->children[static_cast<std::size_t>(row.changed)]));
        group->ReduceGradient();
        EXPECT_EQ(group->children.size(), row.isGradient ? 1U : std::size_t(row.count)) << row.name;
        EXPECT_EQ(group->children.front()->parent.Get(), group.Get()) << row.name;
    }
}

TEST(GradientRecognition, PlacesTheRampOverAllStrips)
{
    const auto placed = [](const GroupObject& group, auto onRamp) {
        const auto& path = static_cast<const PathObject&>(*group.children.front());
        return path.brushDescriptor->transform.ApplyTo(onRamp);
    };
    const auto along = MakeStack(50);
    along->ReduceGradient();
    EXPECT_EQ(along->bbox, (Rect{10, 20, 110, 70}));
    EXPECT_TRUE(IsNear(placed(*along, Rect{0, 0, 1, 1}), {10, 20, 110, 70}, 1e-9));

    // From top to bottom of strips whose own spaces are flipped.
    const auto down = MakeGroup();
    for (int i = 0; i < 16; ++i) {
        const auto strip = MakeStrip({0, -2, 30, 0}, MakeRed(i / 15.0));
        strip->SetTransform(Params::FromPdf(1, 0, 0, -1, 5, 2.0 * i));
        down->Add(strip);
    }
    down->UpdateBBox();
    down->ReduceGradient();
    ASSERT_EQ(down->children.size(), 1U);
    const auto& stops = GetGradient(*down->children.front()).stops;
    const bool startsRed = stops.front().colour == MakeRed(0);
    EXPECT_EQ(stops.back().colour, MakeRed(startsRed ? 1 : 0));
    EXPECT_TRUE(IsNear(placed(*down, Rect{0, 0, 1, 1}), {5, 0, 35, 32}, 1e-9));
    EXPECT_NEAR(placed(*down, Kernel::PointT<double>{startsRed ? 0.0 : 1.0, 0.5}).y, 0, 1e-9);
}

TEST(GradientRecognition, KeepsTheStopsThatTellMoreThanTheirNeighbours)
{
    const auto countStops = [](const std::function<Colour(double)>& makeColour) {
        const auto group = MakeStack(256, makeColour);
        group->ReduceGradient();
        return GetGradient(*group->children.front()).stops.size();
    };
    const auto lab = [](double share) {
        return Renderer::ColourLAB::Create(
            Raster::PixelLab16(static_cast<std::uint16_t>(257 * std::lround(share * 255)), 0, 0, 65535), 1, 1, {});
    };
    const auto cmyk = [](double share) {
        const auto ink = static_cast<std::uint8_t>(std::lround(share * 255));
        return Renderer::ColourCMYK::Create(Raster::PixelCmyk8(ink, 0, 0, 0, 255), 1, 1, {});
    };
    EXPECT_EQ(countStops(MakeRed), 2U);
    EXPECT_EQ(countStops(cmyk), 2U);
    EXPECT_EQ(countStops(MakeGray), 256U) << "no model of its own";
    EXPECT_EQ(countStops([](double share) { return MakeRed(1 - std::abs(2 * share - 1)); }), 3U);
    EXPECT_EQ(countStops([&](double share) { return share < 0.5 ? MakeRed(share) : cmyk(share); }), 4U);
    // Exact in Lab, so rounding of the places may leave a few.
    EXPECT_LT(countStops(lab), 40U);

    const auto at = [&](double share, double position) { return Renderer::ColourPosition{lab(share), position}; };
    EXPECT_TRUE(Reduction::IsInterpolate(at(0, 0), at(0.2, 0.2), at(1, 1)));
    const Renderer::ColourPosition off{Renderer::ColourLAB::Create(Raster::PixelLab16(13108, 0, 0, 65535), 1, 1, {}),
                                       0.2};
    EXPECT_FALSE(Reduction::IsInterpolate(at(0, 0), off, at(1, 1))) << "one of 65,536 off";
}

TEST(GradientRecognition, FindsEllipsesAroundOneCentre)
{
    const auto make = [](int ellipses, double offset, bool hasBackground) {
        auto group = MakeGroup();
        if (hasBackground) group->Add(MakeStrip({0, 0, 100, 60}, MakeRed(0)));
        for (int i = 0; i < ellipses; ++i) {
            const double part = 1 - double(i) / ellipses;
            group->Add(MakeEllipse(50 + (i == 9 ? offset : 0), 90 * part, 50 * part, MakeRed(1 - part)));
        }
        group->UpdateBBox();
        group->ReduceGradient();
        return group;
    };
    EXPECT_EQ(make(20, 0, false)->children.size(), 20U);
    EXPECT_EQ(make(14, 0, true)->children.size(), 15U);
    EXPECT_EQ(make(20, 0.002, true)->children.size(), 21U);
    const auto group = make(20, 0, true);
    ASSERT_EQ(group->children.size(), 1U);
    const auto& stops = GetGradient(*group->children.front()).stops;
    EXPECT_EQ(stops.front().colour, MakeRed(0.95)) << "the innermost is the topmost at the centre";
    EXPECT_EQ(stops.back().colour, MakeRed(0));
    const auto& placement = static_cast<const PathObject&>(*group->children.front()).brushDescriptor->transform;
    EXPECT_EQ(placement.ApplyTo(Rect{-1, -1, 1, 1}), (Rect{5, 5, 95, 55}));
}

} // namespace
} // namespace Quillet::Test
