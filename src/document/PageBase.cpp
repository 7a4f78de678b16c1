#include <Quillet/PageBase.h>

#include "document/Resources.h"
#include "document/Dictionary.h"

#include <Quillet/PdfDocument.h>

namespace Quillet {

namespace {

int NormaliseRotation(long long angle)
{
    if (angle == -1) return -1;
    if (angle >= 0) return static_cast<int>(angle % 360);
    // A whole negative turn gives 360, which counts as a rotation that changes nothing.
    return static_cast<int>(angle + -angle / 360 * 360 + 360);
}

} // namespace

PageBase::PageBase(Kernel::NonCounted<const PageBase> parentNode, Dictionary& dictionary, int firstIndex)
    : ErrorForwarder(dictionary.GetErrorHandler()), parent(parentNode.Get()), ref(dictionary.object),
      firstPage(firstIndex)
{
    dictionary.SetType(Error::PageTree);
    rotate = NormaliseRotation(dictionary.GetInt("Rotate", -1));

    const auto readBox = [&dictionary](const char* key, std::optional<Kernel::RectT<double>>& box) {
        Kernel::RectT<double> rect;
        if (dictionary.GetRect(key, rect)) box = rect;
    };
    readBox("MediaBox", mediaBox);
    readBox("CropBox", cropBox);
    readBox("BleedBox", bleedBox);
    readBox("TrimBox", trimBox);
    readBox("ArtBox", artBox);

    if (dictionary.GetRef("Resources", resourcesRef)) resources = Kernel::MakeCounted<Resources>(resourcesRef);
}

PageBase::~PageBase() = default;

const bool* PageBase::GetAbortPointer() const
{
    return ref.document ? ref.document->GetAbortPointer() : nullptr;
}

void PageBase::OnError(Error::Type type) const
{
    if (!handler) return ErrorForwarder::OnError(type);
    handler->OnErrorAt(type, ref.GetErrorPlace());
}

const Kernel::RectT<double>* PageBase::FindBox(Box box) const
{
    for (const PageBase* node = this; node; node = node->parent.Get()) {
        if (node->*box) return &*(node->*box);
    }
    return nullptr;
}

const Kernel::RectT<double>& PageBase::FindBox(std::initializer_list<Box> boxes) const
{
    for (const Box box : boxes) {
        if (const Kernel::RectT<double>* found = FindBox(box)) return *found;
    }
    OnError(Error::PageTree);
    static constexpr Kernel::RectT<double> c_fallback{0, 0, 10000, 10000};
    return c_fallback;
}

const Kernel::RectT<double>& PageBase::GetMediaBox() const
{
    return FindBox({&PageBase::mediaBox});
}

const Kernel::RectT<double>& PageBase::GetCropBox() const
{
    return FindBox({&PageBase::cropBox, &PageBase::mediaBox});
}

const Kernel::RectT<double>& PageBase::GetBleedBox() const
{
    return FindBox({&PageBase::bleedBox, &PageBase::cropBox, &PageBase::mediaBox});
}

const Kernel::RectT<double>& PageBase::GetTrimBox() const
{
    return FindBox({&PageBase::trimBox, &PageBase::cropBox, &PageBase::mediaBox});
}

const Kernel::RectT<double>& PageBase::GetArtBox() const
{
    return FindBox({&PageBase::artBox, &PageBase::cropBox, &PageBase::mediaBox});
}

Kernel::RectT<double> PageBase::GetClipBox() const
{
    switch (ref.document ? ref.document->GetPageClipArea() : PageClipNone) {
    case PageClipMedia:
        return GetMediaBox();
    case PageClipCrop:
        return GetCropBox();
    case PageClipBleed:
        return GetBleedBox();
    case PageClipTrim:
        return GetTrimBox();
    case PageClipArt:
        return GetArtBox();
    default:
        return Kernel::RectT<double>::MakeEmpty();
    }
}

int PageBase::GetRotate() const
{
    for (const PageBase* node = this; node; node = node->parent.Get()) {
        if (node->rotate != -1) return node->rotate;
    }
    return 0;
}

Kernel::Counted<const Resources> PageBase::GetResources() const
{
    for (const PageBase* node = this; node; node = node->parent.Get()) {
        if (node->resources) return node->resources;
    }
    return nullptr;
}

Ref PageBase::GetResourcesRef() const
{
    for (const PageBase* node = this; node; node = node->parent.Get()) {
        if (!node->resourcesRef.IsNull()) return node->resourcesRef;
    }
    return {};
}

Kernel::RectT<double> PageBase::ApplyRotate(const Kernel::RectT<double>& rect, int angle)
{
    if (angle != 90 && angle != 270) return rect;
    return {rect.top, rect.left, rect.bottom, rect.right};
}

int PageBase::MakeObjectId() const
{
    return ref.document ? ref.document->MakeObjectId() : -1;
}

} // namespace Quillet
