#pragma once

#include "fonts/CidFont.h"
#include "fonts/Font.h"
#include "fonts/FontEncoding.h"

#include <vector>

namespace Quillet {

/// A font with codes of any length (ISO 32000-2, 9.7): a CMap makes CIDs of them, and descendants have the glyphs.
class QUILLET_API CompositeFont : public Font
{
public:
    explicit CompositeFont(const Kernel::Counted<Dictionary>& dictionary);

    bool IsAvailable() const override;
    const Kernel::Font& GetKernelFont() const override;
    bool operator==(const Font& other) const override;
    void AddTo(Story::GlyphAtts& atts) const override;
    double TextOut(std::vector<Char>& chars, const std::vector<char>& string, const TextState& state) const override;
    std::size_t GetDispensableBytes() const override;

    /// Whether codes can be told as characters at all.
    bool CanDecodeText() const;

    /// One in every valid file.
    std::vector<Kernel::Counted<const CidFont>> descendants;
    /// From code to CID.
    Kernel::Counted<const FontEncoding> encoding;
    /// From code to character.
    Kernel::Counted<const FontEncoding> toUnicode;
    /// From CID to character.
    Kernel::Counted<const FontEncoding> cidToUnicode;

private:
    Kernel::Counted<const FontEncoding> ReadCMap(const Kernel::Counted<Dictionary>& dictionary, const char* key) const;
    void UpdateIsSpaceDefined();
    CodeSequence DecodeChar(int code, int cid, const CidFont& descendant) const;
};

} // namespace Quillet
