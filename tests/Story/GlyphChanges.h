#pragma once

#include <Renderer/ColourGrayscale.h>
#include <Renderer/FillSolid.h>
#include <Story/Delta.h>
#include <Story/GlyphAtts.h>

#include <functional>
#include <vector>

namespace Story {

using GlyphChange = std::function<void(GlyphAtts&)>;

inline GlyphAtts::Fill MakeGray(double level)
{
    return Kernel::MakeCounted<Renderer::FillDescriptor>(
        Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(Renderer::ColourGrayscale::Create(level, 1, 1, ""))),
        Renderer::FillBlendMode::Normal);
}

inline Kernel::Font MakeFont(const char* name)
{
    Kernel::Font font;
    font.SetPostscriptName(name);
    return font;
}

inline Kernel::Consolidated<GlyphAtts> MakeGlyphAtts(const GlyphChange& change)
{
    const auto atts = GlyphAtts::GetDefault()->Clone();
    change(*atts);
    return Kernel::ConsolidateObjectSacrifice(atts);
}

inline Kernel::Counted<const Delta> MakeSizeDelta(double size)
{
    auto delta = Kernel::MakeCounted<Delta>();
    delta->doubles[GlyphAtt::Size] = size;
    return delta;
}

} // namespace Story
