#include "filters/LzwFilter.h"

#include "document/Limits.h"
#include "document/DecodeParams.h"
#include "filters/LcwTable.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace Quillet {

namespace {

/// Takes codes of a changing width from bytes, from the high end on.
class CodeReader
{
public:
    explicit CodeReader(const std::vector<char>& bytes) : next(bytes.data()), end(next + bytes.size()) {}

    /// The next code, or -1 if fewer bits are left.
    int Read(int width)
    {
        while (bitCount < width) {
            if (next == end) return -1;
            bits = bits << 8 | static_cast<unsigned char>(*next++);
            bitCount += 8;
        }
        bitCount -= width;
        return static_cast<int>(bits >> bitCount & ((1u << width) - 1));
    }

private:
    const char* next;
    const char* end;
    unsigned bits = 0;
    int bitCount = 0;
};

/// Appends to a vector that grows in large steps, so that a string of a few bytes costs no call.
class Appender
{
public:
    explicit Appender(std::vector<char>& target, std::size_t expected) : out(target), start(out.size()), length(start)
    {
        out.resize(start + expected);
    }
    ~Appender() { out.resize(length); }
    Appender(const Appender&) = delete;
    Appender& operator=(const Appender&) = delete;

    /// Room for `count` bytes that the caller fills; null if the data would outgrow what a stream may hold.
    char* Extend(std::size_t count)
    {
        if (length - start + count > Limits::c_maxDecodedLength) return nullptr;
        if (out.size() - length < count) {
            const std::size_t growth = std::max(count, out.size() / 2 + 4096);
            // The old room and the new are there at once.
            if (!Budget::Spend(out.size() + growth)) return nullptr;
            out.resize(out.size() + growth);
        }
        char* place = out.data() + length;
        length += count;
        return place;
    }

private:
    std::vector<char>& out;
    std::size_t start;
    std::size_t length;
};

constexpr int c_minWidth = 9;
constexpr int c_maxWidth = 12;

void WriteString(const LcwEntry& entry, char* place)
{
    char* last = place + entry.length - 1;
    for (const LcwEntry* part = &entry; part; part = part->parent)
        *last-- = static_cast<char>(part->lastChar);
}

} // namespace

void LzwFilter::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    FilterWithPredictor::SetDecodeParams(params);
    earlyChange = params->GetInt("EarlyChange", 1) != 0;
}

void LzwFilter::DecodeAll(std::vector<char>& out)
{
    Check(!isUnbuffered, Error::UnimplementedFeature);
    std::vector<char> input;
    source->ReadAll(input);
    if (input.size() < 2) return;

    CodeReader codes(input);
    Appender appender(out, input.size());
    // Too large for the stack of a chain of filters.
    const auto ownTable = std::make_unique<LcwTable>();
    LcwTable& table = *ownTable;
    const LcwEntry* previous = nullptr;
    int width = c_minWidth;
    for (int code = codes.Read(width); code >= 0 && code != LcwTable::c_endCode; code = codes.Read(width)) {
        if (code == LcwTable::c_clearCode) {
            table.Clear();
            width = c_minWidth;
            previous = nullptr;
            continue;
        }
        if (!previous) {
            // Behind a clear code there are only single bytes; of another code the low half is all that has a meaning.
            code &= 0xff;
        } else {
            if (!Check(code <= table.Size(), Error::General)) return;
            const int mask = (1 << width) - 1;
            const bool grow = width < c_maxWidth && table.Size() + earlyChange == mask;
            if (table.Size() < LcwTable::c_capacity) table.Add(previous, &table[code]);
            if (grow) ++width;
        }
        const LcwEntry& entry = table[code];
        char* place = appender.Extend(entry.length);
        if (!Check(place != nullptr, Error::General)) return;
        WriteString(entry, place);
        previous = &entry;
    }
}

int LzwFilter::Decode(char* buf, int size)
{
    if (readPos == 0) DecodeAll(decoded);
    if (size <= 0 || readPos >= decoded.size()) return 0;
    const std::size_t count = std::min<std::size_t>(static_cast<unsigned>(size), decoded.size() - readPos);
    std::memcpy(buf, decoded.data() + readPos, count);
    readPos += count;
    return static_cast<int>(count);
}

void LzwFilter::ReadAll(std::vector<char>& out)
{
    if (readPos < decoded.size()) {
        out.insert(out.end(), decoded.begin() + static_cast<std::ptrdiff_t>(readPos), decoded.end());
        readPos = decoded.size();
    } else if (readPos == 0) {
        DecodeAll(out);
        readPos = out.size();
    }
}

bool LzwFilter::AtEnd() const
{
    return readPos == decoded.size() && GetEstimatedLength() != 0;
}

unsigned long long LzwFilter::GetEstimatedLength() const
{
    return decoded.empty() ? source->GetEstimatedLength() * 2 : decoded.size();
}

} // namespace Quillet
