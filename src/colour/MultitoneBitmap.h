#pragma once

#include "colour/Colour.h"

#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/SizeT.h>
#include <Raster/DynamicBitmap.h>

#include <cstdint>
#include <vector>

namespace Quillet {

class Function;

/// The model code of an image, as `ColourSpace::GetFormat` gives it.
enum class ImageFormat : int { None = 0, Gray = 1, Rgb = 2, Cmyk = 3, Lab = 4 };

/// Samples of an image as they were before any colour was made of them, interleaved by pixel.
class QUILLET_API MultitoneBitmap : public Kernel::Countable
{
public:
    /// `bits` a channel: 8 or 16. All samples are zero.
    MultitoneBitmap(const Kernel::SizeT<int>& size, int bits, int channels);

    /// The samples as they stand; the format has as many channels.
    Kernel::Counted<Raster::DynamicBitmap> AsRaster(ImageFormat format) const;
    /// One channel, an index into `colours`.
    Kernel::Counted<Raster::DynamicBitmap> AsRaster(const std::vector<Colour>& colours, ImageFormat format) const;
    /// Each pixel's tints through `transform`.
    Kernel::Counted<Raster::DynamicBitmap> AsRaster(const Kernel::Counted<const Function>& transform,
                                                    ImageFormat format) const;
    /// The same into Lab; `range` holds the ends of a and b.
    Kernel::Counted<Raster::DynamicBitmap> AsRasterLAB(const Kernel::Counted<const Function>& transform,
                                                       const std::vector<double>& range) const;
    /// 0 where every channel lies within its pair of `keys`, both ends included, else 255.
    Kernel::Counted<Raster::DynamicBitmap> AsColourKeyMask(const std::vector<int>& keys) const;

    int width;
    int height;
    int bitsPerChannel;
    int channelCount;
    std::vector<std::uint8_t> samples;
};

} // namespace Quillet
