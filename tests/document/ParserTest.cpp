#include "document/Parser.h"

#include "document/MemorySource.h"
#include "document/Limits.h"
#include "support/ErrorRecorder.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Quillet {
namespace {

using namespace Token;

/// A parser on a text, as on a content stream.
class PlainParser
{
public:
    explicit PlainParser(std::string_view text) : source(Kernel::MakeCounted<MemorySource>(text.data(), text.size()))
    {
        source->SetErrorHandler(&errors);
        parser = Kernel::MakeCounted<Parser>(Kernel::Counted<PdfSource>(source));
        parser->SetErrorHandler(&errors);
    }
    Parser* operator->() const { return parser.Get(); }

    ErrorRecorder errors;
    Kernel::Counted<MemorySource> source;
    Kernel::Counted<Parser> parser;
};

TEST(ParserTest, ReadsNumbers)
{
    struct Case
    {
        const char* text;
        Token::Type type;
        double value;
    };
    const Case cases[] = {
        {"12", TokenInt, 12},      {"+12", TokenInt, 12},   {"-12", TokenInt, -12},     {"12.0", TokenInt, 12},
        {"12.5", TokenReal, 12.5}, {"-.5", TokenReal, -.5}, {"-", TokenInt, 0},         {".", TokenInt, 0},
        {"4.", TokenInt, 4},       {"1e5", TokenInt, 1},    {"-0.25", TokenReal, -.25}, {"00012", TokenInt, 12},
    };
    for (const Case& row : cases) {
        PlainParser parser(row.text);
        EXPECT_EQ(parser->NextToken(), row.type) << row.text;
        EXPECT_DOUBLE_EQ(parser->GetTokenReal(), row.value) << row.text;
        EXPECT_TRUE(parser.errors.kinds.empty()) << row.text;
    }
    // More digits than fit wrap round, without undefined behaviour.
    PlainParser parser("99999999999999999999999999");
    EXPECT_EQ(parser->NextToken(), TokenInt);
}

TEST(ParserTest, ReadsNames)
{
    struct Case
    {
        std::string text;
        const char* name;
        int errorCount;
    };
    const Case cases[] = {
        {"/Name ", "Name", 0},
        {"/A#20B", "A B", 0},
        {"/", "", 0},
        {"/A#2GB", "AGB", 1},
        {"/A# B", "A", 1},
        {"/A#2", "A", 1},
        {"/caf\xC3\xA9", "caf\xC3\xA9", 0},
        {"/caf\xE9", "caf\xC3\xA9", 0},
        {"/a#80", "a\xE2\x82\xAC", 0},
    };
    for (const Case& row : cases) {
        PlainParser parser(row.text);
        EXPECT_EQ(parser->NextToken(), TokenName);
        EXPECT_EQ(parser->tokenText, row.name) << row.text;
        EXPECT_EQ(parser.errors.kinds.size(), row.errorCount) << row.text;
    }
}

TEST(ParserTest, CutsNamesAndKeywordsThatNobodyMeans)
{
    const std::string text = "/" + std::string(100'000, 'n') + " " + std::string(100'000, 'k') + " 1";
    PlainParser parser(text);
    EXPECT_EQ(parser->NextToken(), TokenName);
    EXPECT_EQ(parser->tokenText.size(), Limits::c_maxNameLength);
    EXPECT_EQ(parser->NextToken(), TokenKeyword);
    EXPECT_EQ(parser->tokenText.size(), Limits::c_maxNameLength);
    EXPECT_EQ(parser->NextToken(), TokenInt);
}

TEST(ParserTest, ReadsStrings)
{
    struct Case
    {
        std::string_view text;
        std::string_view bytes;
        int errorCount = 0;
    };
    const Case cases[] = {
        {"(a(b)c)", "a(b)c"},
        {"(a\\(b)", "a(b"},
        {"(\\n\\r\\t\\b\\f\\q)", "\n\r\t\b\fq"},
        {"(a\\\r\nb\\\nc\\\rd)", "abcd"},
        {"(a\r\nb\rc\nd)", "a\nb\nc\nd"},
        {"(\\101\\7x\\777\\0018)", "A\7x\xFF\1"
                                   "8"},
        {"(open", "open"},
        {"(open\\", "open"},
        {"<48656C6C6F>", "Hello"},
        {"<48 65\n6C %x\n6>", "Hel`"},
        {"<>", ""},
        {"<4g5>", "@", 1},
        {"<41", "A", 2},
    };
    for (const Case& row : cases) {
        PlainParser parser(row.text);
        EXPECT_EQ(parser->NextToken(), TokenString) << row.text;
        EXPECT_EQ(std::string_view(parser->tokenBytes.data(), parser->tokenBytes.size()), row.bytes) << row.text;
        EXPECT_EQ(parser.errors.kinds.size(), row.errorCount) << row.text;
        EXPECT_EQ(parser->NextToken(), TokenEnd) << row.text;
    }
}

TEST(ParserTest, DecodesTextStrings)
{
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"(\x80 plain)", "\xE2\x80\xA2 plain"},
        {"(\xFE\xFF\0A\x20\xAC)", "A\xE2\x82\xAC"},
        {"(\xEF\xBB\xBFgr\xC3\xBC)", "gr\xC3\xBC"},
    };
    const std::string_view utf16("(\xFE\xFF\0A\x20\xAC)", 8);
    for (const auto& [text, expected] : cases) {
        PlainParser parser(expected == cases[1].second ? utf16 : text);
        parser->NextToken();
        EXPECT_EQ(parser->GetTokenString(), expected);
    }
}

TEST(ParserTest, StepsThroughTokensAcrossBufferEnds)
{
    // Tokens of 7 bytes never line up with the buffer of 256.
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "/N" + std::to_string(10000 + i);
    PlainParser parser(text);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(parser->NextName(), "N" + std::to_string(10000 + i));
    EXPECT_EQ(parser->NextToken(), TokenEnd);
    parser->Seek(7);
    EXPECT_EQ(parser->NextName(), "N10001");
}

TEST(ParserTest, PlainSourcesHaveNoReferences)
{
    PlainParser parser("1 0 R");
    EXPECT_EQ(parser->NextInt(), 1);
    EXPECT_EQ(parser->NextInt(), 0);
    EXPECT_EQ(parser->NextToken(), TokenKeyword);
}

TEST(ParserTest, StrayParenthesisStops)
{
    PlainParser parser(") 1");
    EXPECT_EQ(parser->NextToken(), TokenEnd);
    EXPECT_EQ(parser->NextToken(), TokenEnd);
    EXPECT_EQ(parser.errors.kinds, (std::vector<int>{Error::General, Error::General}));
}

TEST(ParserTest, ReadsRectanglesInOrder)
{
    PlainParser parser("[30 40 10 20] [1 2] 5");
    Kernel::RectT<double> rect;
    parser->NextToken();
    parser->GetTokenRect(rect);
    EXPECT_EQ(rect, (Kernel::RectT<double>{10, 20, 30, 40}));
    EXPECT_TRUE(parser.errors.kinds.empty());
}

TEST(ParserTest, TakesTransformsOfExactlySixNumbers)
{
    const std::pair<const char*, bool> cases[] = {
        {"[1 2 3 4 5 6]", true}, {"[1 2 3 4 5]", false}, {"[1 2 3 4 5 6 7]", false}, {"(text)", false}};
    for (const auto& [text, isGood] : cases) {
        PlainParser parser(text);
        Raster::AffineTransform::Params transform{9, 9, 9, 9, 9, 9};
        parser->NextToken();
        EXPECT_EQ(parser->GetTokenTransform(transform), isGood) << text;
        const Raster::AffineTransform::Params expected{1, 3, 5, 2, 4, 6};
        EXPECT_EQ(transform, isGood ? expected : Raster::AffineTransform::Params()) << text;
        EXPECT_TRUE(parser.errors.kinds.empty());
    }
}

TEST(ParserTest, WritesSimpleTokensAsText)
{
    const std::pair<const char*, const char*> cases[] = {
        {"true", "true"}, {"12", "12"},   {"-1.5", "-1.5"},
        {"/N", "/N"},     {"(s)", "(s)"}, {"[1 /A [(x)]]", "[1 /A [(x)]]"},
        {"[]", "[]"},     {"<<>>", ""},   {"[1 <<>> 2]", ""}};
    for (const auto& [text, expected] : cases) {
        PlainParser parser(text);
        parser->NextToken();
        EXPECT_EQ(parser->GetSimpleTokenAsString(), expected) << text;
    }
    const std::string deep(100000, '[');
    PlainParser parser(deep);
    parser->NextToken();
    parser->GetSimpleTokenAsString();
    EXPECT_FALSE(parser.errors.kinds.empty());
}

} // namespace
} // namespace Quillet
