#pragma once

#include <Quillet/Ref.h>

#include <Kernel/Export.h>

#include <cstddef>
#include <unordered_set>
#include <vector>

/// What stops a file that would never end. Files that end never notice: the guards answer only where the plain
/// algorithm would run for ever or overflow the stack, and their callers then raise the kind of the nearest fault. What
/// only takes long is the `Budget`'s.
namespace Quillet::Guard {

/// One level of a recursion that the file steers. The levels of a thread are counted together, whatever they are made
/// of, since they share its stack.
///
///     Guard::Descent descent;
///     if (!Check(static_cast<bool>(descent), Error::General)) return nullptr;
class QUILLET_API Descent
{
public:
    Descent();
    ~Descent();
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;

    /// False beyond the cap: go no deeper.
    explicit operator bool() const { return isAllowed; }

private:
    bool isAllowed;
};

/// What leads from one place of a file to another, and in a damaged or hostile one back to where it came from.
enum class Way { Tables, TableStreams, Functions, Forms, CMaps };

/// One step on a way.
struct Step
{
    Way way;
    /// What tells ways of one kind apart; may be null.
    const void* scope;
    Ref::Place place;

    friend bool operator==(const Step&, const Step&) = default;
};

/// Where the walks of a document are now. It belongs to the document.
class QUILLET_API Trail
{
private:
    friend class Walk;

    struct Hash
    {
        std::size_t operator()(const Step& step) const;
    };

    std::unordered_set<Step, Hash> steps;
};

/// A walk along references, which comes nowhere twice. Its steps are forgotten with it: a walk that goes down and comes
/// back is one for each level, a walk along a chain is one for the chain.
///
///     Guard::Walk walk(Guard::Way::Functions, ref);
///     if (!Check(walk.Enter(ref), Error::General)) return nullptr;
class QUILLET_API Walk
{
public:
    /// In the document of `start`; without one, among all that this thread does without a document.
    Walk(Way usedWay, const Ref& start, const void* usedScope = nullptr);
    ~Walk();
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    /// False if this walk, or one that it is a part of, has been there.
    bool Enter(const Ref& ref);

private:
    Trail& trail;
    Way way;
    const void* scope;
    std::vector<Step> entered;
};

} // namespace Quillet::Guard
