#include <Kernel/Digest.h>

#include <Kernel/Secret.h>

#include <nettle/md5.h>
#include <nettle/sha2.h>

namespace Kernel {

namespace {

template <typename Context, typename Init, typename Update, typename Finish>
std::string Compute(std::string_view bytes, std::size_t size, Init init, Update update, Finish finish)
{
    Context context;
    std::span<char> contextBytes(reinterpret_cast<char*>(&context), sizeof context);
    const WipeAtEnd wipe(contextBytes);
    std::string digest(size, '\0');
    init(&context);
    update(&context, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    finish(&context, size, reinterpret_cast<std::uint8_t*>(digest.data()));
    return digest;
}

} // namespace

std::string MD5::Hash(std::string_view bytes)
{
    return Compute<md5_ctx>(bytes, MD5_DIGEST_SIZE, md5_init, md5_update, md5_digest);
}

std::string Sha256::Hash(std::string_view bytes)
{
    return Compute<sha256_ctx>(bytes, SHA256_DIGEST_SIZE, sha256_init, sha256_update, sha256_digest);
}

std::string Sha384::Hash(std::string_view bytes)
{
    return Compute<sha512_ctx>(bytes, SHA384_DIGEST_SIZE, sha384_init, sha512_update, sha384_digest);
}

std::string Sha512::Hash(std::string_view bytes)
{
    return Compute<sha512_ctx>(bytes, SHA512_DIGEST_SIZE, sha512_init, sha512_update, sha512_digest);
}

} // namespace Kernel
