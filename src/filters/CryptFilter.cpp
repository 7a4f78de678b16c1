#include "filters/CryptFilter.h"

#include "document/DecodeParams.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <Kernel/Secret.h>

#include <algorithm>
#include <limits>

namespace Quillet {

CryptFilter::CryptFilter(const Ref& object)
{
    if (const Encrypt* encrypt = object.GetEncrypt()) cryptor = encrypt->MakeObjectCryptor(object);
}

CryptFilter::~CryptFilter()
{
    Kernel::Wipe(decrypted);
}

void CryptFilter::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    if (const Encrypt* encrypt = params->owner.GetEncrypt())
        cryptor = encrypt->MakeObjectCryptor(params->owner, *params);
}

int CryptFilter::Decode(char* buf, int size)
{
    if (decrypted.empty()) ReadAll(decrypted);
    const std::size_t count = std::min(static_cast<std::size_t>(std::max(size, 0)), decrypted.size() - readPos);
    std::copy_n(decrypted.data() + readPos, count, buf);
    readPos += count;
    return static_cast<int>(count);
}

void CryptFilter::ReadAll(std::vector<char>& out)
{
    if (!decrypted.empty()) {
        out.insert(out.end(), decrypted.begin() + static_cast<std::ptrdiff_t>(readPos), decrypted.end());
        readPos = decrypted.size();
        return;
    }
    if (!cryptor) {
        source->ReadAll(out);
        return;
    }
    std::vector<char> encrypted;
    source->ReadAll(encrypted);
    const std::size_t size = std::min(encrypted.size(), static_cast<std::size_t>(std::numeric_limits<int>::max()));
    if (!Budget::Spend(Limits::c_decryptUnits + size)) return;
    const std::size_t start = out.size();
    out.resize(start + size);
    const int count = cryptor->Decrypt(out.data() + start, encrypted.data(), static_cast<int>(size));
    out.resize(start + static_cast<std::size_t>(count));
}

bool CryptFilter::AtEnd() const
{
    return readPos == decrypted.size() && GetEstimatedLength() != 0;
}

unsigned long long CryptFilter::GetEstimatedLength() const
{
    return decrypted.empty() ? source->GetEstimatedLength() : decrypted.size();
}

} // namespace Quillet
