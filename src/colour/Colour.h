#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Quillet {

/// The components of a colour, in the units of the colour space that it is given to. Nothing is clamped.
class Colour
{
public:
    Colour() = default;
    /// All zeros.
    explicit Colour(int componentCount) : components(componentCount > 0 ? static_cast<std::size_t>(componentCount) : 0)
    {}
    explicit Colour(std::vector<double> values) : components(std::move(values)) {}

    int GetCount() const { return static_cast<int>(components.size()); }
    /// 0 for a component that is not there.
    double operator[](int index) const
    {
        const auto place = static_cast<std::size_t>(index);
        return place < components.size() ? components[place] : 0.0;
    }

    friend bool operator==(const Colour&, const Colour&) = default;

    std::vector<double> components;
};

} // namespace Quillet
