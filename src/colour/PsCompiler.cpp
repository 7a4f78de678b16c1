#include "colour/PsCompiler.h"

#include "colour/Function.h"
#include "colour/PsInterpreter.h"
#include "document/Guard.h"
#include "document/Limits.h"

#include <limits>

namespace Quillet {

namespace {

PsObject MakeInteger(long long value)
{
    using Integer = std::numeric_limits<int>;
    if (value < Integer::min() || value > Integer::max()) return PsObject(static_cast<double>(value));
    return PsObject(static_cast<int>(value));
}

} // namespace

void PsCompiler::Compile(PsProcedureVec& procedures, Kernel::Counted<Parser> parser)
{
    const Guard::Descent descent;
    if (!descent) OnError();
    const std::size_t index = procedures.size();
    procedures.emplace_back();
    while (parser->NextToken() != Token::TokenProcEnd) {
        if (++length > Limits::c_maxProgramLength) OnError();
        // The procedures within move the vector.
        const PsObject element = MakeElement(procedures, parser);
        procedures[index].push_back(element);
    }
}

PsObject PsCompiler::MakeElement(PsProcedureVec& procedures, Kernel::Counted<Parser> parser)
{
    switch (parser->tokenType) {
    case Token::TokenInt:
        return MakeInteger(parser->tokenInt);
    case Token::TokenReal:
        return PsObject(parser->tokenReal);
    case Token::TokenProcStart: {
        const auto index = static_cast<int>(procedures.size());
        Compile(procedures, parser);
        return PsObject::FromProcedure(index);
    }
    case Token::TokenKeyword: {
        const PsCode code = GetPsOperator(parser->tokenText.c_str());
        parser->Check(code != PsUnknown, parser->errorType);
        return PsObject(code);
    }
    default:
        OnError();
    }
}

void PsCompiler::OnError() const
{
    throw Function::InvalidFunctionException();
}

} // namespace Quillet
