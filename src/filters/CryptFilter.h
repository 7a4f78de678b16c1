#pragma once

#include "document/Encrypt.h"
#include "document/Filter.h"

#include <vector>

namespace Quillet {

/// Decrypts a stream, as a whole and at the first read: the last block tells where the data ends.
class QUILLET_API CryptFilter : public Filter
{
public:
    /// For a "Crypt" filter that a stream names itself: what it does comes with the parameters.
    CryptFilter() = default;
    /// Decrypts by the rules for all streams of the document.
    explicit CryptFilter(const Ref& object);
    ~CryptFilter() override;
    CryptFilter(const CryptFilter&) = delete;
    CryptFilter& operator=(const CryptFilter&) = delete;

    int Decode(char* buf, int size) override;
    void ReadAll(std::vector<char>& out) override;
    bool AtEnd() const override;
    unsigned long long GetEstimatedLength() const override;
    void SetDecodeParams(Kernel::Counted<const DecodeParams> params) override;

    /// Null if nothing is to be decrypted.
    Kernel::Counted<Encrypt::ObjectCryptor> cryptor;
    std::vector<char> decrypted;
    std::size_t readPos = 0;
};

} // namespace Quillet
