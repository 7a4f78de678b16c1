/// Reducing the trees of pages: kinds of content at sizes that double. The time for twice the content stays near twice
/// the time.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

using namespace Quillet;

constexpr Object::Rect c_page{0, 0, 600, 800};

template <typename... Values>
std::string Format(const char* format, Values... values)
{
    char line[200];
    const int length = std::snprintf(line, sizeof line, format, values...);
    return std::string(line, static_cast<std::size_t>(length));
}

using MakePiece = std::string (*)(int);

std::string MakePath(int i)
{
    return Format("%d.5 %d.25 9 7 re f\n", i * 37 % 580, i * 91 % 780);
}

/// Fills with their strokes, some of them curves.
std::string MakePaths(int i)
{
    const int x = i * 37 % 560, y = i * 91 % 760;
    const std::string shape = i % 2
                                  ? Format("%d %d 20 10 re ", x, y)
                                  : Format("%d %d m %d %d %d %d %d %d c ", x, y, x, y + 30, x + 40, y + 30, x + 40, y);
    return shape + "f\n" + shape + "S\n";
}

std::string MakeClip(int i)
{
    const int x = i * 37 % 570, y = i * 91 % 770;
    return Format("q %d %d 30 30 re W n %d %d 9 7 re f %d %d 40 9 re f Q\n", x, y, x + 5, y + 5, x + 8, y + 3);
}

/// Clips beside each other that take in what stands around them.
std::string MakeSameClip(int i)
{
    return "q 10 10 500 500 re W n\n" + Format("%d 20 9 30 re f %d 9 9 9 re f Q\n", 20 + i % 400, i % 400);
}

/// All of them cut something, else they would be gone after one pass; the braces are closed at the end.
std::string MakeCuttingNest(int i)
{
    return Format("q 0 0 600 %d.5 re W n\n", 700 - i % 300) + Format("%d 0 9 790 re f\n", i % 580);
}

std::string MakeIdleNest(int i)
{
    return Format("q 0 0 599 %d.5 re W n\n", 790 + i % 7) + MakePath(i);
}

std::string MakeLayer(int i)
{
    return Format("/OC /L%d BDC\n", i / 3 % 2) + MakePath(i) + "EMC\n";
}

std::string MakeStrip(int i)
{
    return Format("%d.%03d 0.5 0 rg %d.%03d 100 0.01 50 re f\n", 0, i % 1000, i / 100, i % 100 * 10);
}

std::string MakeForm(int i)
{
    return Format("q 1 0 0 1 %d %d cm /F Do Q\n", i * 37 % 580, i * 91 % 780);
}

/// Three columns of lines, which run on below the page.
std::string MakeText(int i)
{
    return Format("BT /T 9 Tf %d %d Td (Some words of line %d) Tj ET\n", 40 + i % 3 * 180, 780 - i / 3 * 11, i);
}

/// The same lines with many on each place.
std::string MakeOverprint(int i)
{
    return Format("BT /T 9 Tf %d %d Td (Some words of line %d) Tj ET\n", 40 + i % 3 * 180, 780 - i / 3 % 70 * 11, i);
}

std::string MakeMixed(int i)
{
    constexpr MakePiece c_kinds[] = {MakePaths, MakeClip, MakeSameClip, MakeLayer, MakeForm};
    return c_kinds[static_cast<unsigned>(i) % std::size(c_kinds)](i);
}

std::string MakeFile(int count, MakePiece makePiece, const char* end)
{
    PageParts parts;
    parts.entries = "/MediaBox [0 0 600 800]";
    parts.resources = "/XObject << /F 5 0 R >> /Properties << /L0 6 0 R /L1 7 0 R >> "
                      "/Font << /T << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >>";
    parts.objects = {
        PdfBuilder::MakeStream("0 0 5 5 re f 3 3 5 5 re S", "/Type /XObject /Subtype /Form /BBox [0 0 10 10]"),
        "<< /Type /OCG /Name (One) >>", "<< /Type /OCG /Name (Other) >>"};
    parts.catalog = "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /Order [6 0 R 7 0 R] >> >>";
    std::string content;
    for (int i = 0; i < count; ++i)
        content += makePiece(i);
    for (int i = 0; i < count; ++i)
        content += end;
    return MakePagePdf(content, parts);
}

long long CountObjects(GroupObject& root)
{
    long long count = 0;
    root.VisitSubGroups([&](GroupObject* group) { count += static_cast<long long>(group->children.size()); });
    return count;
}

/// `end` comes once a piece behind all of them.
void Reduce(benchmark::State& state, MakePiece makePiece, const char* end)
{
    const int count = static_cast<int>(state.range(0));
    TestDocument document(MakeFile(count, makePiece, end));
    long long before = 0, after = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto root = document.Build();
        // A page that gave up half-way would look quick.
        if (!root || (before = CountObjects(*root)) < count || !document.GetErrors().empty()) {
            state.SkipWithError("the page is not what its content says");
            break;
        }
        state.ResumeTiming();
        root->Reduce(c_page);
        state.PauseTiming();
        after = CountObjects(*root);
        root = nullptr;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(count * state.iterations());
    state.SetComplexityN(count);
    state.counters["before"] = static_cast<double>(before);
    state.counters["after"] = static_cast<double>(after);
}

void Double(benchmark::internal::Benchmark* bench)
{
    for (int count = 10000; count <= 160000; count *= 2)
        bench->Arg(count);
    bench->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK_CAPTURE(Reduce, Paths, MakePaths, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Clips, MakeClip, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, SameClips, MakeSameClip, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, CuttingNest, MakeCuttingNest, "Q\n")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, IdleNest, MakeIdleNest, "Q\n")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Layers, MakeLayer, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Strips, MakeStrip, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Forms, MakeForm, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Text, MakeText, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Overprint, MakeOverprint, "")->Apply(Double);
BENCHMARK_CAPTURE(Reduce, Mixed, MakeMixed, "")->Apply(Double);

} // namespace
