#pragma once

#include "filters/FilterWithPredictor.h"

#include <array>
#include <memory>

struct z_stream_s;

namespace Quillet {

/// Inflates zlib data as it is asked for.
///
/// Where the input ends before the data does, it asks its source for more than the stream declared. Damage ends the
/// data with kind 13, and what came before it is delivered.
class QUILLET_API FlateFilter : public FilterWithPredictor
{
public:
    explicit FlateFilter(const ErrorHandler* handler = nullptr);
    ~FlateFilter() override;
    FlateFilter(const FlateFilter&) = delete;
    FlateFilter& operator=(const FlateFilter&) = delete;

    int Decode(char* buf, int size) override;
    bool AtEnd() const override { return !stream; }
    unsigned long long GetEstimatedLength() const override;

    /// Ends the data; whatever is left is not delivered.
    void Close();

    std::array<unsigned char, 4096> inputBuffer;
    /// Null once the data has ended.
    std::unique_ptr<z_stream_s> stream;

private:
    enum class Outcome { Filled, Finished, Failed };

    Outcome Inflate();
    void FetchInput();
    int ReadSource(int size);
};

} // namespace Quillet
