#pragma once

#include "colour/PsObject.h"

#include <Kernel/Export.h>

namespace Quillet {

/// The code of an operator by its keyword; `PsUnknown` for any other text.
QUILLET_API PsCode GetPsOperator(const char* name);

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

    // The operators of these names.
    void EvaluateAbs();
    void EvaluateAdd();
    void EvaluateAnd();
    void EvaluateAtan();
    void EvaluateBitshift();
    void EvaluateCeiling();
    void EvaluateCopy();
    void EvaluateCos();
    void EvaluateCvi();
    void EvaluateCvr();
    void EvaluateDiv();
    void EvaluateDup();
    void EvaluateEq();
    void EvaluateExch();
    void EvaluateExp();
    void EvaluateFloor();
    void EvaluateGe();
    void EvaluateGt();
    void EvaluateIdiv();
    void EvaluateIndex();
    void EvaluateLe();
    void EvaluateLn();
    void EvaluateLog();
    void EvaluateLt();
    void EvaluateMod();
    void EvaluateMul();
    void EvaluateNe();
    void EvaluateNeg();
    void EvaluateNot();
    void EvaluateOr();
    void EvaluatePop();
    void EvaluateRoll();
    void EvaluateRound();
    void EvaluateSin();
    void EvaluateSqrt();
    void EvaluateSub();
    void EvaluateTruncate();
    void EvaluateXor();

    static constexpr int c_stackSize = 100;

    PsObject stack[c_stackSize];
    int count = 0;

private:
    /// Runs the conditional whose first procedure is element `index`; gives the index of its operator.
    std::size_t Branch(const PsProcedureVec& procedures, const std::vector<PsObject>& elements, std::size_t index);
    void Execute(PsCode code);

    void Check(bool condition) const
    {
        if (!condition) OnError();
    }
    [[noreturn]] void OnError() const;

    int PopInteger();
    double PopReal();
    double PopPositive();
    bool PopBool();
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
