#include "fonts/Font.h"

#include "content/ContentRun.h"
#include "fonts/CompositeFont.h"
#include "fonts/SimpleFont.h"
#include "fonts/Type3Font.h"
#include "fonts/UnimplementedFont.h"

#include <Quillet/Char.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace Quillet::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

/// A document with a font as object 5, and others from 6 on.
struct FontFile
{
    explicit FontFile(const std::string& entries, const std::vector<std::string>& others = {})
        : document(MakePagePdf("", {.objects = MakeObjects(entries, others)}))
    {}

    static std::vector<std::string> MakeObjects(const std::string& entries, const std::vector<std::string>& others)
    {
        std::vector<std::string> objects{"<< /Type /Font " + entries + " >>"};
        objects.insert(objects.end(), others.begin(), others.end());
        return objects;
    }

    Kernel::Counted<const Font> Get(int number = 5) const { return Font::Make(document.GetRef(number), ""); }
    Kernel::Counted<const SimpleFont> GetSimple() const { return Kernel::DynamicCast<const SimpleFont>(Get()); }
    Kernel::Counted<const CompositeFont> GetComposite() const
    {
        return Kernel::DynamicCast<const CompositeFont>(Get());
    }
    const std::vector<int>& GetErrors() const { return document.GetErrors(); }

    TestDocument document;
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
        double sum = 0;
        for (const Char& c : chars)
            sum += c.width;
        EXPECT_DOUBLE_EQ(advance, sum);
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
        const FontFile file("/BaseFont /Nofont " + c_widths + (*subtype ? std::string("/Subtype /") + subtype : ""));
        const auto font = file.Get();
        ASSERT_TRUE(font) << subtype;
        EXPECT_EQ(font->subtype, subtype);
        EXPECT_EQ(file.GetErrors(), errors) << subtype;
        const bool isKnown = errors.empty();
        const bool isType3 = font->subtype == "Type3";
        EXPECT_EQ(font->IsSupported(), isKnown) << subtype;
        EXPECT_FALSE(font->IsAvailable()) << subtype;
        EXPECT_EQ(Kernel::DynamicCast<const SimpleFont>(font) != nullptr, isKnown || isType3) << subtype;
        EXPECT_EQ(Kernel::DynamicCast<const Type3Font>(font) != nullptr, isType3) << subtype;
        EXPECT_EQ(Show(*font, "AB").size(), isKnown || isType3 ? 2U : 0U) << subtype;
        EXPECT_EQ(font->GetPostscriptName(), isKnown || isType3 ? "Nofont" : "") << subtype;
        EXPECT_EQ(file.Get(), font) << subtype;
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
    const struct
    {
        const char* entries;
        int code;
        double width;
    } rows[] = {
        {"/BaseFont /Helvetica", 'A', 667},
        {"/BaseFont /Helvetica", 1, 278},
        {"/BaseFont /ABCDEF+Times-Bold", 'A', 722},
        {"/BaseFont /Courier-Oblique", 'i', 600},
        {"/BaseFont /Symbol", 'a', 631},
        {"/BaseFont /Helvetica /Encoding << /Differences [65 /i] >>", 'A', 222},
        {"/BaseFont /Helvetica /Encoding << /Differences [65 /Euro] >>", 'A', 556},
        {"/BaseFont /Helvetica /FirstChar 65 /Widths [123]", 'A', 123},
        // By the glyphs of the encoding, where that is not the font's own.
        {"/BaseFont /Helvetica /Encoding /WinAnsiEncoding", 0xE9, 556},
        {"/BaseFont /Helvetica /Encoding /WinAnsiEncoding", 0x92, 222},
        {"/BaseFont /Helvetica /Encoding /WinAnsiEncoding", 0xA0, 278},
        {"/BaseFont /Helvetica /Encoding /WinAnsiEncoding", 0xAD, 333},
        {"/BaseFont /Helvetica /Encoding /WinAnsiEncoding", 0x81, 350},
        {"/BaseFont /Helvetica /Encoding /MacRomanEncoding", 0x8E, 556},
        {"/BaseFont /Helvetica /Encoding /MacRomanEncoding", 0xCA, 278},
        {"/BaseFont /Helvetica /Encoding << /BaseEncoding /WinAnsiEncoding >>", 0xE9, 556},
        {"/BaseFont /Helvetica /Encoding << /BaseEncoding /WinAnsiEncoding /Differences [65 /eacute] >>", 'A', 556},
        {"/BaseFont /Symbol /Encoding /WinAnsiEncoding", 'a', 631},
        {"/BaseFont /Symbol /Encoding /WinAnsiEncoding", '+', 549},
        // The file's name comes before the one that is asked for.
        {"/BaseFont /Times-Bold-Nothing", 'A', 722},
    };
    for (const auto& row : rows) {
        const FontFile file(std::string("/Subtype /Type1 ") + row.entries);
        EXPECT_EQ(file.GetSimple()->widths.at(static_cast<std::size_t>(row.code)), row.width) << row.entries;
        EXPECT_THAT(file.GetErrors(), IsEmpty()) << row.entries;
    }
    // The machine's font helps out.
    const FontFile known("/Subtype /TrueType /BaseFont /NimbusSans-Regular");
    EXPECT_NEAR(known.GetSimple()->widths.at('A'), 667, 1e-6);
    EXPECT_NEAR(known.GetSimple()->missingWidth, 278, 1e-6);
    EXPECT_THAT(known.GetErrors(), ElementsAre(Error::UnimplementedTextEncoding));
}

TEST(FontTest, UnknownFontsWithoutWidthsTakeThoseOfTheStandIn)
{
    const std::string name = "/Subtype /Type1 /BaseFont /Nofont ";
    const struct
    {
        std::string entries;
        int code;
        /// Whose width in the font that stands in; none for a code that stands for nothing.
        std::u32string text;
        double width;
    } rows[] = {
        {name, 'W', U"W", 0},
        {name + "/Encoding /WinAnsiEncoding", 0xE9, U"\u00E9", 0},
        {name + "/Encoding << /Differences [65 /f_i] >>", 'A', U"fi", 0},
        {name + "/FontDescriptor << /MissingWidth 321 >>", 0x80, U"", 321},
        {name, 0x80, U" ", 0},
        {name + "/Widths null", 'W', U"W", 0},
        {name + "/Widths []", 'W', U"W", 0},
        {name + "/Widths /None /FirstChar 65", 'W', U"W", 0},
        {name + "/Widths [500]", 'W', U"", 500},
    };
    for (const auto& row : rows) {
        const FontFile file(row.entries);
        const auto font = file.GetSimple();
        const auto metrics = Renderer::FontMetrics::Make(font->effectiveFont);
        double width = row.width;
        for (const char32_t character : row.text)
            width += metrics->GetGlyphMetrics(character).advance * 1000;
        EXPECT_GT(width, 0) << row.entries;
        const auto shown = Show(*font, std::string(1, static_cast<char>(row.code)));
        double advance = 0;
        for (const Char& c : shown)
            advance += c.width;
        EXPECT_NEAR(advance, width, 1e-9) << row.entries;
        EXPECT_EQ(font->hasWidths, row.text.empty() && row.width == 500) << row.entries;
        if (!font->hasWidths) {
            EXPECT_THAT(file.GetErrors(), Contains(Error::UnimplementedTextEncoding)) << row.entries;
        }
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
    const std::pair<const char*, bool> rows[] = {
        {"/BaseFont /Nofont /Widths [500 500 500]", true},
        {"/BaseFont /Nofont /Widths [0 500 0 500]", true},
        {"/BaseFont /Nofont /Widths [500 500 501]", false},
        {"/BaseFont /Nofont /Widths [0 500]", false},
        {"/BaseFont /Nofont /Widths []", true},
        {"/BaseFont /Nofont /Widths [500 600] /FontDescriptor << /Flags 1 >>", true},
        {"/BaseFont /DejaVuSans /Widths [500 500 500]", false},
    };
    for (const auto& [entries, isMonospaced] : rows) {
        const FontFile file(std::string("/Subtype /Type1 ") + entries);
        EXPECT_EQ(file.Get()->GetKernelFont().panose.IsMonospaced(), isMonospaced) << entries;
    }
}

const std::string c_toUnicode = PdfBuilder::MakeStream("<41> <0058> <42> <0000> <43> <FFFD> <44> <FFFF> endbfchar");

TEST(FontTest, CodesAreDecodedInOrder)
{
    const struct
    {
        const char* entries;
        int code;
        std::vector<char32_t> characters;
    } rows[] = {
        {"/ToUnicode 6 0 R /Encoding /WinAnsiEncoding", 'A', {'A'}},
        {"/ToUnicode 6 0 R /Encoding 7 0 R", 'A', {'A'}},
        {"/ToUnicode 6 0 R", 'A', {'X'}},
        {"/ToUnicode 6 0 R", 'B', {'B'}},
        {"/ToUnicode 6 0 R /Encoding << /Differences [65 /Y /Z /nothing /f_i] >>", 'A', {'X'}},
        {"/ToUnicode 6 0 R /Encoding << /Differences [65 /Y /Z /nothing /f_i] >>", 'B', {'Z'}},
        {"/ToUnicode 6 0 R /Encoding << /Differences [65 /Y /Z /nothing /f_i] >>", 'C', {'C'}},
        {"/ToUnicode 6 0 R /Encoding << /Differences [65 /Y /Z /nothing /f_i] >>", 'D', {'f', 'i'}},
        {"/Encoding << /Differences [65 /a1] >>", 'A', {'A'}},
        {"/Encoding << /BaseEncoding /MacRomanEncoding /Differences [65 /B] >>", 0x80, {0xC4}},
        {"/Encoding 8 0 R", 'A', {'C'}},
        {"", 0xC8, {0xA8}},
        {"/FontDescriptor << /Flags 4 >>", 0xC8, {0xC8}},
        {"/FontDescriptor << /Flags 4 >> /Encoding /StandardEncoding", 0xC8, {0xC8}},
        {"/Encoding /StandardEncoding", 0x80, {0}},
        {"/Encoding 12", 'A', {'A'}},
    };
    for (const auto& row : rows) {
        const FontFile file(c_unknown + row.entries, {c_toUnicode, "/WinAnsiEncoding", "<< /Differences [65 /C] >>"});
        const CodeSequence sequence = file.GetSimple()->DecodeChar(row.code);
        EXPECT_EQ(std::vector<char32_t>(sequence.values.begin(), sequence.values.begin() + sequence.count),
                  row.characters)
            << row.entries << ' ' << row.code;
    }
    // Symbols in a TrueType font are reached through the private area.
    const auto decode = [](const std::string& entries, int code) {
        return FontFile(entries).GetSimple()->DecodeChar(code).values[0];
    };
    EXPECT_EQ(decode("/Subtype /TrueType /BaseFont /Symbol " + c_widths, 'a'), 0xF061U);
    EXPECT_EQ(decode("/Subtype /Type1 /BaseFont /Symbol", 'a'), 0x3B1U);
    EXPECT_EQ(decode("/Subtype /Type1 /BaseFont /ZapfDingbats", 0x21), 0x2701U);
}

TEST(FontTest, TellsWhetherThereIsASpace)
{
    const std::string other = "/Subtype /TrueType /BaseFont /Nofont ";
    const std::string known = "/Subtype /TrueType /BaseFont /DejaVuSans ";
    const std::string symbolic = "/FontDescriptor << /Flags 4 >> ";
    const std::string none = "/FirstChar 0 /Widths [0 0] ";
    const struct
    {
        std::string entries;
        bool isDefined;
        int code;
    } rows[] = {
        {known + "/ToUnicode 6 0 R", true, -1},
        {known + symbolic + "/ToUnicode 6 0 R", false, -1},
        {other + "/ToUnicode 6 0 R", false, -1},
        {other + "/ToUnicode 7 0 R", true, -1},
        {other + symbolic + "/Encoding << /Differences [3 /space] >>", true, 3},
        {other + "/Encoding << /Differences [3 /space] >>", true, -1},
        {other + "/Encoding << /Differences [-3 /space] >>", false, -1},
        {other + c_widths + "/Encoding << /Differences [32 /A] >>", false, 0},
        {other + c_widths + "/Encoding << /Differences [33 /A] >>", true, -1},
        {other + symbolic + "/Widths [250 500]", true, -1},
        {other + symbolic + none, false, -1},
        {other + none, true, -1},
    };
    for (const auto& row : rows) {
        const FontFile file(row.entries, {c_toUnicode, PdfBuilder::MakeStream("<05> <0020> endbfchar")});
        const auto font = file.Get();
        EXPECT_EQ(font->isSpaceDefined, row.isDefined) << row.entries;
        EXPECT_EQ(font->spaceCode, row.code) << row.entries;
    }
}

TEST(FontTest, NamesLeadToTheMachinesFonts)
{
    const struct
    {
        const char* subtype;
        const char* name;
        bool isAvailable;
        const char* requested;
    } rows[] = {
        {"Type1", "DejaVuSans", true, "DejaVuSans"},
        {"Type1", "ABCDEF+DejaVuSans", true, "DejaVuSans"},
        {"Type1", "abcdef+DejaVuSans", false, "abcdef+DejaVuSans"},
        {"Type1", "ABCDE+DejaVuSans", false, "ABCDE+DejaVuSans"},
        {"Type1", "NimbusSans-Regular-Extra", true, "NimbusSans-Regular"},
        {"Type1", "DejaVuSans-", true, "DejaVuSans"},
        {"Type1", "Nofont-Regular-Extra", false, "Nofont-Regular"},
        {"Type1", "-Nofont", false, "-Nofont"},
        {"Type1", "DejaVuSansMM_400_600_", true, "DejaVuSans"},
        {"MMType1", "DejaVuSansMM_400_600_", true, "DejaVuSans"},
        {"Type1", "DejaVuSansMMx400", false, "DejaVuSansMMx400"},
        {"MMType1", "DejaVuSansMMx400", true, "DejaVuSans"},
        {"MMType1", "DejaVuSansMMx", false, "DejaVuSansMMx"},
        {"MMType1", "MM_DejaVuSans", false, "MM_DejaVuSans"},
        {"Type1", "NofontMM_400_", false, "Nofont"},
    };
    for (const auto& row : rows) {
        std::string entries = "/Subtype /";
        entries.append(row.subtype).append(" /BaseFont /").append(row.name).append(" ").append(c_widths);
        const FontFile file(entries);
        const auto font = file.GetSimple();
        EXPECT_EQ(font->IsAvailable(), row.isAvailable) << row.name;
        EXPECT_EQ(font->GetPostscriptName(), row.requested) << row.name;
        if (row.isAvailable) {
            EXPECT_EQ(font->effectiveFont.postscriptName, row.requested) << row.name;
        }
    }
    EXPECT_FALSE(InstallableFont::HasSubsetPrefix("ABCDEF+"));
    EXPECT_TRUE(InstallableFont::HasSubsetPrefix("ABCDEF+X"));
    EXPECT_EQ(InstallableFont::StripInstanceSuffix("A-B-C"), "A-B");
    EXPECT_EQ(InstallableFont::StripInstanceSuffix("-B"), "");
}

TEST(FontTest, NamesTellTheStyle)
{
    const struct
    {
        const char* name;
        int weight;
        bool isItalic;
        int width;
    } rows[] = {
        {"Nofont", 400, false, 5},
        {"NofontBoldItalicMT", 700, true, 5},
        {"Nofont-BoldItalicMT", 700, true, 5},
        {"NofontSemibold", 600, false, 5},
        {"NofontDemiBold", 600, false, 5},
        {"NofontExtraBold", 800, false, 5},
        {"NofontUltraBold", 800, false, 5},
        {"NofontExtraBlack", 900, false, 5},
        {"NofontUltraLight", 200, false, 5},
        {"NofontBdIt", 700, true, 5},
        {"NofontThin", 100, false, 5},
        {"NofontThOb", 100, true, 5},
        {"NofontLightOblique", 300, true, 5},
        {"NofontBoldBook", 700, false, 5},
        {"NofontMedium", 500, false, 5},
        {"NofontMd", 500, false, 5},
        {"NofontHeavyRegular", 900, false, 5},
        {"NofontLightRegularCond", 300, false, 3},
        {"NofontHv", 900, false, 5},
        {"NofontBlackExt", 900, false, 7},
        {"NofontBoldCn", 700, false, 3},
        {"NofontNarrow-Bold", 700, false, 3},
        {"NofontCondensedNo", 400, false, 3},
        // The word that is told last wins.
        {"NofontBoldLight", 700, false, 5},
        {"NofontLightBold", 300, false, 5},
        // But a family named for a weight has others too, and a regular one is none.
        {"NofontBook-Bold", 700, false, 5},
        {"NofontLight-Bold", 700, false, 5},
        {"NofontBlack-Regular", 900, false, 5},
        {"NofontRegularBold", 700, false, 5},
        {"NofontBook-Italic", 400, true, 5},
        {"NofontBold,Italic", 700, true, 5},
        {"NofontBlack-Bold,Italic", 700, true, 5},
        {"BoldNofont", 400, false, 5},
        {"Bold", 700, false, 5},
    };
    for (const auto& row : rows) {
        const FontFile file("/Subtype /Type1 " + c_widths + "/BaseFont /" + row.name);
        const Kernel::Font& font = file.Get()->GetKernelFont();
        EXPECT_EQ(font.weight, row.weight) << row.name;
        EXPECT_EQ(font.isItalic, row.isItalic) << row.name;
        EXPECT_EQ(font.width, row.width) << row.name;
        // Only what stands behind a hyphen is cut off the name.
        EXPECT_EQ(font.postscriptName, std::string_view(row.name).substr(0, std::string_view(row.name).find('-')));
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
    const struct
    {
        const char* entries;
        bool isItalic;
        std::vector<int> panose;
    } rows[] = {
        {"/Flags 32", false, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/Flags 64", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/ItalicAngle -12", true, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/ItalicAngle -2", false, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/Flags 8", false, {3, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/Flags 9", false, {3, 0, 0, 9, 0, 0, 0, 0, 0, 0}},
        {"/Flags 9 /Style << /Panose <0801 020B0604020202020204> >>", false, {2, 11, 6, 4, 2, 2, 2, 2, 2, 4}},
        {"/Style << /Panose <0801 020B06040202020202> >>", false, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"/Style 12", false, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
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

const std::string c_cidFont = "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Nofont "
                              "/W [1 [500 600.7] 10 12 250 20 30 700 25 [-5] 0 0 0] >>";

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
    const CidFont& cidFont = *font->descendants[0];
    const std::pair<int, double> rows[] = {{0, 0},    {1, 500},   {2, 600.7}, {3, 1000},
                                           {9, 1000}, {10, 250},  {12, 250},  {13, 1000},
                                           {20, 700}, {24, 700},  {25, -5},   {26, 700},
                                           {30, 700}, {31, 1000}, {-1, 1000}, {std::numeric_limits<int>::max(), 1000}};
    for (const auto& [cid, width] : rows)
        EXPECT_EQ(cidFont.GetBaseWidth(cid), width) << cid;
    // The fraction goes.
    EXPECT_EQ(GetWidths(Show(*font, std::string("\0\1\0\2\0\3\0\x19", 8))), (std::vector<double>{500, 600, 1000, -5}));
    EXPECT_EQ(font->GetPostscriptName(), "Nofont");
    EXPECT_TRUE(font->isSpaceDefined);

    const struct
    {
        const char* entries;
        double at5;
        double at900;
    } others[] = {
        {"/DW 300", 300, 300},
        {"/DW 300 /FontDescriptor << /MissingWidth 77 >>", 300, 300},
        {"/FontDescriptor << /MissingWidth 77 >>", 1000, 1000},
        {"/DW 300.5 /W 7 0 R", 42, 300.5},
        {"/W [0 2000000000 500 5 [600]]", 600, 500},
        {"/W [5 [600] 0 2000000000 500]", 500, 500},
        {"/W [900 5 700]", 1000, 1000},
        {"/W [-5 5 700 890 2147483647 9]", 700, 9},
        {"/W [5]", 1000, 1000},
        {"/W 12", 1000, 1000},
        {"/W << >>", 1000, 1000},
    };
    for (const auto& row : others) {
        std::string descendant = "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Nofont ";
        descendant.append(row.entries).append(" >>");
        const FontFile other(MakeType0(""), {descendant, "[5 [42]]"});
        const auto& found = other.GetComposite()->descendants.at(0);
        EXPECT_EQ(found->GetBaseWidth(5), row.at5) << row.entries;
        EXPECT_EQ(found->GetBaseWidth(900), row.at900) << row.entries;
    }
}

TEST(CompositeFontTest, CodesAreDecodedInOrder)
{
    const std::string known = "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /DejaVuSans ";
    const std::string toUnicode = PdfBuilder::MakeStream("<0005> <0058> <0006> <0000> <0007> <00660069> endbfchar");
    const FontFile file("", {known + ">>"});
    const auto host = CidFont::Make(file.document.GetRef(6), nullptr)->encoding;
    ASSERT_TRUE(host);
    const int glyph = host->GetIndexOfChar(U'A');
    const std::string code{static_cast<char>(glyph >> 8), static_cast<char>(glyph)};
    const std::string glyphIds = PdfBuilder::MakeStream(std::string(10, '\0') + code + std::string("\0", 1));
    const std::string five("\0\5", 2);

    const struct
    {
        const char* what;
        std::string font;
        std::string descendant;
        std::string text;
        std::u32string expected;
        bool canDecode;
        std::vector<int> errors;
    } rows[] = {
        {"nothing", MakeType0(""), c_cidFont, std::string("\0A\0B", 4), U"AB", false, {16}},
        {"to Unicode", MakeType0("/ToUnicode 7 0 R"), c_cidFont, five, U"X", true, {}},
        {"no good", MakeType0("/ToUnicode 7 0 R"), c_cidFont, std::string("\0\6\0A", 4), U"\6A", true, {}},
        {"sequence", MakeType0("/ToUnicode 7 0 R"), c_cidFont, std::string("\0\7", 2), U"fi", true, {}},
        {"named", MakeType0("/ToUnicode /Identity-H"), c_cidFont, "\x4E\x01", U"\u4E01", true, {}},
        {"host", MakeType0(""), known + ">>", code, U"A", true, {}},
        {"host, identity", MakeType0(""), known + "/CIDToGIDMap /Identity >>", code, U"A", true, {}},
        {"host, identity as text", MakeType0(""), known + "/CIDToGIDMap (Identity) >>", code, U"A", true, {}},
        {"host, other name", MakeType0(""), known + "/CIDToGIDMap /Other >>", code, U"A", true, {16}},
        {"host, map", MakeType0(""), known + "/CIDToGIDMap 8 0 R >>", five, U"A", true, {}},
        {"host, not in the map",
         MakeType0(""),
         known + "/CIDToGIDMap 8 0 R >>",
         std::string("\0\4", 2),
         std::u32string(1, 0),
         true,
         {}},
        {"collection",
         MakeType0("", "/90ms-RKSJ-H"),
         c_cidFont,
         "\x88\xEA"
         "A",
         U"\u4E00A",
         true,
         {}},
        {"not in the collection",
         MakeType0("", "10 0 R"),
         c_cidFont,
         std::string("\x4E\0", 2),
         std::u32string(1, 0),
         true,
         {}},
        {"odd end", MakeType0(""), c_cidFont, std::string("\0A\0", 3), U"A ", false, {16}},
        {"own encoding", MakeType0("", "9 0 R"), c_cidFont, "A", U"A", false, {16}},
    };
    for (const auto& row : rows) {
        const FontFile shown(row.font, {row.descendant, toUnicode, glyphIds,
                                        PdfBuilder::MakeStream("<00> <FF> endcodespacerange <41> <41> 2 endcidrange"),
                                        PdfBuilder::MakeStream("/Registry (Adobe) def /Ordering (Japan1) def <0000> "
                                                               "<FFFF> endcodespacerange <4E00> <4E00> 60000 "
                                                               "endcidrange")});
        const auto font = shown.GetComposite();
        EXPECT_EQ(font->CanDecodeText(), row.canDecode) << row.what;
        EXPECT_EQ(shown.GetErrors(), row.errors) << row.what;
        if (std::string(row.what) == "odd end") {
            EXPECT_FALSE(Show(*font, row.text).empty());
            continue;
        }
        EXPECT_EQ(GetText(Show(*font, row.text)), row.expected) << row.what;
    }
    const FontFile own(MakeType0("", "7 0 R"),
                       {c_cidFont, PdfBuilder::MakeStream("<00> <FF> endcodespacerange <41> <41> 2 endcidrange")});
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
        TestDocument document(MakePagePdf("", {.objects = {object}}));
        for (const int number : {5, 99}) {
            const auto font = Font::Make(document.GetRef(number), "");
            ASSERT_TRUE(font) << object;
            Show(*font, std::string("AB \0\xFF", 5));
            const auto atts = Story::GlyphAtts::GetDefault()->Clone();
            font->AddTo(*atts);
            EXPECT_TRUE(*font == *font) << object;
            EXPECT_TRUE(CidFont::Make(document.GetRef(number), nullptr)) << object;
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
