#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>

namespace Quillet {

namespace {

bool TryCombine(Object& below, const Kernel::Counted<Object>& above)
{
    return below.GetKind() == Object::Kind::Path && above->GetKind() == Object::Kind::Path &&
           static_cast<PathObject&>(below).TryCombineFillStroke(static_cast<PathObject*>(above.Get()));
}

} // namespace

/// At most two objects become one: what has a fill and a stroke takes no third.
void GroupObject::CombineFillStroke()
{
    std::size_t kept = 0;
    for (std::size_t next = 0; next < children.size(); ++kept) {
        Kernel::Counted<Object> object = std::move(children[next++]);
        if (next < children.size() && TryCombine(*object, children[next])) children[next++]->parent = nullptr;
        children[kept] = std::move(object);
    }
    children.resize(kept);
}

} // namespace Quillet
