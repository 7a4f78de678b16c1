#include <Story/Style.h>

#include <Renderer/ValueKey.h>
#include <Story/ValueOf.h>

#include <tuple>

namespace Story {

std::size_t Style::GetHash() const
{
    return Renderer::HashOf(std::tuple(name, type, GetHashOf(delta)));
}

bool Style::IsEqual(const Consolidatable& base) const
{
    const auto& other = static_cast<const Style&>(base);
    return name == other.name && type == other.type && AreSame(delta, other.delta);
}

} // namespace Story
