#include <Kernel/StringEncoding.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using namespace std::string_view_literals;
using Kernel::Counted;
using Kernel::StringEncoding;

namespace {

constexpr int c_pdfDoc = -1;

Counted<StringEncoding> MakeEncoding(int codePage)
{
    return codePage == c_pdfDoc ? StringEncoding::MakePdfDocEncoding() : StringEncoding::Make(codePage);
}

struct BytesCase
{
    const char* name;
    int codePage;
    std::string_view bytes;
    std::string_view text;
};

const BytesCase c_toUnicode[] = {
    {"empty", c_pdfDoc, ""sv, ""sv},
    {"line ends and zero stay", c_pdfDoc, "a\r\n\t\0b"sv, "a\r\n\t\0b"sv},
    {"accents below the blank", c_pdfDoc, "\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F"sv, "\x17˘ˇˆ˙˝˛˚˜"sv},
    {"ends of the upper rows", c_pdfDoc, "\x80\x8A\x8F\x90\x93\x9E"sv, "•−‘’ﬁž"sv},
    {"not defined", c_pdfDoc, "\x7F\x9F\xAD"sv, "\uFFFD\uFFFD\uFFFD"sv},
    {"Latin-1 above, but for the euro", c_pdfDoc, "\xA0\xA1\xAC\xAE\xFF"sv, "€¡¬®ÿ"sv},
    {"quotes and euro", 1252, "\x80\x93\x94\xE9"sv, "€“”é"sv},
    {"Cyrillic", 1251, "\xCF\xF0"sv, "Пр"sv},
    {"Mac", 10000, "\xCA\xD2"sv, "\u00A0“"sv},
    {"Latin-1", 28591, "\xFC"sv, "ü"sv},
    {"ASCII has no upper half", 20127, "a\xE9"sv, "a\uFFFD"sv},
    {"Shift JIS", 932, "A\x93\xFA\x96\x7B"sv, "A日本"sv},
    {"Shift JIS cut", 932, "A\x93\xFA\x96"sv, "A日\uFFFD"sv},
    {"big endian UTF-16 is not ASCII", 1201, "\0A\xD8\x3D\xDE\x00"sv, "A😀"sv},
    {"stateful", 50220, "\x1B$BF|\x1B(BA"sv, "日A"sv},
    {"broken UTF-8", 65001, "\xC3(\xE2\x82"sv, "\uFFFD(\uFFFD"sv},
};

TEST(StringEncodingTest, ReadsBytes)
{
    for (const BytesCase& row : c_toUnicode) {
        SCOPED_TRACE(row.name);
        const Counted<StringEncoding> encoding = MakeEncoding(row.codePage);
        ASSERT_TRUE(encoding);
        EXPECT_EQ(encoding->ToUnicode(row.bytes), row.text);
    }
}

struct TextCase
{
    const char* name;
    int codePage;
    std::string_view text;
    std::size_t maxBytes;
    std::string_view bytes;
};

const TextCase c_fromUnicode[] = {
    {"no room", c_pdfDoc, "abc"sv, 0, ""sv},
    {"cut", c_pdfDoc, "€ßc"sv, 2, "\xA0\xDF"sv},
    {"lacking characters take no room", c_pdfDoc, "日a本b"sv, 2, "ab"sv},
    {"nothing stands for undefined bytes", c_pdfDoc, "a\uFFFD\u0080\u00ADb"sv, 9, "ab"sv},
    {"no near relatives", 1252, "ＡāA"sv, 9, "A"sv},
    {"quotes", 1252, "“é”"sv, 9, "\x93\xE9\x94"sv},
    {"broken UTF-8 is no character", 1252, "a\xC3"sv, 9, "a"sv},
    {"ASCII cut", 932, "abc"sv, 2, "ab"sv},
    {"two bytes do not fit in one", 932, "A日本"sv, 4, "A\x93\xFA"sv},
    {"UTF-16 keeps pairs together", 1200, "a😀b"sv, 5, "a\0"sv},
    {"UTF-8 keeps characters together", 65001, "é€"sv, 4, "\xC3\xA9"sv},
    {"the way back from a shift counts", 50220, "A日本"sv, 10, "A\x1B$BF|\x1B(B"sv},
};

TEST(StringEncodingTest, WritesBytes)
{
    for (const TextCase& row : c_fromUnicode) {
        SCOPED_TRACE(row.name);
        const Counted<StringEncoding> encoding = MakeEncoding(row.codePage);
        ASSERT_TRUE(encoding);
        EXPECT_EQ(encoding->FromUnicode(row.text, row.maxBytes), row.bytes);
    }
}

TEST(StringEncodingTest, PdfDocBytesComeBack)
{
    const Counted<StringEncoding> encoding = StringEncoding::MakePdfDocEncoding();
    int undefined = 0;
    for (int i = 0; i < 256; ++i) {
        const std::string byte(1, static_cast<char>(i));
        const std::string text = encoding->ToUnicode(byte);
        if (text == "\uFFFD") {
            ++undefined;
        } else {
            EXPECT_EQ(encoding->FromUnicode(text), byte) << i;
        }
    }
    EXPECT_EQ(undefined, 3);
}

TEST(StringEncodingTest, LongTextsPassThroughInPieces)
{
    std::string text;
    for (int i = 0; i < 3001; ++i)
        text += "日😀";
    const Counted<StringEncoding> encoding = StringEncoding::Make(54936);
    ASSERT_TRUE(encoding);
    const std::string bytes = encoding->FromUnicode(text);
    EXPECT_EQ(bytes.size(), 3001u * 6);
    EXPECT_EQ(encoding->ToUnicode(bytes), text);
    EXPECT_EQ(encoding->FromUnicode(text, 6 * 2000 + 5), bytes.substr(0, 6 * 2000 + 2));
}

TEST(StringEncodingTest, KnowsWhichNumbersItKnows)
{
    for (int codePage : {0, 437, 850, 874, 936, 949, 950, 1250, 1258, 28605, 65000}) {
        EXPECT_TRUE(StringEncoding::Make(codePage)) << codePage;
    }
    for (int codePage : {-1252, 1, 99999, 2147483647})
        EXPECT_FALSE(StringEncoding::Make(codePage)) << codePage;

    const Counted<StringEncoding> system = StringEncoding::Make(0, 0);
    ASSERT_TRUE(system);
    EXPECT_EQ(system->ToUnicode("plain"), "plain");
    EXPECT_FALSE(StringEncoding::Make(0, 7));
}

TEST(StringEncodingTest, ServesSeveralThreads)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([] {
            for (int i = 0; i < 200; ++i) {
                EXPECT_EQ(StringEncoding::Make(1250 + i % 9)->ToUnicode("a"), "a");
                EXPECT_EQ(StringEncoding::Make(932)->ToUnicode("\x93\xFA"), "日");
                EXPECT_EQ(StringEncoding::MakePdfDocEncoding()->FromUnicode("€"), "\xA0");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
