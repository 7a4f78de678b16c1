#pragma once

#include "document/Filter.h"

#include <string>
#include <vector>

namespace Quillet {

/// A source for a filter under test: bytes in memory, of which the stream may declare fewer than there are, handed over
/// in pieces of at most a given size.
class BytesFilter : public Filter
{
public:
    explicit BytesFilter(std::string content, int maxPiece = 1 << 30)
        : bytes(std::move(content)), declared(bytes.size()), pieceSize(maxPiece)
    {}

    int Decode(char* buf, int size) override;
    void ReadAll(std::vector<char>& out) override;
    bool AtEnd() const override { return pos == declared; }
    unsigned long long GetEstimatedLength() const override { return declared - pos; }
    int IncreaseLength(int more) override;

    /// What nobody has taken yet.
    std::string GetRest() const { return bytes.substr(pos); }

    std::string bytes;
    std::size_t pos = 0;
    std::size_t declared;
    int pieceSize;
};

} // namespace Quillet
