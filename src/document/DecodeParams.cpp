#include "document/DecodeParams.h"

#include "document/Parser.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <cmath>
#include <limits>

namespace Quillet {

namespace {

/// To the nearest integer, halves away from zero; what no int can hold becomes the nearest one that can.
int RoundToInt(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(std::round(value));
}

} // namespace

DecodeParams::DecodeParams(Kernel::NonCounted<Parser> parser, const Ref& stream) : owner(stream)
{
    while (parser->NextToken() != Token::TokenDictEnd && parser->tokenType != Token::TokenEnd) {
        const std::string key = parser->GetTokenName();
        if (!Budget::Spend(Limits::c_entryUnits + key.size())) break;
        parser->NextToken();
        Kernel::Counted<Parser> target;
        if (parser->tokenType == Token::TokenRef) {
            refs[key] = parser->tokenRef;
            target = parser->Dereference();
        }
        Parser& value = target ? *target : *parser;
        switch (value.tokenType) {
        case Token::TokenKeyword:
            ints[key] = value.GetTokenBool() ? 1 : 0;
            break;
        case Token::TokenInt:
            ints[key] = static_cast<int>(value.tokenInt);
            break;
        case Token::TokenReal:
            ints[key] = RoundToInt(value.tokenReal);
            break;
        case Token::TokenName:
            names[key] = value.GetTokenName();
            break;
        default:
            break;
        }
        parser->SkipToObjectEnd();
    }
}

int DecodeParams::GetInt(const char* key, int fallback) const
{
    if (const auto found = ints.find(key); found != ints.end()) return found->second;
    const auto reference = refs.find(key);
    if (reference == refs.end()) return fallback;
    Parser parser(reference->second);
    switch (parser.NextToken()) {
    case Token::TokenKeyword:
        return parser.GetTokenBool() ? 1 : 0;
    case Token::TokenInt:
        return static_cast<int>(parser.tokenInt);
    case Token::TokenReal:
        return RoundToInt(parser.tokenReal);
    default:
        return fallback;
    }
}

Ref DecodeParams::GetRef(const char* key) const
{
    const auto found = refs.find(key);
    return found == refs.end() ? Ref() : found->second;
}

std::string DecodeParams::GetName(const char* key) const
{
    const auto found = names.find(key);
    return found == names.end() ? std::string() : found->second;
}

std::vector<Kernel::Counted<const DecodeParams>> GetDecodeParams(Kernel::Counted<Parser> parser, const Ref& owner)
{
    std::vector<Kernel::Counted<const DecodeParams>> result;
    parser = parser->NextValue();
    if (parser->tokenType == Token::TokenDictStart) {
        result.push_back(Kernel::MakeCounted<DecodeParams>(parser, owner));
        return result;
    }
    if (parser->tokenType != Token::TokenArrayStart) return result;

    while (parser->NextToken() != Token::TokenArrayEnd && parser->tokenType != Token::TokenEnd) {
        Kernel::Counted<Parser> element = parser->OptionalDereference();
        if (element->tokenType == Token::TokenDictStart) {
            if (!Budget::Spend(Limits::c_objectUnits)) break;
            result.push_back(Kernel::MakeCounted<DecodeParams>(element, owner));
            continue;
        }
        element->Check(element->tokenType == Token::TokenKeyword, element->errorType);
        element->Check(element->tokenText == "null", element->errorType);
        result.push_back(Kernel::MakeCounted<DecodeParams>());
    }
    return result;
}

} // namespace Quillet
