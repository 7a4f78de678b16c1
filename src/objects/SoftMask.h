#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Countable.h>
#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>
#include <Renderer/Colour.h>

namespace Quillet {

class Dictionary;
class Page;
class TransparencyXObject;

/// A soft mask as a graphics state parameter dictionary gives it.
class QUILLET_API SoftMask : public Kernel::Countable
{
public:
    /// Reads `dictionary`; its error type is reported for an unknown kind of mask, which then counts as an alpha mask.
    SoftMask(Kernel::Counted<Dictionary> dictionary, Kernel::NonCounted<const Page> maskPage);
    ~SoftMask() override;

    /// Whether both mask alike. Each time that a page asks for a mask it gets one of its own.
    bool operator==(const SoftMask& other) const;

    bool isLuminosity = false;
    /// What the mask is made from; null if that is no transparency group.
    Kernel::Counted<const TransparencyXObject> group;
    /// What the group is painted on before its lightness counts; null for a group without a colour space.
    Kernel::Consolidated<Renderer::Colour> backdrop;
    Kernel::NonCounted<const Page> page;
};

} // namespace Quillet
