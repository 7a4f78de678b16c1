/// Functions. FUZZ_PROGRAM: the bytes are the program of a calculator function. Else they are the text of object 5 of a
/// document, which objects 6 to 8 are there to help with: a power, a table, and a function of object 5.

#include "colour/ColourSpaceFactory.h"
#include "colour/DeviceRgbColourSpace.h"
#include "colour/Function.h"
#include "document/DocumentState.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Quillet;

/// Much for a function, little for a page.
constexpr long long c_work = 3'200'000;

std::string MakeObject(const std::string& input)
{
#ifdef FUZZ_PROGRAM
    return PdfBuilder::MakeStream(input, "/FunctionType 4 /Domain [-1 1 -1 1] /Range [0 1 0 1 0 1]");
#else
    return input;
#endif
}

std::string MakeFile(const std::string& input)
{
    return MakePagePdf(
        "", {.objects = {MakeObject(input), "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0] /C1 [1 0.5 0] /N 2 >>",
                         PdfBuilder::MakeStream("sample data of a table", "/FunctionType 0 /Domain [0 1] /Range [0 1 0 "
                                                                          "1 0 1] /Size [7] /BitsPerSample 8"),
                         "<< /FunctionType 3 /Domain [0 1] /Functions [5 0 R] /Bounds [] /Encode [0 1] >>"}});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TestDocument document(MakeFile(std::string(reinterpret_cast<const char*>(data), size)));
    if (!document.isOpen) return 0;
    document->SetBudget(Kernel::MakeCounted<Budget>(c_work));
    const Budget::Scope scope = document->OpenScope(Budget::Share::All);
    for (const int number : {5, 8}) {
        const auto function = Function::Make(document.GetRef(number));
        const std::vector<double> in{0.5, -0.25, 1, 0, 2, 0.125, 0.75, 1};
        std::vector<double> out(function->rangeSize + 1);
        for (std::size_t inCount = 0; inCount <= in.size(); ++inCount) {
            function->Call(out.data(), function->rangeSize, in.data(), inCount);
            function->Call(out.data(), out.size(), in.data(), inCount);
        }
        function->AsGradient(document->GetState().colourSpaceFactory->deviceRgb, 0, 1);
    }
    return 0;
}
