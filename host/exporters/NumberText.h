#pragma once

#include <string>

namespace Host {

class LongText;

/// Appends a number with at most `decimals` (0 to 15) places behind the point, without zeros at the end, the same in
/// every locale. What is not finite becomes 0.
void AppendNumber(std::string& text, double value, int decimals);
void AppendNumber(LongText& text, double value, int decimals);

/// Appends the shortest text that reads back as the same number: with a point, and beyond 1e15 or below 1e-4 with an
/// exponent. `value` is finite.
void AppendShortest(LongText& text, double value);

/// How many decimals a coordinate needs so that, scaled by `scale` on its way to the page, it is exact to `resolution`
/// points there.
int GetDecimals(double scale, double resolution);

/// For JSON: finite, and rounded to a millionth where it is not small itself, so that 0.1 + 0.2 reads 0.3.
double Tidy(double value);

} // namespace Host
