#pragma once

#include "colour/ColourSpace.h"

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>

namespace Quillet {

class Parser;

/// What operators take from the content stream that they stand in; all else they have from the stack.
struct ContentContext
{
    Kernel::NonCounted<Parser> parser;
    /// The device spaces, or what the stream's resources put in their place.
    Kernel::Counted<const ColourSpace> deviceGray;
    Kernel::Counted<const ColourSpace> deviceRgb;
    Kernel::Counted<const ColourSpace> deviceCmyk;
};

} // namespace Quillet
