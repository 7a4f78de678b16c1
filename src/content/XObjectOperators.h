#pragma once

#include "content/Operator.h"

namespace Quillet {

/// "Do": draws an external object.
class OpXObject : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

} // namespace Quillet
