#include <Story/DropCapAtt.h>

#include <Renderer/ValueKey.h>
#include <Story/ValueOf.h>

#include <tuple>

namespace Story {

namespace {

auto KeyOf(const DropCapAtt& att)
{
    return std::tuple(att.isEnabled, att.heightInLines, Renderer::KeyOf(att.distanceToText), att.styleName);
}

} // namespace

std::size_t DropCapAtt::GetHash() const
{
    return Renderer::HashOf(std::tuple_cat(KeyOf(*this), std::tuple(GetHashOf(delta))));
}

bool operator==(const DropCapAtt& a, const DropCapAtt& b)
{
    return KeyOf(a) == KeyOf(b) && AreSame(a.delta, b.delta);
}

} // namespace Story
