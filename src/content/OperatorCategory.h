#pragma once

namespace Quillet::OperatorCategory {

/// Where in a content stream an operator may stand; a bit set.
enum Type : unsigned {
    Page = 1, ///< Outside path, clip and text.
    Path = 2, ///< A path is under construction.
    Clip = 4, ///< A clipping operator has been seen, a painting operator must follow.
    Text = 8, ///< Between the operators that begin and end a text object.
};

constexpr Type operator|(Type a, Type b)
{
    return static_cast<Type>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

} // namespace Quillet::OperatorCategory
