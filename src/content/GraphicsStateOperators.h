#pragma once

#include "content/Operator.h"

#include <string>

namespace Quillet {

class Parser;

/// q
class QUILLET_API OpSave : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// Q
class QUILLET_API OpRestore : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// cm
class QUILLET_API OpTransform : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// d
class QUILLET_API OpLineDash : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
};

/// gs: applies a graphics state parameter dictionary, key by key in the order of the file.
class QUILLET_API OpGraphicsState : public Operator
{
public:
    void Execute(const ArgVec& args) const override;

private:
    void ApplyEntry(const std::string& key, Parser& parser) const;
    void SetLineDash(Parser& parser) const;
    void SetBlendMode(Parser& parser) const;
    void SetSoftMask(Parser& parser) const;
    /// Passes over a setting that has no effect here, or none that is known.
    void SkipEntry(const std::string& key, Parser& parser) const;
};

} // namespace Quillet
