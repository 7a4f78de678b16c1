#pragma once

#include "content/Operator.h"

namespace Quillet {

/// BT
class QUILLET_API OpBeginText : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// ET
class QUILLET_API OpEndText : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// Tf
class QUILLET_API OpTextFont : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// Td, and TD, which sets the leading too.
class QUILLET_API OpTextPosition : public Operator
{
public:
    explicit OpTextPosition(bool setLeading) : isSetLeading(setLeading) {}
    void Execute(const ArgVec& args) const override;

    bool isSetLeading;
};

/// Tm
class QUILLET_API OpTextMatrix : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// Tj
class QUILLET_API OpTextOut : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// TJ
class QUILLET_API OpTextOutArray : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// T*, ' and "
class QUILLET_API OpNewLine : public Operator
{
public:
    OpNewLine(bool string, bool spacing) : hasString(string), hasSpacing(spacing) {}
    void Execute(const ArgVec& args) const override;

    bool hasString;
    bool hasSpacing;
};

} // namespace Quillet
