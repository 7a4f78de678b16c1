#include "exporters/SvgExporter.h"

#include "exporters/Format.h"
#include "exporters/SvgColumn.h"
#include "exporters/SvgDrawing.h"
#include "exporters/SvgElement.h"
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

/// The level says whether the group is an element.
class SvgWriter : TreePass<bool>
{
public:
    explicit SvgWriter(const PageView& usedView) : view(usedView), drawing(view.profiles, "") {}

    LongText Write()
    {
        WalkTree(view.root, *this);
        LongText text("<?xml version=\"1.0\"?>");
        XmlWriter page(text);
        page.Begin("svg");
        SetLook(page);
        if (!view.title.empty()) {
            page.Begin("title");
            page.Text(MakeXmlText(view.title));
            page.End();
        }
        drawing.MoveTo(page);
        page.End();
        text.Put('\n');
        text.Pay();
        return text;
    }

private:
    void SetLook(XmlWriter& page) const
    {
        const auto size = PageBase::ApplyRotate(view.page.GetTrimBox(), view.page.GetRotate());
        const std::string width = MakeNumber(size.GetWidth());
        const std::string height = MakeNumber(size.GetHeight());
        page.Attribute("xmlns", "http://www.w3.org/2000/svg");
        page.Attribute("xmlns:inkscape", "http://www.inkscape.org/namespaces/inkscape");
        page.Attribute("xmlns:sodipodi", "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd");
        page.Attribute("version", "1.1");
        // A page is an isolated group that is painted before it is put on paper (ISO 32000-2, 11.4.7): its blend modes
        // never see the paper.
        page.Attribute("style", "isolation:isolate");
        page.Attribute("width", width + "pt");
        page.Attribute("height", height + "pt");
        page.Attribute("viewBox", "0 0 " + width + " " + height);
    }

    Step Enter(const GroupObject& group, bool& isElement) override
    {
        const bool isRoot = &group == &view.root;
        if (!isRoot && Budget::IsSpent()) return Step::End;
        isElement = !isRoot || !IsPlain(group);
        if (isElement) drawing.shapes.BeginGroup(group);
        return Step::On;
    }

    void Leave(const GroupObject&, const bool& isElement) override
    {
        if (isElement) drawing.svg.End();
    }

    Step Visit(const Object& object, const bool&) override
    {
        if (Budget::IsSpent()) return Step::End;
        switch (object.GetKind()) {
        case Object::Kind::Group:
        case Object::Kind::Layer:
            break; // These are entered.
        case Object::Kind::Path:
            drawing.shapes.AddPath(static_cast<const PathObject&>(object));
            break;
        case Object::Kind::TextLine:
            AddTextLine(drawing.svg, static_cast<const TextLineObject&>(object), drawing.paint);
            break;
        case Object::Kind::Column:
            AddColumn(drawing.svg, static_cast<const ColumnObject&>(object), drawing.paint);
            break;
        case Object::Kind::Bitmap:
            break; // Pictures are not part of these files yet.
        }
        return Step::On;
    }

    /// A group that the SVG element itself can stand for.
    static bool IsPlain(const GroupObject& group) { return !group.clipPath && !group.IsPreserve(); }

    const PageView& view;
    SvgDrawing drawing;
};

} // namespace

LongText MakeSvg(const PageView& view)
{
    LongText text = SvgWriter(view).Write();
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;
    return text;
}

} // namespace Host
