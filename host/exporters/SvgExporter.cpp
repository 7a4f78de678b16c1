#include "exporters/SvgExporter.h"

#include "exporters/Format.h"
#include "exporters/PathData.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgText.h"

#include <Quillet/Budget.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/TextLineObject.h>
#include <Quillet/TreeWalk.h>

#include <cmath>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;
using Geometry::WindingOrderMode;
using Params = Raster::AffineTransform::Params;

/// Turns and mirrors, and scales both directions alike.
bool IsSimilarity(const Params& transform)
{
    const double x = std::hypot(transform.a, transform.b);
    const double y = std::hypot(transform.c, transform.d);
    const double skew = transform.a * transform.c + transform.b * transform.d;
    return x > 0 && std::abs(x - y) <= 1e-4 * x && std::abs(skew) <= 1e-4 * x * y;
}

class SvgWriter : TreePass<pugi::xml_node>
{
public:
    SvgWriter(const Page& page, const std::string& title, const Raster::ICCManager::ICCProfileSet& profiles)
        : svg(AddPage(document.root(), page)), defs(AddHead(svg, title)), paint(profiles, defs)
    {}

    LongText Write(const GroupObject& root)
    {
        WalkTree(root, *this);
        if (!defs.first_child()) svg.remove_child(defs);
        struct Writer : pugi::xml_writer
        {
            void write(const void* data, std::size_t size) override
            {
                text.Append({static_cast<const char*>(data), size});
            }
            LongText text;
        } out;
        // What is written is paid for since it stands in the tree.
        const Budget::Reprieve reprieve;
        document.save(out, "", pugi::format_raw, pugi::encoding_utf8);
        out.text.Append("\n");
        return std::move(out.text);
    }

private:
    static pugi::xml_node AddPage(pugi::xml_node document, const Page& page)
    {
        const auto size = PageBase::ApplyRotate(page.GetTrimBox(), page.GetRotate());
        const std::string width = MakeNumber(size.GetWidth());
        const std::string height = MakeNumber(size.GetHeight());
        const pugi::xml_node node = Append(document, "svg");
        Set(node, "xmlns", "http://www.w3.org/2000/svg");
        Set(node, "xmlns:inkscape", "http://www.inkscape.org/namespaces/inkscape");
        Set(node, "xmlns:sodipodi", "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd");
        Set(node, "version", "1.1");
        // A page is an isolated group that is painted before it is put on paper (ISO 32000-2, 11.4.7): its blend modes
        // never see the paper.
        Set(node, "style", "isolation:isolate");
        Set(node, "width", width + "pt");
        Set(node, "height", height + "pt");
        Set(node, "viewBox", "0 0 " + width + " " + height);
        return node;
    }

    /// What stands before the content; gives where definitions go.
    static pugi::xml_node AddHead(pugi::xml_node svg, const std::string& title)
    {
        if (!title.empty()) Append(svg, "title").text().set(MakeXmlText(title).c_str());
        return Append(svg, "defs");
    }

    /// The level is the element of the group; for the root, none as yet.
    Step Enter(const GroupObject& group, pugi::xml_node& node) override
    {
        if (!node) {
            node = IsPlain(group) ? svg : AddGroup(svg, group);
            return Step::On;
        }
        if (Budget::IsSpent()) return Step::End;
        node = AddGroup(node, group);
        return Step::On;
    }

    Step Visit(const Object& object, const pugi::xml_node& parent) override
    {
        if (Budget::IsSpent()) return Step::End;
        switch (object.GetKind()) {
        case Object::Kind::Group:
        case Object::Kind::Layer:
            break; // These are entered.
        case Object::Kind::Path:
            AddPath(parent, static_cast<const PathObject&>(object));
            break;
        case Object::Kind::TextLine:
            AddTextLine(parent, static_cast<const TextLineObject&>(object), paint);
            break;
        case Object::Kind::Column: // There are none before a tree is reduced.
        case Object::Kind::Bitmap:
            break; // Pictures are not part of these files yet.
        }
        return Step::On;
    }

    /// A group that the SVG element itself can stand for.
    static bool IsPlain(const GroupObject& group) { return !group.clipPath && !group.IsPreserve(); }

    pugi::xml_node AddGroup(pugi::xml_node parent, const GroupObject& group)
    {
        pugi::xml_node node = Append(parent, "g");
        std::string style;
        if (group.IsLayer()) {
            const auto& layer = static_cast<const LayerObject&>(group);
            Set(node, "inkscape:groupmode", "layer");
            if (!layer.isEditable) Set(node, "sodipodi:insensitive", "true");
            if (!layer.isVisible) AddStyle(style, "display:none");
        }
        if (!group.name.empty()) Set(node, "inkscape:label", MakeXmlText(group.name));
        if (group.clipPath) paint.SetClip(node, *group.clipPath, group.clipWinding, group.transform);
        if (group.opacity != 1) Set(node, "opacity", MakeNumber(group.opacity));
        if (group.isIsolated) AddStyle(style, "isolation:isolate");
        AddBlendMode(style, group.blendMode);
        if (!style.empty()) Set(node, "style", style);
        return node;
    }

    void AddPath(pugi::xml_node parent, const PathObject& object)
    {
        if (!object.path) return;
        pugi::xml_node node = Append(parent, "path");
        const bool isStroked = object.IsStroked();
        // A line has one width on the page, which SVG can say only where x and y are scaled alike; elsewhere the path
        // itself moves to the page, and its clip with it.
        const bool isOnPage = isStroked && !IsSimilarity(object.transform);
        if (isOnPage) {
            Set(node, "d", MakePathData(*MakeMoved(*object.path, object.transform), Params()));
        } else {
            Set(node, "d", MakePathData(*object.path, object.transform));
            if (!object.transform.IsIdentity(0)) Set(node, "transform", MakeTransform(object.transform));
        }
        paint.SetFill(node, *object.GetBrushDescriptor());
        if (object.IsFilled() && object.winding == WindingOrderMode::EvenOdd) Set(node, "fill-rule", "evenodd");
        if (isStroked) {
            const double scale = isOnPage ? 1 : GetScale(object.transform);
            paint.SetStroke(node, *object.penDescriptor, *object.lineStyleDescriptor, scale);
        }
        if (object.clipPath && isOnPage) {
            paint.SetClip(node, *MakeMoved(*object.clipPath, object.transform), object.clipWinding, Params());
        } else if (object.clipPath) {
            paint.SetClip(node, *object.clipPath, object.clipWinding, object.transform);
        }
        if (object.opacity != 1) Set(node, "opacity", MakeNumber(object.opacity));
        std::string style;
        AddBlendMode(style, object.blendMode);
        if (!style.empty()) Set(node, "style", style);
    }

    pugi::xml_document document;
    pugi::xml_node svg;
    pugi::xml_node defs;
    SvgPaint paint;
};

} // namespace

LongText MakeSvg(const PageView& view)
{
    LongText text = SvgWriter(view.page, view.title, view.profiles).Write(view.root);
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;
    return text;
}

} // namespace Host
