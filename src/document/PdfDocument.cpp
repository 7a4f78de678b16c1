#include <Quillet/PdfDocument.h>

#include "colour/ColourSpaceFactory.h"
#include "document/OCProperties.h"
#include "document/Dictionary.h"
#include "document/Encrypt.h"
#include "document/FileSource.h"
#include "document/Guard.h"
#include "document/InStreamSource.h"
#include "document/Limits.h"
#include "document/MemorySource.h"
#include "document/Pages.h"
#include "document/XRefs.h"
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

PdfDocument::PdfDocument()
    : ErrorForwarder(&defaultErrorHandler), xrefs(std::make_unique<XRefs>(this, this)),
      encrypt(std::make_unique<Encrypt>(this)), colourSpaceFactory(Kernel::MakeCounted<ColourSpaceFactory>(this)),
      trail(std::make_unique<Guard::Trail>())
{
    defaultErrorHandler.SetAbortPointer(abortPointer);
}

PdfDocument::~PdfDocument()
{
    Close();
}

void PdfDocument::SetFormat(Raster::Format format, const Raster::ICCManager::ICCProfileSet& profiles)
{
    rasterFormat = format;
    rasterProfiles = profiles;
    rasterFormatPage = -1;
}

void PdfDocument::SetPassword(const std::string& password)
{
    encrypt->SetPassword(password);
}

void PdfDocument::SetBudget(Kernel::Counted<const Budget> account)
{
    isOwnBudget = !account;
    budget = isOwnBudget && source ? Kernel::Counted<const Budget>(Budget::ForFile(source->GetLength()))
                                   : std::move(account);
}

void PdfDocument::OnError(Error::Type type) const
{
    if (type == Error::CutShort || !Budget::IsSpent()) return ErrorForwarder::OnError(type);
    if (IsRecoverable(type)) return;
    if (Kernel::IsAborted(abortPointer)) throw type;
    ErrorForwarder::OnError(Error::CutShort);
    throw Error::CutShort;
}

bool PdfDocument::CheckWhole(const Budget::Scope& scope) const
{
    return Check(!scope.WasCut(), Error::CutShort);
}

bool PdfDocument::IsPdfFile(const std::string& path)
{
    try {
        DropFile();
        source = Kernel::MakeCounted<FileSource>(this);
        source->Open(path);
        const Budget::Scope scope(Budget::ForFile(source->GetLength()), Budget::Share::All, GetAbortPointer());
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
    return document->defaultErrorHandler.lastError != Error::Password && document->HasOwnerPermissions();
}

bool PdfDocument::IsCorrectPassword(const char* data, unsigned long size, const std::string& password)
{
    // Unlike the form for files, a user's password is enough: what comes from a clipboard is only read.
    const auto document = Kernel::MakeCounted<PdfDocument>();
    document->SetPassword(password);
    if (!document->OpenMemory(data, size)) return true;
    return document->defaultErrorHandler.lastError != Error::Password;
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
        source = std::move(newSource);
        source->Open(name);
        if (isOwnBudget) budget = Budget::ForFile(source->GetLength());
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
    encrypt->Close();
}

void PdfDocument::DropFile()
{
    fileId.clear();
    pages = nullptr;
    xrefs->Close();
    encrypt->DropKeys();
    source = nullptr;
    styleSheet = nullptr;
    version = 0;
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
    nextObjectId = 0;
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
    const int count = std::max(source->Read(0, buffer, sizeof buffer), 0);
    const std::string_view text(buffer, static_cast<std::size_t>(count));
    constexpr std::string_view c_mark = "%PDF-";

    for (auto pos = text.find('%'); pos != text.npos; pos = text.find('%', pos + 1)) {
        const std::string_view candidate = text.substr(pos);
        if (!candidate.starts_with(c_mark)) continue;
        const auto number = Kernel::NumberText::ParseReal(candidate.substr(c_mark.size()));
        if (!number) continue;
        version = static_cast<float>(std::min(number.value, c_highestVersion));
        source->SetBaseOffset(pos);
        CheckVersion();
        return;
    }
    OnError(Error::PdfHeader);
}

void PdfDocument::CheckVersion() const
{
    Check(version >= 1 && version < 3, Error::MajorVersion);
}

void PdfDocument::ReadXRefPos()
{
    const unsigned long long length = source->GetLength();
    const auto size = static_cast<int>(std::min(length, 1024ull));
    std::string buffer(static_cast<std::size_t>(size), '\0');
    unsigned long long pos = length - static_cast<unsigned long long>(size);
    for (;;) {
        if (!Check(source->Read(pos, buffer.data(), size) == size, Error::PdfTrailer)) return;
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
    xrefPos = number.value;
    Check(number && xrefPos >= 0 && static_cast<unsigned long long>(xrefPos) <= length, Error::PdfTrailer);
}

void PdfDocument::ReadXRefs()
{
    Ref document;
    document.document = this;
    xrefs->Read(Ref::FromPosition(document, static_cast<unsigned long long>(xrefPos)));
    trailer = xrefs->finalTrailer;
}

void PdfDocument::ReadTrailer()
{
    Dictionary dictionary(trailer, nullptr, Error::PdfTrailer);
    root = dictionary.GetRef("Root");
    Check(!root.IsNull(), Error::Catalog);
    info = dictionary.GetRef("Info");
    encryptRef = dictionary.GetRef("Encrypt");
    dictionary.GetStringBufVec("ID", fileId);
    if (fileId.empty()) fileId.resize(2);
}

void PdfDocument::ReadEncrypt()
{
    encrypt->Read(encryptRef, fileId.front());
    decryptLevel = encrypt->level;
    if (decryptLevel == DecryptLevelLocked) OnError(Error::Password);
    if (decryptLevel < DecryptLevelLocked) OnError(Error::UnimplementedEncryption);
}

bool PdfDocument::IsBlocked() const
{
    return !HasUserPermissions();
}

void PdfDocument::ReadCatalog()
{
    Dictionary catalog(root, "Catalog", Error::Catalog);
    if (catalog.Has("Version")) {
        const std::string text = catalog.GetName("Version");
        const auto number = Kernel::NumberText::ParseReal(text);
        const auto claimed = static_cast<float>(std::min(number.value, c_highestVersion));
        if (number && claimed > version) {
            version = claimed;
            CheckVersion();
        }
    }

    if (!IsBlocked() || !encrypt->encryptMetadata) {
        if (const Ref metadata = catalog.GetRef("Metadata"); !metadata.IsNull()) {
            std::vector<char> bytes;
            Stream(metadata).ReadBlock(bytes);
            xmpMetadata.assign(bytes.begin(), bytes.end());
        }
    }

    const Ref pagesRef = catalog.GetRef("Pages");
    Check(!pagesRef.IsNull(), Error::PageTree);
    // Object streams cannot be read without the key.
    if (!IsBlocked() || !pagesRef.isInStream) {
        pages = Pages::GetPageTree(pagesRef, 0, nullptr);
        Check(static_cast<bool>(pages), Error::PageTree);
    }
    colourSpaceFactory->ReadOutputIntents(catalog.GetRef("OutputIntents"));
    ocProperties = Kernel::MakeCounted<OCProperties>(catalog.GetRef("OCProperties"));
}

std::string PdfDocument::GetDocName() const
{
    return source ? source->GetDocName() : std::string();
}

Kernel::Counted<PdfSource> PdfDocument::GetSource() const
{
    return source;
}

std::string PdfDocument::GetInfo(const char* key) const
{
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    std::string text;
    try {
        text = Dictionary(info).GetString(key);
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
    std::string number = Kernel::FormatString("%1", version);
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
    return Encrypt::HasUserPermissions(decryptLevel) && encrypt->HasPermissions(Permissions::ExtractForAccessibility);
}

bool PdfDocument::HasOwnerPermissions() const
{
    return Encrypt::HasOwnerPermissions(decryptLevel);
}

bool PdfDocument::HasPermissions(Permissions::Type mask) const
{
    return encrypt->HasPermissions(mask);
}

bool PdfDocument::IsRestricted() const
{
    return !encrypt->HasPermissions(Permissions::All);
}

std::string PdfDocument::GetEncryptionMethod() const
{
    return encrypt->GetMethodName();
}

int PdfDocument::GetPageCount() const
{
    return pages ? pages->GetPageCount() : 0;
}

Kernel::Counted<const Page> PdfDocument::GetPage(int index) const
{
    // The nodes on the way serve other pages as well.
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    // A document that is locked, or that is not open, has none.
    if (!Check(static_cast<bool>(pages), Error::PageTree)) return nullptr;
    try {
        Kernel::Counted<const Page> page = pages->GetPage(index);
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
    Raster::ICCManager::ICCProfileSet profiles = defaultProfiles;
    if (const auto output = colourSpaceFactory->GetOutputProfile())
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
