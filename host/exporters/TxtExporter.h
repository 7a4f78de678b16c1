#pragma once

#include "exporters/LongText.h"

namespace Host {

struct PageView;

/// The text of a page in UTF-8: a line for each paragraph, in the order of the tree, and an empty line between two
/// frames. Markers of lists are written out with a space behind them, tabs are tabs, and forced breaks end a line.
LongText MakeTxt(const PageView& view);

} // namespace Host
