#pragma once

#include <Kernel/Font.h>

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Kernel {

class FontSnapshot;

/// A font of the machine, and where it lies.
struct FontFace
{
    Font font;
    std::string file;
    /// The face in the file; for a named instance of a variable font with the instance in the upper 16 bits.
    int index = 0;
};

struct FontFamily
{
    std::string name;
    std::vector<const FontFace*> faces;
};

/// The fonts of the machine, as fontconfig lists them. Read once, when first asked, and then the same until the process
/// ends; any number of threads may ask.
class QUILLET_API FontCache
{
public:
    static const FontCache& GetInstance();
    /// Whether the machine was asked for its fonts yet.
    static bool IsLoaded();
    /// Keeps what fontconfig says in a folder from one process to the next (`FontSnapshot`): to ask it takes longer
    /// than to import a page. Before fonts are first asked for; the library by itself leaves nothing on the machine.
    static void KeepIn(const std::filesystem::path& directory);

    /// Null if no font has that PostScript name.
    const FontFamily* FindFontFamilyByPostscriptName(const std::string& name) const;
    const FontFace* FindByPostscriptName(const std::string& name) const;
    /// What counts of a family's name: without letter case, blanks and hyphens.
    static std::string Fold(std::string_view name);
    const FontFamily* FindFamily(const std::string& name) const;
    /// The face of `family` that comes nearest in weight, width and slant.
    static const FontFace* FindInFamily(const FontFamily& family, const Font& style);
    /// The face that fontconfig gives for a family, which may be generic or unknown, and a style. Null if the machine
    /// has no fonts.
    const FontFace* Match(const std::string& family, const Font& style) const;
    /// The same, but null if fontconfig knows nothing of the family and gives what it gives for any.
    const FontFace* MatchKnown(const std::string& family, const Font& style) const;
    /// The face behind a font that `GetClosestAvailableFont` gave, or null.
    const FontFace* FindFace(const Font& font) const;

private:
    FontCache();
    ~FontCache();

    class Configuration;
    void AskMachine();
    void Add(FontFace face);
    /// The number of a face that fontconfig gives; -1 for none.
    int AskForMatch(const std::string& family, const Font& style) const;

    /// What was kept answers for it until it is asked something new.
    mutable std::unique_ptr<Configuration> configuration;
    const std::unique_ptr<FontSnapshot> snapshot;
    std::vector<std::unique_ptr<FontFace>> faces;
    std::map<std::string, FontFamily> families;
    std::unordered_map<std::string, const FontFace*> byName;
    mutable std::mutex mutex;
    mutable std::unordered_map<std::string, const FontFace*> matches;
};

} // namespace Kernel
