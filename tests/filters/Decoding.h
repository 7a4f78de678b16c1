#pragma once

#include "support/BytesFilter.h"
#include "support/ErrorRecorder.h"

#include "document/DecodeParams.h"
#include "document/Filter.h"

#include <gtest/gtest.h>
#include <zlib.h>

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

/// Reads `source` to its end in steps of `step` bytes, or with one `ReadAll` if that is 0.
inline std::string Drain(SequentialSource& source, int step)
{
    std::vector<char> all;
    if (step == 0) {
        source.ReadAll(all);
    } else {
        std::vector<char> piece(static_cast<std::size_t>(step));
        for (int count; (count = source.Read(piece.data(), step)) > 0;) {
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
        const std::string bytes = Drain(*filter, step);
        const Decoding decoding{bytes, recorder.kinds, source->GetRest(), filter->AtEnd()};
        if (step == 0) {
            first = decoding;
            continue;
        }
        EXPECT_EQ(decoding.bytes, first.bytes) << "in steps of " << step;
        EXPECT_EQ(decoding.kinds, first.kinds) << "in steps of " << step;
    }
    return first;
}

inline std::string Deflate(const std::string& text, int level = 6)
{
    auto size = compressBound(text.size());
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(text.data()), text.size(),
              level);
    packed.resize(size);
    return packed;
}

/// Packs numbers of any width, from the high end of each byte on.
class BitWriter
{
public:
    void Write(int value, int width)
    {
        for (int bit = width - 1; bit >= 0; --bit, ++bitCount) {
            if (bitCount % 8 == 0) bytes.push_back('\0');
            bytes.back() = static_cast<char>(bytes.back() | (value >> bit & 1) << (7 - bitCount % 8));
        }
    }

    std::string bytes;
    int bitCount = 0;
};

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
