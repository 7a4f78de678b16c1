#pragma once

#include <vector>

namespace Quillet {

/// What an element of a calculator program or an entry of its stack is. The operators have the codes from
/// `PsFirstOperator` on, in the order of their names; the booleans are the two operators that push them.
enum PsCode : int {
    PsInteger = 0,
    PsReal = 1,
    PsProcedure = 2,
    PsFirstOperator = 3,
    PsFalse = 18,
    PsIf = 23,
    PsIfElse = 24,
    PsTrue = 42,
    /// No operator; fails when it is executed.
    PsUnknown = 45,
};

/// One element of a program, or one entry of the stack.
struct PsObject
{
    PsObject() = default;
    explicit PsObject(PsCode operatorCode) : code(operatorCode) {}
    explicit PsObject(int number) : code(PsInteger), integer(number) {}
    explicit PsObject(double number) : code(PsReal), real(number) {}
    static PsObject FromProcedure(int index)
    {
        PsObject object(index);
        object.code = PsProcedure;
        return object;
    }
    static PsObject FromBool(bool isTrue) { return PsObject(isTrue ? PsTrue : PsFalse); }

    bool IsInteger() const { return code == PsInteger; }
    bool IsNumber() const { return code == PsInteger || code == PsReal; }
    bool IsBool() const { return code == PsFalse || code == PsTrue; }
    double GetReal() const { return code == PsInteger ? integer : real; }

    PsCode code;
    union {
        /// Or the index of a procedure.
        int integer;
        double real;
    };
};

/// A program: its procedures, of which the first is the whole and calls the others.
using PsProcedureVec = std::vector<std::vector<PsObject>>;

} // namespace Quillet
