#include "filters/LcwTable.h"

namespace Quillet {

LcwTable::LcwTable()
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        entries[byte].length = 1;
        entries[byte].lastChar = entries[byte].firstChar = static_cast<unsigned char>(byte);
    }
}

} // namespace Quillet
