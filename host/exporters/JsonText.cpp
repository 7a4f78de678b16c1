#include "exporters/JsonText.h"

#include "exporters/Costs.h"
#include "exporters/JsonValues.h"
#include "exporters/JsonWriter.h"
#include "exporters/TextRuns.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/TextLineObject.h>

#include <Story/Story.h>
#include <Story/StyleSheet.h>

#include <string>
#include <utility>

namespace Host {

using namespace Quillet;

namespace {

constexpr std::pair<Story::GlyphAtt::Double, const char*> c_doubleKeys[] = {
    {Story::GlyphAtt::Size, "size"},       {Story::GlyphAtt::LetterSpacing, "letterSpacing"},
    {Story::GlyphAtt::Kerning, "kerning"}, {Story::GlyphAtt::HorizontalScale, "horizontalScale"},
    {Story::GlyphAtt::Shear, "shear"},     {Story::GlyphAtt::BaselineShift, "baselineShift"},
};

constexpr std::pair<Story::GlyphAtt::Int, const char*> c_flagKeys[] = {
    {Story::GlyphAtt::Underline, "underline"},
    {Story::GlyphAtt::Strikeout, "strikeout"},
};

constexpr std::pair<Story::GlyphAtt::Object, const char*> c_fillKeys[] = {
    {Story::GlyphAtt::HighlightFill, "highlight"},
    {Story::GlyphAtt::Fill, "fill"},
    {Story::GlyphAtt::StrokeFill, "stroke"},
};

const std::string& GetFontName(const Kernel::Font& font)
{
    return font.postscriptName.empty() ? font.family : font.postscriptName;
}

/// As designers count it: shifts are upward.
double GetForReader(Story::GlyphAtt::Double attribute, double value)
{
    return attribute == Story::GlyphAtt::BaselineShift ? 0 - value : value;
}

void WriteRun(JsonWriter& json, const std::string& text, const Story::GlyphAtts& atts)
{
    json.BeginObject();
    WriteText(json.Key("text"), text);
    WriteText(json.Key("font"), GetFontName(atts.GetDesiredFont()));
    for (const auto& [attribute, key] : c_doubleKeys)
        json.Key(key).Number(GetForReader(attribute, atts.Get(attribute)));
    for (const auto& [attribute, key] : c_flagKeys) {
        if (atts.Get(attribute) != 0) json.Key(key).Flag(true);
    }
    for (const auto& [attribute, key] : c_fillKeys)
        WriteFill(json.Key(key), *atts.GetFill(attribute));
    json.Key("language").Text(atts.Get(Story::GlyphAtt::Language));
    json.EndObject();
}

/// Only what it changes.
void WriteDelta(JsonWriter& json, const Story::Delta& delta)
{
    json.BeginObject();
    if (delta.font) WriteText(json.Key("font"), GetFontName(*delta.font));
    for (const auto& [attribute, key] : c_doubleKeys) {
        const auto found = delta.doubles.find(attribute);
        if (found != delta.doubles.end()) json.Key(key).Number(GetForReader(attribute, found->second));
    }
    for (const auto& [attribute, key] : c_flagKeys) {
        const auto found = delta.ints.find(attribute);
        if (found != delta.ints.end()) json.Key(key).Flag(found->second != 0);
    }
    for (const auto& [attribute, key] : c_fillKeys) {
        const auto found = delta.fills.find(attribute);
        if (found == delta.fills.end()) continue;
        json.Key(key);
        if (found->second)
            WriteFill(json, *found->second);
        else
            json.Null();
    }
    if (delta.language) json.Key("language").Text(*delta.language);
    json.EndObject();
}

const char* GetAlignName(Story::AlignX::Type align)
{
    switch (align) {
    case Story::AlignX::Centre:
        return "centre";
    case Story::AlignX::Right:
        return "right";
    case Story::AlignX::Justified:
    case Story::AlignX::JustifiedCentre:
    case Story::AlignX::JustifiedRight:
    case Story::AlignX::JustifiedAll:
        return "justified";
    case Story::AlignX::Left:
    case Story::AlignX::Mixed:
        break;
    }
    return "left";
}

const char* GetFormatName(Story::NumberFormat format)
{
    switch (format) {
    case Story::NumberFormat::UpperRoman:
        return "upperRoman";
    case Story::NumberFormat::LowerRoman:
        return "lowerRoman";
    case Story::NumberFormat::UpperLetter:
        return "upperLetter";
    case Story::NumberFormat::LowerLetter:
        return "lowerLetter";
    case Story::NumberFormat::Decimal:
        break;
    }
    return "decimal";
}

void WriteTabs(JsonWriter& json, const Story::TabStops& stops)
{
    static constexpr const char* c_types[] = {"left", "left", "centre", "right", "decimal"};
    json.BeginArray();
    for (const Story::TabStop& stop : stops) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        json.BeginObject();
        json.Key("position").Number(stop.position);
        json.Key("type").Text(c_types[stop.type]);
        json.Key("fromRight").Flag(stop.fromRight);
        json.Key("leader").Text(stop.leader == Story::TabLeader::Dots ? "dots" : "none");
        json.EndObject();
    }
    json.EndArray();
}

const std::string& FindStyle(const StyleNames::Names& styles, const std::string& name)
{
    const auto found = styles.find(name);
    return found == styles.end() ? name : found->second;
}

void WriteList(JsonWriter& json, const Story::ListAtt& list, const ListMarker& marker, const StyleNames::Names& styles)
{
    json.BeginObject();
    json.Key("type").Text(list.type == Story::ListType::Number ? "number" : "bullet");
    WriteText(json.Key("text"), GetMarkerText(list, "%1"));
    json.Key("format").Text(GetFormatName(list.format));
    json.Key("start").Integer(list.start);
    json.Key("restart").Flag(marker.isRestart);
    if (!list.styleName.empty()) WriteText(json.Key("style"), FindStyle(styles, list.styleName));
    json.EndObject();
}

void WriteDropCap(JsonWriter& json, const Story::DropCapAtt& cap, const StyleNames::Names& styles)
{
    json.BeginObject();
    json.Key("lines").Integer(cap.heightInLines);
    json.Key("distance").Number(cap.distanceToText);
    WriteText(json.Key("style"), FindStyle(styles, cap.styleName));
    json.EndObject();
}

void WriteParagraph(JsonWriter& json, const ColumnText::Paragraph& paragraph, const StyleNames::Names& styles)
{
    using namespace Story::ParagraphAtt;
    const Story::ParagraphAtts& atts = *paragraph.atts;
    json.BreakLine();
    json.BeginObject();
    std::string text;
    for (const Story::Story::Run& run : *paragraph.runs)
        text += MakeUtf8(run.text);
    WriteText(json.Key("text"), text);
    json.Key("align").Text(GetAlignName(atts.GetAlignment()));
    json.Key("leading").Number(atts.Get(Leading));
    json.Key("left").Number(atts.Get(LeftIndent));
    json.Key("right").Number(atts.Get(RightIndent));
    json.Key("firstLine").Number(atts.Get(FirstLineIndent));
    json.Key("spaceBefore").Number(atts.Get(SpaceBefore));
    WriteNumbers(json.Key("wordSpace"), {atts.Get(WordSpaceMin), atts.Get(WordSpaceDesired), atts.Get(WordSpaceMax)});
    WriteTabs(json.Key("tabs"), *atts.GetTabStops());
    if (paragraph.IsItem()) WriteList(json.Key("list"), *atts.GetList(), paragraph.marker, styles);
    if (paragraph.HasDropCap()) WriteDropCap(json.Key("dropCap"), *atts.GetDropCap(), styles);
    json.Key("runs").BeginArray();
    for (const Story::Story::Run& run : *paragraph.runs) {
        if (!Budget::Spend(Costs::c_jsonRun)) break;
        WriteRun(json, MakeUtf8(run.text), *run.atts);
    }
    json.EndArray();
    json.EndObject();
}

} // namespace

void AddTextLine(JsonWriter& json, const TextLineObject& line)
{
    const auto position = line.GetGdiPosition();
    WriteNumbers(json.Key("position"), {position.x, position.y});
    json.Key("width").Number(line.width);
    json.Key("height").Number(line.textHeight);
    WriteText(json.Key("text"), GetRunText(line.chars.begin(), line.chars.end()));
    AddBlending(json, 1, line.blendMode);
    json.Key("runs").BeginArray();
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_jsonRun)) break;
        WriteRun(json, GetRunText(run.first, run.last), *run.first->atts);
    }
    json.EndArray();
}

void AddColumn(JsonWriter& json, const ColumnObject& column, const StyleNames::Names& styles)
{
    const auto frame = column.GetStoryFrameBox();
    const auto origin = column.GetStoryArtOrigin();
    WriteNumbers(json.Key("frame"), {frame.left, frame.top, frame.right, frame.bottom});
    WriteNumbers(json.Key("origin"), {origin.x, origin.y});
    json.Key("artText").Flag(column.IsArtText());
    AddBlending(json, 1, column.GetBlendMode());
    json.Key("lines").BeginArray();
    for (const auto& line : column.lines) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        const auto position = line->GetGdiPosition();
        json.BeginObject();
        WriteNumbers(json.Key("position"), {position.x, position.y});
        json.Key("width").Number(line->width);
        WriteText(json.Key("text"), GetReadText(*line));
        json.EndObject();
    }
    json.EndArray();
    json.Key("paragraphs").BeginArray();
    const ColumnText text(column);
    for (const ColumnText::Paragraph& paragraph : text.GetParagraphs()) {
        if (!Budget::Spend(Costs::c_jsonParagraph)) break;
        WriteParagraph(json, paragraph, styles);
    }
    json.EndArray();
}

void WriteStyles(JsonWriter& json, const Story::StyleSheet& sheet)
{
    json.BeginArray();
    for (const auto& style : sheet.GetStyles()) {
        if (!Budget::Spend(Costs::c_jsonRun)) break;
        json.BreakLine();
        json.BeginObject();
        WriteText(json.Key("name"), style->GetName());
        WriteDelta(json.Key("delta"), style->GetDelta() ? *style->GetDelta() : Story::Delta());
        json.EndObject();
    }
    json.EndArray();
}

} // namespace Host
