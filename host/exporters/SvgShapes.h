#pragma once

namespace Quillet {
class GroupObject;
class PathObject;
} // namespace Quillet

namespace Host {

class SvgPaint;
class XmlWriter;

/// What is no text, as elements of an SVG.
class SvgShapes
{
public:
    SvgShapes(XmlWriter& out, SvgPaint& usedPaint) : svg(out), paint(usedPaint) {}

    /// What comes next, up to the element's end, are its children.
    void BeginGroup(const Quillet::GroupObject& group);
    void AddPath(const Quillet::PathObject& object);

private:
    XmlWriter& svg;
    SvgPaint& paint;
};

} // namespace Host
