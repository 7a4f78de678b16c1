#include <Renderer/FillDescriptor.h>
#include <Renderer/FillNone.h>
#include <Renderer/ValueKey.h>

namespace Renderer {

namespace {

bool HasPlacement(const FillDescriptor& descriptor)
{
    return descriptor.hasTransform || (descriptor.fill && descriptor.fill->HasPlacement());
}

auto GetKey(const FillDescriptor& descriptor)
{
    const bool isPlaced = descriptor.fill && descriptor.fill->HasPlacement();
    const Raster::AffineTransform::Params placement =
        isPlaced ? descriptor.transform : Raster::AffineTransform::Params{};
    return std::tuple(descriptor.IsEmpty() ? nullptr : descriptor.fill.Get(), static_cast<int>(descriptor.blendMode),
                      KeyOf(placement.a), KeyOf(placement.b), KeyOf(placement.c), KeyOf(placement.d),
                      KeyOf(placement.e), KeyOf(placement.f), isPlaced && descriptor.hasTransform,
                      isPlaced && descriptor.isScaledWithObject);
}

} // namespace

FillDescriptor::FillDescriptor(Kernel::Consolidated<Fill> usedFill, FillBlendMode::BlendMode mode)
    : FillDescriptor(std::move(usedFill), false, {}, mode, false)
{}

FillDescriptor::FillDescriptor(Kernel::Consolidated<Fill> usedFill, bool isPlaced,
                               const Raster::AffineTransform::Params& placement, FillBlendMode::BlendMode mode,
                               bool scalesWithObject)
    : fill(std::move(usedFill)), hasTransform(isPlaced),
      transform(isPlaced ? placement : Raster::AffineTransform::Params{}), blendMode(mode),
      isScaledWithObject(scalesWithObject)
{}

FillDescriptor::FillDescriptor(const FillDescriptor& other, const Raster::AffineTransform::Params& outer)
    : FillDescriptor(other.fill, HasPlacement(other), outer * other.transform, other.blendMode,
                     other.isScaledWithObject)
{}

Kernel::Counted<FillDescriptor> FillDescriptor::CreateNone()
{
    static const auto none = Kernel::MakeCounted<FillDescriptor>(FillNone::Get(), FillBlendMode::Normal);
    return none;
}

bool FillDescriptor::IsEqual(const FillDescriptor& other) const
{
    return GetKey(*this) == GetKey(other);
}

std::size_t FillDescriptor::GetHash() const
{
    return HashOf(GetKey(*this));
}

} // namespace Renderer
