#pragma once

#include "content/Operator.h"

namespace Quillet {

/// sh
class QUILLET_API OpShade : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

} // namespace Quillet
