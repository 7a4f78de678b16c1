#pragma once

#include "support/BytesFilter.h"
#include "support/ErrorRecorder.h"

#include "document/DecodeParams.h"
#include "document/Filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace Quillet {

/// What came out of a filter, and what it did meanwhile.
struct Decoding
{
    std::string bytes;
    std::vector<int> kinds;
    std::string rest;
    bool isAtEnd = false;
};

inline Kernel::Counted<const DecodeParams> MakeParams(std::unordered_map<std::string, int> ints)
{
    auto params = Kernel::MakeCounted<DecodeParams>();
    params->ints = std::move(ints);
    return params;
}

/// Reads `filter` to its end in steps of `step` bytes, or with one `ReadAll` if that is 0.
inline std::string Drain(Filter& filter, int step)
{
    std::vector<char> all;
    if (step == 0) {
        filter.ReadAll(all);
    } else {
        std::vector<char> piece(static_cast<std::size_t>(step));
        for (int count; (count = filter.Read(piece.data(), step)) > 0;) {
            EXPECT_LE(count, step);
            all.insert(all.end(), piece.begin(), piece.begin() + count);
        }
    }
    return {all.begin(), all.end()};
}

/// Decodes `input` with a new filter for every way of reading, and expects the same of all of them.
template <typename T>
Decoding Decode(
    const std::string& input, const std::function<void(T&)>& setUp = [](T&) {})
{
    Decoding first;
    for (const int step : {0, 1, 3, 7, 4096, 100'000}) {
        ErrorRecorder recorder;
        auto source = Kernel::MakeCounted<BytesFilter>(input);
        auto filter = Kernel::MakeCounted<T>();
        filter->SetErrorHandler(&recorder);
        filter->SetSource(source);
        setUp(*filter);
        Decoding decoding{Drain(*filter, step), {}, {}, false};
        decoding.kinds = recorder.kinds;
        decoding.rest = source->GetRest();
        decoding.isAtEnd = filter->AtEnd();
        if (step == 0) {
            first = decoding;
            continue;
        }
        EXPECT_EQ(decoding.bytes, first.bytes) << "in steps of " << step;
        EXPECT_EQ(decoding.kinds, first.kinds) << "in steps of " << step;
    }
    return first;
}

/// Text that repeats itself here and there, the same on every run.
inline std::string MakeText(std::size_t size, int alphabet = 200)
{
    std::mt19937 random(4711);
    std::string text;
    while (text.size() < size) {
        if (text.size() > 20 && random() % 3 == 0) {
            text += text.substr(random() % (text.size() - 10), 3 + random() % 40);
        } else {
            text += static_cast<char>(random() % static_cast<unsigned>(alphabet));
        }
    }
    text.resize(size);
    return text;
}

} // namespace Quillet
