#pragma once

#include <Kernel/Export.h>

#include <functional>
#include <string>

namespace Kernel {

/// A text that people see, by its English words and what they stand for.
///
/// Placeholders are those of `FormatString`. A host that speaks other languages brings its own table with `SetTable`;
/// without one the words stand as they are.
class QUILLET_API LocalisedString
{
public:
    /// The words of a key in a context, in UTF-8; empty where the key's own shall stand. Called on each thread that
    /// makes documents, and on several at once.
    using Table = std::function<std::string(const std::string& key, const std::string& context)>;

    LocalisedString(std::string newKey, std::string newContext);
    /// A text that is no key and is not looked up: a name that was made, say.
    static LocalisedString CreateFakeFromString(std::string text);

    /// Replaces the table of the process; an empty function takes it away. Before any document is opened.
    static void SetTable(Table table);

    /// In the language of the table that is set now.
    std::string ToString() const;
    operator std::string() const { return ToString(); }

private:
    std::string key;
    std::string context;
    bool isFake = false;
};

} // namespace Kernel
