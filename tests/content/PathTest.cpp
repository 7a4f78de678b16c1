#include "ContentRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Quillet::Test {
namespace {

using Point = Kernel::PointT<double>;
using Rect = Kernel::RectT<double>;
using testing::ElementsAre;
using testing::ElementsAreArray;
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
        {"0 0 9 9 re S", "s1"},
        {"0 0 9 9 re f", "f1"},
        {"0 0 9 9 re F", "f1"},
        {"0 0 9 9 re b*", "b1"},
        {"0 0 9 9 re n 0 0 m", ""},
        {"S f B", ""},
        // A dot shows under a round cap only.
        {"5 5 m S", ""},
        {"1 J 5 5 m S", "s1"},
        {"2 J 5 5 m S", ""},
        {"1 J 5 5 m h S", "s1"},
        {"1 J 5 5 m 5 5 l S", "s1"},
        // A closed or drawn point fills a speck.
        {"5 5 m f", ""},
        {"5 5 m h f", "f1"},
        {"5 5 m 5 5 l f", "f1"},
        {"5 5 m 5 5 5 5 5 5 c f", "f1"},
        {"5 5 m B", ""},
        {"5 5 m b", "f1"},
        {"1 J 5 5 m B", "s1"},
        {"1 J 5 5 m b", "f1s1"},
        {"0 0 9 9 re 5 5 m B", "f1s1"},
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
    struct Row
    {
        const char* content;
        std::vector<std::vector<Point>> curves;
    };
    const Row rows[] = {
        {"1 2 m 3 4 l 3 4 l", {{{1, 2}, {1, 2}, {3, 4}, {3, 4}}}},
        {"0 0 m 1 2 3 4 5 6 c", {{{0, 0}, {1, 2}, {3, 4}, {5, 6}}}},
        {"0 0 m 1 2 3 4 v", {{{0, 0}, {0, 0}, {1, 2}, {3, 4}}}},
        {"0 0 m 1 2 3 4 y", {{{0, 0}, {1, 2}, {3, 4}, {3, 4}}}},
        // A close that has to go back leaves a last point.
        {"0 0 m 5 0 l h h", {{{0, 0}, {0, 0}, {5, 0}, {5, 0}, {0, 0}}}},
        {"0 0 m 5 0 l 0 0 l h", {{{0, 0}, {0, 0}, {5, 0}, {5, 0}, {5, 0}, {0, 0}, {0, 0}}}},
        {"0 0 m 1 1 m", {{{1, 1}}}},
        // Behind a close the next segment starts where the closed subpath ended.
        {"1 1 m 5 1 l h 7 8 l", {{{1, 1}, {1, 1}, {5, 1}, {5, 1}, {1, 1}}, {{1, 1}, {1, 1}, {7, 8}, {7, 8}}}},
        {"4 5 l", {{{0, 0}, {0, 0}, {4, 5}, {4, 5}}}},
        // What is missing reads as 0, and what is too much is not read.
        {"7 m 1 2 3 l", {{{7, 0}, {7, 0}, {1, 2}, {1, 2}}}},
    };
    for (const Row& row : rows) {
        int calls = 0;
        const ContentRun run(std::string(row.content) + " probe", {}, [&](GraphicsStateStack& stack, const ArgVec&) {
            ++calls;
            ASSERT_EQ(stack.path.count, row.curves.size()) << row.content;
            for (std::size_t i = 0; i < row.curves.size(); ++i) {
                EXPECT_THAT(stack.path.subPaths[i].points, ElementsAreArray(row.curves[i])) << row.content;
            }
        });
        EXPECT_EQ(calls, 1);
    }
}

TEST(PathTest, ContinuesARectangleAtItsStart)
{
    const ContentRun run("1 2 3 4 re 9 9 l probe S", {}, [](GraphicsStateStack& stack, const ArgVec&) {
        ASSERT_EQ(stack.path.count, 2U);
        EXPECT_TRUE(stack.path.subPaths[0].isClosed);
        EXPECT_EQ(stack.path.subPaths[1].points.front(), (Point{1, 2}));
    });
    ASSERT_EQ(run.GetCount(), 1U);
    const auto& curves = run.GetPath(0)->path->curves;
    ASSERT_EQ(curves.size(), 2U);
    EXPECT_EQ(curves[0]->nodes.size(), 13U);
    EXPECT_TRUE(curves[0]->IsClosed());
    EXPECT_FALSE(curves[1]->IsClosed());
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(PathTest, MakesDotsAndSpecksOfPoints)
{
    PdfPath path;
    path.StartSubPath(5, 6);
    EXPECT_FALSE(path.MakePath(Fill::Stroke, false));
    EXPECT_FALSE(path.MakePath(Fill::Fill, true));
    EXPECT_FALSE(path.MakePath(Fill::None, true));
    EXPECT_EQ(path.MakePath(Fill::Stroke, true)->GetExactBBox(), (Rect{5, 6, 5 + 1e-5, 6}));
    path.CloseBackSubPath();
    EXPECT_EQ(path.MakePath(Fill::Fill, false)->GetExactBBox(), (Rect{5, 6, 5.001, 6.001}));
    EXPECT_FALSE(path.MakePath(Fill::FillAndStroke, true));
}

TEST(PathTest, KeepsItsStorage)
{
    PdfPath path;
    for (int i = 0; i < 3; ++i)
        path.StartSubPath(i, 0).LineTo(9, 9);
    const PdfSubPath::Point* storage = path.subPaths[0].points.data();
    path.Clear();
    EXPECT_FALSE(path.CloseBackSubPath());
    path.StartSubPath(7, 7).LineTo(8, 8);
    EXPECT_EQ(path.count, 1U);
    EXPECT_EQ(path.subPaths.size(), 3U);
    EXPECT_EQ(path.subPaths[0].points.data(), storage);
    EXPECT_FALSE(path.subPaths[0].isClosed);
}

TEST(PathTest, ClipsWhatFollows)
{
    struct Row
    {
        const char* content;
        const char* objects;
        Rect clip;
        Geometry::WindingOrderMode winding;
    };
    using enum Geometry::WindingOrderMode;
    const Row rows[] = {
        {"0 0 9 9 re W n", "c", {0, 91, 9, 100}, NonZero},
        {"0 0 9 9 re W* f", "f1c", {0, 91, 9, 100}, EvenOdd},
        {"0 0 9 9 re W W* n", "c", {0, 91, 9, 100}, EvenOdd},
        {"2 0 0 2 0 0 cm 0 0 9 9 re W n", "c", {0, 82, 18, 100}, NonZero},
        // Nothing shows through the clip of an empty path.
        {"W n", "c", {0, 100 - 1e-5, 1e-5, 100}, NonZero},
        {"5 5 m W n", "c", {0, 100 - 1e-5, 1e-5, 100}, NonZero},
        // The clip waits for the next painting operator.
        {"0 0 9 9 re W 1 w q Q n", "c", {0, 91, 9, 100}, NonZero},
    };
    for (const Row& row : rows) {
        const ContentRun run(std::string(row.content) + " 1 1 1 1 re f");
        EXPECT_EQ(Describe(run), row.objects) << row.content;
        const auto group = run.GetGroup(run.GetCount() - 1);
        ASSERT_TRUE(group) << row.content;
        EXPECT_EQ(group->clipPath->GetApproxBBox(), row.clip) << row.content;
        EXPECT_EQ(group->clipWinding, row.winding) << row.content;
        EXPECT_TRUE(group->clipPath->GetAllCurvesClosed()) << row.content;
        EXPECT_EQ(group->children.size(), 1U) << row.content;
    }
}

} // namespace
} // namespace Quillet::Test
