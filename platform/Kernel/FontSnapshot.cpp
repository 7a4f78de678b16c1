#include <Kernel/FontSnapshot.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace Kernel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view c_head = "Quillet fonts 1\n";
/// Of answers: documents ask for any name at all.
constexpr int c_maxMatches = 500;
/// A machine has some hundred fonts.
constexpr std::size_t c_maxBytes = 16 << 20;

// Every value is its length, a colon, and its bytes.

void AppendValue(std::string& text, std::string_view value)
{
    text += std::to_string(value.size());
    text += ':';
    text += value;
}

void AppendValue(std::string& text, long long value)
{
    AppendValue(text, std::string_view(std::to_string(value)));
}

class Reader
{
public:
    explicit Reader(std::string_view text) : rest(text) {}

    bool IsGood() const { return isGood; }
    bool IsAtEnd() const { return rest.empty(); }

    std::string_view ReadText()
    {
        std::size_t size = 0;
        const char* const last = rest.data() + rest.size();
        const auto [end, error] = std::from_chars(rest.data(), last, size);
        if (error != std::errc() || end == last || *end != ':' || size >= static_cast<std::size_t>(last - end)) {
            isGood = false;
            rest = {};
            return {};
        }
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()) + 1);
        const std::string_view value = rest.substr(0, size);
        rest.remove_prefix(size);
        return value;
    }

    long long ReadNumber()
    {
        const std::string_view text = ReadText();
        long long value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size()) isGood = false;
        return value;
    }

private:
    std::string_view rest;
    bool isGood = true;
};

struct Source
{
    /// Nanoseconds; -1 for what is missing.
    long long changed = -1;
    std::string stamp = "-";
};

Source Look(const std::string& path)
{
    struct stat info = {};
    if (stat(path.c_str(), &info) != 0) return {};
    const auto toNanoseconds = [](const timespec& time) { return time.tv_sec * 1'000'000'000LL + time.tv_nsec; };
    Source source;
    source.changed = std::max(toNanoseconds(info.st_mtim), toNanoseconds(info.st_ctim));
    source.stamp = std::to_string(source.changed) + ' ' + std::to_string(info.st_size) + ' ' +
                   std::to_string(info.st_ino) + ' ' + std::to_string(info.st_dev);
    return source;
}

void AppendFace(std::string& text, const FontFace& face)
{
    AppendValue(text, face.font.postscriptName);
    AppendValue(text, face.font.family);
    AppendValue(text, face.font.weight);
    AppendValue(text, face.font.width);
    AppendValue(text, face.font.isItalic);
    AppendValue(text, face.font.panose.IsMonospaced());
    AppendValue(text, face.font.isVariable);
    AppendValue(text, face.file);
    AppendValue(text, face.index);
}

FontFace ReadFace(Reader& reader)
{
    FontFace face;
    face.font.postscriptName = reader.ReadText();
    face.font.family = reader.ReadText();
    face.font.weight = static_cast<int>(reader.ReadNumber());
    face.font.width = static_cast<FontWidth::Type>(reader.ReadNumber());
    face.font.isItalic = reader.ReadNumber() != 0;
    if (reader.ReadNumber() != 0) face.font.panose.SetIsMonospaced();
    face.font.isVariable = reader.ReadNumber() != 0;
    face.file = reader.ReadText();
    face.index = static_cast<int>(reader.ReadNumber());
    return face;
}

std::string ReadWhole(std::FILE* file)
{
    std::string text;
    char buffer[1 << 14];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0 && text.size() < c_maxBytes;)
        text.append(buffer, count);
    return text;
}

/// All of it in one call, behind what is there, so that two processes that write at once do not mix.
bool Append(std::FILE* file, const std::string& text)
{
    return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

constexpr const char* c_appending = "a+be";

} // namespace

FontSnapshot::FontSnapshot(const fs::path& directory, const std::string& usedEnvironment)
    : path(directory / ("fonts-" + std::to_string(std::hash<std::string>{}(usedEnvironment)))),
      environment(usedEnvironment)
{}

std::optional<FontSnapshot::Answers> FontSnapshot::Read()
{
    std::error_code error;
    // Opening makes a file that is missing.
    if (!fs::is_regular_file(path, error) || !file.Open(path.string(), c_appending)) return std::nullopt;
    const std::string text = ReadWhole(file.GetHandle());
    if (!text.starts_with(c_head)) return std::nullopt;
    Reader reader(std::string_view(text).substr(c_head.size()));
    if (reader.ReadText() != environment) return std::nullopt;
    for (long long count = reader.ReadNumber(); count > 0 && reader.IsGood(); --count) {
        const std::string source(reader.ReadText());
        if (reader.ReadText() != Look(source).stamp) return std::nullopt;
    }
    Answers answers;
    for (long long count = reader.ReadNumber(); count > 0 && reader.IsGood(); --count)
        answers.faces.push_back(ReadFace(reader));
    if (!reader.IsGood()) return std::nullopt;
    // The last of these may be only half there.
    while (!reader.IsAtEnd()) {
        std::string question(reader.ReadText());
        const long long face = reader.ReadNumber();
        const bool isFace = face >= -1 && face < static_cast<long long>(answers.faces.size());
        if (!reader.IsGood() || !isFace) break;
        answers.matches.emplace(std::move(question), static_cast<int>(face));
    }
    room = c_maxMatches - static_cast<int>(answers.matches.size());
    return answers;
}

void FontSnapshot::Write(const std::vector<FontFace>& faces, const std::vector<std::string>& sources)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    // What changed just now may change again without a later time.
    const long long latest =
        std::chrono::duration_cast<std::chrono::nanoseconds>(now - std::chrono::seconds(2)).count();
    std::string text(c_head);
    AppendValue(text, environment);
    AppendValue(text, static_cast<long long>(sources.size()));
    for (const std::string& name : sources) {
        const Source source = Look(name);
        if (source.changed > latest) return;
        AppendValue(text, name);
        AppendValue(text, source.stamp);
    }
    AppendValue(text, static_cast<long long>(faces.size()));
    for (const FontFace& face : faces)
        AppendFace(text, face);

    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    const fs::path temporary = path.string() + '-' + std::to_string(getpid());
    fs::remove(temporary, error);
    if (!file.Open(temporary.string(), c_appending)) return;
    const bool isWritten = Append(file.GetHandle(), text);
    if (isWritten) fs::rename(temporary, path, error);
    if (isWritten && !error)
        room = c_maxMatches;
    else
        fs::remove(temporary, error);
}

void FontSnapshot::Add(const std::string& question, int face)
{
    if (room <= 0) return;
    --room;
    std::string text;
    AppendValue(text, question);
    AppendValue(text, face);
    if (!Append(file.GetHandle(), text)) room = 0;
}

} // namespace Kernel
