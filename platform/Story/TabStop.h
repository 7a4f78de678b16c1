#pragma once

#include <Kernel/Export.h>

namespace Story {

namespace Tab {
enum Type : int { Left = 1, Centre = 2, Right = 3, Decimal = 4 };
} // namespace Tab

namespace TabLeader {
enum Type : int { None = 0, Dots = 1 };
} // namespace TabLeader

/// One place where a tab ends.
class QUILLET_API TabStop
{
public:
    TabStop(double newPosition, Tab::Type newType, bool isFromRight)
        : position(newPosition), type(newType), fromRight(isFromRight)
    {}

    void SetLeader(TabLeader::Type newLeader) { leader = newLeader; }

    friend bool operator==(const TabStop&, const TabStop&) = default;

    /// Points from the frame's left, or from its right, inward.
    double position;
    Tab::Type type;
    bool fromRight;
    TabLeader::Type leader = TabLeader::None;
};

} // namespace Story
