/// Text: the bytes are the content of a page with fonts of every kind, which the page's form and the glyphs of its
/// Type 3 font show as well. Every line is then measured and outlined.

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/TextLineObject.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace Quillet;

/// Enough for every operator of the longest input; the full account of a document would take seconds here.
constexpr long long c_pageWork = 8'000'000;

constexpr const char* c_resources =
    "<< /Font << /F 6 0 R /T 7 0 R /I 8 0 R /J 10 0 R /G 12 0 R /S << /Type /Font /Subtype /Type1 /BaseFont /Symbol >> "
    ">> /XObject << /X 14 0 R >> /ExtGState << /M << /BM /Multiply >> /A << /ca 0.5 /CA 0.5 /Font [6 0 R 9] >> >> >>";

std::string MakeFile(const std::string& content)
{
    PdfBuilder builder;
    builder.Add("<< /Type /Catalog /Pages 2 0 R /Lang (en) >>");
    builder.Add("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    builder.Add("<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources 4 0 R /MediaBox [0 0 600 800] >>");
    builder.Add(c_resources);
    builder.AddStream(content);
    builder.Add("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding << /Differences [128 /f_i /uni00A0] >> "
                "/FirstChar 65 /Widths [500 0 -300 1000] >>");
    builder.Add("<< /Type /Font /Subtype /TrueType /BaseFont /ABCDEF+Arial,Bold /Encoding /MacRomanEncoding >>");
    const std::string descendant = "<< /Type /Font /Subtype /CIDFontType0 /BaseFont /Any /DW 700 /W [1 [500 0 -600] 65 "
                                   "90 300] /CIDSystemInfo << /Registry (Adobe) /Ordering ";
    builder.Add("<< /Type /Font /Subtype /Type0 /BaseFont /Any /Encoding /Identity-H /DescendantFonts [9 0 R] "
                "/ToUnicode 13 0 R >>");
    builder.Add(descendant + "(Identity) /Supplement 0 >> >>");
    builder.Add("<< /Type /Font /Subtype /Type0 /BaseFont /Any /Encoding /90ms-RKSJ-H /DescendantFonts [11 0 R] >>");
    builder.Add(descendant + "(Japan1) /Supplement 2 >> >>");
    builder.Add("<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [0.1 0 0 0.1 0 0] /CharProcs << /a 5 0 "
                "R >> /Encoding << /Differences [97 /a] >> /FirstChar 97 /LastChar 97 /Widths [9] /Resources 4 0 R >>");
    builder.AddStream(
        "1 begincodespacerange <0000> <FFFF> endcodespacerange 2 beginbfrange <0000> <00FF> <0000> <0100> "
        "<0101> [<00660069> <D83DDE00>] endbfrange");
    builder.AddStream(content, "/Type /XObject /Subtype /Form /BBox [0 0 50 50] /Resources 4 0 R");
    return builder.Build();
}

void Check(const TextLineObject& line)
{
    if (line.chars.empty()) std::abort();
    Geometry::PolyCurveDbl outlines;
    // The outlines of a text as long as the budget allows would take seconds.
    if (line.chars.size() < 1000) line.AppendOutlinesTo(outlines);
    line.HasFillOrStroke();
    line.HasUndefinedSpace();
    line.GetText();
    line.GetStoryWidth(line.chars.begin(), line.chars.end(), false, line.wordSpace);
    for (const Char& c : line.chars) {
        if (!c.atts) std::abort();
        c.GetWordSpace();
    }
    // The width of a line is that of its characters, however the file adds them up.
    const double sum = line.GetWidth(line.chars.begin(), line.chars.end());
    if (std::abs(sum) < 1e6 && std::abs(line.width) < 1e6 && std::abs(sum - line.width) > 1) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TestDocument document(MakeFile(std::string(reinterpret_cast<const char*>(data), size)));
    if (!document.isOpen) return 0;
    document->SetBudget(Kernel::MakeCounted<Budget>(c_pageWork));
    const Budget::Scope scope = document->OpenScope(Budget::Share::All);
    const auto root = document.Build();
    if (!root) return 0;
    root->UpdateBBoxes();
    root->VisitSubGroups([](GroupObject* group) {
        for (const auto& child : group->children) {
            if (const auto line = Kernel::DynamicCast<TextLineObject>(child)) Check(*line);
        }
    });
    return 0;
}
