#include "exporters/SvgExporter.h"

#include "exporters/Format.h"
#include "exporters/SvgColumn.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgShapes.h"
#include "exporters/SvgText.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/TextLineObject.h>
#include <Quillet/TreeWalk.h>

namespace Host {

namespace {

using namespace Quillet;

class SvgWriter : TreePass<pugi::xml_node>
{
public:
    SvgWriter(const Page& page, const std::string& title, const Raster::ICCManager::ICCProfileSet& profiles)
        : svg(AddPage(document.root(), page)), defs(AddHead(svg, title)), paint(profiles, defs, ""), shapes(paint)
    {}

    LongText Write(const GroupObject& root)
    {
        WalkTree(root, *this);
        if (!defs.first_child()) svg.remove_child(defs);
        LongText text = WriteXml(document, true);
        text.Append("\n");
        return text;
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
            node = IsPlain(group) ? svg : shapes.AddGroup(svg, group);
            return Step::On;
        }
        if (Budget::IsSpent()) return Step::End;
        node = shapes.AddGroup(node, group);
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
            shapes.AddPath(parent, static_cast<const PathObject&>(object));
            break;
        case Object::Kind::TextLine:
            AddTextLine(parent, static_cast<const TextLineObject&>(object), paint);
            break;
        case Object::Kind::Column:
            AddColumn(parent, static_cast<const ColumnObject&>(object), paint);
            break;
        case Object::Kind::Bitmap:
            break; // Pictures are not part of these files yet.
        }
        return Step::On;
    }

    /// A group that the SVG element itself can stand for.
    static bool IsPlain(const GroupObject& group) { return !group.clipPath && !group.IsPreserve(); }

    pugi::xml_document document;
    pugi::xml_node svg;
    pugi::xml_node defs;
    SvgPaint paint;
    SvgShapes shapes;
};

} // namespace

LongText MakeSvg(const PageView& view)
{
    LongText text = SvgWriter(view.page, view.title, view.profiles).Write(view.root);
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;
    return text;
}

} // namespace Host
