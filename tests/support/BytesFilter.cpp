#include "support/BytesFilter.h"

#include <algorithm>

namespace Quillet {

int BytesFilter::Decode(char* buf, int size)
{
    const auto count =
        std::min({static_cast<std::size_t>(std::max(size, 0)), static_cast<std::size_t>(pieceSize), declared - pos});
    std::copy_n(bytes.data() + pos, count, buf);
    pos += count;
    return static_cast<int>(count);
}

void BytesFilter::ReadAll(std::vector<char>& out)
{
    out.insert(out.end(), bytes.begin() + static_cast<std::ptrdiff_t>(pos),
               bytes.begin() + static_cast<std::ptrdiff_t>(declared));
    pos = declared;
}

int BytesFilter::IncreaseLength(int more)
{
    const std::size_t longer = std::min(bytes.size(), declared + static_cast<std::size_t>(more));
    const auto granted = static_cast<int>(longer - declared);
    declared = longer;
    return granted;
}

} // namespace Quillet
