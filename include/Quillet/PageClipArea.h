#pragma once

namespace Quillet {

/// The page box that clips what a page paints.
enum PageClipArea : int {
    PageClipNone = 0,
    PageClipMedia = 1,
    PageClipCrop = 2,
    PageClipBleed = 3,
    PageClipTrim = 4,
    PageClipArt = 5,
};

} // namespace Quillet
