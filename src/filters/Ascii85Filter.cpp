#include "filters/Ascii85Filter.h"

#include "document/CharType.h"

#include <algorithm>
#include <cstring>

namespace Quillet {

int Ascii85Filter::Decode(char* buf, int size)
{
    int delivered = 0;
    while (delivered < size && (count > 0 || ReadBuf() > 0)) {
        const int length = std::min(size - delivered, count);
        std::memcpy(buf + delivered, group.data() + (groupLength - count), static_cast<std::size_t>(length));
        delivered += length;
        count -= length;
    }
    return delivered;
}

int Ascii85Filter::ReadBuf()
{
    if (isFinished) return 0;
    unsigned value = 0;
    int digits = 0;
    for (char byte; digits < 5 && source->Read(&byte, 1) == 1;) {
        if (byte >= '!' && byte <= 'u') {
            value = value * 85 + static_cast<unsigned>(byte - '!');
            ++digits;
        } else if (byte == '~') {
            char closing = 0;
            if (Check(source->Read(&closing, 1) == 1, Error::General)) Check(closing == '>', Error::General);
            isFinished = true;
            break;
        } else if (byte == 'z') {
            Check(digits == 0, Error::General);
            return SetGroup(0, 4);
        } else {
            Check(CharType::IsPdfSpace(static_cast<unsigned char>(byte)), Error::General);
        }
    }
    if (digits == 0) return 0;
    if (digits < 5) {
        Check(digits != 1, Error::General);
        // The digits left out count as the highest, so that cutting the bytes off rounds back to the original.
        ++value;
        for (int i = digits; i < 5; ++i)
            value *= 85;
    }
    return SetGroup(value, digits - 1);
}

int Ascii85Filter::SetGroup(unsigned value, int length)
{
    for (unsigned i = 0; i < 4; ++i)
        group[i] = static_cast<char>(value >> (24 - 8 * i));
    groupLength = count = length;
    return count;
}

unsigned long long Ascii85Filter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() + static_cast<unsigned>(count);
}

} // namespace Quillet
