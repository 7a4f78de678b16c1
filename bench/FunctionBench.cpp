/// Functions: calls per second of each type, and the gradients made of them.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "colour/ColourSpaceFactory.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/Function.h"
#include "document/DocumentState.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Quillet;

std::string Repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string MakePower(double n)
{
    return "<< /FunctionType 2 /Domain [0 1] /C0 [1 1 1] /C1 [0 0.5 0.25] /N " + std::to_string(n) + " >>";
}

/// Three outputs; two samples along each input.
std::string MakeTable(int inputCount)
{
    return PdfBuilder::MakeStream(std::string(3u << inputCount, 'q'),
                                  "/FunctionType 0 /Domain [" + Repeat("0 1 ", inputCount) +
                                      "] /Range [0 1 0 1 0 1] /Size [" + Repeat("2 ", inputCount) +
                                      "] /BitsPerSample 8");
}

std::string MakeStitching()
{
    return "<< /FunctionType 3 /Domain [0 1] /Functions [6 0 R 6 0 R 6 0 R 6 0 R] /Bounds [0.25 0.5 0.75] "
           "/Encode [0 1 1 0 0 1 1 0] >>";
}

/// About as many operators as `length`, and two results more than it has inputs.
std::string MakeProgram(int length)
{
    return PdfBuilder::MakeStream("{ " + Repeat("dup mul 0.5 add ", length / 2) + "dup dup }",
                                  "/FunctionType 4 /Domain [0 1] /Range [0 1 0 1 0 1]");
}

struct Made
{
    explicit Made(const std::string& body)
        : document(MakePagePdf("", {.objects = {body, MakePower(2)}})), function(Function::Make(document.GetRef(5)))
    {}
    TestDocument document;
    Kernel::Counted<const Function> function;
};

void Call(benchmark::State& state, const std::string& body)
{
    const Made made(body);
    if (made.function->IsDefault()) state.SkipWithError("no function");
    const std::vector<double> in(made.function->domain.size() / 2, 0.3);
    double out[3];
    for (auto _ : state) {
        made.function->Call(out, 3, in.data(), in.size());
        benchmark::DoNotOptimize(out);
    }
    state.SetItemsProcessed(state.iterations());
}

void AsGradient(benchmark::State& state, const std::string& body)
{
    const Made made(body);
    std::size_t stopCount = 0;
    for (auto _ : state)
        stopCount =
            made.function->AsGradient(made.document->GetState().colourSpaceFactory->deviceRgb, 0, 1)->stops.size();
    state.counters["stops"] = static_cast<double>(stopCount);
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(Call, Power1, MakePower(1));
BENCHMARK_CAPTURE(Call, Power2_5, MakePower(2.5));
BENCHMARK_CAPTURE(Call, Table1, MakeTable(1));
BENCHMARK_CAPTURE(Call, Table3, MakeTable(3));
BENCHMARK_CAPTURE(Call, Table4, MakeTable(4));
BENCHMARK_CAPTURE(Call, Table8, MakeTable(8));
BENCHMARK_CAPTURE(Call, Stitching4, MakeStitching());
BENCHMARK_CAPTURE(Call, Program10, MakeProgram(10));
BENCHMARK_CAPTURE(Call, Program100, MakeProgram(100));
BENCHMARK_CAPTURE(AsGradient, Power1, MakePower(1));
BENCHMARK_CAPTURE(AsGradient, Power2_5, MakePower(2.5));
BENCHMARK_CAPTURE(AsGradient, Table1, MakeTable(1));
BENCHMARK_CAPTURE(AsGradient, Stitching4, MakeStitching());
BENCHMARK_CAPTURE(AsGradient, Program10, MakeProgram(10));

} // namespace
