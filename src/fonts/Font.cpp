#include "fonts/Font.h"

#include "document/Dictionary.h"
#include "document/Limits.h"
#include "fonts/CompositeFont.h"
#include "fonts/SimpleFont.h"
#include "fonts/Type3Font.h"
#include "fonts/UnimplementedFont.h"

#include <Quillet/Budget.h>
#include <Quillet/PdfDocument.h>

namespace Quillet {

namespace {

Kernel::Counted<const Font> MakeNew(const Kernel::Counted<Dictionary>& dictionary)
{
    const std::string subtype = dictionary->GetName("Subtype");
    if (subtype == "Type0") return Kernel::MakeCounted<CompositeFont>(dictionary);
    if (subtype == "Type1" || subtype == "TrueType" || subtype == "MMType1")
        return Kernel::MakeCounted<SimpleFont>(dictionary);
    dictionary->OnError(Error::UnimplementedTextEncoding);
    if (subtype == "Type3") return Kernel::MakeCounted<Type3Font>(dictionary);
    return Kernel::MakeCounted<UnimplementedFont>(*dictionary);
}

} // namespace

Font::Font(Dictionary& dictionary)
    : ErrorForwarder(dictionary.GetErrorHandler()), subtype(dictionary.GetName("Subtype"))
{}

Kernel::Counted<const Font> Font::Make(const Ref& ref, const std::string&)
{
    if (ref.number < 0) return nullptr;
    if (auto cached = ref.GetCache<Font>()) return cached;
    if (!Budget::Spend(Limits::c_fontUnits)) return nullptr;
    const auto font = MakeNew(Kernel::MakeCounted<Dictionary>(ref, "Font", Error::General));
    ref.SetCache(font);
    if (ref.document) ref.document->AddFont(font->GetKernelFont());
    if (auto cached = ref.GetCache<Font>()) return cached;
    return font;
}

const Kernel::Counted<const Font>& Font::GetDefaultFont()
{
    static const auto& font = *[] {
        const Budget::Reprieve reprieve;
        return new Kernel::Counted<const Font>(Kernel::MakeCounted<SimpleFont>());
    }();
    return font;
}

} // namespace Quillet
