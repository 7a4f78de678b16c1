/// Bytes delivered a second, filter by filter, on text and on a picture made by rule. `memcpy` and zlib alone are the
/// yardsticks of the same run.

#include "support/BytesFilter.h"

#include "filters/Ascii85Filter.h"
#include "filters/AsciiHexFilter.h"
#include "document/DecodeParams.h"
#include "filters/FlateFilter.h"
#include "filters/LzwFilter.h"
#include "filters/PngFilter.h"
#include "filters/RunLengthFilter.h"
#include "filters/Tiff2Filter.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <array>
#include <cstring>
#include <random>

namespace {

using namespace Quillet;

constexpr int c_width = 1200;
constexpr int c_height = 1000;
constexpr int c_rowBytes = c_width * 3;

/// Operators and numbers, about as a page has them.
std::string MakeText()
{
    std::mt19937 random(1);
    std::string text;
    while (text.size() < 4'000'000) {
        text += std::to_string(random() % 600) + '.' + std::to_string(random() % 100);
        text += " " + std::to_string(random() % 800) + (random() % 3 == 0 ? " m\n" : " l\n");
    }
    return text;
}

std::string MakeNoise(std::size_t size)
{
    std::mt19937 random(2);
    std::string noise(size, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    return noise;
}

const std::string& GetText()
{
    static const std::string text = MakeText();
    return text;
}

std::string Deflate(const std::string& text)
{
    auto size = compressBound(text.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(text.data()), text.size());
    packed.resize(size);
    return packed;
}

/// Greedy, with a clear code at a full table.
std::string EncodeLzw(const std::string& text)
{
    std::string out;
    unsigned bits = 0;
    int bitCount = 0;
    int width = 9;
    const auto write = [&](int code) {
        bits = bits << width | static_cast<unsigned>(code);
        for (bitCount += width; bitCount >= 8; bitCount -= 8)
            out += static_cast<char>(bits >> (bitCount - 8));
    };
    std::vector<std::array<short, 256>> next(4096);
    int count = 258;
    const auto clear = [&] {
        write(256);
        for (auto& row : next)
            row.fill(-1);
        count = 258;
        width = 9;
    };
    clear();
    int known = -1;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (known < 0) {
            known = byte;
            continue;
        }
        short& child = next[static_cast<std::size_t>(known)][byte];
        if (child >= 0) {
            known = child;
            continue;
        }
        write(known);
        child = static_cast<short>(count++);
        if (count == 512 || count == 1024 || count == 2048) ++width;
        if (count == 4095) clear();
        known = byte;
    }
    write(known);
    write(257);
    write(0);
    return out;
}

std::string EncodeHex(const std::string& text)
{
    std::string out;
    for (const char byte : text) {
        out += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        out += "0123456789abcdef"[byte & 15];
    }
    return out + '>';
}

std::string Encode85(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i + 4 <= text.size(); i += 4) {
        unsigned value = 0;
        for (std::size_t j = 0; j < 4; ++j)
            value = value << 8 | static_cast<unsigned char>(text[i + j]);
        char digits[5];
        for (int j = 4; j >= 0; --j, value /= 85)
            digits[j] = static_cast<char>('!' + value % 85);
        out.append(digits, 5);
    }
    return out + "~>";
}

/// Half copies, half repeats.
std::string EncodeRuns(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i + 32 <= text.size(); i += 32) {
        out += '\x1f' + text.substr(i, 32);
        out += '\xe1';
        out += text[i];
    }
    return out + '\x80';
}

Kernel::Counted<const DecodeParams> MakePictureParams(int predictor)
{
    auto params = Kernel::MakeCounted<DecodeParams>();
    params->ints = {{"Predictor", predictor}, {"Colors", 3}, {"Columns", c_width}};
    return params;
}

template <typename T>
void Run(benchmark::State& state, const std::string& input, Kernel::Counted<const DecodeParams> params = nullptr)
{
    std::size_t delivered = 0;
    auto source = Kernel::MakeCounted<BytesFilter>(input);
    for (auto _ : state) {
        source->pos = 0;
        auto filter = Kernel::MakeCounted<T>();
        filter->SetSource(source);
        if (params) filter->SetDecodeParams(params);
        std::vector<char> out;
        filter->ReadAll(out);
        delivered += out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(delivered));
    if (delivered == 0) state.SkipWithError("nothing came out");
}

void Memcpy(benchmark::State& state)
{
    const std::string& text = GetText();
    std::string copy(text.size(), '\0');
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(Memcpy);

void Zlib(benchmark::State& state)
{
    const std::string& text = GetText();
    const std::string packed = Deflate(text);
    std::string out(text.size(), '\0');
    for (auto _ : state) {
        auto size = static_cast<uLongf>(out.size());
        uncompress(reinterpret_cast<Bytef*>(out.data()), &size, reinterpret_cast<const Bytef*>(packed.data()),
                   packed.size());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(Zlib);

void Flate(benchmark::State& state)
{
    Run<FlateFilter>(state, Deflate(GetText()));
}
BENCHMARK(Flate);

void Lzw(benchmark::State& state)
{
    Run<LzwFilter>(state, EncodeLzw(GetText()));
}
BENCHMARK(Lzw);

void LzwLongStrings(benchmark::State& state)
{
    Run<LzwFilter>(state, EncodeLzw(std::string(4'000'000, 'x')));
}
BENCHMARK(LzwLongStrings);

void Ascii85(benchmark::State& state)
{
    Run<Ascii85Filter>(state, Encode85(GetText()));
}
BENCHMARK(Ascii85);

void AsciiHex(benchmark::State& state)
{
    Run<AsciiHexFilter>(state, EncodeHex(GetText()));
}
BENCHMARK(AsciiHex);

void RunLength(benchmark::State& state)
{
    Run<RunLengthFilter>(state, EncodeRuns(GetText()));
}
BENCHMARK(RunLength);

void Png(benchmark::State& state)
{
    std::string rows;
    const std::string noise = MakeNoise(c_rowBytes);
    for (int y = 0; y < c_height; ++y)
        rows += static_cast<char>(state.range(0)) + noise;
    Run<PngFilter>(state, rows, MakePictureParams(12));
}
BENCHMARK(Png)->ArgName("tag")->DenseRange(0, 4);

void Tiff2(benchmark::State& state)
{
    Run<Tiff2Filter>(state, MakeNoise(static_cast<std::size_t>(c_rowBytes) * c_height), MakePictureParams(2));
}
BENCHMARK(Tiff2);

void Tiff2FourBits(benchmark::State& state)
{
    auto params = Kernel::MakeCounted<DecodeParams>(*MakePictureParams(2));
    params->ints["BitsPerComponent"] = 4;
    Run<Tiff2Filter>(state, MakeNoise(static_cast<std::size_t>(c_rowBytes) * c_height / 2), params);
}
BENCHMARK(Tiff2FourBits);

} // namespace
