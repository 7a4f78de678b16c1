#include "document/Parser.h"

#include "document/CharType.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cstring>

namespace Quillet {

using namespace Token;

Parser::Parser(const Ref& ref) : Filter(ref.GetErrorHandler()), cursor(buffer), bufferEnd(buffer)
{
    buffer[0] = 0;
    object = ref;
    SeekObject(ref);
}

Parser::Parser(Kernel::Counted<PdfSource> plainSource)
    : Filter(plainSource ? plainSource->GetErrorHandler() : nullptr), cursor(buffer), bufferEnd(buffer),
      isPlainSource(true), isAlreadyDecrypted(true), source(std::move(plainSource))
{
    Overflow();
}

void Parser::Init()
{
    EmptyBufferAt(0);
    tokenType = TokenNone;
    errorType = Error::General;
    isAlreadyDecrypted = isPlainSource;
}

void Parser::Close()
{
    EmptyBufferAt(GetPosition());
}

void Parser::EmptyBufferAt(unsigned long long pos)
{
    bufferPos = pos;
    cursor = buffer;
    bufferEnd = buffer;
    buffer[0] = 0;
}

bool Parser::SeekObject(const Ref& ref)
{
    if (ref.IsNull()) return false;
    object = ref;
    const unsigned long long pos = ref.GetPos();
    source = ref.GetSource();
    EmptyBufferAt(pos);

    // An object that the table does not have lies nowhere: what stands at the start of the file is never it.
    const bool isSomewhere = source && !(ref.isIndirect && pos == 0);
    if (isSomewhere) {
        Seek(pos);
        if (!ref.isIndirect || ref.isInStream) return true;
        if (NextObjectStart() == ref) return true;
    }
    OnError(errorType);
    EmptyBufferAt(pos);
    return false;
}

void Parser::Seek(unsigned long long pos)
{
    const auto held = static_cast<unsigned long long>(bufferEnd - buffer);
    if (pos >= bufferPos && pos - bufferPos < held) {
        cursor = buffer + (pos - bufferPos);
        return;
    }
    EmptyBufferAt(pos);
    Overflow();
}

void Parser::Overflow()
{
    bufferPos = GetPosition();
    cursor = buffer;
    // Data that nobody pays for is at its end here, and so is every loop over its tokens.
    const bool isPaid = Budget::Spend(Limits::c_refillUnits);
    const int count = source && isPaid ? std::max(source->Read(bufferPos, buffer, c_bufferSize), 0) : 0;
    Budget::Spend(Limits::c_tokenByteUnits * static_cast<unsigned>(count));
    bufferEnd = buffer + count;
    if (AtEnd()) buffer[0] = 0;
}

ErrorPlace Parser::GetErrorPlace() const
{
    if (isPlainSource) return source ? source->GetErrorPlace() : ErrorPlace();
    return object.GetErrorPlace(GetPosition());
}

unsigned long long Parser::GetEstimatedLength() const
{
    return (source ? source->GetEstimatedLength() : 0) + static_cast<unsigned long long>(bufferEnd - cursor);
}

int Parser::Decode(char* buf, int size)
{
    int count = 0;
    while (count < size && !AtEnd()) {
        const int piece = std::min(size - count, static_cast<int>(bufferEnd - cursor));
        std::memcpy(buf + count, cursor, static_cast<std::size_t>(piece));
        count += piece;
        cursor += piece;
        if (AtEnd()) Overflow();
    }
    return count;
}

unsigned long long Parser::GetStreamPos()
{
    if (!object.isIndirect || object.number < 0) return 0;
    if (!SeekObject(object)) return 0;
    if (NextToken() != TokenDictStart) return 0;

    const bool wasDecrypted = std::exchange(isAlreadyDecrypted, true);
    SkipNested(TokenDictStart, TokenDictEnd);
    isAlreadyDecrypted = wasDecrypted;

    NextToken();
    Check(tokenType == TokenKeyword && tokenText == "stream", errorType);
    if (Peek() == ' ') Consume();
    if (Peek() == '\r') Consume();
    if (Peek() == '\n') {
        Consume();
    } else {
        OnError(Error::StreamLineEnd);
    }
    return GetPosition();
}

// Tokens

void Parser::SkipComment()
{
    while (!AtEnd() && *cursor != '\r' && *cursor != '\n')
        Consume();
}

void Parser::SkipSpace()
{
    while (!AtEnd()) {
        if (*cursor == '%') {
            SkipComment();
        } else if (CharType::IsPdfSpace(Peek())) {
            Consume();
        } else {
            return;
        }
    }
}

Token::Type Parser::NextToken()
{
    SkipSpace();
    tokenPos = GetPosition();
    const unsigned char byte = Peek();
    switch (byte) {
    case '(':
        ParseLiteralString();
        break;
    case '+':
    case '-':
    case '.':
        ParseNumber();
        break;
    case '/':
        ParseName();
        break;
    case '<':
        Consume();
        if (Peek() == '<') {
            Consume();
            tokenType = TokenDictStart;
        } else {
            ParseHexString();
        }
        break;
    case '>':
        Consume();
        Check(Peek() == '>', errorType);
        Consume();
        tokenType = TokenDictEnd;
        break;
    case '[':
        Consume();
        tokenType = TokenArrayStart;
        break;
    case ']':
        Consume();
        tokenType = TokenArrayEnd;
        break;
    case '{':
        Consume();
        tokenType = TokenProcStart;
        break;
    case '}':
        Consume();
        tokenType = TokenProcEnd;
        break;
    default:
        if (CharType::IsDigit(byte)) {
            ParseNumberOrRef();
        } else if (CharType::IsPdfRegular(byte)) {
            ParseKeyword();
        } else {
            // A stray closing parenthesis stays where it is: whoever reads on meets the end of the data.
            if (!AtEnd()) OnError(errorType);
            tokenType = TokenEnd;
        }
    }
    return tokenType;
}

void Parser::ParseNumber()
{
    const bool isNegative = Peek() == '-';
    if (isNegative || Peek() == '+') Consume();

    // Digits beyond 64 bits wrap round.
    unsigned long long whole = 0;
    for (; CharType::IsDigit(Peek()); Consume())
        whole = whole * 10 + static_cast<unsigned>(*cursor - '0');
    const auto integer = static_cast<long long>(whole);

    const auto base = static_cast<double>(integer);
    double real = base;
    if (Peek() == '.') {
        Consume();
        double divisor = 10;
        for (; CharType::IsDigit(Peek()); Consume()) {
            real += (*cursor - '0') / divisor;
            divisor *= 10;
        }
    }

    if (real != base) {
        tokenType = TokenReal;
        tokenReal = isNegative ? -real : real;
    } else {
        tokenType = TokenInt;
        tokenInt = static_cast<long long>(isNegative ? 0 - whole : whole);
    }
}

void Parser::ParseNumberOrRef()
{
    ParseNumber();
    if (tokenType != TokenInt || isPlainSource) return;

    const long long number = tokenInt;
    const unsigned long long behind = GetPosition();
    SkipSpace();
    if (CharType::IsDigit(Peek())) {
        ParseNumber();
        const long long generation = tokenInt;
        if (tokenType == TokenInt) SkipSpace();
        if (tokenType == TokenInt && Peek() == 'R') {
            Consume();
            if (!CharType::IsLetter(Peek()) && Peek() != '*') {
                tokenType = TokenRef;
                tokenRef = Ref(object.document, static_cast<int>(number), static_cast<int>(generation));
                return;
            }
        }
    }
    Seek(behind);
    tokenType = TokenInt;
    tokenInt = number;
}

void Parser::ParseKeyword()
{
    tokenText.clear();
    for (; CharType::IsPdfRegular(Peek()) && !AtEnd(); Consume()) {
        if (tokenText.size() < Limits::c_maxNameLength) tokenText.push_back(*cursor);
    }
    tokenType = TokenKeyword;
}

void Parser::ParseHexString()
{
    const auto isAtDigit = [this] { return CharType::GetHexValue(Peek()) >= 0; };
    tokenBytes.clear();
    while (isAtDigit() || SkipHexWhitespace()) {
        const int high = CharType::GetHexValue(Peek());
        Consume();
        int low = 0;
        const bool isPair = isAtDigit() || SkipHexWhitespace();
        if (isPair) {
            low = CharType::GetHexValue(Peek());
            Consume();
        }
        PutStringByte(static_cast<char>(high * 16 + low));
        if (!isPair) break;
    }
    if (Check(Peek() == '>', errorType)) Consume();
    DecryptToken();
    tokenType = TokenString;
}

bool Parser::SkipHexWhitespace()
{
    SkipSpace();
    if (CharType::GetHexValue(Peek()) >= 0) return true;
    if (Peek() == '>') return false;
    OnError(errorType);
    for (SkipSpace(); !AtEnd() && Peek() != '>'; SkipSpace())
        Consume();
    return false;
}

void Parser::ParseLiteralString()
{
    tokenBytes.clear();
    Consume();
    int depth = 1;
    while (!AtEnd()) {
        const char byte = *cursor;
        if (byte == '\\') {
            Consume();
            ParseEscape();
            continue;
        }
        Consume();
        if (byte == '\r') {
            if (Peek() == '\n') Consume();
            PutStringByte('\n');
            continue;
        }
        if (byte == '(') ++depth;
        if (byte == ')' && --depth == 0) break;
        PutStringByte(byte);
    }
    DecryptToken();
    tokenType = TokenString;
}

void Parser::ParseEscape()
{
    if (AtEnd()) return;
    const char byte = *cursor;
    if (byte >= '0' && byte <= '7') {
        int value = 0;
        for (int digits = 0; digits < 3 && Peek() >= '0' && Peek() <= '7'; ++digits, Consume()) {
            value = value * 8 + (*cursor - '0');
        }
        PutStringByte(static_cast<char>(value & 0xFF));
        return;
    }
    Consume();
    switch (byte) {
    case 'b':
        PutStringByte('\b');
        break;
    case 'f':
        PutStringByte('\f');
        break;
    case 'n':
        PutStringByte('\n');
        break;
    case 'r':
        PutStringByte('\r');
        break;
    case 't':
        PutStringByte('\t');
        break;
    case '\n':
        break;
    case '\r':
        if (Peek() == '\n') Consume();
        break;
    default:
        PutStringByte(byte);
    }
}

void Parser::DecryptToken()
{
    if (isAlreadyDecrypted || !object.IsEncrypted()) return;
    if (Budget::Spend(Limits::c_decryptUnits + tokenBytes.size())) object.DecryptBuf(tokenBytes);
}

// Passing over values

bool Parser::Skip(const char* keyword)
{
    return Skip(TokenKeyword, keyword);
}

bool Parser::Skip(Token::Type type)
{
    return Check(NextToken() == type, errorType);
}

bool Parser::Skip(Token::Type type, const char* text)
{
    return Check(NextToken() == type && tokenText == text, errorType);
}

void Parser::SkipNested(Token::Type open, Token::Type close)
{
    const bool wasDecrypted = std::exchange(isAlreadyDecrypted, true);
    for (long long depth = 1; depth > 0;) {
        NextToken();
        if (tokenType == TokenEnd) break;
        if (tokenType == open) ++depth;
        if (tokenType == close) --depth;
    }
    isAlreadyDecrypted = wasDecrypted;
}

void Parser::SkipToObjectEnd()
{
    if (tokenType == TokenArrayStart)
        SkipToArrayEnd();
    else if (tokenType == TokenDictStart)
        SkipToDictionaryEnd();
}

void Parser::SkipToArrayEnd()
{
    SkipNested(TokenArrayStart, TokenArrayEnd);
}

void Parser::SkipToDictionaryEnd()
{
    SkipNested(TokenDictStart, TokenDictEnd);
}

Ref Parser::NextObjectStart()
{
    const unsigned long long pos = GetPosition();
    if (NextToken() != TokenInt) return {};
    const auto number = static_cast<int>(tokenInt);
    if (NextToken() != TokenInt) return {};
    const auto generation = static_cast<int>(tokenInt);
    if (NextToken() != TokenKeyword || tokenText != "obj") return {};
    return Ref(object, number, generation, pos);
}

bool Parser::DictionarySeek(unsigned long long pos, const char* key)
{
    if (pos == 0) return false;
    Seek(pos);
    if (!Skip(TokenDictStart)) return false;
    while (NextToken() != TokenDictEnd && tokenType != TokenEnd) {
        if (GetTokenName() == key) return true;
        NextToken();
        SkipToObjectEnd();
    }
    return false;
}

} // namespace Quillet
