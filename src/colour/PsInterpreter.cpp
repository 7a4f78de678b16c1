#include "colour/PsInterpreter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <numbers>
#include <string_view>

namespace Quillet {

namespace {

constexpr double c_degree = std::numbers::pi / 180;

struct PsOperator
{
    std::string_view name;
    /// Null for those that do nothing on their own: booleans are values, and conditionals stand behind procedures.
    void (PsInterpreter::*evaluate)();
};

/// By code, which is by name: in order of bytes, for the search.
constexpr PsOperator c_operators[] = {
    {"abs", &PsInterpreter::EvaluateAbs},
    {"add", &PsInterpreter::EvaluateAdd},
    {"and", &PsInterpreter::EvaluateAnd},
    {"atan", &PsInterpreter::EvaluateAtan},
    {"bitshift", &PsInterpreter::EvaluateBitshift},
    {"ceiling", &PsInterpreter::EvaluateCeiling},
    {"copy", &PsInterpreter::EvaluateCopy},
    {"cos", &PsInterpreter::EvaluateCos},
    {"cvi", &PsInterpreter::EvaluateCvi},
    {"cvr", &PsInterpreter::EvaluateCvr},
    {"div", &PsInterpreter::EvaluateDiv},
    {"dup", &PsInterpreter::EvaluateDup},
    {"eq", &PsInterpreter::EvaluateEq},
    {"exch", &PsInterpreter::EvaluateExch},
    {"exp", &PsInterpreter::EvaluateExp},
    {"false", nullptr},
    {"floor", &PsInterpreter::EvaluateFloor},
    {"ge", &PsInterpreter::EvaluateGe},
    {"gt", &PsInterpreter::EvaluateGt},
    {"idiv", &PsInterpreter::EvaluateIdiv},
    {"if", nullptr},
    {"ifelse", nullptr},
    {"index", &PsInterpreter::EvaluateIndex},
    {"le", &PsInterpreter::EvaluateLe},
    {"ln", &PsInterpreter::EvaluateLn},
    {"log", &PsInterpreter::EvaluateLog},
    {"lt", &PsInterpreter::EvaluateLt},
    {"mod", &PsInterpreter::EvaluateMod},
    {"mul", &PsInterpreter::EvaluateMul},
    {"ne", &PsInterpreter::EvaluateNe},
    {"neg", &PsInterpreter::EvaluateNeg},
    {"not", &PsInterpreter::EvaluateNot},
    {"or", &PsInterpreter::EvaluateOr},
    {"pop", &PsInterpreter::EvaluatePop},
    {"roll", &PsInterpreter::EvaluateRoll},
    {"round", &PsInterpreter::EvaluateRound},
    {"sin", &PsInterpreter::EvaluateSin},
    {"sqrt", &PsInterpreter::EvaluateSqrt},
    {"sub", &PsInterpreter::EvaluateSub},
    {"true", nullptr},
    {"truncate", &PsInterpreter::EvaluateTruncate},
    {"xor", &PsInterpreter::EvaluateXor},
};

constexpr const PsOperator& GetRow(PsCode code)
{
    return c_operators[code - PsFirstOperator];
}

static_assert(std::size(c_operators) == PsUnknown - PsFirstOperator);
static_assert(std::ranges::is_sorted(c_operators, {}, &PsOperator::name));
static_assert(GetRow(PsFalse).name == "false" && GetRow(PsTrue).name == "true");
static_assert(GetRow(PsIf).name == "if" && GetRow(PsIfElse).name == "ifelse");

bool FitsInteger(double value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

} // namespace

PsCode GetPsOperator(const char* name)
{
    const auto* const found = std::ranges::lower_bound(c_operators, std::string_view(name), {}, &PsOperator::name);
    if (found == std::end(c_operators) || found->name != name) return PsUnknown;
    return static_cast<PsCode>(PsFirstOperator + (found - c_operators));
}

void PsInterpreter::OnError() const
{
    throw PsInterpeterException();
}

void PsInterpreter::Push(const PsObject& object)
{
    Check(count < c_stackSize);
    stack[count++] = object;
}

PsObject PsInterpreter::Pop()
{
    Check(count > 0);
    return stack[--count];
}

int PsInterpreter::PopInteger()
{
    const PsObject object = Pop();
    Check(object.IsInteger());
    return object.integer;
}

double PsInterpreter::PopReal()
{
    const PsObject object = Pop();
    Check(object.IsNumber());
    return object.GetReal();
}

double PsInterpreter::PopPositive()
{
    const double value = PopReal();
    Check(value > 0);
    return value;
}

bool PsInterpreter::PopBool()
{
    const PsObject object = Pop();
    Check(object.IsBool());
    return object.code == PsTrue;
}

void PsInterpreter::PushWhole(long long value)
{
    const auto real = static_cast<double>(value);
    Push(FitsInteger(real) ? PsObject(static_cast<int>(value)) : PsObject(real));
}

void PsInterpreter::Evaluate(const PsProcedureVec& procedures, unsigned long start)
{
    const std::vector<PsObject>& elements = procedures[start];
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const PsObject& element = elements[i];
        if (element.code == PsProcedure) {
            i = Branch(procedures, elements, i);
        } else if (element.code < PsProcedure || element.IsBool()) {
            Push(element);
        } else {
            Execute(element.code);
        }
    }
}

// A procedure is no value that could be copied or moved, and come to run itself: it stands where it is used. So no
// element runs more than once a call.
std::size_t PsInterpreter::Branch(const PsProcedureVec& procedures, const std::vector<PsObject>& elements,
                                  std::size_t index)
{
    const auto isAt = [&elements](std::size_t place, PsCode code) {
        return place < elements.size() && elements[place].code == code;
    };
    const auto run = [&](std::size_t place) {
        Evaluate(procedures, static_cast<unsigned long>(elements[place].integer));
    };
    if (isAt(index + 1, PsIf)) {
        if (PopBool()) run(index);
        return index + 1;
    }
    Check(isAt(index + 1, PsProcedure) && isAt(index + 2, PsIfElse));
    run(PopBool() ? index : index + 1);
    return index + 2;
}

void PsInterpreter::Execute(PsCode code)
{
    Check(code != PsUnknown);
    const auto evaluate = GetRow(code).evaluate;
    Check(evaluate != nullptr);
    (this->*evaluate)();
}

template <typename Operation>
void PsInterpreter::Arithmetic(Operation operation)
{
    const PsObject b = Pop();
    const PsObject a = Pop();
    Check(a.IsNumber() && b.IsNumber());
    if (a.IsInteger() && b.IsInteger()) {
        PushWhole(operation(static_cast<long long>(a.integer), static_cast<long long>(b.integer)));
    } else {
        Push(PsObject(operation(a.GetReal(), b.GetReal())));
    }
}

template <typename Operation>
void PsInterpreter::Bitwise(Operation operation)
{
    const PsObject b = Pop();
    const PsObject a = Pop();
    if (a.IsBool() && b.IsBool()) {
        Push(PsObject::FromBool(operation(a.code == PsTrue ? 1 : 0, b.code == PsTrue ? 1 : 0) != 0));
        return;
    }
    Check(a.IsInteger() && b.IsInteger());
    Push(PsObject(operation(a.integer, b.integer)));
}

template <typename Comparison>
void PsInterpreter::Compare(Comparison comparison)
{
    const double b = PopReal();
    const double a = PopReal();
    Push(PsObject::FromBool(comparison(a, b)));
}

template <typename Rounding>
void PsInterpreter::RoundReal(Rounding rounding)
{
    Check(count > 0 && stack[count - 1].IsNumber());
    PsObject& top = stack[count - 1];
    if (!top.IsInteger()) top.real = rounding(top.real);
}

void PsInterpreter::EvaluateAbs()
{
    const PsObject value = Pop();
    Check(value.IsNumber());
    if (value.IsInteger()) {
        PushWhole(std::abs(static_cast<long long>(value.integer)));
    } else {
        Push(PsObject(std::abs(value.real)));
    }
}

void PsInterpreter::EvaluateAdd()
{
    Arithmetic(std::plus<>());
}

void PsInterpreter::EvaluateAnd()
{
    Bitwise(std::bit_and<>());
}

void PsInterpreter::EvaluateAtan()
{
    const double denominator = PopReal();
    const double numerator = PopReal();
    Check(numerator != 0 || denominator != 0);
    const double angle = std::atan2(numerator, denominator) / c_degree;
    Push(PsObject(angle < 0 ? angle + 360 : angle));
}

void PsInterpreter::EvaluateBitshift()
{
    constexpr int c_bitCount = 32;
    const int shift = PopInteger();
    const auto bits = static_cast<std::uint32_t>(PopInteger());
    std::uint32_t result = 0;
    if (shift >= 0 && shift < c_bitCount) result = bits << shift;
    if (shift < 0 && shift > -c_bitCount) result = bits >> -shift;
    Push(PsObject(static_cast<int>(result)));
}

void PsInterpreter::EvaluateCeiling()
{
    RoundReal([](double value) { return std::ceil(value); });
}

void PsInterpreter::EvaluateCopy()
{
    const int copied = PopInteger();
    Check(copied >= 0 && copied <= count && count + copied <= c_stackSize);
    std::copy_n(stack + count - copied, copied, stack + count);
    count += copied;
}

void PsInterpreter::EvaluateCos()
{
    Push(PsObject(std::cos(PopReal() * c_degree)));
}

void PsInterpreter::EvaluateCvi()
{
    const PsObject value = Pop();
    Check(value.IsNumber());
    const double whole = std::trunc(value.GetReal());
    Check(FitsInteger(whole));
    Push(PsObject(static_cast<int>(whole)));
}

void PsInterpreter::EvaluateCvr()
{
    Push(PsObject(PopReal()));
}

void PsInterpreter::EvaluateDiv()
{
    const double divisor = PopReal();
    const double value = PopReal();
    Check(divisor != 0.0);
    Push(PsObject(value / divisor));
}

void PsInterpreter::EvaluateDup()
{
    Check(count > 0);
    Push(stack[count - 1]);
}

void PsInterpreter::EvaluateEq()
{
    const PsObject b = Pop();
    const PsObject a = Pop();
    Check((a.IsNumber() || a.IsBool()) && (b.IsNumber() || b.IsBool()));
    Push(PsObject::FromBool(a.IsNumber() && b.IsNumber() ? a.GetReal() == b.GetReal() : a.code == b.code));
}

void PsInterpreter::EvaluateExch()
{
    Check(count > 1);
    std::swap(stack[count - 1], stack[count - 2]);
}

void PsInterpreter::EvaluateExp()
{
    const double exponent = PopReal();
    const double base = PopReal();
    const double result = std::pow(base, exponent);
    Check(std::isfinite(result));
    Push(PsObject(result));
}

void PsInterpreter::EvaluateFloor()
{
    RoundReal([](double value) { return std::floor(value); });
}

void PsInterpreter::EvaluateGe()
{
    Compare(std::greater_equal<>());
}

void PsInterpreter::EvaluateGt()
{
    Compare(std::greater<>());
}

void PsInterpreter::EvaluateIdiv()
{
    const long long divisor = PopInteger();
    const long long value = PopInteger();
    Check(divisor != 0);
    PushWhole(value / divisor);
}

void PsInterpreter::EvaluateIndex()
{
    const int depth = PopInteger();
    Check(depth >= 0 && depth < count);
    Push(stack[count - 1 - depth]);
}

void PsInterpreter::EvaluateLe()
{
    Compare(std::less_equal<>());
}

void PsInterpreter::EvaluateLn()
{
    Push(PsObject(std::log(PopPositive())));
}

void PsInterpreter::EvaluateLog()
{
    Push(PsObject(std::log10(PopPositive())));
}

void PsInterpreter::EvaluateLt()
{
    Compare(std::less<>());
}

void PsInterpreter::EvaluateMod()
{
    const long long divisor = PopInteger();
    const long long value = PopInteger();
    Check(divisor != 0);
    PushWhole(value % divisor);
}

void PsInterpreter::EvaluateMul()
{
    Arithmetic(std::multiplies<>());
}

void PsInterpreter::EvaluateNe()
{
    EvaluateEq();
    EvaluateNot();
}

void PsInterpreter::EvaluateNeg()
{
    const PsObject value = Pop();
    Check(value.IsNumber());
    if (value.IsInteger()) {
        PushWhole(-static_cast<long long>(value.integer));
    } else {
        Push(PsObject(-value.real));
    }
}

void PsInterpreter::EvaluateNot()
{
    const PsObject value = Pop();
    Check(value.IsBool() || value.IsInteger());
    Push(value.IsBool() ? PsObject::FromBool(value.code == PsFalse) : PsObject(~value.integer));
}

void PsInterpreter::EvaluateOr()
{
    Bitwise(std::bit_or<>());
}

void PsInterpreter::EvaluatePop()
{
    Pop();
}

void PsInterpreter::EvaluateRoll()
{
    const int amount = PopInteger();
    const int rolled = PopInteger();
    Check(rolled >= 0 && rolled <= count);
    if (rolled == 0) return;
    const int upward = (amount % rolled + rolled) % rolled;
    PsObject* const end = stack + count;
    std::rotate(end - rolled, end - upward, end);
}

void PsInterpreter::EvaluateRound()
{
    // Halves go up, on both sides of zero.
    RoundReal([](double value) { return std::floor(value + 0.5); });
}

void PsInterpreter::EvaluateSin()
{
    Push(PsObject(std::sin(PopReal() * c_degree)));
}

void PsInterpreter::EvaluateSqrt()
{
    const double value = PopReal();
    Check(value >= 0);
    Push(PsObject(std::sqrt(value)));
}

void PsInterpreter::EvaluateSub()
{
    Arithmetic(std::minus<>());
}

void PsInterpreter::EvaluateTruncate()
{
    RoundReal([](double value) { return std::trunc(value); });
}

void PsInterpreter::EvaluateXor()
{
    Bitwise(std::bit_xor<>());
}

} // namespace Quillet
