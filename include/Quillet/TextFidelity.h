#pragma once

namespace Quillet {

/// Which matters more where a text cannot have both: zero keeps the look of the page, anything else gives more editable
/// text.
enum TextFidelity : int {
    TextFidelityExact = 0,
    TextFidelityEditable = 1,
};

} // namespace Quillet
