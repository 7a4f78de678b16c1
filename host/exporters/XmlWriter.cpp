#include "exporters/XmlWriter.h"

#include "exporters/Costs.h"
#include "exporters/NumberText.h"

#include <utility>

namespace Host {

namespace {

/// What stands for a character; nothing for one that stands for itself. In a value, tabs and line ends would be read as
/// spaces.
std::string_view GetEscape(char c, bool isValue)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return isValue ? "" : "&gt;";
    case '"':
        return isValue ? "&quot;" : "";
    case '\t':
        return isValue ? "&#9;" : "";
    case '\n':
        return isValue ? "&#10;" : "";
    case '\r':
        return isValue ? "&#13;" : "";
    default:
        return {};
    }
}

void AppendEscaped(LongText& text, std::string_view characters, bool isValue)
{
    std::size_t written = 0;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const std::string_view escape = GetEscape(characters[i], isValue);
        if (escape.empty()) continue;
        text.Append(characters.substr(written, i - written));
        text.Append(escape);
        written = i + 1;
    }
    text.Append(characters.substr(written));
}

} // namespace

void XmlWriter::EndTag()
{
    if (std::exchange(isInTag, false)) text.Put('>');
}

void XmlWriter::Begin(const char* name)
{
    EndTag();
    text.Charge(Costs::c_svgElement);
    text.Put('<');
    text.Append(name);
    names.push_back(name);
    isInTag = true;
}

void XmlWriter::Attribute(const char* name, std::string_view value)
{
    AppendEscaped(BeginAttribute(name), value, true);
    EndAttribute();
}

void XmlWriter::Attribute(const char* name, double value, int decimals)
{
    AppendNumber(BeginAttribute(name), value, decimals);
    EndAttribute();
}

LongText& XmlWriter::BeginAttribute(const char* name)
{
    text.Charge(Costs::c_svgAttribute);
    text.Put(' ');
    text.Append(name);
    text.Append("=\"");
    return text;
}

void XmlWriter::EndAttribute()
{
    text.Put('"');
}

void XmlWriter::Text(std::string_view characters)
{
    EndTag();
    AppendEscaped(text, characters, false);
}

void XmlWriter::Take(LongText&& elements)
{
    if (elements.IsEmpty()) return;
    EndTag();
    text.Append(std::move(elements));
}

void XmlWriter::End()
{
    const char* const name = names.back();
    names.pop_back();
    if (std::exchange(isInTag, false)) {
        text.Append("/>");
        return;
    }
    text.Append("</");
    text.Append(name);
    text.Put('>');
}

} // namespace Host
