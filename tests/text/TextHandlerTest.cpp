#include "content/TextHandler.h"

#include "TextOf.h"
#include "content/ContentRun.h"
#include "document/Guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <sstream>
#include <tuple>
#include <utility>

namespace Quillet::Test {
namespace {

using namespace Story::GlyphAtt;
using testing::ElementsAre;
using Params = Object::Params;

constexpr const char* c_resources =
    "/Font << /F 5 0 R >> /XObject << /Open 7 0 R >> /ExtGState << /GA << /ca 0.5 /CA 0.25 >> /GM << /BM /Multiply >> "
    "/GN << /BM /Normal >> /GS << /SMask << /Type /Mask /S /Luminosity /G 6 0 R >> >> /G0 << /SMask /None >> "
    "/GT << /SMask << /Type /Mask /S /Alpha /G 6 0 R >> >> >>";

std::string MakeForm(const char* content, const char* entries = "")
{
    return PdfBuilder::MakeStream(content, std::string("/Type /XObject /Subtype /Form /BBox [0 0 200 200] ") + entries);
}

/// Page content with a font F, in which each character is half an em wide, and some graphics states.
class TextRun
{
public:
    explicit TextRun(const std::string& content)
        : run(content, {.resources = c_resources,
                        .objects = {MakeFont(c_sans), MakeForm("0 0 50 50 re f", "/Group << /S /Transparency >>"),
                                    MakeForm("BT /F 10 Tf 7 Tr 10 10 Td (ab) Tj")}}),
          lines(GetLines(*run.root))
    {}

    /// Each line as its text, the start of its baseline on the page, and its width.
    std::string Print() const
    {
        std::string text;
        for (const auto& line : lines) {
            const auto start = line->transform.ApplyTo(line->GetGdiPosition());
            text += text.empty() ? "" : "|";
            text += line->GetText() + " " + ToText(start.x) + "," + ToText(start.y) + " " + ToText(line->width);
        }
        return text;
    }

    ContentRun run;
    Lines lines;
};

/// The lines of content, which reports so many errors.
std::string PrintLines(const std::string& content, std::size_t errors = 0)
{
    const TextRun text("/F 10 Tf " + content);
    EXPECT_EQ(text.run.GetErrors(), std::vector<int>(errors, Error::General)) << content;
    return text.Print();
}

std::string Show(const std::string& content)
{
    return PrintLines("BT " + content + " ET");
}

TEST(TextHandlerTest, PutsStringsOnLines)
{
    EXPECT_EQ(Show("10 80 Td (ab) Tj 0 -12 Td (cd) Tj"), "ab 10,20 10|cd 10,32 10");
    EXPECT_EQ(Show("12 TL 10 80 Td (ab) Tj T* (cd) Tj (ef) '"), "ab 10,20 10|cd 10,32 10|ef 10,44 10");
    EXPECT_EQ(Show("10 80 TD (ab) Tj T* (c) Tj"), "ab 10,20 10|c 10,-60 5");
    EXPECT_EQ(Show("1 2 (ab) \""), "ab 0,100 14");
    EXPECT_EQ(Show("2 Tc 3 Tw (a b) Tj"), "a b 0,100 24");
    EXPECT_EQ(Show("50 Tz (ab) Tj"), "ab 0,100 5");
    EXPECT_EQ(Show("( ab ) Tj"), "ab 5,100 10");
    EXPECT_EQ(Show("(  ) Tj 0 -20 Td (  ) Tj"), "");
    // A gap of a sixth of the size is a space.
    EXPECT_EQ(Show("[(a) -200 (b)] TJ"), "a b 0,100 12");
    EXPECT_EQ(Show("[(a) 300 (b)] TJ"), "ab 0,100 7");
    EXPECT_EQ(Show("[-1000 (a) -2000 ] TJ"), "a 10,100 5");
    EXPECT_EQ(Show("[(a) -200] TJ [-300 (b)] TJ"), "a b 0,100 15");
    // Gaps are narrow where glyphs are, and run backwards where glyphs do.
    EXPECT_EQ(Show("50 Tz [(a) -200 (b)] TJ"), "ab 0,100 6");
    EXPECT_EQ(Show("50 Tz [(a) -400 (b)] TJ"), "a b 0,100 7");
    EXPECT_EQ(Show("/F -10 Tf [(a) -1000 (b)] TJ"), "ba -15,100 30");
    // Where a line goes on.
    EXPECT_EQ(Show("1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 38 80 Tm (cd) Tj"), "ab cd 10,20 38");
    EXPECT_EQ(Show("1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 38.1 80 Tm (cd) Tj"), "ab 10,20 10|cd 38.1,20 10");
    EXPECT_EQ(Show("1 0 0 1 10 80 Tm (ab) Tj 1 0 0 1 20 81 Tm (c) Tj (d) Tj"), "abcd 10,20 20");
    EXPECT_EQ(Show("1 0 0 1 10 80 Tm (ab) Tj 0 1 -1 0 20 80 Tm (cd) Tj"), "ab 10,20 10|cd 20,20 10");
    EXPECT_EQ(Show("10 80 Td (ab) Tj /F 6 Tf 10 3 Td (2) Tj /F 10 Tf 3 -3 Td (c) Tj"), "ab2c 10,20 18");
    EXPECT_EQ(Show("10 80 Td (ab) Tj /F 6 Tf 3 Ts (2) Tj /F 10 Tf 0 Ts (c) Tj"), "ab2c 10,20 18");
    // The initial of a paragraph, which the first line goes on from.
    EXPECT_EQ(Show("/F 40 Tf (a) Tj /F 10 Tf 1 0 0 1 20 20 Tm (b) Tj"), "ab 0,80 25");
    // Right to left, a glyph at a time.
    EXPECT_EQ(Show("[(c) 1000 (b) 1000 (a)] TJ"), "abc -10,100 15");
}

TEST(TextHandlerTest, EndsLinesWhereSomethingElseComesBetween)
{
    EXPECT_EQ(PrintLines("BT () Tj (ab) Tj ET BT (cd) Tj"), "ab 0,100 10|cd 0,100 10");
    EXPECT_EQ(PrintLines("BT (ab) Tj BT 10 0 Td (cd) Tj ET", 1), "abcd 0,100 20");
    // The pen stays where the text before left it.
    EXPECT_EQ(PrintLines("BT (ab) Tj 0 0 5 5 re f (cd) Tj ET", 3), "ab 0,100 10|cd 10,100 10");
    EXPECT_EQ(PrintLines("BT (ab) Tj q (cd) Tj Q ET", 2), "abcd 0,100 20");
    EXPECT_EQ(PrintLines("BT (ab) Tj q 1 0 0 rg (cd) Tj Q (ef) Tj ET", 2), "abcd 0,100 20|ef 20,100 10");
    EXPECT_EQ(PrintLines("q BT (ab) Tj Q BT 10 0 Td (cd) Tj ET", 2), "ab 0,100 10|cd 10,100 10");
    EXPECT_EQ(PrintLines("BT (ab) Tj /GM gs (cd) Tj ET"), "ab 0,100 10|cd 10,100 10");
    EXPECT_EQ(PrintLines("BT (ab) Tj /GM gs /GN gs (cd) Tj ET"), "abcd 0,100 20");
    EXPECT_EQ(PrintLines("BT 0 1 -1 0 50 50 Tm (ab) Tj /GM gs (cd) Tj ET"), "ab 50,50 10|cd 50,40 10");
    EXPECT_EQ(PrintLines("BT 2 0 1 3 5 5 Tm 50 Tz (ab) Tj /GM gs (cd) Tj ET"), "ab 5,95 10|cd 15,95 10");
    EXPECT_EQ(PrintLines("BT (ab) Tj 3 Tr (cd) Tj ET"), "abcd 0,100 20");
    EXPECT_EQ(PrintLines("BT (ab) Tj 4 Tr (cd) Tj ET"), "ab 0,100 10|cd 10,100 10");
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

/// The attributes of the last character of the one line.
std::string PrintLast(const std::string& content)
{
    const TextRun text("BT /F 10 Tf " + content + " ET");
    EXPECT_EQ(text.lines.size(), 1) << content;
    return PrintAtts(text.lines.back()->chars.back());
}

TEST(TextHandlerTest, GivesCharactersTheirSizeScaleAndSlant)
{
    EXPECT_EQ(PrintLast("/F -10 Tf (a) Tj"), "10 -1 0 0");
    EXPECT_EQ(PrintLast("2 0 0 3 0 0 Tm 50 Tz (a) Tj"), "30 0.3333 0 0");
    EXPECT_EQ(PrintLast("1 0 0.5 1 0 0 Tm (a) Tj"), "10 1 -0.5 0");
    EXPECT_EQ(PrintLast("0 1 -1 0 50 50 Tm (a) Tj"), "10 1 0 0");
    EXPECT_EQ(PrintLast("1 0 0 -1 0 0 Tm (a) Tj"), "10 -1 0 0");
    EXPECT_EQ(PrintLast("-1 0 0 -1 0 0 Tm (a) Tj"), "10 1 0 0");
    // A baseline of its own, or off that of larger or more text.
    EXPECT_EQ(PrintLast("3 Ts (a) Tj"), "10 1 0 0");
    EXPECT_EQ(PrintLast("2 0 0 2 0 0 Tm (ab) Tj -3 Ts (c) Tj"), "20 1 0 6");
    EXPECT_EQ(PrintLast("(ab) Tj /F 6 Tf 10 3 Td (c) Tj"), "6 1 0 -3");
    EXPECT_EQ(PrintLast("/F 6 Tf (ab) Tj /F 10 Tf 6 3 Td (c) Tj"), "10 1 0 0");
    // A new matrix counts.
    EXPECT_EQ(PrintLast("(a) Tj 2 0 0 2 5 0 Tm (b) Tj"), "20 1 0 0");
}

Params Parse(const std::string& matrix)
{
    double a, b, c, d, e, f;
    std::istringstream(matrix) >> a >> b >> c >> d >> e >> f;
    return Params::FromPdf(a, b, c, d, e, f);
}

/// However a matrix is taken apart, line and glyph together put it back.
TEST(TextHandlerTest, PutsGlyphsWhereTheMatricesSay)
{
    const char* matrices[] = {"1 0 0 1 30 40",   "2 0 0 3 30 40",      "1 0 .5 1 30 40", "0 1 -1 0 30 40",
                              "0 -2 1 0 30 40",  "-1 0 0 -1 30 40",    "-1 0 0 1 30 40", "1 0 0 -1 30 40",
                              ".6 .8 -2 1 30 4", "-.6 .8 .5 1.5 3 40", "0 1 1 0 30 40",  ".001 .002 -.003 .001 30 40"};
    for (const std::string matrix : matrices) {
        for (const std::string page : {"1 0 0 1 0 0", ".5 .1 -.2 2 7 9"}) {
            std::string content = page;
            content.append(" cm BT ").append(matrix).append(" Tm /F 10 Tf 50 Tz (a) Tj ET");
            SCOPED_TRACE(content);
            const TextRun text(content);
            ASSERT_EQ(text.lines.size(), 1);
            const TextLineObject& line = *text.lines[0];
            const Story::GlyphAtts& atts = *line.chars[0].atts;
            const Params glyph = line.transform * atts.GetGlyphTransform(line.GetGdiPosition());
            // From the em square, y downward, to a page of 100 points. A line that runs backwards starts where its
            // glyph ends.
            const double start = atts.Get(HorizontalScale) < 0 ? 0.5 : 0;
            const Params expected = Params{1, 0, 0, 0, -1, 100} * Parse(page) * Parse(matrix) * Params::Scale(5, -10) *
                                    Params::Translation(start, 0);
            EXPECT_TRUE(glyph.IsEqual(expected, 1e-9));
            EXPECT_NEAR(line.width, std::hypot(expected.a, expected.b) * 0.5, 1e-9);
        }
    }
}

TEST(TextHandlerTest, SurvivesMatricesThatNoTextFits)
{
    // "#" is a large number. Numbers have no exponents: what is larger than an integer takes products of matrices.
    const std::pair<int, std::vector<const char*>> rows[] = {
        {0, {"0 0 0 0 0 0 Tm", "1 1 1 1 0 0 Tm", "0 0 0 1 5 5 Tm", "1 0 0 0 5 5 Tm", "/F 0 Tf", "0 Tz"}},
        {0, {"# 0 0 # 0 0 Tm", "1 0 0 1 # # Tm # 0 Td", "# Tc", "# Ts", "/F # Tf", "-# Tw # Tc"}},
        {1, {""}},
        {8, {""}},
        {16, {"", "1 0 0 1 # # cm", "# Ts 0 # Td"}},
        {17, {"", "-# Tc [-# -#] TJ"}}};
    for (const auto& [scales, states] : rows) {
        std::string start = "q BT /F 10 Tf ";
        for (int i = 0; i < scales; ++i)
            start += "# 0 0 # 0 0 cm ";
        for (const char* state : states) {
            std::string content = start + state + " (a b) Tj [(c) -# (d)] TJ q Q (e) Tj ET Q ";
            content += "BT /F 10 Tf 100 Tz 0 Tc 0 Tw 0 Ts (end) Tj ET";
            for (auto place = content.find('#'); place != content.npos; place = content.find('#'))
                content.replace(place, 1, "9000000000000000000");
            const TextRun text(content);
            ASSERT_FALSE(text.lines.empty()) << scales << state;
            EXPECT_EQ(text.lines.back()->GetText(), "end") << scales << state;
            text.run.root->UpdateBBoxes();
        }
    }
}

/// Letters that are drawn narrower than they are set, among which a kern would make a space of less than noise.
TEST(TextHandlerTest, TouchingTheStateLeavesTheAttributes)
{
    for (const char* matrix :
         {"1 0 0 1 0 0", ".7 .3 -.3 .7 10 10", ".1 .05 -.02 .13 3 7", "0 -.24 .3 0 9 9", ".24 0 0 .24 0 0"}) {
        // The last letter is in a line of its own.
        const TextRun text(std::string("/F 10.1 Tf ") + matrix +
                           " cm BT .37 .11 -.2 .93 10.1 80.3 Tm (i) Tj 12 TL (i) Tj 3 Tc 0 Tc (i) Tj 0 g "
                           "[(i) 0 (i)] TJ 1 g 0 g 1 Tr 0 Tr (i) Tj /GM gs /GN gs (i) Tj /GM gs (i) Tj ET");
        ASSERT_EQ(text.lines.size(), 2) << matrix;
        ASSERT_EQ(text.lines[0]->GetText(), "iiiiiii") << matrix;
        for (const auto& line : text.lines) {
            for (const Char& c : line->chars)
                EXPECT_EQ(c.atts.Get(), text.lines[0]->chars[0].atts.Get()) << matrix;
        }
        EXPECT_EQ(TextRun(std::string(matrix) + " cm BT /F 10 Tf 10.1 80.3 Td (i) Tj 1 g (i) Tj 1 Tr (i) Tj ET")
                      .lines.at(0)
                      ->GetText(),
                  "iii");
    }
}

TEST(TextHandlerTest, FontsThatMirrorTheirGlyphsTakeTheMatrixApartAnew)
{
    const std::string type3 =
        "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1000 1000] /FontMatrix [.001 0 0 -.001 0 0] "
        "/Encoding /WinAnsiEncoding /FirstChar 97 /Widths [500 500] /CharProcs << >> >>";
    const PageParts parts{.resources = "/Font << /F 5 0 R /G 6 0 R >>", .objects = {MakeFont(c_sans), type3}};
    const ContentRun run("1 0 0 -1 0 100 cm BT /F 10 Tf (a) Tj /G 10 Tf (b) Tj ET", parts);
    EXPECT_EQ(PrintAtts(GetLines(*run.root).front()->chars.front()), "10 -1 0 0");
    EXPECT_EQ(PrintAtts(GetLines(*run.root).back()->chars.back()), "10 1 0 0");
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
        EXPECT_EQ(lines[0]->chars[1].unicode, isEditable ? U' ' : U'b');
        EXPECT_EQ(lines[0]->chars[1].atts.Get(), lines[0]->chars[0].atts.Get());
    }
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

/// Each line as "f" for a fill, "s" for a stroke and ".", and then "c" where what follows is clipped by glyphs.
TEST(TextHandlerTest, PaintsAndClipsByTheRenderMode)
{
    const char* const modes[] = {"f.", "s.", "fs.", ".", "f.c", "s.c", "fs.c", "c"};
    for (std::size_t mode = 0; mode < std::size(modes); ++mode) {
        SCOPED_TRACE(mode);
        const TextRun text("BT /F 10 Tf " + std::to_string(mode) + " Tr (a b) Tj ET 0 0 50 50 re f");
        std::string found;
        for (const auto& line : text.lines) {
            const Story::GlyphAtts& atts = *line->chars[0].atts;
            const bool isStroked =
                Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill));
            EXPECT_EQ(GetAlpha(line->chars[0], StrokeFill) >= 0, isStroked);
            found += GetAlpha(line->chars[0], Story::GlyphAtt::Fill) >= 0 ? "f" : "";
            found += isStroked ? "s." : ".";
            EXPECT_EQ(line->HasFillOrStroke(), found != ".");
        }
        ASSERT_EQ(text.run.GetCount(), text.lines.size() + 1);
        const auto group = text.run.GetGroup(text.lines.size());
        EXPECT_EQ(found + (group ? "c" : ""), modes[mode]);
        if (!group) continue;
        // One curve for "b" and one for its counter, and so for "a".
        EXPECT_EQ(group->clipPath->curves.size(), 4);
        EXPECT_TRUE((Object::Rect{0, 90, 16, 101}).Contains(group->clipPath->GetExactBBox()));
        EXPECT_EQ(group->children.size(), 1);
    }
}

TEST(TextHandlerTest, ClipsNothingByTextThatIsNotThere)
{
    const std::string modes = "BT /F 10 Tf 7 Tr ";
    EXPECT_TRUE(TextRun(modes + "(  ) Tj ET 0 0 5 5 re f").run.GetPath(0));
    // Clips of one text object are one clip, and of several ones clip each other; those of a form end with it.
    const TextRun twice(modes + "(o) Tj 0 -20 Td (o) Tj ET BT (o) Tj ET 0 0 5 5 re f");
    EXPECT_EQ(twice.run.GetGroup(0)->clipPath->curves.size(), 4);
    ASSERT_EQ(twice.run.GetGroup(0)->children.size(), 1);
    EXPECT_TRUE(twice.run.GetGroup(0)->children[0]->clipPath);
    const TextRun form("/Open Do BT /F 10 Tf (x) Tj ET 0 0 50 50 re f");
    ASSERT_EQ(form.run.GetCount(), 3);
    EXPECT_FALSE(form.run.GetGroup(2));
    EXPECT_EQ(form.Print(), "x 0,100 5");
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
    const auto blendMode = Renderer::FillBlendMode::Multiply;
    EXPECT_EQ(text.lines[0]->blendMode, Renderer::FillBlendMode::Normal);
    EXPECT_TRUE(text.lines[1]->blendMode == blendMode && text.lines[2]->blendMode == blendMode);
    EXPECT_TRUE(!text.lines[0]->softMask && !text.lines[1]->softMask && text.lines[2]->softMask);
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
        content += "1 0 0 1 " + std::to_string(i % 10 * 15) + " " + std::to_string(i / 10 * 12) + " Tm (ab) Tj\n";
    }
    const std::size_t before = Kernel::InternTable::GetSize();
    const TextRun text(content + "ET");
    std::set<const Story::GlyphAtts*> atts;
    for (const auto& line : text.lines) {
        for (const Char& c : line->chars)
            atts.insert(c.atts.Get());
    }
    EXPECT_EQ(text.lines.size(), 30);
    EXPECT_EQ(atts.size(), 2);
    EXPECT_LT(Kernel::InternTable::GetSize() - before, 20);
}

} // namespace
} // namespace Quillet::Test
