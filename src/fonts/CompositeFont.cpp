#include "fonts/CompositeFont.h"

#include "fonts/TextState.h"
#include "document/Dictionary.h"
#include "fonts/CMapInterpreter.h"
#include "fonts/StandardCMaps.h"
#include <Quillet/Char.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

CompositeFont::CompositeFont(const Kernel::Counted<Dictionary>& dictionary) : Font(*dictionary)
{
    Check(dictionary->Has("Encoding"), Error::General);
    encoding = ReadCMap(dictionary, "Encoding");
    toUnicode = ReadCMap(dictionary, "ToUnicode");
    cidToUnicode = GetCidToUnicode(encoding);

    std::vector<Ref> refs;
    dictionary->GetRefVec("DescendantFonts", refs);
    for (const Ref& ref : refs) {
        if (auto descendant = CidFont::Make(ref, toUnicode)) descendants.push_back(std::move(descendant));
    }
    Check(descendants.size() == 1, Error::General);
    if (!cidToUnicode && !refs.empty()) {
        // An encoding that hands the CIDs on as they are does not name their collection; the descendant does.
        Dictionary info(Dictionary(refs.front()).GetRef("CIDSystemInfo"));
        cidToUnicode = GetCidToUnicode(info.GetString("Registry"), info.GetString("Ordering"));
    }
    UpdateIsSpaceDefined();
    if (!CanDecodeText()) OnError(Error::UnimplementedTextEncoding);
}

Kernel::Counted<const FontEncoding> CompositeFont::ReadCMap(const Kernel::Counted<Dictionary>& dictionary,
                                                            const char* key) const
{
    const Kernel::Counted<Parser> value = dictionary->OpenValue(key);
    if (!value) return nullptr;
    if (value->tokenType == Token::TokenName) return GetStandardCMap(value->GetTokenName());
    return CMapInterpreter::GetEncoding(dictionary->GetRef(key));
}

void CompositeFont::UpdateIsSpaceDefined()
{
    if (!descendants.empty()) SetIsSpaceDefined(true, -1);
}

bool CompositeFont::CanDecodeText() const
{
    return toUnicode || cidToUnicode ||
           std::ranges::all_of(descendants, [](const auto& font) { return static_cast<bool>(font->encoding); });
}

bool CompositeFont::IsAvailable() const
{
    return !descendants.empty() && descendants.front()->IsAvailable();
}

const Kernel::Font& CompositeFont::GetKernelFont() const
{
    return descendants.empty() ? Kernel::Font::GetEmpty() : descendants.front()->GetKernelFont();
}

bool CompositeFont::operator==(const Font& other) const
{
    const auto* font = dynamic_cast<const CompositeFont*>(&other);
    return font && std::ranges::equal(descendants, font->descendants,
                                      [](const auto& a, const auto& b) { return *a == static_cast<const Font&>(*b); });
}

void CompositeFont::AddTo(Story::GlyphAtts& atts) const
{
    if (!descendants.empty()) descendants.front()->AddTo(atts);
}

CodeSequence CompositeFont::DecodeChar(int code, int cid, const CidFont& descendant) const
{
    CodeSequence sequence;
    if (toUnicode) {
        sequence = toUnicode->GetMappedSequence(code);
        if (sequence.IsGood()) return sequence;
    }
    if (descendant.encoding) return descendant.encoding->GetMappedSequence(cid);
    if (cidToUnicode) return cidToUnicode->GetMappedSequence(cid);
    // Without any map the code itself is as good a guess as any.
    const bool isNothing = sequence.count == 0 || (sequence.count == 1 && sequence.values[0] == 0);
    return isNothing ? CodeSequence(static_cast<char32_t>(code)) : sequence;
}

std::size_t CompositeFont::GetDispensableBytes() const
{
    std::size_t bytes = sizeof *this + descendants.size() * sizeof descendants[0];
    for (const auto& part : {encoding, toUnicode})
        bytes += part ? part->GetDispensableBytes() : 0;
    for (const auto& descendant : descendants)
        bytes += descendant->GetDispensableBytes();
    return bytes;
}

double CompositeFont::TextOut(std::vector<Char>& chars, const std::vector<char>& string, const TextState& state) const
{
    double advance = 0;
    const auto size = static_cast<int>(string.size());
    for (int pos = 0; encoding && pos < size;) {
        int fontIndex = 0;
        int code = 0;
        encoding->AdvanceCharCode(fontIndex, code, pos, string);
        if (fontIndex < 0 || static_cast<std::size_t>(fontIndex) >= descendants.size()) continue;
        const CidFont& descendant = *descendants[static_cast<std::size_t>(fontIndex)];
        const auto cid = static_cast<int>(encoding->GetMappedSequence(code).values[0]);
        // Widths lose their fraction here, as lines have always been measured.
        const double width = std::trunc(descendant.GetBaseWidth(cid));
        advance += state.AddChars(chars, DecodeChar(code, cid, descendant), cid, width);
    }
    return advance;
}

} // namespace Quillet
