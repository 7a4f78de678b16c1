#include "ContentRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;
using testing::IsEmpty;

/// The objects of a page as one letter each: f filled, s stroked, b both, and the number of curves.
std::string Describe(const ContentRun& run)
{
    std::string text;
    for (std::size_t i = 0; i < run.GetCount(); ++i) {
        const auto path = run.GetPath(i);
        if (!path) {
            text += "c";
            continue;
        }
        text += path->IsFilled() ? path->IsStroked() ? "b" : "f" : "s";
        text += std::to_string(path->path->curves.size());
    }
    return text;
}

TEST(PathTest, PaintsWhatCanBeSeen)
{
    const std::pair<const char*, const char*> rows[] = {
        {"S f B", ""},
        // A dot shows under a round cap only.
        {"5 5 m S", ""},
        {"1 J 5 5 m S", "s1"},
        // A closed or drawn point fills a speck.
        {"5 5 m h f", "f1"},
        {"1 J 5 5 m b", "f1s1"},
        {"1 J 0 0 9 9 re 5 5 m B", "f1s2"},
        {"5 5 m 0 0 9 9 re B", "b1"},
        {"0 0 m 9 9 l 1 1 m 2 2 m 8 2 l S", "s2"},
        // A path is gone once painted.
        {"0 0 9 9 re S 0 0 9 9 re 0 0 5 5 re f S", "s1f2"},
    };
    for (const auto& [content, objects] : rows)
        EXPECT_EQ(Describe(ContentRun(content)), objects) << content;
}

TEST(PathTest, BuildsCurvesOfTriples)
{
    const std::pair<std::string, std::vector<std::vector<Point>>> rows[] = {
        {"1 2 m 3 4 l 3 4 l", {{{1, 2}, {1, 2}, {3, 4}, {3, 4}}}},
        {"0 0 m 1 2 3 4 v", {{{0, 0}, {0, 0}, {1, 2}, {3, 4}}}},
        {"0 0 m 1 2 3 4 y", {{{0, 0}, {1, 2}, {3, 4}, {3, 4}}}},
        // A close that has to go back leaves a last point.
        {"0 0 m 5 0 l h h", {{{0, 0}, {0, 0}, {5, 0}, {5, 0}, {0, 0}}}},
        {"0 0 m 5 0 l 0 0 l h", {{{0, 0}, {0, 0}, {5, 0}, {5, 0}, {5, 0}, {0, 0}, {0, 0}}}},
        // Behind a close the next segment starts where the closed subpath ended.
        {"1 1 m 5 1 l h 7 8 l", {{{1, 1}, {1, 1}, {5, 1}, {5, 1}, {1, 1}}, {{1, 1}, {1, 1}, {7, 8}, {7, 8}}}},
        // What is missing reads as 0, and what is too much is not read.
        {"7 m 1 2 3 l", {{{7, 0}, {7, 0}, {1, 2}, {1, 2}}}},
    };
    for (const auto& [content, expected] : rows) {
        std::vector<std::vector<Point>> curves;
        const ContentRun run(content + " probe", {}, [&](GraphicsStateStack& stack, const ArgVec&) {
            for (std::size_t i = 0; i < stack.path.count; ++i)
                curves.emplace_back(stack.path.subPaths[i].points.begin(), stack.path.subPaths[i].points.end());
        });
        EXPECT_EQ(curves, expected) << content;
    }
}

TEST(PathTest, ContinuesARectangleAtItsStart)
{
    const ContentRun run("1 2 3 4 re 9 9 l S");
    ASSERT_EQ(run.GetCount(), 1U);
    const auto& curves = run.GetPath(0)->path->curves;
    ASSERT_EQ(curves.size(), 2U);
    EXPECT_EQ(curves[0]->nodes.size(), 13U);
    EXPECT_TRUE(curves[0]->IsClosed());
    EXPECT_FALSE(curves[1]->IsClosed());
    EXPECT_EQ(curves[1]->nodes.front().point, curves[0]->nodes.front().point);
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(PathTest, MakesDotsAndSpecksOfPoints)
{
    PdfPath path;
    path.StartSubPath(5, 6);
    EXPECT_FALSE(path.MakePath(Fill::Stroke, false));
    EXPECT_FALSE(path.MakePath(Fill::Fill, true));
    EXPECT_EQ(path.MakePath(Fill::Stroke, true)->GetExactBBox(), (Rect{5, 6, 5 + 1e-5, 6}));
    path.CloseBackSubPath();
    EXPECT_EQ(path.MakePath(Fill::Fill, false)->GetExactBBox(), (Rect{5, 6, 5.001, 6.001}));
    EXPECT_FALSE(path.MakePath(Fill::FillAndStroke, true));
}

TEST(PathTest, ClipsWhatFollows)
{
    using enum Geometry::WindingOrderMode;
    const struct
    {
        const char* content;
        const char* objects;
        Rect clip;
        Geometry::WindingOrderMode winding;
    } rows[] = {
        {"0 0 9 9 re W* f", "f1c", {0, 91, 9, 100}, EvenOdd},
        {"2 0 0 2 0 0 cm 0 0 9 9 re W n", "c", {0, 82, 18, 100}, NonZero},
        // Nothing shows through the clip of an empty path.
        {"W n", "c", {0, 100 - 1e-5, 1e-5, 100}, NonZero},
        // The clip waits for the next painting operator.
        {"0 0 9 9 re W 1 w q Q n", "c", {0, 91, 9, 100}, NonZero},
    };
    for (const auto& row : rows) {
        const ContentRun run(std::string(row.content) + " 1 1 1 1 re f");
        EXPECT_EQ(Describe(run), row.objects) << row.content;
        const auto group = run.GetGroup(run.GetCount() - 1);
        ASSERT_TRUE(group) << row.content;
        EXPECT_EQ(group->clipPath->GetApproxBBox(), row.clip) << row.content;
        EXPECT_EQ(group->clipWinding, row.winding) << row.content;
    }
}

} // namespace
} // namespace Quillet::Test
