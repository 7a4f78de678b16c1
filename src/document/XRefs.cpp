#include "document/XRefs.h"

#include "document/DocumentState.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "document/ObjectSource.h"
#include "document/ObjectSubSource.h"
#include "document/Parser.h"

#include <Quillet/Budget.h>
#include <Quillet/PdfDocument.h>

#include <Kernel/HashAccumulator.h>

namespace Quillet {

std::size_t XRefs::CacheHash::operator()(const CacheKey& key) const
{
    std::size_t hash = 0;
    Kernel::HashAccumulator::AddToHash(hash, &key.number, sizeof key.number);
    Kernel::HashAccumulator::AddToHash(hash, &key.key, sizeof key.key);
    return hash;
}

XRefs::XRef::XRef() = default;
XRefs::XRef::~XRef() = default;

XRefs::XRefs(Kernel::NonCounted<PdfDocument> owner, const ErrorHandler* errorHandler)
    : ErrorForwarder(errorHandler), document(owner)
{}

XRefs::~XRefs() = default;

XRefs::XRef* XRefs::Find(int number)
{
    if (number < 0) return nullptr;
    const auto block = static_cast<std::size_t>(number / c_blockSize);
    if (block >= table.size() || !table[block]) return nullptr;
    return &(*table[block])[static_cast<std::size_t>(number % c_blockSize)];
}

XRefs::XRef* XRefs::Touch(long long number)
{
    if (!Check(number >= 0 && number <= std::numeric_limits<int>::max(), Error::XRefTable)) return nullptr;
    const auto block = static_cast<std::size_t>(number / c_blockSize);
    if (!Budget::Spend(Limits::c_touchUnits)) return nullptr;
    if (block >= table.size()) {
        if (!Budget::Spend((block + 1 - table.size()) * sizeof table[0])) return nullptr;
        table.resize(block + 1);
    }
    if (!table[block]) {
        if (!Budget::Spend(sizeof(Block) / 2 * 3)) return nullptr;
        if (!Check(blockCount < Limits::c_maxTableEntries / c_blockSize, Error::XRefTable)) return nullptr;
        ++blockCount;
        table[block] = std::make_unique<Block>();
    }
    return &(*table[block])[static_cast<std::size_t>(number % c_blockSize)];
}

XRefs::XRef* XRefs::GetXRef(int number, int generation)
{
    XRef* entry = Find(number);
    return entry && entry->isInUse && entry->generation == generation ? entry : nullptr;
}

unsigned long long XRefs::GetPos(int number, int generation)
{
    const XRef* entry = GetXRef(number, generation);
    return entry ? entry->pos : 0;
}

bool XRefs::IsInStream(int number, int generation)
{
    const XRef* entry = GetXRef(number, generation);
    return entry && entry->isInStreamEntry;
}

Kernel::Counted<PdfSource> XRefs::GetSource(int number, int generation)
{
    const XRef* entry = GetXRef(number, generation);
    if (!entry || !entry->isInStreamEntry) return document->GetState().source;

    XRef* container = GetXRef(entry->streamNumber, 0);
    if (!container) return nullptr;
    if (!container->objectSource) {
        // All pages read from it.
        const Budget::Scope scope(document->GetBudget(), Budget::Share::All, document->GetAbortPointer());
        Guard::Descent descent;
        if (!Check(static_cast<bool>(descent), Error::General)) return nullptr;
        // Kept before it is opened: a stream that lies in itself, or that needs an object of its own to be read, finds
        // it empty instead of opening it for ever.
        container->objectSource = Kernel::MakeCounted<ObjectSource>();
        Kernel::Counted<ObjectSource> opened = container->objectSource;
        opened->Open(Ref(document, entry->streamNumber, 0), Limits::c_maxObjectStreamBytes - objectStreamBytes);
        // What was cut short is not kept: the host may have stopped it, and ask again.
        if (Budget::IsSpent()) {
            container->objectSource = nullptr;
            return nullptr;
        }
        objectStreamBytes += opened->decodedLength;
    }
    return container->objectSource->MakeSubSource(entry->streamIndex);
}

Kernel::Counted<const RefCacheable> XRefs::GetCache(int number, int generation, unsigned long long key)
{
    const XRef* entry = GetXRef(number, generation);
    if (!entry) return nullptr;
    const auto found = cache.find({number, key});
    return found == cache.end() ? nullptr : found->second;
}

void XRefs::SetCache(int number, int generation, unsigned long long key, Kernel::Counted<const RefCacheable> value)
{
    XRef* entry = GetXRef(number, generation);
    if (!entry || Budget::IsSpent() || GetCache(number, generation, key)) return;
    if (const std::size_t bytes = value->GetDispensableBytes(); bytes != 0) {
        if (bytes > Limits::c_maxFontBytes - dispensableBytes) return;
        dispensableBytes += bytes;
    }
    cache.emplace(CacheKey{number, key}, std::move(value));
}

void XRefs::ClearCaches()
{
    // What is cached may look back at the cache while it goes.
    const auto dropped = std::exchange(cache, {});
    dispensableBytes = 0;
}

void XRefs::Close()
{
    // What is cached may look back at the table while it goes.
    const auto droppedValues = std::exchange(cache, {});
    const auto dropped = std::exchange(table, {});
    blockCount = 0;
    objectStreamBytes = 0;
    dispensableBytes = 0;
    entrySize = 0;
    readStreams.clear();
    finalTrailer = Ref();
}

} // namespace Quillet
