#pragma once

#include <Kernel/Consolidated.h>
#include <Story/Delta.h>

#include <string>

namespace Story {

enum class StyleType : int { Paragraph = 1, Character = 2 };

/// A named look. A value to be interned.
class QUILLET_API Style : public Kernel::Consolidatable
{
public:
    explicit Style(std::string newName) : name(std::move(newName)) {}

    void SetType(StyleType newType) { type = newType; }
    void SetDelta(Kernel::Counted<const Delta> newDelta) { delta = std::move(newDelta); }

    const std::string& GetName() const { return name; }
    StyleType GetType() const { return type; }
    /// Null for a style that changes nothing.
    const Kernel::Counted<const Delta>& GetDelta() const { return delta; }

    std::size_t GetHash() const override;
    bool IsEqual(const Consolidatable& other) const override;

private:
    std::string name;
    StyleType type = StyleType::Paragraph;
    Kernel::Counted<const Delta> delta;
};

} // namespace Story
