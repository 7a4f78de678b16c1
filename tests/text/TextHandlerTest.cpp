#include "content/TextHandler.h"

#include "TextOf.h"
#include "content/ContentRun.h"
#include "document/Guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <utility>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;
using testing::ElementsAre;
using testing::IsEmpty;
using Params = Object::Params;

constexpr const char* c_states = "/GA << /ca 0.5 /CA 0.25 >> /GM << /BM /Multiply >> /GN << /BM /Normal >> "
                                 "/GS << /SMask << /Type /Mask /S /Luminosity /G 6 0 R >> >> /G0 << /SMask /None >> "
                                 "/GT << /SMask << /Type /Mask /S /Alpha /G 6 0 R >> >>";

/// Page content with a font F, in which each character is half an em wide, and some graphics states.
class TextRun
{
public:
    explicit TextRun(const std::string& content)
        : run(content, {.resources = std::string("/Font << /F 5 0 R >> /XObject << /Open 7 0 R >> /ExtGState << ") +
                                     c_states + " >>",
                        .objects = {MakeFont(c_sans),
                                    PdfBuilder::MakeStream("0 0 50 50 re f", "/Type /XObject /Subtype /Form /BBox [0 0 "
                                                                             "50 50] /Group << /S /Transparency >>"),
                                    PdfBuilder::MakeStream("BT /F 10 Tf 7 Tr 10 10 Td (ab) Tj",
                                                           "/Type /XObject /Subtype /Form /BBox [0 0 200 200]")}}),
          lines(GetLines(*run.root))
    {}

    /// Each line as its text, the start of its baseline on the page, and its width.
    std::string Print() const
    {
        std::string text;
        for (const auto& line : lines) {
            const auto start = line->transform.ApplyTo(line->GetGdiPosition());
            text += text.empty() ? "" : "|";
            text.append(line->GetText()).append(" ").append(ToText(start.x)).append(",").append(ToText(start.y));
            text.append(" ").append(ToText(line->width));
        }
        return text;
    }

    ContentRun run;
    Lines lines;
};

TEST(TextHandlerTest, PutsStringsOnLines)
{
    const std::pair<const char*, const char*> rows[] = {
        {"10 80 Td (ab) Tj", "ab 10,20 10"},
        {"(ab) Tj (cd) Tj", "abcd 0,100 20"},
        {"10 80 Td (ab) Tj 0 -12 Td (cd) Tj", "ab 10,20 10|cd 10,32 10"},
        {"12 TL 10 80 Td (ab) Tj T* (cd) Tj (ef) '", "ab 10,20 10|cd 10,32 10|ef 10,44 10"},
        {"10 80 TD (ab) Tj T* (c) Tj", "ab 10,20 10|c 10,-60 5"},
        {"1 2 (ab) \"", "ab 0,100 14"},
        {"2 Tc 3 Tw (a b) Tj", "a b 0,100 24"},
        {"50 Tz (ab) Tj", "ab 0,100 5"},
        {"() Tj (ab) Tj () Tj", "ab 0,100 10"},
        {"( ab ) Tj", "ab 5,100 10"},
        {"(  ) Tj", ""},
        {"(  ) Tj 0 -20 Td (  ) Tj", ""},
        {"10 80 Td 10 0 Td (ab) Tj", "ab 20,20 10"},
        // A gap of a sixth of the size is a space.
        {"[(a) -120 (b)] TJ", "ab 0,100 11.2"},
        {"[(a) -200 (b)] TJ", "a b 0,100 12"},
        {"[(a) 300 (b)] TJ", "ab 0,100 7"},
        {"[-1000 (a) -2000 ] TJ", "a 10,100 5"},
        {"[(a) -200] TJ [-300 (b)] TJ", "a b 0,100 15"},
        // Gaps are narrow where glyphs are, and run backwards where glyphs do.
        {"50 Tz [(a) -200 (b)] TJ", "ab 0,100 6"},
        {"50 Tz [(a) -400 (b)] TJ", "a b 0,100 7"},
        {"/F -10 Tf [(a) -1000 (b)] TJ", "ba -15,100 30"},
        // Where a line goes on.
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 20 80 Tm (cd) Tj", "abcd 10,20 20"},
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 38 80 Tm (cd) Tj", "ab cd 10,20 38"},
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 38.1 80 Tm (cd) Tj", "ab 10,20 10|cd 38.1,20 10"},
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 18.5 80 Tm (cd) Tj", "abcd 10,20 18.5"},
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 18 80 Tm (cd) Tj", "ab 10,20 10|cd 18,20 10"},
        {"1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 20 81 Tm (c) Tj (d) Tj", "abcd 10,20 20"},
        {"1 0 0 1 10 80 Tm (ab) Tj 0 1 -1 0 20 80 Tm (cd) Tj", "ab 10,20 10|cd 20,20 10"},
        {"10 80 Td (ab) Tj /F 6 Tf 10 3 Td (2) Tj /F 10 Tf 3 -3 Td (c) Tj", "ab2c 10,20 18"},
        {"10 80 Td (ab) Tj /F 6 Tf 3 Ts (2) Tj /F 10 Tf 0 Ts (c) Tj", "ab2c 10,20 18"},
        // The initial of a paragraph, which the first line goes on from.
        {"/F 40 Tf (a) Tj /F 10 Tf 1 0 0 1 20 20 Tm (b) Tj", "ab 0,80 25"},
        // Right to left, a glyph at a time.
        {"[(c) 1000 (b) 1000 (a)] TJ", "abc -10,100 15"},
    };
    for (const auto& [content, lines] : rows) {
        const TextRun text(std::string("BT /F 10 Tf ") + content + " ET");
        EXPECT_EQ(text.Print(), lines) << content;
        EXPECT_THAT(text.run.GetErrors(), IsEmpty()) << content;
    }
}

TEST(TextHandlerTest, EndsLinesWhereSomethingElseComesBetween)
{
    const struct
    {
        const char* content;
        const char* lines;
        std::size_t errors;
    } rows[] = {
        {"BT (ab) Tj ET BT (cd) Tj ET", "ab 0,100 10|cd 0,100 10", 0},
        {"BT (ab) Tj BT 10 0 Td (cd) Tj ET", "abcd 0,100 20", 1},
        {"BT (ab) Tj", "ab 0,100 10", 0},
        // The pen stays where the text before left it.
        {"BT (ab) Tj 0 0 5 5 re f (cd) Tj ET", "ab 0,100 10|cd 10,100 10", 3},
        {"BT (ab) Tj q (cd) Tj Q ET", "abcd 0,100 20", 2},
        {"BT (ab) Tj q 1 0 0 rg (cd) Tj Q (ef) Tj ET", "abcd 0,100 20|ef 20,100 10", 2},
        {"q BT (ab) Tj Q BT 10 0 Td (cd) Tj ET", "ab 0,100 10|cd 10,100 10", 2},
        {"BT (ab) Tj 1 0 0 rg (cd) Tj ET", "abcd 0,100 20", 0},
        {"BT (ab) Tj /GM gs (cd) Tj ET", "ab 0,100 10|cd 10,100 10", 0},
        {"BT (ab) Tj /GM gs /GN gs (cd) Tj ET", "abcd 0,100 20", 0},
        {"BT 0 1 -1 0 50 50 Tm (ab) Tj /GM gs (cd) Tj ET", "ab 50,50 10|cd 50,40 10", 0},
        {"BT 2 0 1 3 5 5 Tm 50 Tz (ab) Tj /GM gs (cd) Tj ET", "ab 5,95 10|cd 15,95 10", 0},
        {"BT (ab) Tj 3 Tr (cd) Tj ET", "abcd 0,100 20", 0},
        {"BT (ab) Tj 4 Tr (cd) Tj ET", "ab 0,100 10|cd 10,100 10", 0},
    };
    for (const auto& row : rows) {
        const TextRun text(std::string("/F 10 Tf ") + row.content);
        EXPECT_EQ(text.Print(), row.lines) << row.content;
        EXPECT_EQ(text.run.GetErrors(), std::vector<int>(row.errors, Error::General)) << row.content;
    }
    // Masks, which are told of.
    EXPECT_EQ(TextRun("/F 10 Tf BT (ab) Tj /GS gs (cd) Tj ET").Print(), "ab 0,100 10|cd 10,100 10");
    EXPECT_EQ(TextRun("/F 10 Tf BT /GS gs (ab) Tj /GS gs (cd) Tj /GT gs (e) Tj /G0 gs (f) Tj ET").Print(),
              "abcd 0,100 20|e 20,100 5|f 25,100 5");
    // The pen of a line that was taken away is that of no later one.
    EXPECT_EQ(TextRun("/F 10 Tf BT (ab) Tj /GM gs (cd) Tj 3 Tc 0 Tc (ef) Tj /GN gs (g) Tj ET").Print(),
              "ab 0,100 10|cdef 10,100 20|g 30,100 5");
}

/// Size, horizontal scale, shear, baseline shift.
std::string PrintAtts(const Char& c)
{
    std::string text = ToText(c.GetSize());
    for (const Story::GlyphAtt::Double attribute : {HorizontalScale, Shear, BaselineShift})
        text.append(" ").append(ToText(c.atts->Get(attribute)));
    return text;
}

TEST(TextHandlerTest, GivesCharactersTheirSizeScaleAndSlant)
{
    const std::pair<const char*, const char*> rows[] = {
        {"(a) Tj", "10 1 0 0"},
        {"/F -10 Tf (a) Tj", "10 -1 0 0"},
        {"50 Tz (a) Tj", "10 0.5 0 0"},
        {"2 0 0 3 0 0 Tm (a) Tj", "30 0.6667 0 0"},
        {"1 0 0.5 1 0 0 Tm (a) Tj", "10 1 -0.5 0"},
        {"0 1 -1 0 50 50 Tm (a) Tj", "10 1 0 0"},
        {"-1 0 0 1 0 0 Tm (a) Tj", "10 -1 0 0"},
        {"1 0 0 -1 0 0 Tm (a) Tj", "10 -1 0 0"},
        {"-1 0 0 -1 0 0 Tm (a) Tj", "10 1 0 0"},
        // A baseline of its own, or off that of larger or more text.
        {"3 Ts (a) Tj", "10 1 0 0"},
        {"(ab) Tj 3 Ts (c) Tj", "10 1 0 -3"},
        {"2 0 0 2 0 0 Tm (ab) Tj -3 Ts (c) Tj", "20 1 0 6"},
        {"(ab) Tj /F 6 Tf 10 3 Td (c) Tj", "6 1 0 -3"},
        {"(ab) Tj /F 6 Tf 10 -3 Td (c) Tj", "6 1 0 3"},
        {"/F 6 Tf (ab) Tj /F 10 Tf 6 3 Td (c) Tj", "10 1 0 0"},
    };
    for (const auto& [content, atts] : rows) {
        const TextRun text(std::string("BT /F 10 Tf ") + content + " ET");
        ASSERT_EQ(text.lines.size(), 1) << content;
        EXPECT_EQ(PrintAtts(text.lines[0]->chars.back()), atts) << content;
    }
}

/// However a matrix is taken apart, line and glyph together put it back.
TEST(TextHandlerTest, PutsGlyphsWhereTheMatricesSay)
{
    const Params matrices[] = {
        Params::FromPdf(1, 0, 0, 1, 30, 40),     Params::FromPdf(2, 0, 0, 3, 30, 40),
        Params::FromPdf(1, 0, 0.5, 1, 30, 40),   Params::FromPdf(0, 1, -1, 0, 30, 40),
        Params::FromPdf(0, -2, 1, 0, 30, 40),    Params::FromPdf(-1, 0, 0, -1, 30, 40),
        Params::FromPdf(-1, 0, 0, 1, 30, 40),    Params::FromPdf(1, 0, 0, -1, 30, 40),
        Params::FromPdf(0.6, 0.8, -2, 1, 30, 4), Params::FromPdf(-0.6, 0.8, 0.5, 1.5, 3, 40),
        Params::FromPdf(0, 1, 1, 0, 30, 40),     Params::FromPdf(1e-3, 2e-3, -3e-3, 1e-3, 30, 40),
    };
    for (const Params& matrix : matrices) {
        for (const Params& page : {Params(), Params::FromPdf(0.5, 0.1, -0.2, 2, 7, 9)}) {
            std::string content;
            const auto add = [&content](const Params& m, const char* op) {
                for (const double value : {m.a, m.b, m.c, m.d, m.e, m.f})
                    content.append(ToText(value)).append(" ");
                content.append(op);
            };
            add(page, "cm BT ");
            add(matrix, "Tm /F 10 Tf 50 Tz (a) Tj ET");
            const TextRun text(content);
            ASSERT_EQ(text.lines.size(), 1) << content;
            const TextLineObject& line = *text.lines[0];
            const Char& c = line.chars[0];
            const auto pen = line.GetGdiPosition();
            const Params glyph = line.transform * c.atts->GetGlyphTransform(pen);
            // From the em square, y downward, to a page of 100 points.
            const Params expected = Params{1, 0, 0, 0, -1, 100} * page * matrix * Params::Scale(5, -10);
            // A line that runs backwards starts where its glyph ends.
            const double start = c.atts->Get(HorizontalScale) < 0 ? -0.5 : 0;
            const auto origin = expected.ApplyTo(Kernel::PointT<double>{0, 0});
            const auto got = glyph.ApplyTo(Kernel::PointT<double>{start, 0});
            EXPECT_NEAR(got.x, origin.x, 1e-9) << content;
            EXPECT_NEAR(got.y, origin.y, 1e-9) << content;
            EXPECT_NEAR(glyph.a, expected.a, 1e-9) << content;
            EXPECT_NEAR(glyph.b, expected.b, 1e-9) << content;
            EXPECT_NEAR(glyph.c, expected.c, 1e-9) << content;
            EXPECT_NEAR(glyph.d, expected.d, 1e-9) << content;
            const double size = std::hypot(expected.a, expected.b) * 0.5;
            EXPECT_NEAR(line.width, size, 1e-9) << content;
        }
    }
}

TEST(TextHandlerTest, SurvivesMatricesThatNoTextFits)
{
    // "#" is a large number. Numbers have no exponents: what is larger than an integer takes products of matrices.
    const std::pair<int, const char*> rows[] = {{0, "0 0 0 0 0 0 Tm"},
                                                {0, "1 1 1 1 0 0 Tm"},
                                                {0, "0 0 0 1 5 5 Tm"},
                                                {0, "1 0 0 0 5 5 Tm"},
                                                {0, "/F 0 Tf"},
                                                {0, "0 Tz"},
                                                {0, "# 0 0 # 0 0 Tm"},
                                                {0, "1 0 0 1 # # Tm # 0 Td"},
                                                {0, "# Tc"},
                                                {0, "# Ts"},
                                                {0, "/F # Tf"},
                                                {0, "-# Tw # Tc"},
                                                {1, ""},
                                                {8, ""},
                                                {16, ""},
                                                {17, ""},
                                                {16, "1 0 0 1 # # cm"},
                                                {16, "# Ts 0 # Td"},
                                                {17, "-# Tc [-# -#] TJ"}};
    for (const auto& [scales, state] : rows) {
        std::string content = "q BT /F 10 Tf ";
        for (int i = 0; i < scales; ++i)
            content += "# 0 0 # 0 0 cm ";
        content.append(state).append(" (a b) Tj [(c) -# (d)] TJ q Q (e) Tj ET Q ");
        content += "BT /F 10 Tf 100 Tz 0 Tc 0 Tw 0 Ts (end) Tj ET";
        for (auto place = content.find('#'); place != content.npos; place = content.find('#'))
            content.replace(place, 1, "9000000000000000000");
        const TextRun text(content);
        ASSERT_FALSE(text.lines.empty()) << scales << state;
        EXPECT_EQ(text.lines.back()->GetText(), "end") << scales << state;
        text.run.root->UpdateBBoxes();
    }
}

TEST(TextHandlerTest, NoiseInThePenMakesNoGap)
{
    // The letters are drawn narrower than they are set, and a kern would make a space of less.
    for (const char* between : {"", "12 TL", "1 g", "1 Tr"}) {
        for (const char* matrix : {"1 0 0 1 0 0", ".7 .3 -.3 .7 10 10", "0.1 0 0 0.1 3 7", ".24 0 0 .24 0 0"}) {
            std::string content = matrix;
            content += " cm BT /F 10 Tf 10.1 80.3 Td ";
            for (int i = 0; i < 5; ++i)
                content.append(i == 2 ? "0 g 0 Tr" : between).append(" (i) Tj ");
            const TextRun text(content + "ET");
            ASSERT_EQ(text.lines.size(), 1) << content;
            EXPECT_EQ(text.lines[0]->GetText(), "iiiii") << content;
        }
    }
}

TEST(TextHandlerTest, TouchingTheStateLeavesTheAttributes)
{
    for (const char* matrix : {"1 0 0 1 0 0", ".7 .3 -.3 .7 10 10", ".1 .05 -.02 .13 3 7", "0 -.24 .3 0 9 9"}) {
        // The last letter is in a line of its own.
        const TextRun text(std::string("/F 10.1 Tf ") + matrix +
                           " cm BT .37 .11 -.2 .93 10.1 80.3 Tm (a) Tj 12 TL (b) Tj 3 Tc 0 Tc (c) Tj 0 g "
                           "[(d) 0 (e)] TJ /GM gs /GN gs (f) Tj /GM gs (g) Tj ET");
        ASSERT_EQ(text.lines.size(), 2) << matrix;
        ASSERT_EQ(text.lines[0]->GetText(), "abcdef") << matrix;
        for (const auto& line : text.lines) {
            for (const Char& c : line->chars)
                EXPECT_EQ(c.atts.Get(), text.lines[0]->chars[0].atts.Get()) << matrix;
        }
    }
    // A new matrix counts.
    EXPECT_EQ(TextRun("BT /F 10 Tf (a) Tj 2 0 0 2 5 0 Tm (b) Tj ET").lines[0]->chars[1].GetSize(), 20);
}

TEST(TextHandlerTest, FontsThatMirrorTheirGlyphsTakeTheMatrixApartAnew)
{
    const std::string type3 =
        "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1000 1000] /FontMatrix [.001 0 0 -.001 0 0] "
        "/Encoding /WinAnsiEncoding /FirstChar 97 /Widths [500 500] /CharProcs << >> >>";
    const PageParts parts{.resources = "/Font << /F 5 0 R /G 6 0 R >>", .objects = {MakeFont(c_sans), type3}};
    const ContentRun run("1 0 0 -1 0 100 cm BT /F 10 Tf (a) Tj /G 10 Tf (b) Tj ET", parts);
    const Lines lines = GetLines(*run.root);
    std::string scales;
    for (const auto& line : lines) {
        for (const Char& c : line->chars)
            scales += ToText(c.atts->Get(HorizontalScale)) + " ";
    }
    EXPECT_EQ(scales, "-1 1 ");
}

TEST(TextHandlerTest, EditableTextHasASpaceForEachGap)
{
    // This font has a code for a space, but another glyph there.
    const ContentRun redefined(
        "BT /F 10 Tf [(a) -300 (b)] TJ ET",
        {.resources = "/Font << /F 5 0 R >>",
         .objects = {"<< /Type /Font /Subtype /Type1 /BaseFont /Nofont /FirstChar 32 /Widths [500 600] "
                     "/Encoding << /Differences [32 /A] >> >>"}},
        {}, [](PdfDocument& document) { document.SetTextFidelity(TextFidelityEditable); });
    EXPECT_EQ(GetLines(*redefined.root).at(0)->chars.at(1).unicode, U' ');

    const std::string font = MakeFont("Nofont", "/FontDescriptor << /Flags 4 >> /ToUnicode 6 0 R");
    const PageParts parts{.resources = "/Font << /F 5 0 R >>",
                          .objects = {font, PdfBuilder::MakeStream("<61> <62> <0061> endbfrange")}};
    for (const bool isEditable : {false, true}) {
        const ContentRun run("BT /F 10 Tf [(a) -300 (b)] TJ 16 0 Td (a) Tj ET", parts, {}, [&](PdfDocument& document) {
            document.SetTextFidelity(isEditable ? TextFidelityEditable : TextFidelityExact);
        });
        const Lines lines = GetLines(*run.root);
        ASSERT_EQ(lines.size(), 1);
        EXPECT_EQ(lines[0]->GetText(), isEditable ? "a b a" : "aba");
        EXPECT_EQ(lines[0]->width, 21);
        EXPECT_EQ(lines[0]->HasUndefinedSpace(), isEditable);
        if (isEditable) {
            EXPECT_EQ(lines[0]->chars[1].unicode, U' ');
            EXPECT_EQ(lines[0]->chars[1].atts.Get(), lines[0]->chars[0].atts.Get());
        }
    }
}

TEST(TextHandlerTest, ClipsThatAFormLeavesOpenEndWithIt)
{
    const TextRun text("/Open Do BT /F 10 Tf (x) Tj ET 0 0 50 50 re f");
    ASSERT_EQ(text.run.GetCount(), 3);
    EXPECT_FALSE(text.run.GetGroup(2));
    EXPECT_EQ(text.Print(), "x 0,100 5");
}

TEST(TextHandlerTest, ClipsAreCutWhereThePageHasUsedUpItsWork)
{
    const Budget::Scope budget(Kernel::MakeCounted<Budget>(100'000), Budget::Share::All, nullptr);
    const TextRun text("BT /F 10 Tf 7 Tr (@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@) Tj ET 0 0 50 50 re f");
    EXPECT_TRUE(Budget::IsSpent());
}

double GetAlpha(const Char& c, Story::GlyphAtt::Object paint)
{
    const auto& fill = c.atts->GetFill(paint);
    return fill->IsEmpty() ? -1 : static_cast<double>(fill->fill->GetColour()->GetAlpha());
}

TEST(TextHandlerTest, PaintsAndClipsByTheRenderMode)
{
    const struct
    {
        int mode;
        std::size_t lines;
        bool isFilled;
        bool isStroked;
        bool isClip;
    } rows[] = {
        {0, 1, true, false, false}, {1, 1, false, true, false}, {2, 1, true, true, false}, {3, 1, false, false, false},
        {4, 1, true, false, true},  {5, 1, false, true, true},  {6, 1, true, true, true},  {7, 0, false, false, true},
    };
    for (const auto& row : rows) {
        const TextRun text("BT /F 10 Tf " + std::to_string(row.mode) + " Tr (a b) Tj ET 0 0 50 50 re f");
        ASSERT_EQ(text.lines.size(), row.lines) << row.mode;
        if (row.lines > 0) {
            const Char& c = text.lines[0]->chars[0];
            EXPECT_EQ(GetAlpha(c, Story::GlyphAtt::Fill) >= 0, row.isFilled) << row.mode;
            EXPECT_EQ(GetAlpha(c, StrokeFill) >= 0, row.isStroked) << row.mode;
            EXPECT_EQ(
                Renderer::LineStyleDescriptor::IsLineStyleVisible(c.atts->GetLineStyle(), c.atts->GetFill(StrokeFill)),
                row.isStroked)
                << row.mode;
            EXPECT_EQ(text.lines[0]->HasFillOrStroke(), row.isFilled || row.isStroked) << row.mode;
        }
        // What follows is in the clip, which is the glyphs: one curve for "b" and one for its counter, and so for "a".
        ASSERT_EQ(text.run.GetCount(), row.lines + 1) << row.mode;
        const auto group = text.run.GetGroup(row.lines);
        ASSERT_EQ(static_cast<bool>(group), row.isClip) << row.mode;
        if (!group) continue;
        ASSERT_TRUE(group->clipPath) << row.mode;
        EXPECT_EQ(group->clipPath->curves.size(), 4) << row.mode;
        const auto box = group->clipPath->GetExactBBox();
        EXPECT_TRUE(box.left >= 0 && box.right <= 16 && box.top > 90 && box.bottom < 101) << row.mode;
        EXPECT_EQ(group->children.size(), 1) << row.mode;
    }
}

TEST(TextHandlerTest, ClipsNothingByTextThatIsNotThere)
{
    EXPECT_TRUE(TextRun("BT /F 10 Tf 7 Tr ET 0 0 5 5 re f").run.GetPath(0));
    EXPECT_TRUE(TextRun("BT /F 10 Tf 7 Tr (  ) Tj ET 0 0 5 5 re f").run.GetPath(0));
    // Clips of one text object are one clip, and of several ones clip each other.
    EXPECT_EQ(
        TextRun("BT /F 10 Tf 7 Tr (o) Tj 0 -20 Td (o) Tj ET 0 0 5 5 re f").run.GetGroup(0)->clipPath->curves.size(), 4);
    const TextRun twice("BT /F 10 Tf 7 Tr (o) Tj ET BT (o) Tj ET 0 0 5 5 re f");
    ASSERT_EQ(twice.run.GetGroup(0)->children.size(), 1);
    EXPECT_TRUE(twice.run.GetGroup(0)->children[0]->clipPath);
}

TEST(TextHandlerTest, PutsPaintIntoTheAttributes)
{
    const TextRun text("BT /F 10 Tf 2 Tr /GA gs 1 0 0 rg 0 0 1 RG 4 w (a) Tj /GM gs (b) Tj /GS gs (c) Tj ET");
    ASSERT_EQ(text.lines.size(), 3);
    for (const auto& line : text.lines) {
        EXPECT_FLOAT_EQ(static_cast<float>(GetAlpha(line->chars[0], Story::GlyphAtt::Fill)), 0.5F);
        EXPECT_FLOAT_EQ(static_cast<float>(GetAlpha(line->chars[0], StrokeFill)), 0.25F);
        EXPECT_EQ(line->chars[0].atts->GetLineStyle()->lineStyle->width, 4);
        EXPECT_GE(line->id, 0);
    }
    EXPECT_EQ(text.lines[0]->blendMode, Renderer::FillBlendMode::Normal);
    EXPECT_EQ(text.lines[1]->blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_EQ(text.lines[2]->blendMode, Renderer::FillBlendMode::Multiply);
    EXPECT_FALSE(text.lines[0]->softMask);
    EXPECT_FALSE(text.lines[1]->softMask);
    EXPECT_TRUE(text.lines[2]->softMask);
    EXPECT_NE(text.lines[0]->id, text.lines[1]->id);
}

TEST(TextHandlerTest, ReportsWhatItDoesNotKnowAndGoesOn)
{
    const std::pair<const char*, const char*> rows[] = {
        {"/Unknown 10 Tf (ab) Tj", "ab"},
        {"/F 10 Tf [(a) /Name (b)] TJ", "ab"},
        {"/F 10 Tf [(a) (b)] TJ /Unknown 10 Tf (c) Tj", "abc"},
    };
    for (const auto& [content, lines] : rows) {
        const TextRun text(std::string("BT ") + content + " ET");
        ASSERT_EQ(text.lines.size(), 1) << content;
        EXPECT_EQ(text.lines[0]->GetText(), lines) << content;
        EXPECT_THAT(text.run.GetErrors(), ElementsAre(Error::General)) << content;
    }
    // Text before any font, which has no size either.
    EXPECT_EQ(TextRun("BT (ab) Tj ET BT /F 10 Tf (c) Tj ET").lines.back()->GetText(), "c");
}

TEST(TextHandlerTest, MakesAttributesForRunsAndNotForCharacters)
{
    std::string content = "BT /F 10 Tf ";
    for (int i = 0; i < 300; ++i) {
        content += i % 2 == 0 ? "1 0 0 rg " : "0 0 1 rg ";
        content.append("1 0 0 1 ").append(std::to_string(i % 10 * 15)).append(" ");
        content.append(std::to_string(i / 10 * 12)).append(" Tm (ab) Tj\n");
    }
    const std::size_t before = Kernel::InternTable::GetSize();
    const TextRun text(content + "ET");
    std::set<const Story::GlyphAtts*> atts;
    std::size_t chars = 0;
    for (const auto& line : text.lines) {
        for (const Char& c : line->chars)
            atts.insert(c.atts.Get());
        chars += line->chars.size();
    }
    EXPECT_EQ(text.lines.size(), 30);
    EXPECT_EQ(chars, 600 + 270);
    EXPECT_EQ(atts.size(), 2);
    EXPECT_LT(Kernel::InternTable::GetSize() - before, 20);
}

} // namespace
} // namespace Quillet::Test
