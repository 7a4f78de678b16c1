#include "colour/PsOperators.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace Quillet {

namespace {

struct PsOperator
{
    std::string_view name;
    PsCode code;
};

/// In order of bytes, for the search.
constexpr PsOperator c_operators[] = {
    {"abs", PsAbs},       {"add", PsAdd},           {"and", PsAnd},
    {"atan", PsAtan},     {"bitshift", PsBitshift}, {"ceiling", PsCeiling},
    {"copy", PsCopy},     {"cos", PsCos},           {"cvi", PsCvi},
    {"cvr", PsCvr},       {"div", PsDiv},           {"dup", PsDup},
    {"eq", PsEq},         {"exch", PsExch},         {"exp", PsExp},
    {"false", PsFalse},   {"floor", PsFloor},       {"ge", PsGe},
    {"gt", PsGt},         {"idiv", PsIdiv},         {"if", PsIf},
    {"ifelse", PsIfElse}, {"index", PsIndex},       {"le", PsLe},
    {"ln", PsLn},         {"log", PsLog},           {"lt", PsLt},
    {"mod", PsMod},       {"mul", PsMul},           {"ne", PsNe},
    {"neg", PsNeg},       {"not", PsNot},           {"or", PsOr},
    {"pop", PsPop},       {"roll", PsRoll},         {"round", PsRound},
    {"sin", PsSin},       {"sqrt", PsSqrt},         {"sub", PsSub},
    {"true", PsTrue},     {"truncate", PsTruncate}, {"xor", PsXor},
};

static_assert(std::size(c_operators) == 42);
static_assert(std::ranges::is_sorted(c_operators, {}, &PsOperator::name));

} // namespace

PsCode GetPsOperator(const char* name)
{
    const auto* const found = std::ranges::lower_bound(c_operators, std::string_view(name), {}, &PsOperator::name);
    return found != std::end(c_operators) && found->name == name ? found->code : PsUnknown;
}

} // namespace Quillet
