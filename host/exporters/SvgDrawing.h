#pragma once

#include "exporters/LongText.h"
#include "exporters/SvgPaint.h"
#include "exporters/SvgShapes.h"
#include "exporters/XmlWriter.h"

#include <string>
#include <utility>

namespace Host {

/// The content of an SVG while it is written, and the definitions that it uses, which stand before it in the file.
class SvgDrawing
{
public:
    /// Names of definitions begin with `namePrefix`: they are those of a whole file.
    SvgDrawing(const Raster::ICCManager::ICCProfileSet& profiles, std::string namePrefix)
        : paint(profiles, definitionWriter, std::move(namePrefix))
    {}
    SvgDrawing(const SvgDrawing&) = delete;
    SvgDrawing& operator=(const SvgDrawing&) = delete;

    /// Moves all of it into an element.
    void MoveTo(XmlWriter& element);

private:
    LongText definitions;
    LongText content;
    XmlWriter definitionWriter{definitions};

public:
    /// Where content is written.
    XmlWriter svg{content};
    SvgPaint paint;
    SvgShapes shapes{svg, paint};
};

} // namespace Host
