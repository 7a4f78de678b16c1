#include "document/Encrypt.h"

namespace Quillet {

void Encrypt::Read(const Ref& encryptRef, const std::vector<char>& id)
{
    fileId = id;
    ref = encryptRef;
    level = ref.IsNull() ? DecryptLevelOpen : DecryptLevelUnsupported;
}

void Encrypt::Close()
{
    password.clear();
    level = DecryptLevelNone;
}

bool Encrypt::HasPermissions(Permissions::Type) const
{
    return level >= DecryptLevelOwner;
}

} // namespace Quillet
