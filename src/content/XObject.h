#pragma once

#include "document/XObjectType.h"

#include <Quillet/RefCacheable.h>

#include <Kernel/Counted.h>
#include <Kernel/Export.h>
#include <Kernel/NonCounted.h>

#include <string>

namespace Quillet {

class Dictionary;
class GraphicsStateStack;
class Ref;
class Resources;

/// Base of what "Do" draws: an object of the file with a look of its own.
class QUILLET_API XObject : public RefCacheable
{
public:
    /// Adds what it draws to the current group of `stack`; false if it draws nothing at all.
    virtual bool Accept(Kernel::NonCounted<GraphicsStateStack> stack, bool noGroup) const = 0;

    /// The object at `ref`, built at most once a document: the resources of the first use stay with it.
    /// Null if there is none that can be made.
    static Kernel::Counted<const XObject> Make(const Ref& ref, Kernel::Counted<const Resources> resources,
                                               XObjectType::Type type, const std::string& name);
    /// The same without the cache.
    static Kernel::Counted<const XObject> Make2(const Ref& ref, Kernel::Counted<const Resources> resources,
                                                XObjectType::Type type, const std::string& name);

    /// The object's own resources if its dictionary has any, else `inherited`.
    static Kernel::Counted<const Resources> GetResources(Kernel::Counted<Dictionary> dictionary,
                                                         Kernel::Counted<const Resources> inherited);

    std::string GetDebugName() const { return {}; }
};

} // namespace Quillet
