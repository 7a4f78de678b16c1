#include "filters/AsciiHexFilter.h"

#include "filters/AsciiWhiteSpace.h"

namespace Quillet {

namespace {

int GetHexValue(char byte)
{
    if (byte >= '0' && byte <= '9') return byte - '0';
    if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
    if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
    return -1;
}

} // namespace

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
    for (char byte; source->Read(&byte, 1) == 1 && byte != '>';) {
        if (IsAsciiWhiteSpace(byte)) continue;
        const int value = GetHexValue(byte);
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
