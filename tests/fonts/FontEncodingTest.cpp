#include "fonts/FontEncodingFactory.h"

#include "support/ObjectFile.h"
#include "support/Repeat.h"

#include <Kernel/UnicodeCmap.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace Quillet {
namespace {

using namespace FontEncodingType;
using testing::ElementsAre;
using testing::IsEmpty;

CodeSequence MakeSequence(std::initializer_list<char32_t> values)
{
    CodeSequence sequence;
    for (const char32_t value : values)
        sequence.Add(value);
    return sequence;
}

std::u32string GetText(const FontEncoding& encoding, const std::vector<int>& codes)
{
    std::u32string text;
    for (const int code : codes) {
        const CodeSequence sequence = encoding.GetMappedSequenceSlow(code);
        text.append(sequence.values.begin(), sequence.values.begin() + sequence.count);
    }
    return text;
}

/// What ranges stand for, code by code.
using Twin = std::map<int, CodeSequence>;

void ExpectSame(const FontEncoding& encoding, const Twin& twin, int end)
{
    // A run ends where the next code does not count on.
    std::size_t runs = 0;
    for (auto entry = twin.begin(); entry != twin.end(); ++entry) {
        const auto before = entry == twin.begin() ? twin.end() : std::prev(entry);
        if (before == twin.end() || before->first + 1 != entry->first || !(before->second.Advanced(1) == entry->second))
            ++runs;
    }
    EXPECT_EQ(encoding.mapRanges.size(), runs);
    for (int code = -1; code < end; ++code) {
        const auto known = twin.find(code);
        ASSERT_EQ(encoding.ContainsMappingFor(code), known != twin.end()) << code;
        const CodeSequence expected = known == twin.end() ? CodeSequence(0) : known->second;
        ASSERT_TRUE(encoding.GetMappedSequenceSlow(code) == expected) << code;
    }
    for (char32_t character = 0; character < static_cast<char32_t>(end); ++character) {
        int index = -1;
        for (const auto& [code, sequence] : twin) {
            if (index < 0 && sequence == CodeSequence(character)) index = code;
        }
        ASSERT_EQ(encoding.GetIndexOfChar(character), index) << static_cast<unsigned>(character);
    }
}

TEST(FontEncodingTest, MapsLikeASimpleTable)
{
    constexpr int c_end = 300;
    std::mt19937 random(5);
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    for (int round = 0; round < 30; ++round) {
        FontEncoding encoding;
        Twin twin;
        for (int step = 0; step < 25; ++step) {
            const int first = pick(c_end);
            const int last = std::min(first + pick(3) * pick(40) - 1 + pick(3), c_end - 1);
            // Mostly values that continue what other calls may have set.
            const auto character = static_cast<char32_t>(first + 1 + pick(2));
            if (pick(5) == 0) {
                encoding.AddUndefinedMaps(first, last, character);
                for (int code = first; code <= last; ++code)
                    twin.emplace(code, CodeSequence(character));
                continue;
            }
            const CodeSequence sequence = pick(4) == 0 ? MakeSequence({U'f', character}) : CodeSequence(character);
            encoding.AddMapRange(first, last, sequence);
            for (int code = first; code <= last; ++code)
                twin[code] = sequence.Advanced(code - first);
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(encoding, twin, c_end)) << round;
        encoding.OnComplete();
        for (int code = 0; code < c_end; ++code)
            ASSERT_TRUE(encoding.GetMappedSequence(code) == encoding.GetMappedSequenceSlow(code)) << code;
    }
}

TEST(FontEncodingTest, EndsWithTheLastCodeThatThereIs)
{
    FontEncoding encoding;
    encoding.AddMapRange(0, 0x7FFFFFFF, U'x');
    encoding.AddMap(0x7FFFFFFF, U'y');
    encoding.AddMap(0, U'z');
    EXPECT_EQ(encoding.mapRanges.size(), 3U);
    EXPECT_EQ(encoding.GetMappedSequenceSlow(0x7FFFFFFF).values[0], U'y');
}

TEST(FontEncodingTest, RaisesNegativeCodes)
{
    const ErrorRecorder errors;
    FontEncoding encoding;
    encoding.SetErrorHandler(&errors);
    encoding.AddMapRange(-3, 2, U'a');
    encoding.AddMapRange(-3, -2, U'x');
    EXPECT_THAT(errors.kinds, ElementsAre(Error::General, Error::General));
    EXPECT_EQ(GetText(encoding, {0, 1, 2}), U"abc");
    EXPECT_EQ(encoding.mapRanges.size(), 1U);
}

/// Whether a code was there, the code, its font and the position behind it.
using Step = std::tuple<bool, int, int, int>;

Step Advance(const FontEncoding& encoding, const std::string& text)
{
    int code = -1;
    int fontIndex = -1;
    int pos = 0;
    const bool isCode = encoding.AdvanceCharCode(fontIndex, code, pos, {text.begin(), text.end()});
    return {isCode, code, fontIndex, pos};
}

TEST(FontEncodingTest, TakesCodesOfSeveralLengths)
{
    const auto make = [](const std::vector<std::array<unsigned, 4>>& ranges) {
        FontEncoding encoding;
        for (const auto& [byteCount, fontIndex, low, high] : ranges)
            encoding.AddCodeSpaceRange(static_cast<int>(byteCount), static_cast<int>(fontIndex), low, high);
        encoding.OnComplete();
        return encoding;
    };
    const FontEncoding mixed = make({{3, 2, 0xE10000, 0xE1FFFF}, {1, 0, 0, 0x80}, {2, 1, 0x8140, 0x9FFC}});
    const FontEncoding two = make({{2, 4, 0x100, 0x1FF}});
    // An invalid code goes to the longest range that begins like the bytes behind it.
    const FontEncoding prefixed = make({{2, 1, 0x110, 0x1FF}, {3, 2, 0x20000, 0x2FFFF}});
    const FontEncoding bare = make({});
    const struct
    {
        const FontEncoding& encoding;
        std::string text;
        Step expected;
    } rows[] = {
        {mixed, "AB", {true, 'A', 0, 1}},
        {mixed, "\x81\100A", {true, 0x8140, 1, 2}},
        {mixed, "\xE1\x02\x03", {true, 0xE10203, 2, 3}},
        {mixed, "\xE1\x02", {false, 0, 0, 2}},
        {two, std::string("\1\0\1", 3), {true, 0x100, 4, 2}},
        {two, std::string("\5\5\5\5\0\7Z", 7), {false, 7, 4, 6}},
        {two, "\5\5\5\5\7", {false, 7, 4, 5}},
        {two, "\5\5\5", {false, 0, 4, 3}},
        {two, "\1", {false, 0, 4, 1}},
        {prefixed, std::string("\11\11\11\2\0\5\0\0\7Z", 10), {false, 7, 2, 9}},
        {prefixed, std::string("\11\11\11\1\40\0\0\7ZZ", 10), {false, 7, 1, 8}},
        {bare, std::string("\0Z", 2), {true, 0, 0, 1}},
        {bare, "ABCD", {false, 'C', 0, 3}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Advance(row.encoding, row.text), row.expected) << testing::PrintToString(row.text);
    EXPECT_EQ(mixed.GetFontIndex(0x8140), 1);
    EXPECT_EQ(mixed.GetFontIndex(0x41), 0);
    EXPECT_EQ(mixed.GetFontIndex(0x81), -1);
}

TEST(FontEncodingTest, EndsForCodesWithoutBytes)
{
    const std::vector<char> text(50, 'x');
    for (const int byteCount : {0, -7, 1 << 30}) {
        FontEncoding encoding;
        encoding.AddCodeSpaceRange(byteCount, 0, 0, 0);
        encoding.OnComplete();
        int steps = 0;
        for (int pos = 0; pos < 50; ++steps) {
            int fontIndex = 0;
            int code = 0;
            const int before = pos;
            encoding.AdvanceCharCode(fontIndex, code, pos, text);
            ASSERT_GT(pos, before) << byteCount;
        }
        EXPECT_GT(steps, 0);
    }
}

TEST(FontEncodingTest, TurnsIntoOthers)
{
    FontEncoding encoding;
    encoding.AddCodeSpaceRange(1, 3, 0, 0x7F);
    encoding.AddMapRange(5, 6, char32_t{0x3B1});
    encoding.AddMap(7, U'\u20AC');
    encoding.AddMap(8, MakeSequence({0x3B1, 0x3B2}));
    encoding.AddMap(9, U'\uFB03');
    const auto inPrivateUse = encoding.AsPrivateUse(FontEncodingFactory::Get(FontEncodingSymbol));
    EXPECT_EQ(GetText(*inPrivateUse, {5, 6, 7, 8, 9}), U"\uF061\uF062\uF0A0\u03B1\u03B2\uFB03");
    ASSERT_EQ(inPrivateUse->codeSpaceRanges.size(), 1U);
    EXPECT_EQ(inPrivateUse->codeSpaceRanges[0].fontIndex, 3);

    const auto inverse = encoding.GetInverse();
    EXPECT_THAT(inverse->codeSpaceRanges, IsEmpty());
    EXPECT_EQ(GetText(*inverse, {0x3B2, 0x20AC}), U"\6\a");
    EXPECT_EQ(inverse->mapRanges.size(), 3U);
}

TEST(FontEncodingTest, BuiltInOnesMapAsPublished)
{
    const std::u32string none(1, 0);
    const struct
    {
        Type type;
        std::vector<int> codes;
        std::u32string text;
    } rows[] = {
        {FontEncodingIdentity, {9, 10, 255, 256}, U" \n\u00FF" + none},
        {FontEncodingStandard, {39, 0xC8, 0x80, 0xA0}, U"\u2019\u00A8" + none + none},
        {FontEncodingMacRoman, {0x80, 0xCA}, U"\u00C4 "},
        {FontEncodingWinAnsi, {39, 31, 127, 0x80, 0x81, 0xA0, 0xAD, 0xC8}, U"'" + none + U"\u2022\u20AC\u2022 -\u00C8"},
        {FontEncodingMacExpert, {0x21}, U"\uF721"},
        {FontEncodingSymbol, {0x61, 0xA0}, U"\u03B1\u20AC"},
        {FontEncodingZapfDingbats, {0x21}, U"\u2701"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(GetText(*FontEncodingFactory::Get(row.type), row.codes), row.text) << row.type;
}

constexpr const char* c_differences = "<< /Type /Encoding /BaseEncoding /WinAnsiEncoding /Differences [65 /B /g1A -1 "
                                      "/C /A 255 /D /E 300 /A 97 /alpha] >>";

TEST(FontEncodingFactoryTest, AppliesDifferences)
{
    const ObjectFile file(c_differences);
    const auto encoding = FontEncodingFactory::GetType1(file.GetRef(), "Nofont", false, Kernel::Font());
    const std::u32string none(1, 0);
    EXPECT_EQ(GetText(*encoding, {0, 65, 66, 67, 97, 98, 255, 256, 300}), U"ABBC\u03B1bD" + none + none);
    EXPECT_THAT(file.GetErrors(), ElementsAre(Error::UnimplementedTextEncoding, Error::General));
    // The base is shared, and stays.
    EXPECT_EQ(FontEncodingFactory::Get(FontEncodingWinAnsi)->GetMappedSequence(65).values[0], U'A');

    const auto differences = FontEncodingFactory::GetType1Differences(file.GetRef());
    ASSERT_TRUE(differences);
    const std::pair<int, const char*> names[] = {{66, "g1A"}, {256, "E"}, {300, "A"}, {301, ""}};
    for (const auto& [code, name] : names)
        EXPECT_EQ(differences->GetName(code), name);

    for (const char* object :
         {"<< /BaseEncoding /WinAnsiEncoding >>", "<< /BaseEncoding /WinAnsiEncoding /Differences /A >>"}) {
        const ObjectFile plain(object);
        EXPECT_EQ(FontEncodingFactory::GetType1(plain.GetRef(), "Nofont", false, Kernel::Font()),
                  FontEncodingFactory::Get(FontEncodingWinAnsi))
            << object;
    }
    const ObjectFile dingbats("<< /Differences [65 /a1] >>");
    const auto dingbat = FontEncodingFactory::GetType1(dingbats.GetRef(), "ZapfDingbats", true, Kernel::Font());
    EXPECT_EQ(GetText(*dingbat, {65}), U"\u2701");
    EXPECT_FALSE(FontEncodingFactory::GetType1Differences(ObjectFile("<< >>").GetRef()));

    const ObjectFile many("<< /Differences [9223372036854775807 /A /B -9223372036854775808 /C 0" +
                          Repeat(" /A", 70000) + "] >>");
    EXPECT_EQ(FontEncodingFactory::GetType1Differences(many.GetRef())->names.size(), 65536U);
}

TEST(FontEncodingFactoryTest, ReadsGlyphNumbersByTheFontOfTheMachine)
{
    Kernel::Font font;
    font.SetPostscriptName("DejaVuSans");
    const auto cmap = Kernel::UnicodeCmap::Make(font);
    ASSERT_TRUE(cmap);
    FontEncodingFactory::Encoding cache;
    for (const char* format : {"g%X", "g%x", "g%04X", "g%06x", "g%X.alt"}) {
        char name[40];
        std::snprintf(name, sizeof name, format, static_cast<unsigned>(cmap->GetGlyphIndex(U'\u00E9')));
        EXPECT_EQ(FontEncodingFactory::GetUnicodeFromGlyphIndex(name, font, &cache), U'\u00E9') << name;
    }
    ASSERT_TRUE(cache);
    EXPECT_EQ(FontEncodingFactory::GetFromOs(font), cache);
    // Glyphs with several characters are the first of them: this font has a no-break space and a soft hyphen, too.
    for (const char32_t character : {U' ', U'-', U'\u03A9'})
        EXPECT_EQ(cache->GetMappedSequence(cmap->GetGlyphIndex(character)).values[0], character);
    for (const char* name : {"", "g", "gx", "h24", "gFFFF", "gFFFFFFFFFFFFFFFF"})
        EXPECT_EQ(FontEncodingFactory::GetUnicodeFromGlyphIndex(name, font, &cache), 0U) << name;
    font.SetPostscriptName("Nofont");
    FontEncodingFactory::Encoding none;
    EXPECT_EQ(FontEncodingFactory::GetUnicodeFromGlyphIndex("g24", font, &none), 0U);
    EXPECT_FALSE(FontEncodingFactory::GetFromOs(font));
}

TEST(FontEncodingFactoryTest, GivesTheBaseAlone)
{
    const struct
    {
        const char* object;
        const char* font;
        bool isSymbolic;
        bool noDefault;
        int type;
    } rows[] = {
        {"<< /BaseEncoding /MacRomanEncoding >>", "", true, true, FontEncodingMacRoman},
        {"<< /BaseEncoding /Other >>", "", true, true, FontEncodingIdentity},
        {"<< >>", "", false, true, -1},
        {"<< >>", "Symbol", true, false, -1},
        {"<< >>", "Symbol", false, false, FontEncodingSymbol},
        {"<< >>", "ZapfDingbats", false, false, FontEncodingZapfDingbats},
        {"<< >>", "Helvetica", false, false, FontEncodingStandard},
        {"12", "Helvetica", false, true, -1},
    };
    for (const auto& row : rows) {
        const ObjectFile file(row.object);
        const auto expected = row.type < 0 ? nullptr : FontEncodingFactory::Get(static_cast<Type>(row.type));
        EXPECT_EQ(FontEncodingFactory::GetType1Encoding(file.GetRef(), row.font, row.isSymbolic, row.noDefault),
                  expected)
            << row.object << row.font;
    }
}

} // namespace
} // namespace Quillet
