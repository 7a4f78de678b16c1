#include "colour/IndexedColourSpace.h"

#include "colour/ColourSpaceFactory.h"
#include "colour/Round.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "filters/Stream.h"

#include <Quillet/Budget.h>

#include <Renderer/ColourGrayscale.h>

#include <algorithm>
#include <cmath>

namespace Quillet {

namespace {

/// The most that a byte can select.
constexpr int c_maxEntryCount = 256;

} // namespace

IndexedColourSpace::IndexedColourSpace(Kernel::Counted<Parser> parser, Kernel::Counted<const Resources> resources,
                                       Kernel::Counted<const ColourSpaceFactory> factory)
    : base(factory->Make(parser, resources))
{
    if (!parser->Check(base && !base->IsIndexed(), parser->errorType)) return;
    SetNestedIn(base.Get());
    const long long maxIndex = parser->NextInt();
    if (!parser->Check(maxIndex >= 0 && maxIndex < c_maxEntryCount, parser->errorType)) return;
    parser->NextToken();
    LoadTable(*parser, static_cast<int>(maxIndex) + 1);
    if (parser->tokenType != Token::TokenArrayEnd) parser->SkipToArrayEnd();
}

void IndexedColourSpace::LoadTable(Parser& parser, int entryCount)
{
    if (parser.tokenType == Token::TokenString) {
        LoadTableFromStringBuf(parser.tokenBytes, entryCount);
    } else if (parser.tokenType == Token::TokenRef) {
        const auto target = parser.Dereference();
        if (target->tokenType == Token::TokenString) {
            LoadTableFromStringBuf(target->tokenBytes, entryCount);
        } else {
            LoadTableFromStream(Kernel::MakeCounted<Dictionary>(parser.tokenRef), entryCount);
        }
    }
}

void IndexedColourSpace::LoadTableFromStringBuf(const std::vector<char>& bytes, int entryCount)
{
    const auto componentCount = static_cast<std::size_t>(base->GetComponentCount());
    if (componentCount == 0) return;
    const std::size_t count = std::min(bytes.size() / componentCount, static_cast<std::size_t>(entryCount));
    if (!Budget::Spend(count * componentCount * sizeof(double))) return;
    table.reserve(count);
    for (std::size_t entry = 0; entry < count; ++entry) {
        std::vector<double> components(componentCount);
        for (std::size_t i = 0; i < componentCount; ++i) {
            components[i] = static_cast<unsigned char>(bytes[entry * componentCount + i]) / 255.0;
        }
        table.emplace_back(std::move(components));
    }
}

void IndexedColourSpace::LoadTableFromStream(Kernel::Counted<Dictionary> dictionary, int entryCount)
{
    const auto stream = Kernel::MakeCounted<Stream>(std::move(dictionary));
    std::vector<char> bytes(static_cast<std::size_t>(entryCount) * static_cast<std::size_t>(base->GetComponentCount()));
    bytes.resize(stream->ReadUpTo(bytes.data(), bytes.size()));
    LoadTableFromStringBuf(bytes, entryCount);
    // Unlike a string, a stream that is too short leaves entries of zeros.
    table.resize(static_cast<std::size_t>(entryCount), Colour(base->GetComponentCount()));
}

void IndexedColourSpace::AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const
{
    if (base) base->AddRasterFormats(picker, isExplicit);
}

Kernel::Consolidated<Raster::ICCProfile> IndexedColourSpace::GetICCProfile() const
{
    return base ? base->GetICCProfile() : nullptr;
}

Kernel::Consolidated<Renderer::Colour> IndexedColourSpace::MakeColour(const Colour& colour) const
{
    if (!base) return Renderer::ColourGrayscale::Create(0.0, 1.0, 1.0, {});
    const auto index = static_cast<std::size_t>(std::clamp(Round(colour[0] * 255.0), 0, 255));
    return index < table.size() ? base->MakeColour(table[index]) : base->MakeDefaultColour();
}

std::vector<double> IndexedColourSpace::GetDefaultDecodeVec(int bitsPerComponent) const
{
    return {0.0, std::ldexp(1.0, bitsPerComponent) - 1};
}

} // namespace Quillet
