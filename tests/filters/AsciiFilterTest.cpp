#include "filters/Ascii85Filter.h"
#include "filters/AsciiHexFilter.h"
#include "filters/RunLengthFilter.h"

#include "filters/Decoding.h"

namespace Quillet {
namespace {

struct Row
{
    const char* name;
    std::string input;
    std::string expected;
    int faults = 0;
    std::string rest = "";
    bool isAtEnd = true;
};

template <typename T>
void ExpectRows(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        const Decoding decoding = Decode<T>(row.input);
        EXPECT_EQ(decoding.bytes, row.expected) << row.name;
        EXPECT_EQ(decoding.kinds, std::vector<int>(static_cast<std::size_t>(row.faults), Error::General)) << row.name;
        EXPECT_EQ(decoding.rest, row.rest) << row.name;
        EXPECT_EQ(decoding.isAtEnd, row.isAtEnd) << row.name;
    }
}

const std::string c_zero(1, '\0');

TEST(Ascii85Filter, DecodesGroups)
{
    ExpectRows<Ascii85Filter>({
        {"whole groups", "87cURD]j7BEbo7~>", "Hello world"},
        {"white space anywhere", "87 c\nU\rR\tD]\fj7B" + c_zero + "Ebo7~>", "Hello world"},
        {"two digits", "5l~>", "A"},
        {"one digit", "87cUR5~>", "Hell", 1},
        {"z within a group loses it", "87cURD]z87cUR~>", "Hell" + std::string(4, '\0') + "Hell", 1},
        {"one above the largest wraps", "s8W-\"~>", std::string(4, '\0')},
        {"stops behind its end marker", "5l~> EI", "A", 0, " EI"},
        {"half an end marker takes one byte more", "5l~x EI", "A", 1, " EI"},
        {"a tilde at the very end", "5l~", "A", 1},
        {"no end marker", "87cUR5l", "HellA", 0, "", false},
        {"bytes out of place are skipped", "87v{\xe4 cUR~>", "Hell", 3},
    });
}

TEST(AsciiHexFilter, DecodesPairs)
{
    ExpectRows<AsciiHexFilter>({
        {"white space anywhere", " 4\n1\r4\t\f2" + c_zero + ">", "AB"},
        {"an odd count ends with a low half of 0", "415>", "AP"},
        {"a letter g counts as 0", "g14G>", "\x01@", 2},
        {"stops behind its end marker", "41> EI", "A", 0, " EI"},
        {"no end marker, odd", "414", "A@"},
    });
}

TEST(RunLengthFilter, DecodesRuns)
{
    ExpectRows<RunLengthFilter>({
        {"copies and repeats",
         "\2abc\xfe"
         "d\x80",
         "abcddd"},
        {"255 repeats twice", "\xffx\x80", "xx"},
        {"stops behind its end marker", "\xffx\x80 EI", "xx", 0, " EI"},
        {"a copy cut off", "\4ab", "ab", 1, "", false},
        {"a repeat cut off gives zeros", "\xfe", std::string(3, '\0'), 1, "", false},
        {"nothing", "", "", 0, "", false},
    });
}

TEST(RunLengthFilter, EndsWhereAStreamMayHoldNoMore)
{
    ErrorRecorder recorder;
    RunLengthFilter filter(&recorder);
    filter.SetSource(Kernel::MakeCounted<BytesFilter>("\x81x\x81x"));
    filter.decodedLength = (1ull << 30) - 200;
    EXPECT_EQ(Drain(filter, 50).size(), 128u);
    EXPECT_EQ(recorder.kinds, std::vector<int>{Error::General});
    EXPECT_TRUE(filter.AtEnd());
}

} // namespace
} // namespace Quillet
