#pragma once

#include "exporters/LongText.h"

#include <string_view>
#include <vector>

namespace Host {

/// Writes XML at the end of a text as it comes: nothing is held but the elements that are open.
///
/// Elements, attributes and their bytes are paid for (`Quillet::Budget`), and come in any case. Names are literals.
class XmlWriter
{
public:
    explicit XmlWriter(LongText& out) : text(out) {}
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;

    void Begin(const char* name);
    /// Of the element that has just begun; in UTF-8, of characters that XML can hold.
    void Attribute(const char* name, std::string_view value);
    void Attribute(const char* name, double value, int decimals = 6);
    /// Where a value that needs no escapes is appended, up to `EndAttribute`.
    LongText& BeginAttribute(const char* name);
    void EndAttribute();
    void Text(std::string_view characters);
    /// Takes elements that were written to a text of their own.
    void Take(LongText&& elements);
    /// The element that began last.
    void End();

private:
    void EndTag();

    LongText& text;
    std::vector<const char*> names;
    /// Attributes may follow.
    bool isInTag = false;
};

} // namespace Host
