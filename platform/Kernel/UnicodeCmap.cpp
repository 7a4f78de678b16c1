#include <Kernel/UnicodeCmap.h>

#include <Kernel/FontCache.h>

#include <memory>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace Kernel {

namespace {

struct LibraryCloser
{
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct FaceCloser
{
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};

} // namespace

Counted<const UnicodeCmap> UnicodeCmap::Make(const Font& font)
{
    const FontFace* found = font.IsEmpty() ? nullptr : FontCache::GetInstance().FindFace(font);
    if (!found) return nullptr;
    FT_Library opened = nullptr;
    if (FT_Init_FreeType(&opened) != 0) return nullptr;
    const std::unique_ptr<FT_LibraryRec_, LibraryCloser> library(opened);
    FT_Face openedFace = nullptr;
    if (FT_New_Face(library.get(), found->file.c_str(), found->index, &openedFace) != 0) return nullptr;
    const std::unique_ptr<FT_FaceRec_, FaceCloser> face(openedFace);

    auto cmap = MakeCounted<UnicodeCmap>();
    FT_UInt glyph = 0;
    for (FT_ULong code = FT_Get_First_Char(face.get(), &glyph); glyph != 0;
         code = FT_Get_Next_Char(face.get(), code, &glyph)) {
        const auto character = static_cast<char32_t>(code);
        cmap->glyphs.emplace(character, static_cast<int>(glyph));
        if (!cmap->ranges.empty() && cmap->ranges.back().last + 1 == character) {
            cmap->ranges.back().last = character;
        } else {
            cmap->ranges.push_back({character, character});
        }
    }
    return cmap;
}

int UnicodeCmap::GetGlyphIndex(char32_t character) const
{
    const auto found = glyphs.find(character);
    return found == glyphs.end() ? 0 : found->second;
}

} // namespace Kernel
