#include "colour/PsInterpreter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numbers>

namespace Quillet {

namespace {

constexpr double c_degree = std::numbers::pi / 180;

bool FitsInteger(double value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

} // namespace

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
    switch (code) {
    case PsAbs:
        return EvaluateAbs();
    case PsAdd:
        return EvaluateAdd();
    case PsAnd:
        return EvaluateAnd();
    case PsAtan:
        return EvaluateAtan();
    case PsBitshift:
        return EvaluateBitshift();
    case PsCeiling:
        return EvaluateCeiling();
    case PsCopy:
        return EvaluateCopy();
    case PsCos:
        return Push(PsObject(std::cos(PopReal() * c_degree)));
    case PsCvi:
        return EvaluateCvi();
    case PsCvr:
        return Push(PsObject(PopReal()));
    case PsDiv:
        return EvaluateDiv();
    case PsDup:
        Check(count > 0);
        return Push(stack[count - 1]);
    case PsEq:
        return EvaluateEq(true);
    case PsExch:
        Check(count > 1);
        return std::swap(stack[count - 1], stack[count - 2]);
    case PsExp:
        return EvaluateExp();
    case PsFloor:
        return EvaluateFloor();
    case PsGe:
        return Compare(std::greater_equal<>());
    case PsGt:
        return Compare(std::greater<>());
    case PsIdiv:
        return EvaluateIdiv();
    case PsIndex:
        return EvaluateIndex();
    case PsLe:
        return Compare(std::less_equal<>());
    case PsLn:
    case PsLog: {
        const double value = PopReal();
        Check(value > 0);
        return Push(PsObject(code == PsLn ? std::log(value) : std::log10(value)));
    }
    case PsLt:
        return Compare(std::less<>());
    case PsMod:
        return EvaluateMod();
    case PsMul:
        return EvaluateMul();
    case PsNe:
        return EvaluateEq(false);
    case PsNeg:
        return EvaluateNeg();
    case PsNot:
        return EvaluateNot();
    case PsOr:
        return EvaluateOr();
    case PsPop:
        Pop();
        return;
    case PsRoll:
        return EvaluateRoll();
    case PsRound:
        return EvaluateRound();
    case PsSin:
        return Push(PsObject(std::sin(PopReal() * c_degree)));
    case PsSqrt: {
        const double value = PopReal();
        Check(value >= 0);
        return Push(PsObject(std::sqrt(value)));
    }
    case PsSub:
        return EvaluateSub();
    case PsTruncate:
        return EvaluateTruncate();
    case PsXor:
        return EvaluateXor();
    case PsIf:
    case PsIfElse:
    case PsInteger:
    case PsReal:
    case PsProcedure:
    case PsFalse:
    case PsTrue:
    case PsUnknown:
        break;
    }
    OnError();
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

void PsInterpreter::EvaluateCvi()
{
    const PsObject value = Pop();
    Check(value.IsNumber());
    const double whole = std::trunc(value.GetReal());
    Check(FitsInteger(whole));
    Push(PsObject(static_cast<int>(whole)));
}

void PsInterpreter::EvaluateDiv()
{
    const double divisor = PopReal();
    const double value = PopReal();
    Check(divisor != 0.0);
    Push(PsObject(value / divisor));
}

void PsInterpreter::EvaluateEq(bool isEqualWanted)
{
    const PsObject b = Pop();
    const PsObject a = Pop();
    Check((a.IsNumber() || a.IsBool()) && (b.IsNumber() || b.IsBool()));
    const bool isEqual = a.IsNumber() && b.IsNumber() ? a.GetReal() == b.GetReal() : a.code == b.code;
    Push(PsObject::FromBool(isEqual == isEqualWanted));
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
