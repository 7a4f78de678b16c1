#pragma once

#include <Kernel/Consolidated.h>
#include <Story/DropCapAtt.h>
#include <Story/ListAtt.h>
#include <Story/ParagraphAtt.h>
#include <Story/TabStops.h>

#include <array>

namespace Story {

/// How a paragraph is set: alignment, leading, indents, tabs, list, drop cap. A value to be interned; what is interned
/// does not change any more, and neither does what it points to.
class QUILLET_API ParagraphAtts : public Kernel::Consolidatable
{
public:
    /// Left-aligned, with the word spaces of the fonts, and without indents, spaces, stops, list or drop cap.
    static const Kernel::Consolidated<ParagraphAtts>& GetDefault();
    Kernel::Counted<ParagraphAtts> Clone() const { return Kernel::MakeCounted<ParagraphAtts>(*this); }

    void Set(ParagraphAtt::Int attribute, int value);
    void Set(ParagraphAtt::Double attribute, double value);
    /// The attribute goes with the kind of value; null takes it away.
    void Set(ParagraphAtt::Object attribute, Kernel::Counted<const TabStops> value);
    void Set(ParagraphAtt::Object attribute, Kernel::Counted<const ListAtt> value);
    void Set(ParagraphAtt::Object attribute, Kernel::Counted<const DropCapAtt> value);

    int Get(ParagraphAtt::Int attribute) const;
    double Get(ParagraphAtt::Double attribute) const;
    AlignX::Type GetAlignment() const { return static_cast<AlignX::Type>(Get(ParagraphAtt::Alignment)); }
    /// Never null.
    const Kernel::Counted<const TabStops>& GetTabStops() const { return tabStops; }
    const Kernel::Counted<const ListAtt>& GetList() const { return list; }
    /// Null for none.
    const Kernel::Counted<const DropCapAtt>& GetDropCap() const { return dropCap; }

    ParagraphAtts();
    std::size_t GetHash() const override;
    bool IsEqual(const Consolidatable& other) const override;

private:
    std::array<int, 2> ints{};
    /// By their numbers, which leave some places unused.
    std::array<double, 11> doubles{};
    Kernel::Counted<const TabStops> tabStops;
    Kernel::Counted<const ListAtt> list;
    Kernel::Counted<const DropCapAtt> dropCap;
};

} // namespace Story
