#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>

#include <vector>

namespace Renderer {

/// How a line is drawn along a path. Change a clone while it is held alone; interned, it is immutable.
class QUILLET_API LineStyle : public Kernel::Consolidatable
{
public:
    enum Cap : int { CapButt = 0, CapProjectingSquare = 1, CapHalfCircle = 2 };
    enum Join : int { JoinMitre = 1, JoinRound = 2, JoinBevel = 3 };
    enum DashKind : int { DashNone = 0, DashSolid = 1, DashDashed = 2 };

    int cap = CapButt;
    int join = JoinMitre;
    /// `DashNone` draws no line at all.
    int dashKind = DashSolid;
    /// In points; above 0 where a line is drawn.
    double width = 1.0;
    /// The longest mitre, from its inner to its outer corner, as a multiple of the width; longer ones become bevels.
    double mitreLimit = 10.0;
    /// As a multiple of the width.
    double dashPhase = 0.0;
    /// Lengths of dash and gap in turn, as multiples of the width.
    std::vector<double> dashes;
    /// A host may stretch the dashes so that they come out even at the ends; cleared for dashes that are to stay exact.
    bool isDashScaledToFit = true;

    Kernel::Counted<LineStyle> Clone() const { return Kernel::MakeCounted<LineStyle>(*this); }

    std::size_t GetHash() const override;
    /// The dash fields count in dashed lines only: what earlier dashes left in a solid line does not show.
    bool IsEqual(const Kernel::Consolidatable& other) const override;
};

} // namespace Renderer
