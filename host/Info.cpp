#include "Info.h"

#include "OpenDocument.h"
#include "PermissionNames.h"
#include "exporters/JsonExporter.h"
#include "exporters/NumberText.h"

#include <Quillet/Page.h>

#include <cstdio>
#include <functional>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;

void PrintLine(const char* label, const std::string& value)
{
    // A line is one fact, and what a file says of itself is not for the terminal to obey.
    std::string line;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto byte = static_cast<unsigned char>(value[i]);
        // The controls from U+0080 to U+009F have two bytes.
        const bool isUpperControl = byte == 0xC2 && static_cast<unsigned char>(value.c_str()[i + 1]) < 0xA0;
        if (isUpperControl) ++i;
        line += byte < ' ' || byte == 0x7F || isUpperControl ? ' ' : value[i];
    }
    if (!line.empty()) std::printf("%-13s%s\n", label, line.c_str());
}

using Box = Kernel::RectT<double>;

void AppendBox(std::string& text, const char* name, const Box& box)
{
    text += name;
    for (const double value : {box.left, box.top, box.right, box.bottom}) {
        text += ' ';
        AppendNumber(text, value, 3);
    }
}

/// The size, and the boxes that are not the one that gives the size.
std::string MakeSizeText(const Page& page)
{
    const Box trim = page.GetTrimBox();
    const auto size = PageBase::ApplyRotate(trim, page.GetRotate());
    std::string text;
    AppendNumber(text, size.GetWidth(), 3);
    text += " x ";
    AppendNumber(text, size.GetHeight(), 3);
    text += " pt";
    if (page.GetRotate() != 0) text += ", turned by " + std::to_string(page.GetRotate());
    const std::pair<const char*, Box> boxes[] = {{", media", page.GetMediaBox()},
                                                 {", crop", page.GetCropBox()},
                                                 {", bleed", page.GetBleedBox()},
                                                 {", art", page.GetArtBox()}};
    for (const auto& [name, box] : boxes) {
        if (box != trim) AppendBox(text, name, box);
    }
    return text;
}

std::string JoinKeywords(const std::vector<std::string>& keywords)
{
    std::string text;
    for (const std::string& keyword : keywords) {
        if (!text.empty()) text += "; ";
        text += keyword;
    }
    return text;
}

std::string GetProtection(const PdfDocument& document)
{
    if (document.decryptLevel == DecryptLevelOpen) return "none";
    return document.GetEncryptionMethod() + ", opened as " + (document.HasOwnerPermissions() ? "owner" : "user");
}

/// What whoever opened the document may do; nothing to tell of one that is not encrypted.
std::string MakePermissionText(const PdfDocument& document)
{
    if (document.decryptLevel == DecryptLevelOpen) return {};
    if (!document.IsRestricted()) return "all";
    std::string text;
    for (const std::string& name : GetPermissionNames(document))
        text += (text.empty() ? "" : ", ") + name;
    return text.empty() ? "none" : text;
}

/// Hands over each page that is there; false if any is not.
bool VisitPages(OpenedDocument& opened, const InfoOptions& options,
                const std::function<void(const Page& page, int index)>& visit)
{
    const int count = opened.document->GetPageCount();
    bool isComplete = true;
    int missingCount = 0;
    for (int index = 0; index < count && missingCount < c_maxMissingPages; ++index) {
        bool isThere = false;
        try {
            if (const auto page = opened.document->GetPage(index)) {
                visit(*page, index);
                isThere = true;
            }
        } catch (Error::Type) {
        }
        Problems problems = opened.counter.Take();
        if (!isThere && !HasFatal(problems)) problems[Error::PageTree] = 1;
        PrintProblems(options.input, index + 1, problems);
        missingCount = isThere ? 0 : missingCount + 1;
        isComplete = isComplete && isThere;
    }
    return isComplete;
}

/// One line for a run of pages of the same size.
bool PrintPages(OpenedDocument& opened, const InfoOptions& options)
{
    std::string size;
    int first = 0;
    int last = 0;
    const auto printRun = [&] {
        if (size.empty()) return;
        std::string label = "  page " + std::to_string(first + 1);
        if (last > first) label.append("-").append(std::to_string(last + 1));
        PrintLine(label.c_str(), "  " + size);
    };
    const bool isComplete = VisitPages(opened, options, [&](const Page& page, int index) {
        const std::string next = MakeSizeText(page);
        if (next != size || index != last + 1) {
            printRun();
            size = next;
            first = index;
        }
        last = index;
    });
    printRun();
    return isComplete;
}

void PrintFonts(const PdfDocument& document)
{
    for (const FontInfo& font : document.GetFontInfos()) {
        std::string text = font.name + ", " + font.subtype;
        text += font.isEmbedded ? ", embedded" : ", not embedded";
        if (font.isAvailable) {
            text += ", on this machine";
        } else if (font.actualFont.IsEmpty()) {
            text += ", has no text";
        } else {
            const std::string& name = font.actualFont.postscriptName;
            text += ", shown in " + (name.empty() ? font.actualFont.family : name);
        }
        PrintLine("font", text);
    }
}

bool PrintText(OpenedDocument& opened, const InfoOptions& options)
{
    const PdfDocument& document = *opened.document;
    PrintLine("file", document.GetDocName());
    PrintLine("version", document.GetVersionString());
    PrintLine("title", document.GetTitle());
    PrintLine("author", document.GetAuthor());
    PrintLine("subject", document.GetSubject());
    PrintLine("keywords", JoinKeywords(document.GetKeywords()));
    PrintLine("creator", document.GetCreator());
    PrintLine("producer", document.GetProducer());
    PrintLine("protection", GetProtection(document));
    PrintLine("permissions", MakePermissionText(document));
    PrintLine("pages", std::to_string(document.GetPageCount()));
    const bool isComplete = PrintPages(opened, options);
    PrintFonts(document);
    return isComplete;
}

bool PrintJson(OpenedDocument& opened, const InfoOptions& options)
{
    std::printf("{\"document\":%s,\n\"pages\":[", MakeDocumentJson(*opened.document).c_str());
    const char* separator = "";
    const bool isComplete = VisitPages(opened, options, [&](const Page& page, int index) {
        std::printf("%s%s}", separator, MakePageHeaderJson(page, index).c_str());
        separator = ",\n";
    });
    std::printf("],\n\"fonts\":%s}\n", MakeFontsJson(opened.document->GetFontInfos()).c_str());
    return isComplete;
}

} // namespace

int RunInfo(const InfoOptions& options)
{
    OpenedDocument opened(options.input);
    opened.AskForPassword();
    opened.PrintOpeningProblems();
    if (opened.status != ExitDone) return opened.status;
    const bool isComplete = (options.isJson ? PrintJson : PrintText)(opened, options);
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return isComplete ? ExitDone : ExitPageFailed;
    std::fputs("quillet: standard output cannot be written\n", stderr);
    return ExitNotWritten;
}

} // namespace Host
