#include "fonts/CMapInterpreter.h"

#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "fonts/StandardCMaps.h"
#include "filters/Stream.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

namespace {

/// The bytes as a number with the highest first.
unsigned GetCode(const std::vector<char>& bytes)
{
    unsigned code = 0;
    for (const char byte : bytes)
        code = code << 8 | static_cast<unsigned char>(byte);
    return code;
}

/// A destination: a number, or text in units of two bytes. Halves of pairs stay apart here.
CodeSequence GetCodeSequence(const ArgVec& args, int index)
{
    constexpr std::size_t c_maxBytes = 10;
    if (args.GetType(index) == Token::TokenInt) return CodeSequence(static_cast<char32_t>(args.GetInt(index)));
    const std::vector<char>& bytes = args.GetStringBuf(index);
    if (bytes.empty()) return CodeSequence(0);
    CodeSequence sequence;
    const std::size_t size = std::min(bytes.size(), c_maxBytes);
    for (std::size_t i = 0; i < size; i += 2) {
        const std::vector<char> unit(bytes.begin() + static_cast<std::ptrdiff_t>(i),
                                     bytes.begin() + static_cast<std::ptrdiff_t>(std::min(i + 2, size)));
        sequence.Add(GetCode(unit));
    }
    return sequence;
}

bool HasControl(const CodeSequence& sequence)
{
    return std::any_of(sequence.values.begin(), sequence.values.begin() + sequence.count,
                       [](char32_t value) { return value == '\t' || value == '\n' || value == '\r'; });
}

} // namespace

Kernel::Counted<const FontEncoding> CMapInterpreter::GetEncoding(const Ref& ref)
{
    if (auto cached = ref.GetCache<FontEncoding>()) return cached;
    const CMapInterpreter interpreter(ref);
    ref.SetCache(interpreter.encoding);
    if (auto cached = ref.GetCache<FontEncoding>()) return cached;
    return interpreter.encoding;
}

void CMapInterpreter::UseBase(Dictionary& dictionary)
{
    const Kernel::Counted<Parser> value = dictionary.OpenValue("UseCMap");
    if (!value) return;
    if (value->tokenType == Token::TokenName) return UseStandard(value->GetTokenName());
    const Ref base = dictionary.GetRef("UseCMap");
    const Guard::Descent descent;
    Guard::Walk walk(Guard::Way::CMaps, base);
    // One that is being read, for itself or for one that uses it, cannot be used in turn.
    if (base.IsNull() || !descent || Budget::IsSpent() || !walk.Enter(base)) return;
    const auto used = GetEncoding(base);
    if (!used) return;
    encoding->AddBase(*used);
    hasBase = true;
}

void CMapInterpreter::UseStandard(const std::string& name)
{
    // Looking for what is not there takes its time, too.
    if (hasBase || !Budget::Spend(Limits::c_fontUnits)) return;
    const auto used = GetStandardCMap(name);
    // A name that nobody knows is no reason to take codes for characters.
    if (used == MakeIdentityCMap() && !name.starts_with("Identity")) return;
    encoding->AddBase(*used);
    hasBase = true;
}

CMapInterpreter::CMapInterpreter(const Ref& ref)
    : ErrorForwarder(ref.GetErrorHandler()), encoding(Kernel::MakeCounted<FontEncoding>()), isEmbedded(true)
{
    Guard::Walk walk(Guard::Way::CMaps, ref);
    walk.Enter(ref);
    // Files write "CMap", so that this records a fault for most of them, which does no harm.
    const auto dictionary = Kernel::MakeCounted<Dictionary>(ref, "Cmap", Error::General);
    encoding->SetErrorHandler(GetErrorHandler());
    UseBase(*dictionary);
    parser = Kernel::MakeCounted<Parser>(Kernel::MakeCounted<Stream>(dictionary));
    Interpret();
}

CMapInterpreter::CMapInterpreter(Kernel::Counted<PdfSource> source)
    : parser(Kernel::MakeCounted<Parser>(std::move(source))), encoding(Kernel::MakeCounted<FontEncoding>())
{
    Interpret();
}

CMapInterpreter::~CMapInterpreter() = default;

void CMapInterpreter::Interpret()
{
    ArgVec args(GetErrorHandler());
    std::string op;
    do {
        args.clear();
        do {
            parser->NextToken();
        } while (!ParseObject(args, op));
        if (!Budget::Spend(Limits::c_operatorUnits)) break;
        Execute(op, args);
        // The tokeniser goes no further than a parenthesis that closes nothing.
    } while (!parser->AtEnd() && parser->tokenType != Token::TokenEnd);
    encoding->OnComplete();
}

bool CMapInterpreter::ParseObject(ArgVec& args, std::string& op)
{
    switch (parser->tokenType) {
    case Token::TokenInt:
        args.AddInt(parser->tokenInt);
        return false;
    case Token::TokenReal:
        args.AddReal(parser->tokenReal);
        return false;
    case Token::TokenName:
        args.AddName(parser->tokenText);
        return false;
    case Token::TokenString:
        args.AddStringBuf(parser->tokenBytes);
        return false;
    case Token::TokenArrayStart: {
        const Guard::Descent descent;
        if (!parser->Check(static_cast<bool>(descent), parser->errorType)) {
            parser->SkipToObjectEnd();
            return false;
        }
        args.AddToken(Token::TokenArrayStart);
        while (parser->NextToken() != Token::TokenArrayEnd && parser->tokenType != Token::TokenEnd)
            ParseObject(args, op);
        args.AddToken(Token::TokenArrayEnd);
        return false;
    }
    case Token::TokenDictStart:
        parser->SkipToObjectEnd();
        return false;
    case Token::TokenEnd:
        op.clear();
        return true;
    case Token::TokenKeyword:
        op = parser->tokenText;
        return true;
    default:
        parser->OnError(parser->errorType);
        op = parser->tokenText;
        return true;
    }
}

void CMapInterpreter::Execute(const std::string& op, const ArgVec& args)
{
    if (op == "def") OnDef(args);
    if (op == "endbfchar" || op == "endbfcid") OnEndBfChar(args);
    if (op == "endbfrange" || op == "endcidrange") OnEndBfRange(args);
    if (op == "endcidchar") OnEndCidChar(args);
    if (op == "endcodespacerange") OnEndCodeSpaceRange(args);
    if (op == "usefont") currentFont = args.GetInt(0);
    // Those of the machine are whole, and are read one at a time.
    if (op == "usecmap" && isEmbedded) UseStandard(args.GetName(0));
}

void CMapInterpreter::OnDef(const ArgVec& args)
{
    if (args.count != 2 || args.GetType(0) != Token::TokenName) return;
    const Token::Type type = args.GetType(1);
    if (type != Token::TokenName && type != Token::TokenString) return;
    const std::string& key = args.GetName(0);
    if (key == "CMapName") encoding->SetName(args.GetNameOrString(1));
    if (key == "Registry") encoding->SetRegistry(args.GetNameOrString(1));
    if (key == "Ordering") encoding->SetOrdering(args.GetNameOrString(1));
}

void CMapInterpreter::OnEndCodeSpaceRange(const ArgVec& args)
{
    for (int i = 0; i + 1 < args.count; i += 2) {
        const std::vector<char>& low = args.GetStringBuf(i);
        const int byteCount = static_cast<int>(std::min<std::size_t>(low.size(), 1 << 16));
        encoding->AddCodeSpaceRange(byteCount, currentFont, GetCode(low), GetCode(args.GetStringBuf(i + 1)));
    }
}

void CMapInterpreter::OnEndBfChar(const ArgVec& args)
{
    for (int i = 0; i + 1 < args.count; i += 2) {
        const int code = static_cast<int>(GetCode(args.GetStringBuf(i)));
        CodeSequence sequence = GetCodeSequence(args, i + 1);
        // White space that moves the pen elsewhere is a space in a font.
        if (HasControl(sequence)) sequence = CodeSequence(U' ');
        encoding->AddMapRange(code, code, sequence);
    }
}

void CMapInterpreter::OnEndCidChar(const ArgVec& args)
{
    for (int i = 0; i + 1 < args.count; i += 2) {
        const int code = static_cast<int>(GetCode(args.GetStringBuf(i)));
        encoding->AddMapRange(code, code, GetCodeSequence(args, i + 1));
    }
}

void CMapInterpreter::OnEndBfRange(const ArgVec& args)
{
    for (int i = 0; i + 2 < args.count;) {
        const int low = static_cast<int>(GetCode(args.GetStringBuf(i)));
        const int high = static_cast<int>(GetCode(args.GetStringBuf(i + 1)));
        i += 2;
        if (args.GetType(i) != Token::TokenArrayStart) {
            encoding->AddMapRange(low, high, GetCodeSequence(args, i++));
            continue;
        }
        ++i;
        for (long long code = low; code <= high; ++code, ++i) {
            const Token::Type type = i < args.count ? args.GetType(i) : Token::TokenNone;
            if (!Check(type == Token::TokenString || type == Token::TokenInt, Error::General)) break;
            encoding->AddMapRange(static_cast<int>(code), static_cast<int>(code), GetCodeSequence(args, i));
        }
        const bool isClosed = i < args.count && args.GetType(i) == Token::TokenArrayEnd;
        if (!Check(isClosed, Error::General)) return;
        ++i;
    }
}

} // namespace Quillet
