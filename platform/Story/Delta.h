#pragma once

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Font.h>
#include <Story/GlyphAtts.h>

#include <array>
#include <map>
#include <optional>
#include <string>

namespace Story {

/// How the look of some glyphs differs from that of others: the attributes that are not the same, with their values.
class QUILLET_API Delta : public Kernel::Countable
{
public:
    std::map<GlyphAtt::Double, double> doubles;
    std::map<GlyphAtt::Int, int> ints;
    std::map<GlyphAtt::Object, GlyphAtts::Fill> fills;
    std::optional<GlyphAtts::LineStyle> lineStyle;
    std::optional<std::string> language;
    std::optional<Kernel::Font> font;

    bool IsEmpty() const;
    /// Sets the attributes that the delta has; the others stay.
    void ApplyTo(GlyphAtts& atts) const;
    std::size_t GetHash() const;

    friend QUILLET_API bool operator==(const Delta& a, const Delta& b);
};

/// What makes of `base` the look of `atts`; never null, empty where both are the same. Without `withLanguage`, the
/// language is left out.
QUILLET_API Kernel::Counted<Delta> MakeLocalGlyphFormatting(const Kernel::Consolidated<GlyphAtts>& atts,
                                                            const Kernel::Consolidated<GlyphAtts>& base,
                                                            bool withLanguage);

/// Takes attributes out of a delta.
class QUILLET_API MutableDeltaVisitor
{
public:
    explicit MutableDeltaVisitor(Delta& visited) : delta(visited) {}
    void Visit(GlyphAtt::Double attribute) { delta.doubles.erase(attribute); }

private:
    Delta& delta;
};

} // namespace Story
