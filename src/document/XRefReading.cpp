// Reading the cross-reference chain, from the newest section to the oldest: the first entry for a number wins.

#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "document/XRefs.h"
#include "filters/Stream.h"

#include <algorithm>
#include <optional>

namespace Quillet {

using namespace Token;

namespace {

/// The count of records is the file's word only: they are read in pieces, so that memory is taken for bytes that came.
constexpr long long c_pieceLength = 65536;

/// Field `index` of a big-endian record; only the lowest four bytes of a wide field count.
unsigned GetField(const unsigned char* record, const std::vector<int>& widths, std::size_t index, unsigned fallback)
{
    if (index >= widths.size() || widths[index] == 0) return fallback;
    for (std::size_t i = 0; i < index; ++i)
        record += widths[i];
    unsigned value = 0;
    for (int i = 0; i < widths[index]; ++i)
        value = value << 8 | record[i];
    return value;
}

/// Nothing for widths that no record has.
std::optional<std::size_t> GetRecordLength(const std::vector<int>& widths)
{
    unsigned long long length = 0;
    for (const int width : widths) {
        if (width < 0) return std::nullopt;
        length += static_cast<unsigned long long>(width);
    }
    if (length > Limits::c_maxRecordLength) return std::nullopt;
    return length;
}

} // namespace

void XRefs::Read(const Ref& start)
{
    document = start.document;
    if (!Check(!start.IsNull(), Error::XRefTable)) return;
    Parser parser(start);
    parser.SetType(Error::XRefTable);
    if (!FindFinalTrailer(parser, start)) {
        if (Check(!finalTrailer.IsNull(), Error::XRefTable)) ReadStreamChain(finalTrailer);
        return;
    }
    Guard::Walk walk(Guard::Way::Tables, start);
    for (unsigned long long pos = start.GetPos(); pos != 0; pos = ReadTable(parser, pos)) {
        if (!Check(walk.Enter(Ref::FromPosition(start, pos)), Error::XRefTable)) return;
    }
}

bool XRefs::FindFinalTrailer(Parser& parser, const Ref& start)
{
    parser.Seek(start.GetPos());
    if (parser.NextToken() != TokenKeyword || parser.tokenText != "xref") {
        parser.Seek(start.GetPos());
        finalTrailer = parser.NextObjectStart();
        return false;
    }
    while (parser.NextToken() == TokenInt) {
        const long long count = parser.NextInt();
        parser.SkipSpace();
        if (count <= 0) continue;
        if (entrySize == 0) SetEntrySize(parser);
        unsigned long long distance = 0;
        if (__builtin_mul_overflow(static_cast<unsigned long long>(count), entrySize, &distance)) distance = ~0ull;
        SeekForward(parser, distance);
    }
    Check(parser.tokenType == TokenKeyword, parser.errorType);
    Check(parser.tokenText == "trailer", Error::XRefTable);
    finalTrailer = Ref::FromPosition(start, parser.GetPosition());
    return true;
}

/// Measures the first entry of the newest table; all tables of the file are taken to be alike.
void XRefs::SetEntrySize(Parser& parser)
{
    const unsigned long long pos = parser.GetPosition();
    parser.Skip(TokenInt);
    parser.Skip(TokenInt);
    parser.Skip(TokenKeyword);
    parser.SkipSpace();
    entrySize = parser.GetPosition() - pos;
    parser.Seek(pos);
}

void XRefs::SeekForward(Parser& parser, unsigned long long distance)
{
    const unsigned long long pos = parser.GetPosition();
    if (Check(distance <= parser.source->GetLength(), Error::XRefTable)) parser.Seek(pos + distance);
}

unsigned long long XRefs::ReadTable(Parser& parser, unsigned long long pos)
{
    parser.Seek(pos);
    parser.Skip("xref");
    while (parser.NextToken() == TokenInt)
        ReadSection(parser);
    Check(parser.tokenType == TokenKeyword, parser.errorType);
    Check(parser.tokenText == "trailer", Error::XRefTable);

    const unsigned long long trailerPos = parser.GetPosition();
    if (parser.DictionarySeek(trailerPos, "XRefStm")) {
        if (const long long streamPos = parser.NextInt(); streamPos > 0) {
            parser.Seek(static_cast<unsigned long long>(streamPos));
            ReadStreamChain(parser.NextObjectStart());
        }
    }
    if (!parser.DictionarySeek(trailerPos, "Prev")) return 0;
    return static_cast<unsigned long long>(parser.NextInt());
}

void XRefs::ReadSection(Parser& parser)
{
    const long long first = parser.tokenInt;
    const long long count = parser.NextInt();
    parser.SkipSpace();
    if (count > 0 && entrySize == 0) SetEntrySize(parser);
    for (long long i = 0; i < count; ++i) {
        if (!Check(!parser.AtEnd(), Error::XRefTable)) return;
        XRef* entry = Touch(first + i);
        if (!entry) return;
        if (entry->IsAlreadyLoaded()) {
            SeekForward(parser, entrySize);
        } else {
            ReadEntry(parser, *entry);
        }
    }
}

void XRefs::ReadEntry(Parser& parser, XRef& entry)
{
    entry.pos = static_cast<unsigned long long>(parser.NextInt());
    entry.generation = static_cast<int>(parser.NextInt());
    if (!parser.Check(parser.NextToken() == TokenKeyword, parser.errorType)) return;
    entry.isInUse = parser.tokenText == "n";
    Check(entry.isInUse || parser.tokenText == "f", Error::XRefTable);
}

void XRefs::ReadStreamChain(Ref ref)
{
    Guard::Walk walk(Guard::Way::TableStreams, ref);
    std::vector<unsigned long long> chain;
    while (!ref.IsNull()) {
        // By its place: the number that stands there may be one that the table has elsewhere.
        const unsigned long long pos = ref.pos;
        if (!Check(walk.Enter(Ref::FromPosition(ref, pos)), Error::XRefTable)) return;
        // Hybrid files may lead to the same streams from several tables; nothing new is in them or behind them.
        if (readStreams.contains(pos)) break;
        chain.push_back(pos);
        ref = ReadStream(ref);
    }
    readStreams.insert(chain.begin(), chain.end());
}

Ref XRefs::ReadStream(const Ref& ref)
{
    auto dictionary = Kernel::MakeCounted<Dictionary>(ref, "XRef", Error::XRefTable);
    std::vector<int> index;
    if (!dictionary->GetIntVec("Index", index)) index = {0, dictionary->GetInt("Size", 0)};
    std::vector<int> widths;
    dictionary->GetIntVec("W", widths);
    const auto recordLength = GetRecordLength(widths);
    if (!Check(recordLength.has_value(), Error::XRefTable)) return {};

    Stream stream(dictionary);
    for (std::size_t i = 0; *recordLength != 0 && i + 1 < index.size(); i += 2) {
        const int count = index[i + 1];
        if (!Check(count >= 0 && ReadStreamSection(stream, index[i], count, widths, *recordLength), Error::XRefTable))
            return {};
    }

    const int previous = dictionary->GetInt("Prev", 0);
    if (previous < 1 || static_cast<unsigned>(previous) > dictionary->source->GetLength()) return {};
    dictionary->Seek(static_cast<unsigned long long>(previous));
    return dictionary->NextObjectStart();
}

bool XRefs::ReadStreamSection(SequentialSource& stream, long long first, int count, const std::vector<int>& widths,
                              std::size_t recordLength)
{
    const auto recordsAtOnce = std::max<long long>(c_pieceLength / static_cast<long long>(recordLength), 1);
    const long long end = first + count;
    std::vector<char> piece;
    for (long long number = first; number < end;) {
        piece.resize(static_cast<std::size_t>(std::min(end - number, recordsAtOnce)) * recordLength);
        if (stream.ReadUpTo(piece.data(), piece.size()) != piece.size()) return false;
        for (std::size_t offset = 0; offset < piece.size(); offset += recordLength)
            ReadStreamEntry(number++, reinterpret_cast<const unsigned char*>(piece.data()) + offset, widths);
    }
    return true;
}

void XRefs::ReadStreamEntry(long long index, const unsigned char* record, const std::vector<int>& widths)
{
    XRef* entry = Touch(index);
    if (!entry || entry->IsAlreadyLoaded()) return;
    switch (GetField(record, widths, 0, 1)) {
    case 1:
        entry->pos = GetField(record, widths, 1, 0);
        entry->generation = static_cast<int>(GetField(record, widths, 2, 0));
        entry->isInUse = true;
        entry->isInStreamEntry = false;
        break;
    case 2:
        entry->pos = 1;
        entry->generation = 0;
        entry->streamNumber = static_cast<int>(GetField(record, widths, 1, 0));
        entry->streamIndex = static_cast<int>(GetField(record, widths, 2, 0));
        entry->isInUse = true;
        entry->isInStreamEntry = true;
        break;
    default:
        entry->isInUse = false;
    }
}

} // namespace Quillet
