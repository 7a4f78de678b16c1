#include "support/RandomTree.h"

#include "objects/SoftMask.h"

#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include <Kernel/ToString.h>
#include <Renderer/ColourRGB.h>
#include <Renderer/FillSolid.h>

#include <limits>
#include <utility>
#include <vector>

namespace Quillet {

namespace {

using Clip = Kernel::Counted<const Geometry::PolyCurveDbl>;
using Rect = Object::Rect;

class TreeMaker
{
public:
    TreeMaker(Choices& source, Numbers range) : choices(source), numbers(range) {}

    Kernel::Counted<GroupObject> Make(int size)
    {
        const auto root = Kernel::MakeCounted<GroupObject>(nullptr);
        std::vector<GroupObject*> open{root.Get()};
        for (; nextId < size; ++nextId) {
            const unsigned kind = choices.Choose(8);
            if (kind == 0 && open.size() > 1) open.pop_back();
            const bool isGroup = kind >= 5;
            const Kernel::Counted<Object> object = isGroup ? MakeGroup() : MakePath();
            object->SetId(nextId);
            open.back()->Add(object);
            if (isGroup) open.push_back(object->AsGroup());
        }
        return root;
    }

private:
    bool IsOneIn(unsigned count) { return choices.Choose(count) == 0; }

    double MakeNumber()
    {
        constexpr double c_infinity = std::numeric_limits<double>::infinity();
        constexpr double c_wild[] = {1e308,  -1e308, c_infinity, -c_infinity, std::numeric_limits<double>::quiet_NaN(),
                                     1e-300, 0,      -0.0,       1e20};
        if (numbers == Numbers::Wild && IsOneIn(8)) return c_wild[choices.Choose(std::size(c_wild))];
        // A part of the tolerance for clips, which tells what is within it and what is not.
        return 10.0 * choices.Choose(8) + (IsOneIn(4) ? 0.03125 * choices.Choose(4) : 0);
    }

    Rect MakeRect() { return Rect::FromCorners({MakeNumber(), MakeNumber()}, {MakeNumber(), MakeNumber()}); }

    Clip MakeClip()
    {
        if (!clips.empty() && IsOneIn(2)) return clips[choices.Choose(static_cast<unsigned>(clips.size()))];
        const Rect rect = MakeRect();
        const auto clip = Kernel::MakeCounted<Geometry::PolyCurveDbl>(rect);
        if (IsOneIn(8)) clip->curves.front()->nodes.resize(7);
        clips.emplace_back(clip);
        return clip;
    }

    Kernel::Counted<Renderer::FillDescriptor> MakePaint()
    {
        const float red = static_cast<float>(choices.Choose(4)) / 4;
        return Kernel::MakeCounted<Renderer::FillDescriptor>(
            Kernel::ConsolidateObjectPostAlloc(Renderer::FillSolid(Renderer::ColourRGB::Create(red, 0, 0, 1, {}))),
            Renderer::FillBlendMode::Normal);
    }

    Kernel::Counted<Object> MakePath()
    {
        const Rect rect = lastRect = IsOneIn(4) ? lastRect : MakeRect();
        const auto path = Kernel::MakeCounted<PathObject>(nullptr, rect, MakePaint());
        if (IsOneIn(4)) {
            // An arch that does not fill the box of its control points.
            const auto arch = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
            arch->AddCurve(Kernel::MakeCounted<Geometry::CurveDbl>());
            arch->curves.front()->AddNode({rect.left, rect.top});
            arch->curves.front()->AddBezierCurve({rect.right, rect.top}, {rect.left, rect.bottom},
                                                 {rect.right, rect.bottom});
            path->SetPath(arch, Geometry::WindingOrderMode::NonZero, true);
        }
        if (IsOneIn(4)) {
            Renderer::LineStyle style;
            style.width = 0.125 * choices.Choose(8);
            path->lineStyleDescriptor =
                Kernel::MakeCounted<Renderer::LineStyleDescriptor>(Kernel::ConsolidateObjectPostAlloc(style));
            path->penDescriptor = std::exchange(path->brushDescriptor, nullptr);
            if (IsOneIn(4)) path->brushDescriptor = path->penDescriptor;
        }
        if (IsOneIn(4)) path->SetTransform(Object::Params::FromPdf(0, 1, -1, 0, MakeNumber(), MakeNumber()));
        if (IsOneIn(6)) path->SetTransform(Object::Params::FromPdf(0.8, 0.6, -0.6, 0.8, MakeNumber(), 0.1));
        if (IsOneIn(6)) path->SetClipPath(MakeClip(), Geometry::WindingOrderMode::NonZero);
        path->UpdateBBox();
        return path;
    }

    Kernel::Counted<GroupObject> MakeGroup()
    {
        if (IsOneIn(6)) {
            auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
            layer->SetName(IsOneIn(2) ? "a" : "b");
            return layer;
        }
        auto group = Kernel::MakeCounted<GroupObject>(nullptr);
        if (!IsOneIn(3)) group->SetClipPath(MakeClip(), Geometry::WindingOrderMode::NonZero);
        if (IsOneIn(6)) group->SetIsXObject(true);
        if (IsOneIn(12)) group->SetOpacity(0.5);
        return group;
    }

    Choices& choices;
    Numbers numbers;
    int nextId = 0;
    std::vector<Clip> clips;
    Rect lastRect{0, 0, 10, 10};
};

std::string Describe(const Rect& rect)
{
    return Kernel::ToString(rect.left) + ' ' + Kernel::ToString(rect.top) + ' ' + Kernel::ToString(rect.right) + ' ' +
           Kernel::ToString(rect.bottom);
}

void Describe(const Object& object, const std::string& indent, std::string& text)
{
    text += indent + Kernel::ToString(static_cast<int>(object.GetKind())) + " #" + Kernel::ToString(object.id) +
            " box " + Describe(object.bbox) + " on page " + Describe(object.transformedBBox);
    if (object.clipPath) text += " clip " + Describe(object.clipPath->GetExactBBox());
    if (object.GetKind() == Object::Kind::Path) {
        const auto& path = static_cast<const PathObject&>(object);
        if (path.IsFilled()) text += " filled";
        if (path.IsStroked()) text += " stroked";
    }
    text += '\n';
    const GroupObject* group = object.AsGroup();
    if (!group) return;
    for (const Kernel::Counted<Object>& child : group->children) {
        if (child->parent.Get() != group) text += indent + " not the parent of\n";
        Describe(*child, indent + ' ', text);
    }
}

} // namespace

Kernel::Counted<GroupObject> MakeRandomTree(Choices& choices, int size, Numbers numbers)
{
    return TreeMaker(choices, numbers).Make(size);
}

std::string DescribeTree(const GroupObject& root)
{
    std::string text;
    Describe(root, "", text);
    return text;
}

} // namespace Quillet
