#pragma once

#include "content/Operator.h"

namespace Quillet {

// A sequence need not nest with "q" and "Q", so no group can be opened where it begins. A layer is cut out of the tree
// where its sequence ends.

/// "BMC": begins a sequence that makes no layer.
class OpBeginMarkedContent : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// "BDC": begins a sequence with properties; an optional-content group or a "Layer" becomes a layer.
class OpBeginMarkedContentProperties : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// "EMC": ends the innermost sequence; a layer takes what was added since it began.
class OpEndMarkedContent : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

} // namespace Quillet
