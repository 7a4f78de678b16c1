#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Host {

/// A text that may have hundreds of megabytes: it grows block by block, so that it is never copied as a whole, and can
/// be written and dropped likewise.
///
/// Its bytes are paid for as they come (`Quillet::Budget::Spend`), but it takes them in any case: whoever writes asks
/// `Budget::IsSpent` where stopping leaves a text that can be read.
class LongText
{
public:
    static constexpr std::size_t c_blockSize = 1 << 16;

    LongText() = default;
    explicit LongText(std::string_view text) { Append(text); }

    void Append(std::string_view text);
    /// A character, which is paid for with what comes next.
    void Put(char c)
    {
        if (blocks.empty() || blocks.back().size() >= c_blockSize) GetEnd();
        blocks.back() += c;
    }
    /// Takes what the other has, which is paid for.
    void Append(LongText&& other);
    /// Where a number or word can be appended directly. Good until the next call.
    std::string& GetEnd();

    const std::vector<std::string>& GetBlocks() const { return blocks; }
    std::string Join() const;

private:
    void Pay();

    /// None is empty but the last one.
    std::vector<std::string> blocks;
    /// Bytes of the last block.
    std::size_t paidSize = 0;
};

} // namespace Host
