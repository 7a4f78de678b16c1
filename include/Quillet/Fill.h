#pragma once

namespace Quillet::Fill {

/// What a painting operator does with a path: a set of bits.
enum Type {
    None = 0,
    Stroke = 1,
    Fill = 2,
    FillAndStroke = Stroke | Fill,
};

} // namespace Quillet::Fill
