#pragma once

#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>

#include <Kernel/NonCounted.h>
#include <Kernel/RectT.h>

#include <optional>

namespace Quillet {

class Dictionary;
class Page;
class Resources;

/// A node of the page tree, with what a page may inherit from it.
///
/// Boxes are in points of the page's own space, y upward, so `top` is the lower edge. A page without any media box
/// raises PageTree, which is thrown through the operations below.
class QUILLET_API PageBase : public RefCacheable, public ErrorForwarder
{
public:
    ~PageBase() override;

    const bool* GetAbortPointer() const override;
    /// Raises `type` at the node.
    void OnError(Error::Type type) const override;
    /// Pages in and below this node, as the file claims it.
    virtual int GetPageCount() const = 0;
    /// The page with this index in the document.
    virtual Kernel::Counted<const Page> GetPage(int index) const = 0;

    const Kernel::RectT<double>& GetMediaBox() const;
    const Kernel::RectT<double>& GetCropBox() const;
    const Kernel::RectT<double>& GetBleedBox() const;
    const Kernel::RectT<double>& GetTrimBox() const;
    const Kernel::RectT<double>& GetArtBox() const;
    /// The box that the document's clip area names; the empty rectangle for none.
    Kernel::RectT<double> GetClipBox() const;
    /// Clockwise, in degrees. A negative whole turn stays 360.
    int GetRotate() const;
    /// The extent of a page turned by `angle`: 90 and 270 exchange x and y.
    static Kernel::RectT<double> ApplyRotate(const Kernel::RectT<double>& rect, int angle);
    /// A number that is unique in the document.
    int MakeObjectId() const;

    // Not for hosts.

    PageBase(Kernel::NonCounted<const PageBase> parentNode, Dictionary& dictionary, int firstIndex);

    /// The node's own, or those that it inherits; null for none.
    Kernel::Counted<const Resources> GetResources() const;
    Ref GetResourcesRef() const;

    /// Held: a page that a host keeps asks the nodes above it, whatever becomes of the document's caches.
    Kernel::Counted<const PageBase> parent;
    Ref ref;
    /// Index of the first page in or below the node.
    int firstPage;
    std::optional<Kernel::RectT<double>> mediaBox;
    std::optional<Kernel::RectT<double>> cropBox;
    std::optional<Kernel::RectT<double>> bleedBox;
    std::optional<Kernel::RectT<double>> trimBox;
    std::optional<Kernel::RectT<double>> artBox;
    /// Own rotation; -1 for none.
    int rotate = -1;
    Kernel::Counted<const Resources> resources;
    Ref resourcesRef;

private:
    using Box = std::optional<Kernel::RectT<double>> PageBase::*;
    const Kernel::RectT<double>* FindBox(Box box) const;
    const Kernel::RectT<double>& FindBox(std::initializer_list<Box> boxes) const;
};

} // namespace Quillet
