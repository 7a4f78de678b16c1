#include "fonts/CMapInterpreter.h"
#include "fonts/StandardCMaps.h"

#include "document/Guard.h"
#include "support/ObjectFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace Quillet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Encoding = Kernel::Counted<const FontEncoding>;
using namespace std::string_literals;

/// A surrogate stays what it is.
std::u32string GetCharacters(const FontEncoding& encoding, int code)
{
    const CodeSequence sequence = encoding.GetMappedSequence(code);
    return {sequence.values.begin(), sequence.values.begin() + sequence.count};
}

std::u32string MakeString(std::initializer_list<char32_t> characters)
{
    return characters;
}

/// What a code without a mapping stands for.
const std::u32string c_none = MakeString({0});

/// CMaps as objects 5, 6 and so on of a document.
struct CMapFile : ObjectFile
{
    explicit CMapFile(const std::string& program, const std::string& entries = "",
                      const std::vector<std::string>& others = {})
        : ObjectFile(PdfBuilder::MakeStream(program, entries), others), encoding(CMapInterpreter::GetEncoding(GetRef()))
    {}

    std::u32string Get(int code) const { return GetCharacters(*encoding, code); }

    Encoding encoding;
};

TEST(CMapTest, ReadsMappings)
{
    const struct
    {
        const char* program;
        std::vector<std::pair<int, std::u32string>> mappings;
        std::size_t errors = 0;
    } rows[] = {
        {"1 beginbfchar <41> <0058> endbfchar", {{0x41, U"X"}, {0x42, c_none}}},
        {"<41> <0009> <42> <0061000A> <43> <000D> endbfchar", {{0x41, U" "}, {0x42, U" "}, {0x43, U" "}}},
        {"<41> <42> <0009> endbfrange", {{0x41, U"\t"}, {0x42, U"\n"}}},
        {"<41> <004100420043004400450046> endbfchar", {{0x41, U"ABCDE"}}},
        {"<41> <004142> <42> <43> <44> <> endbfchar", {{0x41, U"AB"}, {0x42, U"C"}, {0x44, c_none}}},
        {"<41> <D83DDE00> endbfchar", {{0x41, MakeString({0xD83D, 0xDE00})}}},
        {"<41> 66 endbfchar <42> 67 endbfcid", {{0x41, U"B"}, {0x42, U"C"}}},
        {"<41> <43> 100 endcidrange", {{0x41, U"d"}, {0x43, U"f"}, {0x44, c_none}}},
        {"<41> <42> <00660069> endbfrange", {{0x41, U"fi"}, {0x42, U"fj"}}},
        {"<41> <43> [<0061> 98 <00660069>] <50> <50> <0070> endbfrange",
         {{0x41, U"a"}, {0x42, U"b"}, {0x43, U"fi"}, {0x50, U"p"}}},
        {"<41> 5 <42> 9 endcidchar", {{0x41, U"\5"}, {0x42, U"\t"}}},
        {"/Other usecmap <42> <0062> endbfchar", {{0x41, c_none}, {0x42, U"b"}}},
        {"/Identity-H usecmap <42> <0062> endbfchar", {{0x41, U"A"}, {0x42, U"b"}}},
        {"<43> <0063> endbfchar /H usecmap <2121> 7 endcidchar /V usecmap",
         {{0x43, U"c"}, {0x2121, U"\a"}, {0x2122, U"\u027A"}}},
        {"<< /A <41> >> <41> <0061> endbfchar", {{0x41, U"a"}}},
        {"<8140> <0061> endbfchar <00> <7FFFFFFF> 7 endcidrange <8140> <0062> endbfchar",
         {{0x8140, U"b"}, {0x7FFFFFFF, MakeString({0x80000006})}}},
        {"<41> <0061> <42> endbfchar", {{0x41, U"a"}, {0x42, c_none}}},
        {"<41> <40> <0061> endbfrange", {{0x41, c_none}, {0x40, c_none}}},
        // Bad ranges.
        {"<41> <43> [<0061> <0062>] <50> <50> <0070> endbfrange", {{0x41, U"a"}, {0x50, U"p"}}, 1},
        {"<41> <41> [<0061> <0062>] <50> <50> <0070> endbfrange", {{0x41, U"a"}, {0x50, c_none}}, 1},
        {"<41> <43> [<0061> /b <0063>] <50> <50> <0070> endbfrange", {{0x41, U"a"}, {0x50, c_none}}, 2},
        {"<41> <7FFFFFFF> [<0061>] <50> <50> <0070> endbfrange", {{0x41, U"a"}, {0x50, U"p"}}, 1},
        {"<40> <41> [<0061>] endbfrange <50> <50> <0070> endbfrange", {{0x41, c_none}, {0x50, U"p"}}, 1},
        {"<80000000> <80000005> <0061> endbfrange <50> <0070> endbfchar", {{0x41, c_none}, {0x50, U"p"}}, 1},
        {"<41> <FFFFFFFF> <0061> endbfrange <50> <0070> endbfchar", {{0x41, c_none}, {0x50, U"p"}}, 0},
    };
    for (const auto& row : rows) {
        const CMapFile file(row.program);
        for (const auto& [code, characters] : row.mappings)
            EXPECT_EQ(file.Get(code), characters) << row.program << ' ' << code;
        EXPECT_EQ(file.GetErrors(), std::vector<int>(row.errors, Error::General)) << row.program;
    }
}

TEST(CMapTest, ReadsCodeSpacesAndNames)
{
    const CMapFile file("/CMapName /Mine def /CIDSystemInfo 3 dict dup begin /Registry (Adobe) def "
                        "/Ordering (Japan1) def /Supplement 2 def end def /WMode 1 def "
                        "<8000> <FFFF> endcodespacerange 1 usefont <00> <7F> endcodespacerange");
    EXPECT_EQ(file.encoding->name, "Mine");
    EXPECT_EQ(file.encoding->registry, "Adobe");
    EXPECT_EQ(file.encoding->ordering, "Japan1");
    using Range = std::tuple<int, int, unsigned long, unsigned long>;
    std::vector<Range> ranges;
    for (const auto& range : file.encoding->codeSpaceRanges)
        ranges.emplace_back(range.byteCount, range.fontIndex, range.low, range.high);
    EXPECT_THAT(ranges, ElementsAre(Range{1, 1, 0, 0x7F}, Range{2, 0, 0x8000, 0xFFFF}));

    // A dictionary is not looked into, and a name needs its key alone before it.
    const CMapFile dropped("/CIDSystemInfo << /Registry (Adobe) /Ordering (Japan1) >> def 7 /Registry (A) def");
    EXPECT_EQ(dropped.encoding->registry, "");
    EXPECT_EQ(dropped.encoding->ordering, "");
    EXPECT_FALSE(GetCidToUnicode(dropped.encoding));
}

TEST(CMapTest, BuildsOnOthers)
{
    const std::string own = "<41> <0061> endbfchar";
    const auto make = [](const char* program, const char* entries = "") {
        return PdfBuilder::MakeStream(program, entries);
    };
    const CMapFile based(own, "/UseCMap 6 0 R",
                         {make("/Registry (A) def <41> <43> <0078> endbfrange <00> <FF> endcodespacerange")});
    EXPECT_EQ(based.Get(0x41) + based.Get(0x42), U"ay");
    EXPECT_EQ(based.encoding->registry, "A");
    EXPECT_EQ(based.encoding->codeSpaceRanges.size(), 1U);
    EXPECT_THAT(based.GetErrors(), IsEmpty());
    // The other stays as it is.
    EXPECT_EQ(GetCharacters(*CMapInterpreter::GetEncoding(based.GetRef(6)), 0x41), U"x");
    EXPECT_EQ(CMapInterpreter::GetEncoding(based.GetRef()), based.encoding);
    // What is assumed of a CMap that has no codes is nothing to build on.
    const CMapFile assumed(own + " <4100> <42FF> endcodespacerange", "/UseCMap 6 0 R",
                           {make("<4142> <0078> endbfchar")});
    EXPECT_EQ(assumed.Get(0x4142), U"x");
    ASSERT_EQ(assumed.encoding->codeSpaceRanges.size(), 1U);
    EXPECT_EQ(assumed.encoding->codeSpaceRanges[0].byteCount, 2);
    // The collection that the CMap names itself stays, and a name that nobody knows keeps no other from counting.
    EXPECT_EQ(CMapFile("/Registry (A) def /H usecmap").encoding->ordering, "");
    EXPECT_EQ(CMapFile("/H usecmap", "/UseCMap /Nothing").Get(0x2122), U"\u027A");
    const CMapFile named("<2121> 7 endcidchar /V usecmap", "/UseCMap /H");
    EXPECT_EQ(named.Get(0x2121) + named.Get(0x2122), U"\a\u027A");
    EXPECT_EQ(named.encoding->ordering, "Japan1");
    EXPECT_EQ(named.encoding->codeSpaceRanges.size(), 1U);

    const CMapFile cycle(
        own, "/UseCMap 6 0 R",
        {make("<42> <0062> endbfchar", "/UseCMap 7 0 R"), make("<43> <0063> endbfchar", "/UseCMap 5 0 R")});
    EXPECT_EQ(cycle.Get(0x41) + cycle.Get(0x42) + cycle.Get(0x43), U"abc");
    const CMapFile self(own, "/UseCMap 5 0 R");
    EXPECT_EQ(self.Get(0x41), U"a");
    EXPECT_THAT(self.GetErrors(), IsEmpty());
    for (const char* entries : {"/UseCMap 99 0 R", "/UseCMap /Nothing", "/UseCMap 1 0 R", "/UseCMap null"})
        EXPECT_EQ(CMapFile(own, entries).Get(0x41), U"a") << entries;
}

TEST(CMapTest, ReadsOnInStreamsOfAnyType)
{
    const CMapFile file("<41> <0061> endbfchar", "/Type /CMap");
    EXPECT_EQ(file.Get(0x41), U"a");
    EXPECT_THAT(file.GetErrors(), ElementsAre(Error::General));
}

/// Ends a run that raises without end.
class ImpatientHandler : public ErrorForwarder
{
public:
    void OnError(Error::Type) const override
    {
        if (++count > 10000) throw Error::FileOp;
    }

    mutable int count = 0;
};

TEST(CMapTest, SurvivesRubbish)
{
    const std::string deep(100000, '[');
    const std::string programs[] = {"",
                                    "<41> <0061",
                                    ") > ] >> } <41> <0061> endbfchar",
                                    "endbfrange endbfchar def usefont endcodespacerange",
                                    "<41> endbfchar",
                                    "/A [<41> [<42>]] /B endbfrange",
                                    "<41> <42> [ endbfrange",
                                    "<< /A << /B",
                                    "9999999999999999999 usefont <00> <FF> endcodespacerange",
                                    "<> <> endcodespacerange",
                                    "%",
                                    deep,
                                    deep + "<41>"};
    for (const std::string& program : programs) {
        const ObjectFile file(PdfBuilder::MakeStream(program + " <7A> <007A> endbfchar"));
        const ImpatientHandler handler;
        file.document->SetErrorHandler(&handler);
        Encoding encoding;
        EXPECT_NO_THROW(encoding = CMapInterpreter::GetEncoding(file.GetRef())) << program.substr(0, 50);
        EXPECT_TRUE(encoding && !encoding->codeSpaceRanges.empty()) << program.substr(0, 50);
    }
    const CMapFile behind("> ] >> } endbfchar <7A> <007A> endbfchar");
    EXPECT_EQ(behind.Get(0x7A), U"z");
    EXPECT_FALSE(behind.GetErrors().empty());
    // What is no operand is an operator, and has those before it.
    const CMapFile early("<41> <0061> ] <42> <0062> endbfchar");
    EXPECT_EQ(early.Get(0x41) + early.Get(0x42), c_none + U"b");
    const ObjectFile none("12", {"<< >>"});
    for (const int number : {-1, 5, 6, 99})
        EXPECT_TRUE(CMapInterpreter::GetEncoding(none.GetRef(number))) << number;
}

struct Taken
{
    bool isCode;
    int code;
    int pos;
};

Taken Take(const FontEncoding& encoding, const std::string& text)
{
    int fontIndex = -1;
    Taken taken{false, -1, 0};
    taken.isCode = encoding.AdvanceCharCode(fontIndex, taken.code, taken.pos, {text.begin(), text.end()});
    return taken;
}

TEST(StandardCMapsTest, LeadFromCodesToCharacters)
{
    const struct
    {
        const char* name;
        std::string text;
        char32_t character;
    } rows[] = {
        {"90ms-RKSJ-H", "\x88\xEA", 0x4E00}, {"90ms-RKSJ-V", "\x88\xEA", 0x4E00},    {"90ms-RKSJ-H", "A", 'A'},
        {"UniJIS-UCS2-H", "\x4E", 0},        {"UniJIS-UTF16-H", "\x4E\x01", 0x4E01}, {"GBK-EUC-H", "\xD2\xBB", 0x4E00},
        {"ETen-B5-H", "\xA4\x40", 0x4E00},   {"KSCms-UHC-H", "\xEC\xE9", 0x4E00},
    };
    for (const auto& row : rows) {
        const Encoding encoding = GetStandardCMap(row.name);
        ASSERT_FALSE(encoding->ordering.empty()) << row.name;
        const Encoding toUnicode = GetCidToUnicode(encoding);
        ASSERT_TRUE(toUnicode) << row.name;
        const Taken taken = Take(*encoding, row.text);
        EXPECT_EQ(taken.isCode, row.character != 0) << row.name;
        if (row.character == 0) continue;
        EXPECT_EQ(taken.pos, static_cast<int>(row.text.size())) << row.name;
        const auto cid = static_cast<int>(encoding->GetMappedSequence(taken.code).values[0]);
        EXPECT_NE(cid, 0) << row.name;
        EXPECT_EQ(GetCharacters(*toUnicode, cid), std::u32string(1, row.character)) << row.name;
    }
    const Encoding vertical = GetStandardCMap("Identity-V");
    EXPECT_EQ(Take(*vertical, "\x12\x34").code, 0x1234);
    EXPECT_EQ(GetCharacters(*vertical, 0x1234), U"\u1234");
}

TEST(StandardCMapsTest, UnknownOnesAreTheIdentity)
{
    const Encoding identity = MakeIdentityCMap();
    EXPECT_EQ(identity->name, "Identity-H");
    for (const int code : {0, 9, 255, 256, 0xFFFF})
        EXPECT_EQ(GetCharacters(*identity, code), std::u32string(1, static_cast<char32_t>(code)));
    EXPECT_EQ(Take(*identity, "\x12\x34").code, 0x1234);
    EXPECT_FALSE(GetCidToUnicode(identity));
    EXPECT_FALSE(GetCidToUnicode(nullptr));
    // Names come from files, and must not lead anywhere else.
    for (const std::string& name :
         {"Identity-H"s, "No such"s, ""s, "."s, ".."s, "../Standard CMaps/90ms-RKSJ-H"s, "./90ms-RKSJ-H"s,
          "a/../90ms-RKSJ-H"s, "90ms-RKSJ-H.txt\0"s, "\\90ms-RKSJ-H"s, std::string(10000, 'x')}) {
        EXPECT_EQ(GetStandardCMap(name), identity) << name.substr(0, 40);
        EXPECT_EQ(GetStandardCMap(name), identity) << name.substr(0, 40);
    }
    FontEncoding other;
    other.SetRegistry("No");
    other.SetOrdering("Such");
    EXPECT_EQ(GetCidToUnicode(Kernel::MakeCounted<FontEncoding>(other)), identity);
}

TEST(StandardCMapsTest, MadeUpNamesTakeNoPlaceOfOthers)
{
    for (int i = 0; i < 1100; ++i)
        GetStandardCMap("No such " + std::to_string(i));
    EXPECT_EQ(GetStandardCMap("GBKp-EUC-H"), GetStandardCMap("GBKp-EUC-H"));
}

// A page that has used up its work leaves nothing unfinished behind.

TEST(StandardCMapsTest, AreWholeWhoeverAsksFirst)
{
    const Budget::Scope budget(Kernel::MakeCounted<Budget>(-1), Budget::Share::All, nullptr);
    EXPECT_EQ(GetCharacters(*MakeIdentityCMap(), 0x1234), U"\u1234");
    EXPECT_GT(GetStandardCMap("EUC-H")->mapRanges.size(), 100U);
    EXPECT_TRUE(Budget::IsSpent());
}

TEST(CMapTest, WhatIsCutShortIsNotKept)
{
    std::string program;
    for (char digit = '0'; digit <= '9'; ++digit)
        program += std::string("<4") + digit + "> <0061> endbfchar ";
    const ObjectFile file(PdfBuilder::MakeStream(program));
    {
        const Budget::Scope budget(Kernel::MakeCounted<Budget>(1500), Budget::Share::All, nullptr);
        EXPECT_LT(CMapInterpreter::GetEncoding(file.GetRef())->mapRanges.size(), 10U);
    }
    const auto whole = CMapInterpreter::GetEncoding(file.GetRef());
    EXPECT_EQ(whole->mapRanges.size(), 10U);
    EXPECT_EQ(CMapInterpreter::GetEncoding(file.GetRef()), whole);

    const Budget::Scope budget(Kernel::MakeCounted<Budget>(-1), Budget::Share::All, nullptr);
    EXPECT_EQ(Take(*whole, std::string(1000, 'A')).pos, 1000);
}

TEST(StandardCMapsTest, ThreadsGetTheSame)
{
    const auto ask = [](std::vector<Encoding>& results) {
        for (const char* name : {"GBpc-EUC-H", "B5pc-H", "KSC-EUC-H", "Identity-H", "No such"})
            results.push_back(GetStandardCMap(name));
    };
    std::vector<std::vector<Encoding>> results(4);
    std::vector<std::thread> threads;
    for (auto& result : results)
        threads.emplace_back([&result, &ask] { ask(result); });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(result, results[0]);
    EXPECT_FALSE(results[0][0] == results[0][3]);
}

} // namespace
} // namespace Quillet
