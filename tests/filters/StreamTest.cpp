#include "filters/Stream.h"

#include "filters/Decoding.h"
#include "support/ObjectFile.h"
#include "support/Repeat.h"

#include <gmock/gmock.h>

namespace Quillet {
namespace {

using testing::Contains;
using testing::IsEmpty;

/// What object 5, with a raw text, decodes to, in a document that has further objects from number 6 on.
struct Decoded
{
    explicit Decoded(const std::string& object, const std::vector<std::string>& more = {})
        : document(object, more), stream(document.GetRef()), text(Drain(stream, 0))
    {}

    ObjectFile document;
    Stream stream;
    std::string text;
};

TEST(StreamTest, FindsTheFirstByteBehindTheKeyword)
{
    const std::pair<const char*, bool> cases[] = {{"\n", true},    {"\r\n", true}, {" \n", true},
                                                  {" \r\n", true}, {"\r", false},  {" ", false}};
    for (const auto& [lineEnd, isProper] : cases) {
        const Decoded stream("<< /Length 3 >> stream" + std::string(lineEnd) + "abc\nendstream");
        EXPECT_EQ(stream.text, "abc");
        EXPECT_EQ(stream.document.GetErrors().empty(), isProper);
        if (!isProper) {
            EXPECT_THAT(stream.document.GetErrors(), Contains(Error::StreamLineEnd));
        }
    }
}

TEST(StreamTest, RunsFiltersInOrder)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        // The digits of a run of two letters, then its end.
        {"[/AHx /RL]", "FF4180>", "AA"}, {"null", "ABC", "ABC"},
        {"[null]", "ABC", "ABC"},        {"[/ASCIIHexDecode null]", "414243>", "ABC"},
        {"99 0 R", "ABC", "ABC"},        {"[/ASCIIHexDecode /NoSuch /FlateDecode]", "414243>", "ABC"},
    };
    for (const auto& [filter, data, text] : rows) {
        SCOPED_TRACE(filter);
        const Decoded decoded(PdfBuilder::MakeStream(data, std::string("/Filter ") + filter));
        EXPECT_EQ(decoded.text, text);
        const bool isUnknown = std::string(filter).find("NoSuch") != std::string::npos;
        EXPECT_EQ(decoded.stream.HasUnknownFilter(), isUnknown);
        EXPECT_TRUE(!isUnknown || decoded.document.GetErrors() == std::vector<int>{Error::UnimplementedFilter});
    }
}

TEST(StreamTest, ParametersReachTheirFilter)
{
    // Rows of two bytes with the filter Up: 1 2, then the same plus 1 1.
    const std::string rows = Deflate(std::string("\2\1\2\2\1\1", 6));
    const std::string good("\1\2\2\3", 4);
    const std::string asIs("\2\1\2\2\1\1", 6);
    const std::pair<const char*, std::string> cases[] = {
        {"/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns 2 >>", good},
        {"/Filter [/FlateDecode] /DP [<< /Predictor 12 /Columns 2 >>]", good},
        {"/Filter /FlateDecode /DecodeParams << /Predictor 6 0 R /Columns 7 0 R >>", good},
        {"/Filter /FlateDecode /DecodeParms 8 0 R", good},
        {"/Filter /FlateDecode /DecodeParms [8 0 R]", good},
        {"/Filter /FlateDecode /DecodeParms [null]", asIs},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 1 >>", asIs},
        {"/Filter /FlateDecode", asIs},
    };
    for (const auto& [entries, expected] : cases) {
        const Decoded stream(PdfBuilder::MakeStream(rows, entries), {"12", "2.0", "<< /Predictor 12 /Columns 2 >>"});
        EXPECT_EQ(stream.text, expected) << entries;
        EXPECT_THAT(stream.document.GetErrors(), IsEmpty()) << entries;
    }
}

TEST(StreamTest, RefusesTooManyFilters)
{
    const auto decode = [](int count) {
        return Decoded(PdfBuilder::MakeStream("x", "/Filter [" + Repeat("/LZW ", count) + "]")).document.GetErrors();
    };
    EXPECT_THAT(decode(16), IsEmpty());
    EXPECT_THAT(decode(17), Contains(Error::General));
}

TEST(StreamTest, FlateMendsAShortLength)
{
    const std::string text = MakeText(60'000);
    const std::string data = Deflate(text);
    ASSERT_GT(data.size(), 10'000u);
    for (const std::size_t length : {std::size_t{0}, data.size() - 1, data.size() - 4097}) {
        const Decoded stream("<< /Filter /Fl /Length " + std::to_string(length) + " >>\nstream\n" + data +
                             "\nendstream");
        EXPECT_EQ(stream.text, text) << length;
        EXPECT_THAT(stream.document.GetErrors(), IsEmpty());
    }
    EXPECT_EQ(Decoded("<< >>\nstream\nabc\nendstream").text, "");
    EXPECT_EQ(Decoded("<< /Length 6 0 R >>\nstream\nabc\nendstream", {"2"}).text, "ab");
}

TEST(StreamTest, WhatIsNoStreamHasNoBytes)
{
    for (const char* object : {"[1 2]", "12", "null", "<< /Length -5 >>\nstream\nabc"})
        EXPECT_EQ(Decoded(object).text, "") << object;
    EXPECT_THAT(Decoded("<< /Length 5 >>").document.GetErrors(), Contains(Error::General));
    Stream stream{Ref()};
    EXPECT_EQ(Drain(stream, 0), "");
}

} // namespace
} // namespace Quillet
