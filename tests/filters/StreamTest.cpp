#include "filters/Stream.h"

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gmock/gmock.h>
#include <zlib.h>

namespace Quillet {
namespace {

using testing::Contains;
using testing::IsEmpty;

std::string Deflate(const std::string& text)
{
    std::string out(compressBound(text.size()), '\0');
    uLongf length = out.size();
    compress(reinterpret_cast<Bytef*>(out.data()), &length, reinterpret_cast<const Bytef*>(text.data()), text.size());
    out.resize(length);
    return out;
}

/// What object 5, with a raw text, decodes to, in a document that has further objects from number 6 on.
struct Decoded
{
    Decoded(const std::string& object, const std::vector<std::string>& more = {})
        : document(MakePagePdf("", {.objects = Join(object, more)}))
    {
        Stream stream(document.GetRef(5));
        std::vector<char> bytes;
        stream.ReadAll(bytes);
        text.assign(bytes.begin(), bytes.end());
        hasUnknownFilter = stream.HasUnknownFilter();
    }
    static std::vector<std::string> Join(const std::string& object, std::vector<std::string> more)
    {
        more.insert(more.begin(), object);
        return more;
    }

    TestDocument document;
    std::string text;
    bool hasUnknownFilter;
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
    const std::string hexOfFlate = [] {
        std::string hex;
        for (const char byte : Deflate("hello")) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
            hex += digits;
        }
        return hex + ">";
    }();
    EXPECT_EQ(Decoded(PdfBuilder::MakeStream(hexOfFlate, "/Filter [/AHx /Fl]")).text, "hello");

    for (const char* filter : {"null", "[null]", "[/ASCIIHexDecode null]", "99 0 R"}) {
        const bool isCoded = std::string(filter).find("Hex") != std::string::npos;
        const Decoded plain(PdfBuilder::MakeStream(isCoded ? "414243>" : "ABC", std::string("/Filter ") + filter));
        EXPECT_EQ(plain.text, "ABC") << filter;
        EXPECT_FALSE(plain.hasUnknownFilter) << filter;
    }
    const Decoded unknown(PdfBuilder::MakeStream("414243>", "/Filter [/ASCIIHexDecode /NoSuch /FlateDecode]"));
    EXPECT_EQ(unknown.text, "ABC");
    EXPECT_TRUE(unknown.hasUnknownFilter);
    EXPECT_THAT(unknown.document.GetErrors(), Contains(Error::UnimplementedFilter));
}

TEST(StreamTest, ParametersReachTheirFilter)
{
    // Rows of two bytes with the filter Up: 1 2, then the same plus 1 1.
    const std::string rows = Deflate(std::string("\2\1\2\2\1\1", 6));
    const std::string good("\1\2\2\3", 4);
    const std::string asIs("\2\1\2\2\1\1", 6);
    struct Case
    {
        const char* entries;
        std::string expected;
    };
    const Case cases[] = {
        {"/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns 2 >>", good},
        {"/Filter [/FlateDecode] /DP [<< /Predictor 12 /Columns 2 >>]", good},
        {"/Filter /FlateDecode /DecodeParams << /Predictor 6 0 R /Columns 7 0 R >>", good},
        {"/Filter /FlateDecode /DecodeParms 8 0 R", good},
        {"/Filter /FlateDecode /DecodeParms [8 0 R]", good},
        {"/Filter /FlateDecode /DecodeParms [null]", asIs},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 1 >>", asIs},
        {"/Filter /FlateDecode", asIs},
    };
    for (const Case& row : cases) {
        const Decoded stream(PdfBuilder::MakeStream(rows, row.entries),
                             {"12", "2.0", "<< /Predictor 12 /Columns 2 >>"});
        EXPECT_EQ(stream.text, row.expected) << row.entries;
        EXPECT_THAT(stream.document.GetErrors(), IsEmpty()) << row.entries;
    }
}

TEST(StreamTest, RefusesTooManyFilters)
{
    const auto decode = [](int count) {
        std::string names;
        for (int i = 0; i < count; ++i)
            names += "/LZW ";
        return Decoded(PdfBuilder::MakeStream("x", "/Filter [" + names + "]")).document.GetErrors();
    };
    EXPECT_THAT(decode(16), IsEmpty());
    EXPECT_THAT(decode(17), Contains(Error::General));
}

TEST(StreamTest, FlateMendsAShortLength)
{
    std::string text;
    for (unsigned i = 0, state = 1; i < 5000; ++i) {
        state = state * 1664525 + 1013904223;
        text += static_cast<char>(state >> 24);
    }
    const std::string data = Deflate(text);
    ASSERT_GT(data.size(), 4200u);
    for (const std::size_t length : {std::size_t{0}, data.size() - 1, data.size() - 4150}) {
        const Decoded stream("<< /Filter /Fl /Length " + std::to_string(length) + " >>\nstream\n" + data +
                             "\nendstream");
        EXPECT_EQ(stream.text, text) << length;
    }
    EXPECT_EQ(Decoded("<< >>\nstream\nabc\nendstream").text, "");
    EXPECT_EQ(Decoded("<< /Length 6 0 R >>\nstream\nabc\nendstream", {"2"}).text, "ab");
}

TEST(StreamTest, WhatIsNoStreamHasNoBytes)
{
    for (const char* object : {"[1 2]", "12", "null", "<< /Length -5 >>\nstream\nabc"}) {
        EXPECT_EQ(Decoded(object).text, "") << object;
    }
    const Decoded noKeyword("<< /Length 5 >>");
    EXPECT_THAT(noKeyword.document.GetErrors(), Contains(Error::General));
    Stream stream{Ref()};
    std::vector<char> bytes;
    stream.ReadAll(bytes);
    EXPECT_TRUE(bytes.empty());
}

} // namespace
} // namespace Quillet
