#include "fonts/SimpleFont.h"

#include "fonts/TextState.h"
#include "document/Dictionary.h"
#include "document/Limits.h"
#include "fonts/CMapInterpreter.h"
#include "fonts/FontEncodingFactory.h"
#include "fonts/FontTables.h"
#include "fonts/GlyphNames.h"
#include "fonts/MapBytes.h"
#include <Quillet/Budget.h>
#include <Quillet/Char.h>

#include <Renderer/FontMetrics.h>

#include <algorithm>

namespace Quillet {

SimpleFont::SimpleFont()
{
    ReadMetricsFromStandard();
    if (widths.empty()) ReadWidthsFromHost();
    // It stands in for fonts that are missing, whose text would be lost without.
    encoding = FontEncodingFactory::GetDefault(documentName, IsSymbolic());
}

SimpleFont::SimpleFont(const Kernel::Counted<Dictionary>& dictionary) : InstallableFont(*dictionary)
{
    Read(dictionary);
}

void SimpleFont::Read(const Kernel::Counted<Dictionary>& dictionary)
{
    ReadMetrics(dictionary);
    ReadEncoding(dictionary);
    UpdateIsSpaceDefined();
    if (isAvailable) return;
    UpdateEffectiveFont(GetFontMap(dictionary->object));
    if (!hasWidths && !FindStandardMetrics() && subtype != "Type3") ReadWidthsFromStandIn();
}

const StandardFontMetrics* SimpleFont::FindStandardMetrics() const
{
    const StandardFontMetrics* metrics = GetStandardFontMetrics(documentName);
    return metrics ? metrics : GetStandardFontMetrics(requestedFont.postscriptName);
}

void SimpleFont::ReadMetricsFromStandard()
{
    const StandardFontMetrics* metrics = FindStandardMetrics();
    if (!metrics) return;
    SetFlags(metrics->flags);
    widths.clear();
    for (const StandardGlyph& glyph : metrics->glyphs) {
        if (glyph.code < 1) break;
        const auto code = static_cast<std::size_t>(glyph.code);
        if (widths.size() <= code) widths.resize(code + 1);
        widths[code] = glyph.width;
    }
    missingWidth = metrics->glyphs.front().width;
}

void SimpleFont::ReadWidthsFromHost()
{
    if (!isAvailable) return;
    const auto metrics = Renderer::FontMetrics::Make(requestedFont);
    widths.resize(256);
    // In thousandths, as the widths of the file.
    for (std::size_t code = 0; code < widths.size(); ++code)
        widths[code] = metrics->GetGlyphMetrics(static_cast<char32_t>(code)).advance * 1000;
    missingWidth = widths[32];
}

void SimpleFont::ReadWidthsFromStandIn()
{
    const auto metrics = Renderer::FontMetrics::Make(effectiveFont);
    const auto measure = [&metrics](char32_t character) { return metrics->GetGlyphMetrics(character).advance * 1000; };
    if (missingWidth == 0) missingWidth = measure(U' ');
    widths.assign(256, missingWidth);
    for (std::size_t code = 0; code < widths.size(); ++code) {
        const CodeSequence sequence = DecodeChar(static_cast<int>(code));
        if (!sequence.IsGood()) continue;
        widths[code] = 0;
        for (std::size_t i = 0; i < sequence.count; ++i)
            widths[code] += measure(sequence.values[i]);
    }
}

void SimpleFont::ReadMetrics(const Kernel::Counted<Dictionary>& dictionary)
{
    ReadMetricsFromStandard();
    std::vector<double> own;
    if (const auto value = dictionary->OpenValue("Widths"); value && value->tokenType == Token::TokenArrayStart)
        dictionary->GetRealVec("Widths", own);
    hasWidths = !own.empty();
    if (hasWidths) {
        const int first =
            std::clamp(dictionary->GetInt("FirstChar", 32), 0, static_cast<int>(Limits::c_maxFontCodes) - 1);
        missingWidth = own.front();
        own.resize(std::min<std::size_t>(own.size(), Limits::c_maxFontCodes - static_cast<unsigned long long>(first)));
        widths.assign(static_cast<std::size_t>(first), 0);
        widths.insert(widths.end(), own.begin(), own.end());
        Budget::Spend(widths.size() * sizeof(double));
    } else {
        const StandardFontMetrics* metrics = FindStandardMetrics();
        if (!metrics) {
            dictionary->OnError(Error::UnimplementedTextEncoding);
            ReadWidthsFromHost();
        }
        const std::string name = metrics ? metrics->name : documentName;
        const auto value = dictionary->OpenValue("Encoding");
        if (value && value->tokenType == Token::TokenDictStart) {
            FontEncodingFactory::ApplyEncodingToWidths(widths, dictionary->GetRef("Encoding"), name, IsSymbolic());
        } else if (value && value->tokenType == Token::TokenName) {
            FontEncodingFactory::ApplyNamedEncodingToWidths(widths, value->GetTokenName(), name, IsSymbolic());
        }
    }
    ReadDescriptor(*dictionary);
    if (!isAvailable) GuessMonospaced();
    std::ranges::replace(widths, 0.0, missingWidth);
}

void SimpleFont::GuessMonospaced()
{
    const auto isSet = [](double width) { return width != 0; };
    const auto first = std::ranges::find_if(widths, isSet);
    const double reference = first == widths.end() ? missingWidth : *first;
    if (std::ranges::any_of(widths, [&](double width) { return isSet(width) && width != reference; })) return;
    // A single width tells nothing; none at all counts as even.
    if (std::ranges::count_if(widths, isSet) == 1) return;
    SetIsMonospaced();
}

void SimpleFont::ReadEncoding(const Kernel::Counted<Dictionary>& dictionary)
{
    const std::string& name = requestedFont.postscriptName;
    if (dictionary->Has("ToUnicode")) toUnicode = CMapInterpreter::GetEncoding(dictionary->GetRef("ToUnicode"));
    if (const auto value = dictionary->OpenValue("Encoding")) {
        if (value->tokenType == Token::TokenName) {
            encoding = FontEncodingFactory::GetNamed(value->GetTokenName(), name, IsSymbolic());
            isNamedEncoding = true;
        } else {
            const Ref ref = dictionary->GetRef("Encoding");
            encoding = FontEncodingFactory::GetType1Encoding(ref, name, IsSymbolic(), true);
            differences = FontEncodingFactory::GetType1Differences(ref);
        }
    }
    if (!encoding) encoding = FontEncodingFactory::GetDefault(name, IsSymbolic());
    if (name == "Symbol" && subtype == "TrueType")
        encoding = encoding->AsPrivateUse(FontEncodingFactory::Get(FontEncodingType::FontEncodingSymbol));
}

CodeSequence SimpleFont::DecodeChar(int code) const
{
    if (isNamedEncoding && encoding) return encoding->GetMappedSequence(code);
    if (toUnicode) {
        if (CodeSequence sequence = toUnicode->GetMappedSequence(code); sequence.IsGood()) return sequence;
    }
    if (differences) {
        if (const CodeSequence sequence = differences->GetSequence(code); sequence.IsGood()) return sequence;
    }
    return encoding ? encoding->GetMappedSequence(code) : CodeSequence(0);
}

std::size_t SimpleFont::GetDispensableBytes() const
{
    return sizeof *this + widths.size() * sizeof(double) +
           (differences ? GetMapBytes(differences->names) + GetMapBytes(differences->sequences) : 0) +
           (toUnicode ? toUnicode->GetDispensableBytes() : 0);
}

double SimpleFont::TextOut(std::vector<Char>& chars, const std::vector<char>& string, const TextState& state) const
{
    double advance = 0;
    for (const char byte : string) {
        const int code = static_cast<unsigned char>(byte);
        const auto place = static_cast<std::size_t>(code);
        const double width = place < widths.size() ? widths[place] : missingWidth;
        advance += state.AddChars(chars, DecodeChar(code), code, width);
    }
    return advance;
}

void SimpleFont::UpdateIsSpaceDefined()
{
    if (!IsSymbolic() && isAvailable) return SetIsSpaceDefined(true, -1);
    if (toUnicode) return SetIsSpaceDefined(toUnicode->GetIndexOfChar(U' ') >= 0, -1);
    if (differences) {
        Budget::Spend(4 * differences->names.size());
        for (const auto& [code, name] : differences->names) {
            if (name == "space") return SetIsSpaceDefined(code >= 0, IsSymbolic() ? code : -1);
        }
    }
    if (!encoding) return SetIsSpaceDefined(isAvailable, -1);
    const int index = encoding->GetIndexOfChar(U' ');
    if (index >= 0 && differences && !differences->GetName(index).empty()) return SetIsSpaceDefined(false, 0);
    if (widths.size() > 32 && widths[32] > 0) return SetIsSpaceDefined(true, -1);
    SetIsSpaceDefined(!IsSymbolic(), -1);
}

} // namespace Quillet
