#include "colour/PsFunction.h"

#include "colour/PsCompiler.h"
#include "colour/PsInterpreter.h"
#include "filters/Stream.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

namespace Quillet {

PsFunction::PsFunction(Kernel::Counted<Dictionary> dictionary) : Function(dictionary)
{
    SetRangeSize(range.size() / 2);
    const auto parser = Kernel::MakeCounted<Parser>(Kernel::MakeCounted<Stream>(dictionary));
    if (parser->NextToken() == Token::TokenProcStart) {
        constexpr std::size_t c_usualProcedureCount = 3;
        program.reserve(c_usualProcedureCount);
        PsCompiler().Compile(program, parser);
    }
    for (const auto& procedure : program)
        programLength += procedure.size();
    if (!IsValid()) throw InvalidFunctionException();
}

bool PsFunction::IsValid() const
{
    return Function::IsValid() && !program.empty();
}

void PsFunction::Call(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
{
    const bool hasItsCounts = inCount == domain.size() / 2 && outCount == rangeSize;
    const bool isAffordable = hasItsCounts && Budget::Spend(Limits::c_elementUnits * programLength);
    if (!isAffordable || !Run(out, outCount, in, inCount)) Function::Call(out, outCount, in, inCount);
}

bool PsFunction::Run(double* out, unsigned long outCount, const double* in, unsigned long inCount) const
try {
    PsInterpreter interpreter;
    for (unsigned long i = 0; i < inCount; ++i)
        interpreter.Push(PsObject(Clamp(in[i], domain[2 * i], domain[2 * i + 1])));
    interpreter.Evaluate(program, 0);
    if (static_cast<unsigned long>(interpreter.count) != outCount) return false;
    for (unsigned long i = 0; i < outCount; ++i) {
        const PsObject& result = interpreter.stack[i];
        if (!result.IsNumber()) return false;
        out[i] = Clamp(result.GetReal(), range[2 * i], range[2 * i + 1]);
    }
    return true;
} catch (const PsInterpeterException&) {
    return false;
}

} // namespace Quillet
