#pragma once

#include <Kernel/Export.h>

#include <array>

namespace Quillet {

/// One string of the LZW dictionary: another string and one byte more.
struct LcwEntry
{
    /// The string without its last byte; null for a single byte.
    const LcwEntry* parent = nullptr;
    unsigned short length = 0;
    unsigned char lastChar = 0;
    unsigned char firstChar = 0;
};

/// The dictionary of an LZW decoder, from code to string. Entries point at each other, so a table stays where it is.
class QUILLET_API LcwTable
{
public:
    static constexpr int c_clearCode = 256;
    static constexpr int c_endCode = 257;
    static constexpr int c_firstFreeCode = 258;
    static constexpr int c_capacity = 4096;

    LcwTable();
    LcwTable(const LcwTable&) = delete;
    LcwTable& operator=(const LcwTable&) = delete;

    /// Forgets every string but the single bytes.
    void Clear() { count = c_firstFreeCode; }
    /// The next code to be given away.
    int Size() const { return count; }
    const LcwEntry& operator[](int code) const { return entries[static_cast<unsigned>(code)]; }

    /// Adds `previous` with the first byte of `current` behind it; only while there is room. `current` may be the entry
    /// that is being made.
    void Add(const LcwEntry* previous, const LcwEntry* current)
    {
        LcwEntry& added = entries[static_cast<unsigned>(count++)];
        added.lastChar = current == &added ? previous->firstChar : current->firstChar;
        added.firstChar = previous->firstChar;
        added.length = static_cast<unsigned short>(previous->length + 1);
        added.parent = previous;
    }

    int count = c_firstFreeCode;

private:
    std::array<LcwEntry, c_capacity> entries;
};

} // namespace Quillet
