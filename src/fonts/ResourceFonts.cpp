// The fonts among the resources.

#include "document/Dictionary.h"
#include "document/Resources.h"
#include "fonts/Font.h"

namespace Quillet {

Kernel::Counted<const Font> Resources::GetFont(const std::string& name) const
{
    // Not kept here: a new font map makes the document forget its fonts.
    const Ref value = GetFonts()->GetRef(name.c_str());
    return value.IsNull() ? nullptr : Font::Make(value, name);
}

void Resources::AddFonts(std::vector<Kernel::Font>& list, std::unordered_set<const Font*>& seen) const
{
    for (const std::string& name : GetFonts()->GetKeys()) {
        const auto font = GetFont(name);
        if (font && seen.insert(font.Get()).second) list.push_back(font->GetKernelFont());
    }
}

} // namespace Quillet
