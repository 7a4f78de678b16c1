#pragma once

#include "fonts/CodeSequence.h"
#include "fonts/RangeMap.h"

#include <Quillet/ErrorForwarder.h>
#include <Quillet/RefCacheable.h>

#include <Kernel/Counted.h>

#include <array>
#include <string>
#include <vector>

namespace Quillet {

/// A map from the codes of a font to characters, in the general form of a CMap (ISO 32000-2, 9.7.5): codes of several
/// lengths, and several characters for one code.
///
/// It is built, completed once with `OnComplete`, and not changed after that. A code that maps to nothing gives one
/// character, 0.
class QUILLET_API FontEncoding : public RefCacheable, public ErrorForwarder
{
public:
    struct CodeSpaceRange
    {
        unsigned low;
        unsigned high;
        int byteCount;
        int fontIndex;
    };

    FontEncoding() = default;
    explicit FontEncoding(const char* encodingName) : name(encodingName) {}
    FontEncoding(const FontEncoding& other) = default;
    FontEncoding& operator=(const FontEncoding&) = delete;

    void SetName(const std::string& text) { name = text; }
    void SetRegistry(const std::string& text) { registry = text; }
    void SetOrdering(const std::string& text) { ordering = text; }

    void AddCodeSpaceRange(int byteCount, int fontIndex, unsigned low, unsigned high);
    /// One byte, of any value.
    void AddByteCodeSpaceRange() { AddCodeSpaceRange(1, 0, 0, 0xFF); }
    void AddMap(int code, char32_t character) { AddMapRange(code, code, character); }
    void AddMap(int code, const CodeSequence& sequence) { AddMapRange(code, code, sequence); }
    void AddMapRange(int first, int last, char32_t character) { AddMapRange(first, last, CodeSequence(character)); }
    /// `first` maps to `sequence`, and each code after it, up to `last`, to one whose last character is one further.
    /// Overrides what was there. A range that ends before it starts is none; a negative start raises `general` and
    /// becomes 0.
    void AddMapRange(int first, int last, const CodeSequence& sequence);
    /// Adds the codes and the mappings of another encoding below those that are there, and its collection if there is
    /// none.
    void AddBase(const FontEncoding& base);
    /// Maps the codes that nothing maps yet.
    void AddUndefinedMaps(int first, int last, char32_t character);
    void OnComplete();

    /// What a code maps to.
    CodeSequence GetMappedSequence(int code) const
    {
        return code >= 0 && code < c_lookupSize ? lookup[static_cast<std::size_t>(code)] : GetMappedSequenceSlow(code);
    }
    CodeSequence GetMappedSequenceSlow(int code) const;
    /// Takes the next code off `text` at `pos`. False for bytes that are no code: those take the two attempts at them
    /// and then as many bytes as a code has, and the code is what the last of these say. On a page that has used up its
    /// work it takes all that is left.
    bool AdvanceCharCode(int& fontIndex, int& code, int& pos, const std::vector<char>& text) const;
    /// The font index of the first code space range with the value in it; -1 for none.
    int GetFontIndex(unsigned long code) const;
    bool ContainsMappingFor(int code) const;
    /// The lowest code that maps to a single character; -1 for none.
    int GetIndexOfChar(char32_t character) const;

    std::size_t GetDispensableBytes() const override;

    /// For fonts whose glyphs are reached through the private area: characters that `base` has become U+F000 plus their
    /// code there.
    Kernel::Counted<FontEncoding> AsPrivateUse(Kernel::Counted<const FontEncoding> base) const;
    /// From characters back to codes. Not completed: only its ranges are there.
    Kernel::Counted<FontEncoding> GetInverse() const;

    std::string name;
    std::string registry;
    std::string ordering;
    /// By length once completed.
    std::vector<CodeSpaceRange> codeSpaceRanges;
    RangeMap<CodeSequence> mapRanges;

private:
    static constexpr int c_lookupSize = 256;

    /// Nothing said what the codes are: what stands for it ends when something does.
    bool isCodeSpaceAssumed = false;
    std::array<CodeSequence, c_lookupSize> lookup;
};

} // namespace Quillet
