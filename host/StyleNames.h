#pragma once

#include <Kernel/Counted.h>
#include <Story/StyleSheet.h>

#include <map>
#include <string>

namespace Quillet {
class GroupObject;
}

namespace Host {

/// The character styles of a document of which each worker has a copy, with styles of its own: one sheet for all, whose
/// numbers depend on the pages alone.
class StyleNames
{
public:
    using Names = std::map<std::string, std::string>;

    /// Takes in what the columns of a page use, and gives for each name of the copy that of the sheet. Called in the
    /// order of the pages, one at a time.
    Names Add(const Quillet::GroupObject& root);

    const Story::StyleSheet& GetSheet() const { return *sheet; }

private:
    const std::string& Add(const std::string& name, const Kernel::Counted<const Story::Delta>& delta);

    const Kernel::Counted<Story::StyleSheet> sheet = Kernel::MakeCounted<Story::StyleSheet>();
};

} // namespace Host
