#pragma once

#include <Quillet/GroupObject.h>
#include <Quillet/PathObject.h>

#include <cmath>
#include <string>

namespace Quillet::Test {

/// Replaces each "<a>" to "<z>" by a square that `PrintTree` prints as that letter, "<clip>" by a clip to the page.
inline std::string ExpandContent(const std::string& text)
{
    std::string content;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '<' && text.compare(i, 6, "<clip>") == 0) {
            content += "0 0 300 100 re W n ";
            i += 5;
        } else if (text[i] == '<' && i + 2 < text.size() && text[i + 2] == '>') {
            content += std::to_string(10 * (text[i + 1] - 'a')) + " 0 5 5 re f ";
            i += 2;
        } else {
            content += text[i];
        }
    }
    return content;
}

/// A group as "(...)", one with a clip as "{...}", a layer as "[name: ...]", a form's group with "F" in front.
inline std::string PrintTree(const Object& object)
{
    const GroupObject* group = object.AsGroup();
    if (!group) return std::string(1, static_cast<char>('a' + std::lround(object.transformedBBox.left / 10)));
    std::string inside;
    for (const auto& child : group->children)
        inside += (inside.empty() ? "" : " ") + PrintTree(*child);
    if (group->IsLayer()) return "[" + group->name + ": " + inside + "]";
    const std::string text = group->clipPath ? "{" + inside + "}" : "(" + inside + ")";
    return group->isXObject ? "F" + text : text;
}

/// All paths of a page, whatever groups they lie in.
inline int CountPaths(GroupObject& root)
{
    int count = 0;
    root.VisitSubGroups([&](GroupObject* group) {
        for (const auto& child : group->children)
            count += Kernel::DynamicCast<PathObject>(child) ? 1 : 0;
    });
    return count;
}

inline constexpr const char* c_pageEntries = "/MediaBox [0 0 300 100]";

} // namespace Quillet::Test
