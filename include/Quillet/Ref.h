#pragma once

#include <Quillet/Error.h>
#include <Quillet/ErrorPlace.h>
#include <Quillet/RefCacheable.h>

#include <Kernel/Counted.h>
#include <Kernel/NonCounted.h>

#include <cstddef>
#include <string>
#include <vector>

namespace Quillet {

class ColourSpaceFactory;
class Encrypt;
class ErrorHandler;
class PdfDocument;
class PdfSource;

/// Names a value in the file: a whole indirect object, or a value by its position.
///
/// A small value that keeps nothing alive; the document outlives it.
class QUILLET_API Ref
{
public:
    /// The null reference.
    Ref() = default;
    /// An indirect object, wherever the document's table has it.
    Ref(Kernel::NonCounted<PdfDocument> owner, int objectNumber, int objectGeneration);
    /// An object that starts at `objectPos`, whether or not the table lists it.
    Ref(const Ref& like, int objectNumber, int objectGeneration, unsigned long long objectPos);
    /// A bare position; number and generation are those of the enclosing object, for decryption.
    static Ref FromPosition(const Ref& enclosing, unsigned long long pos);

    bool IsNull() const { return isIndirect ? number < 0 : pos == 0; }

    unsigned long long GetPos() const;
    /// Where the value stands, by whatever number it is called: its position, and the object stream if it lies in one.
    struct Place
    {
        unsigned long long pos = 0;
        int streamNumber = -1;
        int streamIndex = -1;
        /// A whole object and the first value in it are two things.
        bool isIndirect = false;

        friend bool operator==(const Place&, const Place&) = default;
    };
    struct PlaceHash
    {
        QUILLET_API std::size_t operator()(const Place& place) const;
    };
    Place GetPlace() const;
    /// Same position in the same source, and both whole objects or both not.
    friend QUILLET_API bool operator==(const Ref& a, const Ref& b);
    std::size_t GetHash() const;
    /// "R12", "R12/3" with a generation, "P1234" for a position outside any object.
    std::string GetName() const;

    bool IsEncrypted() const;
    void DecryptBuf(std::vector<char>& buf) const;
    /// The document; null without one.
    const ErrorHandler* GetErrorHandler() const;
    /// Raises `type` at this value. Without a document, nothing happens.
    void OnError(Error::Type type) const;
    /// The object, and the position of the value in the file.
    ErrorPlace GetErrorPlace() const { return GetErrorPlace(GetPos()); }
    /// The object, and a position in what it is read from.
    ErrorPlace GetErrorPlace(unsigned long long at) const;

    /// Keeps `value` with the object for the life of the document. The first value stays.
    void SetCache(Kernel::Counted<const RefCacheable> value) const;
    Kernel::Counted<const RefCacheable> GetCacheBase() const;
    /// What is cached for this value if it is a `T`, else null.
    template <typename T>
    Kernel::Counted<const T> GetCache() const
    {
        return Kernel::DynamicCast<const T>(GetCacheBase());
    }

    // Not for hosts.

    /// Where the value is read from; null without a document.
    Kernel::Counted<PdfSource> GetSource() const;
    Encrypt* GetEncrypt() const;
    Kernel::NonCounted<ColourSpaceFactory> GetColourSpaceFactory() const;

    unsigned long long pos = 0;
    int number = -1;
    int generation = -1;
    bool isIndirect = false;
    bool isInStream = false;
    Kernel::NonCounted<PdfDocument> document;

private:
    /// Direct values inside an object have cache places of their own under the object's entry.
    unsigned long long GetCacheKey() const { return isIndirect ? 0 : pos; }
};

} // namespace Quillet
