#pragma once

#include <cstddef>
#include <string_view>

namespace Quillet {

/// A setting that has no effect here, and the value at which nothing is lost by that.
template <typename T>
struct GraphicsStateDefault
{
    const char* name;
    /// Another value changes the look of the page enough to be reported.
    bool isSignificant;
    T value;
};

/// The row of that name, or null.
template <typename T, std::size_t Size>
const GraphicsStateDefault<T>* Find(const GraphicsStateDefault<T> (&table)[Size], std::string_view name)
{
    for (const GraphicsStateDefault<T>& row : table) {
        if (name == row.name) return &row;
    }
    return nullptr;
}

} // namespace Quillet
