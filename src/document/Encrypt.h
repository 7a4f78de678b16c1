#pragma once

#include <Quillet/DecryptLevel.h>
#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>

#include <Kernel/ARC4.h>
#include <Kernel/Countable.h>
#include <Kernel/StringEncoding.h>

#include <string>
#include <string_view>
#include <vector>

namespace Quillet {

class DecodeParams;

/// The decryption state of a document: the standard security handler (ISO 32000-2, 7.6.4), for reading.
///
/// It holds the file key once a password fits, and makes a decryptor for each object that is asked for. Keys and the
/// password are overwritten when they are dropped.
class QUILLET_API Encrypt : public ErrorForwarder
{
public:
    /// How streams, or strings, are encrypted.
    struct Filter
    {
        enum Kind { NotSupported, Identity, Rc4, AesV2, AesV3 };

        Kind kind = NotSupported;
        /// In bytes.
        int keyLength = 0;
    };

    /// Decrypts the bytes of one object.
    class ObjectCryptor : public Kernel::Countable
    {
    public:
        /// Gives the count of bytes produced, at most `size`. `out` may equal `in`.
        virtual int Decrypt(char* out, const char* in, int size) = 0;
    };

    /// RC4 with a key of the object's own. Its state moves on: one cryptor serves one stream or string.
    class ArcV4ObjectCryptor : public ObjectCryptor
    {
    public:
        ArcV4ObjectCryptor(const std::vector<char>& key, int keyLength, const Ref& object);
        int Decrypt(char* out, const char* in, int size) override;

    private:
        Kernel::ARC4 cipher;
    };

    /// AES with a key of 128 bits of the object's own. The data begins with the initial vector.
    class AesV2ObjectCryptor : public ObjectCryptor
    {
    public:
        AesV2ObjectCryptor(const std::vector<char>& key, int keyLength, const Ref& object);
        ~AesV2ObjectCryptor() override;
        int Decrypt(char* out, const char* in, int size) override;

    private:
        std::string objectKey;
    };

    /// AES with the file key of 256 bits, which it does not copy: it must not outlive the document's `Encrypt`.
    class AesV3ObjectCryptor : public ObjectCryptor
    {
    public:
        explicit AesV3ObjectCryptor(const std::vector<char>& key) : fileKey(key) {}
        int Decrypt(char* out, const char* in, int size) override;

    private:
        const std::vector<char>& fileKey;
    };

    using ErrorForwarder::ErrorForwarder;
    ~Encrypt() override;
    Encrypt(const Encrypt&) = delete;
    Encrypt& operator=(const Encrypt&) = delete;

    /// Reads the encryption dictionary and tries the password. Raises kind 7 for a dictionary that is broken; what is
    /// not implemented shows in `level`.
    void Read(const Ref& encryptRef, const std::vector<char>& id);
    /// Takes a password in UTF-8; tries it at once if a dictionary has been read.
    void SetPassword(const std::string& text);
    /// Tries the password in each form that programs have written files with, and sets `level`.
    void AuthenticatePassword();
    /// Forgets the file, its keys and the level, but not the password.
    void DropKeys();
    /// Forgets the password as well.
    void Close();

    static bool HasUserPermissions(DecryptLevel level) { return level >= DecryptLevelUser; }
    static bool HasOwnerPermissions(DecryptLevel level) { return level >= DecryptLevelOwner; }
    /// Whether all of these are granted: everything to an owner, by `effectivePermissions` to a user.
    bool HasPermissions(Permissions::Type mask) const;
    /// Whether an object's strings and stream are encrypted on their own. Those in object streams are not.
    bool IsEncrypted(const Ref& object) const;

    /// Null for what is not to be decrypted, and, with kind 10, while no password fits.
    Kernel::Counted<ObjectCryptor> MakeObjectCryptor(const Ref& object) const;
    Kernel::Counted<ObjectCryptor> MakeObjectCryptor(const Ref& object, Filter filter) const;
    /// For a "Crypt" filter in a stream's own list.
    Kernel::Counted<ObjectCryptor> MakeObjectCryptor(const Ref& object, const DecodeParams& params) const;
    /// Decrypts a string in place.
    void DecryptBuf(const Ref& object, std::vector<char>& buf) const;

    /// The method in words, "AES-256" for instance; empty for a document that is not encrypted.
    std::string GetMethodName() const;

    /// The dictionary itself, whose strings are clear.
    Ref ref;
    DecryptLevel level = DecryptLevelNone;
    std::vector<char> fileId;
    std::string password;
    int version = 0;
    int revision = 0;
    /// In bytes.
    int keyLength = 0;
    std::vector<char> fileKey;
    std::vector<char> userEntry;
    std::vector<char> ownerEntry;
    std::vector<char> userKeyEntry;
    std::vector<char> ownerKeyEntry;
    std::vector<char> permsEntry;
    int permissions = 0;
    /// With the bits of later revisions set from those of revision 2.
    int effectivePermissions = 0;
    bool encryptMetadata = true;
    Filter streamFilter;
    Filter stringFilter;

private:
    void NormalisePermissions();
    Filter ReadFilter(const std::string& name, const Ref& filters) const;

    bool AuthenticatePassword(std::string_view bytes, bool isFirst);
    bool AuthenticatePasswordRev4(Kernel::Counted<Kernel::StringEncoding> encoding);
    bool AuthenticatePasswordOwner(std::string_view bytes);
    bool AuthenticatePasswordUser(std::string_view bytes);
    bool AuthenticatePasswordOwnerRev234(std::string_view bytes);
    bool AuthenticatePasswordRev6(const std::vector<char>& hashEntry, std::string_view bytes, bool isOwner) const;
    void SetFileKeyRev6(std::string_view bytes, const std::vector<char>& saltEntry, const std::vector<char>& keyEntry,
                        bool isOwner);
    bool AuthenticatePermissionsRev6() const;

    std::string ComputeUserRev2(std::string_view bytes) const;
    std::string ComputeUserRev34(std::string_view bytes) const;
    std::string ComputeKeyRev234(std::string_view bytes) const;
    std::string ComputeHashRev6(std::string_view bytes, std::string_view salt, bool isOwner) const;
    void SetFileKey(std::string_view key);
};

} // namespace Quillet
