#include <Kernel/FontCache.h>

#include <Kernel/FontSnapshot.h>
#include <Kernel/ToLowerCase.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <tuple>
#include <utility>

#include <fontconfig/fontconfig.h>

namespace Kernel {

namespace {

std::atomic<bool> s_isLoaded = false;

struct PatternDestroyer
{
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDestroyer>;

std::string GetString(FcPattern* pattern, const char* object, int n = 0)
{
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, object, n, &text) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(text);
}

int GetInteger(FcPattern* pattern, const char* object, int fallback)
{
    int value = 0;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : fallback;
}

/// A number, or the middle of the range that a variable font gives.
double GetNumber(FcPattern* pattern, const char* object, double fallback)
{
    double value = 0;
    if (FcPatternGetDouble(pattern, object, 0, &value) == FcResultMatch) return value;
    FcRange* range = nullptr;
    double begin = 0;
    double end = 0;
    if (FcPatternGetRange(pattern, object, 0, &range) != FcResultMatch || !FcRangeGetDouble(range, &begin, &end))
        return fallback;
    return std::clamp(fallback, std::min(begin, end), std::max(begin, end));
}

bool GetBool(FcPattern* pattern, const char* object)
{
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

constexpr int c_widths[] = {FC_WIDTH_ULTRACONDENSED, FC_WIDTH_EXTRACONDENSED, FC_WIDTH_CONDENSED,
                            FC_WIDTH_SEMICONDENSED,  FC_WIDTH_NORMAL,         FC_WIDTH_SEMIEXPANDED,
                            FC_WIDTH_EXPANDED,       FC_WIDTH_EXTRAEXPANDED,  FC_WIDTH_ULTRAEXPANDED};

FontWidth::Type GetWidth(double width)
{
    int best = FontWidth::Normal;
    for (int i = 0; i < 9; ++i) {
        if (std::abs(c_widths[i] - width) < std::abs(c_widths[best - 1] - width)) best = i + 1;
    }
    return static_cast<FontWidth::Type>(best);
}

FontFace ReadFace(FcPattern* pattern)
{
    FontFace face;
    face.font.postscriptName = GetString(pattern, FC_POSTSCRIPT_NAME);
    face.font.family = GetString(pattern, FC_FAMILY);
    face.font.weight =
        static_cast<int>(std::lround(FcWeightToOpenTypeDouble(GetNumber(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR))));
    face.font.width = GetWidth(GetNumber(pattern, FC_WIDTH, FC_WIDTH_NORMAL));
    face.font.isItalic = GetInteger(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN;
    if (GetInteger(pattern, FC_SPACING, FC_PROPORTIONAL) >= FC_MONO) face.font.panose.SetIsMonospaced();
    face.font.isVariable = GetBool(pattern, FC_VARIABLE);
    face.file = GetString(pattern, FC_FILE);
    face.index = GetInteger(pattern, FC_INDEX, 0);
    return face;
}

bool IsBefore(const FontFace& a, const FontFace& b)
{
    return std::tie(a.font.family, a.font.weight, a.font.width, a.font.isItalic, a.file, a.index) <
           std::tie(b.font.family, b.font.weight, b.font.width, b.font.isItalic, b.file, b.index);
}

} // namespace

namespace {

struct ConfigDestroyer
{
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, ConfigDestroyer>;

bool HasCache(const Config& config)
{
    FcStrList* const directories = FcConfigGetCacheDirs(config.get());
    const bool isAny = directories && FcStrListNext(directories);
    if (directories) FcStrListDone(directories);
    return isAny;
}

/// The machine's configuration without the descriptions of files that it does not use, which
/// `FcInitLoadConfigAndFonts` reads beside it for programs that show them to people: twice the files. A configuration
/// that cannot be read, or names no cache, is left to fontconfig, which knows what to fall back on.
Config LoadConfig()
{
    Config config(FcConfigCreate());
    if (config && FcConfigParseAndLoad(config.get(), nullptr, FcFalse) && HasCache(config) &&
        FcConfigBuildFonts(config.get()))
        return config;
    return Config(FcInitLoadConfigAndFonts());
}

} // namespace

class FontCache::Configuration
{
public:
    /// The best pattern for a family and a style; null without fonts.
    Pattern Match(const std::string& family, const Font& style) const
    {
        if (!config) return nullptr;
        const Pattern pattern(FcPatternCreate());
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
        FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(style.weight));
        FcPatternAddInteger(pattern.get(), FC_WIDTH, c_widths[style.width - 1]);
        FcPatternAddInteger(pattern.get(), FC_SLANT, style.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
        FcConfigSubstitute(config.get(), pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultNoMatch;
        return Pattern(FcFontMatch(config.get(), pattern.get(), &result));
    }

    std::vector<FontFace> ListFaces() const
    {
        std::vector<FontFace> found;
        if (!config) return found;
        const Pattern all(FcPatternCreate());
        FcObjectSet* objects = FcObjectSetBuild(FC_POSTSCRIPT_NAME, FC_FAMILY, FC_WEIGHT, FC_WIDTH, FC_SLANT,
                                                FC_SPACING, FC_VARIABLE, FC_FILE, FC_INDEX, nullptr);
        FcFontSet* set = FcFontList(config.get(), all.get(), objects);
        for (int i = 0; set && i < set->nfont; ++i)
            found.push_back(ReadFace(set->fonts[i]));
        if (set) FcFontSetDestroy(set);
        FcObjectSetDestroy(objects);
        // In an order of its own, so that which of two equal fonts is used does not depend on the order of a folder.
        std::sort(found.begin(), found.end(), IsBefore);
        return found;
    }

    /// The files and folders that all answers come from; some may be missing.
    std::vector<std::string> ListSources() const
    {
        std::vector<std::string> sources;
        if (!config) return sources;
        Append(sources, FcConfigGetConfigFiles(config.get()));
        // A file that joins those of a folder.
        for (std::size_t i = 0, count = sources.size(); i < count; ++i)
            sources.push_back(std::filesystem::path(sources[i]).parent_path().string());
        Append(sources, FcConfigGetConfigDirs(config.get()));
        Append(sources, FcConfigGetFontDirs(config.get()));
        for (const auto& [variable, fallback] : {std::pair("XDG_CONFIG_HOME", ".config"), {"HOME", ""}}) {
            const char* const named = std::getenv(variable);
            const char* const home = std::getenv("HOME");
            if (!named && !home) continue;
            const std::filesystem::path folder = named ? named : std::filesystem::path(home) / fallback;
            for (const char* name :
                 {"fontconfig", "fontconfig/fonts.conf", "fontconfig/conf.d", ".fonts.conf", ".fonts.conf.d"})
                sources.push_back((folder / name).string());
        }
        std::sort(sources.begin(), sources.end());
        sources.erase(std::unique(sources.begin(), sources.end()), sources.end());
        return sources;
    }

private:
    static void Append(std::vector<std::string>& texts, FcStrList* list)
    {
        while (const FcChar8* text = list ? FcStrListNext(list) : nullptr)
            texts.emplace_back(reinterpret_cast<const char*>(text));
        if (list) FcStrListDone(list);
    }

    Config config = LoadConfig();
};

namespace {

/// What fontconfig's answers depend on beside files.
std::string GetEnvironment()
{
    std::string text = std::to_string(FcGetVersion());
    for (const char* name : {"FONTCONFIG_FILE", "FONTCONFIG_PATH", "FONTCONFIG_SYSROOT", "FC_LANG", "LC_ALL",
                             "LC_CTYPE", "LANG", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        const char* const value = std::getenv(name);
        text += '\n';
        if (value) text += std::string("=") + value;
    }
    return text;
}

std::filesystem::path& GetKeptDirectory()
{
    static std::filesystem::path directory;
    return directory;
}

} // namespace

void FontCache::KeepIn(const std::filesystem::path& directory)
{
    GetKeptDirectory() = directory;
}

const FontCache& FontCache::GetInstance()
{
    // Never destroyed: fonts are asked for until the last object of the process goes.
    static const FontCache& cache = *new FontCache;
    return cache;
}

bool FontCache::IsLoaded()
{
    return s_isLoaded;
}

FontCache::FontCache()
    : snapshot(GetKeptDirectory().empty() ? nullptr
                                          : std::make_unique<FontSnapshot>(GetKeptDirectory(), GetEnvironment()))
{
    s_isLoaded = true;
    const auto kept = snapshot ? snapshot->Read() : std::nullopt;
    if (!kept) {
        AskMachine();
        return;
    }
    for (const FontFace& face : kept->faces)
        Add(face);
    for (const auto& [question, face] : kept->matches)
        matches.emplace(question, face < 0 ? nullptr : faces[static_cast<std::size_t>(face)].get());
}

void FontCache::AskMachine()
{
    configuration = std::make_unique<Configuration>();
    const std::vector<FontFace> found = configuration->ListFaces();
    if (snapshot) snapshot->Write(found, configuration->ListSources());
    for (const FontFace& face : found)
        Add(face);
}

FontCache::~FontCache() = default;

void FontCache::Add(FontFace face)
{
    faces.push_back(std::make_unique<FontFace>(std::move(face)));
    const FontFace* added = faces.back().get();
    FontFamily& family = families[Fold(added->font.family)];
    if (family.name.empty()) family.name = added->font.family;
    family.faces.push_back(added);
    if (!added->font.postscriptName.empty()) byName.emplace(added->font.postscriptName, added);
}

std::string FontCache::Fold(std::string_view name)
{
    std::string folded = ToLowerCase(std::string(name));
    std::erase_if(folded, [](char c) { return c == ' ' || c == '-'; });
    return folded;
}

const FontFamily* FontCache::FindFontFamilyByPostscriptName(const std::string& name) const
{
    const FontFace* face = FindByPostscriptName(name);
    return face ? FindFamily(face->font.family) : nullptr;
}

const FontFace* FontCache::FindByPostscriptName(const std::string& name) const
{
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

const FontFamily* FontCache::FindFamily(const std::string& name) const
{
    if (name.empty()) return nullptr;
    const auto found = families.find(Fold(name));
    return found == families.end() ? nullptr : &found->second;
}

const FontFace* FontCache::FindInFamily(const FontFamily& family, const Font& style)
{
    const auto getDistance = [&style](const FontFace* face) {
        return std::abs(face->font.weight - style.weight) + 200 * std::abs(face->font.width - style.width) +
               (face->font.isItalic == style.isItalic ? 0 : 1000);
    };
    const auto best = std::ranges::min_element(family.faces, {}, getDistance);
    return best == family.faces.end() ? nullptr : *best;
}

const FontFace* FontCache::Match(const std::string& family, const Font& style) const
{
    const std::string key =
        family + '\n' + std::to_string(style.weight) + ' ' + std::to_string(style.width) + (style.isItalic ? "i" : "r");
    const std::lock_guard lock(mutex);
    const auto [entry, isNew] = matches.try_emplace(key, nullptr);
    if (!isNew) return entry->second;
    const int face = AskForMatch(family, style);
    if (face >= 0) entry->second = faces[static_cast<std::size_t>(face)].get();
    if (snapshot) snapshot->Add(key, face);
    return entry->second;
}

int FontCache::AskForMatch(const std::string& family, const Font& style) const
{
    if (!configuration) configuration = std::make_unique<Configuration>();
    const Pattern pattern = configuration->Match(family, style);
    if (!pattern) return -1;
    const FontFace wanted = ReadFace(pattern.get());
    const auto same = std::ranges::find_if(faces, [&wanted](const std::unique_ptr<FontFace>& face) {
        return face->file == wanted.file && face->index == wanted.index;
    });
    const auto alike = same != faces.end() ? same : std::ranges::find_if(faces, [&wanted](const auto& face) {
        return face->file == wanted.file;
    });
    return alike == faces.end() ? -1 : static_cast<int>(alike - faces.begin());
}

const FontFace* FontCache::MatchKnown(const std::string& family, const Font& style) const
{
    if (const FontFamily* own = FindFamily(family)) return FindInFamily(*own, style);
    const FontFace* found = Match(family, style);
    // What a name that nobody has leads to is what fontconfig falls back on.
    return found == Match("no family has this name", style) ? nullptr : found;
}

const FontFace* FontCache::FindFace(const Font& font) const
{
    if (const FontFace* face = FindByPostscriptName(font.postscriptName)) return face;
    const FontFamily* family = FindFamily(font.family);
    return family ? FindInFamily(*family, font) : nullptr;
}

} // namespace Kernel
