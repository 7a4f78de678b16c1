#pragma once

#include "fonts/FontEncoding.h"
#include "fonts/InstallableFont.h"
#include "fonts/RangeMap.h"

namespace Quillet {

/// The glyphs of a composite font, by CID (ISO 32000-2, 9.7.4).
class QUILLET_API CidFont : public InstallableFont
{
public:
    /// Kept with the object. The composite font's encoding plays no part.
    static Kernel::Counted<const CidFont> Make(const Ref& ref, const Kernel::Counted<const FontEncoding>& encoding);

    explicit CidFont(const Kernel::Counted<Dictionary>& dictionary);

    /// Has no text of its own.
    double TextOut(std::vector<Char>&, const std::vector<char>&, const TextState&) const override { return 0; }
    std::size_t GetDispensableBytes() const override;
    /// In thousandths of the size.
    double GetBaseWidth(int cid) const;

    /// By CID.
    RangeMap<double> widths;
    /// From CID to character; null unless the machine's font can tell.
    Kernel::Counted<const FontEncoding> encoding;

private:
    void ReadMetrics(Dictionary& dictionary);
    void SetWidths(long long first, long long last, double width);
    void ReadEncoding(const Kernel::Counted<Dictionary>& dictionary);
    Kernel::Counted<const FontEncoding> ReadGlyphIds(const Ref& stream, const FontEncoding& host) const;
};

} // namespace Quillet
