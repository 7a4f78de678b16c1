#pragma once

#include "content/Operator.h"

#include <string>

namespace Quillet {

class GraphicsState;

/// Stands for what is no operator.
class QUILLET_API OpDefault : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// An operator without effect here, wherever it stands.
class QUILLET_API OpIgnore : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// BX, EX
class QUILLET_API OpCompatibility : public Operator
{
public:
    explicit OpCompatibility(bool begin) : isBegin(begin) {}
    void Execute(const ArgVec& args) const override;

    bool isBegin;
};

/// Sets one number of the graphics state.
class QUILLET_API OpSet1Real : public Operator
{
public:
    using Setter = void (GraphicsState::*)(double);

    OpSet1Real(OperatorCategory::Type where, Setter set, const char* what) : mask(where), setter(set), name(what) {}
    void Execute(const ArgVec& args) const override;
    std::string GetName() const override;

    OperatorCategory::Type mask;
    Setter setter;
    const char* name;
};

/// Sets one integer of the graphics state.
class QUILLET_API OpSet1Int : public Operator
{
public:
    using Setter = void (GraphicsState::*)(int);

    OpSet1Int(OperatorCategory::Type where, Setter set, const char* what) : mask(where), setter(set), name(what) {}
    void Execute(const ArgVec& args) const override;
    std::string GetName() const override;

    OperatorCategory::Type mask;
    Setter setter;
    const char* name;
};

} // namespace Quillet
