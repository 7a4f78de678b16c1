#include <Quillet/TextLineObject.h>

#include "MakeLines.h"
#include "objects/MakeObjects.h"

#include <Quillet/Budget.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

namespace Quillet::Test {
namespace {

using Story::GlyphAtt::BaselineShift;

Line MakeRandomLine(std::mt19937& random, bool hasOddWidths)
{
    const auto pick = [&random](unsigned count) { return static_cast<int>(random() % count); };
    std::string words;
    for (int i = pick(12); i >= 0; --i) {
        const int kind = pick(10);
        words += kind < 3 ? '_' : kind < 4 ? '>' : static_cast<char>('a' + pick(26));
        words += ToText(pick(50) / (hasOddWidths && pick(6) == 0 ? -8.0 : 4.0));
        words += pick(3) == 0 ? "@7:-2" : pick(3) == 0 ? "@7" : "";
        words += pick(5) == 0 ? "? " : " ";
    }
    return At(pick(160) / 4.0, pick(4) == 0 ? 3 : pick(3) / 4.0, ParseLine(words));
}

TEST(TextLineMergingTest, LeavesEachGlyphWhereItIs)
{
    std::mt19937 random(4);
    int middles = 0;
    for (int round = 0; round < 3000; ++round) {
        const bool hasOddWidths = round % 5 == 0;
        const Line line = MakeRandomLine(random, hasOddWidths);
        const Line other = MakeRandomLine(random, hasOddWidths);
        middles += other->position.x > line->position.x && other->position.x < line->position.x + line->width;
        auto expected = GetPlaces(*line);
        std::ranges::copy(GetPlaces(*other), std::back_inserter(expected));
        line->Merge(*other);
        auto places = GetPlaces(*line);
        const auto getX = [](const auto& place) { return std::get<1>(place); };
        EXPECT_EQ(places.size(), expected.size()) << round;
        // Where the pen goes back, nothing is lost, but the place of a piece is where the pen passes it.
        if (!hasOddWidths) {
            EXPECT_TRUE(std::ranges::is_sorted(places, {}, getX)) << round;
            std::ranges::sort(expected);
            std::ranges::sort(places);
            EXPECT_EQ(places, expected) << round;
        }
        EXPECT_NEAR(line->width, GetWidth(*line), 1e-9) << round;
        EXPECT_EQ(line->textHeight, line->GetTextHeight(line->chars.begin(), line->chars.end())) << round;
        // What is kept of the box is what it would be.
        const Rect kept = line->bbox;
        line->UpdateBBox();
        EXPECT_TRUE(IsNear(kept, line->bbox, 1e-9)) << round;
    }
    EXPECT_GT(middles, 1000);
}

/// The line with the other, which begins at `x`, and where it begins.
std::string Merge(const char* words, const char* others, double x)
{
    const Line line = At(0, 50, ParseLine(words));
    line->Merge(*At(x, 50, ParseLine(others)));
    EXPECT_EQ(line->position.y, 50) << words << " + " << others;
    return PrintLine(*line) + " from " + ToText(line->position.x);
}

TEST(TextLineMergingTest, PutsPiecesInTheirPlaces)
{
    EXPECT_EQ(Merge("", "a6 _3", 12), "a6 _3 from 12");
    EXPECT_EQ(Merge("a6", "b6", 6), "a6 b6 from 0");
    EXPECT_EQ(Merge("a6", "b6", 7), "a7 b6 from 0");
    EXPECT_EQ(Merge("a6", "b6", 10), "a6 _4 b6 from 0");
    EXPECT_EQ(Merge("a6", "b6", 5), "a5 b6 from 0");
    EXPECT_EQ(Merge("a6", "b6", -8), "b6 _2 a6 from -8");
    EXPECT_EQ(Merge("a6", "b6", -7), "b7 a6 from -7");
    EXPECT_EQ(Merge("a6 _30 c6", "b6", 18), "a6 _12 b6 _12 c6 from 0");
    EXPECT_EQ(Merge("a6 _30 c6", "b6 _6 d5.5", 18), "a6 _12 b6 _6 d6 c6 from 0");
    // A piece that goes on at both sides.
    EXPECT_EQ(Merge("c6", "a6 _12 b6", -8), "a6 _2 c6 _4 b6 from -8");
    // An empty line becomes the other.
    const Line line = ParseLine("");
    const Line other = At(3, 50, ParseLine("a6"));
    other->SetBlendMode(Renderer::FillBlendMode::Multiply);
    line->Merge(*other);
    EXPECT_EQ(line->blendMode, Renderer::FillBlendMode::Multiply);
}

/// Whether a line can have another that begins at the place.
bool CanMerge(const char* words, const char* others, double x, double y = 0)
{
    const Line line = At(0, 0, ParseLine(words));
    const Line other = At(x, y, ParseLine(others));
    const bool canMerge = line->CanMergeWith(*other);
    other->SetBlendMode(Renderer::FillBlendMode::Multiply);
    EXPECT_TRUE(line->chars.empty() || !line->CanMergeWith(*other));
    return canMerge;
}

TEST(TextLineMergingTest, TellsWhatIsAPartOfALine)
{
    EXPECT_TRUE(CanMerge("", "a6", 900, 900));
    EXPECT_TRUE(CanMerge("a6 b6", "c6", 12));
    // Beside it, by less than the larger size.
    EXPECT_TRUE(CanMerge("a6 b6", "c6", 21.9));
    EXPECT_FALSE(CanMerge("a6 b6", "c6", 22));
    EXPECT_TRUE(CanMerge("a6 b6", "c6@14", 25));
    EXPECT_TRUE(CanMerge("a6 b6", "c6", -15.9));
    EXPECT_FALSE(CanMerge("a6 b6", "c6", -16));
    // On its baseline, or a script.
    EXPECT_TRUE(CanMerge("a6 b6", "c6", 12, 1));
    EXPECT_FALSE(CanMerge("a6 b6", "c6", 12, 1.01));
    EXPECT_TRUE(CanMerge("a6 b6", "c6@7", 12, 3));
    EXPECT_FALSE(CanMerge("a6 b6", "c6@7", 12, -30));
    // A drop cap is more than three times as large, but seen from there the line is a script.
    EXPECT_TRUE(CanMerge("a6 b6", "c30@40", -30, -18));
    // In a gap of it, but not on a glyph.
    EXPECT_TRUE(CanMerge("a6 _30 b6", "c6", 18));
    EXPECT_FALSE(CanMerge("a6 _30 b6", "c6", 3));
    EXPECT_FALSE(CanMerge("a6 b6", "a6 b6", 0.5));
    EXPECT_FALSE(CanMerge("a6 b6", "b6", 6.2));
    EXPECT_TRUE(CanMerge("a6 >30 b6", "_6 c6 >30 d6", 6));
    EXPECT_TRUE(CanMerge("a6 _30 b6", "c6 _40 d6", 10));
    EXPECT_FALSE(CanMerge("a6 _30 b6", "c6 _20 d6", 10));
}

TEST(TextLineMergingTest, KnowsTheInkOfCharacters)
{
    const Line line = ParseLine("");
    const Char a = MakeChar(U'a', 6, MakeAtts());
    const Char narrow = MakeChar(U'a', 3, With(MakeAtts(), Story::GlyphAtt::HorizontalScale, 0.5));
    const auto box = a.GetGlyphMetrics().box;
    const double ink = box.GetWidth() * 10;
    EXPECT_TRUE(line->OverlapsX(0, a, ink - 0.01, a));
    EXPECT_FALSE(line->OverlapsX(0, a, ink + 0.01, a));
    EXPECT_TRUE(line->OverlapsX(ink - 0.01, a, 0, a));
    EXPECT_FALSE(line->OverlapsX(ink + 0.01, a, 0, a));
    EXPECT_FALSE(line->OverlapsX(box.left * 5, narrow, ink + 0.01, a));
    EXPECT_FALSE(line->OverlapsX(0, MakeChar(U' ', 6, MakeAtts()), 0, a));
}

TEST(TextLineMergingTest, KeepsTheBaselineOfTheTextBesideADropCap)
{
    for (const bool isCapFirst : {true, false}) {
        const Line cap = At(0, 76, ParseLine("T20@36"));
        const Line text = At(22, 100, ParseLine("o6@12"));
        const Line& line = isCapFirst ? cap : text;
        const Line& other = isCapFirst ? text : cap;
        ASSERT_TRUE(line->CanMergeWith(*other));
        line->Merge(*other);
        EXPECT_EQ(line->GetText(), "To");
        EXPECT_NEAR(line->position.y, 100, 1e-9) << isCapFirst;
        EXPECT_NEAR(line->chars[0].atts->Get(BaselineShift), 24, 1e-9);
        EXPECT_NEAR(line->chars[1].atts->Get(BaselineShift), 0, 1e-9);
        // More text, and a line that was shown as one.
        line->Merge(*At(28, 100, ParseLine("p6@12 s6@8:-4")));
        EXPECT_NEAR(line->position.y, 100, 1e-9);
        line->OnEndOfLine();
        EXPECT_NEAR(line->position.y, 100, 1e-9);
    }
}

TEST(TextLineMergingTest, DoesNotDriftPieceByPiece)
{
    const Line line = At(0, 50, ParseLine("a6:0.04"));
    for (int i = 1; i < 100; ++i)
        line->Merge(*At(i * 6, 50, ParseLine("a6:0.04")));
    EXPECT_EQ(line->position.y, 50);
    EXPECT_EQ(line->chars.size(), 100);
}

TEST(TextLineMergingTest, PaysForPiecesOfALongLine)
{
    // Behind the end, a hundred thousand pieces cost what they are; before the start and in between, somebody would
    // have to pay for the whole line each time.
    const Budget::Scope scope(Kernel::MakeCounted<Budget>(4'000'000), Budget::Share::All, nullptr);
    const Line line = At(0, 0, ParseLine("a6 _6"));
    const Line piece = ParseLine("b6 _6");
    constexpr int c_count = 100'000;
    int merged = 0;
    for (int i = 1; i < c_count; ++i) {
        piece->position.x = i * 12.0;
        if (!line->CanMergeWith(*piece)) continue;
        line->Merge(*piece);
        ++merged;
    }
    EXPECT_EQ(merged, c_count - 1);
    EXPECT_EQ(line->chars.size(), 2 * c_count);
    EXPECT_FALSE(Budget::IsSpent());
    merged = 0;
    for (int i = 0; i < c_count; ++i) {
        piece->position.x = -13;
        if (line->CanMergeWith(*piece)) ++merged;
    }
    EXPECT_GT(merged, 2);
    EXPECT_LT(merged, 100);
    EXPECT_TRUE(Budget::IsSpent());
    EXPECT_FALSE(line->CanMergeWith(*At(100, 0, ParseLine("_1"))));
    EXPECT_EQ(line->FindGap(5), line->chars.end());
}

TEST(TextLineMergingTest, SplitsAtAGap)
{
    const Line line = At(10, 20, ParseLine("_30 a6 _6 b6 >20 c7@14 _25 d8"));
    EXPECT_EQ(line->FindGap(5) - line->chars.begin(), 2);
    EXPECT_EQ(line->FindGap(26), line->chars.end());
    const Line empty = ParseLine("");
    EXPECT_EQ(empty->FindGap(0), empty->chars.end());
    const auto gap = line->FindGap(20);
    ASSERT_EQ(gap - line->chars.begin(), 4);
    const Line rest = line->Split(gap, gap + 1, 9);
    EXPECT_EQ(PrintLine(*line), "_30 a6 _6 b6 >20");
    EXPECT_EQ(PrintLine(*rest), ">20 c7 _25 d8");
    EXPECT_EQ(rest->id, 9);
    EXPECT_EQ(rest->position.x, 58);
    EXPECT_EQ(line->width, 68);
    EXPECT_EQ(rest->width, 60);
    EXPECT_EQ(line->textHeight, 10);
    EXPECT_EQ(rest->textHeight, 14);
    EXPECT_LT(line->bbox.right, 59);
    EXPECT_GT(rest->bbox.left, 77);
}

} // namespace
} // namespace Quillet::Test
