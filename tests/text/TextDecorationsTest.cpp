#include <Quillet/ColumnObject.h>

#include "MakeLines.h"
#include "document/Dictionary.h"
#include "objects/MakeObjects.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;
using Path = Kernel::Counted<PathObject>;

/// Where a font of 10 points has its decorations, in y downward from the baseline.
struct Places
{
    explicit Places(const Atts& atts)
        : underline(atts->GetFontMetrics()->GetUnderlinePosition() * 10),
          underlineHeight(atts->GetFontMetrics()->GetUnderlineThickness() * 10),
          strikeout(atts->GetFontMetrics()->GetStrikeoutPosition() * 10),
          strikeoutHeight(atts->GetFontMetrics()->GetStrikeoutThickness() * 10), highlight(-atts->GetAscent()),
          highlightHeight(atts->GetAscent() + atts->GetDescent()), lineGap(atts->GetLineGap())
    {}

    double underline;
    double underlineHeight;
    double strikeout;
    double strikeoutHeight;
    double highlight;
    double highlightHeight;
    double lineGap;
};

Path MakeRule(double left, double top, double right, double height)
{
    return MakeBox({left, top, right, top + height});
}

/// A level stroke whose ink is the rectangle.
Path MakeStroke(double left, double top, double right, double height)
{
    const Path path = MakeBox({});
    path->brushDescriptor = nullptr;
    path->penDescriptor = MakePaint();
    path->lineStyleDescriptor = Quillet::Test::MakeLine(height);
    auto curve = Kernel::MakeCounted<Geometry::CurveDbl>();
    curve->AddNode({left, top + height / 2});
    curve->AddNode({right, top + height / 2});
    auto curves = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
    curves->AddCurve(curve);
    path->SetPath(curves, Geometry::WindingOrderMode::NonZero, true);
    return path;
}

/// "abcd" of 6 points each, from x = 100 on the baseline y = 200 of the page.
Line MakeTestLine()
{
    const Line line = ParseLine("a6 b6 c6 d6");
    line->position = {100, -200};
    line->UpdateBBox();
    return line;
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

TEST(TextDecorationsTest, RulesThatFitBecomeAttributes)
{
    const Places at(MakeAtts());
    ASSERT_GT(at.lineGap, 0.5);
    const auto metrics = MakeAtts()->GetFontMetrics();
    const Renderer::TextRule low = metrics->GetUnderline(Renderer::RuleSource::Descent);
    const Renderer::TextRule high = metrics->GetStrikeout(Renderer::RuleSource::Descent);
    const struct
    {
        const char* what;
        Path path;
        bool isBehind;
        /// "" for a path that stays one.
        const char* decorations;
    } rows[] = {
        {"underline", MakeRule(100, 200 + at.underline, 124, at.underlineHeight), false, "UUUU"},
        {"underlining stroke", MakeStroke(106, 200 + at.underline, 118, at.underlineHeight), false, ".UU."},
        {"behind", MakeRule(100, 200 + at.underline, 124, at.underlineHeight), true, ""},
        {"ends a little off", MakeRule(106.24, 200 + at.underline, 117.76, at.underlineHeight), false, ".UU."},
        {"starts too late", MakeRule(106.26, 200 + at.underline, 118, at.underlineHeight), false, ""},
        {"starts too early", MakeRule(105.74, 200 + at.underline, 118, at.underlineHeight), false, ""},
        {"ends too early", MakeRule(106, 200 + at.underline, 117.7, at.underlineHeight), false, ""},
        {"ends too late", MakeRule(106, 200 + at.underline, 118.3, at.underlineHeight), false, ""},
        {"beyond the line", MakeRule(100, 200 + at.underline, 124.3, at.underlineHeight), false, ""},
        {"no characters", MakeRule(106, 200 + at.underline, 106.1, at.underlineHeight), false, ""},
        {"underline by the descent", MakeRule(100, 200 + low.top * 10, 124, low.thickness * 10), false, "UUUU"},
        {"strikeout by the descent", MakeRule(100, 200 + high.top * 10, 124, high.thickness * 10), false, "SSSS"},
        {"low, but near", MakeRule(100, 200.49 + at.underline, 124, at.underlineHeight), false, "UUUU"},
        {"too low", MakeRule(100, 200.51 + at.underline, 124, at.underlineHeight), false, ""},
        {"too thick", MakeRule(100, 200 + at.underline, 124, at.underlineHeight + 0.11), false, ""},
        {"strikeout", MakeRule(100, 200 + at.strikeout, 112, at.strikeoutHeight), false, "SS.."},
        {"striking stroke", MakeStroke(100, 200 + at.strikeout, 112, at.strikeoutHeight), false, "SS.."},
        {"strikeout too high", MakeRule(100, 199.49 + at.strikeout, 112, at.strikeoutHeight), false, ""},
        {"strikeout too thick", MakeRule(100, 200 + at.strikeout, 112, at.strikeoutHeight + 0.11), false, ""},
        {"highlight", MakeRule(112, 200 + at.highlight, 124, at.highlightHeight), true, "..hh"},
        {"highlight over the font's leading",
         MakeRule(112, 200 + at.highlight - at.lineGap, 124, at.highlightHeight + at.lineGap), true, "..hh"},
        {"in front", MakeRule(112, 200 + at.highlight, 124, at.highlightHeight), false, ""},
        {"highlight too high", MakeRule(112, 199.49 + at.highlight, 124, at.highlightHeight), true, ""},
        {"highlight too large", MakeRule(112, 200 + at.highlight, 124, at.highlightHeight + 0.11), true, ""},
        {"far below", MakeRule(100, 212, 124, at.underlineHeight), false, ""},
    };
    ASSERT_GT(at.underline, 0);
    ASSERT_LT(at.strikeout, 0);
    for (const auto& row : rows) {
        const Line line = MakeTestLine();
        const bool isTaken = line->TryDecoration(*row.path, row.isBehind);
        EXPECT_EQ(isTaken, *row.decorations != 0) << row.what;
        EXPECT_EQ(PrintDecorations(*line), isTaken ? row.decorations : "....") << row.what;
        const Rect box = line->bbox;
        line->UpdateBBox();
        EXPECT_EQ(box, line->bbox) << row.what;
    }
}

TEST(TextDecorationsTest, PathsThatSayMoreStayPaths)
{
    const Places at(MakeAtts());
    const auto makeUnderline = [&at](auto change) {
        const Path path = MakeRule(100, 200 + at.underline, 124, at.underlineHeight);
        change(*path);
        return path;
    };
    const auto isTaken = [](const Path& path) { return MakeTestLine()->TryDecoration(*path, false); };
    EXPECT_TRUE(isTaken(makeUnderline([](PathObject&) {})));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.opacity = 0.5; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.blendMode = Renderer::FillBlendMode::Multiply; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.brushDescriptor = nullptr; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.isRectangle = false; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.transform = {1, 0.01, -2, 0, 1, 0}; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.transform = {1, 0, 0, 0.001, 1, 0}; })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) {
        path.penDescriptor = MakePaint();
        path.lineStyleDescriptor = Quillet::Test::MakeLine(1);
    })));
    EXPECT_FALSE(isTaken(makeUnderline([](PathObject& path) { path.clipPath = MakeRectangle({100, 0, 110, 500}); })));
    const TestDocument document(MakePagePdf("", {.objects = {"<< /S /Alpha >>"}}));
    const auto mask = Kernel::MakeCounted<SoftMask>(Kernel::MakeCounted<Dictionary>(document.GetRef(5)),
                                                    document.document->GetPage(0));
    EXPECT_FALSE(isTaken(makeUnderline([&mask](PathObject& path) { path.SetSoftMask(mask); })));
    const Path dashed = MakeStroke(100, 200 + at.underline, 124, at.underlineHeight);
    EXPECT_TRUE(isTaken(dashed));
    Renderer::LineStyle style = *dashed->lineStyleDescriptor->lineStyle;
    style.dashKind = Renderer::LineStyle::DashDashed;
    style.dashes = {1, 1};
    dashed->lineStyleDescriptor =
        Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
    EXPECT_FALSE(isTaken(dashed));
}

TEST(TextDecorationsTest, FitsRunsOfSeveralLooks)
{
    const Places at(MakeAtts());
    // An underline is that of the largest text; the others have to fit each.
    const Line line = MakeTestLine();
    line->chars[1].atts = MakeAtts(5);
    line->chars[2].atts =
        Changed(MakeAtts(), [](Story::GlyphAtts& atts) { atts.Set(Story::GlyphAtt::Fill, MakePaint()); });
    EXPECT_FALSE(line->TryDecoration(*MakeRule(100, 200 + at.strikeout, 124, at.strikeoutHeight), false));
    EXPECT_FALSE(line->TryDecoration(*MakeRule(100, 200 + at.highlight, 124, at.highlightHeight), true));
    // Of the text's own fill, a rule needs none.
    EXPECT_TRUE(line->TryDecoration(*MakeRule(100, 200 + at.underline, 124, at.underlineHeight), false));
    EXPECT_EQ(PrintDecorations(*line), "UUuU");
    EXPECT_TRUE(line->TryDecoration(*MakeRule(112, 200 + at.strikeout, 124, at.strikeoutHeight), false));
    EXPECT_EQ(PrintDecorations(*line), "UUusUS");
    // A lowered highlight goes with lowered text.
    const Line lowered = MakeTestLine();
    for (Char& c : lowered->chars)
        c.atts = MakeAtts(10, 2);
    EXPECT_FALSE(lowered->TryDecoration(*MakeRule(100, 200 + at.highlight, 124, at.highlightHeight), true));
    EXPECT_TRUE(lowered->TryDecoration(*MakeRule(100, 202 + at.highlight, 124, at.highlightHeight), true));
    // Turned text has turned rules.
    const Line turned = MakeTestLine();
    const Path rule = MakeRule(100, 200 + at.underline, 124, at.underlineHeight);
    turned->SetTransform(Params::FromPdf(0, 1, -1, 0, 300, 20));
    EXPECT_FALSE(turned->TryDecoration(*rule, false));
    rule->SetTransform(turned->transform);
    EXPECT_TRUE(turned->TryDecoration(*rule, false));
    // A line of a space that is scaled, and a stroke as thick on the page.
    const Line scaled = MakeTestLine();
    scaled->SetTransform(Params::FromPdf(2, 0, 0, 2, 0, 0));
    EXPECT_TRUE(scaled->TryDecoration(*MakeStroke(200, 400 + 2 * at.underline, 248, 2 * at.underlineHeight), false));
}

/// Lines in a raster, some in columns, with rules and boxes that mostly fit some of them. Where the raster is wide, the
/// lines of a row are the pieces of one.
Kernel::Counted<GroupObject> MakeRandomGroup(unsigned seed, bool isWide = false)
{
    std::mt19937 random(seed);
    const auto pick = [&random](unsigned count) { return static_cast<int>(random() % count); };
    const Places at(MakeAtts());
    auto group = MakeGroup();
    for (int i = 0; i < (isWide ? 200 : 60); ++i) {
        const double x = 10 + (isWide ? pick(20) * 24 : pick(3) * 30);
        const double y = 20 + (isWide ? pick(30) * 12 : pick(8) * 6);
        const Params turn = pick(6) == 0 ? Params::FromPdf(0, 1, -1, 0, 100, 10) : Params();
        if (pick(2) == 0) {
            const double left = x + pick(4) * 6;
            const double right = left + pick(4) * 6 + pick(2) * 0.3;
            const int kind = pick(4);
            const Path path = kind == 0   ? MakeRule(left, y + at.underline, right, at.underlineHeight)
                              : kind == 1 ? MakeStroke(left, y + at.underline, right, at.underlineHeight)
                              : kind == 2 ? MakeRule(left, y + at.strikeout, right, at.strikeoutHeight)
                                          : MakeRule(left, y + at.highlight, right, at.highlightHeight);
            path->SetTransform(turn * path->transform);
            path->UpdateBBox();
            group->Add(path);
            continue;
        }
        Line line = ParseLine("a6 b6 c6 d6");
        line->SetTransform(turn);
        line->position = {x, -y};
        line->UpdateBBox();
        if (pick(3) == 0) {
            auto column = Kernel::MakeCounted<ColumnObject>(i);
            line->parent = column.Get();
            column->lines.push_back(line);
            if (pick(2) == 0) {
                line = ParseLine("e6 f6 g6 h6");
                line->position = {x, -y - 6};
                line->UpdateBBox();
                line->parent = column.Get();
                column->lines.push_back(line);
            }
            column->UpdateBBox();
            group->Add(column);
        } else {
            group->Add(line);
        }
    }
    group->UpdateBBox();
    return group;
}

std::string PrintGroup(const GroupObject& group)
{
    std::string text;
    for (const auto& child : group.children) {
        if (child->GetKind() == Object::Kind::Path) text += "path";
        if (child->GetKind() == Object::Kind::TextLine) text += PrintDecorations(static_cast<TextLineObject&>(*child));
        if (child->GetKind() == Object::Kind::Column) {
            for (const auto& line : static_cast<ColumnObject&>(*child).lines)
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
            const Kernel::Counted<Object> child = plain->children[i];
            const bool isTaken = child->GetKind() == Object::Kind::Path &&
                                 plain->TryTextDecoration(static_cast<const PathObject&>(*child));
            if (isTaken) {
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
