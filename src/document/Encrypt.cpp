#include "document/Encrypt.h"

#include "document/Dictionary.h"
#include "document/DecodeParams.h"

#include <Kernel/AES.h>
#include <Kernel/Digest.h>
#include <Kernel/Secret.h>
#include <Kernel/Trace.h>

#include <algorithm>
#include <limits>

namespace Quillet {

namespace {

std::string_view AsText(const std::vector<char>& bytes)
{
    return {bytes.data(), bytes.size()};
}

/// A string of the dictionary, cut or filled with zeros to the size that its revision gives it.
std::vector<char> ReadByteString(Dictionary& dictionary, const char* key, std::size_t size)
{
    std::vector<char> bytes = dictionary.GetStringBuf(key);
    bytes.resize(size);
    return bytes;
}

/// The part of the file key that an object key is made from; a length from the file may be anything.
std::string_view CutKey(const std::vector<char>& key, int length)
{
    return AsText(key).substr(0, static_cast<std::size_t>(std::max(length, 0)));
}

/// ISO 32000-2, algorithm 1.
std::string ComputeObjectKey(const std::vector<char>& key, int keyLength, const Ref& object, std::string_view salt)
{
    const std::string_view part = CutKey(key, keyLength);
    std::string text(part);
    const Kernel::WipeAtEnd wipe(text);
    const auto append = [&text](int value, int count) {
        for (int i = 0; i < count; ++i)
            text += static_cast<char>(static_cast<unsigned>(value) >> 8 * i & 0xFF);
    };
    text.reserve(part.size() + 5 + salt.size());
    append(object.number, 3);
    append(object.generation, 2);
    text += salt;
    return Kernel::MD5::Hash(text).substr(0, part.size() + 5);
}

/// Data that begins with its initial vector.
int DecryptAes(char* out, const char* in, int size, std::string_view key)
{
    constexpr std::size_t c_vectorSize = Kernel::AES::c_blockSize;
    const std::string_view text(in, static_cast<std::size_t>(std::max(size, 0)));
    if (text.size() < c_vectorSize) return 0;
    return static_cast<int>(Kernel::AES::Decrypt(out, text.substr(c_vectorSize), key, text.substr(0, c_vectorSize),
                                                 Kernel::AES::Filler::Count));
}

} // namespace

Encrypt::ArcV4ObjectCryptor::ArcV4ObjectCryptor(const std::vector<char>& key, int keyLength, const Ref& object)
    : cipher(ComputeObjectKey(key, keyLength, object, ""))
{}

int Encrypt::ArcV4ObjectCryptor::Decrypt(char* out, const char* in, int size)
{
    if (size <= 0) return 0;
    cipher.Crypt(out, {in, static_cast<std::size_t>(size)});
    return size;
}

Encrypt::AesV2ObjectCryptor::AesV2ObjectCryptor(const std::vector<char>& key, int keyLength, const Ref& object)
    : objectKey(ComputeObjectKey(key, keyLength, object, "sAlT"))
{}

Encrypt::AesV2ObjectCryptor::~AesV2ObjectCryptor()
{
    Kernel::Wipe(objectKey);
}

int Encrypt::AesV2ObjectCryptor::Decrypt(char* out, const char* in, int size)
{
    return DecryptAes(out, in, size, objectKey);
}

int Encrypt::AesV3ObjectCryptor::Decrypt(char* out, const char* in, int size)
{
    // A key that is too short is filled up, and must not be taken for one of 128 bits.
    std::string key(AsText(fileKey));
    const Kernel::WipeAtEnd wipe(key);
    key.resize(Kernel::AES::c_maxKeySize);
    return DecryptAes(out, in, size, key);
}

Encrypt::~Encrypt()
{
    Close();
}

void Encrypt::Close()
{
    Kernel::Wipe(password);
    password.clear();
    DropKeys();
}

void Encrypt::DropKeys()
{
    SetFileKey({});
    ref = Ref();
    level = DecryptLevelNone;
}

void Encrypt::SetFileKey(std::string_view key)
{
    Kernel::Wipe(fileKey);
    fileKey.assign(key.begin(), key.end());
}

void Encrypt::SetPassword(const std::string& text)
{
    Kernel::Wipe(password);
    password = text;
    if (!ref.IsNull()) AuthenticatePassword();
}

void Encrypt::Read(const Ref& encryptRef, const std::vector<char>& id)
{
    DropKeys();
    fileId = id;
    ref = encryptRef;
    encryptMetadata = true;
    level = ref.IsNull() ? DecryptLevelOpen : DecryptLevelLocked;
    if (ref.IsNull()) return;

    Dictionary dictionary(ref, "Encrypt", Error::Encrypt, true);
    if (dictionary.GetName("Filter") != "Standard") {
        level = DecryptLevelUnsupported;
        return;
    }
    version = dictionary.GetInt("V", 0);
    revision = dictionary.GetInt("R", 0);
    permissions = dictionary.GetInt("P", 0);
    encryptMetadata = dictionary.GetBool("EncryptMetadata", true);
    Check(revision >= 2 && revision <= 6, Error::Encrypt);
    const int bits = dictionary.GetInt("Length", 40);
    Check(bits % 8 == 0 && bits >= 40 && bits <= 256, Error::Encrypt);
    keyLength = std::min(bits / 8, revision == 6 ? 48 : 32);

    const std::size_t hashSize = revision == 6 ? 48 : 32;
    ownerEntry = ReadByteString(dictionary, "O", hashSize);
    userEntry = ReadByteString(dictionary, "U", hashSize);
    if (revision == 6) {
        ownerKeyEntry = ReadByteString(dictionary, "OE", 32);
        userKeyEntry = ReadByteString(dictionary, "UE", 32);
        permsEntry = ReadByteString(dictionary, "Perms", 16);
    }
    NormalisePermissions();

    const Ref filters = dictionary.GetRef("CF");
    streamFilter = ReadFilter(dictionary.GetName("StmF"), filters);
    stringFilter = ReadFilter(dictionary.GetName("StrF"), filters);
    if (streamFilter.kind == Filter::NotSupported || stringFilter.kind == Filter::NotSupported) {
        level = DecryptLevelUnsupported;
    } else {
        AuthenticatePassword();
    }
}

void Encrypt::NormalisePermissions()
{
    effectivePermissions = permissions;
    if (revision > 2) return;
    constexpr int c_print = Permissions::Print;
    constexpr int c_extract = Permissions::Extract;
    constexpr int c_accessibility = Permissions::ExtractForAccessibility;
    constexpr int c_printHigh = Permissions::PrintHighQuality;
    const bool isPrint = (permissions & c_print) != 0;
    const bool isExtract = (permissions & c_extract) != 0;
    const int cleared = (isPrint ? 0 : c_print | c_printHigh) | (isExtract ? 0 : c_extract | c_accessibility);
    const int set = (isPrint ? c_printHigh : 0) | (isExtract ? c_accessibility : 0);
    effectivePermissions = (permissions & ~cleared) | set;
}

Encrypt::Filter Encrypt::ReadFilter(const std::string& name, const Ref& filters) const
{
    if (version < 4) return {Filter::Rc4, keyLength};
    if (name == "Identity") return {Filter::Identity, keyLength};
    // The standard takes a missing name for Identity; files without one are rather broken than half open.
    if (filters.IsNull()) return {Filter::NotSupported, keyLength};

    Dictionary list(filters, nullptr, Error::Encrypt);
    const Ref found = list.GetRef(name.c_str());
    if (found.IsNull()) return {Filter::NotSupported, keyLength};
    Dictionary entry(found, "CryptFilter", Error::Encrypt);
    const std::string method = entry.GetName("CFM");
    Filter filter{Filter::NotSupported, keyLength};
    if (method == "V2") filter.kind = Filter::Rc4;
    if (method == "AESV2") filter.kind = Filter::AesV2;
    if (method == "AESV3") filter.kind = Filter::AesV3;
    if (filter.kind == Filter::NotSupported) {
        Kernel::Trace("Unsupported PDF encryption: %1\n", method);
        return filter;
    }
    if (const int length = entry.GetInt("Length", 0); length != 0) filter.keyLength = length;
    return filter;
}

bool Encrypt::HasPermissions(Permissions::Type mask) const
{
    if (HasOwnerPermissions(level)) return true;
    return level == DecryptLevelUser && (effectivePermissions & mask) == mask;
}

bool Encrypt::IsEncrypted(const Ref& object) const
{
    return level >= DecryptLevelUnsupported && level <= DecryptLevelOwner && object.number >= 0 && !object.IsNull() &&
           !object.isInStream && object.number != ref.number;
}

Kernel::Counted<Encrypt::ObjectCryptor> Encrypt::MakeObjectCryptor(const Ref& object) const
{
    return MakeObjectCryptor(object, streamFilter);
}

Kernel::Counted<Encrypt::ObjectCryptor> Encrypt::MakeObjectCryptor(const Ref& object, Filter filter) const
{
    if (!IsEncrypted(object)) return nullptr;
    if (!Check(HasUserPermissions(level), Error::Password)) return nullptr;
    switch (filter.kind) {
    case Filter::Identity:
        return nullptr;
    case Filter::Rc4:
        return Kernel::MakeCounted<ArcV4ObjectCryptor>(fileKey, filter.keyLength, object);
    case Filter::AesV2:
        return Kernel::MakeCounted<AesV2ObjectCryptor>(fileKey, filter.keyLength, object);
    case Filter::AesV3:
        return Kernel::MakeCounted<AesV3ObjectCryptor>(fileKey);
    case Filter::NotSupported:
        break;
    }
    OnError(Error::Encrypt);
    return nullptr;
}

Kernel::Counted<Encrypt::ObjectCryptor> Encrypt::MakeObjectCryptor(const Ref& object, const DecodeParams& params) const
{
    return MakeObjectCryptor(object, ReadFilter(params.GetName("Name"), params.GetRef("CF")));
}

void Encrypt::DecryptBuf(const Ref& object, std::vector<char>& buf) const
{
    const auto cryptor = MakeObjectCryptor(object, stringFilter);
    if (!cryptor || buf.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return;
    const int size = cryptor->Decrypt(buf.data(), buf.data(), static_cast<int>(buf.size()));
    buf.resize(static_cast<std::size_t>(size));
}

std::string Encrypt::GetMethodName() const
{
    if (level == DecryptLevelNone || level == DecryptLevelOpen) return {};
    const auto getName = [](Filter filter) -> std::string {
        switch (filter.kind) {
        case Filter::Identity:
            return "none";
        case Filter::Rc4:
            return "RC4-" + std::to_string(8LL * filter.keyLength);
        case Filter::AesV2:
            return "AES-128";
        case Filter::AesV3:
            return "AES-256";
        case Filter::NotSupported:
            break;
        }
        return "unknown";
    };
    const std::string streams = getName(streamFilter);
    const std::string strings = getName(stringFilter);
    return streams == strings ? streams : streams + " for streams, " + strings + " for strings";
}

} // namespace Quillet
