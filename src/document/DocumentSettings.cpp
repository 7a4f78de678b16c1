// What a host sets of a document, and what it reads back.

#include <Quillet/PdfDocument.h>

#include "document/DocumentState.h"
#include "document/PdfSource.h"

#include <utility>

namespace Quillet {

void PdfDocument::SetTextFidelity(TextFidelity value)
{
    state->textFidelity = value;
}

TextFidelity PdfDocument::GetTextFidelity() const
{
    return state->textFidelity;
}

void PdfDocument::SetIsGroupTextLines(bool isOn)
{
    state->isGroupTextLines = isOn;
}

bool PdfDocument::IsGroupTextLines() const
{
    return state->isGroupTextLines;
}

void PdfDocument::SetPageClipArea(PageClipArea value)
{
    state->pageClipArea = value;
}

PageClipArea PdfDocument::GetPageClipArea() const
{
    return state->pageClipArea;
}

void PdfDocument::SetLanguageId(const std::string& tag)
{
    state->languageId = tag;
}

const std::string& PdfDocument::GetLanguageId() const
{
    return state->languageId;
}

void PdfDocument::SetRequestedColourSpace(Raster::ColourSpace model)
{
    state->requestedColourSpace = model;
}

Raster::ColourSpace PdfDocument::GetRequestedColourSpace() const
{
    return state->requestedColourSpace;
}

void PdfDocument::SetDefaultProfiles(const Raster::ICCManager::ICCProfileSet& profiles)
{
    state->defaultProfiles = profiles;
}

const Raster::ICCManager::ICCProfileSet& PdfDocument::GetDefaultProfiles() const
{
    return state->defaultProfiles;
}

void PdfDocument::SetFormat(Raster::Format format, const Raster::ICCManager::ICCProfileSet& profiles)
{
    state->rasterFormat = format;
    state->rasterProfiles = profiles;
    state->rasterFormatPage = -1;
}

void PdfDocument::SetPassword(const std::string& password)
{
    state->encrypt.SetPassword(password);
}

void PdfDocument::SetBudget(Kernel::Counted<const Budget> account)
{
    state->isOwnBudget = !account;
    state->budget = state->isOwnBudget && state->source
                        ? Kernel::Counted<const Budget>(Budget::ForFile(state->source->GetLength()))
                        : std::move(account);
}

const Kernel::Counted<const Budget>& PdfDocument::GetBudget() const
{
    return state->budget;
}

Budget::Scope PdfDocument::OpenScope(Budget::Share share) const
{
    return {state->budget, share, GetAbortPointer()};
}

DecryptLevel PdfDocument::GetDecryptLevel() const
{
    return state->decryptLevel;
}

const std::string& PdfDocument::GetXmpMetadata() const
{
    return state->xmpMetadata;
}

int PdfDocument::GetNextObjectId() const
{
    return state->nextObjectId;
}

void PdfDocument::SetNextObjectId(int id) const
{
    state->nextObjectId = id;
}

int PdfDocument::MakeObjectId() const
{
    return state->nextObjectId++;
}

Kernel::Counted<PdfSource> PdfDocument::GetSource() const
{
    return state->source;
}

} // namespace Quillet
