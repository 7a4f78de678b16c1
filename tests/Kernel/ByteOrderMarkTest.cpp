#include <Kernel/ByteOrderMark.h>

#include <gtest/gtest.h>

#include <string_view>

using namespace std::string_view_literals;
using Kernel::ByteOrderMark;

namespace {

const struct
{
    const char* name;
    std::string_view bytes;
    ByteOrderMark mark;
    std::string_view text;
} c_markCases[] = {
    {"no mark", "plain"sv, ByteOrderMark::None, "plain"sv},
    {"half a mark", "\xFE"sv, ByteOrderMark::None, "\uFFFD"sv},
    {"UTF-8", "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F"sv, ByteOrderMark::Utf8, "grüß"sv},
    {"broken UTF-8", "\xEF\xBB\xBF\xC3(\xFFz"sv, ByteOrderMark::Utf8, "\uFFFD(\uFFFDz"sv},
    {"big endian", "\xFE\xFF\0A\x20\xAC"sv, ByteOrderMark::Utf16BigEndian, "A€"sv},
    {"little endian",
     "\xFF\xFE"
     "A\0\xAC\x20"sv,
     ByteOrderMark::Utf16LittleEndian, "A€"sv},
    {"pair", "\xFE\xFF\xD8\x3D\xDE\x00"sv, ByteOrderMark::Utf16BigEndian, "😀"sv},
    {"lone high", "\xFE\xFF\xD8\x3D\0A"sv, ByteOrderMark::Utf16BigEndian, "\uFFFDA"sv},
    {"lone low", "\xFE\xFF\xDE\x00\0A"sv, ByteOrderMark::Utf16BigEndian, "\uFFFDA"sv},
    {"high at the end", "\xFE\xFF\0A\xD8\x3D"sv, ByteOrderMark::Utf16BigEndian, "A\uFFFD"sv},
    {"two highs, then low", "\xFE\xFF\xD8\x3D\xD8\x3D\xDE\x00"sv, ByteOrderMark::Utf16BigEndian, "\uFFFD😀"sv},
    {"half a unit at the end", "\xFE\xFF\0A\0"sv, ByteOrderMark::Utf16BigEndian, "A\uFFFD"sv},
};

TEST(ByteOrderMarkTest, FindsMarkAndConverts)
{
    for (const auto& row : c_markCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Kernel::GetByteOrderMark(row.bytes.data(), row.bytes.size()), row.mark);
        EXPECT_EQ(Kernel::ConvertToUtf8(row.bytes.data(), row.bytes.size(), row.mark), row.text);
    }
}

} // namespace
