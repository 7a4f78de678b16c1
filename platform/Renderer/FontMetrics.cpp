#include <Renderer/FontMetrics.h>

#include <Kernel/CharTraits.h>
#include <Kernel/CharacterType.h>
#include <Kernel/FontCache.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_MULTIPLE_MASTERS_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <hb-ot.h>
#include <hb.h>

namespace Renderer {

namespace {

using Kernel::Counted;
using Kernel::Font;
using Kernel::FontCache;
using Kernel::FontFace;
using Outline = Counted<const Geometry::PolyCurveDbl>;

constexpr double c_unknownAdvance = 0.5;
/// For fonts that do not say where they are struck out: half of most fonts' small letters.
constexpr double c_strikeoutMiddle = -0.25;
/// Metrics that nobody uses any more are dropped when there are more: a file may name any number of fonts.
constexpr std::size_t c_maxKept = 1024;

struct LibraryCloser
{
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct FaceCloser
{
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
struct HbFontCloser
{
    void operator()(hb_font_t* font) const { hb_font_destroy(font); }
};

/// Glyphs are shaped as characters of a private plane, where none has a meaning of its own.
constexpr hb_codepoint_t c_glyphPlane = 0xF0000;

hb_bool_t GetGlyphOfPlane(hb_font_t*, void*, hb_codepoint_t unicode, hb_codepoint_t* glyph, void*)
{
    *glyph = unicode - c_glyphPlane;
    return 1;
}

/// Collects the curves of a FreeType outline.
class OutlineBuilder
{
public:
    explicit OutlineBuilder(double unitsPerEm) : scale(1 / unitsPerEm) {}

    Counted<Geometry::PolyCurveDbl> Build(FT_Outline& outline)
    {
        static constexpr FT_Outline_Funcs c_functions = {MoveTo, LineTo, ConicTo, CubicTo, 0, 0};
        if (FT_Outline_Decompose(&outline, &c_functions, this) != 0) return nullptr;
        Finish();
        return path;
    }

private:
    using Point = Kernel::PointT<double>;

    Point At(const FT_Vector* v) const
    {
        return {static_cast<double>(v->x) * scale, -static_cast<double>(v->y) * scale};
    }

    void Finish()
    {
        if (curve) curve->MakeClosed();
        if (curve) path->AddCurve(std::exchange(curve, nullptr));
    }

    static int MoveTo(const FT_Vector* to, void* self)
    {
        auto& builder = *static_cast<OutlineBuilder*>(self);
        builder.Finish();
        builder.curve = Kernel::MakeCounted<Geometry::CurveDbl>();
        builder.curve->AddNode(builder.last = builder.At(to));
        return 0;
    }

    static int LineTo(const FT_Vector* to, void* self)
    {
        auto& builder = *static_cast<OutlineBuilder*>(self);
        builder.curve->AddNode(builder.last = builder.At(to));
        return 0;
    }

    static int ConicTo(const FT_Vector* control, const FT_Vector* to, void* self)
    {
        auto& builder = *static_cast<OutlineBuilder*>(self);
        const Point c = builder.At(control);
        const Point end = builder.At(to);
        const auto lead = [&c](Point from) {
            return Point{from.x + (c.x - from.x) * 2 / 3, from.y + (c.y - from.y) * 2 / 3};
        };
        const Point first = lead(builder.last);
        builder.curve->AddBezierCurve(end, first, lead(end));
        builder.last = end;
        return 0;
    }

    static int CubicTo(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* self)
    {
        auto& builder = *static_cast<OutlineBuilder*>(self);
        builder.curve->AddBezierCurve(builder.At(to), builder.At(control1), builder.At(control2));
        builder.last = builder.At(to);
        return 0;
    }

    double scale;
    Point last;
    Counted<Geometry::CurveDbl> curve;
    Counted<Geometry::PolyCurveDbl> path = Kernel::MakeCounted<Geometry::PolyCurveDbl>();
};

} // namespace

/// An opened font file with all that was measured in it. FreeType's faces serve one thread at a time.
struct FontMetrics::Face
{
    Face(const FontFace& found, const Kernel::FontVariationParams& variation)
    {
        FT_Library openedLibrary = nullptr;
        if (FT_Init_FreeType(&openedLibrary) != 0) return;
        library.reset(openedLibrary);
        FT_Face opened = nullptr;
        if (FT_New_Face(openedLibrary, found.file.c_str(), found.index, &opened) != 0) return;
        face.reset(opened);
        if (!FT_IS_SCALABLE(opened) || opened->units_per_EM == 0) {
            face.reset();
            return;
        }
        if (!opened->charmap) FT_Select_Charmap(opened, FT_ENCODING_MS_SYMBOL);
        unitsPerEm = opened->units_per_EM;
        Vary(variation);
        OpenKerning(found, variation);
    }

    void Vary(const Kernel::FontVariationParams& variation)
    {
        FT_MM_Var* axes = nullptr;
        if (variation.IsEmpty() || FT_Get_MM_Var(face.get(), &axes) != 0) return;
        std::vector<FT_Fixed> coordinates;
        for (FT_UInt i = 0; i < axes->num_axis; ++i) {
            const FT_Var_Axis& axis = axes->axis[i];
            const char tag[] = {static_cast<char>(axis.tag >> 24), static_cast<char>(axis.tag >> 16),
                                static_cast<char>(axis.tag >> 8), static_cast<char>(axis.tag), 0};
            const auto set = variation.axes.find(tag);
            coordinates.push_back(
                set == variation.axes.end()
                    ? axis.def
                    : static_cast<FT_Fixed>(std::clamp(set->second * 65536.0, static_cast<double>(axis.minimum),
                                                       static_cast<double>(axis.maximum))));
        }
        FT_Set_Var_Design_Coordinates(face.get(), axes->num_axis, coordinates.data());
        FT_Done_MM_Var(library.get(), axes);
    }

    void OpenKerning(const FontFace& found, const Kernel::FontVariationParams& variation)
    {
        if (!FT_IS_SFNT(face.get())) return;
        hb_blob_t* blob = hb_blob_create_from_file(found.file.c_str());
        hb_face_t* hbFace = hb_face_create(blob, static_cast<unsigned>(found.index) & 0xFFFF);
        hb_font_t* whole = hb_font_create(hbFace);
        std::vector<hb_variation_t> variations;
        for (const auto& [tag, value] : variation.axes)
            variations.push_back({hb_tag_from_string(tag.c_str(), -1), static_cast<float>(value)});
        hb_font_set_variations(whole, variations.data(), static_cast<unsigned>(variations.size()));
        shaper.reset(hb_font_create_sub_font(whole));
        hb_font_funcs_t* functions = hb_font_funcs_create();
        hb_font_funcs_set_nominal_glyph_func(functions, GetGlyphOfPlane, nullptr, nullptr);
        hb_font_set_funcs(shaper.get(), functions, nullptr, nullptr);
        hb_font_funcs_destroy(functions);
        hb_font_destroy(whole);
        hb_face_destroy(hbFace);
        hb_blob_destroy(blob);
    }

    GlyphMetrics MeasureGlyph(int id)
    {
        GlyphMetrics result;
        result.id = id;
        result.advance = c_unknownAdvance;
        if (id < 0 || FT_Load_Glyph(face.get(), static_cast<FT_UInt>(id), FT_LOAD_NO_SCALE) != 0) return result;
        FT_GlyphSlot slot = face->glyph;
        result.advance = static_cast<double>(slot->metrics.horiAdvance) / unitsPerEm;
        FT_BBox box;
        if (slot->format != FT_GLYPH_FORMAT_OUTLINE || slot->outline.n_points == 0 ||
            FT_Outline_Get_BBox(&slot->outline, &box) != 0)
            return result;
        result.box = {static_cast<double>(box.xMin) / unitsPerEm, -static_cast<double>(box.yMax) / unitsPerEm,
                      static_cast<double>(box.xMax) / unitsPerEm, -static_cast<double>(box.yMin) / unitsPerEm};
        return result;
    }

    const GlyphMetrics& GetGlyph(int id)
    {
        const auto found = glyphs.find(id);
        return found != glyphs.end() ? found->second : glyphs.emplace(id, MeasureGlyph(id)).first->second;
    }

    Outline MakeOutline(int id)
    {
        if (FT_Load_Glyph(face.get(), static_cast<FT_UInt>(id), FT_LOAD_NO_SCALE) != 0) return nullptr;
        if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE || face->glyph->outline.n_points == 0) return nullptr;
        return OutlineBuilder(unitsPerEm).Build(face->glyph->outline);
    }

    double MeasureKerning(int left, int right)
    {
        if (!shaper) {
            FT_Vector kerning{};
            if (!FT_HAS_KERNING(face.get()) ||
                FT_Get_Kerning(face.get(), static_cast<FT_UInt>(left), static_cast<FT_UInt>(right), FT_KERNING_UNSCALED,
                               &kerning) != 0)
                return 0;
            return static_cast<double>(kerning.x) / unitsPerEm;
        }
        static const std::array<hb_feature_t, 5> c_features = [] {
            std::array<hb_feature_t, 5> features{};
            const char* names[] = {"kern", "-liga", "-clig", "-calt", "-ccmp"};
            for (std::size_t i = 0; i < features.size(); ++i)
                hb_feature_from_string(names[i], -1, &features[i]);
            return features;
        }();
        hb_buffer_t* buffer = hb_buffer_create();
        hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer, HB_SCRIPT_LATIN);
        hb_buffer_set_content_type(buffer, HB_BUFFER_CONTENT_TYPE_UNICODE);
        hb_buffer_add(buffer, c_glyphPlane + static_cast<hb_codepoint_t>(left), 0);
        hb_buffer_add(buffer, c_glyphPlane + static_cast<hb_codepoint_t>(right), 1);
        hb_shape(shaper.get(), buffer, c_features.data(), c_features.size());
        unsigned count = 0;
        const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
        double kerning = 0;
        if (count == 2)
            kerning =
                positions[0].x_advance - hb_font_get_glyph_h_advance(shaper.get(), static_cast<hb_codepoint_t>(left));
        hb_buffer_destroy(buffer);
        return kerning / unitsPerEm;
    }

    std::mutex mutex;
    std::unique_ptr<FT_LibraryRec_, LibraryCloser> library;
    std::unique_ptr<FT_FaceRec_, FaceCloser> face;
    std::unique_ptr<hb_font_t, HbFontCloser> shaper;
    double unitsPerEm = 1000;
    std::unordered_map<char32_t, GlyphMetrics> characters;
    std::unordered_map<int, GlyphMetrics> glyphs;
    std::unordered_map<std::uint64_t, double> kernings;
    std::unordered_map<int, Outline> outlines;
};

namespace {

/// Everything that is kept, behind one lock.
struct Registry
{
    std::mutex mutex;
    std::unordered_map<Font, Counted<const FontMetrics>> metrics;
    std::size_t limit = c_maxKept;
    std::map<std::string, std::weak_ptr<FontMetrics::Face>> faces;
};

Registry& GetRegistry()
{
    static Registry& registry = *new Registry;
    return registry;
}

} // namespace

Counted<const FontMetrics> FontMetrics::Make(const Font& font)
{
    Registry& registry = GetRegistry();
    const std::lock_guard lock(registry.mutex);
    const auto found = registry.metrics.find(font);
    if (found != registry.metrics.end()) return found->second;
    if (registry.metrics.size() >= registry.limit) {
        std::erase_if(registry.metrics, [](const auto& entry) { return entry.second->GetReferenceCount() == 1; });
        std::erase_if(registry.faces, [](const auto& entry) { return entry.second.expired(); });
        // What is in use stays; it is looked through again when there is twice as much.
        registry.limit = std::max(c_maxKept, 2 * registry.metrics.size());
    }
    auto made = Kernel::MakeCounted<FontMetrics>(font);
    registry.metrics.emplace(font, made);
    return made;
}

FontMetrics::FontMetrics(const Font& askedFont)
    : font(askedFont), actualFont(GetClosestAvailableFont(askedFont, Kernel::FontMatchType::Any))
{
    const FontFace* found = FontCache::GetInstance().FindFace(actualFont);
    if (!found) return;
    std::string key = found->file + '\n' + std::to_string(found->index);
    for (const auto& [tag, value] : actualFont.variationParams.axes)
        key += tag + std::to_string(value);
    std::weak_ptr<Face>& shared = GetRegistry().faces[key];
    face = shared.lock();
    if (!face) shared = face = std::make_shared<Face>(*found, actualFont.variationParams);
    if (!face->face) {
        face.reset();
        return;
    }

    const std::lock_guard lock(face->mutex);
    const double em = face->unitsPerEm;
    ascent = face->face->ascender / em;
    descent = std::abs(face->face->descender / em);
    typographicAscent = ascent;
    // FreeType's height is the distance of two baselines.
    lineGap = std::max(face->face->height / em - (ascent + descent), 0.0);
    if (face->face->underline_thickness != 0) {
        underline.thickness = face->face->underline_thickness / em;
        // FreeType makes the middle of the rule of the edge that the table gives, and rounds it.
        const auto* post = static_cast<const TT_Postscript*>(FT_Get_Sfnt_Table(face->face.get(), FT_SFNT_POST));
        underline.top =
            post ? -post->underlinePosition / em : -face->face->underline_position / em - underline.thickness / 2;
    }
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face->face.get(), FT_SFNT_OS2));
    if (os2 && os2->yStrikeoutSize != 0) {
        strikeout = {-os2->yStrikeoutPosition / em, os2->yStrikeoutSize / em};
    } else {
        strikeout = {c_strikeoutMiddle - underline.thickness / 2, underline.thickness};
    }
    if (os2 && os2->sTypoAscender > 0) typographicAscent = os2->sTypoAscender / em;
}

FontMetrics::~FontMetrics() = default;

TextRule FontMetrics::GetUnderline(RuleSource source) const
{
    if (source == RuleSource::Font) return underline;
    // Measured on what programs print: a quarter of the descent thick, and as far from the baseline.
    return {descent / 4, descent / 4};
}

TextRule FontMetrics::GetStrikeout(RuleSource source) const
{
    if (source == RuleSource::Font) return strikeout;
    // Its lower edge lies at a third of what the em has above the baseline.
    const double thickness = descent / 4;
    return {(descent - 1) / 3 - thickness, thickness};
}

GlyphMetrics FontMetrics::GetGlyphMetrics(char32_t character) const
{
    if (!face) return {0, c_unknownAdvance, Kernel::RectT<double>::MakeEmpty()};
    const std::lock_guard lock(face->mutex);
    const auto known = face->characters.find(character);
    if (known != face->characters.end()) return known->second;
    GlyphMetrics glyph = face->GetGlyph(static_cast<int>(FT_Get_Char_Index(face->face.get(), character)));
    if (glyph.id == 0) {
        // Whatever font the character will come from, it is to be seen, and a wide one has that width there.
        if (Kernel::CharTraits::IsWide(character)) glyph.advance = 1;
        if (glyph.box.IsEmpty() && Kernel::IsGraphic(character)) glyph.box = {0, -ascent, glyph.advance, descent};
    }
    face->characters.emplace(character, glyph);
    return glyph;
}

GlyphMetrics FontMetrics::GetGlyphIndexMetrics(int id) const
{
    if (!face) return {id, c_unknownAdvance, Kernel::RectT<double>::MakeEmpty()};
    const std::lock_guard lock(face->mutex);
    return face->GetGlyph(id);
}

double FontMetrics::GetAutoKerning(int left, int right) const
{
    if (!face || left <= 0 || right <= 0) return 0;
    const std::lock_guard lock(face->mutex);
    const auto key = static_cast<std::uint64_t>(left) << 32 | static_cast<std::uint32_t>(right);
    const auto found = face->kernings.find(key);
    if (found != face->kernings.end()) return found->second;
    return face->kernings.emplace(key, face->MeasureKerning(left, right)).first->second;
}

Outline FontMetrics::GetOutline(int id) const
{
    if (!face || id < 0) return nullptr;
    const std::lock_guard lock(face->mutex);
    const auto [entry, isNew] = face->outlines.try_emplace(id);
    if (isNew) entry->second = face->MakeOutline(id);
    return entry->second;
}

} // namespace Renderer
