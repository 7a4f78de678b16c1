#pragma once

#include <Quillet/TextLineObject.h>

#include <Kernel/NonCounted.h>

#include <optional>
#include <vector>

namespace Quillet {

class PathObject;

/// Tries paths, one after the other, on a line whose characters stay where they are in the meantime.
class TextLineDecorator
{
public:
    using Rect = Object::Rect;

    explicit TextLineDecorator(TextLineObject& decorated) : line(decorated) {}

    /// In the object's own space: what is not in there decorates nothing. A decoration may stand out a little.
    static Rect GetReach(const TextLineObject& line);
    /// Makes of a path an attribute of the characters that it decorates. `Finish` is due afterwards.
    bool Try(const PathObject& path, bool isBehind);
    /// The line's box takes in what was added.
    void Finish();

private:
    /// A path as the line sees it.
    struct Decoration
    {
        /// In the object's own space.
        Rect rect;
        Kernel::Counted<Renderer::FillDescriptor> fill;
        /// From the baseline down to the top edge.
        double top = 0;
        double height = 0;
    };
    struct Range
    {
        TextLineObject::Chars::iterator first;
        TextLineObject::Chars::iterator last;
    };

    std::optional<Decoration> GetAsRectangle(const PathObject& path) const;
    std::optional<Range> FindRange(const Rect& rect);
    static bool FitsHighlight(const Range& range, const Decoration& decoration);
    static bool FitsUnderline(const Range& range, const Decoration& decoration);
    static bool FitsStrikeout(const Range& range, const Decoration& decoration);

    TextLineObject& line;
    /// For each character the rightmost pen up to there, made when first needed.
    std::vector<double> pens;
    bool isChanged = false;
};

} // namespace Quillet
