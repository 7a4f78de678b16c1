#include <Quillet/Version.h>

namespace Quillet {

const char* GetLibraryVersion()
{
    return QUILLET_VERSION;
}

} // namespace Quillet
