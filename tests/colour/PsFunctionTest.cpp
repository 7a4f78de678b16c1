#include "colour/PsFunction.h"

#include "colour/FunctionFile.h"
#include "colour/PsInterpreter.h"
#include "support/Repeat.h"

#include <gmock/gmock.h>

#include <optional>
#include <sstream>

namespace Quillet {
namespace {

using testing::ElementsAre;

struct Program : FunctionFile
{
    explicit Program(const std::string& text,
                     const std::string& ranges = "/Domain [-9 9 -9 9] /Range [-1000000000 1000000000]")
        : FunctionFile(PdfBuilder::MakeStream(text, "/FunctionType 4 " + ranges))
    {}
};

/// The numbers that a program without inputs leaves; nothing if it fails or leaves anything else.
std::optional<std::vector<double>> Evaluate(const std::string& text)
{
    const Program program("{ pop pop " + text + " }");
    const auto compiled = Kernel::DynamicCast<const PsFunction>(program.function);
    if (!compiled) return std::nullopt;
    PsInterpreter interpreter;
    interpreter.Push(PsObject(0.0));
    interpreter.Push(PsObject(0.0));
    std::vector<double> numbers;
    try {
        interpreter.Evaluate(compiled->program, 0);
        for (; interpreter.count > 0 && interpreter.stack[interpreter.count - 1].IsNumber(); interpreter.Pop())
            numbers.insert(numbers.begin(), interpreter.stack[interpreter.count - 1].GetReal());
    } catch (const PsInterpeterException&) {
        return std::nullopt;
    }
    return interpreter.count == 0 ? std::optional(numbers) : std::nullopt;
}

/// Each program leaves a number and, behind it, what that should be.
TEST(PsFunctionTest, Calculates)
{
    std::istringstream programs(R"(-3 abs 3; -2.5 abs 2.5; -2147483648 abs 2147483648.0;
        2 3 add 5; 2147483647 1 add 2147483648.0; 2 0.5 sub 1.5; -2147483648 1 sub -2147483649.0;
        65536 65536 mul 4294967296.0; -2147483648 neg 2147483648.0; 0.25 neg -0.25;
        7 2 div 3.5; -7 2 idiv -3; -2147483648 -1 idiv 2147483648.0; -7 3 mod -1; -2147483648 -1 mod 0;
        0 1 atan 0; 1 0 atan 90; -1 0 atan 270; 60 cos 0.5; 30 sin 0.5;
        9 0.5 exp 3; 100 log 2; 1 ln 0; 16 sqrt 4;
        3.2 ceiling 4; -3.2 floor -4; -6.5 round -6; 6.5 round 7; -3.9 truncate -3; -3.9 cvi -3; 3 cvr 2 div 1.5;
        12 10 and 8; 12 10 or 14; 12 10 xor 6; 52 not -53;
        7 3 bitshift 56; 142 -3 bitshift 17; -1 -31 bitshift 1; 1 32 bitshift 0; 1 -2147483648 bitshift 0;
        1 2 exch sub 1; 1 2 pop 1; 3 dup mul 9; 1 2 2 copy add add add 6; 5 6 7 2 index exch pop exch pop exch pop 5;
        1 2 3 3 1 roll sub sub 4; 1 2 3 3 -1 roll sub sub 0; 1 2 3 3 2147483647 roll sub sub 4; 8 1 1000 roll 8;
        true { 1 } { 2 } ifelse 1; false { 1 } { 2 } ifelse 2; true { false { 1 } { 3 } ifelse } { 2 } ifelse 3;
        5 true { pop 6 } if 6; 5 1 2 gt { pop 6 } if 5; 4 false { frobnicate } if 4;
        2 2.0 eq { 1 } { 2 } ifelse 1; true false ne { 1 } { 2 } ifelse 1; true 1 eq { 1 } { 2 } ifelse 2;
        1 2 le 2 2 ge and { 1 } { 2 } ifelse 1; 2 1 lt true xor not { 1 } { 2 } ifelse 2)");
    for (std::string text; std::getline(programs, text, ';');) {
        const auto numbers = Evaluate(text);
        ASSERT_TRUE(numbers && numbers->size() == 2) << text;
        EXPECT_NEAR(numbers->front(), numbers->back(), 1e-9) << text;
    }
}

TEST(PsFunctionTest, RefusesWhatHasNoMeaning)
{
    // Procedures are no values: they would come to run themselves.
    std::istringstream programs(R"(add; 1 add; true 1 add; true neg; true floor; 1 true and; true true gt;
        1 0 div; 1 0.0 div; 1 0 idiv; 1.5 2 idiv; 1 0 mod; 0 0 atan; -1 sqrt; 0 ln; -1 log; -1 0.5 exp; 0 -1 exp;
        9000000000 cvi; 1.5 not; 1.5 1 bitshift; pop; 1 pop exch;
        1 2 -1 copy; 1 5 copy; 1 1 index; 1 -1 index; 1 2 -1 roll; 1 2 3 0 roll; frobnicate; 1 2 addd; 1 2 zzz;
        1 { 2 } if; true 2 if; true { 1 } ifelse; { 1 }; 1 { 2 } eq; 1 { 2 } pop; true { 1 } 1 index if;
        { dup true exch if } dup true exch if; true { 1 } dup exch pop if; true { 1 } { 2 } exch ifelse)");
    for (std::string text; std::getline(programs, text, ';');)
        EXPECT_FALSE(Evaluate(text)) << text;
    EXPECT_TRUE(Evaluate(Repeat("1 ", 100) + Repeat("pop ", 99)));
    EXPECT_FALSE(Evaluate(Repeat("1 ", 101) + Repeat("pop ", 100)));
}

TEST(PsFunctionTest, HoldsInputsAndOutputsToTheirRanges)
{
    const Program swap("{ exch }", "/Domain [0 1 0 2] /Range [0 1 0.5 1]");
    EXPECT_THAT(swap.Call({-3, 5}, 2), ElementsAre(1, 0.5));
    EXPECT_FALSE(swap.function->IsLinear());
}

TEST(PsFunctionTest, AnswersAsADefaultFunctionWhenItFails)
{
    const std::pair<const char*, bool> cases[] = {
        {"{ 1 }", true},          {"{ exch dup }", true}, {"{ 1 0 div }", true}, {"{ pop true }", true},
        {"{ frobnicate }", true}, {"{ exch", false},      {"exch }", false},     {"{ (text) }", false},
        {"{ /name }", false},     {"{ [ 1 ] }", false},   {"", false},           {"{ { }", false},
    };
    for (const auto& [text, isCompiled] : cases) {
        const Program program(text, "/Domain [0 1 0 1] /Range [0 1 0 0.5]");
        EXPECT_EQ(program.function->IsDefault(), !isCompiled) << text;
        EXPECT_THAT(program.Call({0.75, 1}, 2), ElementsAre(0.75, 0.5)) << text;
    }
    EXPECT_TRUE(Program(Repeat("{", 100'000) + Repeat("}", 100'000)).function->IsDefault());
    EXPECT_TRUE(Program("{" + Repeat("1 pop ", 600'000) + "}").function->IsDefault());
}

} // namespace
} // namespace Quillet
