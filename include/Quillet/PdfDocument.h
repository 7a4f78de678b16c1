#pragma once

#include <Quillet/Budget.h>
#include <Quillet/DecryptLevel.h>
#include <Quillet/DefaultErrorHandler.h>
#include <Quillet/ErrorForwarder.h>
#include <Quillet/FontInfo.h>
#include <Quillet/PageClipArea.h>
#include <Quillet/TextFidelity.h>

#include <Kernel/Abortable.h>
#include <Kernel/Counted.h>
#include <Kernel/FontMap.h>
#include <Kernel/NonCounted.h>
#include <Raster/ColourSpace.h>
#include <Raster/Format.h>
#include <Raster/ICCManager.h>

#include <memory>
#include <string>
#include <vector>

namespace Kernel {
class InStream;
class LocalisedString;
} // namespace Kernel

namespace Story {
class Delta;
class StyleSheet;
} // namespace Story

namespace Quillet {

class Page;
class PdfSource;
struct DocumentState;

/// One PDF document: the object that a host holds for as long as it uses any page or object of it.
///
/// Options are set before opening or between pages. A document, its pages and their trees belong to one thread at a
/// time; different documents may be used side by side. The open calls never let an `Error::Type` through; around page
/// access and `Page::BuildObjects` the host must catch it.
class QUILLET_API PdfDocument : public Kernel::Countable, public ErrorForwarder, public Kernel::Abortable
{
public:
    PdfDocument();
    ~PdfDocument() override;

    const bool* GetAbortPointer() const override { return abortPointer; }
    /// The handler is told by `OnErrorAt`, with what is known of the place. Once the account of the document is used
    /// up, what else is missing is not told: it follows from that.
    void OnError(Error::Type type) const override;
    void OnErrorAt(Error::Type type, const ErrorPlace& place) const override;

    void SetTextFidelity(TextFidelity value);
    TextFidelity GetTextFidelity() const;
    /// Whether lines of text become columns; false unless it is set.
    void SetIsGroupTextLines(bool isOn);
    bool IsGroupTextLines() const;
    /// What a page is cut to; nothing unless it is set.
    void SetPageClipArea(PageClipArea value);
    PageClipArea GetPageClipArea() const;
    /// BCP 47 tag of imported text; "zxx", text without a language, unless it is set.
    void SetLanguageId(const std::string& tag);
    const std::string& GetLanguageId() const;
    /// The colour model that the host would like bitmaps to have; `None` leaves it to the pages.
    void SetRequestedColourSpace(Raster::ColourSpace model);
    Raster::ColourSpace GetRequestedColourSpace() const;
    /// The host's profiles for colours that come without one.
    void SetDefaultProfiles(const Raster::ICCManager::ICCProfileSet& profiles);
    const Raster::ICCManager::ICCProfileSet& GetDefaultProfiles() const;
    /// Fixes the pixel format of the import, so that none is chosen page by page.
    void SetFormat(Raster::Format format, const Raster::ICCManager::ICCProfileSet& profiles);
    /// Before an open call the text is kept for it, up to the next `Close`; after, it is tried at once, and the
    /// document's `GetDecryptLevel` stays.
    void SetPassword(const std::string& password);
    /// The account of what comes from here on: of all documents that a host opens from one file, one for each thread,
    /// say. Null gives the file that is open, and each that is opened, one by its size.
    void SetBudget(Kernel::Counted<const Budget> account);
    /// Null before a file is opened.
    const Kernel::Counted<const Budget>& GetBudget() const;
    /// What this thread does from here to the end of the block is paid from the document's account. The library does so
    /// by itself; a host does it around a page that it builds and writes.
    Budget::Scope OpenScope(Budget::Share share) const;

    /// Whether the file has a header and an end of file marker. What lies between is not looked at.
    bool IsPdfFile(const std::string& path);
    /// Whether a file, or a block of memory, opens without a password but without full permissions.
    static bool IsRestricted(const std::string& path);
    static bool IsRestricted(const char* data, unsigned long size);
    /// Whether a password gives full permissions. True for a file that does not open at all.
    static bool IsCorrectPassword(const std::string& path, const std::string& password);
    /// Whether a password, a user's too, opens the document. True for one that does not open at all.
    static bool IsCorrectPassword(const char* data, unsigned long size, const std::string& password);

    /// True if the document is usable in part or in whole; the last error of `GetDefaultErrorHandler` tells. False
    /// closes it.
    bool OpenFile(const std::string& path);
    /// The memory stays the caller's and outlives the document. Its name is "Clipboard".
    bool OpenMemory(const char* data, unsigned long size);
    /// The stream stays the caller's and outlives the document.
    bool OpenStream(Kernel::InStream& stream, const std::string& name);
    /// Drops what was opened, and the password. Settings stay.
    void Close();

    /// The path, or the name that was given with a stream; empty if nothing is open.
    std::string GetDocName() const;
    /// As "PDF-1.7", or the PDF/X version that the document claims.
    std::string GetVersionString() const;
    /// The number behind "PDF/X-"; 0 for none.
    int GetXVersion() const;
    /// Empty for a key that is not there, and for one that cannot be read, which is raised but never thrown.
    std::string GetInfo(const char* key) const;
    std::string GetTitle() const { return GetInfo("Title"); }
    std::string GetAuthor() const { return GetInfo("Author"); }
    std::string GetSubject() const { return GetInfo("Subject"); }
    std::string GetCreator() const { return GetInfo("Creator"); }
    std::string GetProducer() const { return GetInfo("Producer"); }
    /// Split at every comma if there is one, else at every blank.
    std::vector<std::string> GetKeywords() const;
    /// The bytes of the catalog's metadata stream.
    const std::string& GetXmpMetadata() const;

    /// How far the file could be opened: by its encryption and the password at that time.
    DecryptLevel GetDecryptLevel() const;
    bool HasUserPermissions() const;
    bool HasOwnerPermissions() const;
    bool HasPermissions(Permissions::Type mask) const;
    /// The cipher and the bits of its key, "RC4-40" or "AES-256" for instance; empty for a document that is not
    /// encrypted.
    std::string GetEncryptionMethod() const;
    bool IsRestricted() const;

    /// As the root of the page tree claims it.
    int GetPageCount() const;
    /// The page with an index from 0. Throws PageTree for one that is not there, and for any of a document that is not
    /// open, or whose page tree nobody can read before it is unlocked. Null if the way to it could not be paid for,
    /// which raises `CutShort`, or if the host's abort flag is set.
    Kernel::Counted<const Page> GetPage(int index) const;
    int GetDefaultPageIndex() const { return 0; }
    /// The index of a page of this document; -1 if it is none.
    int GetPageIndex(Kernel::NonCounted<const Page> page) const;
    /// By which profiles the colours of a page are meant, -1 being the whole document: that of the document's output
    /// intent for its model, then the host's defaults, then the machine's. So far all pages have the same.
    Raster::ICCManager::ICCProfileSet GetICCProfiles(int pageIndex) const;
    /// The number that the next object of a tree gets; from 0 on, and again with each open call.
    int GetNextObjectId() const;
    /// For a host that numbers each page from a number of its own.
    void SetNextObjectId(int id) const;
    int MakeObjectId() const;

    /// What stands in for fonts that the machine lacks; null for a map without answers. Fonts read so far are read
    /// anew.
    void SetFontMap(Kernel::Counted<const Kernel::FontMap> map);
    /// Never null.
    const Kernel::Counted<const Kernel::FontMap>& GetFontMap() const;
    /// The fonts that the pages and their forms have in their resources, each once, in the order of the pages.
    std::vector<FontInfo> GetFontInfos() const;
    /// What the fonts in the resources of the pages ask for, each font of the file once.
    std::vector<Kernel::Font> GetFonts() const;
    /// Takes a font into the list of those seen, unless an equal one is there.
    void AddFont(const Kernel::Font& font) const;
    bool ContainsFont(const Kernel::Font& font) const;
    bool IsFontPostscriptNameUnique(const std::string& name) const;

    /// The character styles of the text that has been reduced so far; null for none.
    const Kernel::Counted<Story::StyleSheet>& GetStyleSheet() const { return styleSheet; }
    /// The name of the style that looks like `delta`, which is made if there is none; `name` has the style's number in
    /// the place of %1. Empty for null.
    std::string MakeStyleName(const Kernel::Counted<const Story::Delta>& delta, const Kernel::LocalisedString& name);

    // Not for hosts.

    Kernel::Counted<PdfSource> GetSource() const;
    DocumentState& GetState() const { return *state; }

private:
    const std::unique_ptr<DocumentState> state;
    Kernel::Counted<Story::StyleSheet> styleSheet;

    bool Open(Kernel::Counted<PdfSource> newSource, const std::string& name);
    /// Lets go of the file and all that was read of it, but not of the password.
    void DropFile();
    void OnOpen();
    void ReadHeader();
    void CheckVersion() const;
    void ReadXRefPos();
    void ReadXRefs();
    void ReadTrailer();
    void ReadEncrypt();
    void ReadCatalog();
    /// Tells the handler, with what the document knows of the place.
    void Raise(Error::Type type, ErrorPlace place) const;
    /// Raises `CutShort` if that is what happened in `scope`.
    bool CheckWhole(const Budget::Scope& scope) const;
    /// Whether nobody may read the content yet: locked, or without the right to extract.
    bool IsBlocked() const;
};

} // namespace Quillet
