#include "exporters/HtmlExporter.h"

#include "exporters/Costs.h"
#include "exporters/Format.h"
#include "exporters/HtmlFrame.h"
#include "exporters/HtmlLook.h"
#include "exporters/SvgElement.h"
#include "exporters/SvgDrawing.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/PdfDocument.h>
#include <Quillet/TreeWalk.h>

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Host {

namespace {

using namespace Quillet;

/// Only paragraphs keep their spaces: those between paragraphs are the file's. Spans have no height of their own, so
/// that lines keep the leading of their paragraph. The marker of an item is a box, since a browser places its own
/// markers as it likes; it is as wide as the gap up to the text, and one that ends at its place, or has its middle
/// there, reaches to the left of it.
constexpr const char* c_css = R"(
body{margin:0;background:#999}
.page{position:relative;overflow:hidden;background:#fff;margin:12pt auto;isolation:isolate;break-after:page}
.group,.page>svg,.group>svg{position:absolute;left:0;top:0;width:100%;height:100%;pointer-events:none}
.frame{position:absolute;transform-origin:0 0;pointer-events:auto;text-rendering:geometricPrecision}
.frame:focus{outline:1px dashed #36c}
.frame p,.frame li,.frame ol,.frame ul{margin:0;padding:0}
.frame p,.frame li{display:block;white-space:pre-wrap}
.frame ol,.frame ul{list-style:none}
.art p,.art li{white-space:pre}
.frame li::before{content:var(--before) var(--after,'');display:inline-block;text-indent:0;line-height:0;white-space:pre;
min-width:var(--gap);font-family:var(--marker-font-family,inherit);font-size:var(--marker-font-size,inherit);
font-weight:var(--marker-font-weight,inherit);font-style:var(--marker-font-style,inherit);color:var(--marker-color,inherit)}
.frame li.right::before{margin-left:-100em;width:100em;min-width:0;padding-right:var(--gap);text-align:right}
.frame li.middle::before{margin:0 calc(var(--gap) - 50em) 0 -50em;width:100em;min-width:0;text-align:center}
.frame ol>li{counter-increment:item}
.frame ol>li::before{content:var(--before) counter(item,var(--format)) var(--after,'')}
.frame span{line-height:0}
.frame .cap{float:left;text-indent:0}
.frame .cell{display:inline-block;text-indent:0;line-height:inherit;tab-size:0}
.frame .row{display:inline-flex;align-items:baseline}
.fill{flex:1 0 auto}
.dots{border-bottom:.09em dotted;margin:0 .2em}
@page{margin:0}
@media print{body{background:none}.page{margin:0}}
)";

/// The groups with text below them: these become boxes, all others are drawn.
class TextGroups : public TreePass<>
{
public:
    Step Enter(const GroupObject& group, std::monostate&) override
    {
        if (!Budget::Spend(Costs::c_text)) return Step::End;
        path.emplace_back(&group, false);
        return Step::On;
    }

    Step Visit(const Object& object, const std::monostate&) override
    {
        const auto kind = object.GetKind();
        if (kind == Object::Kind::Column || kind == Object::Kind::TextLine) path.back().second = true;
        return Step::On;
    }

    void Leave(const GroupObject& group, const std::monostate&) override
    {
        const bool hasText = path.back().second;
        path.pop_back();
        if (!hasText) return;
        groups.insert(&group);
        if (!path.empty()) path.back().second = true;
    }

    std::unordered_set<const GroupObject*> groups;

private:
    std::vector<std::pair<const GroupObject*, bool>> path;
};

/// The level says whether the group is drawn, or is a box.
class PageWriter : TreePass<bool>
{
public:
    explicit PageWriter(const PageView& usedView)
        : view(usedView), size(PageBase::ApplyRotate(view.page.GetTrimBox(), view.page.GetRotate()))
    {}

    LongText Write()
    {
        WalkTree(view.root, textGroups);
        HtmlStyle style;
        style.SetPoints("width", size.GetWidth());
        style.SetPoints("height", size.GetHeight());
        html.Append("<div class=\"page\" id=\"page-" + std::to_string(view.index + 1) + "\"" + style.MakeAttribute() +
                    ">\n");
        WalkTree(view.root, *this);
        EndDrawing();
        html.Append("</div>\n");
        return std::move(html);
    }

private:
    Step Enter(const GroupObject& group, bool& isDrawn) override
    {
        if (Budget::IsSpent()) return Step::End;
        isDrawn = isDrawn || !textGroups.groups.contains(&group);
        if (isDrawn) {
            GetDrawing().shapes.BeginGroup(group);
        } else {
            EndDrawing();
            html.Append("<div class=\"group\"" + MakeGroupAttributes(group) + ">\n");
        }
        return Step::On;
    }

    Step Visit(const Object& object, const bool&) override
    {
        if (Budget::IsSpent()) return Step::End;
        switch (object.GetKind()) {
        case Object::Kind::Group:
        case Object::Kind::Layer:
            break; // These are entered.
        case Object::Kind::Path:
            GetDrawing().shapes.AddPath(static_cast<const PathObject&>(object));
            break;
        case Object::Kind::TextLine:
            EndDrawing();
            AppendFrame(html, static_cast<const TextLineObject&>(object), view.profiles);
            break;
        case Object::Kind::Column:
            EndDrawing();
            AppendFrame(html, static_cast<const ColumnObject&>(object), view.profiles);
            break;
        case Object::Kind::Bitmap:
            break; // Pictures are not part of these files yet.
        }
        return Step::On;
    }

    void Leave(const GroupObject&, const bool& isDrawn) override
    {
        if (isDrawn) {
            drawing->svg.End();
            return;
        }
        EndDrawing();
        html.Append("</div>\n");
    }

    std::string MakeGroupAttributes(const GroupObject& group) const
    {
        HtmlStyle style;
        if (group.clipPath) style.Set("clip-path", MakeClip(*group.clipPath, group.clipWinding, group.transform));
        if (group.opacity != 1) style.Set("opacity", MakeNumber(group.opacity));
        if (group.isIsolated) style.Set("isolation", "isolate");
        if (group.blendMode != Renderer::FillBlendMode::Normal)
            style.Set("mix-blend-mode", MakeBlendName(group.blendMode));
        if (group.IsLayer() && !static_cast<const LayerObject&>(group).isVisible) style.Set("display", "none");
        const std::string name = group.name.empty() ? "" : " data-name=\"" + MakeHtmlText(group.name) + "\"";
        return name + style.MakeAttribute();
    }

    SvgDrawing& GetDrawing()
    {
        if (!drawing) {
            const std::string prefix =
                "p" + std::to_string(view.index + 1) + "-" + std::to_string(++drawingCount) + "-";
            drawing = std::make_unique<SvgDrawing>(view.profiles, prefix);
        }
        return *drawing;
    }

    void EndDrawing()
    {
        if (!drawing) return;
        XmlWriter element(html);
        element.Begin("svg");
        element.Attribute("viewBox", "0 0 " + MakeNumber(size.GetWidth()) + " " + MakeNumber(size.GetHeight()));
        element.Attribute("preserveAspectRatio", "none");
        drawing->MoveTo(element);
        element.End();
        html.Append("\n");
        drawing.reset();
    }

    const PageView& view;
    const Kernel::RectT<double> size;
    TextGroups textGroups;
    LongText html;
    /// What is drawn between two frames; null if none is open.
    std::unique_ptr<SvgDrawing> drawing;
    int drawingCount = 0;
};

} // namespace

LongText MakeHtmlHead(const PdfDocument& document)
{
    LongText html("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>");
    const std::string title = document.GetTitle();
    // Where the file lies is nobody's business.
    const auto name = std::filesystem::path(document.GetDocName()).filename();
    html.Append(MakeHtmlText(title.empty() ? name.string() : title));
    html.Append("</title>\n<style>");
    html.Append(c_css);
    html.Append("</style>\n</head>\n<body>\n");
    return html;
}

LongText MakePageHtml(const PageView& view)
{
    LongText html = PageWriter(view).Write();
    if (Budget::IsSpent()) view.problems[Error::CutShort] = 1;
    return html;
}

LongText MakeHtmlTail(const Story::StyleSheet&)
{
    return LongText("</body>\n</html>\n");
}

} // namespace Host
