#include "exporters/LongText.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Host {

void LongText::Pay()
{
    if (blocks.empty()) return;
    Quillet::Budget::Spend(blocks.back().size() - std::exchange(paidSize, blocks.back().size()));
}

std::string& LongText::GetEnd()
{
    Pay();
    if (blocks.empty()) {
        blocks.emplace_back();
    } else if (blocks.back().size() >= c_blockSize) {
        // Most texts are short; one that has filled a block will fill more.
        blocks.emplace_back().reserve(c_blockSize + c_blockSize / 64);
        paidSize = 0;
    }
    return blocks.back();
}

void LongText::Append(std::string_view text)
{
    while (!text.empty()) {
        std::string& end = GetEnd();
        const std::size_t size = std::min(text.size(), c_blockSize - end.size());
        end.append(text.substr(0, size));
        text.remove_prefix(size);
    }
    Pay();
}

void LongText::Append(LongText&& other)
{
    Pay();
    other.Pay();
    paidSize = other.blocks.empty() ? paidSize : other.paidSize;
    blocks.insert(blocks.end(), std::move_iterator(other.blocks.begin()), std::move_iterator(other.blocks.end()));
    other.blocks.clear();
    other.paidSize = 0;
}

std::string LongText::Join() const
{
    std::size_t size = 0;
    for (const std::string& block : blocks)
        size += block.size();
    std::string text;
    text.reserve(size);
    for (const std::string& block : blocks)
        text += block;
    return text;
}

} // namespace Host
