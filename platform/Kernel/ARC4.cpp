#include <Kernel/ARC4.h>

#include <Kernel/Secret.h>

#include <nettle/arcfour.h>

namespace Kernel {

ARC4::ARC4(std::string_view key) : state(std::make_unique<arcfour_ctx>())
{
    using namespace std::string_view_literals;
    if (key.empty()) key = "\0"sv;
    key = key.substr(0, ARCFOUR_MAX_KEY_SIZE);
    arcfour_set_key(state.get(), key.size(), reinterpret_cast<const std::uint8_t*>(key.data()));
}

ARC4::~ARC4()
{
    Wipe({reinterpret_cast<char*>(state.get()), sizeof *state});
}

void ARC4::Crypt(char* out, std::string_view in)
{
    arcfour_crypt(state.get(), in.size(), reinterpret_cast<std::uint8_t*>(out),
                  reinterpret_cast<const std::uint8_t*>(in.data()));
}

} // namespace Kernel
