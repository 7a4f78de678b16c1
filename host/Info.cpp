#include "Info.h"

#include "Guarded.h"
#include "Interrupt.h"
#include "OpenDocument.h"
#include "OutputFile.h"
#include "PermissionNames.h"
#include "WriteAll.h"
#include "exporters/Costs.h"
#include "exporters/JsonExporter.h"
#include "exporters/JsonWriter.h"
#include "exporters/NumberText.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;

constexpr std::size_t c_labelWidth = 13;

void AppendLine(LongText& text, std::string label, const std::string& value)
{
    if (!Budget::Spend(value.size())) return;
    // A line is one fact, and what a file says of itself is not for the terminal to obey.
    std::string line;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto byte = static_cast<unsigned char>(value[i]);
        // The controls from U+0080 to U+009F have two bytes.
        const bool isUpperControl = byte == 0xC2 && static_cast<unsigned char>(value.c_str()[i + 1]) < 0xA0;
        if (isUpperControl) ++i;
        line += byte < ' ' || byte == 0x7F || isUpperControl ? ' ' : value[i];
    }
    if (line.empty()) return;
    label.resize(std::max(label.size(), c_labelWidth), ' ');
    text.Append(label);
    text.Append(line);
    text.Append("\n");
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
    if (document.GetDecryptLevel() == DecryptLevelOpen) return "none";
    return document.GetEncryptionMethod() + ", opened as " + (document.HasOwnerPermissions() ? "owner" : "user");
}

/// What whoever opened the document may do; nothing to tell of one that is not encrypted.
std::string MakePermissionText(const PdfDocument& document)
{
    if (document.GetDecryptLevel() == DecryptLevelOpen) return {};
    if (!document.IsRestricted()) return "all";
    std::string text;
    for (const std::string& name : GetPermissionNames(document))
        text += (text.empty() ? "" : ", ") + name;
    return text.empty() ? "none" : text;
}

/// Hands over each page that is there, as far as the account goes; false if any is not.
bool VisitPages(OpenedDocument& opened, const InfoOptions& options,
                const std::function<void(const Page& page, int index)>& visit)
{
    const int count = opened.document->GetPageCount();
    bool isComplete = true;
    int missingCount = 0;
    for (int index = 0; index < count && missingCount < c_maxMissingPages; ++index) {
        bool isThere = false;
        if (!Budget::Spend(Costs::c_jsonNode)) break;
        try {
            if (const auto page = opened.document->GetPage(index)) {
                visit(*page, index);
                isThere = true;
            }
        } catch (Error::Type) {
        }
        if (Budget::IsSpent()) break;
        Problems problems = opened.counter.Take();
        if (!isThere && !HasFatal(problems)) problems[Error::PageTree] = 1;
        PrintProblems(options.input, index + 1, problems);
        missingCount = isThere ? 0 : missingCount + 1;
        isComplete = isComplete && isThere;
    }
    return isComplete;
}

/// One line for a run of pages of the same size.
bool AppendPages(LongText& text, OpenedDocument& opened, const InfoOptions& options)
{
    std::string size;
    int first = 0;
    int last = 0;
    const auto appendRun = [&] {
        if (size.empty()) return;
        std::string label = "  page " + std::to_string(first + 1);
        if (last > first) label.append("-").append(std::to_string(last + 1));
        AppendLine(text, label, "  " + size);
    };
    const bool isComplete = VisitPages(opened, options, [&](const Page& page, int index) {
        const std::string next = MakeSizeText(page);
        if (next != size || index != last + 1) {
            appendRun();
            size = next;
            first = index;
        }
        last = index;
    });
    appendRun();
    return isComplete;
}

void AppendFonts(LongText& text, const PdfDocument& document)
{
    for (const FontInfo& font : document.GetFontInfos()) {
        if (!Budget::Spend(Costs::c_jsonEntry)) return;
        std::string line = font.name + ", " + font.subtype;
        line += font.isEmbedded ? ", embedded" : ", not embedded";
        if (font.isAvailable) {
            line += ", on this machine";
        } else if (font.actualFont.IsEmpty()) {
            line += ", has no text";
        } else {
            const std::string& name = font.actualFont.postscriptName;
            line += ", shown in " + (name.empty() ? font.actualFont.family : name);
        }
        AppendLine(text, "font", line);
    }
}

bool AppendText(LongText& text, OpenedDocument& opened, const InfoOptions& options)
{
    const PdfDocument& document = *opened.document;
    AppendLine(text, "file", document.GetDocName());
    AppendLine(text, "version", document.GetVersionString());
    AppendLine(text, "title", document.GetTitle());
    AppendLine(text, "author", document.GetAuthor());
    AppendLine(text, "subject", document.GetSubject());
    AppendLine(text, "keywords", JoinKeywords(document.GetKeywords()));
    AppendLine(text, "creator", document.GetCreator());
    AppendLine(text, "producer", document.GetProducer());
    AppendLine(text, "protection", GetProtection(document));
    AppendLine(text, "permissions", MakePermissionText(document));
    AppendLine(text, "pages", std::to_string(document.GetPageCount()));
    const bool isComplete = AppendPages(text, opened, options);
    AppendFonts(text, document);
    return isComplete;
}

bool AppendJson(LongText& text, OpenedDocument& opened, const InfoOptions& options)
{
    JsonWriter json(text);
    json.BeginObject();
    WriteDocument(json.Key("document"), *opened.document);
    json.BreakLine();
    json.Key("pages").BeginArray();
    const bool isComplete = VisitPages(opened, options, [&](const Page& page, int index) {
        json.BreakLine();
        BeginPage(json, page, index);
        json.EndObject();
    });
    json.EndArray();
    json.BreakLine();
    WriteFonts(json.Key("fonts"), opened.document->GetFontInfos());
    json.EndObject();
    text.Append("\n");
    return isComplete;
}

/// `stage` is the status for what may still be thrown.
int Tell(const InfoOptions& options, ExitStatus& stage)
{
    OpenedDocument opened(options.input);
    opened.AskForPassword();
    if (Interrupt::IsSet()) return ExitInterrupted;
    opened.PrintOpeningProblems();
    if (opened.status != ExitDone) return opened.status;
    stage = ExitPageFailed;
    // Whoever reads it wants all of it or nothing, and a signal may still come.
    LongText text;
    bool isComplete = false;
    {
        const Budget::Scope scope = opened.document->OpenScope(Budget::Share::All);
        isComplete = (options.isJson ? AppendJson : AppendText)(text, opened, options);
        if (Budget::IsSpent()) opened.counter.OnError(Error::CutShort);
    }
    if (Interrupt::IsSet()) return ExitInterrupted;
    // Faults in fonts are those of the pages that they are used on.
    if (opened.counter.TakeCutShort()) {
        PrintProblems(options.input, 0, {{Error::CutShort, 1}});
        isComplete = false;
    }
    stage = ExitNotWritten;
    OutputFile out("/dev/stdout");
    out.Write(text);
    if (out.Commit()) return isComplete ? ExitDone : ExitPageFailed;
    if (Interrupt::IsSet()) return ExitInterrupted;
    PrintLine("quillet: standard output cannot be written");
    return ExitNotWritten;
}

} // namespace

int RunInfo(const InfoOptions& options)
{
    return RunVerb(options.input.file, [&](ExitStatus& stage) { return Tell(options, stage); });
}

} // namespace Host
