#pragma once

#include "document/Encrypt.h"
#include "document/Guard.h"
#include "document/XRefs.h"

#include <Quillet/Budget.h>
#include <Quillet/DecryptLevel.h>
#include <Quillet/DefaultErrorHandler.h>
#include <Quillet/ErrorPlace.h>
#include <Quillet/PageClipArea.h>
#include <Quillet/Ref.h>
#include <Quillet/TextFidelity.h>

#include <Kernel/Counted.h>
#include <Kernel/Font.h>
#include <Raster/ColourSpace.h>
#include <Raster/Format.h>
#include <Raster/ICCManager.h>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kernel {
class FontMap;
}

namespace Quillet {

class ColourSpaceFactory;
class OCProperties;
class Page;
class PageBase;
class Parser;
class PdfDocument;
class PdfSource;
class RunningContent;

/// What stands behind a `PdfDocument`: the settings of the host, and what was read of the file. Hosts have the
/// operations of the document; classes of the library read it here.
struct QUILLET_API DocumentState
{
    explicit DocumentState(PdfDocument& document);
    ~DocumentState();
    DocumentState(const DocumentState&) = delete;
    DocumentState& operator=(const DocumentState&) = delete;

    // Settings.
    TextFidelity textFidelity = TextFidelityExact;
    std::string languageId = "zxx";
    bool isGroupTextLines = false;
    PageClipArea pageClipArea = PageClipNone;
    Raster::ColourSpace requestedColourSpace = Raster::ColourSpace::None;
    Raster::ICCManager::ICCProfileSet defaultProfiles;
    /// Null for the default one.
    Kernel::Counted<const Kernel::FontMap> fontMap;
    Raster::Format rasterFormat = Raster::Format::None;
    /// Page that the format was chosen for; -2 for none yet, -1 for a choice of the host.
    int rasterFormatPage = -2;
    Raster::ICCManager::ICCProfileSet rasterProfiles;

    // The file.
    DefaultErrorHandler defaultErrorHandler;
    Kernel::Counted<PdfSource> source;
    float version = 0;
    long long xrefPos = 0;
    XRefs xrefs;
    Ref trailer;
    Ref root;
    Ref info;
    std::vector<std::vector<char>> fileId;
    Ref encryptRef;
    Encrypt encrypt;
    DecryptLevel decryptLevel = DecryptLevelNone;
    std::string xmpMetadata;
    Kernel::Counted<const PageBase> pages;
    Kernel::Counted<ColourSpaceFactory> colourSpaceFactory;
    Kernel::Counted<const OCProperties> ocProperties;

    // What pages add to.
    int nextObjectId = 0;
    /// Those seen while pages were built.
    std::vector<Kernel::Font> fonts;
    /// Places in `fonts`.
    std::unordered_multimap<std::string, std::size_t> fontsByName;

    // What the work on it may cost, and where that is.
    Kernel::Counted<const Budget> budget;
    bool isOwnBudget = true;
    Guard::Trail trail;
    /// The innermost; null while none runs.
    const RunningContent* running = nullptr;
};

/// Content that is run, for the faults that are raised meanwhile: from here to the end of the block.
class QUILLET_API RunningContent
{
public:
    /// `contentParser` outlives it; null while content is only being opened.
    explicit RunningContent(const Page& page, const Parser* contentParser = nullptr);
    ~RunningContent();
    RunningContent(const RunningContent&) = delete;
    RunningContent& operator=(const RunningContent&) = delete;

    ErrorPlace GetErrorPlace() const;

private:
    /// Null without a document.
    DocumentState* const state;
    const RunningContent* const outer;
    const Parser* const parser;
    const int pageIndex;
};

} // namespace Quillet
