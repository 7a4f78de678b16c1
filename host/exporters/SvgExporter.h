#pragma once

#include "Problems.h"
#include "exporters/LongText.h"

#include <Raster/ICCManager.h>

#include <string>

namespace Quillet {
class GroupObject;
class Page;
} // namespace Quillet

namespace Host {

/// A page as an SVG document that a vector editor opens with its structure: layers as layers, groups as groups, clips
/// as clip paths, transforms kept on their objects. A unit is a point. Colours become sRGB by way of `profiles`.
///
/// What there is no more to pay for (`Quillet::Budget`) is left out; then `problems` have `CutShort` afterwards.
LongText MakeSvg(const Quillet::Page& page, const Quillet::GroupObject& root, const std::string& title,
                 const Raster::ICCManager::ICCProfileSet& profiles, Problems& problems);

} // namespace Host
