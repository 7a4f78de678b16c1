#include "exporters/SvgDrawing.h"

namespace Host {

void SvgDrawing::MoveTo(XmlWriter& element)
{
    if (!definitions.IsEmpty()) {
        element.Begin("defs");
        element.Take(std::move(definitions));
        element.End();
    }
    element.Take(std::move(content));
}

} // namespace Host
