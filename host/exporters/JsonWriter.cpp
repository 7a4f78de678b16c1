#include "exporters/JsonWriter.h"

#include "exporters/NumberText.h"

#include <Kernel/CharTraits.h>

#include <utility>

namespace Host {

namespace {

void AppendEscape(LongText& text, unsigned char c)
{
    switch (c) {
    case '"':
        text.Append("\\\"");
        return;
    case '\\':
        text.Append("\\\\");
        return;
    case '\b':
        text.Append("\\b");
        return;
    case '\f':
        text.Append("\\f");
        return;
    case '\n':
        text.Append("\\n");
        return;
    case '\r':
        text.Append("\\r");
        return;
    case '\t':
        text.Append("\\t");
        return;
    default:
        break;
    }
    constexpr std::string_view c_digits = "0123456789abcdef";
    text.Append("\\u00");
    text.Put(c_digits[c >> 4]);
    text.Put(c_digits[c & 15]);
}

} // namespace

JsonWriter& JsonWriter::Key(std::string_view name)
{
    BeginText().Append(name);
    EndText();
    return *this;
}

void JsonWriter::Number(double value)
{
    Prefix(rapidjson::kNumberType);
    AppendShortest(sink.text, Tidy(value));
}

void JsonWriter::Text(std::string_view value)
{
    BeginText();
    AddToText(value);
    EndText();
}

LongText& JsonWriter::BeginText()
{
    Prefix(rapidjson::kStringType);
    sink.text.Put('"');
    return sink.text;
}

void JsonWriter::AddToText(std::string_view piece)
{
    std::size_t written = 0;
    for (std::size_t next = 0; next < piece.size();) {
        const std::size_t start = next;
        const auto byte = static_cast<unsigned char>(piece[start]);
        // Bytes that are no UTF-8 decode to the replacement character.
        const bool isReplaced =
            byte >= 0x80 && Kernel::CharTraits::DecodeCodePoint(piece, next) == Kernel::CharTraits::c_replacement;
        if (byte < 0x80) ++next;
        const bool isEscaped = byte < 0x20 || byte == '"' || byte == '\\';
        if (!isReplaced && !isEscaped) continue;
        sink.text.Append(piece.substr(written, start - written));
        if (isReplaced)
            sink.text.Append("\uFFFD");
        else
            AppendEscape(sink.text, byte);
        written = next;
    }
    sink.text.Append(piece.substr(written));
}

void JsonWriter::EndText()
{
    sink.text.Put('"');
}

void JsonWriter::Take(LongText&& value)
{
    Prefix(rapidjson::kObjectType);
    sink.text.Append(std::move(value));
}

} // namespace Host
