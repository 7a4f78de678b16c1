/// Opening large files, finding their objects, indexing large dictionaries and walking large page trees, each at sizes
/// that double: the time for twice the work stays near twice the time.

#include "LargeFile.h"
#include "PeakMemory.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "document/Dictionary.h"

#include <Quillet/Page.h>

#include <benchmark/benchmark.h>

namespace {

using namespace Quillet;

using MakeFile = std::string (*)(int);

int GetSize(const benchmark::State& state)
{
    return static_cast<int>(state.range(0));
}

/// The document without the copy of the file that `TestDocument` keeps.
Kernel::Counted<PdfDocument> OpenDocument(benchmark::State& state, const std::string& file)
{
    auto document = Kernel::MakeCounted<PdfDocument>();
    if (!document->OpenMemory(file.data(), file.size())) state.SkipWithError("the file did not open");
    return document;
}

/// Four sizes, each twice the one before.
template <int last>
void DoubleTo(benchmark::internal::Benchmark* bench)
{
    for (int size = last / 8; size <= last; size *= 2)
        bench->Arg(size);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

void ShowRates(benchmark::State& state, const std::string& file)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(file.size()) * state.iterations());
    state.SetItemsProcessed(GetSize(state) * state.iterations());
    state.SetComplexityN(GetSize(state));
}

void Open(benchmark::State& state, MakeFile makeFile)
{
    const std::string file = makeFile(GetSize(state));
    for (auto _ : state)
        benchmark::DoNotOptimize(OpenDocument(state, file));
    ShowRates(state, file);
    const PeakMemory peak;
    OpenDocument(state, file);
    state.counters["peakMB"] = peak.GetMegabytes();
}

/// Every object, each with a parser of its own, as an import does that meets them all.
void FindObjects(PdfDocument& document, benchmark::State& state)
{
    for (int i = 0; i < GetSize(state); ++i) {
        Dictionary dictionary(Ref(Kernel::NonCounted<PdfDocument>(&document), c_firstExtraObject + i, 0), "Extra");
        if (dictionary.GetInt("Number", -1) != c_firstExtraObject + i) state.SkipWithError("an object is not there");
    }
}

void OpenAndFind(benchmark::State& state, MakeFile makeFile)
{
    const std::string file = makeFile(GetSize(state));
    for (auto _ : state)
        FindObjects(*OpenDocument(state, file), state);
    ShowRates(state, file);
    const PeakMemory peak;
    FindObjects(*OpenDocument(state, file), state);
    state.counters["peakMB"] = peak.GetMegabytes();
}

BENCHMARK_CAPTURE(Open, Classic, MakeClassicFile)->Apply(DoubleTo<100000>);
BENCHMARK_CAPTURE(Open, Compressed, MakeCompressedFile)->Apply(DoubleTo<100000>);
BENCHMARK_CAPTURE(OpenAndFind, Classic, MakeClassicFile)->Apply(DoubleTo<100000>);
BENCHMARK_CAPTURE(OpenAndFind, Compressed, MakeCompressedFile)->Apply(DoubleTo<100000>);

// Dictionaries

std::string MakeKey(int i)
{
    return "Key" + std::to_string(static_cast<long long>(i) * 7919 % 1'000'003);
}

std::string MakeDictionaryFile(int keyCount)
{
    std::string text = "<<\n";
    for (int i = 0; i < keyCount; ++i)
        text += "/" + MakeKey(i) + " " + std::to_string(i) + "\n";
    return MakePagePdf("", {.objects = {text + ">>"}});
}

void IndexDictionary(benchmark::State& state)
{
    TestDocument document(MakeDictionaryFile(GetSize(state)));
    for (auto _ : state) {
        Dictionary dictionary(document.GetRef(c_firstExtraObject));
        if (dictionary.items.size() != static_cast<std::size_t>(GetSize(state)))
            state.SkipWithError("keys are missing");
    }
    ShowRates(state, document.bytes);
}
BENCHMARK(IndexDictionary)->Apply(DoubleTo<50000>);

void LookUpKeys(benchmark::State& state)
{
    TestDocument document(MakeDictionaryFile(GetSize(state)));
    Dictionary dictionary(document.GetRef(c_firstExtraObject));
    for (auto _ : state) {
        for (int i = 0; i < GetSize(state); ++i)
            if (dictionary.GetInt(MakeKey(i).c_str(), -1) != i) state.SkipWithError("a key is not found");
    }
    state.SetItemsProcessed(GetSize(state) * state.iterations());
    state.SetComplexityN(GetSize(state));
}
BENCHMARK(LookUpKeys)->Apply(DoubleTo<50000>);

// Page trees

constexpr int c_balancedFanOut = 32;

std::string MakeBalancedTree(int pageCount)
{
    return MakePageTreeFile(pageCount, c_balancedFanOut);
}

std::string MakeFlatTree(int pageCount)
{
    return MakePageTreeFile(pageCount, pageCount);
}

void GetLastPage(benchmark::State& state, MakeFile makeFile)
{
    const std::string file = makeFile(GetSize(state));
    for (auto _ : state) {
        const auto document = OpenDocument(state, file);
        benchmark::DoNotOptimize(document->GetPage(GetSize(state) - 1));
    }
    state.SetComplexityN(GetSize(state));
}

void GetAllPages(benchmark::State& state, MakeFile makeFile)
{
    const std::string file = makeFile(GetSize(state));
    for (auto _ : state) {
        const auto document = OpenDocument(state, file);
        for (int i = 0; i < GetSize(state); ++i)
            if (document->GetPage(i)->GetMediaBox().right != 100) state.SkipWithError("a page is wrong");
    }
    ShowRates(state, file);
}

BENCHMARK_CAPTURE(GetLastPage, Balanced, MakeBalancedTree)->Apply(DoubleTo<50000>);
BENCHMARK_CAPTURE(GetLastPage, Flat, MakeFlatTree)->Apply(DoubleTo<50000>);
BENCHMARK_CAPTURE(GetAllPages, Balanced, MakeBalancedTree)->Apply(DoubleTo<50000>);
BENCHMARK_CAPTURE(GetAllPages, Flat, MakeFlatTree)->Apply(DoubleTo<50000>);

} // namespace
