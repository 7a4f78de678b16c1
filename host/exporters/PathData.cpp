#include "exporters/PathData.h"

#include "exporters/Costs.h"
#include "exporters/LongText.h"
#include "exporters/NumberText.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cmath>

namespace Host {

namespace {

constexpr double c_resolution = 1e-4;

class PathWriter
{
public:
    PathWriter(LongText& out, int places) : text(out), decimals(places) {}

    void Add(const Geometry::CurveDbl& curve)
    {
        const auto& nodes = curve.nodes;
        if (nodes.empty()) return;
        AddCommand('M');
        AddPoint(nodes.front());
        const std::size_t last = curve.GetSegmentCount() * 3;
        // The last side of a closed shape that is straight is what "Z" draws.
        const bool isClosedByLine =
            curve.isClosed && last >= 6 && IsLine(curve, last - 3) && nodes[last].point == nodes.front().point;
        const std::size_t end = isClosedByLine ? last - 3 : last;
        for (std::size_t i = 0; i < end; i += 3) {
            if (!Quillet::Budget::Spend(Costs::c_segment)) return;
            if (IsLine(curve, i)) {
                AddCommand('L');
                AddPoint(nodes[i + 3]);
            } else {
                AddCommand('C');
                for (const std::size_t k : {1u, 2u, 3u})
                    AddPoint(nodes[i + k]);
            }
        }
        if (curve.isClosed) AddCommand('Z');
    }

private:
    /// Exactly straight, as lines are stored; a curve that is straight by chance may stay one.
    static bool IsLine(const Geometry::CurveDbl& curve, std::size_t i)
    {
        return curve.nodes[i].point == curve.nodes[i + 1].point && curve.nodes[i + 2].point == curve.nodes[i + 3].point;
    }

    void AddCommand(char letter)
    {
        if (letter != command || letter == 'M') {
            if (command != 0) text.Put(' ');
            text.Put(letter);
        }
        command = letter;
    }

    void AddPoint(const Geometry::CurveNode& node)
    {
        text.Put(' ');
        AppendNumber(text, node.point.x, decimals);
        text.Put(' ');
        AppendNumber(text, node.point.y, decimals);
    }

    LongText& text;
    int decimals;
    char command = 0;
};

} // namespace

double GetScale(const Raster::AffineTransform::Params& transform)
{
    return std::sqrt(std::abs(transform.GetDeterminant()));
}

void AppendPathData(LongText& text, const Geometry::PolyCurveDbl& path, const Raster::AffineTransform::Params& toPage)
{
    const double scale = std::max({std::abs(toPage.a), std::abs(toPage.b), std::abs(toPage.c), std::abs(toPage.d)});
    PathWriter writer(text, GetDecimals(scale, c_resolution));
    for (const auto& curve : path) {
        if (!Quillet::Budget::Spend(Costs::c_segment)) return;
        writer.Add(*curve);
    }
}

} // namespace Host
