/// Fonts: the bytes are entries of a font's dictionary, object 5. Objects 6 to 9 are there for them to refer to: a
/// descriptor, a CMap, an encoding with differences, and a descendant of a composite font. The font then shows every
/// byte.

#include "fonts/Font.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace Quillet;

/// Much for a font, little for a page.
constexpr long long c_work = 8'000'000;

std::string MakeContent()
{
    std::string bytes = "BT /F 10 Tf <";
    for (int i = 0; i < 256; ++i) {
        bytes += "0123456789ABCDEF"[i / 16];
        bytes += "0123456789ABCDEF"[i % 16];
    }
    return bytes + "> Tj ET";
}

std::string MakeFile(const std::string& entries)
{
    static const std::string content = MakeContent();
    return MakePagePdf(
        content,
        {.resources = "/Font << /F 5 0 R >>",
         .objects = {
             "<< /Type /Font " + entries + " >>",
             "<< /Type /FontDescriptor /FontName /Any /Flags 4 /MissingWidth 300 /ItalicAngle -12 /StemV 90 >>",
             PdfBuilder::MakeStream("1 begincodespacerange <00> <FF> endcodespacerange 1 beginbfrange <20> "
                                    "<7E> <0020> endbfrange 1 beginbfchar <80> <00660069> endbfchar"),
             "<< /BaseEncoding /MacRomanEncoding /Differences [32 /space /A 128 /f_i /uni20AC /g12 /.notdef] >>",
             "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Any /FontDescriptor 6 0 R /DW 700 /W [1 [500 "
             "600] 7 9 300] /CIDSystemInfo << /Registry (Adobe) /Ordering (Japan1) /Supplement 6 >> >>"}});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TestDocument document(MakeFile(std::string(reinterpret_cast<const char*>(data), size)));
    if (!document.isOpen) return 0;
    document->SetBudget(Kernel::MakeCounted<Budget>(c_work));
    const Budget::Scope scope = document->OpenScope(Budget::Share::All);
    try {
        if (const auto font = Font::Make(document.GetRef(5), "F")) {
            font->IsAvailable();
            font->GetPostscriptName();
            if (!(*font == *font)) std::abort();
        }
    } catch (Error::Type) {
    }
    if (const auto root = document.Build()) root->UpdateBBoxes();
    document->GetFontInfos();
    return 0;
}
