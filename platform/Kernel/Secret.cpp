#include <Kernel/Secret.h>

#include <cstring>

#include <nettle/memops.h>

namespace Kernel {

void Wipe(std::span<char> bytes)
{
    if (!bytes.empty()) explicit_bzero(bytes.data(), bytes.size());
}

bool AreSecretsEqual(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && nettle_memeql_sec(a.data(), b.data(), a.size()) != 0;
}

} // namespace Kernel
