#include "exporters/JsonExporter.h"

#include "PermissionNames.h"
#include "exporters/Costs.h"
#include "exporters/Format.h"
#include "exporters/JsonText.h"
#include "exporters/JsonValues.h"
#include "exporters/JsonWriter.h"
#include "exporters/PathData.h"

#include <Quillet/BitmapObject.h>
#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/PdfDocument.h>
#include <Quillet/TextLineObject.h>
#include <Quillet/TreeWalk.h>

#include <Raster/DynamicBitmap.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;
using Geometry::WindingOrderMode;
using Rect = Kernel::RectT<double>;
using Params = Raster::AffineTransform::Params;

/// Piece by piece, as far as the account goes: what a document says of itself may have megabytes.
void WriteLongText(JsonWriter& json, std::string_view text)
{
    json.BeginText();
    while (!text.empty() && !Budget::IsSpent()) {
        std::size_t size = std::min(text.size(), LongText::c_blockSize);
        // A character has four bytes at the most.
        for (int i = 0; i < 3 && size < text.size() && (text[size] & 0xC0) == 0x80; ++i)
            --size;
        json.AddToText(text.substr(0, size));
        text.remove_prefix(size);
    }
    json.EndText();
}

void WritePath(JsonWriter& json, const Geometry::PolyCurveDbl* path, const Params& toPage)
{
    LongText& text = json.BeginText();
    if (path) AppendPathData(text, *path, toPage);
    json.EndText();
}

const char* GetWindingName(WindingOrderMode winding)
{
    return winding == WindingOrderMode::EvenOdd ? "evenodd" : "nonzero";
}

void WriteLine(JsonWriter& json, const Renderer::LineStyleDescriptor& descriptor)
{
    static constexpr const char* c_caps[] = {"butt", "square", "round"};
    static constexpr const char* c_joins[] = {"mitre", "mitre", "round", "bevel"};
    const Renderer::LineStyle& style = *descriptor.lineStyle;
    const bool isDashed = style.dashKind == Renderer::LineStyle::DashDashed;
    json.BeginObject();
    json.Key("width").Number(style.width);
    json.Key("cap").Text(c_caps[style.cap]);
    json.Key("join").Text(c_joins[style.join]);
    json.Key("mitreLimit").Number(style.mitreLimit);
    json.Key("dashes").BeginArray();
    if (isDashed) {
        for (const double dash : style.dashes) {
            if (!Budget::Spend(Costs::c_jsonEntry)) break;
            json.Number(dash * style.width);
        }
    }
    json.EndArray();
    json.Key("dashPhase").Number(isDashed ? style.dashPhase * style.width : 0);
    json.Key("behindFill").Flag(descriptor.isBehindFill);
    json.EndObject();
}

void AddGroup(JsonWriter& json, const GroupObject& group)
{
    WriteText(json.Key("name"), group.name);
    AddBlending(json, group.opacity, group.blendMode);
    if (group.isIsolated) json.Key("isolated").Flag(true);
    if (group.isKnockout) json.Key("knockout").Flag(true);
    if (group.isXObject) json.Key("xobject").Flag(true);
}

void AddLayer(JsonWriter& json, const LayerObject& layer)
{
    AddGroup(json, layer);
    if (!layer.isVisible) json.Key("visible").Flag(false);
    if (!layer.isPrintable) json.Key("printable").Flag(false);
    if (!layer.isEditable) json.Key("editable").Flag(false);
    json.Key("colour");
    if (layer.colour)
        WriteColour(json, *layer.colour);
    else
        json.Null();
}

void AddPath(JsonWriter& json, const PathObject& path)
{
    WritePath(json.Key("path"), path.path.Get(), path.transform);
    json.Key("winding").Text(GetWindingName(path.winding));
    WriteFill(json.Key("fill"), *path.GetBrushDescriptor());
    if (path.IsStroked()) {
        WriteFill(json.Key("stroke"), *path.penDescriptor);
        WriteLine(json.Key("line"), *path.lineStyleDescriptor);
    } else {
        json.Key("stroke").Null();
        json.Key("line").Null();
    }
    AddBlending(json, path.opacity, path.blendMode);
    if (path.isRectangle)
        json.Key("shape").Text("rectangle");
    else if (path.isEllipse)
        json.Key("shape").Text("ellipse");
    else if (path.isStraightLine)
        json.Key("shape").Text("line");
}

void AddBitmap(JsonWriter& json, const BitmapObject& bitmap)
{
    json.Key("width").Integer(bitmap.bitmap ? bitmap.bitmap->GetWidth() : 0);
    json.Key("height").Integer(bitmap.bitmap ? bitmap.bitmap->GetHeight() : 0);
    WriteFill(json.Key("fill"), *bitmap.GetBrushDescriptor());
    AddBlending(json, static_cast<double>(bitmap.opacity), bitmap.blendMode);
}

class TreeWriter : public TreePass<>
{
public:
    TreeWriter(JsonWriter& out, long long firstObjectId, const StyleNames::Names& styleNames)
        : json(out), firstId(firstObjectId), styles(styleNames)
    {}

    Step Enter(const GroupObject& group, std::monostate&) override
    {
        // The root comes in any case.
        if (!std::exchange(isRoot, false) && !Budget::Spend(Costs::c_jsonNode)) return Step::End;
        BeginNode(group);
        json.Key("children").BeginArray();
        return Step::On;
    }

    Step Visit(const Object& object, const std::monostate&) override
    {
        if (!Budget::Spend(Costs::c_jsonNode)) return Step::End;
        BeginNode(object);
        json.EndObject();
        return Step::On;
    }

    void Leave(const GroupObject&, const std::monostate&) override
    {
        json.EndArray();
        json.EndObject();
    }

private:
    void BeginNode(const Object& object)
    {
        using enum Object::Kind;
        json.BreakLine();
        json.BeginObject();
        switch (object.GetKind()) {
        case Group:
            AddCommon("group", object);
            AddGroup(json, static_cast<const GroupObject&>(object));
            break;
        case Layer:
            AddCommon("layer", object);
            AddLayer(json, static_cast<const LayerObject&>(object));
            break;
        case Path:
            AddCommon("path", object);
            AddPath(json, static_cast<const PathObject&>(object));
            break;
        case Bitmap:
            AddCommon("bitmap", object);
            AddBitmap(json, static_cast<const BitmapObject&>(object));
            break;
        case TextLine:
            AddCommon("line", object);
            AddTextLine(json, static_cast<const TextLineObject&>(object));
            break;
        case Column:
            AddCommon("column", object);
            AddColumn(json, static_cast<const ColumnObject&>(object), styles);
            break;
        }
    }

    void AddCommon(const char* type, const Object& object)
    {
        json.Key("type").Text(type);
        json.Key("id").Integer(object.id < 0 ? -1 : object.id + firstId);
        WriteBox(json.Key("bbox"), object.bbox);
        WriteBox(json.Key("box"), object.transformedBBox);
        const Params& to = object.transform;
        if (!to.IsIdentity(0)) WriteNumbers(json.Key("transform"), {to.a, to.b, to.c, to.d, to.e, to.f});
        if (object.clipPath) {
            json.Key("clip").BeginObject();
            WritePath(json.Key("path"), object.clipPath.Get(), object.transform);
            json.Key("winding").Text(GetWindingName(object.clipWinding));
            json.EndObject();
        }
        if (object.softMask) json.Key("softMask").Flag(true);
    }

    JsonWriter& json;
    const long long firstId;
    const StyleNames::Names& styles;
    bool isRoot = true;
};

} // namespace

void WriteDocument(JsonWriter& json, const PdfDocument& document)
{
    // A list is cut before the texts are: of them a part says more.
    std::vector<std::string> keywords = document.GetKeywords();
    const auto isPaid = [](const std::string& keyword) {
        return Budget::Spend(Costs::c_jsonEntry + keyword.size() * Costs::c_jsonTextByte);
    };
    keywords.erase(std::find_if_not(keywords.begin(), keywords.end(), isPaid), keywords.end());
    json.BeginObject();
    json.Key("name").Text(document.GetDocName());
    WriteLongText(json.Key("version"), document.GetVersionString());
    WriteLongText(json.Key("title"), document.GetTitle());
    WriteLongText(json.Key("author"), document.GetAuthor());
    WriteLongText(json.Key("subject"), document.GetSubject());
    json.Key("keywords").BeginArray();
    for (const std::string& keyword : keywords)
        json.Text(keyword);
    json.EndArray();
    WriteLongText(json.Key("creator"), document.GetCreator());
    WriteLongText(json.Key("producer"), document.GetProducer());
    json.Key("pageCount").Integer(document.GetPageCount());
    json.Key("decryptLevel").Integer(document.GetDecryptLevel());
    json.Key("hasUserPermissions").Flag(document.HasUserPermissions());
    json.Key("hasOwnerPermissions").Flag(document.HasOwnerPermissions());
    json.Key("isRestricted").Flag(document.IsRestricted());
    if (document.GetDecryptLevel() != DecryptLevelOpen) {
        json.Key("encryption").Text(document.GetEncryptionMethod());
        json.Key("permissions").BeginArray();
        for (const std::string& name : GetPermissionNames(document))
            json.Text(name);
        json.EndArray();
    }
    json.EndObject();
}

void WriteFonts(JsonWriter& json, const std::vector<FontInfo>& fonts)
{
    json.BeginArray();
    for (const FontInfo& font : fonts) {
        if (!Budget::Spend(Costs::c_jsonEntry)) break;
        const std::string& name = font.actualFont.postscriptName;
        json.BeginObject();
        WriteText(json.Key("name"), font.name);
        WriteText(json.Key("subtype"), font.subtype);
        json.Key("embedded").Flag(font.isEmbedded);
        json.Key("available").Flag(font.isAvailable);
        WriteText(json.Key("shownIn"), name.empty() ? font.actualFont.family : name);
        json.EndObject();
    }
    json.EndArray();
}

void BeginPage(JsonWriter& json, const Page& page, int index)
{
    // A page whose boxes cannot be read is none: that shows before anything is written.
    const std::pair<const char*, Rect> boxes[] = {{"media", page.GetMediaBox()},
                                                  {"crop", page.GetCropBox()},
                                                  {"bleed", page.GetBleedBox()},
                                                  {"trim", page.GetTrimBox()},
                                                  {"art", page.GetArtBox()}};
    const int rotate = page.GetRotate();
    const Rect size = PageBase::ApplyRotate(page.GetTrimBox(), rotate);
    json.BeginObject();
    json.Key("index").Integer(index);
    json.Key("boxes").BeginObject();
    for (const auto& [name, box] : boxes)
        WriteBox(json.Key(name), box);
    json.EndObject();
    json.Key("rotate").Integer(rotate);
    WriteNumbers(json.Key("size"), {size.GetWidth(), size.GetHeight()});
}

LongText MakeJsonHead(const PdfDocument& document)
{
    LongText text("{\"document\":");
    JsonWriter json(text);
    WriteDocument(json, document);
    text.Append(",\n\"pages\":[");
    return text;
}

LongText MakeJsonTail(const Story::StyleSheet& styles)
{
    LongText text("],\n\"styles\":");
    JsonWriter json(text);
    WriteStyles(json, styles);
    text.Append("}\n");
    return text;
}

LongText MakePageJson(const PageView& view)
{
    // The problems stand first, and the last of them may be met while the tree is written.
    LongText tree;
    JsonWriter treeJson(tree);
    TreeWriter writer(treeJson, view.firstId, view.styleNames);
    WalkTree(view.root, writer);
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;

    LongText text;
    JsonWriter json(text);
    BeginPage(json, view.page, view.index);
    json.Key("errors").BeginArray();
    for (const auto& [type, count] : view.problems) {
        json.BeginObject();
        json.Key("kind").Integer(type);
        json.Key("name").Text(GetErrorName(type));
        json.Key("count").Integer(count);
        json.EndObject();
    }
    json.EndArray();
    json.BreakLine();
    json.Key("root").Take(std::move(tree));
    json.EndObject();
    return text;
}

} // namespace Host
