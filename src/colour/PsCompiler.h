#pragma once

#include "colour/PsObject.h"
#include "document/Parser.h"

namespace Quillet {

/// Turns the text of a calculator function (ISO 32000-2, 7.10.5) into procedures.
class QUILLET_API PsCompiler
{
public:
    /// Appends the procedure whose opening brace is the parser's current token, up to its closing one, and those within
    /// it. An unknown keyword raises `General` and becomes an element that fails when it is executed; anything else
    /// that has no place in a program ends in `OnError`.
    void Compile(PsProcedureVec& procedures, Kernel::Counted<Parser> parser);

    /// Throws `Function::InvalidFunctionException`.
    [[noreturn]] void OnError() const;

private:
    PsObject MakeElement(PsProcedureVec& procedures, Kernel::Counted<Parser> parser);

    unsigned long long length = 0;
};

} // namespace Quillet
