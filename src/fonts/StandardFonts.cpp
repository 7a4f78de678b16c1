#include "fonts/FontTables.h"

#include <algorithm>

namespace Quillet {

const StandardFontMetrics* GetStandardFontMetrics(const std::string& name)
{
    const auto found = std::ranges::find_if(c_standardFontMetrics,
                                            [&name](const StandardFontMetrics& row) { return name == row.name; });
    return found == c_standardFontMetrics.end() ? nullptr : &*found;
}

} // namespace Quillet
