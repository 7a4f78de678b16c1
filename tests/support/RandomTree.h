#pragma once

#include <Quillet/GroupObject.h>

#include <string>

namespace Quillet {

/// Where a random tree takes its decisions from: a generator with a seed, or the bytes of a fuzzer.
class Choices
{
public:
    virtual ~Choices() = default;
    /// From 0 to `count` - 1.
    virtual unsigned Choose(unsigned count) = 0;
};

enum class Numbers {
    Plain, ///< on a coarse grid, so that boxes meet, touch and miss each other
    Wild,  ///< some of them huge, infinite or not numbers
};

/// A tree of groups, layers and paths, without a page, of about as many objects as `size`. Clips and groups repeat, so
/// that each rule of the reduction finds its case. Equal choices give equal trees, with the ids of the objects counted.
Kernel::Counted<GroupObject> MakeRandomTree(Choices& choices, int size, Numbers numbers);

/// Kinds, ids, boxes, clips and paints, one object a line; and which children do not know their parent.
std::string DescribeTree(const GroupObject& root);

} // namespace Quillet
