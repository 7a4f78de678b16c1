#pragma once

#include <pugixml.hpp>

namespace Quillet {
class GroupObject;
class PathObject;
} // namespace Quillet

namespace Host {

class SvgPaint;

/// What is no text, as elements of an SVG.
class SvgShapes
{
public:
    explicit SvgShapes(SvgPaint& usedPaint) : paint(usedPaint) {}

    /// A group without its children.
    pugi::xml_node AddGroup(pugi::xml_node parent, const Quillet::GroupObject& group);
    void AddPath(pugi::xml_node parent, const Quillet::PathObject& object);

private:
    SvgPaint& paint;
};

} // namespace Host
