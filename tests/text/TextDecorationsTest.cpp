#include <Quillet/ColumnObject.h>

#include "MakeLines.h"
#include "document/Dictionary.h"
#include "objects/MakeObjects.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <utility>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;
using Path = Kernel::Counted<PathObject>;

/// A rule across a line, in points below the baseline.
struct Place
{
    double top, height;
};

/// Where the test font has its decorations at 10 points.
struct Places
{
    static Place Scale(const Renderer::TextRule& rule) { return {rule.top * 10, rule.thickness * 10}; }

    Atts atts = MakeAtts();
    const Renderer::FontMetrics& metrics = *atts->GetFontMetrics();
    Place underline{metrics.GetUnderlinePosition() * 10, metrics.GetUnderlineThickness() * 10};
    Place strikeout{metrics.GetStrikeoutPosition() * 10, metrics.GetStrikeoutThickness() * 10};
    Place highlight{-atts->GetAscent(), atts->GetAscent() + atts->GetDescent()};
};

Path MakeRule(double left, double right, const Place& place, double baseline = 200)
{
    return MakeBox({left, baseline + place.top, right, baseline + place.top + place.height});
}

/// A level stroke whose ink is the same rectangle.
Path MakeStroke(double left, double right, const Place& place, double baseline = 200)
{
    const Path path = MakeBox({});
    path->brushDescriptor = nullptr;
    path->penDescriptor = MakePaint();
    path->lineStyleDescriptor = Quillet::Test::MakeLine(place.height);
    const double y = baseline + place.top + place.height / 2;
    auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddLine({left, y}, {right, y});
    auto curves = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    curves->AddCurve(curve);
    path->SetPath(curves, Geometry::WindingOrderMode::NonZero, true);
    return path;
}

/// "abcd" of 6 points each, from x = 100 on the baseline y = 200 of the page.
Line MakeTestLine()
{
    return At(100, -200, ParseLine("a6 b6 c6 d6"));
}

/// Which characters have a decoration: "u", "s" and "h".
std::string PrintDecorations(const TextLineObject& line)
{
    std::string text;
    for (const Char& c : line.chars) {
        std::string marks;
        if (c.atts->Get(Underline) != 0) marks += c.atts->GetFill(UnderlineFill)->IsEmpty() ? "u" : "U";
        if (c.atts->Get(Strikeout) != 0) marks += c.atts->GetFill(StrikeoutFill)->IsEmpty() ? "s" : "S";
        if (!c.atts->GetFill(HighlightFill)->IsEmpty()) marks += "h";
        text += marks.empty() ? "." : marks;
    }
    return text;
}

/// What the test line makes of a path; "" where that stays one.
std::string Decorate(const Path& path, bool isBehind = false)
{
    const Line line = MakeTestLine();
    const bool isTaken = line->TryDecoration(*path, isBehind);
    const Rect box = line->bbox;
    line->UpdateBBox();
    EXPECT_EQ(box, line->bbox);
    const std::string decorations = PrintDecorations(*line);
    EXPECT_EQ(isTaken, decorations != "....");
    return isTaken ? decorations : "";
}

TEST(TextDecorationsTest, RulesThatFitBecomeAttributes)
{
    const Places at;
    const double lineGap = at.atts->GetLineGap();
    ASSERT_TRUE(lineGap > 0.5 && at.underline.top > 0 && at.strikeout.top < 0);
    const auto change = [](Place place, double down, double height) {
        return Place{place.top + down, place.height + height};
    };
    EXPECT_EQ(Decorate(MakeRule(100, 124, at.underline)), "UUUU");
    EXPECT_EQ(Decorate(MakeStroke(106, 118, at.underline)), ".UU.");
    EXPECT_EQ(Decorate(MakeRule(100, 124, at.underline), true), "");
    EXPECT_EQ(Decorate(MakeRule(100, 112, at.strikeout)), "SS..");
    EXPECT_EQ(Decorate(MakeStroke(100, 112, at.strikeout)), "SS..");
    EXPECT_EQ(Decorate(MakeRule(112, 124, at.highlight), true), "..hh");
    EXPECT_EQ(Decorate(MakeRule(112, 124, at.highlight)), "");
    // By the descent, and over the leading of the font.
    const Place low = Places::Scale(at.metrics.GetUnderline(Renderer::RuleSource::Descent));
    const Place high = Places::Scale(at.metrics.GetStrikeout(Renderer::RuleSource::Descent));
    EXPECT_EQ(Decorate(MakeRule(100, 124, low)), "UUUU");
    EXPECT_EQ(Decorate(MakeRule(100, 124, high)), "SSSS");
    EXPECT_EQ(Decorate(MakeRule(112, 124, change(at.highlight, -lineGap, lineGap)), true), "..hh");
    // Ends that are near those of characters, off, beyond the line, or around none.
    EXPECT_EQ(Decorate(MakeRule(106.24, 117.76, at.underline)), ".UU.");
    EXPECT_EQ(Decorate(MakeRule(106.26, 118, at.underline)), "");
    EXPECT_EQ(Decorate(MakeRule(105.74, 118, at.underline)), "");
    EXPECT_EQ(Decorate(MakeRule(106, 117.7, at.underline)), "");
    EXPECT_EQ(Decorate(MakeRule(106, 118.3, at.underline)), "");
    EXPECT_EQ(Decorate(MakeRule(100, 124.3, at.underline)), "");
    EXPECT_EQ(Decorate(MakeRule(106, 106.1, at.underline)), "");
    // Low or high, and thick.
    EXPECT_EQ(Decorate(MakeRule(100, 124, change(at.underline, 0.49, 0))), "UUUU");
    EXPECT_EQ(Decorate(MakeRule(100, 124, change(at.underline, 0.51, 0))), "");
    EXPECT_EQ(Decorate(MakeRule(100, 124, change(at.underline, 0, 0.11))), "");
    EXPECT_EQ(Decorate(MakeRule(100, 112, change(at.strikeout, -0.51, 0))), "");
    EXPECT_EQ(Decorate(MakeRule(100, 112, change(at.strikeout, 0, 0.11))), "");
    EXPECT_EQ(Decorate(MakeRule(112, 124, change(at.highlight, -0.51, 0)), true), "");
    EXPECT_EQ(Decorate(MakeRule(112, 124, change(at.highlight, 0, 0.11)), true), "");
    EXPECT_EQ(Decorate(MakeRule(100, 124, change(at.underline, 10, 0))), "");
}

TEST(TextDecorationsTest, PathsThatSayMoreStayPaths)
{
    const Path dashed = MakeStroke(100, 124, Places().underline);
    Renderer::LineStyle style = *dashed->lineStyleDescriptor->lineStyle;
    style.dashKind = Renderer::LineStyle::DashDashed;
    style.dashes = {1, 1};
    const TestDocument document(MakePagePdf("", {.objects = {"<< /S /Alpha >>"}}));
    const auto mask = Kernel::MakeCounted<SoftMask>(Kernel::MakeCounted<Dictionary>(document.GetRef(5)),
                                                    document.document->GetPage(0));
    const std::function<void(PathObject&)> changes[] = {
        [](PathObject& path) { path.opacity = 0.5; },
        [](PathObject& path) { path.blendMode = Renderer::FillBlendMode::Multiply; },
        [](PathObject& path) { path.brushDescriptor = nullptr; },
        [](PathObject& path) { path.isRectangle = false; },
        [](PathObject& path) { path.transform = {1, 0.01, -2, 0, 1, 0}; },
        [](PathObject& path) { path.transform = {1, 0, 0, 0.001, 1, 0}; },
        [](PathObject& path) { path.penDescriptor = path.brushDescriptor; },
        [](PathObject& path) {
            path.clipPath = MakeRectangle({100, 0, 110, 500});
        },
        [&](PathObject& path) { path.SetSoftMask(mask); },
    };
    for (const auto& change : changes) {
        const Path path = MakeRule(100, 124, Places().underline);
        path->lineStyleDescriptor = Quillet::Test::MakeLine(1);
        EXPECT_EQ(Decorate(path), "UUUU");
        change(*path);
        EXPECT_EQ(Decorate(path), "") << (&change - changes);
    }
    EXPECT_EQ(Decorate(dashed), "UUUU");
    dashed->lineStyleDescriptor =
        Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
    EXPECT_EQ(Decorate(dashed), "");
}

TEST(TextDecorationsTest, FitsRunsOfSeveralLooks)
{
    const Places at;
    // An underline is that of the largest text; the others have to fit each.
    const Line line = MakeTestLine();
    line->chars[1].atts = MakeAtts(5);
    line->chars[2].atts =
        Changed(MakeAtts(), [](Story::GlyphAtts& atts) { atts.Set(Story::GlyphAtt::Fill, MakePaint()); });
    EXPECT_FALSE(line->TryDecoration(*MakeRule(100, 124, at.strikeout), false));
    EXPECT_FALSE(line->TryDecoration(*MakeRule(100, 124, at.highlight), true));
    // Of the text's own fill, a rule needs none.
    EXPECT_TRUE(line->TryDecoration(*MakeRule(100, 124, at.underline), false));
    EXPECT_EQ(PrintDecorations(*line), "UUuU");
    EXPECT_TRUE(line->TryDecoration(*MakeRule(112, 124, at.strikeout), false));
    EXPECT_EQ(PrintDecorations(*line), "UUusUS");
    // A lowered highlight goes with lowered text.
    const Line lowered = At(100, -200, ParseLine("a6:2 b6:2 c6:2 d6:2"));
    EXPECT_FALSE(lowered->TryDecoration(*MakeRule(100, 124, at.highlight), true));
    EXPECT_TRUE(lowered->TryDecoration(*MakeRule(100, 124, at.highlight, 202), true));
    // Turned text has turned rules.
    const Line turned = MakeTestLine();
    const Path rule = MakeRule(100, 124, at.underline);
    turned->SetTransform(Params::FromPdf(0, 1, -1, 0, 300, 20));
    EXPECT_FALSE(turned->TryDecoration(*rule, false));
    rule->SetTransform(turned->transform);
    EXPECT_TRUE(turned->TryDecoration(*rule, false));
    // A line of a space that is scaled, and a stroke as thick on the page.
    const Line scaled = MakeTestLine();
    scaled->SetTransform(Params::Scale(2, 2));
    EXPECT_TRUE(
        scaled->TryDecoration(*MakeStroke(200, 248, {2 * at.underline.top, 2 * at.underline.height}, 400), false));
}

/// Lines in a raster, some in columns, with rules and boxes that mostly fit some of them. Where the raster is wide, the
/// lines of a row are the pieces of one.
Kernel::Counted<GroupObject> MakeRandomGroup(unsigned seed, bool isWide = false)
{
    std::mt19937 random(seed);
    const auto pick = [&random](unsigned count) { return static_cast<int>(random() % count); };
    const Places at;
    auto group = MakeGroup();
    for (int i = 0; i < (isWide ? 200 : 60); ++i) {
        const double x = 10 + (isWide ? pick(20) * 24 : pick(3) * 30);
        const double y = 20 + (isWide ? pick(30) * 12 : pick(8) * 6);
        const Params turn = pick(6) == 0 ? Params::FromPdf(0, 1, -1, 0, 100, 10) : Params();
        if (pick(2) == 0) {
            const double left = x + pick(4) * 6;
            const double right = left + pick(4) * 6 + pick(2) * 0.3;
            const int kind = pick(4);
            const Place& place = kind < 2 ? at.underline : kind == 2 ? at.strikeout : at.highlight;
            const Path path = (kind == 1 ? MakeStroke : MakeRule)(left, right, place, y);
            path->SetTransform(turn * path->transform);
            path->UpdateBBox();
            group->Add(path);
            continue;
        }
        const Line line = At(x, -y, ParseLine("a6 b6 c6 d6"));
        line->SetTransform(turn);
        if (pick(3) != 0) {
            group->Add(line);
            continue;
        }
        auto column = Kernel::MakeCounted<ColumnObject>(i);
        column->lines.push_back(line);
        if (pick(2) == 0) column->lines.push_back(At(x, -y - 6, ParseLine("e6 f6 g6 h6")));
        for (const Line& one : column->lines)
            one->parent = column.Get();
        column->UpdateBBox();
        group->Add(column);
    }
    group->UpdateBBox();
    return group;
}

std::string PrintGroup(const GroupObject& group)
{
    std::string text;
    for (const auto& child : group.children) {
        if (const auto line = Kernel::DynamicCast<TextLineObject>(child)) text += PrintDecorations(*line);
        if (const auto column = Kernel::DynamicCast<ColumnObject>(child)) {
            for (const Line& line : column->lines)
                text += "|" + PrintDecorations(*line);
        }
        text += ' ' + ToText(child->transformedBBox.left) + ' ' + ToText(child->transformedBBox.bottom) + '\n';
    }
    return text + ToText(group.bbox.bottom);
}

TEST(TextDecorationsTest, FindsTheLineThatAWalkWouldFind)
{
    std::size_t taken = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        const auto fast = MakeRandomGroup(seed);
        const auto plain = MakeRandomGroup(seed);
        const std::size_t count = plain->children.size();
        fast->ConvertTextDecorations();
        for (std::size_t i = 0; i < plain->children.size();) {
            const auto path = Kernel::DynamicCast<PathObject>(plain->children[i]);
            if (path && plain->TryTextDecoration(*path)) {
                plain->children.erase(plain->children.begin() + static_cast<std::ptrdiff_t>(i));
            } else {
                ++i;
            }
        }
        plain->UpdateBBox();
        EXPECT_EQ(PrintGroup(*fast), PrintGroup(*plain)) << seed;
        taken += count - plain->children.size();
    }
    EXPECT_GT(taken, 500);
}

/// Goes back over all objects; answers how many lines joined one of those that are not looked at one by one.
int CombinePlainly(GroupObject& group)
{
    int farCount = 0;
    GroupObject::Children objects;
    for (Kernel::Counted<Object>& child : std::exchange(group.children, {})) {
        const auto line = Kernel::DynamicCast<TextLineObject>(child);
        bool isJoined = false;
        bool isBarred = !line;
        for (std::size_t i = objects.size(); !isJoined && !isBarred && i-- > 0;) {
            const auto column = Kernel::DynamicCast<ColumnObject>(objects[i]);
            isJoined = column && column->TryMerge(line, i + 1 == objects.size());
            isBarred = objects[i]->Overlaps(line->transformedBBox, 1e-5);
            if (isJoined && i + 16 < objects.size()) ++farCount;
        }
        if (isJoined) continue;
        objects.push_back(std::move(child));
        if (!line) continue;
        const auto column = Kernel::MakeCounted<ColumnObject>(-1);
        column->TryMerge(line, true);
        objects.back() = column;
    }
    group.children = std::move(objects);
    group.UpdateBBox();
    return farCount;
}

TEST(CombineTextLinesTest, FindsTheColumnThatAWalkWouldFind)
{
    int farCount = 0;
    for (unsigned seed = 0; seed < 100; ++seed) {
        const auto fast = MakeRandomGroup(seed, true);
        const auto plain = MakeRandomGroup(seed, true);
        fast->CombineTextLines();
        farCount += CombinePlainly(*plain);
        EXPECT_EQ(PrintGroup(*fast), PrintGroup(*plain)) << seed;
    }
    EXPECT_GT(farCount, 300);
}

} // namespace
} // namespace Quillet::Test
