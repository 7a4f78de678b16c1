#include "colour/PsFunction.h"

#include "colour/PsInterpreter.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <gmock/gmock.h>

#include <optional>

namespace Quillet {
namespace {

using testing::ElementsAre;

std::string Repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

struct Program
{
    explicit Program(const std::string& text,
                     const std::string& ranges = "/Domain [-9 9 -9 9] /Range [-1000000000 1000000000]")
        : document(MakePagePdf("", {.objects = {PdfBuilder::MakeStream(text, "/FunctionType 4 " + ranges)}})),
          function(Function::Make(document.GetRef(5)))
    {}

    TestDocument document;
    Kernel::Counted<const Function> function;
};

/// What a program without inputs leaves as its one number; none if it fails. Booleans are asked for through `ifelse`.
std::optional<double> Evaluate(const std::string& text)
{
    const Program program("{ pop pop " + text + " }");
    const auto compiled = Kernel::DynamicCast<const PsFunction>(program.function);
    if (!compiled) return std::nullopt;
    PsInterpreter interpreter;
    interpreter.Push(PsObject(0.0));
    interpreter.Push(PsObject(0.0));
    try {
        interpreter.Evaluate(compiled->program, 0);
    } catch (const PsInterpeterException&) {
        return std::nullopt;
    }
    if (interpreter.count != 1 || !interpreter.stack[0].IsNumber()) return std::nullopt;
    return interpreter.stack[0].GetReal();
}

TEST(PsFunctionTest, Calculates)
{
    const std::pair<const char*, double> cases[] = {
        {"-3 abs", 3},
        {"-2.5 abs", 2.5},
        {"-2147483648 abs", 2147483648.0},
        {"2 3 add", 5},
        {"2147483647 1 add", 2147483648.0},
        {"2 0.5 sub", 1.5},
        {"-2147483648 1 sub", -2147483649.0},
        {"65536 65536 mul", 4294967296.0},
        {"-2147483648 neg", 2147483648.0},
        {"0.25 neg", -0.25},
        {"7 2 div", 3.5},
        {"-7 2 idiv", -3},
        {"-2147483648 -1 idiv", 2147483648.0},
        {"-7 3 mod", -1},
        {"-2147483648 -1 mod", 0},
        {"0 1 atan", 0},
        {"1 0 atan", 90},
        {"-1 0 atan", 270},
        {"60 cos", 0.5},
        {"30 sin", 0.5},
        {"9 0.5 exp", 3},
        {"100 log", 2},
        {"1 ln", 0},
        {"16 sqrt", 4},
        {"3.2 ceiling", 4},
        {"-3.2 floor", -4},
        {"-6.5 round", -6},
        {"6.5 round", 7},
        {"-3.9 truncate", -3},
        {"-3.9 cvi", -3},
        {"3 cvr 2 div", 1.5},
        {"12 10 and", 8},
        {"12 10 or", 14},
        {"12 10 xor", 6},
        {"52 not", -53},
        {"7 3 bitshift", 56},
        {"142 -3 bitshift", 17},
        {"-1 -31 bitshift", 1},
        {"1 32 bitshift", 0},
        {"1 -2147483648 bitshift", 0},
        {"1 2 exch sub", 1},
        {"1 2 pop", 1},
        {"3 dup mul", 9},
        {"1 2 2 copy add add add", 6},
        {"5 6 7 2 index exch pop exch pop exch pop", 5},
        {"1 2 3 3 1 roll sub sub", 3 - (1 - 2)},
        {"1 2 3 3 -1 roll sub sub", 2 - (3 - 1)},
        {"1 2 3 3 2147483647 roll sub sub", 3 - (1 - 2)},
        {"8 1 1000 roll", 8},
        {"true { 1 } { 2 } ifelse", 1},
        {"false { 1 } { 2 } ifelse", 2},
        {"5 true { pop 6 } if", 6},
        {"5 1 2 gt { pop 6 } if", 5},
        {"2 2.0 eq { 1 } { 2 } ifelse", 1},
        {"true false ne { 1 } { 2 } ifelse", 1},
        {"true 1 eq { 1 } { 2 } ifelse", 2},
        {"1 2 le 2 2 ge and { 1 } { 2 } ifelse", 1},
        {"2 1 lt true xor not { 1 } { 2 } ifelse", 2},
        {"true { false { 1 } { 3 } ifelse } { 2 } ifelse", 3},
        // An unknown word does no harm where it is not executed.
        {"4 false { frobnicate } if", 4},
    };
    for (const auto& [text, expected] : cases) {
        const auto result = Evaluate(text);
        ASSERT_TRUE(result) << text;
        EXPECT_NEAR(*result, expected, 1e-9) << text;
    }
}

TEST(PsFunctionTest, RefusesWhatHasNoMeaning)
{
    const char* const cases[] = {"", "1 2", "add", "1 add", "true 1 add", "1 0 div", "1 0.0 div", "1 0 idiv",
                                 "1.5 2 idiv", "1 0 mod", "0 0 atan", "-1 sqrt", "0 ln", "-1 log", "-1 0.5 exp",
                                 "0 -1 exp", "9000000000 cvi", "true neg", "true floor", "1 true and", "1.5 not",
                                 "1.5 1 bitshift", "1 2 -1 copy", "1 5 copy", "1 1 index", "1 -1 index", "1 2 -1 roll",
                                 "1 2 3 0 roll", "1 { 2 } if", "true 2 if", "true { 1 } ifelse", "{ 1 }", "true",
                                 "frobnicate", "1 dup exch exch", "1 { 2 } eq", "true true gt", "pop", "1 pop exch",
                                 // Procedures are no values: they would come to run themselves.
                                 "{ dup true exch if } dup true exch if", "true { 1 } dup exch pop if", "1 { 2 } pop",
                                 "true { 1 } { 2 } exch ifelse", "true { 1 } 1 index if"};
    for (const char* text : cases)
        EXPECT_FALSE(Evaluate(text)) << text;
    EXPECT_EQ(Evaluate(Repeat("1 ", 100) + Repeat("pop ", 99)), 1);
    EXPECT_FALSE(Evaluate(Repeat("1 ", 101) + Repeat("pop ", 100)));
}

TEST(PsFunctionTest, FindsEveryOperator)
{
    const char* const names[] = {"abs", "add",  "and", "atan",   "bitshift", "ceiling", "copy",  "cos",   "cvi",
                                 "cvr", "div",  "dup", "eq",     "exch",     "exp",     "false", "floor", "ge",
                                 "gt",  "idiv", "if",  "ifelse", "index",    "le",      "ln",    "log",   "lt",
                                 "mod", "mul",  "ne",  "neg",    "not",      "or",      "pop",   "roll",  "round",
                                 "sin", "sqrt", "sub", "true",   "truncate", "xor"};
    int code = 3;
    for (const char* name : names)
        EXPECT_EQ(GetPsOperator(name), code++) << name;
    for (const char* name : {"", "ab", "abss", "xorr", "zzz"})
        EXPECT_EQ(GetPsOperator(name), 45) << name;
}

TEST(PsFunctionTest, HoldsInputsAndOutputsToTheirRanges)
{
    const Program swap("{ exch }", "/Domain [0 1 0 2] /Range [0 1 0.5 1]");
    std::vector<double> out(2);
    const double in[] = {-3, 5};
    swap.function->Call(out.data(), 2, in, 2);
    EXPECT_THAT(out, ElementsAre(1, 0.5));
    EXPECT_FALSE(swap.function->IsLinear());
}

TEST(PsFunctionTest, AnswersAsADefaultFunctionWhenItFails)
{
    struct Case
    {
        const char* text;
        bool isCompiled;
    };
    const Case cases[] = {
        {"{ 1 }", true},          {"{ exch dup }", true}, {"{ 1 0 div }", true}, {"{ pop true }", true},
        {"{ frobnicate }", true}, {"{ exch", false},      {"exch }", false},     {"{ (text) }", false},
        {"{ /name }", false},     {"{ [ 1 ] }", false},   {"", false},           {"{ { }", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const Program program(c.text, "/Domain [0 1 0 1] /Range [0 1 0 0.5]");
        EXPECT_EQ(program.function->IsDefault(), !c.isCompiled);
        std::vector<double> out(2);
        const double in[] = {0.75, 1};
        program.function->Call(out.data(), 2, in, 2);
        EXPECT_THAT(out, ElementsAre(0.75, 0.5));
    }
    const Program deep(Repeat("{", 100'000) + Repeat("}", 100'000));
    EXPECT_TRUE(deep.function->IsDefault());
    const Program long_("{" + Repeat("1 pop ", 600'000) + "}");
    EXPECT_TRUE(long_.function->IsDefault());
}

} // namespace
} // namespace Quillet
