#include "exporters/LongText.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace Host {

void LongText::Pay()
{
    const auto bytes = static_cast<unsigned long long>(next - std::exchange(paid, next));
    if (bytes + charged > 0) Quillet::Budget::Spend(bytes + std::exchange(charged, 0));
}

void LongText::EndBlock()
{
    Pay();
    if (!blocks.empty()) blocks.back().size = GetSizeOf(blocks.back());
}

void LongText::Grow()
{
    EndBlock();
    // Most texts are short; one that has filled a block will fill a larger one.
    const std::size_t capacity = blocks.empty() ? 8 * c_pieceSize : std::min(4 * blocks.back().capacity, c_blockSize);
    blocks.push_back({std::make_unique_for_overwrite<char[]>(capacity), capacity});
    next = blocks.back().characters.get();
    limit = next + capacity;
    paid = next;
}

void LongText::Append(std::string_view text)
{
    while (!text.empty()) {
        if (next == limit) Grow();
        const std::size_t size = std::min(text.size(), static_cast<std::size_t>(limit - next));
        std::memcpy(next, text.data(), size);
        next += size;
        text.remove_prefix(size);
    }
    if (static_cast<unsigned long long>(next - paid) >= c_payStep) Pay();
}

void LongText::Append(LongText&& other)
{
    if (other.blocks.empty()) return;
    EndBlock();
    other.Pay();
    blocks.insert(blocks.end(), std::move_iterator(other.blocks.begin()), std::move_iterator(other.blocks.end()));
    next = std::exchange(other.next, nullptr);
    limit = std::exchange(other.limit, nullptr);
    paid = std::exchange(other.paid, nullptr);
    other.blocks.clear();
}

std::size_t LongText::GetSizeOf(const Block& block) const
{
    return &block == &blocks.back() ? static_cast<std::size_t>(next - block.characters.get()) : block.size;
}

std::size_t LongText::GetSize() const
{
    std::size_t size = 0;
    for (const Block& block : blocks)
        size += GetSizeOf(block);
    return size;
}

std::vector<std::string_view> LongText::GetBlocks() const
{
    std::vector<std::string_view> texts;
    for (const Block& block : blocks)
        texts.emplace_back(block.characters.get(), GetSizeOf(block));
    return texts;
}

std::string LongText::Join() const
{
    std::string text;
    text.reserve(GetSize());
    for (const std::string_view block : GetBlocks())
        text += block;
    return text;
}

} // namespace Host
