#pragma once

#include "document/Limits.h"
#include "document/Token.h"
#include "document/Filter.h"

#include <Quillet/Ref.h>

#include <Geometry/AffineTransform.h>
#include <Kernel/RectT.h>

#include <span>
#include <string>
#include <vector>

namespace Quillet {

/// Buffered tokeniser of PDF syntax over any source, at any position.
///
/// It keeps no tree: a caller asks for the next token, or for the next value as a given type. On an object of the file
/// it knows indirect references and decrypts strings; on a plain source, such as a content stream or a CMap, it does
/// neither. Every syntax fault raises `errorType`, and if that returns, the operation gives its neutral value.
///
/// Operations that hand the parser on (`OptionalDereference`, or use as a filter's source) need one that is counted.
class QUILLET_API Parser : public Filter
{
public:
    /// On the value that `ref` names. A null reference leaves an empty parser; one that leads nowhere raises General.
    explicit Parser(const Ref& ref);
    /// On a plain source, from its start.
    explicit Parser(Kernel::Counted<PdfSource> plainSource);

    void SetType(Error::Type type) { errorType = type; }
    void SetIsAlreadyDecrypted(bool isOn) { isAlreadyDecrypted = isOn; }
    void Init();
    void Close();

    bool SeekObject(const Ref& ref);
    void Seek(unsigned long long pos);
    /// Refills the buffer at the present position.
    void Overflow();
    unsigned long long GetPosition() const { return bufferPos + static_cast<unsigned long long>(cursor - buffer); }
    /// First data byte of the stream object that this parser reads; 0 if it is none. Raises `StreamLineEnd` for a
    /// stream keyword without a proper line end.
    unsigned long long GetStreamPos();
    /// Of content, where its source has it.
    ErrorPlace GetErrorPlace() const override;
    bool AtEnd() const override { return cursor == bufferEnd; }
    unsigned long long GetEstimatedLength() const override;
    /// Takes raw bytes from the present position on.
    int Decode(char* buf, int size) override;

    Token::Type NextToken();
    /// Passes white space and comments.
    void SkipSpace();
    /// Expects a keyword, a token type, or a token type with a text; raises `errorType` on anything else.
    bool Skip(const char* keyword);
    bool Skip(Token::Type type);
    bool Skip(Token::Type type, const char* text);
    /// Passes the rest of the array or dictionary that the current token opens.
    void SkipToObjectEnd();
    /// From inside an array or a dictionary, behind its end.
    void SkipToArrayEnd();
    void SkipToDictionaryEnd();
    /// Reads "N G obj" here; a null reference, and no error, if something else stands here.
    Ref NextObjectStart();
    /// Finds `key` in the dictionary at `pos` by a scan; true leaves the cursor before the value.
    bool DictionarySeek(unsigned long long pos, const char* key);

    // The current token as a value. All but GetTokenRef and GetSimpleTokenAsString follow a reference.
    long long GetTokenInt();
    bool GetTokenBool();
    double GetTokenReal();
    std::string GetTokenName();
    /// The reference; a null one for the keyword null; else the bare position of the token.
    Ref GetTokenRef();
    /// Text in UTF-8, from UTF-16 or UTF-8 with a mark, or PDFDocEncoding.
    std::string GetTokenString();
    /// The bytes of a string; valid until the next token.
    const std::vector<char>& GetTokenStringBuf();
    void GetTokenRect(Kernel::RectT<double>& rect);
    /// False, with the identity, for anything but an array of six numbers.
    bool GetTokenTransform(Raster::AffineTransform::Params& transform);
    /// The numbers of an array, as many as there is room for; gives how many it has. For an array token only.
    std::size_t GetTokenNumbers(std::span<double> values);
    // An array or one single value, appended.
    void GetTokenIntVec(std::vector<int>& out);
    void GetTokenRealVec(std::vector<double>& out);
    void GetTokenRefVec(std::vector<Ref>& out);
    void GetTokenNameVec(std::vector<std::string>& out);
    void GetTokenStringVec(std::vector<std::string>& out);
    void GetTokenStringBufVec(std::vector<std::vector<char>>& out);
    /// The token as text; empty for what has none.
    std::string GetSimpleTokenAsString();

    long long NextInt() { return NextToken(), GetTokenInt(); }
    bool NextBool() { return NextToken(), GetTokenBool(); }
    double NextReal() { return NextToken(), GetTokenReal(); }
    std::string NextName() { return NextToken(), GetTokenName(); }
    /// The cursor is then behind the first token of the value only.
    Ref NextRef() { return NextToken(), GetTokenRef(); }

    /// A new parser on the target of the reference token, on its first token.
    Kernel::Counted<Parser> Dereference();
    /// As `Dereference` on a reference token, else this parser.
    Kernel::Counted<Parser> OptionalDereference();
    /// The next value, with one reference followed, on its first token.
    Kernel::Counted<Parser> NextValue() { return NextToken(), OptionalDereference(); }

    bool IsEncrypted() const { return object.IsEncrypted(); }

    static constexpr int c_bufferSize = 256;

    char* cursor;
    char* bufferEnd;
    /// One spare byte, so that the byte at the cursor can always be read: it is 0 at the end of the data.
    char buffer[c_bufferSize + 1];
    unsigned long long bufferPos = 0;
    bool isPlainSource = false;
    bool isAlreadyDecrypted = false;
    Error::Type errorType = Error::General;
    Ref object;
    Kernel::Counted<PdfSource> source;
    unsigned long long tokenPos = 0;
    Token::Type tokenType = Token::TokenNone;
    long long tokenInt = 0;
    double tokenReal = 0;
    std::string tokenText;
    Ref tokenRef;
    std::vector<char> tokenBytes;

private:
    unsigned char Peek() const { return static_cast<unsigned char>(*cursor); }
    void Consume()
    {
        if (cursor != bufferEnd && ++cursor == bufferEnd) Overflow();
    }
    void EmptyBufferAt(unsigned long long pos);

    /// A string that is too long for one piece of memory loses its end.
    void PutStringByte(char byte)
    {
        if (tokenBytes.size() < Limits::c_maxBlock) tokenBytes.push_back(byte);
    }
    void SkipComment();
    void ParseNumber();
    void ParseNumberOrRef();
    void ParseKeyword();
    void ParseName();
    void ParseLiteralString();
    void ParseEscape();
    void ParseHexString();
    bool SkipHexWhitespace();
    void DecryptToken();
    void SkipNested(Token::Type open, Token::Type close);
    template <typename Value, typename Getter>
    Value FollowReference(Value neutral, Getter getter);
    template <typename Value, typename Getter>
    void GetTokenVec(std::vector<Value>& out, Getter getter);
};

} // namespace Quillet
