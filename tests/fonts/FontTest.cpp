#include "fonts/Font.h"

#include "content/ContentRun.h"
#include "fonts/CompositeFont.h"
#include "fonts/SimpleFont.h"
#include "fonts/Type3Font.h"
#include "fonts/UnimplementedFont.h"
#include "support/ObjectFile.h"

#include <Quillet/Char.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

namespace Quillet::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

/// A document with a font as object 5, and others from 6 on.
struct FontFile : ObjectFile
{
    explicit FontFile(const std::string& entries, const std::vector<std::string>& others = {})
        : ObjectFile("<< /Type /Font " + entries + " >>", others)
    {}

    Kernel::Counted<const Font> Get(int number = 5) const { return Font::Make(GetRef(number), ""); }
    Kernel::Counted<const SimpleFont> GetSimple() const { return Kernel::DynamicCast<const SimpleFont>(Get()); }
    Kernel::Counted<const CompositeFont> GetComposite() const
    {
        return Kernel::DynamicCast<const CompositeFont>(Get());
    }
};

/// What a font makes of a string, with widths in thousandths.
std::vector<Char> Show(const Font& font, const std::string& text)
{
    std::vector<Char> chars;
    InspectState("probe", {}, [&](const GraphicsState& state) {
        GraphicsState shown(state);
        shown.fontSize = 1000;
        shown.SetGlyphAtts(Story::GlyphAtts::GetDefault());
        const double advance = font.TextOut(chars, {text.begin(), text.end()}, shown);
        const auto add = [](double sum, const Char& c) { return sum + c.width; };
        EXPECT_DOUBLE_EQ(advance, std::accumulate(chars.begin(), chars.end(), 0.0, add));
    });
    return chars;
}

std::vector<double> GetWidths(const std::vector<Char>& chars)
{
    std::vector<double> widths;
    for (const Char& c : chars)
        widths.push_back(c.width);
    return widths;
}

std::u32string GetText(const std::vector<Char>& chars)
{
    std::u32string text;
    for (const Char& c : chars)
        text += c.unicode;
    return text;
}

// No machine has this font. Its widths differ, so that it does not look monospaced.
const std::string c_widths = "/FirstChar 65 /Widths [500 600] ";
const std::string c_unknown = "/Subtype /Type1 /BaseFont /Nofont " + c_widths;

TEST(FontTest, KindsComeFromTheSubtype)
{
    const std::pair<const char*, std::vector<int>> rows[] = {{"Type1", {}},   {"TrueType", {}}, {"MMType1", {}},
                                                             {"Type3", {16}}, {"Type9", {16}},  {"", {16}}};
    for (const auto& [subtype, errors] : rows) {
        SCOPED_TRACE(subtype);
        const FontFile file("/BaseFont /Nofont " + c_widths + (*subtype ? std::string("/Subtype /") + subtype : ""));
        const auto font = file.Get();
        ASSERT_TRUE(font);
        EXPECT_EQ(font->subtype, subtype);
        EXPECT_EQ(file.GetErrors(), errors);
        const bool isType3 = font->subtype == "Type3";
        const bool isSimple = errors.empty() || isType3;
        EXPECT_EQ(font->IsSupported(), errors.empty());
        EXPECT_FALSE(font->IsAvailable());
        EXPECT_EQ(file.GetSimple() != nullptr, isSimple);
        EXPECT_EQ(Kernel::DynamicCast<const Type3Font>(font) != nullptr, isType3);
        EXPECT_EQ(Show(*font, "AB").size(), isSimple ? 2U : 0U);
        EXPECT_EQ(font->GetPostscriptName(), isSimple ? "Nofont" : "");
        EXPECT_EQ(file.Get(), font);
        EXPECT_TRUE(*font == *font);
    }
    EXPECT_FALSE(FontFile(c_unknown).Get(-1));
}

TEST(FontTest, WidthsFollowTheirRules)
{
    const struct
    {
        const char* entries;
        /// At the codes 32, 65, 66, 67 and 200.
        std::vector<double> widths;
        double missing;
    } rows[] = {
        {"/FirstChar 65 /Widths [500 0 600.5]", {500, 500, 500, 600.5, 500}, 500},
        {"/Widths [250 300]", {250, 250, 250, 250, 250}, 250},
        {"/FirstChar 0 /Widths [0 700]", {0, 0, 0, 0, 0}, 0},
        {"/FirstChar 66 /Widths [500 600] /FontDescriptor << /MissingWidth 123 >>", {123, 123, 500, 600, 123}, 123},
        {"/FirstChar 65 /Widths 6 0 R", {10, 10, 20, 10, 10}, 10},
        {"/FirstChar -5 /Widths [1 2]", {1, 1, 1, 1, 1}, 1},
        {"/FirstChar 2000000000 /Widths [7]", {7, 7, 7, 7, 7}, 7},
    };
    for (const auto& row : rows) {
        const FontFile file(std::string("/Subtype /Type1 /BaseFont /Nofont ") + row.entries, {"[10 20]"});
        const auto font = file.GetSimple();
        EXPECT_EQ(font->missingWidth, row.missing) << row.entries;
        // A width of 0 shows only where there is a glyph.
        std::vector<double> widths;
        for (const unsigned code : {32U, 65U, 66U, 67U, 200U})
            widths.push_back(code < font->widths.size() ? font->widths[code] : font->missingWidth);
        EXPECT_EQ(widths, row.widths) << row.entries;
        if (row.widths[1] == 0) continue;
        EXPECT_EQ(GetWidths(Show(*font, " ABC\xC8")), row.widths) << row.entries;
    }
}

TEST(FontTest, StandardFontsNeedNoWidths)
{
    const std::string ansi = "/Encoding /WinAnsiEncoding";
    const std::string ansiBase = "/Encoding << /BaseEncoding /WinAnsiEncoding /Differences [65 /eacute] >>";
    const std::pair<std::string, std::vector<std::pair<std::size_t, double>>> rows[] = {
        {"Helvetica", {{'A', 667}, {1, 278}}},
        {"ABCDEF+Times-Bold", {{'A', 722}}},
        {"Courier-Oblique", {{'i', 600}}},
        {"Symbol", {{'a', 631}}},
        // Widths are looked up as they came in: the new W is as wide as a W, whatever its old place has now.
        {"Helvetica /Encoding << /Differences [65 /i /W /nothing 87 /i 105 /W 300 /A] >>",
         {{'A', 222}, {'B', 944}, {'C', 722}, {'W', 222}, {'i', 944}}},
        {"Helvetica /Encoding << /Differences [250 /Euro /nothing] >>", {{250, 556}, {251, 611}}},
        {"Helvetica /FontDescriptor << /Flags 4 >> /Encoding << /Differences [65 /i] >>", {{'A', 222}, {'W', 944}}},
        {"Symbol /Encoding << /Differences [97 /beta] >>", {{'a', 549}}},
        {"Helvetica /FirstChar 65 /Widths [123]", {{'A', 123}}},
        // By the glyphs of the encoding, where that is not the font's own.
        {"Helvetica " + ansi, {{0xE9, 556}, {0x92, 222}, {0xA0, 278}, {0xAD, 333}, {0x81, 350}}},
        {"Helvetica /Encoding /MacRomanEncoding", {{0x8E, 556}, {0xCA, 278}}},
        {"Helvetica /Encoding << /BaseEncoding /WinAnsiEncoding >>", {{0xE9, 556}}},
        {"Helvetica " + ansiBase, {{'A', 556}}},
        {"Symbol " + ansi, {{'a', 631}, {'+', 549}}},
        // The file's name comes before the one that is asked for.
        {"Times-Bold-Nothing", {{'A', 722}}},
    };
    for (const auto& [entries, widths] : rows) {
        const FontFile file("/Subtype /Type1 /BaseFont /" + entries);
        for (const auto& [code, width] : widths)
            EXPECT_EQ(file.GetSimple()->widths.at(code), width) << entries << ' ' << code;
        EXPECT_LE(file.GetSimple()->widths.size(), 256U) << entries;
        EXPECT_THAT(file.GetErrors(), IsEmpty()) << entries;
    }
    // The machine's font helps out.
    const FontFile moved("/Subtype /TrueType /BaseFont /NimbusSans-Regular /Encoding << /Differences [65 /i /none] >>");
    EXPECT_NEAR(moved.GetSimple()->widths.at('A'), 222, 1e-6);
    EXPECT_NEAR(moved.GetSimple()->widths.at('B'), 667, 1e-6);
    const FontFile known("/Subtype /TrueType /BaseFont /NimbusSans-Regular");
    EXPECT_NEAR(known.GetSimple()->widths.at('A'), 667, 1e-6);
    EXPECT_NEAR(known.GetSimple()->missingWidth, 278, 1e-6);
    EXPECT_THAT(known.GetErrors(), ElementsAre(Error::UnimplementedTextEncoding));
}

TEST(FontTest, UnknownFontsWithoutWidthsTakeThoseOfTheStandIn)
{
    const struct
    {
        std::string entries;
        char code;
        /// Whose width in the font that stands in; none for a code that stands for nothing.
        std::u32string text;
        double width;
    } rows[] = {
        {"", 'W', U"W", 0},
        {"/Encoding /WinAnsiEncoding", '\xE9', U"\u00E9", 0},
        {"/Encoding << /Differences [65 /f_i] >>", 'A', U"fi", 0},
        {"/FontDescriptor << /MissingWidth 321 >>", '\x80', U"", 321},
        {"", '\x80', U" ", 0},
        {"/Widths null", 'W', U"W", 0},
        {"/Widths []", 'W', U"W", 0},
        {"/Widths /None /FirstChar 65", 'W', U"W", 0},
        {"/Widths [500]", 'W', U"", 500},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        const FontFile file("/Subtype /Type1 /BaseFont /Nofont " + row.entries);
        const auto font = file.GetSimple();
        const auto metrics = Renderer::FontMetrics::Make(font->effectiveFont);
        double width = row.width;
        for (const char32_t character : row.text)
            width += metrics->GetGlyphMetrics(character).advance * 1000;
        EXPECT_GT(width, 0);
        const auto widths = GetWidths(Show(*font, std::string(1, row.code)));
        EXPECT_NEAR(std::accumulate(widths.begin(), widths.end(), 0.0), width, 1e-9);
        EXPECT_EQ(font->hasWidths, row.width == 500);
        EXPECT_TRUE(font->hasWidths || std::ranges::count(file.GetErrors(), Error::UnimplementedTextEncoding));
    }
    const FontFile type3("/Subtype /Type3 /FontMatrix [1 0 0 1 0 0] /Encoding /WinAnsiEncoding");
    EXPECT_THAT(GetWidths(Show(*type3.Get(), "W")), ElementsAre(0));
}

TEST(FontTest, Type3WidthsAreInGlyphSpace)
{
    const FontFile file("/Subtype /Type3 /FontMatrix [0.01 0 0 0.01 0 0] /FirstChar 65 /Widths [50 60] "
                        "/FontDescriptor << /Flags 65 /MissingWidth 99 >> /Encoding << /Differences [65 /B /A] >>");
    const auto font = file.GetSimple();
    EXPECT_EQ(GetWidths(Show(*font, "AB")), (std::vector<double>{500, 600}));
    EXPECT_EQ(GetText(Show(*font, "AB")), U"BA");
    EXPECT_EQ(font->missingWidth, 500);
    EXPECT_EQ(font->flags, 0);
    for (const char* matrix : {"[0 0 0 0 0 0]", "[1]", "12"}) {
        const FontFile odd(std::string("/Subtype /Type3 /FirstChar 65 /Widths [50] /FontMatrix ") + matrix);
        EXPECT_EQ(odd.GetSimple()->widths.at(65), 50) << matrix;
    }
}

TEST(FontTest, EvenWidthsLookMonospaced)
{
    const std::pair<const char*, bool> rows[] = {{"Nofont /Widths [500 500 500]", true},
                                                 {"Nofont /Widths [0 500 0 500]", true},
                                                 {"Nofont /Widths [500 500 501]", false},
                                                 {"Nofont /Widths [0 500]", false},
                                                 {"Nofont /Widths []", true},
                                                 {"Nofont /Widths [1 2] /FontDescriptor << /Flags 1 >>", true},
                                                 {"DejaVuSans /Widths [500 500 500]", false}};
    for (const auto& [entries, isMonospaced] : rows) {
        const FontFile file(std::string("/Subtype /Type1 /BaseFont /") + entries);
        EXPECT_EQ(file.Get()->GetKernelFont().panose.IsMonospaced(), isMonospaced) << entries;
    }
}

const std::string c_toUnicode = PdfBuilder::MakeStream("<41> <0058> <42> <0000> <43> <FFFD> <44> <FFFF> endbfchar");

TEST(FontTest, CodesAreDecodedInOrder)
{
    const std::string differences = "/Encoding << /Differences [65 /Y /Z /nothing /f_i] >>";
    const struct
    {
        std::string entries;
        std::string codes;
        std::u32string characters;
    } rows[] = {
        {c_unknown + "/ToUnicode 6 0 R /Encoding /WinAnsiEncoding", "A", U"A"},
        {c_unknown + "/ToUnicode 6 0 R /Encoding 7 0 R", "A", U"A"},
        {c_unknown + "/ToUnicode 6 0 R", "AB", U"XB"},
        {c_unknown + "/ToUnicode 6 0 R " + differences, "ABCD", U"XZCfi"},
        {c_unknown + "/Encoding << /Differences [65 /a1] >>", "A", U"A"},
        {c_unknown + "/Encoding << /BaseEncoding /MacRomanEncoding /Differences [65 /B] >>", "\x80", U"\u00C4"},
        {c_unknown + "/Encoding 8 0 R", "A", U"C"},
        {c_unknown, "\xC8", U"\u00A8"},
        {c_unknown + "/FontDescriptor << /Flags 4 >>", "\xC8", U"\u00C8"},
        {c_unknown + "/FontDescriptor << /Flags 4 >> /Encoding /StandardEncoding", "\xC8", U"\u00C8"},
        {c_unknown + "/Encoding /StandardEncoding", "\x80", std::u32string(1, 0)},
        {c_unknown + "/Encoding 12", "A", U"A"},
        // Symbols in a TrueType font are reached through the private area.
        {"/Subtype /TrueType /BaseFont /Symbol " + c_widths, "a", U"\uF061"},
        {"/Subtype /Type1 /BaseFont /Symbol", "a", U"\u03B1"},
        {"/Subtype /Type1 /BaseFont /ZapfDingbats", "!", U"\u2701"},
    };
    for (const auto& row : rows) {
        const FontFile file(row.entries, {c_toUnicode, "/WinAnsiEncoding", "<< /Differences [65 /C] >>"});
        std::u32string characters;
        for (const char code : row.codes) {
            const CodeSequence sequence = file.GetSimple()->DecodeChar(static_cast<unsigned char>(code));
            characters.append(sequence.values.begin(), sequence.values.begin() + sequence.count);
        }
        EXPECT_EQ(characters, row.characters) << row.entries;
    }
}

TEST(FontTest, TellsWhetherThereIsASpace)
{
    const std::string symbolic = "/FontDescriptor << /Flags 4 >> ";
    const struct
    {
        std::string entries;
        bool isDefined;
        int code;
    } rows[] = {
        {"DejaVuSans /ToUnicode 6 0 R", true, -1},
        {"DejaVuSans /ToUnicode 6 0 R " + symbolic, false, -1},
        {"Nofont /ToUnicode 6 0 R", false, -1},
        {"Nofont /ToUnicode 7 0 R", true, -1},
        {"Nofont /Encoding << /Differences [3 /space] >> " + symbolic, true, 3},
        {"Nofont /Encoding << /Differences [3 /space] >>", true, -1},
        {"Nofont /Encoding << /Differences [-3 /space] >>", false, -1},
        {"Nofont /Encoding << /Differences [32 /A] >>" + c_widths, false, 0},
        {"Nofont /Encoding << /Differences [33 /A] >>" + c_widths, true, -1},
        {"Nofont /Widths [250 500]" + symbolic, true, -1},
        {"Nofont /FirstChar 0 /Widths [0 0]" + symbolic, false, -1},
        {"Nofont /FirstChar 0 /Widths [0 0]", true, -1},
    };
    for (const auto& row : rows) {
        const FontFile file("/Subtype /TrueType /BaseFont /" + row.entries,
                            {c_toUnicode, PdfBuilder::MakeStream("<05> <0020> endbfchar")});
        EXPECT_EQ(file.Get()->isSpaceDefined, row.isDefined) << row.entries;
        EXPECT_EQ(file.Get()->spaceCode, row.code) << row.entries;
    }
}

TEST(FontTest, NamesLeadToTheMachinesFonts)
{
    /// What is asked for, whether the machine has it, and by which names.
    const struct
    {
        const char* requested;
        bool isAvailable;
        std::vector<const char*> names;
    } rows[] = {
        {"DejaVuSans",
         true,
         {"Type1 /BaseFont /DejaVuSans", "Type1 /BaseFont /ABCDEF+DejaVuSans", "Type1 /BaseFont /DejaVuSans-",
          "Type1 /BaseFont /DejaVuSansMM_400_600_", "MMType1 /BaseFont /DejaVuSansMM_400_600_",
          "MMType1 /BaseFont /DejaVuSansMMx400"}},
        {"NimbusSans-Regular", true, {"Type1 /BaseFont /NimbusSans-Regular-Extra"}},
        {"abcdef+DejaVuSans", false, {"Type1 /BaseFont /abcdef+DejaVuSans"}},
        {"ABCDE+DejaVuSans", false, {"Type1 /BaseFont /ABCDE+DejaVuSans"}},
        {"Nofont-Regular", false, {"Type1 /BaseFont /Nofont-Regular-Extra"}},
        {"-Nofont", false, {"Type1 /BaseFont /-Nofont"}},
        {"Nofont", false, {"Type1 /BaseFont /NofontMM_400_"}},
        {"DejaVuSansMMx400", false, {"Type1 /BaseFont /DejaVuSansMMx400"}},
        {"DejaVuSansMMx", false, {"MMType1 /BaseFont /DejaVuSansMMx"}},
        {"MM_DejaVuSans", false, {"MMType1 /BaseFont /MM_DejaVuSans"}},
    };
    for (const auto& row : rows) {
        for (const char* name : row.names) {
            const auto font = FontFile(c_widths + "/Subtype /" + name).GetSimple();
            EXPECT_EQ(font->IsAvailable(), row.isAvailable) << name;
            EXPECT_EQ(font->GetPostscriptName(), row.requested) << name;
            EXPECT_TRUE(!row.isAvailable || font->effectiveFont.postscriptName == row.requested) << name;
        }
    }
    EXPECT_FALSE(InstallableFont::HasSubsetPrefix("ABCDEF+"));
    EXPECT_TRUE(InstallableFont::HasSubsetPrefix("ABCDEF+X"));
    EXPECT_EQ(InstallableFont::StripInstanceSuffix("A-B-C"), "A-B");
    EXPECT_EQ(InstallableFont::StripInstanceSuffix("-B"), "");
}

/// The word that is told last wins. But a family named for a weight has others too, and a regular one is none.
TEST(FontTest, NamesTellTheStyle)
{
    const struct
    {
        int weight;
        bool isItalic;
        int width;
        std::vector<const char*> names;
    } rows[] = {
        {100, false, 5, {"NofontThin"}},
        {100, true, 5, {"NofontThOb"}},
        {200, false, 5, {"NofontUltraLight"}},
        {300, false, 5, {"NofontLightBold"}},
        {300, true, 5, {"NofontLightOblique"}},
        {300, false, 3, {"NofontLightRegularCond"}},
        {400, false, 5, {"Nofont", "BoldNofont"}},
        {400, true, 5, {"NofontBook-Italic"}},
        {400, false, 3, {"NofontCondensedNo"}},
        {500, false, 5, {"NofontMedium", "NofontMd"}},
        {600, false, 5, {"NofontSemibold", "NofontDemiBold"}},
        {700,
         false,
         5,
         {"NofontBoldBook", "NofontBoldLight", "NofontBook-Bold", "NofontLight-Bold", "NofontRegularBold", "Bold"}},
        {700,
         true,
         5,
         {"NofontBoldItalicMT", "Nofont-BoldItalicMT", "NofontBdIt", "NofontBold,Italic", "NofontBlack-Bold,Italic"}},
        {700, false, 3, {"NofontBoldCn", "NofontNarrow-Bold"}},
        {800, false, 5, {"NofontExtraBold", "NofontUltraBold"}},
        {900, false, 5, {"NofontExtraBlack", "NofontHeavyRegular", "NofontHv", "NofontBlack-Regular"}},
        {900, false, 7, {"NofontBlackExt"}},
    };
    for (const auto& row : rows) {
        for (const char* name : row.names) {
            const FontFile file("/Subtype /Type1 " + c_widths + "/BaseFont /" + name);
            const Kernel::Font& font = file.Get()->GetKernelFont();
            EXPECT_EQ(font.weight, row.weight) << name;
            EXPECT_EQ(font.isItalic, row.isItalic) << name;
            EXPECT_EQ(font.width, row.width) << name;
            // Only what stands behind a hyphen is cut off the name.
            EXPECT_EQ(font.postscriptName, std::string_view(name).substr(0, std::string_view(name).find('-')));
        }
    }
}

TEST(FontTest, NamelessFontsGetNamesOfTheirOwn)
{
    const std::vector<std::string> others{"<< /Type /Font /Subtype /Type3 /Widths [0 1] /CharProcs << /A 9 0 R >> >>",
                                          "<< /Type /Font /Subtype /TrueType >>"};
    const FontFile file("/Subtype /Type1", others);
    const FontFile again("/Subtype /Type1", others);
    const std::pair<int, const char*> rows[] = {
        {5, "Type1\\+[A-Z]{4}"}, {6, "Type3\\+[A-Z]{4}"}, {7, "TrueType\\+[A-Z]{4}"}};
    for (const auto& [number, pattern] : rows) {
        const std::string name = file.Get(number)->GetPostscriptName();
        EXPECT_THAT(name, MatchesRegex(pattern));
        EXPECT_EQ(again.Get(number)->GetPostscriptName(), name);
        EXPECT_FALSE(file.document->IsFontPostscriptNameUnique(name));
    }
    // The name depends on what the font looks like.
    const std::string name = file.Get()->GetPostscriptName();
    for (const char* entries : {"/Encoding /WinAnsiEncoding", "/Widths [0]", "/CharProcs << /A 9 0 R >>"})
        EXPECT_NE(FontFile(std::string("/Subtype /Type1 ") + entries).Get()->GetPostscriptName(), name) << entries;
}

TEST(FontTest, DescriptorsTellTheStyle)
{
    const std::vector<int> none(10, 0);
    const struct
    {
        const char* entries;
        bool isItalic;
        std::vector<int> panose;
    } rows[] = {
        {"/Flags 32", false, none},
        {"/Flags 64", true, none},
        {"/ItalicAngle -12", true, none},
        {"/ItalicAngle -2", false, none},
        {"/Flags 8", false, {3, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/Flags 9", false, {3, 0, 0, 9, 0, 0, 0, 0, 0, 0}},
        {"/Flags 9 /Style << /Panose <0801 020B0604020202020204> >>", false, {2, 11, 6, 4, 2, 2, 2, 2, 2, 4}},
        {"/Style << /Panose <0801 020B06040202020202> >>", false, none},
        {"/Style 12", false, none},
    };
    for (const auto& row : rows) {
        const FontFile file(c_unknown + "/FontDescriptor << " + row.entries + " >>");
        const Kernel::Font& font = file.Get()->GetKernelFont();
        EXPECT_EQ(font.isItalic, row.isItalic) << row.entries;
        EXPECT_EQ(std::vector<int>(font.panose.digits.begin(), font.panose.digits.end()), row.panose) << row.entries;
    }
    EXPECT_TRUE(FontFile("/Subtype /Type1 /BaseFont /Helvetica-Oblique").Get()->GetKernelFont().isItalic);
    // Fonts are the same if they ask for the same.
    const FontFile file(c_unknown + "/FontDescriptor << /Flags 32 >>",
                        {"<< /Type /Font " + c_unknown + "/FontDescriptor << /Flags 32 >> >>",
                         "<< /Type /Font " + c_unknown + "/FontDescriptor << /Flags 4 >> >>"});
    EXPECT_FALSE(file.Get(5) == file.Get(6));
    EXPECT_TRUE(*file.Get(5) == *file.Get(6));
    EXPECT_FALSE(*file.Get(5) == *file.Get(7));
}

TEST(FontTest, TheHostReplacesFonts)
{
    FontFile file(c_unknown, {"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold >>",
                              "<< /Type /Font /Subtype /Type1 /BaseFont /ABCDEF+NimbusRomNo9L-MediItal >>"});
    const auto getEffective = [&file](int number) {
        return Kernel::DynamicCast<const InstallableFont>(file.Get(number))->effectiveFont.postscriptName;
    };
    EXPECT_EQ(getEffective(5), "Nofont");
    EXPECT_EQ(getEffective(6), "NimbusSans-Bold");
    EXPECT_EQ(getEffective(7), "NimbusRoman-BoldItalic"); // By style words that only the map knows.
    const auto before = file.Get();

    Kernel::Font serif;
    serif.SetPostscriptName("DejaVuSerif");
    const auto map = Kernel::MakeCounted<Kernel::FontMap>();
    map->Add("Nofont", serif);
    map->Add("NimbusRomNo9L", serif);
    file.document->SetFontMap(map);
    EXPECT_EQ(getEffective(5), "DejaVuSerif");
    EXPECT_EQ(getEffective(7), "DejaVuSerif");
    // Asked for without its style, as the second try had it.
    EXPECT_EQ(getEffective(6), "Helvetica");
    EXPECT_FALSE(file.Get() == before);
    EXPECT_EQ(file.Get()->GetPostscriptName(), "Nofont");
    EXPECT_FALSE(file.Get()->IsAvailable());
    const auto atts = Story::GlyphAtts::GetDefault()->Clone();
    file.Get()->AddTo(*atts);
    EXPECT_EQ(atts->GetDesiredFont(), serif);

    file.document->SetFontMap(nullptr);
    EXPECT_EQ(getEffective(5), "Nofont");
    EXPECT_EQ(getEffective(6), "Helvetica");
    EXPECT_TRUE(file.document->ContainsFont(file.Get()->GetKernelFont()));
}

std::string MakeCidFont(const char* entries)
{
    return std::string("<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Nofont ") + entries + " >>";
}

const std::string c_cidFont = MakeCidFont("/W [1 [500 600.7] 10 12 250 20 30 700 25 [-5] 0 0 0]");

std::string MakeType0(const std::string& entries, const std::string& encoding = "/Identity-H")
{
    return "/Subtype /Type0 /BaseFont /Nofont-Identity-H /DescendantFonts [6 0 R] /Encoding " + encoding + " " +
           entries;
}

TEST(CompositeFontTest, WidthsComeByCid)
{
    const FontFile file(MakeType0(""), {c_cidFont});
    const auto font = file.GetComposite();
    ASSERT_EQ(font->descendants.size(), 1U);
    // The fraction goes.
    EXPECT_EQ(GetWidths(Show(*font, std::string("\0\1\0\2\0\3\0\x19", 8))), (std::vector<double>{500, 600, 1000, -5}));
    EXPECT_EQ(font->GetPostscriptName(), "Nofont");
    EXPECT_TRUE(font->isSpaceDefined);

    constexpr int c_last = std::numeric_limits<int>::max();
    const std::pair<std::string, std::vector<std::pair<int, double>>> rows[] = {
        {c_cidFont, {{0, 0}, {1, 500}, {2, 600.7}, {3, 1000}, {9, 1000}, {10, 250}, {12, 250}, {13, 1000}, {20, 700}}},
        {c_cidFont, {{24, 700}, {25, -5}, {26, 700}, {30, 700}, {31, 1000}, {-1, 1000}, {c_last, 1000}}},
        {MakeCidFont("/DW 300"), {{5, 300}, {900, 300}}},
        {MakeCidFont("/DW 300 /FontDescriptor << /MissingWidth 77 >>"), {{5, 300}}},
        {MakeCidFont("/FontDescriptor << /MissingWidth 77 >>"), {{5, 1000}}},
        {MakeCidFont("/DW 300.5 /W 7 0 R"), {{5, 42}, {900, 300.5}}},
        {MakeCidFont("/W [0 2000000000 500 5 [600]]"), {{5, 600}, {900, 500}}},
        {MakeCidFont("/W [5 [600] 0 2000000000 500]"), {{5, 500}, {900, 500}}},
        {MakeCidFont("/W [900 5 700]"), {{5, 1000}, {900, 1000}}},
        {MakeCidFont("/W [-5 5 700 890 2147483647 9]"), {{5, 700}, {900, 9}}},
        {MakeCidFont("/W [5]"), {{5, 1000}, {900, 1000}}},
        {MakeCidFont("/W 12"), {{5, 1000}}},
        {MakeCidFont("/W << >>"), {{5, 1000}}},
    };
    for (const auto& [descendant, widths] : rows) {
        const FontFile other(MakeType0(""), {descendant, "[5 [42]]"});
        for (const auto& [cid, width] : widths)
            EXPECT_EQ(other.GetComposite()->descendants.at(0)->GetBaseWidth(cid), width) << descendant << ' ' << cid;
    }
}

TEST(CompositeFontTest, CodesAreDecodedInOrder)
{
    using namespace std::string_literals;
    const std::string known = "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /DejaVuSans ";
    const auto host = CidFont::Make(FontFile("", {known + ">>"}).GetRef(6), nullptr)->encoding;
    ASSERT_TRUE(host);
    const int glyph = host->GetIndexOfChar(U'A');
    const std::string code{static_cast<char>(glyph >> 8), static_cast<char>(glyph)};
    const std::u32string none(1, 0);
    const std::string toUnicode = "/ToUnicode 7 0 R";
    const std::string collection = "/Registry (Adobe) def /Ordering (Japan1) def <0000> <FFFF> endcodespacerange "
                                   "<4E00> <4E00> 60000 endcidrange";
    const std::vector<std::string> others{
        PdfBuilder::MakeStream("<0005> <0058> <0006> <0000> <0007> <00660069> endbfchar"),
        PdfBuilder::MakeStream(std::string(10, '\0') + code + '\0'),
        PdfBuilder::MakeStream("<00> <FF> endcodespacerange <41> <41> 2 endcidrange"),
        PdfBuilder::MakeStream(collection)};
    const struct
    {
        std::string font;
        std::string descendant;
        std::string text;
        std::u32string expected;
        bool canDecode;
        std::vector<int> errors;
    } rows[] = {
        {MakeType0(""), c_cidFont, "\0A\0B"s, U"AB", false, {16}},
        {MakeType0(toUnicode), c_cidFont, "\0\5"s, U"X", true, {}},
        {MakeType0(toUnicode), c_cidFont, "\0\6\0A"s, U"\6A", true, {}},
        {MakeType0(toUnicode), c_cidFont, "\0\7"s, U"fi", true, {}},
        {MakeType0("/ToUnicode /Identity-H"), c_cidFont, "\x4E\x01", U"\u4E01", true, {}},
        // By the font of the machine.
        {MakeType0(""), known + ">>", code, U"A", true, {}},
        {MakeType0(""), known + "/CIDToGIDMap /Identity >>", code, U"A", true, {}},
        {MakeType0(""), known + "/CIDToGIDMap (Identity) >>", code, U"A", true, {}},
        {MakeType0(""), known + "/CIDToGIDMap /Other >>", code, U"A", true, {16}},
        {MakeType0(""), known + "/CIDToGIDMap 8 0 R >>", "\0\5"s, U"A", true, {}},
        {MakeType0(""), known + "/CIDToGIDMap 8 0 R >>", "\0\4"s, none, true, {}},
        // By the collection.
        {MakeType0("", "/90ms-RKSJ-H"), c_cidFont, "\x88\352A", U"\u4E00A", true, {}},
        {MakeType0("", "10 0 R"), c_cidFont, "\x4E\0"s, none, true, {}},
        {MakeType0("", "9 0 R"), c_cidFont, "A", U"A", false, {16}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.font + row.descendant);
        std::vector<std::string> objects{row.descendant};
        objects.insert(objects.end(), others.begin(), others.end());
        const FontFile shown(row.font, objects);
        const auto font = shown.GetComposite();
        EXPECT_EQ(font->CanDecodeText(), row.canDecode);
        EXPECT_EQ(shown.GetErrors(), row.errors);
        EXPECT_EQ(GetText(Show(*font, row.text)), row.expected);
    }
    // Half a code.
    EXPECT_FALSE(Show(*FontFile(MakeType0(""), {c_cidFont}).Get(), "\0A\0"s).empty());
    const FontFile own(MakeType0("", "7 0 R"), {c_cidFont, others[2]});
    EXPECT_EQ(GetWidths(Show(*own.Get(), "A")), std::vector<double>{600});
}

TEST(CompositeFontTest, WantsOneDescendant)
{
    const std::string second = "<< /Type /Font /Subtype /CIDFontType0 /BaseFont /Other /DW 200 >>";
    const std::string twoFonts = PdfBuilder::MakeStream(
        "<00> <7F> endcodespacerange 1 usefont <80> <BF> endcodespacerange 2 usefont <C0> <FF> endcodespacerange "
        "<00> <FF> 0 endcidrange");
    const struct
    {
        const char* entries;
        std::vector<int> errors;
        std::vector<double> widths;
    } rows[] = {
        {"/DescendantFonts [6 0 R] /Encoding 8 0 R", {16}, {500}},
        {"/DescendantFonts [6 0 R 7 0 R] /Encoding 8 0 R", {12, 16}, {500, 200}},
        {"/DescendantFonts [] /Encoding 8 0 R", {12}, {}},
        {"/Encoding 8 0 R", {12}, {}},
        {"/DescendantFonts [6 0 R]", {12, 16}, {}},
    };
    for (const auto& row : rows) {
        const FontFile file(std::string("/Subtype /Type0 ") + row.entries, {c_cidFont, second, twoFonts});
        const auto font = file.GetComposite();
        EXPECT_EQ(file.GetErrors(), row.errors) << row.entries;
        EXPECT_EQ(GetWidths(Show(*font, "\1\x81\xC1")), row.widths) << row.entries;
        EXPECT_EQ(font->GetKernelFont().postscriptName, font->descendants.empty() ? "" : "Nofont");
        const auto same = file.Get();
        EXPECT_TRUE(*same == *same) << row.entries;
    }
}

TEST(FontTest, TheDefaultFontHasText)
{
    const auto& font = Font::GetDefaultFont();
    ASSERT_TRUE(font);
    EXPECT_EQ(&Font::GetDefaultFont(), &font);
    EXPECT_TRUE(font->IsAvailable());
    EXPECT_EQ(font->subtype, "Type1");
    EXPECT_EQ(font->GetKernelFont(), Kernel::Font::GetDefault());
    const auto chars = Show(*font, "Ai ");
    EXPECT_EQ(GetText(chars), U"Ai ");
    ASSERT_EQ(chars.size(), 3U);
    EXPECT_GT(chars[0].width, chars[1].width);
    EXPECT_GT(chars[1].width, 100);
    EXPECT_TRUE(chars[2].isSpace);
}

TEST(FontTest, FontsWithoutAnythingDoNoHarm)
{
    std::vector<std::string> objects{"<< >>", "null", "12", "[5 0 R]", "(text)", "<< /Type /Page >>"};
    for (const char* subtype : {"Type0", "Type1", "MMType1", "TrueType", "Type3", "CIDFontType0", "CIDFontType2"}) {
        const std::string start = std::string("<< /Type /Font /Subtype /") + subtype;
        objects.push_back(start + " >>");
        for (const char* rest :
             {" /BaseFont 12 /Encoding 12 /ToUnicode 12 /Widths 12 /W 12 /DescendantFonts 12 /FontDescriptor 12 >>",
              " /BaseFont /A /Encoding 5 0 R /ToUnicode 5 0 R /DescendantFonts [5 0 R] /FontDescriptor 5 0 R >>",
              " /BaseFont /- /Encoding 99 0 R /ToUnicode 99 0 R /DescendantFonts [99 0 R] /CIDToGIDMap 99 0 R >>",
              " /BaseFont /MM /Encoding << /Differences [ >> /W [1 [2 /CharProcs 5 0 R /FontMatrix [ >>"})
            objects.push_back(start + rest);
    }
    for (const std::string& object : objects) {
        const ObjectFile file(object);
        for (const int number : {5, 99}) {
            const auto font = Font::Make(file.GetRef(number), "");
            ASSERT_TRUE(font) << object;
            Show(*font, std::string("AB \0\xFF", 5));
            const auto atts = Story::GlyphAtts::GetDefault()->Clone();
            font->AddTo(*atts);
            EXPECT_TRUE(*font == *font) << object;
            EXPECT_TRUE(CidFont::Make(file.GetRef(number), nullptr)) << object;
        }
    }
}

TEST(FontTest, DocumentsListTheirFonts)
{
    const PageParts parts{
        .resources = "/Font << /A 5 0 R /B 5 0 R /C 6 0 R >> /XObject << /X 7 0 R >>",
        .objects = {"<< /Type /Font " + c_unknown + ">>",
                    "<< /Type /Font /Subtype /Type1 /BaseFont /ABCDEF+Helvetica-Bold /FontDescriptor << "
                    "/FontFile3 9 0 R >> >>",
                    "<< /Type /XObject /Subtype /Form /Resources << /XObject << /X 7 0 R >> "
                    "/Font << /A 5 0 R /D 8 0 R >> >> >>",
                    "<< /Type /Font /Subtype /Type7 /BaseFont /D >>"}};
    TestDocument document(MakePagePdf("", parts));
    const auto fonts = document->GetFonts();
    ASSERT_EQ(fonts.size(), 2U);
    EXPECT_EQ(fonts[0].postscriptName, "Nofont");
    EXPECT_TRUE(document->ContainsFont(fonts[0]));
    EXPECT_FALSE(document->IsFontPostscriptNameUnique("Nofont"));
    EXPECT_TRUE(document->IsFontPostscriptNameUnique("Other"));

    // Those of forms too, each once.
    const auto infos = document->GetFontInfos();
    ASSERT_EQ(infos.size(), 3U);
    EXPECT_FALSE(infos[0].isEmbedded);
    EXPECT_EQ(infos[1].name, "ABCDEF+Helvetica-Bold");
    EXPECT_TRUE(infos[1].isEmbedded);
    EXPECT_FALSE(infos[1].isAvailable);
    EXPECT_EQ(infos[1].actualFont.postscriptName, "NimbusSans-Bold");
    EXPECT_EQ(infos[2].subtype, "Type7");
    EXPECT_TRUE(infos[2].actualFont.IsEmpty());
}

TEST(FontTest, DocumentsListFontsOfThePagesBehindADamagedOne)
{
    // A count that is a mere claim of pages ends the list too, and does not use up the account.
    for (const char* count : {"3", "2000000000"}) {
        PdfBuilder builder = MakePageBuilder("");
        const int font = builder.Add("<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>");
        builder.Add("<< /Type /Page /Rotate (left) >>");
        builder.Add("<< /Type /Page /Resources << /Font << /F " + std::to_string(font) + " 0 R >> >> >>");
        builder.Set(2, "<< /Kids [3 0 R 6 0 R 7 0 R] /Count " + std::string(count) + " >>");
        TestDocument document(builder.Build());
        EXPECT_EQ(document->GetFonts().size(), 1U) << count;
        EXPECT_EQ(document->GetFontInfos().size(), 1U) << count;
        EXPECT_THAT(document.GetErrors(), testing::Each(Error::PageTree)) << count;
    }
}

} // namespace
} // namespace Quillet::Test
