#include <Story/ParagraphAtts.h>

#include <Kernel/HashAccumulator.h>
#include <Renderer/ValueKey.h>
#include <Story/ValueOf.h>

#include <algorithm>

namespace Story {

namespace {

const Kernel::Counted<const TabStops>& GetNoTabStops()
{
    static const auto& none = *new Kernel::Counted<const TabStops>(Kernel::MakeCounted<TabStops>());
    return none;
}

const Kernel::Counted<const ListAtt>& GetNoList()
{
    static const auto& none = *new Kernel::Counted<const ListAtt>(Kernel::MakeCounted<ListAtt>());
    return none;
}

} // namespace

ParagraphAtts::ParagraphAtts() : tabStops(GetNoTabStops()), list(GetNoList())
{
    for (const ParagraphAtt::Double ratio :
         {ParagraphAtt::WordSpaceMin, ParagraphAtt::WordSpaceDesired, ParagraphAtt::WordSpaceMax})
        Set(ratio, 1.0);
}

const Kernel::Consolidated<ParagraphAtts>& ParagraphAtts::GetDefault()
{
    static const auto& atts = *new Kernel::Consolidated<ParagraphAtts>(
        Kernel::ConsolidateObjectSacrifice(Kernel::MakeCounted<ParagraphAtts>()));
    return atts;
}

void ParagraphAtts::Set(ParagraphAtt::Int attribute, int value)
{
    ints[static_cast<std::size_t>(attribute)] = value;
}

void ParagraphAtts::Set(ParagraphAtt::Double attribute, double value)
{
    doubles[static_cast<std::size_t>(attribute)] = value;
}

void ParagraphAtts::Set(ParagraphAtt::Object, Kernel::Counted<const TabStops> value)
{
    if (!value) value = GetNoTabStops();
    tabStops = std::move(value);
}

void ParagraphAtts::Set(ParagraphAtt::Object, Kernel::Counted<const ListAtt> value)
{
    if (!value) value = GetNoList();
    list = std::move(value);
}

void ParagraphAtts::Set(ParagraphAtt::Object, Kernel::Counted<const DropCapAtt> value)
{
    dropCap = std::move(value);
}

int ParagraphAtts::Get(ParagraphAtt::Int attribute) const
{
    return ints[static_cast<std::size_t>(attribute)];
}

double ParagraphAtts::Get(ParagraphAtt::Double attribute) const
{
    return doubles[static_cast<std::size_t>(attribute)];
}

std::size_t ParagraphAtts::GetHash() const
{
    std::size_t hash = Kernel::GetHashSeed();
    for (const int value : ints)
        Kernel::AddToHash(hash, value);
    for (const double value : doubles)
        Kernel::AddToHash(hash, Renderer::KeyOf(value));
    for (const std::size_t part : {GetHashOf(tabStops), GetHashOf(list), GetHashOf(dropCap)})
        Kernel::AddToHash(hash, part);
    return hash;
}

bool ParagraphAtts::IsEqual(const Consolidatable& base) const
{
    const auto& other = static_cast<const ParagraphAtts&>(base);
    return ints == other.ints && std::ranges::equal(doubles, other.doubles, {}, Renderer::KeyOf, Renderer::KeyOf) &&
           AreSame(tabStops, other.tabStops) && AreSame(list, other.list) && AreSame(dropCap, other.dropCap);
}

} // namespace Story
