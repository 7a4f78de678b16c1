/// A page: the bytes up to the first 0 are its resource dictionary, those behind it its content. Without a 0 there is
/// content only. The same content is also what the forms paint, so that a page can draw itself in itself.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include "document/Guard.h"

#include <Quillet/GroupObject.h>

#include <cstdint>
#include <string>

namespace {

using namespace Quillet;

/// Enough for every operator of the longest input; the full budget of a page would take most of a minute here.
constexpr long long c_pageWork = 500'000;

constexpr const char* c_resources =
    "<< /XObject << /F 6 0 R /T 7 0 R >> /Properties << /L 8 0 R /M 9 0 R >> /ExtGState << /G 10 0 R >> "
    "/ColorSpace << /C [/ICCBased 11 0 R] /I [/Indexed /DeviceRGB 1 <FF000000FF00>] /P [/Pattern /DeviceCMYK] "
    "/S [/Separation /Spot /DeviceCMYK 12 0 R] /W [/CalGray << /WhitePoint [0.9505 1 1.089] >>] >> "
    "/Pattern << /A 13 0 R >> >>";

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
    return builder.Build();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = input.find('\0');
    TestDocument document(zero == std::string::npos ? MakeFile(c_resources, input)
                                                    : MakeFile(input.substr(0, zero), input.substr(zero + 1)));
    if (!document.isOpen) return 0;
    const Guard::Page budget(c_pageWork);
    if (const auto root = document.Build()) root->UpdateBBoxes();
    return 0;
}
