#include "fonts/CidFont.h"

#include "document/Dictionary.h"
#include "document/Limits.h"
#include "filters/Stream.h"
#include "fonts/FontEncodingFactory.h"
#include <Quillet/Budget.h>
#include <Quillet/Char.h>

#include <algorithm>
#include <limits>

namespace Quillet {

namespace {

constexpr double c_defaultWidth = 1000;

bool IsNumber(const Parser& parser)
{
    return parser.tokenType == Token::TokenInt || parser.tokenType == Token::TokenReal;
}

} // namespace

Kernel::Counted<const CidFont> CidFont::Make(const Ref& ref, const Kernel::Counted<const FontEncoding>&)
{
    if (ref.number < 0) return nullptr;
    if (auto cached = ref.GetCache<CidFont>()) return cached;
    if (!Budget::Spend(Limits::c_fontUnits)) return nullptr;
    const auto font = Kernel::MakeCounted<CidFont>(Kernel::MakeCounted<Dictionary>(ref, "Font", Error::General));
    ref.SetCache(font);
    return font;
}

CidFont::CidFont(const Kernel::Counted<Dictionary>& dictionary) : InstallableFont(*dictionary)
{
    // The default width of the font counts, not that of its descriptor, which is one of simple fonts.
    ReadDescriptor(*dictionary);
    ReadMetrics(*dictionary);
    ReadEncoding(dictionary);
    if (isAvailable) return;
    const bool isEven = std::ranges::all_of(
        widths, [this](const auto& entry) { return entry.second.value == widths.begin()->second.value; });
    if (isEven) SetIsMonospaced();
    UpdateEffectiveFont(GetFontMap(dictionary->object));
}

void CidFont::SetWidths(long long first, long long last, double width)
{
    first = std::max(first, 0LL);
    last = std::min<long long>(last, std::numeric_limits<int>::max() - 1);
    if (last < first || !Budget::Spend(Limits::c_rangeUnits)) return;
    widths.Set(static_cast<int>(first), static_cast<int>(last), width);
}

void CidFont::ReadMetrics(Dictionary& dictionary)
{
    missingWidth = dictionary.GetReal("DW", c_defaultWidth);
    const Kernel::Counted<Parser> parser = dictionary.OpenValue("W");
    if (!parser || parser->tokenType != Token::TokenArrayStart) return;
    while (parser->NextToken() != Token::TokenArrayEnd && parser->tokenType != Token::TokenEnd) {
        long long cid = parser->GetTokenInt();
        if (parser->NextToken() == Token::TokenArrayEnd) break;
        const Kernel::Counted<Parser> value = parser->OptionalDereference();
        if (value->tokenType == Token::TokenArrayStart) {
            while (value->NextToken() != Token::TokenArrayEnd && value->tokenType != Token::TokenEnd) {
                SetWidths(cid, cid, value->GetTokenReal());
                if (cid < std::numeric_limits<int>::max()) ++cid;
            }
        } else if (IsNumber(*value)) {
            const long long last = value->GetTokenInt();
            SetWidths(cid, last, parser->NextReal());
        }
    }
}

std::size_t CidFont::GetDispensableBytes() const
{
    // What the machine's font says is shared, but not what an embedded table makes of it.
    return sizeof *this + widths.GetBytes() + (encoding ? encoding->GetDispensableBytes() : 0);
}

double CidFont::GetBaseWidth(int cid) const
{
    const auto* range = widths.Find(cid);
    return range ? range->value : missingWidth;
}

void CidFont::ReadEncoding(const Kernel::Counted<Dictionary>& dictionary)
{
    if (!isAvailable || (subtype != "CIDFontType0" && subtype != "CIDFontType2")) return;
    const auto host = FontEncodingFactory::GetFromOs(requestedFont);
    if (!host) return;
    encoding = host;
    const Kernel::Counted<Parser> value = dictionary->OpenValue("CIDToGIDMap");
    if (!value) return;
    if (value->tokenType == Token::TokenDictStart) {
        if (auto own = ReadGlyphIds(dictionary->GetRef("CIDToGIDMap"), *host)) encoding = own;
        return;
    }
    const bool isName = value->tokenType == Token::TokenName && value->GetTokenName() == "Identity";
    const bool isString = value->tokenType == Token::TokenString && value->GetTokenString() == "Identity";
    Check(isName || isString, Error::UnimplementedTextEncoding);
}

Kernel::Counted<const FontEncoding> CidFont::ReadGlyphIds(const Ref& stream, const FontEncoding& host) const
{
    std::vector<char> bytes;
    Stream(stream).ReadBlock(bytes);
    if (bytes.size() < 2) return nullptr;
    auto own = Kernel::MakeCounted<FontEncoding>();
    const std::size_t count = std::min<std::size_t>(bytes.size() / 2, 1 << 16);
    for (std::size_t cid = 0; cid < count; ++cid) {
        const int glyph =
            static_cast<unsigned char>(bytes[2 * cid]) << 8 | static_cast<unsigned char>(bytes[2 * cid + 1]);
        if (glyph == 0) continue;
        const CodeSequence sequence = host.GetMappedSequence(glyph);
        if (sequence.count > 0 && sequence.values[0] != 0) own->AddMap(static_cast<int>(cid), sequence.values[0]);
    }
    own->AddCodeSpaceRange(2, 0, 0, 0xFFFF);
    own->OnComplete();
    return own;
}

} // namespace Quillet
