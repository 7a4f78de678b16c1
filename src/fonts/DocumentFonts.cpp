// The fonts of a document.

#include <Quillet/PdfDocument.h>

#include "document/Resources.h"
#include "document/Dictionary.h"
#include "document/DocumentState.h"
#include "document/Limits.h"
#include "fonts/Font.h"

#include <Quillet/Page.h>

#include <Renderer/FontMetrics.h>
#include <Story/GlyphAtts.h>

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

namespace Quillet {

namespace {

bool HasFontFile(const Ref& fontDictionary)
{
    Dictionary descriptor(Dictionary(fontDictionary).GetRef("FontDescriptor"));
    return descriptor.Has("FontFile") || descriptor.Has("FontFile2") || descriptor.Has("FontFile3");
}

FontInfo MakeInfo(const Ref& ref, const Font& font)
{
    Dictionary dictionary(ref);
    FontInfo made;
    made.name = dictionary.GetName("BaseFont");
    made.subtype = font.subtype;
    made.isAvailable = font.IsAvailable();
    made.isEmbedded = HasFontFile(ref) || font.subtype == "Type3";
    std::vector<Ref> descendants;
    dictionary.GetRefVec("DescendantFonts", descendants);
    for (const Ref& descendant : descendants)
        made.isEmbedded = made.isEmbedded || HasFontFile(descendant);
    if (made.name.empty()) made.name = font.GetPostscriptName();
    if (!font.GetKernelFont().IsEmpty()) {
        const auto atts = Kernel::MakeCounted<Story::GlyphAtts>();
        font.AddTo(*atts);
        made.actualFont = atts->GetFontMetrics()->GetActualFont();
    }
    return made;
}

/// Goes through resources and those of the forms in them, each once.
class FontCollector
{
public:
    void AddResources(const Ref& first)
    {
        std::vector<Ref> pending{first};
        while (!pending.empty()) {
            const Ref ref = pending.back();
            pending.pop_back();
            if (ref.IsNull() || !IsNew(ref)) continue;
            const Resources resources(ref);
            AddFonts(resources);
            const auto forms = resources.GetXObjects();
            for (const std::string& key : forms->GetKeys())
                pending.push_back(Dictionary(forms->GetRef(key.c_str())).GetRef("Resources"));
        }
    }

    std::vector<FontInfo> infos;

private:
    void AddFonts(const Resources& resources)
    {
        const auto fonts = resources.GetFonts();
        for (const std::string& key : fonts->GetKeys()) {
            const Ref ref = fonts->GetRef(key.c_str());
            if (ref.IsNull() || !IsNew(ref) || infos.size() == Limits::c_maxFonts) continue;
            if (const auto font = Font::Make(ref, key)) infos.push_back(MakeInfo(ref, *font));
        }
    }

    bool IsNew(const Ref& ref)
    {
        return Budget::Spend(Limits::c_entryUnits) && seen.emplace(ref.number, ref.GetPos()).second;
    }

    /// Objects by number and place.
    std::set<std::pair<int, unsigned long long>> seen;
};

/// Calls `visit` with each page that there is. A claim of pages is only a number, so many in a row that are missing end
/// the walk.
template <typename Visit>
void VisitPages(const PdfDocument& document, Visit visit)
{
    int missing = 0;
    for (int index = 0; index < document.GetPageCount() && Budget::Spend(Limits::c_objectUnits); ++index) {
        if (missing++ == Limits::c_maxPageGap) return;
        try {
            const auto page = document.GetPage(index);
            if (!page) continue;
            missing = 0;
            visit(*page);
        } catch (Error::Type) {
            // It was told of; the other pages have their fonts all the same.
            continue;
        }
    }
}

} // namespace

void PdfDocument::SetFontMap(Kernel::Counted<const Kernel::FontMap> map)
{
    state->fontMap =
        map ? std::move(map) : Kernel::Counted<const Kernel::FontMap>(Kernel::MakeCounted<Kernel::FontMap>());
    state->xrefs.ClearCaches();
}

const Kernel::Counted<const Kernel::FontMap>& PdfDocument::GetFontMap() const
{
    static const auto& standard = *new Kernel::Counted<const Kernel::FontMap>(Kernel::FontMap::GetDefault());
    return state->fontMap ? state->fontMap : standard;
}

std::vector<FontInfo> PdfDocument::GetFontInfos() const
{
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    FontCollector collector;
    VisitPages(*this, [&collector](const Page& page) { collector.AddResources(page.GetResourcesRef()); });
    CheckWhole(scope);
    return std::move(collector.infos);
}

std::vector<Kernel::Font> PdfDocument::GetFonts() const
{
    const Budget::Scope scope = OpenScope(Budget::Share::All);
    std::vector<Kernel::Font> result;
    std::unordered_set<const Font*> seen;
    VisitPages(*this, [&](const Page& page) { page.GetFonts(result, seen); });
    CheckWhole(scope);
    return result;
}

void PdfDocument::AddFont(const Kernel::Font& font) const
{
    if (state->fonts.size() >= Limits::c_maxFonts || ContainsFont(font)) return;
    state->fontsByName.emplace(font.postscriptName, state->fonts.size());
    state->fonts.push_back(font);
}

bool PdfDocument::ContainsFont(const Kernel::Font& font) const
{
    const auto [first, last] = state->fontsByName.equal_range(font.postscriptName);
    return std::any_of(first, last, [&](const auto& entry) {
        return !Budget::Spend(Limits::c_entryUnits) || state->fonts[entry.second] == font;
    });
}

bool PdfDocument::IsFontPostscriptNameUnique(const std::string& name) const
{
    return !state->fontsByName.contains(name);
}

} // namespace Quillet
