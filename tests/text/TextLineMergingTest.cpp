#include <Quillet/TextLineObject.h>

#include "MakeLines.h"
#include "objects/MakeObjects.h"

#include <Quillet/Budget.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace Quillet::Test {
namespace {

using Story::GlyphAtt::BaselineShift;
using Chars = TextLineObject::Chars;

Line At(double x, double y, Line line)
{
    line->position = {x, y};
    line->UpdateBBox();
    return line;
}

/// Merging as one would tell it: each character is put in its place, found from the start of the line.
class PlainMerge
{
public:
    PlainMerge(const TextLineObject& line, const TextLineObject& other)
        : chars(line.chars), x(line.position.x), width(line.width)
    {
        const double dy = line.position.y - other.position.y;
        auto c = other.chars.begin();
        double pen = other.position.x;
        for (; c != other.chars.end() && pen < x; ++c)
            pen += c->width;
        MergeFront(other.position.x, Chars(other.chars.begin(), c), dy);
        for (; c != other.chars.end() && pen < x + width - chars.back().width; pen += c++->width) {
            if (!c->isSpace && !c->IsTab()) MergeMid(pen, *c, dy);
        }
        if (c == other.chars.end()) return;
        AddSpace(chars.size() - 1, pen - (x + width), false);
        for (; c != other.chars.end(); ++c) {
            chars.push_back(*c);
            MoveDown(chars.back(), dy);
            width += c->width;
        }
    }

    Chars chars;
    double x;
    double width;

private:
    static void MoveDown(Char& c, double dy)
    {
        if (std::abs(dy) > 0.05) c.atts = With(c.atts, BaselineShift, c.atts->Get(BaselineShift) + dy);
    }

    void Insert(std::size_t index, const Char& c)
    {
        chars.insert(chars.begin() + static_cast<std::ptrdiff_t>(index), c);
    }

    void AddSpace(std::size_t index, double amount, bool preferNext)
    {
        Char& c = chars[index];
        if (amount == 0) return;
        width += amount;
        c.isKerned = amount > 0;
        if (c.isSpace) {
            c.width += amount;
        } else if (preferNext && index + 1 < chars.size() && chars[index + 1].isSpace) {
            chars[index + 1].width += amount;
        } else if (amount < c.GetSize() / 6 || !c.isSpaceDefined) {
            c.width += amount;
            if (amount < c.GetSize() / 6 && c.width >= -1e-5 && c.width < 0) {
                width -= c.width;
                c.width = 0;
            }
        } else {
            Char space = c;
            space.isSpace = true;
            space.width = amount;
            space.glyphIndex = c.spaceCode;
            space.unicode = U' ';
            Insert(index + 1, space);
        }
    }

    void MergeFront(double newX, Chars front, double dy)
    {
        if (front.empty()) return;
        double sum = 0;
        for (const Char& c : front)
            sum += c.width;
        chars.insert(chars.begin(), front.begin(), front.end());
        width += sum;
        AddSpace(front.size() - 1, x - (newX + sum), false);
        x = newX;
        for (std::size_t i = 0; i < front.size(); ++i)
            MoveDown(chars[i], dy);
    }

    void MergeMid(double newX, const Char& c, double dy)
    {
        double pen = x;
        std::size_t place = 0;
        for (; place < chars.size() && pen < newX; ++place)
            pen += chars[place].width;
        const std::size_t before = chars.size();
        if (place > 0) AddSpace(place - 1, newX - pen, false);
        place += chars.size() - before;
        Insert(place, c);
        width += c.width;
        if (place + 1 < chars.size()) {
            AddSpace(place, pen - (newX + c.width), true);
            const Char& next = chars[place + 1];
            if (next.isSpace && next.width < 1 && next.width < next.GetSize() / 8) {
                chars[place].width += next.width;
                chars.erase(chars.begin() + static_cast<std::ptrdiff_t>(place) + 1);
            }
        }
        MoveDown(chars[place], dy);
    }
};

Line MakeRandomLine(std::mt19937& random, bool hasOddWidths)
{
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const Atts smaller = MakeAtts(7, pick(3) == 0 ? -2 : 0);
    Chars chars;
    for (int i = pick(12); i >= 0; --i) {
        const int kind = pick(10);
        Char c = MakeChar(kind < 3   ? U' '
                          : kind < 4 ? U'\t'
                                     : U'a' + static_cast<char32_t>(pick(26)),
                          pick(50) / 4.0, pick(3) == 0 ? smaller : MakeAtts());
        if (hasOddWidths && pick(6) == 0) c.width = -c.width / 2;
        c.isSpaceDefined = pick(5) != 0;
        chars.push_back(c);
    }
    return At(pick(160) / 4.0, pick(4) == 0 ? 3 : pick(3) / 4.0, MakeLine(std::move(chars)));
}

TEST(TextLineMergingTest, MergesAsCharacterByCharacter)
{
    std::mt19937 random(4);
    int middles = 0;
    for (int round = 0; round < 3000; ++round) {
        const Line line = MakeRandomLine(random, round % 5 == 0);
        const Line other = MakeRandomLine(random, round % 5 == 0);
        const PlainMerge plain(*line, *other);
        const double y = line->position.y;
        line->Merge(*other);
        // The baseline is the largest text's, wherever that came from.
        const double moved = y - line->position.y;
        ASSERT_EQ(line->chars.size(), plain.chars.size()) << round;
        EXPECT_EQ(line->position.x, plain.x) << round;
        EXPECT_EQ(line->width, plain.width) << round;
        bool isSame = true;
        for (std::size_t i = 0; i < plain.chars.size(); ++i) {
            const Char& a = line->chars[i];
            const Char& b = plain.chars[i];
            isSame &= a.unicode == b.unicode && a.width == b.width && a.isSpace == b.isSpace &&
                      a.isKerned == b.isKerned && a.GetSize() == b.GetSize() &&
                      std::abs(a.atts->Get(BaselineShift) - (b.atts->Get(BaselineShift) - moved)) < 1e-9;
        }
        EXPECT_TRUE(isSame) << round;
        middles += plain.x == line->position.x && plain.chars.size() > 3;
        EXPECT_EQ(line->textHeight, line->GetTextHeight(line->chars.begin(), line->chars.end()));
        // What is kept of the box is what it would be.
        const Rect kept = line->bbox;
        line->UpdateBBox();
        for (const auto edge : {&Rect::left, &Rect::top, &Rect::right, &Rect::bottom})
            EXPECT_NEAR(kept.*edge, line->bbox.*edge, 1e-9) << round;
    }
    EXPECT_GT(middles, 1000);
}

TEST(TextLineMergingTest, PutsPiecesInTheirPlaces)
{
    const struct
    {
        const char* line;
        const char* other;
        double x;
        const char* merged;
        double start;
    } rows[] = {
        {"", "a6 _3", 12, "a6 _3", 12},
        {"a6", "b6", 6, "a6 b6", 0},
        {"a6", "b6", 7, "a7 b6", 0},
        {"a6", "b6", 10, "a6 _4 b6", 0},
        {"a6", "b6", 5, "a5 b6", 0},
        {"a6", "b6", -8, "b6 _2 a6", -8},
        {"a6", "b6", -7, "b7 a6", -7},
        {"a6 _30 c6", "b6", 18, "a6 _12 b6 _12 c6", 0},
        {"a6 _30 c6", "b6 _6 d5.5", 18, "a6 _12 b6 _6 d6 c6", 0},
        // A piece that goes on at both sides.
        {"c6", "a6 _12 b6", -8, "a6 _2 c6 _4 b6", -8},
    };
    for (const auto& row : rows) {
        const Line line = At(0, 50, ParseLine(row.line));
        const Line other = At(row.x, 50, ParseLine(row.other));
        line->Merge(*other);
        EXPECT_EQ(PrintLine(*line), row.merged) << row.line << " + " << row.other;
        EXPECT_NEAR(line->position.x, row.start, 1e-9) << row.other;
        EXPECT_EQ(line->position.y, 50);
    }
    // An empty line becomes the other.
    const Line line = ParseLine("");
    const Line other = At(3, 50, ParseLine("a6"));
    other->SetBlendMode(Renderer::FillBlendMode::Multiply);
    line->Merge(*other);
    EXPECT_EQ(line->blendMode, Renderer::FillBlendMode::Multiply);
}

TEST(TextLineMergingTest, TellsWhatIsAPartOfALine)
{
    const struct
    {
        const char* line;
        const char* other;
        double x;
        double y;
        double size;
        bool canMerge;
    } rows[] = {
        {"", "a6", 900, 900, 10, true},
        {"a6 b6", "c6", 12, 0, 10, true},
        // Beside it, by less than the larger size.
        {"a6 b6", "c6", 21.9, 0, 10, true},
        {"a6 b6", "c6", 22, 0, 10, false},
        {"a6 b6", "c6", 25, 0, 14, true},
        {"a6 b6", "c6", -15.9, 0, 10, true},
        {"a6 b6", "c6", -16, 0, 10, false},
        // On its baseline, or a script.
        {"a6 b6", "c6", 12, 1, 10, true},
        {"a6 b6", "c6", 12, 1.01, 10, false},
        {"a6 b6", "c6", 12, 3, 7, true},
        {"a6 b6", "c6", 12, -30, 7, false},
        // A drop cap is more than three times as large, but seen from there the line is a script.
        {"a6 b6", "c30", -30, -18, 40, true},
        // In a gap of it, but not on a glyph.
        {"a6 _30 b6", "c6", 18, 0, 10, true},
        {"a6 _30 b6", "c6", 3, 0, 10, false},
        {"a6 b6", "a6 b6", 0.5, 0, 10, false},
        {"a6 b6", "b6", 6.2, 0, 10, false},
        {"a6 >30 b6", "_6 c6 >30 d6", 6, 0, 10, true},
        {"a6 _30 b6", "c6 _40 d6", 10, 0, 10, true},
        {"a6 _30 b6", "c6 _20 d6", 10, 0, 10, false},
    };
    for (const auto& row : rows) {
        const Line line = At(0, 0, ParseLine(row.line));
        const Line other = ParseLine(row.other);
        for (Char& c : other->chars)
            c.atts = MakeAtts(row.size);
        other->textHeight = row.size;
        At(row.x, row.y, other);
        EXPECT_EQ(line->CanMergeWith(*other), row.canMerge) << row.line << " + " << row.other << " at " << row.x;
        if (line->chars.empty()) continue;
        other->SetBlendMode(Renderer::FillBlendMode::Multiply);
        EXPECT_FALSE(line->CanMergeWith(*other));
    }
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
    const auto makeCap = [](double y) { return At(0, y, MakeLine({MakeChar(U'T', 20, MakeAtts(36))})); };
    const auto makeText = [] { return At(22, 100, MakeLine({MakeChar(U'o', 6, MakeAtts(12))})); };
    for (const bool isCapFirst : {true, false}) {
        const Line line = isCapFirst ? makeCap(76) : makeText();
        const Line other = isCapFirst ? makeText() : makeCap(76);
        ASSERT_TRUE(line->CanMergeWith(*other));
        line->Merge(*other);
        EXPECT_EQ(line->GetText(), "To");
        EXPECT_NEAR(line->position.y, 100, 1e-9) << isCapFirst;
        EXPECT_NEAR(line->chars[0].atts->Get(BaselineShift), 24, 1e-9);
        EXPECT_NEAR(line->chars[1].atts->Get(BaselineShift), 0, 1e-9);
        // More text, and a line that was shown as one.
        line->Merge(*At(28, 100, MakeLine({MakeChar(U'p', 6, MakeAtts(12)), MakeChar(U's', 6, MakeAtts(8, -4))})));
        EXPECT_NEAR(line->position.y, 100, 1e-9);
        line->OnEndOfLine();
        EXPECT_NEAR(line->position.y, 100, 1e-9);
    }
    const struct
    {
        const char* what;
        std::vector<std::pair<double, double>> sizesAndShifts;
        const char* text;
        double shift;
    } rows[] = {
        {"a cap with a quote", {{12, 0}, {36, 24}, {12, 0}}, "'To", 0},
        {"not twice as large", {{24, 10}, {12, 0}}, "To", 10},
        {"not lower", {{36, 0}, {12, 0}}, "To", 0},
        {"higher", {{36, -9}, {12, 0}}, "To", -9},
        {"large text behind", {{36, 9}, {12, 0}, {20, 0}}, "Too", 9},
        {"the text is off", {{36, 20}, {12, 5}, {12, 5}, {6, 2}}, "Tops", 5},
        {"nothing behind", {{12, 0}, {36, 9}}, "'T", 9},
    };
    for (const auto& row : rows) {
        Chars chars;
        for (std::size_t i = 0; i < row.sizesAndShifts.size(); ++i) {
            const auto [size, shift] = row.sizesAndShifts[i];
            chars.push_back(MakeChar(static_cast<unsigned char>(row.text[i]), 6, MakeAtts(size, shift)));
        }
        const Line line = MakeLine(std::move(chars));
        line->OnEndOfLine();
        EXPECT_NEAR(line->position.y, -row.shift, 1e-9) << row.what;
        EXPECT_NEAR(line->chars[0].atts->Get(BaselineShift), row.sizesAndShifts[0].second - row.shift, 1e-9)
            << row.what;
    }
}

TEST(TextLineMergingTest, DoesNotDriftPieceByPiece)
{
    const Line line = At(0, 50, MakeLine({MakeChar(U'a', 6, MakeAtts(10, 0.04))}));
    for (int i = 1; i < 100; ++i)
        line->Merge(*At(i * 6, 50, MakeLine({MakeChar(U'a', 6, MakeAtts(10, 0.04))})));
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
    const Line line = At(10, 20, ParseLine("_30 a6 _6 b6 >20 c7 _25 d8"));
    line->chars[5].atts = MakeAtts(14);
    line->textHeight = 14;
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
