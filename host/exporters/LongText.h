#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Host {

/// A text that may have hundreds of megabytes: it grows block by block, so that it is never copied as a whole, and can
/// be written and dropped likewise.
///
/// Its bytes are paid for (`Quillet::Budget::Spend`), a few thousand at a time, but it takes them in any case: whoever
/// writes asks `Budget::IsSpent` where stopping leaves a text that can be read.
class LongText
{
public:
    static constexpr std::size_t c_blockSize = 1 << 16;
    static constexpr std::size_t c_pieceSize = 512;

    LongText() = default;
    explicit LongText(std::string_view text) { Append(text); }

    void Append(std::string_view text);
    void Put(char c)
    {
        if (next == limit) Grow();
        *next++ = c;
    }
    /// Takes what the other has, which is paid for.
    void Append(LongText&& other);

    /// Where up to `c_pieceSize` characters can be put directly; `EndPiece` says where they end.
    char* BeginPiece()
    {
        if (static_cast<std::size_t>(limit - next) < c_pieceSize) Grow();
        return next;
    }
    void EndPiece(char* end) { next = end; }

    /// Spends so much beside the bytes, with them.
    void Charge(unsigned long long units)
    {
        charged += units;
        if (charged >= c_payStep) Pay();
    }
    /// Pays for all that came up to now.
    void Pay();

    bool IsEmpty() const { return GetSize() == 0; }
    /// In bytes.
    std::size_t GetSize() const;
    std::vector<std::string_view> GetBlocks() const;
    std::string Join() const;

private:
    static constexpr unsigned long long c_payStep = 4096;

    struct Block
    {
        std::unique_ptr<char[]> characters;
        std::size_t capacity;
        /// Not known of the last one, which ends at `next`.
        std::size_t size = 0;
    };

    /// Begins another block.
    void Grow();
    void EndBlock();
    std::size_t GetSizeOf(const Block& block) const;

    std::vector<Block> blocks;
    char* next = nullptr;
    char* limit = nullptr;
    /// How far the last block is paid for.
    const char* paid = nullptr;
    unsigned long long charged = 0;
};

} // namespace Host
