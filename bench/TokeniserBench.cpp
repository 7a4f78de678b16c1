/// Bytes tokenised a second, on text as a page's content has it. `memcpy` is the yardstick of the same run.

#include "document/MemorySource.h"
#include "document/Parser.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>

namespace {

using namespace Quillet;

constexpr std::size_t c_length = 4'000'000;

/// Lines of a text that are made one after the other, until there is enough of it.
std::string Repeat(const std::function<std::string(std::mt19937&)>& makeLine)
{
    std::mt19937 random(1);
    std::string text;
    while (text.size() < c_length)
        text += makeLine(random);
    return text;
}

std::string MakeNumber(std::mt19937& random)
{
    return std::to_string(random() % 600) + '.' + std::to_string(random() % 100) + ' ';
}

const std::string& GetContent()
{
    static const std::string text = Repeat([](std::mt19937& random) -> std::string {
        switch (random() % 8) {
        case 0:
            return "q\n1 0 0 1 " + MakeNumber(random) + MakeNumber(random) + "cm\n";
        case 1:
            return "/GS" + std::to_string(random() % 10) + " gs\n0.25 0.5 1 rg\nQ\n";
        case 2:
            return "[(Words) -" + std::to_string(random() % 300) + " (of a \\(line\\))] TJ\n";
        case 3:
            return MakeNumber(random) + MakeNumber(random) + "m\n";
        case 4:
            return "h f\n";
        default:
            return MakeNumber(random) + MakeNumber(random) + MakeNumber(random) + MakeNumber(random) + "re\n";
        }
    });
    return text;
}

const std::string& GetNumbers()
{
    static const std::string text = Repeat(MakeNumber);
    return text;
}

const std::string& GetDictionaries()
{
    static const std::string text = Repeat([](std::mt19937& random) {
        return "<< /Type /Font /FirstChar 32 /Widths [" + MakeNumber(random) + MakeNumber(random) +
               "] /Name (A name) /ID <0123456789ABCDEF> /Nothing null >>\n";
    });
    return text;
}

void CopyMemory(benchmark::State& state)
{
    const std::string& text = GetContent();
    std::string copy(text.size(), '\0');
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(CopyMemory)->Unit(benchmark::kMillisecond);

void Tokenise(benchmark::State& state, const std::string& (*getText)())
{
    const std::string& text = getText();
    std::int64_t tokens = 0;
    for (auto _ : state) {
        Parser parser(Kernel::MakeCounted<MemorySource>(text.data(), text.size()));
        // A token a byte is more than there can be.
        for (std::size_t i = 0; i < text.size() && parser.NextToken() != Token::TokenEnd; ++i)
            ++tokens;
        if (!parser.AtEnd()) state.SkipWithError("the text was not read to its end");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
    state.SetItemsProcessed(tokens);
}
BENCHMARK_CAPTURE(Tokenise, Content, GetContent)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Tokenise, Numbers, GetNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Tokenise, Dictionaries, GetDictionaries)->Unit(benchmark::kMillisecond);

} // namespace
