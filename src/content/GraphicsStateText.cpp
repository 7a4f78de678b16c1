// The text part of a graphics state.

#include "content/GraphicsState.h"

#include "document/Limits.h"
#include "fonts/CodeSequence.h"
#include "fonts/Font.h"
#include "content/TextHandler.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

#include <Kernel/CharTraits.h>
#include <Renderer/FillDescriptor.h>
#include <Renderer/LineStyle.h>
#include <Renderer/LineStyleDescriptor.h>
#include <Story/GlyphAtts.h>

#include <cmath>
#include <utility>

namespace Quillet {

using namespace Story::GlyphAtt;

void GraphicsState::SetFont(Kernel::Counted<const Quillet::Font> newFont, double size)
{
    if (newFont == font && fontSize * fontSign == size) return;
    OnGraphicsStateChanging();
    font = std::move(newFont);
    fontSize = std::abs(size);
    fontSign = size < 0 ? -1 : 1;
}

Kernel::Consolidated<Story::GlyphAtts> GraphicsState::MakeGlyphAtts(const Params& lineTransform) const
{
    Budget::Spend(Limits::c_objectUnits);
    Kernel::Counted<Story::GlyphAtts> atts = Story::GlyphAtts::GetDefault()->Clone();
    if (page && page->ref.document) atts->Set(Language, page->ref.document->GetLanguageId());
    if (font) font->AddTo(*atts);
    atts->Set(Size, fontSize * textTransform.y * (font ? font->GetSizeScale() : 1));
    atts->Set(Kerning, 0);
    atts->Set(HorizontalScale, fontSign * (textTransform.x * textWidth) / (textTransform.y * 100));
    atts->Set(Shear, -textTransform.shear);

    const Params userToLine = lineTransform.GetInverse() * ltCurrent;
    const bool isFilled = (renderFlags & 2) != 0 && !fillDescriptor->IsEmpty();
    atts->Set(Fill, isFilled
                        ? MakeFillDescriptorWithAlpha(false, FillRequiresOpacity(false) ? 1 : fillAlpha, userToLine)
                        : Renderer::FillDescriptor::CreateNone());
    const bool isStroked = (renderFlags & 1) != 0 && !strokeDescriptor->IsEmpty() && lineStyle->width > 0;
    if (isStroked) {
        atts->Set(StrokeFill,
                  MakeFillDescriptorWithAlpha(true, FillRequiresOpacity(true) ? 1 : strokeAlpha, userToLine));
        atts->Set(Story::GlyphAtt::LineStyle, MakeLineStyleDescriptor(userToLine));
    } else {
        atts->Set(StrokeFill, Renderer::FillDescriptor::CreateNone());
        atts->Set(Story::GlyphAtt::LineStyle, Renderer::LineStyleDescriptor::CreateNone());
    }
    AddAdvanceTo(*atts);
    return Kernel::ConsolidateObjectSacrifice(std::move(atts));
}

} // namespace Quillet
