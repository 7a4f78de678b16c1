/// Building pages: kinds of content at sizes that double, and the samples. The time for twice the content stays near
/// twice the time.

#include "PeakMemory.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <Kernel/Consolidated.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

using namespace Quillet;

/// A kind of content.
struct Kind
{
    /// Content of the page, for a count of pieces.
    std::string (*make)(int count);
    /// Objects that are not groups, for a count of pieces.
    long long (*countLeaves)(int count);
};

template <typename... Values>
std::string Format(const char* format, Values... values)
{
    char line[200];
    const int length = std::snprintf(line, sizeof line, format, values...);
    return std::string(line, static_cast<std::size_t>(length));
}

template <typename MakePiece>
std::string Repeat(int count, MakePiece makePiece)
{
    std::string content;
    for (int i = 0; i < count; ++i)
        content += makePiece(i);
    return content;
}

/// Rectangles all over the page.
std::string MakePath(int i)
{
    return Format("%d.5 %d.25 9 7 re f\n", i * 37 % 580, i * 91 % 780);
}

std::string MakeCurve(int i)
{
    const int x = i * 37 % 560;
    const int y = i * 91 % 760;
    return Format("%d %d m %d %d %d %d %d %d c %d %d l s\n", x, y, x + 10, y + 5, x + 20, y + 15, x + 25, y + 30, x,
                  y + 9);
}

std::string MakePlain(int count)
{
    return Repeat(count, MakePath);
}

std::string MakeCurves(int count)
{
    return "0.5 w [3 1] 0 d\n" + Repeat(count, MakeCurve);
}

std::string MakeClipped(int count)
{
    return Repeat(count, [](int i) {
        return Format("q %d %d 30 30 re W n\n", i * 37 % 570, i * 91 % 770) + MakePath(i) + "Q\n";
    });
}

std::string MakeNested(int count)
{
    return Repeat(count, [](int i) { return Format("q 0 0 600 %d.5 re W n\n", 800 - i % 300) + MakePath(i); }) +
           Repeat(count, [](int) { return std::string("Q\n"); });
}

std::string MakeForms(int count)
{
    return Repeat(count, [](int i) { return Format("q 1 0 0 1 %d %d cm /F Do Q\n", i * 37 % 580, i * 91 % 780); });
}

std::string MakeSaves(int count)
{
    return Repeat(count, [](int i) { return Format("q q q 1 0 0 1 %d 1 cm 2 w Q Q Q\n", i % 7); }) + MakePath(0);
}

std::string MakeDeepSaves(int count)
{
    return Repeat(count, [](int) { return std::string("q 2 w\n"); }) + MakePath(0) +
           Repeat(count, [](int) { return std::string("Q\n"); });
}

std::string MakeSameColour(int count)
{
    return Repeat(count, [](int i) { return "0.25 0.5 0.75 rg\n" + MakePath(i); });
}

std::string MakeNewColours(int count)
{
    return Repeat(count, [](int i) {
        return Format("0.%03d 0.%03d 0.%03d rg\n", i % 1000, i / 1000 % 1000, i * 7 % 1000) + MakePath(i);
    });
}

/// A tint of one ink.
std::string MakeTint(int i)
{
    return Format("/Ink cs 0.%05d scn\n", i);
}

std::string MakeLab(int i)
{
    return Format("/Lab cs %d.5 %d %d scn\n", i % 100, i / 100 % 100, i / 10000);
}

std::string MakeSameTint(int count)
{
    return Repeat(count, [](int i) { return MakeTint(50000) + MakePath(i); });
}

std::string MakeNewTints(int count)
{
    return Repeat(count, [](int i) { return MakeTint(i) + MakePath(i); });
}

std::string MakeSameLab(int count)
{
    return Repeat(count, [](int i) { return MakeLab(5050) + MakePath(i); });
}

std::string MakeNewLabs(int count)
{
    return Repeat(count, [](int i) { return MakeLab(i) + MakePath(i); });
}

/// Colours that nothing is painted with.
std::string MakeUnusedColours(int count)
{
    return Repeat(count, [](int i) { return Format("0.%03d 0.%03d 0 0.1 k\n", i % 1000, i / 1000 % 1000); }) +
           MakePath(0);
}

std::string MakeLayers(int count)
{
    return Repeat(count, [](int i) { return "/OC /L BDC\n" + MakePath(i) + "EMC\n"; });
}

long long CountEach(int count)
{
    return count;
}

long long CountOne(int)
{
    return 1;
}

constexpr Kind c_plain{MakePlain, CountEach};
constexpr Kind c_curves{MakeCurves, CountEach};
constexpr Kind c_clipped{MakeClipped, CountEach};
constexpr Kind c_nested{MakeNested, CountEach};
constexpr Kind c_forms{MakeForms, CountEach};
constexpr Kind c_saves{MakeSaves, CountOne};
constexpr Kind c_deepSaves{MakeDeepSaves, CountOne};
constexpr Kind c_sameColour{MakeSameColour, CountEach};
constexpr Kind c_newColours{MakeNewColours, CountEach};
constexpr Kind c_sameTint{MakeSameTint, CountEach};
constexpr Kind c_newTints{MakeNewTints, CountEach};
constexpr Kind c_sameLab{MakeSameLab, CountEach};
constexpr Kind c_newLabs{MakeNewLabs, CountEach};
constexpr Kind c_unusedColours{MakeUnusedColours, CountOne};
constexpr Kind c_layers{MakeLayers, CountEach};

std::string MakeFile(const std::string& content)
{
    PageParts parts;
    parts.entries = "/MediaBox [0 0 600 800]";
    parts.resources = "/XObject << /F 5 0 R >> /Properties << /L 6 0 R >> /ColorSpace << "
                      "/Ink [/Separation /Sunset /DeviceCMYK << /FunctionType 2 /Domain [0 1] /N 1 "
                      "/C0 [0 0 0 0] /C1 [0 0.5 0.9 0.1] >>] "
                      "/Lab [/Lab << /WhitePoint [0.9642 1 0.8249] >>] >>";
    parts.objects = {PdfBuilder::MakeStream("0 0 5 5 re f", "/Type /XObject /Subtype /Form /BBox [0 0 10 10]"),
                     "<< /Type /OCG /Name (Layer) >>"};
    parts.catalog = "/OCProperties << /OCGs [6 0 R] /D << /Order [6 0 R] >> >>";
    return MakePagePdf(content, parts);
}

long long CountLeaves(GroupObject& root)
{
    long long leaves = 0;
    root.VisitSubGroups([&](GroupObject* group) {
        for (const auto& child : group->children)
            if (!child->AsGroup()) ++leaves;
    });
    return leaves;
}

Kernel::Counted<GroupObject> BuildPage(PdfDocument& document, int page)
{
    auto root = document.GetPage(page)->BuildObjects();
    root->UpdateBBoxes();
    return root;
}

void Build(benchmark::State& state, const Kind& kind)
{
    const int count = static_cast<int>(state.range(0));
    TestDocument document(MakeFile(kind.make(count)));
    // A page that gave up half-way would look quick.
    if (CountLeaves(*BuildPage(*document.document, 0)) != kind.countLeaves(count) || !document.GetErrors().empty()) {
        state.SkipWithError("the page is not what its content says");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(BuildPage(*document.document, 0));
    state.SetBytesProcessed(static_cast<std::int64_t>(document.bytes.size()) * state.iterations());
    state.SetItemsProcessed(count * state.iterations());
    state.SetComplexityN(count);
    const PeakMemory peak;
    const std::size_t valuesBefore = Kernel::InternTable::GetSize();
    const auto root = BuildPage(*document.document, 0);
    state.counters["values"] = static_cast<double>(Kernel::InternTable::GetSize() - valuesBefore);
    state.counters["peakMB"] = peak.GetMegabytes();
}

void Double(benchmark::internal::Benchmark* bench)
{
    for (int count = 10000; count <= 80000; count *= 2)
        bench->Arg(count);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

void ManyColours(benchmark::internal::Benchmark* bench)
{
    bench->Arg(100000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Build, Plain, c_plain)->Apply(Double);
BENCHMARK_CAPTURE(Build, Curves, c_curves)->Apply(Double);
BENCHMARK_CAPTURE(Build, Clipped, c_clipped)->Apply(Double);
BENCHMARK_CAPTURE(Build, NestedClips, c_nested)->Apply(Double);
BENCHMARK_CAPTURE(Build, Forms, c_forms)->Apply(Double);
BENCHMARK_CAPTURE(Build, Saves, c_saves)->Apply(Double);
BENCHMARK_CAPTURE(Build, DeepSaves, c_deepSaves)->Apply(Double);
BENCHMARK_CAPTURE(Build, SameColour, c_sameColour)->Apply(Double)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, NewColours, c_newColours)->Apply(Double)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, SameTint, c_sameTint)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, NewTints, c_newTints)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, SameLab, c_sameLab)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, NewLabs, c_newLabs)->Apply(ManyColours);
BENCHMARK_CAPTURE(Build, UnusedColours, c_unusedColours)->Apply(Double);
BENCHMARK_CAPTURE(Build, Layers, c_layers)->Apply(Double);

/// Open, and build every page.
void Sample(benchmark::State& state, const char* name)
{
    const std::string path = std::string(SAMPLES_DIRECTORY "/") + name;
    const auto import = [&] {
        const auto document = Kernel::MakeCounted<PdfDocument>();
        if (!document->OpenFile(path)) return 0;
        for (int i = 0; i < document->GetPageCount(); ++i)
            benchmark::DoNotOptimize(BuildPage(*document, i));
        return document->GetPageCount();
    };
    int pages = 0;
    for (auto _ : state)
        pages = import();
    if (pages == 0) state.SkipWithError("the sample did not open");
    state.SetItemsProcessed(pages * state.iterations());
    const PeakMemory peak;
    import();
    state.counters["peakMB"] = peak.GetMegabytes();
}

BENCHMARK_CAPTURE(Sample, Poster, "poster.pdf")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sample, Updates, "updates.pdf")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sample, Catalogue, "catalogue.pdf")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sample, Diagram, "diagram.pdf")->Unit(benchmark::kMillisecond);

} // namespace
