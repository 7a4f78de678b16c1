#include "exporters/JsonExporter.h"

#include "PermissionNames.h"
#include "exporters/ColourValues.h"
#include "exporters/Costs.h"
#include "exporters/NumberText.h"
#include "exporters/PathData.h"
#include "exporters/TextRuns.h"

#include <Quillet/BitmapObject.h>
#include <Quillet/Budget.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/PdfDocument.h>
#include <Quillet/TextLineObject.h>

#include <Raster/DynamicBitmap.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;
using Json = nlohmann::ordered_json;
using Geometry::WindingOrderMode;
using Rect = Kernel::RectT<double>;
using Params = Raster::AffineTransform::Params;

std::string Dump(const Json& json)
{
    // Texts of a file are UTF-8 by then, but a broken one must not end the export.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// A text of the file; empty if there is no more to pay for it.
Json MakeText(std::string text)
{
    if (!Budget::Spend(text.size() * Costs::c_jsonTextByte)) return "";
    return text;
}

Json MakeBox(const Rect& box)
{
    // Text without a glyph to see has no box.
    if (box.IsEmpty()) return {0, 0, 0, 0};
    return {Tidy(box.left), Tidy(box.top), Tidy(box.right), Tidy(box.bottom)};
}

Json MakeTransform(const Params& transform)
{
    return {Tidy(transform.a), Tidy(transform.b), Tidy(transform.c),
            Tidy(transform.d), Tidy(transform.e), Tidy(transform.f)};
}

const char* GetWindingName(WindingOrderMode winding)
{
    return winding == WindingOrderMode::EvenOdd ? "evenodd" : "nonzero";
}

Json MakeColour(const Renderer::Colour& colour)
{
    const ColourValues components(colour);
    Json values = Json::array();
    for (const double value : components.values)
        values.push_back(Tidy(value));
    Json json{{"model", components.model},
              {"values", std::move(values)},
              {"alpha", Tidy(colour.GetAlpha())},
              {"name", MakeText(colour.GetName())}};
    // Of a named colour, how it looks at this tint: who does not have the ink draws that.
    const Renderer::Colour& plain = colour.GetPlain();
    if (&plain != &colour && Budget::Spend(Costs::c_jsonEntry)) json["alternate"] = MakeColour(plain);
    return json;
}

Json MakeFill(const Renderer::FillDescriptor& descriptor)
{
    const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
    if (!colour) return nullptr;
    return {{"kind", "solid"}, {"colour", MakeColour(*colour)}};
}

Json MakeLine(const Renderer::LineStyleDescriptor& descriptor)
{
    static constexpr const char* c_caps[] = {"butt", "square", "round"};
    static constexpr const char* c_joins[] = {"mitre", "mitre", "round", "bevel"};
    const Renderer::LineStyle& style = *descriptor.lineStyle;
    const bool isDashed = style.dashKind == Renderer::LineStyle::DashDashed;
    Json dashes = Json::array();
    if (isDashed) {
        for (const double dash : style.dashes) {
            if (!Budget::Spend(Costs::c_jsonEntry)) break;
            dashes.push_back(Tidy(dash * style.width));
        }
    }
    return {{"width", Tidy(style.width)},           {"cap", c_caps[style.cap]},
            {"join", c_joins[style.join]},          {"mitreLimit", Tidy(style.mitreLimit)},
            {"dashes", std::move(dashes)},          {"dashPhase", isDashed ? Tidy(style.dashPhase * style.width) : 0.0},
            {"behindFill", descriptor.isBehindFill}};
}

void AddBlending(Json& json, double opacity, Renderer::FillBlendMode::BlendMode mode)
{
    if (opacity != 1) json["opacity"] = Tidy(opacity);
    if (mode != Renderer::FillBlendMode::Normal) json["blendMode"] = Renderer::FillBlendMode::GetName(mode);
}

void AddGroup(Json& json, const GroupObject& group)
{
    json["name"] = MakeText(group.name);
    AddBlending(json, group.opacity, group.blendMode);
    if (group.isIsolated) json["isolated"] = true;
    if (group.isKnockout) json["knockout"] = true;
    if (group.isXObject) json["xobject"] = true;
    const auto* layer = dynamic_cast<const LayerObject*>(&group);
    if (!layer) return;
    if (!layer->isVisible) json["visible"] = false;
    if (!layer->isPrintable) json["printable"] = false;
    if (!layer->isEditable) json["editable"] = false;
    json["colour"] = layer->colour ? MakeColour(*layer->colour) : Json();
}

/// An object that is written piece by piece: its path data may be longer than all the rest of a page.
class ObjectText
{
public:
    explicit ObjectText(LongText& out) : text(out) { text.Append("{"); }

    /// Writes the members so far, and the path behind them.
    void AddPath(const char* key, const Geometry::PolyCurveDbl* path, const Params& toPage)
    {
        BeginMember(key);
        text.Append("\"");
        if (path) AppendPathData(text, *path, toPage);
        text.Append("\"");
    }

    /// Piece by piece too, as far as the account goes: what a document says of itself may have megabytes.
    void AddText(const char* key, std::string_view value)
    {
        BeginMember(key);
        text.Append("\"");
        while (!value.empty() && !Budget::IsSpent()) {
            std::size_t size = std::min(value.size(), LongText::c_blockSize);
            // A character has four bytes at the most.
            for (int i = 0; i < 3 && size < value.size() && (value[size] & 0xC0) == 0x80; ++i)
                --size;
            const std::string piece = Dump(Json(value.substr(0, size)));
            text.Append(std::string_view(piece).substr(1, piece.size() - 2));
            value.remove_prefix(size);
        }
        text.Append("\"");
    }

    void AddClip(const Object& object)
    {
        BeginMember("clip");
        ObjectText clip(text);
        clip.AddPath("path", object.clipPath.Get(), object.transform);
        clip.members["winding"] = GetWindingName(object.clipWinding);
        clip.Flush();
        text.Append("}");
    }

    void Flush()
    {
        if (members.empty()) return;
        const std::string all = Dump(members);
        text.Append(separator);
        text.Append(std::string_view(all).substr(1, all.size() - 2));
        separator = ",";
        members.clear();
    }

    /// Those that were not written yet.
    Json members = Json::object();

private:
    void BeginMember(const char* key)
    {
        Flush();
        std::string& end = text.GetEnd();
        end.append(separator).append("\"").append(key).append("\":");
        separator = ",";
    }

    LongText& text;
    const char* separator = "";
};

void AddPath(ObjectText& object, const PathObject& path)
{
    object.AddPath("path", path.path.Get(), path.transform);
    Json& json = object.members;
    json["winding"] = GetWindingName(path.winding);
    json["fill"] = MakeFill(*path.GetBrushDescriptor());
    const bool isStroked = path.IsStroked();
    json["stroke"] = isStroked ? MakeFill(*path.penDescriptor) : Json();
    json["line"] = isStroked ? MakeLine(*path.lineStyleDescriptor) : Json();
    AddBlending(json, path.opacity, path.blendMode);
    if (path.isRectangle)
        json["shape"] = "rectangle";
    else if (path.isEllipse)
        json["shape"] = "ellipse";
    else if (path.isStraightLine)
        json["shape"] = "line";
}

void AddBitmap(Json& json, const BitmapObject& bitmap)
{
    json["width"] = bitmap.bitmap ? bitmap.bitmap->GetWidth() : 0;
    json["height"] = bitmap.bitmap ? bitmap.bitmap->GetHeight() : 0;
    json["fill"] = MakeFill(*bitmap.GetBrushDescriptor());
    AddBlending(json, static_cast<double>(bitmap.opacity), bitmap.blendMode);
}

Json MakeRun(const TextRun& run)
{
    using namespace Story::GlyphAtt;
    const Story::GlyphAtts& atts = *run.first->atts;
    const Kernel::Font& font = atts.GetDesiredFont();
    Json json{{"text", MakeText(GetRunText(run.first, run.last))},
              {"font", MakeText(font.postscriptName.empty() ? font.family : font.postscriptName)},
              {"size", Tidy(atts.GetSize())},
              {"letterSpacing", Tidy(atts.Get(LetterSpacing))},
              {"kerning", Tidy(atts.Get(Kerning))},
              {"horizontalScale", Tidy(atts.Get(HorizontalScale))},
              {"shear", Tidy(atts.Get(Shear))},
              // Upward, as designers count it.
              {"baselineShift", Tidy(0 - atts.Get(BaselineShift))}};
    if (atts.Get(Underline) != 0) json["underline"] = true;
    if (atts.Get(Strikeout) != 0) json["strikeout"] = true;
    json["highlight"] = MakeFill(*atts.GetFill(HighlightFill));
    json["fill"] = MakeFill(*atts.GetFill(Story::GlyphAtt::Fill));
    json["stroke"] = MakeFill(*atts.GetFill(StrokeFill));
    json["language"] = atts.Get(Language);
    return json;
}

void AddLine(Json& json, const TextLineObject& line)
{
    const auto position = line.GetGdiPosition();
    json["position"] = {Tidy(position.x), Tidy(position.y)};
    json["width"] = Tidy(line.width);
    json["height"] = Tidy(line.textHeight);
    json["text"] = MakeText(GetRunText(line.chars.begin(), line.chars.end()));
    AddBlending(json, 1, line.blendMode);
}

/// One by one: a line may have millions, and each is many times its text.
void AppendRuns(LongText& text, const TextLineObject& line)
{
    text.Append(",\"runs\":[");
    const char* separator = "";
    for (const TextRun& run : SplitIntoRuns(line)) {
        if (!Budget::Spend(Costs::c_jsonRun)) break;
        text.Append(separator);
        text.Append(Dump(MakeRun(run)));
        separator = ",";
    }
    text.Append("]");
}

/// A node without its children, and without the closing brace.
void AppendNode(LongText& text, const Object& object, long long firstId)
{
    const auto* group = object.AsGroup();
    const auto* path = group ? nullptr : dynamic_cast<const PathObject*>(&object);
    const auto* line = group || path ? nullptr : dynamic_cast<const TextLineObject*>(&object);
    const auto* bitmap = group || path || line ? nullptr : dynamic_cast<const BitmapObject*>(&object);
    ObjectText node(text);
    Json& json = node.members;
    json["type"] = group ? group->IsLayer() ? "layer" : "group" : path ? "path" : line ? "line" : "bitmap";
    json["id"] = object.id < 0 ? -1 : object.id + firstId;
    json["bbox"] = MakeBox(object.bbox);
    json["box"] = MakeBox(object.transformedBBox);
    if (!object.transform.IsIdentity(0)) json["transform"] = MakeTransform(object.transform);
    if (object.clipPath) node.AddClip(object);
    if (object.softMask) json["softMask"] = true;
    if (group) AddGroup(json, *group);
    if (path) AddPath(node, *path);
    if (line) AddLine(json, *line);
    if (bitmap) AddBitmap(json, *bitmap);
    node.Flush();
    if (line) AppendRuns(text, *line);
}

/// The tree as text. Trees may be deeper than the stack, so the walk keeps its own.
void AppendTree(LongText& text, const GroupObject& root, long long firstId)
{
    struct Level
    {
        const GroupObject* group;
        std::size_t next;
    };
    std::vector<Level> levels;
    const auto open = [&](const GroupObject& group) {
        AppendNode(text, group, firstId);
        text.Append(",\"children\":[");
        levels.push_back({&group, 0});
    };
    open(root);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.group->children.size() || !Budget::Spend(Costs::c_jsonNode)) {
            text.Append("]}");
            levels.pop_back();
            continue;
        }
        if (level.next > 0) text.Append(",\n");
        const Object& child = *level.group->children[level.next++];
        if (const GroupObject* group = child.AsGroup()) {
            open(*group);
        } else {
            AppendNode(text, child, firstId);
            text.Append("}");
        }
    }
}

} // namespace

void AppendDocumentJson(LongText& text, const PdfDocument& document)
{
    Json keywords = Json::array();
    for (std::string& keyword : document.GetKeywords()) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        keywords.push_back(MakeText(std::move(keyword)));
    }
    ObjectText object(text);
    Json& json = object.members;
    json["name"] = document.GetDocName();
    object.AddText("version", document.GetVersionString());
    object.AddText("title", document.GetTitle());
    object.AddText("author", document.GetAuthor());
    object.AddText("subject", document.GetSubject());
    json["keywords"] = std::move(keywords);
    object.AddText("creator", document.GetCreator());
    object.AddText("producer", document.GetProducer());
    json["pageCount"] = document.GetPageCount();
    json["decryptLevel"] = static_cast<int>(document.decryptLevel);
    json["hasUserPermissions"] = document.HasUserPermissions();
    json["hasOwnerPermissions"] = document.HasOwnerPermissions();
    json["isRestricted"] = document.IsRestricted();
    if (document.decryptLevel != DecryptLevelOpen) {
        json["encryption"] = document.GetEncryptionMethod();
        json["permissions"] = GetPermissionNames(document);
    }
    object.Flush();
    text.Append("}");
}

void AppendFontsJson(LongText& text, const std::vector<FontInfo>& fonts)
{
    text.Append("[");
    const char* separator = "";
    for (const FontInfo& font : fonts) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        const std::string& name = font.actualFont.postscriptName;
        const Json json{{"name", MakeText(font.name)},
                        {"subtype", MakeText(font.subtype)},
                        {"embedded", font.isEmbedded},
                        {"available", font.isAvailable},
                        {"shownIn", MakeText(name.empty() ? font.actualFont.family : name)}};
        text.Append(separator);
        text.Append(Dump(json));
        separator = ",";
    }
    text.Append("]");
}

std::string MakePageHeaderJson(const Page& page, int index)
{
    const Rect size = PageBase::ApplyRotate(page.GetTrimBox(), page.GetRotate());
    const Json json{{"index", index},
                    {"boxes",
                     {{"media", MakeBox(page.GetMediaBox())},
                      {"crop", MakeBox(page.GetCropBox())},
                      {"bleed", MakeBox(page.GetBleedBox())},
                      {"trim", MakeBox(page.GetTrimBox())},
                      {"art", MakeBox(page.GetArtBox())}}},
                    {"rotate", page.GetRotate()},
                    {"size", {Tidy(size.GetWidth()), Tidy(size.GetHeight())}}};
    std::string text = Dump(json);
    text.pop_back();
    return text;
}

LongText MakePageJson(const Page& page, int index, const GroupObject& root, Problems& problems, long long firstId)
{
    // The problems stand first, and the last of them may be met while the tree is written.
    LongText tree;
    AppendTree(tree, root, firstId);
    tree.Append("}");
    if (Budget::IsSpent()) problems[Error::CutShort] = 1;

    Json errors = Json::array();
    for (const auto& [type, count] : problems) {
        errors.push_back({{"kind", static_cast<int>(type)}, {"name", GetErrorName(type)}, {"count", count}});
    }
    LongText text(MakePageHeaderJson(page, index) + ",\"errors\":" + Dump(errors) + ",\n\"root\":");
    text.Append(std::move(tree));
    return text;
}

} // namespace Host
