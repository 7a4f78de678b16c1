/// A page: the bytes up to the first 0 are its resource dictionary, those behind it its content. Without a 0 there is
/// content only. The same content is also what the forms paint, so that a page can draw itself in itself.
///
/// FUZZ_EXPORT: the page is also written as JSON and as SVG.

#include "support/PdfBuilder.h"
#ifdef FUZZ_EXPORT
#include "FuzzDocument.h"
#else
#include "support/TestDocument.h"
#endif

#include <Quillet/GroupObject.h>

#include <cstdint>
#include <string>

namespace {

using namespace Quillet;

/// Enough for every operator of the longest input; the full account of a document would take seconds here.
constexpr long long c_pageWork = 8'000'000;

constexpr const char* c_resources =
    "<< /XObject << /F 6 0 R /T 7 0 R >> /Properties << /L 8 0 R /M 9 0 R >> /ExtGState << /G 10 0 R >> "
    "/ColorSpace << /C [/ICCBased 11 0 R] /I [/Indexed /DeviceRGB 1 <FF000000FF00>] /P [/Pattern /DeviceCMYK] "
    "/S [/Separation /Spot /DeviceCMYK 12 0 R] /W [/CalGray << /WhitePoint [0.9505 1 1.089] >>] >> "
    "/Pattern << /A 13 0 R >> /Font << /H << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> "
    "/J << /Type /Font /Subtype /Type0 /BaseFont /Any /Encoding /90ms-RKSJ-H /DescendantFonts [14 0 R] >> >> >>";

std::string MakeFile(const std::string& resources, const std::string& content)
{
    PdfBuilder builder;
    builder.Add(
        "<< /Type /Catalog /Pages 2 0 R /OCProperties << /OCGs [8 0 R] /D << /OFF [8 0 R] /Order [8 0 R] >> >> >>");
    builder.Add("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    builder.Add("<< /Type /Page /Parent 2 0 R /Contents [5 0 R 5 0 R] /Resources 4 0 R /MediaBox [0 0 600 800] "
                "/TrimBox [10 10 590 790] /Rotate 90 >>");
    builder.Add(resources);
    builder.AddStream(content);
    builder.AddStream(content, "/Type /XObject /Subtype /Form /BBox [0 0 50 50] /Resources 4 0 R");
    builder.AddStream(content, "/Type /XObject /Subtype /Form /BBox [0 0 50 50] /Matrix [2 1 -1 2 10 10] "
                               "/Group << /S /Transparency /I true /K true /CS /DeviceRGB >> /OC 8 0 R");
    builder.Add("<< /Type /OCG /Name (Layer) >>");
    builder.Add("<< /Type /OCMD /OCGs [8 0 R] /P /AnyOff >>");
    builder.Add("<< /Type /ExtGState /LW 3 /D [[3 1] 0] /CA 0.5 /ca 0.25 /BM [/Multiply] /SMask << /S /Luminosity /G 7 "
                "0 R >> >>");
    builder.AddStream("no profile", "/N 3 /Alternate /DeviceRGB");
    builder.Add("<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0 0] /C1 [1 0 0.5 0] /N 1 >>");
    builder.AddStream(content, "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9 "
                               "/Resources 4 0 R");
    builder.Add("<< /Type /Font /Subtype /CIDFontType0 /BaseFont /Any /CIDSystemInfo << /Registry (Adobe) /Ordering "
                "(Japan1) /Supplement 2 >> >>");
    return builder.Build();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = input.find('\0');
    std::string file = zero == std::string::npos ? MakeFile(c_resources, input)
                                                 : MakeFile(input.substr(0, zero), input.substr(zero + 1));
#ifdef FUZZ_EXPORT
    FuzzDocument document(std::move(file));
    if (!document.isOpen) return 0;
    document.document->SetBudget(Kernel::MakeCounted<Budget>(c_pageWork));
    document.Export(0);
#else
    TestDocument document(std::move(file));
    if (!document.isOpen) return 0;
    document->SetBudget(Kernel::MakeCounted<Budget>(c_pageWork));
    if (const auto root = document.Build()) root->UpdateBBoxes();
#endif
    return 0;
}
