/// Text: building pages of lines at sizes that double, where twice the text takes near twice the time, and reading the
/// CMaps that come with the library.

#include "PeakMemory.h"
#include "document/FileSource.h"
#include "fonts/CMapInterpreter.h"
#include "fonts/StandardCMaps.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/TextLineObject.h>

#include <Kernel/Consolidated.h>
#include <Kernel/FileSystem.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace {

using namespace Quillet;

constexpr int c_lineLength = 80;
/// Each with the space behind it.
constexpr std::string_view c_words[] = {"Fonts ", "and ", "lines "};

/// Lines in one string each.
std::string MakePlain(int count)
{
    std::string line;
    while (line.size() < c_lineLength)
        for (const std::string_view word : c_words)
            line += word;
    std::string content = "BT /F 8 Tf 9 TL 20 790 Td\n";
    for (int i = 0; i < count; i += c_lineLength)
        content.append("(").append(line, 0, c_lineLength - 1).append(".) Tj T*\n");
    return content + "ET";
}

/// Each word with a matrix and a colour of its own.
std::string MakeWords(int count)
{
    std::string content = "BT /F 8 Tf\n";
    for (int i = 0, word = 0; i < count; ++word) {
        const std::string_view text = c_words[word % 3];
        char line[100];
        const int length = std::snprintf(line, sizeof line, "0.%d 0 0 rg 1 0 0 1 %d %d Tm (%.*s) Tj\n", word % 10,
                                         20 + i % c_lineLength * 5, 790 - i / c_lineLength * 9,
                                         static_cast<int>(text.size()), text.data());
        content.append(line, static_cast<std::size_t>(length));
        i += static_cast<int>(text.size());
    }
    return content + "ET";
}

long long CountCharacters(GroupObject& root)
{
    long long count = 0;
    root.VisitSubGroups([&](GroupObject* group) {
        for (const auto& child : group->children) {
            if (const auto line = Kernel::DynamicCast<TextLineObject>(child)) {
                count += static_cast<long long>(line->chars.size());
            }
        }
    });
    return count;
}

void Build(benchmark::State& state, std::string (*make)(int count))
{
    const int count = static_cast<int>(state.range(0));
    const std::string font = "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>";
    TestDocument document(MakePagePdf(
        make(count), {.resources = "/Font << /F 5 0 R >>", .entries = "/MediaBox [0 0 600 800]", .objects = {font}}));
    // Spaces at the ends of lines go. A page that gave up half-way would look quick.
    const auto isWhole = [&] {
        const auto root = document.Build();
        return root && CountCharacters(*root) >= count * 9 / 10 && document.GetErrors().empty();
    };
    if (!isWhole()) {
        state.SkipWithError("the page is not what its content says");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(document.Build());
    state.SetItemsProcessed(count * state.iterations());
    state.SetComplexityN(count);
    const PeakMemory peak;
    const std::size_t valuesBefore = Kernel::InternTable::GetSize();
    const auto root = document.Build();
    state.counters["values"] = static_cast<double>(Kernel::InternTable::GetSize() - valuesBefore);
    state.counters["peakMB"] = peak.GetMegabytes();
}

void Double(benchmark::internal::Benchmark* bench)
{
    for (int count = 5000; count <= 80000; count *= 2)
        bench->Arg(count);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK_CAPTURE(Build, Lines, MakePlain)->Apply(Double);
BENCHMARK_CAPTURE(Build, Words, MakeWords)->Apply(Double);

constexpr const char* c_largeCMap = "UniJIS-UTF16-H";

void ReadCMap(benchmark::State& state)
{
    const auto path =
        Kernel::FileSystem::GetResourcesDirectory() / "Standard CMaps" / (std::string(c_largeCMap) + ".txt");
    if (!std::filesystem::exists(path)) {
        state.SkipWithError("the CMap is not there");
        return;
    }
    std::size_t ranges = 0;
    for (auto _ : state) {
        const auto source = Kernel::MakeCounted<FileSource>();
        source->Open(path.string());
        ranges = CMapInterpreter(source).encoding->mapRanges.size();
    }
    if (ranges < 1000) state.SkipWithError("the CMap was not read");
    state.SetItemsProcessed(static_cast<std::int64_t>(ranges) * state.iterations());
}

BENCHMARK(ReadCMap)->Unit(benchmark::kMillisecond);

/// As the first text of a process meets it: once only, since it is kept.
void FirstStandardCMap(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetStandardCMap(c_largeCMap));
    if (GetStandardCMap(c_largeCMap)->mapRanges.size() < 1000) state.SkipWithError("the CMap was not read");
}

BENCHMARK(FirstStandardCMap)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
