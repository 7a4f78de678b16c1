#include "document/Encrypt.h"

#include <Kernel/AES.h>
#include <Kernel/Digest.h>
#include <Kernel/PreparePassword.h>
#include <Kernel/Secret.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace Quillet {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t c_paddedSize = 32;
constexpr std::size_t c_hashSize = 32;
constexpr std::size_t c_saltSize = 8;
constexpr std::size_t c_checkSaltPos = 32;
constexpr std::size_t c_keySaltPos = 40;
constexpr std::size_t c_maxPreparedSize = 127;

/// What passwords are filled up with (ISO 32000-2, algorithm 2, step a).
constexpr std::string_view c_padding = "\x28\xBF\x4E\x5E\x4E\x75\x8A\x41\x64\x00\x4E\x56\xFF\xFA\x01\x08"
                                       "\x2E\x2E\x00\xB6\xD0\x68\x3E\x80\x2F\x0C\xA9\xFE\x64\x53\x69\x7A"sv;

std::string_view AsText(const std::vector<char>& bytes)
{
    return {bytes.data(), bytes.size()};
}

std::string GetPadded(std::string_view bytes)
{
    std::string padded(bytes.substr(0, c_paddedSize));
    padded.append(c_padding, 0, c_paddedSize - padded.size());
    return padded;
}

void RepeatMd5(std::string& hash, int count)
{
    for (int i = 0; i < count; ++i)
        hash = Kernel::MD5::Hash(hash);
}

/// One pass of RC4 with each byte of the key changed by `change`.
void CryptRc4(std::string& bytes, std::string key, int change)
{
    const Kernel::WipeAtEnd wipe(key);
    for (char& c : key)
        c = static_cast<char>(c ^ change);
    Kernel::ARC4(key).Crypt(bytes.data(), bytes);
}

} // namespace

void Encrypt::AuthenticatePassword()
{
    if (level == DecryptLevelOpen) return;
    if (AuthenticatePassword(password, true) || password.empty()) return;
    if (revision >= 5) {
        auto prepared = Kernel::PreparePassword(password);
        if (!prepared) return;
        const Kernel::WipeAtEnd wipe(*prepared);
        AuthenticatePassword(std::string_view(*prepared).substr(0, c_maxPreparedSize), false);
        return;
    }
    if (!AuthenticatePasswordRev4(Kernel::StringEncoding::Make(1252)))
        AuthenticatePasswordRev4(Kernel::StringEncoding::Make(0, 0));
}

bool Encrypt::AuthenticatePasswordRev4(Kernel::Counted<Kernel::StringEncoding> encoding)
{
    if (!encoding) return false;
    // The way through the encoding keeps the characters that the writer's system could type.
    std::string bytes = encoding->FromUnicode(password, c_paddedSize);
    const Kernel::WipeAtEnd wipeBytes(bytes);
    std::string text = encoding->ToUnicode(bytes);
    const Kernel::WipeAtEnd wipeText(text);
    std::string written = Kernel::StringEncoding::MakePdfDocEncoding()->FromUnicode(text, c_paddedSize);
    const Kernel::WipeAtEnd wipeWritten(written);
    return AuthenticatePassword(written, false);
}

bool Encrypt::AuthenticatePassword(std::string_view bytes, bool isFirst)
{
    if (!isFirst && bytes == password) return false;
    if (!bytes.empty() && AuthenticatePasswordOwner(bytes)) {
        level = DecryptLevelOwner;
        return true;
    }
    if (AuthenticatePasswordUser(bytes)) {
        level = DecryptLevelUser;
        return true;
    }
    if (level != DecryptLevelNone) level = DecryptLevelLocked;
    return false;
}

bool Encrypt::AuthenticatePasswordOwner(std::string_view bytes)
{
    if (revision <= 4) return AuthenticatePasswordOwnerRev234(bytes);
    if (!AuthenticatePasswordRev6(ownerEntry, bytes, true)) return false;
    SetFileKeyRev6(bytes, ownerEntry, ownerKeyEntry, true);
    return AuthenticatePermissionsRev6();
}

bool Encrypt::AuthenticatePasswordUser(std::string_view bytes)
{
    switch (revision) {
    case 2:
        if (!Kernel::AreSecretsEqual(ComputeUserRev2(bytes), AsText(userEntry))) return false;
        break;
    case 3:
    case 4:
        if (!Kernel::AreSecretsEqual(ComputeUserRev34(bytes), AsText(userEntry).substr(0, 16))) return false;
        break;
    case 6:
        if (!AuthenticatePasswordRev6(userEntry, bytes, false)) return false;
        SetFileKeyRev6(bytes, userEntry, userKeyEntry, false);
        return AuthenticatePermissionsRev6();
    default:
        // Revision 5 was never published as a standard, and its hash is not read.
        return false;
    }
    std::string key = ComputeKeyRev234(bytes);
    const Kernel::WipeAtEnd wipe(key);
    SetFileKey(key);
    return true;
}

/// ISO 32000-2, algorithm 2. Every round hashes all 16 bytes, also where the key is shorter.
std::string Encrypt::ComputeKeyRev234(std::string_view bytes) const
{
    std::string text = GetPadded(bytes);
    const Kernel::WipeAtEnd wipe(text);
    text.reserve(text.size() + ownerEntry.size() + 8 + fileId.size());
    text += AsText(ownerEntry);
    for (int shift = 0; shift < 32; shift += 8)
        text += static_cast<char>(static_cast<std::uint32_t>(permissions) >> shift & 0xFF);
    text += AsText(fileId);
    if (revision >= 4 && !encryptMetadata) text.append(4, '\xFF');
    std::string key = Kernel::MD5::Hash(text);
    if (revision >= 3) RepeatMd5(key, 50);
    return key.substr(0, static_cast<std::size_t>(keyLength));
}

/// ISO 32000-2, algorithm 4.
std::string Encrypt::ComputeUserRev2(std::string_view bytes) const
{
    std::string entry(c_padding);
    CryptRc4(entry, ComputeKeyRev234(bytes), 0);
    return entry;
}

/// ISO 32000-2, algorithm 5.
std::string Encrypt::ComputeUserRev34(std::string_view bytes) const
{
    std::string key = ComputeKeyRev234(bytes);
    const Kernel::WipeAtEnd wipe(key);
    std::string entry = Kernel::MD5::Hash(std::string(c_padding).append(AsText(fileId)));
    for (int change = 0; change <= 19; ++change)
        CryptRc4(entry, key, change);
    return entry;
}

/// ISO 32000-2, algorithm 7.
bool Encrypt::AuthenticatePasswordOwnerRev234(std::string_view bytes)
{
    std::string padded = GetPadded(bytes);
    const Kernel::WipeAtEnd wipePadded(padded);
    std::string key = Kernel::MD5::Hash(padded);
    const Kernel::WipeAtEnd wipeKey(key);
    if (revision >= 3) RepeatMd5(key, 50);
    key.resize(std::min(key.size(), static_cast<std::size_t>(keyLength)));

    std::string user(AsText(ownerEntry));
    const Kernel::WipeAtEnd wipeUser(user);
    for (int change = revision >= 3 ? 19 : 0; change >= 0; --change)
        CryptRc4(user, key, change);
    return AuthenticatePasswordUser(user);
}

bool Encrypt::AuthenticatePasswordRev6(const std::vector<char>& hashEntry, std::string_view bytes, bool isOwner) const
{
    // The entries of revision 5 are read too short to hold a salt.
    if (hashEntry.size() < c_keySaltPos + c_saltSize) return false;
    const std::string_view entry = AsText(hashEntry);
    std::string hash = ComputeHashRev6(bytes, entry.substr(c_checkSaltPos, c_saltSize), isOwner);
    const Kernel::WipeAtEnd wipe(hash);
    return Kernel::AreSecretsEqual(hash, entry.substr(0, c_hashSize));
}

void Encrypt::SetFileKeyRev6(std::string_view bytes, const std::vector<char>& saltEntry,
                             const std::vector<char>& keyEntry, bool isOwner)
{
    std::string hash = ComputeHashRev6(bytes, AsText(saltEntry).substr(c_keySaltPos, c_saltSize), isOwner);
    const Kernel::WipeAtEnd wipe(hash);
    std::array<char, Kernel::AES::c_maxKeySize> key{};
    const Kernel::WipeAtEnd wipeKey(key);
    Kernel::AES::Decrypt(key.data(), AsText(keyEntry).substr(0, key.size()), hash, {}, Kernel::AES::Filler::None);
    SetFileKey({key.data(), key.size()});
}

/// ISO 32000-2, algorithm 13, with every difference a failure.
bool Encrypt::AuthenticatePermissionsRev6() const
{
    std::array<char, Kernel::AES::c_blockSize> perms{};
    const std::string_view entry = AsText(permsEntry).substr(0, perms.size());
    Kernel::AES::Decrypt(perms.data(), entry, AsText(fileKey), {}, Kernel::AES::Filler::None);
    std::uint32_t granted = 0;
    for (std::size_t i = 4; i-- > 0;)
        granted = granted << 8 | static_cast<unsigned char>(perms[i]);
    return perms[8] == (encryptMetadata ? 'T' : 'F') && std::string_view(perms.data() + 9, 3) == "adb" &&
           granted == static_cast<std::uint32_t>(permissions);
}

/// ISO 32000-2, algorithm 2.B.
std::string Encrypt::ComputeHashRev6(std::string_view bytes, std::string_view salt, bool isOwner) const
{
    const std::string_view owner = isOwner ? AsText(userEntry) : std::string_view();
    std::string text(bytes);
    const Kernel::WipeAtEnd wipe(text);
    text.reserve(bytes.size() + salt.size() + owner.size());
    text += salt;
    text += owner;
    std::string hash = Kernel::Sha256::Hash(text);

    std::string block;
    const Kernel::WipeAtEnd wipeBlock(block);
    constexpr std::size_t c_repetitions = 64;
    for (int round = 0;; ++round) {
        const std::size_t length = bytes.size() + hash.size() + owner.size();
        block.clear();
        block.reserve(c_repetitions * (bytes.size() + 64 + owner.size()));
        while (block.size() < c_repetitions * length) {
            block += bytes;
            block += hash;
            block += owner;
        }
        const std::string_view keys = hash;
        Kernel::AES::Encrypt(block, keys.substr(0, 16), keys.substr(16, 16));
        // A number of 16 bytes leaves the same remainder by 3 as the sum of its bytes.
        unsigned sum = 0;
        for (std::size_t i = 0; i < 16; ++i)
            sum += static_cast<unsigned char>(block[i]);
        hash = sum % 3 == 0   ? Kernel::Sha256::Hash(block)
               : sum % 3 == 1 ? Kernel::Sha384::Hash(block)
                              : Kernel::Sha512::Hash(block);
        if (round >= 63 && static_cast<unsigned char>(block.back()) <= round - 31) break;
    }
    hash.resize(c_hashSize);
    return hash;
}

} // namespace Quillet
