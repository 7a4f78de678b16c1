#include <Renderer/LineStyle.h>
#include <Renderer/ValueKey.h>

#include <algorithm>

namespace Renderer {

namespace {

auto GetKey(const LineStyle& style)
{
    return std::tuple(style.cap, style.join, style.dashKind, KeyOf(style.width), KeyOf(style.mitreLimit));
}

auto GetDashKey(const LineStyle& style)
{
    return std::tuple(KeyOf(style.dashPhase), style.isDashScaledToFit);
}

bool AreSameNumbers(const std::vector<double>& a, const std::vector<double>& b)
{
    return std::ranges::equal(a, b, {}, KeyOf, KeyOf);
}

} // namespace

std::size_t LineStyle::GetHash() const
{
    // Equal dashes have equal numbers of them; that and the rest tell styles apart well enough.
    const std::size_t dashCount = dashKind == DashDashed ? dashes.size() : 0;
    return HashOf(std::tuple_cat(GetKey(*this), std::tuple(dashCount)));
}

bool LineStyle::IsEqual(const Kernel::Consolidatable& other) const
{
    const auto& style = static_cast<const LineStyle&>(other);
    if (GetKey(*this) != GetKey(style)) return false;
    return dashKind != DashDashed || (GetDashKey(*this) == GetDashKey(style) && AreSameNumbers(dashes, style.dashes));
}

} // namespace Renderer
