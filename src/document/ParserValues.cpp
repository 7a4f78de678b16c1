// The current token of a parser as a value of the type that its user wants.

#include "document/CharType.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "document/Parser.h"

#include <Quillet/Budget.h>

#include <Kernel/ByteOrderMark.h>
#include <Kernel/CharTraits.h>
#include <Kernel/FormatString.h>
#include <Kernel/StringEncoding.h>

#include <array>
#include <limits>
#include <utility>

namespace Quillet {

using namespace Token;

/// Asks a parser on the target of the reference token for the value.
template <typename Value, typename Getter>
Value Parser::FollowReference(Value neutral, Getter getter)
{
    Guard::Descent descent;
    if (!Check(static_cast<bool>(descent), errorType)) return neutral;
    Parser target(tokenRef);
    target.NextToken();
    return getter(target);
}

long long Parser::GetTokenInt()
{
    if (tokenType == TokenInt) return tokenInt;
    if (tokenType == TokenRef) return FollowReference(0ll, [](Parser& target) { return target.GetTokenInt(); });
    OnError(errorType);
    return 0;
}

bool Parser::GetTokenBool()
{
    if (tokenType == TokenRef) return FollowReference(false, [](Parser& target) { return target.GetTokenBool(); });
    const bool isTrue = tokenType == TokenKeyword && tokenText == "true";
    Check(isTrue || (tokenType == TokenKeyword && tokenText == "false"), errorType);
    return isTrue;
}

double Parser::GetTokenReal()
{
    if (tokenType == TokenReal) return tokenReal;
    if (tokenType == TokenInt) return static_cast<double>(tokenInt);
    if (tokenType == TokenRef) return FollowReference(0.0, [](Parser& target) { return target.GetTokenReal(); });
    OnError(errorType);
    return 0;
}

std::string Parser::GetTokenName()
{
    if (tokenType == TokenRef) {
        return FollowReference(std::string(), [](Parser& target) { return target.GetTokenName(); });
    }
    Check(tokenType == TokenName, errorType);
    return tokenText;
}

void Parser::ParseName()
{
    Consume();
    tokenBytes.clear();
    bool isAscii = true;
    while (CharType::IsPdfRegular(Peek()) && !AtEnd()) {
        auto byte = Peek();
        Consume();
        if (byte == '#') {
            const int high = CharType::GetHexValue(Peek());
            if (!Check(high >= 0, errorType)) continue;
            Consume();
            const int low = CharType::GetHexValue(Peek());
            if (!Check(low >= 0, errorType)) continue;
            Consume();
            byte = static_cast<unsigned char>(high * 16 + low);
        }
        Check(byte != 0, errorType);
        isAscii = isAscii && byte < 0x80;
        if (tokenBytes.size() < Limits::c_maxNameLength) tokenBytes.push_back(static_cast<char>(byte));
    }
    tokenText.assign(tokenBytes.data(), tokenBytes.size());
    if (!isAscii && Kernel::CharTraits::GetValidLength(tokenText.data(), tokenText.size()) != tokenText.size()) {
        static const Kernel::Counted<Kernel::StringEncoding> c_western = Kernel::StringEncoding::Make(1252);
        if (c_western) tokenText = c_western->ToUnicode(tokenText);
    }
    tokenType = TokenName;
}

Ref Parser::GetTokenRef()
{
    if (tokenType == TokenRef) return tokenRef;
    if (tokenType == TokenKeyword && tokenText == "null") return {};
    return Ref::FromPosition(object, tokenPos);
}

std::string Parser::GetTokenString()
{
    if (tokenType == TokenRef) {
        return FollowReference(std::string(), [](Parser& target) { return target.GetTokenString(); });
    }
    if (!Check(tokenType == TokenString, errorType)) return {};
    const Kernel::ByteOrderMark mark = Kernel::GetByteOrderMark(tokenBytes.data(), tokenBytes.size());
    if (mark != Kernel::ByteOrderMark::None) {
        return Kernel::ConvertToUtf8(tokenBytes.data(), tokenBytes.size(), mark);
    }
    static const Kernel::Counted<Kernel::StringEncoding> c_encoding = Kernel::StringEncoding::MakePdfDocEncoding();
    return c_encoding->ToUnicode({tokenBytes.data(), tokenBytes.size()});
}

const std::vector<char>& Parser::GetTokenStringBuf()
{
    if (tokenType == TokenRef) {
        tokenBytes = FollowReference(std::vector<char>(), [](Parser& target) { return target.GetTokenStringBuf(); });
    } else {
        Check(tokenType == TokenString, errorType);
    }
    return tokenBytes;
}

void Parser::GetTokenRect(Kernel::RectT<double>& rect)
{
    rect = {};
    if (tokenType == TokenRef) {
        rect = FollowReference(rect, [](Parser& target) {
            Kernel::RectT<double> found;
            target.GetTokenRect(found);
            return found;
        });
        return;
    }
    if (!Check(tokenType == TokenArrayStart, errorType)) return;
    for (double* value : {&rect.left, &rect.top, &rect.right, &rect.bottom})
        *value = NextReal();
    if (rect.right < rect.left) std::swap(rect.left, rect.right);
    if (rect.bottom < rect.top) std::swap(rect.top, rect.bottom);
}

bool Parser::GetTokenTransform(Raster::AffineTransform::Params& transform)
{
    using Raster::AffineTransform::Params;
    transform = Params();
    if (tokenType == TokenRef) {
        Params found;
        const bool isFound =
            FollowReference(false, [&found](Parser& target) { return target.GetTokenTransform(found); });
        transform = found;
        return isFound;
    }
    if (tokenType != TokenArrayStart) return false;

    std::array<double, 6> values{};
    if (GetTokenNumbers(values) != values.size()) return false;
    transform = Params::FromPdf(values);
    return true;
}

std::size_t Parser::GetTokenNumbers(std::span<double> values)
{
    std::size_t count = 0;
    for (; NextToken() != TokenArrayEnd && tokenType != TokenEnd; ++count) {
        const double value = GetTokenReal();
        if (count < values.size()) values[count] = value;
    }
    return count;
}

template <typename Value, typename Getter>
void Parser::GetTokenVec(std::vector<Value>& out, Getter getter)
{
    if (tokenType == TokenRef) {
        FollowReference(false, [&](Parser& target) {
            target.GetTokenVec(out, getter);
            return true;
        });
        return;
    }
    if (tokenType != TokenArrayStart) {
        out.push_back(getter(*this));
        return;
    }
    while (NextToken() != TokenArrayEnd && tokenType != TokenEnd) {
        Value value = getter(*this);
        if (out.size() < Limits::c_maxListLength && Budget::Spend(Limits::c_entryUnits))
            out.push_back(std::move(value));
    }
}

void Parser::GetTokenIntVec(std::vector<int>& out)
{
    GetTokenVec(out, [](Parser& parser) { return static_cast<int>(parser.GetTokenInt()); });
}

void Parser::GetTokenRealVec(std::vector<double>& out)
{
    GetTokenVec(out, [](Parser& parser) { return parser.GetTokenReal(); });
}

void Parser::GetTokenNameVec(std::vector<std::string>& out)
{
    GetTokenVec(out, [](Parser& parser) { return parser.GetTokenName(); });
}

void Parser::GetTokenStringVec(std::vector<std::string>& out)
{
    GetTokenVec(out, [](Parser& parser) { return parser.GetTokenString(); });
}

void Parser::GetTokenStringBufVec(std::vector<std::vector<char>>& out)
{
    GetTokenVec(out, [](Parser& parser) { return parser.GetTokenStringBuf(); });
}

void Parser::GetTokenRefVec(std::vector<Ref>& out)
{
    if (tokenType == TokenRef) {
        // A reference counts as itself, unless it leads to an array, which counts as its elements.
        const bool isArray = FollowReference(false, [&out](Parser& target) {
            if (target.tokenType != TokenArrayStart) return false;
            target.GetTokenRefVec(out);
            return true;
        });
        if (!isArray) out.push_back(tokenRef);
        return;
    }
    if (tokenType != TokenArrayStart) {
        out.push_back(GetTokenRef());
        return;
    }
    while (NextToken() != TokenArrayEnd && tokenType != TokenEnd) {
        if (!Budget::Spend(Limits::c_entryUnits)) return;
        out.push_back(GetTokenRef());
        SkipToObjectEnd();
    }
}

std::string Parser::GetSimpleTokenAsString()
{
    switch (tokenType) {
    case TokenKeyword:
        return tokenText;
    case TokenInt:
        return Kernel::FormatString("%1", tokenInt);
    case TokenReal:
        return Kernel::FormatString("%1", tokenReal);
    case TokenName:
        return std::string("/").append(tokenText);
    case TokenString:
        return std::string("(").append(GetTokenString()).append(")");
    case TokenArrayStart:
        break;
    default:
        return {};
    }

    Guard::Descent descent;
    if (!Check(static_cast<bool>(descent), errorType)) return {};
    std::string elements;
    while (NextToken() != TokenArrayEnd && tokenType != TokenEnd) {
        const std::string element = GetSimpleTokenAsString();
        if (element.empty()) return {};
        if (!elements.empty()) elements += ' ';
        elements += element;
    }
    return std::string("[").append(elements).append("]");
}

Kernel::Counted<Parser> Parser::Dereference()
{
    auto target = Kernel::MakeCounted<Parser>(tokenRef);
    target->NextToken();
    return target;
}

Kernel::Counted<Parser> Parser::OptionalDereference()
{
    return tokenType == TokenRef ? Dereference() : Kernel::Counted<Parser>(this);
}

} // namespace Quillet
