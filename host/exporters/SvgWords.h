#pragma once

#include <Quillet/TextLineObject.h>

#include <string>

namespace Host {

class XmlWriter;

/// Whether there is anything but spaces and tabs.
bool IsSeen(Quillet::TextLineObject::Chars::const_iterator first, Quillet::TextLineObject::Chars::const_iterator last);

/// Appends characters word by word from `pen` on, in points of the text element that is open, whose unit is `scale`
/// points of the line. Tabs are gaps. Each word has the `style`: not every renderer hands decorations on.
void AddWords(XmlWriter& svg, Quillet::TextLineObject::Chars::const_iterator first,
              Quillet::TextLineObject::Chars::const_iterator last, double pen, double scale,
              const std::string& style = {});

/// With `isOverriding`, what is usual is said too.
void SetFont(XmlWriter& svg, const Story::GlyphAtts& atts, bool isOverriding);

/// Appends to the value of a "style".
void AddDecorations(std::string& style, const Story::GlyphAtts& atts);

} // namespace Host
