#include "document/ObjectSource.h"

#include "document/Dictionary.h"
#include "document/Limits.h"
#include "document/ObjectSubSource.h"
#include "filters/Stream.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cstring>

namespace Quillet {

void ObjectSource::Open(const Ref& ref, unsigned long long maxLength)
{
    SetErrorHandler(ref.GetErrorHandler());
    if (!Check(maxLength != 0, Error::General)) return;
    auto dictionary = Kernel::MakeCounted<Dictionary>(ref);
    Stream stream(dictionary);
    const int objectCount = dictionary->GetInt("N", 0);
    const auto first = static_cast<unsigned long long>(dictionary->GetInt("First", 0));
    stream.ReadAll(data);
    decodedLength = std::min<unsigned long long>(data.size(), maxLength);
    if (!Check(data.size() <= maxLength, Error::General)) data = {};

    // An object takes at least the two numbers of its header with a blank each.
    const auto count = std::min(static_cast<std::size_t>(std::max(objectCount, 0)), data.size() / 4 + 1);
    offsets.reserve(count);
    auto parser = Kernel::MakeCounted<Parser>(Kernel::Counted<PdfSource>(this));
    for (std::size_t i = 0; i < count && Budget::Spend(Limits::c_entryUnits); ++i) {
        parser->Skip(Token::TokenInt);
        offsets.push_back(static_cast<unsigned long long>(parser->NextInt()) + first);
    }
}

Kernel::Counted<ObjectSubSource> ObjectSource::MakeSubSource(int index)
{
    const auto at = [this](unsigned long long i) {
        return i < offsets.size() ? std::min<unsigned long long>(offsets[i], data.size()) : data.size();
    };
    const auto position = static_cast<unsigned long long>(index);
    const unsigned long long start = index < 0 ? data.size() : at(position);
    const unsigned long long end = index < 0 ? data.size() : at(position + 1);
    return Kernel::MakeCounted<ObjectSubSource>(Kernel::Counted<ObjectSource>(this), start,
                                                end > start ? end - start : 0);
}

void ObjectSource::UncheckedRead(unsigned long long pos, char* buf, int size) const
{
    std::memcpy(buf, data.data() + pos, static_cast<std::size_t>(size));
}

int ObjectSource::Read(unsigned long long pos, char* buf, int size)
{
    if (pos >= data.size() || size <= 0) return 0;
    const int count = static_cast<int>(std::min<unsigned long long>(data.size() - pos, static_cast<unsigned>(size)));
    UncheckedRead(pos, buf, count);
    return count;
}

} // namespace Quillet
