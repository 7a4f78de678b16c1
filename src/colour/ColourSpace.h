#pragma once

#include "colour/Colour.h"

#include <Quillet/RefCacheable.h>

#include <Kernel/Consolidated.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Kernel/SizeT.h>
#include <Renderer/Colour.h>
#include <Renderer/FillDescriptor.h>
#include <Raster/DynamicBitmap.h>
#include <Raster/ICCProfile.h>

#include <string>
#include <vector>

namespace Quillet {

class Dictionary;
class Function;
class GraphicsStateStack;
class ImageDecode;
class MultitoneBitmap;
class RasterFormatPicker;

/// Turns the numbers of a content stream or an image into the host's colours and fills.
///
/// A colour leaves in the model that it came in: nothing here converts between models. Immutable after construction. A
/// space whose definition is damaged stays usable with what could be read of it.
class QUILLET_API ColourSpace : public RefCacheable
{
public:
    /// Neither a device space nor one that stands for a device space.
    virtual bool IsSpecial() const = 0;
    virtual bool IsIndexed() const { return false; }
    virtual bool IsPattern() const { return false; }
    /// Whether the pattern under `name` brings its own colours; false for one that is not there.
    virtual bool IsColouredPattern(const std::string& name) const;
    /// Whether a compressed image in this space can be handed on as it is.
    virtual bool CanLoadAsCompressedImage() const { return false; }
    virtual int GetComponentCount() const = 0;
    /// The highest entry of a palette; 1 for a space without one.
    virtual int GetMaxIndex() const { return 1; }
    /// The model of its images: 0 none of these, 1 gray, 2 RGB, 3 CMYK, 4 Lab.
    virtual int GetFormat() const = 0;
    /// Gives this space's vote in the choice of a pixel format. `isExplicit` says that an image names the space, which
    /// counts for more than a mere use.
    virtual void AddRasterFormats(RasterFormatPicker& picker, bool isExplicit) const = 0;
    virtual Kernel::Counted<Renderer::FillDescriptor> MakeDefaultFillDescriptor() const;
    /// The fill of a pattern. `colour` is for a pattern without colours of its own. A space that is no pattern space
    /// gives its default fill.
    virtual Kernel::Counted<Renderer::FillDescriptor>
    MakePatternFillDescriptor(const Colour& colour, const std::string& name,
                              Kernel::NonCounted<GraphicsStateStack> stack) const;
    /// Never null. A component that is missing counts as 0.
    virtual Kernel::Consolidated<Renderer::Colour> MakeColour(const Colour& colour) const = 0;
    /// The profile that images in this space are meant by; null if there is none.
    virtual Kernel::Consolidated<Raster::ICCProfile> GetICCProfile() const = 0;

    // Images. Null for one that cannot be had, which so far is every one: no space decodes samples yet.
    /// The entry numbers of a palette image, not yet colours.
    virtual Kernel::Counted<const MultitoneBitmap>
    LoadRawBitmap(Kernel::Counted<Dictionary> dictionary, Kernel::SizeT<int> size, const ImageDecode& decode) const;
    /// Samples of another space whose colours `transform` gives in this one.
    virtual Kernel::Counted<Raster::DynamicBitmap> LoadBitmap(Kernel::Counted<const MultitoneBitmap> samples,
                                                              const Kernel::Counted<const Function>& transform) const;
    /// Samples that are entries of a palette of this space's colours.
    virtual Kernel::Counted<Raster::DynamicBitmap> LoadBitmap(Kernel::Counted<const MultitoneBitmap> samples,
                                                              const std::vector<Colour>& colours) const;
    virtual Kernel::Counted<Raster::DynamicBitmap> LoadBitmap(const unsigned char* data, unsigned long size,
                                                              Kernel::SizeT<int> bitmapSize,
                                                              const ImageDecode& decode) const;

    /// The range of each component of an image, as pairs.
    virtual std::vector<double> GetDefaultDecodeVec(int bitsPerComponent) const = 0;

    Kernel::Counted<Renderer::FillDescriptor> MakeFillDescriptor(const Colour& colour) const;
    /// The colour of all zeros: no ink in CMYK, entry 0 of a palette.
    Kernel::Consolidated<Renderer::Colour> MakeDefaultColour() const;

    /// Spaces that are defined through another are one deeper than it: a colour goes that far down the stack.
    int nesting = 0;

protected:
    void SetNestedIn(const ColourSpace* other) { nesting = other ? other->nesting + 1 : 0; }
};

} // namespace Quillet
