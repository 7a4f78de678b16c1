#pragma once

#include "fonts/FontEncoding.h"
#include "fonts/FontEncodingDifferences.h"
#include "fonts/InstallableFont.h"

#include <vector>

namespace Quillet {

struct StandardFontMetrics;

/// A font with codes of one byte (ISO 32000-2, 9.6).
class QUILLET_API SimpleFont : public InstallableFont
{
public:
    /// The machine's default font.
    SimpleFont();
    explicit SimpleFont(const Kernel::Counted<Dictionary>& dictionary);

    double TextOut(std::vector<Char>& chars, const std::vector<char>& string, const TextState& state) const override;
    std::size_t GetDispensableBytes() const override;
    /// Takes the widths and flags of a standard font from its published metrics.
    virtual void ReadMetricsFromStandard();

    CodeSequence DecodeChar(int code) const;

    /// By code, in thousandths of the size.
    std::vector<double> widths;
    Kernel::Counted<const FontEncoding> encoding;
    Kernel::Counted<const FontEncodingDifferences> differences;
    Kernel::Counted<const FontEncoding> toUnicode;
    /// The encoding was given by name: then it comes before everything else.
    bool isNamedEncoding = false;
    /// The file gives the widths itself.
    bool hasWidths = false;

protected:
    struct WithoutReading
    {};
    /// Only what the base reads, for a kind that overrides what the rest calls.
    SimpleFont(Dictionary& dictionary, WithoutReading) : InstallableFont(dictionary) {}
    void Read(const Kernel::Counted<Dictionary>& dictionary);

private:
    /// By the file's name, or by the one that is asked for; null if neither is one of a standard font.
    const StandardFontMetrics* FindStandardMetrics() const;
    void ReadWidthsFromHost();
    /// A width for each code, by the font in which text will be shown.
    void ReadWidthsFromStandIn();
    void ReadMetrics(const Kernel::Counted<Dictionary>& dictionary);
    void GuessMonospaced();
    void ReadEncoding(const Kernel::Counted<Dictionary>& dictionary);
    void UpdateIsSpaceDefined();
};

} // namespace Quillet
