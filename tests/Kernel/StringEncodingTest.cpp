#include <Kernel/StringEncoding.h>

#include <gtest/gtest.h>

using namespace std::string_view_literals;
using Kernel::Counted;
using Kernel::StringEncoding;

namespace {

constexpr int c_pdfDoc = -1;

Counted<StringEncoding> MakeEncoding(int codePage)
{
    return codePage == c_pdfDoc ? StringEncoding::MakePdfDocEncoding() : StringEncoding::Make(codePage);
}

/// Name, code page, bytes and text.
const std::tuple<const char*, int, std::string_view, std::string_view> c_toUnicode[] = {
    {"accents below the blank", c_pdfDoc, "\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F"sv, "\x17˘ˇˆ˙˝˛˚˜"sv},
    {"ends of the upper rows", c_pdfDoc, "\x80\x8A\x8F\x90\x93\x9E"sv, "•−‘’ﬁž"sv},
    {"not defined", c_pdfDoc, "\x7F\x9F\xAD"sv, "\uFFFD\uFFFD\uFFFD"sv},
    {"Latin-1 above, but for the euro", c_pdfDoc, "\xA0\xA1\xAC\xAE\xFF"sv, "€¡¬®ÿ"sv},
    {"ASCII has no upper half", 20127, "a\xE9"sv, "a\uFFFD"sv},
    {"Shift JIS cut", 932, "A\x93\xFA\x96"sv, "A日\uFFFD"sv},
    {"big endian UTF-16 is not ASCII", 1201, "\0A\xD8\x3D\xDE\x00"sv, "A😀"sv},
    {"stateful", 50220, "\x1B$BF|\x1B(BA"sv, "日A"sv},
    {"broken UTF-8", 65001, "\xC3(\xE2\x82"sv, "\uFFFD(\uFFFD"sv},
};

TEST(StringEncodingTest, ReadsBytes)
{
    for (const auto& [name, codePage, bytes, text] : c_toUnicode) {
        const Counted<StringEncoding> encoding = MakeEncoding(codePage);
        ASSERT_TRUE(encoding) << name;
        EXPECT_EQ(encoding->ToUnicode(bytes), text) << name;
    }
}

/// Name, code page, text, room and bytes.
const std::tuple<const char*, int, std::string_view, std::size_t, std::string_view> c_fromUnicode[] = {
    {"cut", c_pdfDoc, "€ßc"sv, 2, "\xA0\xDF"sv},
    {"lacking characters take no room", c_pdfDoc, "日a本b"sv, 2, "ab"sv},
    {"no near relatives", 1252, "ＡāA"sv, 9, "A"sv},
    {"UTF-16 keeps pairs together", 1200, "a😀b"sv, 5, "a\0"sv},
    {"the way back from a shift counts", 50220, "A日本"sv, 10, "A\x1B$BF|\x1B(B"sv},
};

TEST(StringEncodingTest, WritesBytes)
{
    for (const auto& [name, codePage, text, maxBytes, bytes] : c_fromUnicode)
        EXPECT_EQ(MakeEncoding(codePage)->FromUnicode(text, maxBytes), bytes) << name;
}

TEST(StringEncodingTest, PdfDocBytesComeBack)
{
    const Counted<StringEncoding> encoding = StringEncoding::MakePdfDocEncoding();
    int undefined = 0;
    for (int i = 0; i < 256; ++i) {
        const std::string byte(1, static_cast<char>(i));
        const std::string text = encoding->ToUnicode(byte);
        const bool isUndefined = text == "\uFFFD";
        undefined += isUndefined ? 1 : 0;
        EXPECT_EQ(encoding->FromUnicode(text), isUndefined ? "" : byte) << i;
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
    EXPECT_FALSE(StringEncoding::Make(0, 7));
}

} // namespace
