#pragma once

#include "content/Operator.h"

namespace Quillet {

/// BI: an image whose dictionary and data stand in the content stream.
class QUILLET_API OpInlineImage : public Operator
{
public:
    void Execute(const ArgVec& args) const override;
    void AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const override;

private:
    /// Moves the content's parser behind the image. False if there is no image that could be read.
    bool SkipImage() const;
};

} // namespace Quillet
