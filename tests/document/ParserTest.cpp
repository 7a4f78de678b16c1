#include "document/Parser.h"

#include "document/MemorySource.h"
#include "document/Limits.h"
#include "support/ErrorRecorder.h"

#include <Kernel/ToString.h>

#include <gtest/gtest.h>

namespace Quillet {
namespace {

using namespace Token;
using namespace std::string_view_literals;

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

TEST(ParserTest, ReadsTokens)
{
    // The text, its kind, what it stands for, and how many faults it has.
    using Rows = std::vector<std::tuple<std::string, Token::Type, std::string, std::size_t>>;
    const Rows plain{
        {"+12", TokenInt, "12", 0},     {"-12", TokenInt, "-12", 0},      {"00012.0", TokenInt, "12", 0},
        {"12.5", TokenReal, "12.5", 0}, {"-.5", TokenReal, "-0.5", 0},    {"-0.25", TokenReal, "-0.25", 0},
        {"-", TokenInt, "0", 0},        {".", TokenInt, "0", 0},          {"4.", TokenInt, "4", 0},
        {"1e5", TokenInt, "1", 0},      {"/Name ", TokenName, "Name", 0}, {"/A#20B", TokenName, "A B", 0},
        {"/", TokenName, "", 0},        {"/A#2GB", TokenName, "AGB", 1},  {"/A# B", TokenName, "A", 1},
        {"/A#2", TokenName, "A", 1},    {"/\xC3\xA9", TokenName, "é", 0}, {"/\xE9", TokenName, "é", 0},
        {"/a#80", TokenName, "a€", 0},
    };
    const Rows strings{
        {"(a(b)c)", TokenString, "a(b)c", 0},
        {"(a\\(b)", TokenString, "a(b", 0},
        {"(\\n\\r\\t\\b\\f\\q)", TokenString, "\n\r\t\b\fq", 0},
        {"(a\\\r\nb\\\nc\\\rd)", TokenString, "abcd", 0},
        {"(a\r\nb\rc\nd)", TokenString, "a\nb\nc\nd", 0},
        {"(\\101\\7x\\777\\0018)", TokenString, "A\7x\xFF\0018", 0},
        {"(open", TokenString, "open", 0},
        {"(open\\", TokenString, "open", 0},
        {"<48656C6C6F>", TokenString, "Hello", 0},
        {"<48 65\n6C %x\n6>", TokenString, "Hel`", 0},
        {"<>", TokenString, "", 0},
        {"<4g5>", TokenString, "@", 1},
        {"<41", TokenString, "A", 2},
    };
    for (const Rows& rows : {plain, strings}) {
        for (const auto& [text, type, value, errorCount] : rows) {
            SCOPED_TRACE(text);
            PlainParser parser(text);
            EXPECT_EQ(parser->NextToken(), type);
            std::string found(parser->tokenBytes.begin(), parser->tokenBytes.end());
            if (type == TokenName) found = parser->tokenText;
            if (type == TokenInt || type == TokenReal) found = Kernel::ToString(parser->GetTokenReal());
            EXPECT_EQ(found, value);
            EXPECT_EQ(parser.errors.kinds.size(), errorCount);
            EXPECT_TRUE(type != TokenString || parser->NextToken() == TokenEnd);
        }
    }
    const std::pair<std::string_view, std::string_view> texts[] = {
        {"(\x80 plain)"sv, "\xE2\x80\xA2 plain"},
        {"(\xFE\xFF\0A\x20\xAC)"sv, "A\xE2\x82\xAC"},
        {"(\xEF\xBB\xBFgr\xC3\xBC)"sv, "gr\xC3\xBC"},
    };
    for (const auto& [text, expected] : texts) {
        PlainParser decoded(text);
        decoded->NextToken();
        EXPECT_EQ(decoded->GetTokenString(), expected);
    }
    // More digits than fit wrap round, without undefined behaviour.
    PlainParser parser("99999999999999999999999999");
    EXPECT_EQ(parser->NextToken(), TokenInt);
}

TEST(ParserTest, CutsNamesAndKeywordsThatNobodyMeans)
{
    const std::string text = "/" + std::string(100'000, 'n') + " " + std::string(100'000, 'k') + " 1";
    PlainParser parser(text);
    for (const Token::Type type : {TokenName, TokenKeyword}) {
        EXPECT_EQ(parser->NextToken(), type);
        EXPECT_EQ(parser->tokenText.size(), Limits::c_maxNameLength);
    }
    EXPECT_EQ(parser->NextToken(), TokenInt);
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

TEST(ParserTest, KnowsNoReferencesAndStopsAtAStrayParenthesis)
{
    PlainParser parser("1 0 R ) 1");
    for (const Token::Type type : {TokenInt, TokenInt, TokenKeyword, TokenEnd, TokenEnd})
        EXPECT_EQ(parser->NextToken(), type);
    EXPECT_EQ(parser.errors.kinds, (std::vector<int>{Error::General, Error::General}));
}

TEST(ParserTest, TakesRectanglesInOrderAndTransformsOfExactlySixNumbers)
{
    PlainParser corners("[30 40 10 20] [1 2] 5");
    Kernel::RectT<double> rect;
    corners->NextToken();
    corners->GetTokenRect(rect);
    EXPECT_EQ(rect, (Kernel::RectT<double>{10, 20, 30, 40}));
    EXPECT_TRUE(corners.errors.kinds.empty());
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
