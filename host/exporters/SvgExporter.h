#pragma once

#include "exporters/LongText.h"

namespace Host {

struct PageView;

/// A page as an SVG document that a vector editor opens with its structure: layers as layers, groups as groups, clips
/// as clip paths, transforms kept on their objects. A unit is a point.
///
/// What there is no more to pay for (`Quillet::Budget`) is left out; then the view's problems have `CutShort`
/// afterwards.
LongText MakeSvg(const PageView& view);

} // namespace Host
