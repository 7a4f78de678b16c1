#include <Quillet/PdfDocument.h>

#include "colour/ColourSpaceFactory.h"
#include "document/Dictionary.h"
#include "document/DocumentState.h"
#include "document/FileSource.h"
#include "document/InStreamSource.h"
#include "document/Limits.h"
#include "document/MemorySource.h"
#include "document/OCProperties.h"
#include "document/Pages.h"
#include "filters/Stream.h"

#include <Quillet/Page.h>

#include <Kernel/FormatString.h>
#include <Kernel/LocalisedString.h>
#include <Kernel/NumberText.h>
#include <Story/StyleSheet.h>

#include <algorithm>
#include <new>

namespace Quillet {

namespace {

/// A version that is far too high already, and that a float holds.
constexpr double c_highestVersion = 1e6;

} // namespace

DocumentState::DocumentState(PdfDocument& document)
    : xrefs(&document, &document), encrypt(&document),
      colourSpaceFactory(Kernel::MakeCounted<ColourSpaceFactory>(&document))
{}

DocumentState::~DocumentState() = default;

PdfDocument::PdfDocument() : state(std::make_unique<DocumentState>(*this))
{
    SetErrorHandler(&state->defaultErrorHandler);
    state->defaultErrorHandler.SetAbortPointer(abortPointer);
}

PdfDocument::~PdfDocument()
{
    Close();
}

void PdfDocument::OnError(Error::Type type) const
{
    OnErrorAt(type, {});
}

void PdfDocument::OnErrorAt(Error::Type type, const ErrorPlace& place) const
{
    if (type == Error::CutShort || !Budget::IsSpent()) return Raise(type, place);
    if (IsRecoverable(type)) return;
    if (Kernel::IsAborted(abortPointer)) throw type;
    Raise(Error::CutShort, place);
    throw Error::CutShort;
}

void PdfDocument::Raise(Error::Type type, ErrorPlace place) const
{
    if (!handler) return ErrorForwarder::OnError(type);
    if (const RunningContent* running = state->running) {
        const ErrorPlace content = running->GetErrorPlace();
        const int page = content.page;
        if (place.objectNumber < 0) place = content;
        if (place.page < 0) place.page = page;
    }
    if (place.page < 0) place.page = std::max(GetErrorPage(), -1);
    handler->OnErrorAt(type, place);
}

bool PdfDocument::CheckWhole(const Budget::Scope& scope) const
{
    return Check(!scope.WasCut(), Error::CutShort);
}

bool PdfDocument::IsPdfFile(const std::string& path)
{
    try {
        DropFile();
        state->source = Kernel::MakeCounted<FileSource>(this);
        state->source->Open(path);
        const Budget::Scope scope(Budget::ForFile(state->source->GetLength()), Budget::Share::All, GetAbortPointer());
        ReadHeader();
        ReadXRefPos();
        Close();
        return true;
    } catch (Error::Type) {
        Close();
        return false;
    }
}

bool PdfDocument::IsRestricted(const std::string& path)
{
    const auto document = Kernel::MakeCounted<PdfDocument>();
    return document->OpenFile(path) && !document->HasOwnerPermissions();
}

bool PdfDocument::IsRestricted(const char* data, unsigned long size)
{
    const auto document = Kernel::MakeCounted<PdfDocument>();
    return document->OpenMemory(data, size) && !document->HasOwnerPermissions();
}

bool PdfDocument::IsCorrectPassword(const std::string& path, const std::string& password)
{
    const auto document = Kernel::MakeCounted<PdfDocument>();
    document->SetPassword(password);
    if (!document->OpenFile(path)) return true;
    return document->state->defaultErrorHandler.lastError != Error::Password && document->HasOwnerPermissions();
}

bool PdfDocument::IsCorrectPassword(const char* data, unsigned long size, const std::string& password)
{
    // Unlike the form for files, a user's password is enough: what comes from a clipboard is only read.
    const auto document = Kernel::MakeCounted<PdfDocument>();
    document->SetPassword(password);
    if (!document->OpenMemory(data, size)) return true;
    return document->state->defaultErrorHandler.lastError != Error::Password;
}

bool PdfDocument::OpenFile(const std::string& path)
{
    return Open(Kernel::MakeCounted<FileSource>(this), path);
}

bool PdfDocument::OpenMemory(const char* data, unsigned long size)
{
    return Open(Kernel::MakeCounted<MemorySource>(data, size), "Clipboard");
}

bool PdfDocument::OpenStream(Kernel::InStream& stream, const std::string& name)
{
    return Open(Kernel::MakeCounted<InStreamSource>(stream), name);
}

bool PdfDocument::Open(Kernel::Counted<PdfSource> newSource, const std::string& name)
{
    bool isOutOfMemory = false;
    try {
        StartDocument(name);
        DropFile();
        state->source = std::move(newSource);
        state->source->Open(name);
        if (state->isOwnBudget) state->budget = Budget::ForFile(state->source->GetLength());
        const Budget::Scope scope = OpenScope(Budget::Share::All);
        OnOpen();
        if (CheckWhole(scope) && !Budget::IsSpent()) return true;
    } catch (Error::Type) {
        // Whoever handles errors knows it.
    } catch (const std::bad_alloc&) {
        isOutOfMemory = true;
    }
    Close();
    if (isOutOfMemory) OnError(Error::General);
    return false;
}

void PdfDocument::Close()
{
    DropFile();
    state->encrypt.Close();
}

void PdfDocument::DropFile()
{
    state->fileId.clear();
    state->pages = nullptr;
    state->xrefs.Close();
    state->encrypt.DropKeys();
    state->source = nullptr;
    styleSheet = nullptr;
    state->version = 0;
}

std::string PdfDocument::MakeStyleName(const Kernel::Counted<const Story::Delta>& delta,
                                       const Kernel::LocalisedString& name)
{
    if (!delta) return {};
    if (!styleSheet) styleSheet = Kernel::MakeCounted<Story::StyleSheet>();
    if (const auto known = styleSheet->FindByDelta(*delta)) return known->GetName();

    const std::size_t number = styleSheet->GetStyles().size() + 1;
    const auto made = Kernel::LocalisedString::CreateFakeFromString(Kernel::FormatString(name.ToString(), number));
    auto style = Kernel::MakeCounted<Story::Style>(made.ToString());
    style->SetType(Story::StyleType::Character);
    style->SetDelta(delta);
    styleSheet->Add(Kernel::ConsolidateObjectSacrifice(style), false);
    return made.ToString();
}

void PdfDocument::OnOpen()
{
    state->nextObjectId = 0;
    ReadHeader();
    ReadXRefPos();
    ReadXRefs();
    ReadTrailer();
    ReadEncrypt();
    ReadCatalog();
}

void PdfDocument::ReadHeader()
{
    char buffer[1024];
    const int count = std::max(state->source->Read(0, buffer, sizeof buffer), 0);
    const std::string_view text(buffer, static_cast<std::size_t>(count));
    constexpr std::string_view c_mark = "%PDF-";

    for (auto pos = text.find('%'); pos != text.npos; pos = text.find('%', pos + 1)) {
        const std::string_view candidate = text.substr(pos);
        if (!candidate.starts_with(c_mark)) continue;
        const auto number = Kernel::NumberText::ParseReal(candidate.substr(c_mark.size()));
        if (!number) continue;
        state->version = static_cast<float>(std::min(number.value, c_highestVersion));
        state->source->SetBaseOffset(pos);
        CheckVersion();
        return;
    }
    OnError(Error::PdfHeader);
}

void PdfDocument::CheckVersion() const
{
    Check(state->version >= 1 && state->version < 3, Error::MajorVersion);
}

void PdfDocument::ReadXRefPos()
{
    const unsigned long long length = state->source->GetLength();
    const auto size = static_cast<int>(std::min(length, 1024ull));
    std::string buffer(static_cast<std::size_t>(size), '\0');
    unsigned long long pos = length - static_cast<unsigned long long>(size);
    for (;;) {
        if (!Check(state->source->Read(pos, buffer.data(), size) == size, Error::PdfTrailer)) return;
        const auto last = buffer.find_last_not_of('\0');
        const std::size_t zeros = last == buffer.npos ? buffer.size() : buffer.size() - 1 - last;
        if (zeros == 0) break;
        if (!Check(zeros <= pos, Error::PdfTrailer)) return;
        pos -= zeros;
    }
    if (!Check(length >= 4, Error::PdfTrailer)) return;

    const auto end = buffer.rfind("%EOF");
    if (!Check(end != buffer.npos, Error::PdfTrailer)) return;
    const auto start = buffer.rfind('s', end);
    const std::string_view text = std::string_view(buffer).substr(start == buffer.npos ? 0 : start);
    constexpr std::string_view c_keyword = "startxref";
    if (!Check(text.starts_with(c_keyword), Error::PdfTrailer)) return;
    const auto number = Kernel::NumberText::ParseInteger(text.substr(c_keyword.size()));
    state->xrefPos = number.value;
    Check(number && state->xrefPos >= 0 && static_cast<unsigned long long>(state->xrefPos) <= length,
          Error::PdfTrailer);
}

void PdfDocument::ReadXRefs()
{
    Ref document;
    document.document = this;
    state->xrefs.Read(Ref::FromPosition(document, static_cast<unsigned long long>(state->xrefPos)));
    state->trailer = state->xrefs.finalTrailer;
}

void PdfDocument::ReadTrailer()
{
    Dictionary dictionary(state->trailer, nullptr, Error::PdfTrailer);
    state->root = dictionary.GetRef("Root");
    Check(!state->root.IsNull(), Error::Catalog);
    state->info = dictionary.GetRef("Info");
    state->encryptRef = dictionary.GetRef("Encrypt");
    dictionary.GetStringBufVec("ID", state->fileId);
    if (state->fileId.empty()) state->fileId.resize(2);
}

void PdfDocument::ReadEncrypt()
{
    state->encrypt.Read(state->encryptRef, state->fileId.front());
    state->decryptLevel = state->encrypt.level;
    if (state->decryptLevel == DecryptLevelLocked) OnError(Error::Password);
    if (state->decryptLevel < DecryptLevelLocked) OnError(Error::UnimplementedEncryption);
}

bool PdfDocument::IsBlocked() const
{
    return !HasUserPermissions();
}

void PdfDocument::ReadCatalog()
{
    Dictionary catalog(state->root, "Catalog", Error::Catalog);
    if (catalog.Has("Version")) {
        const std::string text = catalog.GetName("Version");
        const auto number = Kernel::NumberText::ParseReal(text);
        const auto claimed = static_cast<float>(std::min(number.value, c_highestVersion));
        if (number && claimed > state->version) {
            state->version = claimed;
            CheckVersion();
        }
    }

    if (!IsBlocked() || !state->encrypt.encryptMetadata) {
        if (const Ref metadata = catalog.GetRef("Metadata"); !metadata.IsNull()) {
            std::vector<char> bytes;
            Stream(metadata).ReadBlock(bytes);
            state->xmpMetadata.assign(bytes.begin(), bytes.end());
        }
    }

    const Ref pagesRef = catalog.GetRef("Pages");
    Check(!pagesRef.IsNull(), Error::PageTree);
    // Object streams cannot be read without the key.
    if (!IsBlocked() || !pagesRef.isInStream) {
        state->pages = Pages::GetPageTree(pagesRef, 0, nullptr);
        Check(static_cast<bool>(state->pages), Error::PageTree);
    }
    state->colourSpaceFactory->ReadOutputIntents(catalog.GetRef("OutputIntents"));
    state->ocProperties = Kernel::MakeCounted<OCProperties>(catalog.GetRef("OCProperties"));
}

std::string PdfDocument::GetDocName() const
{
    return state->source ? state->source->GetDocName() : std::string();
}

std::string PdfDocument::GetInfo(const char* key) const
{
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    std::string text;
    try {
        text = Dictionary(state->info).GetString(key);
    } catch (Error::Type) {
        // The handler knows it. What a document says of itself is not needed for its pages.
    }
    CheckWhole(scope);
    return text;
}

std::string PdfDocument::GetVersionString() const
{
    const std::string exchange = GetInfo("GTS_PDFXVersion");
    if (!exchange.empty()) return exchange;
    std::string number = Kernel::FormatString("%1", state->version);
    if (number.find('.') == number.npos) number += ".0";
    return Kernel::FormatString("PDF-%1", number);
}

int PdfDocument::GetXVersion() const
{
    constexpr std::string_view c_mark = "PDF/X-";
    const std::string text = GetInfo("GTS_PDFXVersion");
    const auto pos = text.find(c_mark);
    if (pos == text.npos) return 0;
    return static_cast<int>(Kernel::NumberText::ParseInteger(std::string_view(text).substr(pos + c_mark.size())).value);
}

std::vector<std::string> PdfDocument::GetKeywords() const
{
    const std::string text = GetInfo("Keywords");
    const char separator = text.find(',') != text.npos ? ',' : ' ';
    std::vector<std::string> keywords;
    if (text.empty()) return keywords;
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(separator, start)) != text.npos; start = end + 1) {
        if (!Budget::Spend(Limits::c_entryUnits)) break;
        keywords.push_back(text.substr(start, end - start));
    }
    if (CheckWhole(scope)) keywords.push_back(text.substr(start));
    return keywords;
}

bool PdfDocument::HasUserPermissions() const
{
    return Encrypt::HasUserPermissions(state->decryptLevel) &&
           state->encrypt.HasPermissions(Permissions::ExtractForAccessibility);
}

bool PdfDocument::HasOwnerPermissions() const
{
    return Encrypt::HasOwnerPermissions(state->decryptLevel);
}

bool PdfDocument::HasPermissions(Permissions::Type mask) const
{
    return state->encrypt.HasPermissions(mask);
}

bool PdfDocument::IsRestricted() const
{
    return !state->encrypt.HasPermissions(Permissions::All);
}

std::string PdfDocument::GetEncryptionMethod() const
{
    return state->encrypt.GetMethodName();
}

int PdfDocument::GetPageCount() const
{
    return state->pages ? state->pages->GetPageCount() : 0;
}

Kernel::Counted<const Page> PdfDocument::GetPage(int index) const
{
    // The nodes on the way serve other pages as well.
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    // A document that is locked, or that is not open, has none.
    if (!Check(static_cast<bool>(state->pages), Error::PageTree)) return nullptr;
    try {
        Kernel::Counted<const Page> page = state->pages->GetPage(index);
        CheckWhole(scope);
        return page;
    } catch (Error::Type) {
        if (!Budget::IsSpent()) throw;
        return nullptr;
    }
}

int PdfDocument::GetPageIndex(Kernel::NonCounted<const Page> page) const
{
    const int count = GetPageCount();
    if (!page || count == 0) return -1;
    // A page knows where it was found first; the search is for pages of another document or of an older tree.
    if (page->firstPage >= 0 && page->firstPage < count && GetPage(page->firstPage).Get() == page.Get()) {
        return page->firstPage;
    }
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    for (int index = 0; index < count && Budget::Spend(Limits::c_objectUnits); ++index) {
        if (GetPage(index).Get() == page.Get()) return index;
    }
    return -1;
}

Raster::ICCManager::ICCProfileSet PdfDocument::GetICCProfiles(int) const
{
    Raster::ICCManager::ICCProfileSet profiles = state->defaultProfiles;
    if (const auto output = state->colourSpaceFactory->GetOutputProfile())
        profiles.SetProfile(output->GetColourSpace(), output);
    for (int i = 1; i < Raster::c_colourSpaceCount; ++i) {
        const auto model = static_cast<Raster::ColourSpace>(i);
        if (!profiles.GetProfileFor(model)) {
            profiles.SetProfile(model, Raster::ICCManager::GetInstance().GetDefaultProfile(model));
        }
    }
    return profiles;
}

} // namespace Quillet
