#pragma once

#include <string>

namespace Quillet {

/// Files of one page and many more objects, each a small dictionary, numbered from `c_firstExtraObject` on.
inline constexpr int c_firstExtraObject = 5;
/// With a classic table.
std::string MakeClassicFile(int objectCount);
/// With a cross-reference stream, and object streams of 200 members, as programs write them.
std::string MakeCompressedFile(int objectCount);

/// A file of empty pages; each node of the tree has up to `fanOut` kids.
std::string MakePageTreeFile(int pageCount, int fanOut);

} // namespace Quillet
