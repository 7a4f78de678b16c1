#pragma once

#include "content/Operator.h"

#include <Kernel/NonCounted.h>

namespace Quillet {

class Parser;

/// BI: an image whose dictionary and data stand in the content stream.
class QUILLET_API OpInlineImage : public Operator
{
public:
    /// `parser` is the interpreter's, which goes on behind the image.
    explicit OpInlineImage(Kernel::NonCounted<Parser> contentParser) : parser(contentParser) {}
    void Execute(const ArgVec& args) const override;
    void AddRasterFormats(RasterFormatPicker& picker, const ArgVec& args) const override;

    Kernel::NonCounted<Parser> parser;

private:
    /// Moves the parser behind the image. False if there is no image that could be read.
    bool SkipImage() const;
};

} // namespace Quillet
