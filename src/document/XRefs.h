#pragma once

#include <Quillet/ErrorForwarder.h>
#include <Quillet/Ref.h>

#include <array>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Quillet {

class ObjectSource;
class Parser;
class SequentialSource;

/// The cross-reference table of a document: where each object lies, and what was built from it.
class QUILLET_API XRefs : public ErrorForwarder
{
public:
    struct XRef
    {
        XRef();
        XRef(const XRef&) = delete;
        XRef& operator=(const XRef&) = delete;
        ~XRef();

        bool IsAlreadyLoaded() const { return pos != 0 || isInStreamEntry; }

        /// For an object in a stream the fixed value 1, which only says that the entry is loaded.
        unsigned long long pos = 0;
        /// An untouched entry matches no generation.
        int generation = -1;
        /// Made on demand, on entries of object streams.
        Kernel::Counted<ObjectSource> objectSource;
        int streamNumber = 0;
        int streamIndex = 0;
        bool isInUse = false;
        bool isInStreamEntry = false;
    };

    XRefs(Kernel::NonCounted<PdfDocument> owner, const ErrorHandler* errorHandler);
    ~XRefs() override;

    /// Reads the whole chain from the newest section on. Raises XRefTable for any defect.
    void Read(const Ref& start);
    /// Null unless the object is in use with this generation.
    XRef* GetXRef(int number, int generation);
    /// 0 if there is no such object.
    unsigned long long GetPos(int number, int generation);
    bool IsInStream(int number, int generation);
    /// What an object is read from; null if it lies in an object stream that is not there.
    Kernel::Counted<PdfSource> GetSource(int number, int generation);
    Kernel::Counted<const RefCacheable> GetCache(int number, int generation, unsigned long long key);
    /// The first value stays. What could be read again is not kept if there is too much of it, or if the work on it was
    /// cut short.
    void SetCache(int number, int generation, unsigned long long key, Kernel::Counted<const RefCacheable> value);
    /// Forgets what was built; the table stays.
    void ClearCaches();
    /// Forgets everything.
    void Close();

    Kernel::NonCounted<PdfDocument> document;
    Ref finalTrailer;
    /// Bytes of an entry of a classic table; 0 until measured.
    unsigned long long entrySize = 0;

private:
    /// The table grows by blocks, so that a lone object with a huge number costs little.
    static constexpr int c_blockSize = 256;
    using Block = std::array<XRef, c_blockSize>;
    std::vector<std::unique_ptr<Block>> table;
    unsigned long long blockCount = 0;
    /// What was built from objects, and from the values in them.
    struct CacheKey
    {
        int number;
        unsigned long long key;

        friend bool operator==(const CacheKey&, const CacheKey&) = default;
    };
    struct CacheHash
    {
        std::size_t operator()(const CacheKey& key) const;
    };
    std::unordered_map<CacheKey, Kernel::Counted<const RefCacheable>, CacheHash> cache;
    unsigned long long objectStreamBytes = 0;
    /// In the caches, of what could be read again.
    unsigned long long dispensableBytes = 0;
    /// Cross-reference streams that were read to the end of their chain.
    std::unordered_set<unsigned long long> readStreams;

    /// The entry of an object, made if it is not there; null, with XRefTable raised, for a number that cannot be.
    XRef* Touch(long long number);
    XRef* Find(int number);
    bool FindFinalTrailer(Parser& parser, const Ref& start);
    void SetEntrySize(Parser& parser);
    void SeekForward(Parser& parser, unsigned long long distance);
    unsigned long long ReadTable(Parser& parser, unsigned long long pos);
    void ReadSection(Parser& parser);
    void ReadEntry(Parser& parser, XRef& entry);
    void ReadStreamChain(Ref ref);
    /// Gives the previous one; null for none.
    Ref ReadStream(const Ref& ref);
    /// False if the stream ends before its records do.
    bool ReadStreamSection(SequentialSource& stream, long long first, int count, const std::vector<int>& widths,
                           std::size_t recordLength);
    void ReadStreamEntry(long long index, const unsigned char* record, const std::vector<int>& widths);
};

} // namespace Quillet
