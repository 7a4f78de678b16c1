#include <Story/ListAtt.h>

#include <Renderer/ValueKey.h>
#include <Story/ValueOf.h>

#include <tuple>

namespace Story {

namespace {

auto KeyOf(const ListAtt& att)
{
    return std::tuple(att.type, att.format, att.restartType, att.start, att.isRestart, att.align,
                      Renderer::KeyOf(att.tabStopIndent), att.styleName);
}

} // namespace

std::size_t ListAtt::GetHash() const
{
    return Renderer::HashOf(std::tuple_cat(KeyOf(*this), std::tuple(text.GetHash(), GetHashOf(delta))));
}

bool operator==(const ListAtt& a, const ListAtt& b)
{
    return KeyOf(a) == KeyOf(b) && a.text == b.text && AreSame(a.delta, b.delta);
}

} // namespace Story
