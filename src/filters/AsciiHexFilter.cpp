#include "filters/AsciiHexFilter.h"

#include "document/CharType.h"

namespace Quillet {

int AsciiHexFilter::Decode(char* buf, int size)
{
    if (isFinished) return 0;
    for (int delivered = 0; delivered < size; ++delivered) {
        const int high = GetHexDigit();
        if (high < 0) return delivered;
        const int low = GetHexDigit();
        buf[delivered] = static_cast<char>(high << 4 | (low < 0 ? 0 : low));
        if (low < 0) return delivered + 1;
    }
    return size < 0 ? 0 : size;
}

int AsciiHexFilter::GetHexDigit()
{
    for (char read; source->Read(&read, 1) == 1 && read != '>';) {
        const auto byte = static_cast<unsigned char>(read);
        if (CharType::IsPdfSpace(byte)) continue;
        const int value = CharType::GetHexValue(byte);
        return Check(value >= 0, Error::General) ? value : 0;
    }
    isFinished = true;
    return -1;
}

unsigned long long AsciiHexFilter::GetEstimatedLength() const
{
    return source->GetEstimatedLength() / 2;
}

} // namespace Quillet
