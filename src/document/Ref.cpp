#include <Quillet/Ref.h>

#include "document/DocumentState.h"
#include "document/PdfSource.h"

#include <Quillet/PdfDocument.h>

#include <Kernel/FormatString.h>
#include <Kernel/HashAccumulator.h>

namespace Quillet {

Ref::Ref(Kernel::NonCounted<PdfDocument> owner, int objectNumber, int objectGeneration)
    : number(objectNumber), generation(objectGeneration), isIndirect(true),
      isInStream(owner && owner->GetState().xrefs.IsInStream(objectNumber, objectGeneration)), document(owner)
{}

Ref::Ref(const Ref& like, int objectNumber, int objectGeneration, unsigned long long objectPos)
    : pos(objectPos), number(objectNumber), generation(objectGeneration), isIndirect(true), document(like.document)
{}

Ref Ref::FromPosition(const Ref& enclosing, unsigned long long pos)
{
    Ref ref = enclosing;
    ref.pos = pos;
    ref.isIndirect = false;
    return ref;
}

unsigned long long Ref::GetPos() const
{
    if (!isIndirect || !document) return pos;
    const unsigned long long listed = document->GetState().xrefs.GetPos(number, generation);
    return listed != 0 ? listed : pos;
}

Ref::Place Ref::GetPlace() const
{
    Place place;
    place.pos = GetPos();
    place.isIndirect = isIndirect;
    if (isInStream && document) {
        if (const XRefs::XRef* entry = document->GetState().xrefs.GetXRef(number, generation)) {
            place.streamNumber = entry->streamNumber;
            place.streamIndex = entry->streamIndex;
        }
    }
    return place;
}

std::size_t Ref::PlaceHash::operator()(const Place& place) const
{
    std::size_t hash = 0;
    Kernel::HashAccumulator::AddToHash(hash, &place.pos, sizeof place.pos);
    Kernel::HashAccumulator::AddToHash(hash, &place.streamNumber, sizeof place.streamNumber);
    Kernel::HashAccumulator::AddToHash(hash, &place.streamIndex, sizeof place.streamIndex);
    return hash;
}

Kernel::Counted<PdfSource> Ref::GetSource() const
{
    if (!document) return nullptr;
    if (isInStream) {
        if (Kernel::Counted<PdfSource> source = document->GetState().xrefs.GetSource(number, generation)) return source;
    }
    return document->GetState().source;
}

bool operator==(const Ref& a, const Ref& b)
{
    if (a.isIndirect != b.isIndirect || a.document.Get() != b.document.Get() || a.isInStream != b.isInStream)
        return false;
    // All objects in streams start at the same position; their sources are made anew for each reader, so it is the
    // object that tells two sources apart.
    if (a.isInStream && (a.number != b.number || a.generation != b.generation)) return false;
    return a.GetPos() == b.GetPos();
}

std::size_t Ref::GetHash() const
{
    std::size_t hash = 0;
    Kernel::HashAccumulator::AddToHash(hash, &pos, sizeof pos);
    Kernel::HashAccumulator::AddToHash(hash, &number, sizeof number);
    Kernel::HashAccumulator::AddToHash(hash, &generation, sizeof generation);
    return hash;
}

std::string Ref::GetName() const
{
    if (number < 0) return Kernel::FormatString("P%1", pos);
    if (generation != 0) return Kernel::FormatString("R%1/%2", number, generation);
    return Kernel::FormatString("R%1", number);
}

bool Ref::IsEncrypted() const
{
    return document && document->GetState().encrypt.IsEncrypted(*this);
}

void Ref::DecryptBuf(std::vector<char>& buf) const
{
    if (document) document->GetState().encrypt.DecryptBuf(*this, buf);
}

Encrypt* Ref::GetEncrypt() const
{
    return document ? &document->GetState().encrypt : nullptr;
}

const ErrorHandler* Ref::GetErrorHandler() const
{
    return document.Get();
}

Kernel::NonCounted<ColourSpaceFactory> Ref::GetColourSpaceFactory() const
{
    if (!document) return nullptr;
    return document->GetState().colourSpaceFactory.Get();
}

void Ref::OnError(Error::Type type) const
{
    if (document) document->OnErrorAt(type, GetErrorPlace());
}

ErrorPlace Ref::GetErrorPlace(unsigned long long at) const
{
    ErrorPlace place;
    place.objectNumber = number;
    place.objectGeneration = generation;
    const PdfSource* const file = document ? document->GetState().source.Get() : nullptr;
    if (file && at != 0 && !isInStream) place.position = static_cast<long long>(file->GetPosInSource(at));
    return place;
}

void Ref::SetCache(Kernel::Counted<const RefCacheable> value) const
{
    if (value && document) document->GetState().xrefs.SetCache(number, generation, GetCacheKey(), std::move(value));
}

Kernel::Counted<const RefCacheable> Ref::GetCacheBase() const
{
    return document ? document->GetState().xrefs.GetCache(number, generation, GetCacheKey()) : nullptr;
}

} // namespace Quillet
