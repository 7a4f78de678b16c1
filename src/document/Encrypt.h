#pragma once

#include <Quillet/DecryptLevel.h>
#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>

#include <string>
#include <vector>

namespace Quillet {

/// The decryption state of a document. No security handler is read yet: a document that is encrypted is unsupported.
class QUILLET_API Encrypt : public ErrorForwarder
{
public:
    using ErrorForwarder::ErrorForwarder;

    void Read(const Ref& encryptRef, const std::vector<char>& id);
    void SetPassword(const std::string& text) { password = text; }
    /// Forgets the password and the level.
    void Close();

    static bool HasUserPermissions(DecryptLevel level) { return level >= DecryptLevelUser; }
    static bool HasOwnerPermissions(DecryptLevel level) { return level >= DecryptLevelOwner; }
    bool HasPermissions(Permissions::Type mask) const;
    bool IsEncrypted(const Ref&) const { return false; }
    void DecryptBuf(const Ref&, std::vector<char>&) const {}

    Ref ref;
    DecryptLevel level = DecryptLevelNone;
    std::vector<char> fileId;
    std::string password;
    bool encryptMetadata = true;
};

} // namespace Quillet
