/// The tokeniser on hostile text, by a program of operations that stands in the input.
///
/// The first byte chooses the kind of source and the length of the program, the rest is the text. Beside what the
/// sanitizers see, the target insists that tokens do not depend on where the parser's buffer happens to end.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "document/Dictionary.h"
#include "document/MemorySource.h"
#include "document/Parser.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

using namespace Quillet;

/// Seeking back lets a program read the same text for ever.
constexpr int c_maxSteps = 400;

/// Object of the fuzzed text in the little document.
constexpr int c_textObject = 5;

void ReadRaw(Parser& parser)
{
    char bytes[100];
    parser.Read(bytes, sizeof bytes);
}

template <typename Value, void (Parser::*getter)(std::vector<Value>&)>
void ReadVec(Parser& parser)
{
    std::vector<Value> values;
    (parser.*getter)(values);
}

void ReadShape(Parser& parser)
{
    Kernel::RectT<double> rect;
    parser.GetTokenRect(rect);
}

void ReadTransform(Parser& parser)
{
    Raster::AffineTransform::Params transform;
    parser.GetTokenTransform(transform);
}

void FollowToken(Parser& parser)
{
    const Kernel::Counted<Parser> target = parser.OptionalDereference();
    if (target.Get() != &parser) target->NextToken();
}

void SeekKey(Parser& parser)
{
    if (parser.DictionarySeek(parser.tokenPos, "Key")) parser.NextToken();
}

constexpr void (*c_operations[])(Parser&) = {
    [](Parser& parser) { parser.NextToken(); },
    [](Parser& parser) { parser.SkipSpace(); },
    [](Parser& parser) { parser.Skip("obj"); },
    [](Parser& parser) { parser.Skip(Token::TokenDictStart); },
    [](Parser& parser) { parser.Skip(Token::TokenName, "Key"); },
    [](Parser& parser) { parser.SkipToObjectEnd(); },
    [](Parser& parser) { parser.SkipToArrayEnd(); },
    [](Parser& parser) { parser.SkipToDictionaryEnd(); },
    [](Parser& parser) { parser.NextObjectStart(); },
    [](Parser& parser) { parser.GetTokenInt(); },
    [](Parser& parser) { parser.GetTokenBool(); },
    [](Parser& parser) { parser.GetTokenReal(); },
    [](Parser& parser) { parser.GetTokenName(); },
    [](Parser& parser) { parser.GetTokenRef(); },
    [](Parser& parser) { parser.GetTokenString(); },
    [](Parser& parser) { parser.GetTokenStringBuf(); },
    [](Parser& parser) { parser.GetSimpleTokenAsString(); },
    [](Parser& parser) { parser.NextInt(); },
    [](Parser& parser) { parser.NextRef(); },
    [](Parser& parser) { parser.GetStreamPos(); },
    [](Parser& parser) { parser.Seek(parser.tokenPos); },
    [](Parser& parser) { parser.Seek(parser.GetPosition() + 200); },
    [](Parser& parser) { parser.Overflow(); },
    ReadVec<int, &Parser::GetTokenIntVec>,
    ReadVec<double, &Parser::GetTokenRealVec>,
    ReadVec<Ref, &Parser::GetTokenRefVec>,
    ReadVec<std::string, &Parser::GetTokenNameVec>,
    ReadVec<std::string, &Parser::GetTokenStringVec>,
    ReadVec<std::vector<char>, &Parser::GetTokenStringBufVec>,
    ReadRaw,
    ReadShape,
    ReadTransform,
    FollowToken,
    SeekKey,
};

/// A fatal kind ends an operation, not the program: hosts go on with the next page, too.
template <typename Action>
void Attempt(Action action)
{
    try {
        action();
    } catch (Error::Type) {
    }
}

void RunProgram(Parser& parser, std::string_view program)
{
    for (int step = 0; step < c_maxSteps && !program.empty(); ++step) {
        const auto code = static_cast<unsigned char>(program[static_cast<std::size_t>(step) % program.size()]);
        Attempt([&] { c_operations[code % std::size(c_operations)](parser); });
    }
}

struct PlainText
{
    explicit PlainText(std::string newText)
        : text(std::move(newText)), source(Kernel::MakeCounted<MemorySource>(text.data(), text.size())),
          parser(MakeParser())
    {}
    Kernel::Counted<Parser> MakeParser()
    {
        source->SetErrorHandler(&errors);
        auto made = Kernel::MakeCounted<Parser>(Kernel::Counted<PdfSource>(source));
        made->SetErrorHandler(&errors);
        return made;
    }

    std::string text;
    ErrorRecorder errors;
    Kernel::Counted<MemorySource> source;
    Kernel::Counted<Parser> parser;
};

/// Both texts are the same but for blanks at the start of the second, which move every token across the buffer.
void CompareTokens(PlainText& plain, PlainText& padded, std::size_t padding)
{
    for (;;) {
        const Token::Type type = plain.parser->NextToken();
        if (padded.parser->NextToken() != type) std::abort();
        if (plain.parser->tokenText != padded.parser->tokenText) std::abort();
        if (plain.parser->tokenBytes != padded.parser->tokenBytes) std::abort();
        if (plain.parser->tokenInt != padded.parser->tokenInt) std::abort();
        if (std::memcmp(&plain.parser->tokenReal, &padded.parser->tokenReal, sizeof(double)) != 0) std::abort();
        if (plain.parser->GetPosition() + padding != padded.parser->GetPosition()) std::abort();
        if (type == Token::TokenEnd) return;
    }
}

void ReadPlain(std::string_view program, std::string_view text)
{
    PlainText plain{std::string(text)};
    RunProgram(*plain.parser, program);

    const std::size_t padding = 1 + program.size() * 7 % 256;
    PlainText first{std::string(text)};
    PlainText second{std::string(padding, ' ') + std::string(text)};
    Attempt([&] { CompareTokens(first, second, padding); });
}

void ReadDictionary(Dictionary& dictionary)
{
    for (const std::string& name : dictionary.GetKeys()) {
        const char* key = name.c_str();
        dictionary.GetToken(key);
        dictionary.GetName(key);
        dictionary.GetString(key);
        dictionary.GetBool(key, true);
        dictionary.GetInt(key, 1);
        dictionary.GetReal(key, 1);
        dictionary.GetRef(key);
        std::vector<Ref> refs;
        dictionary.GetRefVec(key, refs);
        for (const Ref& ref : refs) {
            (void)ref.GetName();
            (void)ref.GetHash();
        }
        std::vector<double> reals;
        dictionary.GetRealVec(key, reals);
        if (dictionary.GetToken(key) == Token::TokenDictStart) dictionary.SkipToObjectEnd();
    }
}

void ReadObject(std::string_view program, std::string_view text, bool isCompressed)
{
    PdfBuilder builder = MakePageBuilder("", {.objects = {std::string(text)}});
    TestDocument document(isCompressed ? builder.BuildCompressed() : builder.Build());
    if (!document.isOpen) return;
    const Ref ref = document.GetRef(c_textObject);
    Attempt([&] { RunProgram(*Kernel::MakeCounted<Parser>(ref), program); });
    Attempt([&] { ReadDictionary(*Kernel::MakeCounted<Dictionary>(ref)); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t length = std::min<std::size_t>(data[0] >> 2, rest.size());
    const std::string_view program = rest.substr(0, length);
    const std::string_view text = rest.substr(length);
    if ((data[0] & 3) < 2) {
        ReadPlain(program, text);
    } else {
        ReadObject(program, text, (data[0] & 3) == 3);
    }
    return 0;
}
