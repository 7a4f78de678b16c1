#include "ContentRun.h"

#include "document/Guard.h"
#include "support/Repeat.h"
#include "TreeText.h"

#include <gmock/gmock.h>

namespace Quillet::Test {
namespace {

using testing::IsEmpty;

constexpr int c_general = Error::General;

/// Kinds raised by operators in the wrong place or with the wrong number or type of operands.
TEST(InterpreterTest, ReportsWrongPlacesAndOperandCounts)
{
    const std::pair<const char*, std::size_t> rows[] = {
        {"q 1 0 0 1 0 0 cm 2 w 0 J 1 j 3 M [1 2] 0 d Q", 0},
        {"0 0 m 1 1 l 1 2 3 4 5 6 c 1 2 3 4 v 1 2 3 4 y h S 0 0 1 1 re W n", 0},
        {"BT 5 w 0 Tr 1 Tc 2 Tw 3 TL 4 Ts 50 Tz 1 2 Td 1 2 TD 1 0 0 1 0 0 Tm T* ET", 0},
        {"BT (a) Tj [(a) -120.5 (b)] TJ (a) ' 1 2 (a) \" ET", 0},
        {"BX EX EX 1 2 BX /a DP MP 3 i /x ri", 0},
        {"1 2 3 unknown d0 d1 EI ID { } null", 0},
        {"Q", 1},
        {"BT q Q ET", 2},
        {"BT 5 Tj ET", 1},
        {"BT [(a) /b 3] TJ ET", 1},
        {"BT 1 T* (a) 2 ' ET", 3},
        {"1 m n", 2},
        // At page level: the place, the missing path, and the place of the painting operator.
        {"1 1 l n", 3},
        {"0 0 1 1 re W BT ET n", 2},
        {"0 0 1 1 re W 5 w n", 1},
        // The tokeniser goes no further than a parenthesis that closes nothing.
        {") Q", 1},
    };
    for (const auto& [content, count] : rows) {
        const ContentRun run(content);
        EXPECT_EQ(run.GetErrors(), std::vector<int>(count, c_general)) << content;
    }
}

TEST(InterpreterTest, HandsOperandsOverFlatAndDropsThemAtUnknownKeywords)
{
    constexpr std::size_t c_tooDeep = 100'000;
    const std::pair<std::string, const char*> rows[] = {
        {"1 -2.25 /N (s) <4142> probe", "1 -2.25 /N (s) (AB) probe"},
        {"[1 [2 [3]] 4] 5 probe", "1 2 3 4 5 probe"},
        {"[1 foo true 2 >> ] probe", "1 2 probe"},
        {"1 ] 2 probe", "2 probe"},
        {"3 << /A [1 << /B 2 >>] >> probe", "3  probe"},
        {"[7 " + std::string(c_tooDeep, '[') + "1" + std::string(c_tooDeep, ']') + " 8] 9 probe", "7 8 9 probe"},
        {"[1 2 probe", ""},
        {"99999999999 probe", "2147483647 probe"},
    };
    for (const auto& [content, operands] : rows) {
        std::vector<std::string> seen;
        const ContentRun run(content, {},
                             [&](GraphicsStateStack&, const ArgVec& args) { seen.push_back(args.ToString()); });
        EXPECT_EQ(seen, std::vector<std::string>(*operands ? 1 : 0, operands)) << content.substr(0, 40);
        EXPECT_THAT(run.GetErrors(), IsEmpty()) << content.substr(0, 40);
    }
}

TEST(InterpreterTest, StopsBeforeTheOperatorAfterAnAbort)
{
    bool isAborted = false;
    const ContentRun run(
        "0 0 5 5 re f probe 0 0 6 6 re f Q", {}, [&](GraphicsStateStack&, const ArgVec&) { isAborted = true; },
        [&](PdfDocument& document) { document.SetAbortPointer(&isAborted); });
    EXPECT_EQ(run.GetCount(), 1U);
    EXPECT_THAT(run.GetErrors(), IsEmpty());
}

TEST(InterpreterTest, StopsWhenThereIsNothingLeftToSpend)
{
    const Budget::Scope budget(Kernel::MakeCounted<Budget>(10'000), Budget::Share::All, nullptr);
    const ContentRun run(Repeat("0 0 5 5 re f ", 50));
    EXPECT_GE(run.GetCount(), 1U);
    EXPECT_LE(run.GetCount(), 20U);
    EXPECT_TRUE(budget.WasCut());
}

/// Bytes in a coding that is not known are no operators.
TEST(InterpreterTest, LeavesOutStreamsWithAnUnknownFilter)
{
    const std::string coded = "/Filter [/ASCIIHexDecode /NoSuchFilter] ";
    const std::string square = "0 0 1 1 re f ";
    const struct
    {
        const char* contents;
        int paths;
        std::size_t errors;
    } rows[] = {
        {"5 0 R", 0, 1},
        {"[4 0 R 5 0 R 6 0 R]", 2, 1},
        // A form is opened anew at its second use, and kept from there on.
        {"7 0 R", 1, 2},
    };
    for (const auto& row : rows) {
        PdfBuilder builder = MakePageBuilder(square);
        builder.Set(3, "<< /MediaBox [0 0 9 9] /Resources << /XObject << /X 8 0 R >> >> /Contents " +
                           std::string(row.contents) + " >>");
        builder.AddStream(square, coded);
        builder.AddStream(square);
        builder.AddStream("/X Do /X Do /X Do 0 0 1 1 re f");
        builder.AddStream(square, coded + "/Subtype /Form /BBox [0 0 9 9]");
        TestDocument document(builder.Build());
        EXPECT_EQ(CountPaths(*document.Build()), row.paths) << row.contents;
        EXPECT_EQ(document.GetErrors(), std::vector<int>(row.errors, Error::UnimplementedFilter)) << row.contents;
    }
}

TEST(InterpreterTest, ReportsShadingsThatNothingDraws)
{
    EXPECT_EQ(ContentRun("/S sh /S sh").GetErrors(), std::vector<int>(2, Error::UnimplementedShading));
    EXPECT_EQ(ContentRun("sh").GetErrors(), std::vector<int>(2, c_general));
}

/// Forms share the operators of the page, and each has a parser of its own.
TEST(InterpreterTest, RunsFormsOneAfterTheOther)
{
    const std::string box = "/Subtype /Form /BBox [0 0 9 9]";
    const std::string image = "BI /W 1 /H 1 /BPC 8 /CS /G ID E EI ";
    const PageParts parts{.resources = "/XObject << /A 5 0 R /B 6 0 R >>",
                          .objects = {PdfBuilder::MakeStream("/B Do " + image + "1 0 0 rg 0 0 1 1 re f", box),
                                      PdfBuilder::MakeStream(image + "0 0 2 2 re f", box)}};
    const ContentRun run("/A Do /A Do /B Do 0 0 3 3 re f", parts);
    EXPECT_THAT(run.GetErrors(), testing::Each(Error::UnimplementedFill)) << "of the images";
    EXPECT_EQ(CountPaths(*run.root), 6);
}

TEST(ArgVecTest, GettersReportWrongTypesAndGiveNeutralValues)
{
    ErrorRecorder errors;
    ArgVec args(&errors);
    args.AddInt(3);
    args.AddReal(0.5);
    args.AddName("N");
    args.AddStringBuf({'s'});
    EXPECT_EQ(args.GetReal(0), 3);
    EXPECT_EQ(args.GetByte(0), 255);
    EXPECT_EQ(args.GetByte(1), 128);
    EXPECT_EQ(args.GetNameOrString(2) + args.GetNameOrString(3), "Ns");
    EXPECT_THAT(errors.kinds, IsEmpty());

    EXPECT_EQ(args.GetInt(1), 0);
    EXPECT_EQ(args.GetReal(2), 0);
    EXPECT_EQ(args.GetByte(-1), 0);
    EXPECT_EQ(args.GetName(3), "");
    EXPECT_EQ(args.GetString(2), "");
    EXPECT_EQ(args.GetNameOrString(0), "");
    EXPECT_TRUE(args.GetStringBuf(6).empty());
    EXPECT_EQ(errors.kinds, std::vector<int>(7, c_general));
}

using testing::ElementsAre;

/// What follows an inline image is read right, whatever bytes the image has.
TEST(InterpreterInlineImageTest, GoesOnBehindTheEndMarker)
{
    // Whatever could be drawn is missed.
    constexpr int c_fill = Error::UnimplementedFill;
    const std::pair<std::string, std::vector<int>> rows[] = {
        // Data that holds the marker.
        {"BI /W 4 /H 1 /BPC 8 /CS /G ID EI Q EI", {c_fill}},
        {"BI /Width 2 /H 1 /BitsPerComponent 8 /ColorSpace /RGB ID (EI Q \nEI", {c_fill}},
        // One bit by default; two rows of nine bits take four bytes.
        {"BI /W 9 /H 2 /IM true ID  EI (EI", {c_fill}},
        {"BI /W 2 /H 1 /BPC 8 /I true /D [0 1] ID\r\nEI EI", {c_fill}},
        {"BI /W 2 /H 1 /BPC 8 /F [/AHx /AHx] /DP [null null] ID 3435 3439 3E>EI", {c_fill}},
        // Keys that mean nothing here.
        {"BI /Foo << /A [1] >> /Bar [1 [2]] 3 /W 2 /H 1 /BPC 8 ID EI EI", {c_fill}},
        // A coding that is not known: the marker has to stand alone.
        {"BI /W 1 /H 1 /BPC 8 /F /Foo ID xEI yEIz E\nEI", {Error::UnimplementedFilter, c_fill}},
        // Without a size, the first marker counts.
        {"BI /H 1 ID EI", {c_general}},
        // No white space, no data at all, no "ID".
        {"BI /W 1 /H 1 /BPC 8 ID(EI EI", {c_general, c_fill}},
        {"BI /W 1 5 Q", {c_general, c_general}},
        {"0 0 m BI /W 1 /H 1 /BPC 8 ID a EI n", {c_general, c_fill}},
    };
    for (const auto& [image, errors] : rows) {
        std::vector<double> widths;
        const ContentRun run(image + "\n7 w probe", {}, [&](GraphicsStateStack& stack, const ArgVec&) {
            widths.push_back(stack.GetTop().lineStyle->width);
        });
        EXPECT_THAT(widths, ElementsAre(7)) << image;
        EXPECT_EQ(run.GetErrors(), errors) << image;
    }
}

TEST(InterpreterInlineImageTest, EndsTheRunWhereTheDataEnds)
{
    const std::string images[] = {
        "BI /W 2147483647 /H 2147483647 /BPC 32 /CS /CMYK ID short EI 7 w",
        "BI /W 2 /H 1 /BPC 8 ID abc",
        "BI /W 2 /H 1 /BPC 8 ID",
    };
    for (const std::string& image : images) {
        const ContentRun run("0 0 1 1 re f " + image);
        EXPECT_EQ(run.GetCount(), 1U) << image;
        EXPECT_FALSE(run.GetErrors().empty()) << image;
    }
}

} // namespace
} // namespace Quillet::Test
