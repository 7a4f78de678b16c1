#pragma once

#include "colour/PsObject.h"

#include <Kernel/Export.h>

namespace Quillet {

/// What ends a program: too few or the wrong operands, a full stack, a value without meaning.
class PsInterpeterException
{};

/// Runs a calculator program on a stack of its own. Allocates nothing.
///
/// Integers have 32 bits; where a result does not fit, it is a real. Every operation throws `PsInterpeterException`
/// for what it cannot do.
class QUILLET_API PsInterpreter
{
public:
    void Push(const PsObject& object);
    PsObject Pop();
    /// Runs procedure `start`.
    void Evaluate(const PsProcedureVec& procedures, unsigned long start);

    static constexpr int c_stackSize = 100;

    PsObject stack[c_stackSize];
    int count = 0;

private:
    void Execute(const PsProcedureVec& procedures, PsCode code);

    void EvaluateAbs();
    void EvaluateAdd();
    void EvaluateAnd();
    void EvaluateAtan();
    void EvaluateBitshift();
    void EvaluateCeiling();
    void EvaluateCopy();
    void EvaluateCvi();
    void EvaluateDiv();
    void EvaluateEq(bool isEqualWanted);
    void EvaluateExp();
    void EvaluateFloor();
    void EvaluateIdiv();
    void EvaluateIf(const PsProcedureVec& procedures);
    void EvaluateIfElse(const PsProcedureVec& procedures);
    void EvaluateIndex();
    void EvaluateMod();
    void EvaluateMul();
    void EvaluateNeg();
    void EvaluateNot();
    void EvaluateOr();
    void EvaluateRoll();
    void EvaluateRound();
    void EvaluateSub();
    void EvaluateTruncate();
    void EvaluateXor();

    void Check(bool condition) const
    {
        if (!condition) OnError();
    }
    [[noreturn]] void OnError() const;

    int PopInteger();
    double PopReal();
    bool PopBool();
    int PopProcedure();
    /// The result of an operation on integers, as a real if it does not fit.
    void PushWhole(long long value);
    template <typename Operation>
    void Arithmetic(Operation operation);
    template <typename Operation>
    void Bitwise(Operation operation);
    template <typename Comparison>
    void Compare(Comparison comparison);
    template <typename Rounding>
    void RoundReal(Rounding rounding);
};

} // namespace Quillet
