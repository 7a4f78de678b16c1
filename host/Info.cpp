#include "Info.h"

#include "OpenDocument.h"
#include "exporters/JsonExporter.h"
#include "exporters/NumberText.h"

#include <Quillet/Page.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;

void PrintLine(const char* label, const std::string& value)
{
    // A line is one fact, and what a file says of itself is not for the terminal to obey.
    std::string line = value;
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
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

const char* GetProtection(const PdfDocument& document)
{
    if (document.decryptLevel == DecryptLevelOpen) return "none";
    return document.HasOwnerPermissions() ? "opened as owner"
           : document.IsRestricted()      ? "restricted"
                                          : "opened as user";
}

/// One line for a run of pages of the same size.
void PrintPages(OpenedDocument& opened, const InfoOptions& options, int& status)
{
    const int count = opened.document->GetPageCount();
    std::string size;
    int first = 0;
    const auto printRun = [&](int end) {
        if (size.empty()) return;
        std::string label = "  page " + std::to_string(first + 1);
        if (end - first > 1) label.append("-").append(std::to_string(end));
        PrintLine(label.c_str(), "  " + size);
    };
    for (int index = 0; index < count; ++index) {
        std::string next;
        try {
            next = MakeSizeText(*opened.document->GetPage(index));
        } catch (Error::Type) {
            PrintProblems(options.input, index + 1, opened.counter.Take());
            status = ExitPageFailed;
            printRun(index);
            return;
        }
        if (next == size) continue;
        printRun(index);
        size = next;
        first = index;
    }
    printRun(count);
}

void PrintText(OpenedDocument& opened, const InfoOptions& options, int& status)
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
    PrintLine("pages", std::to_string(document.GetPageCount()));
    PrintPages(opened, options, status);
}

void PrintJson(OpenedDocument& opened, const InfoOptions& options, int& status)
{
    std::printf("{\"document\":%s,\n\"pages\":[", MakeDocumentJson(*opened.document).c_str());
    const int count = opened.document->GetPageCount();
    for (int index = 0; index < count; ++index) {
        try {
            const std::string page = MakePageHeaderJson(*opened.document->GetPage(index), index);
            std::printf("%s%s}", index == 0 ? "" : ",\n", page.c_str());
        } catch (Error::Type) {
            PrintProblems(options.input, index + 1, opened.counter.Take());
            status = ExitPageFailed;
            break;
        }
    }
    std::printf("]}\n");
}

} // namespace

int RunInfo(const InfoOptions& options)
{
    OpenedDocument opened(options.input);
    PrintProblems(options.input, 0, opened.problems);
    if (opened.status != ExitDone) return opened.status;
    int status = ExitDone;
    (options.isJson ? PrintJson : PrintText)(opened, options, status);
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return status;
    std::fputs("quillet: standard output cannot be written\n", stderr);
    return ExitNotWritten;
}

} // namespace Host
