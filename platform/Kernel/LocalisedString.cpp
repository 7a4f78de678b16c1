#include <Kernel/LocalisedString.h>

#include <memory>
#include <mutex>
#include <utility>

namespace Kernel {

namespace {

/// What the process speaks. A look-up that is under way keeps the table that it began with.
struct Language
{
    std::mutex mutex;
    std::shared_ptr<const LocalisedString::Table> table;
};

Language& GetLanguage()
{
    static Language& language = *new Language;
    return language;
}

} // namespace

LocalisedString::LocalisedString(std::string newKey, std::string newContext)
    : key(std::move(newKey)), context(std::move(newContext))
{}

LocalisedString LocalisedString::CreateFakeFromString(std::string text)
{
    LocalisedString made(std::move(text), {});
    made.isFake = true;
    return made;
}

void LocalisedString::SetTable(Table table)
{
    auto next = table ? std::make_shared<const Table>(std::move(table)) : nullptr;
    Language& language = GetLanguage();
    const std::lock_guard lock(language.mutex);
    language.table.swap(next);
}

std::string LocalisedString::ToString() const
{
    if (isFake) return key;
    std::shared_ptr<const Table> table;
    {
        Language& language = GetLanguage();
        const std::lock_guard lock(language.mutex);
        table = language.table;
    }
    std::string text = table ? (*table)(key, context) : std::string();
    return text.empty() ? key : text;
}

} // namespace Kernel
