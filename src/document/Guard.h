#pragma once

#include <Kernel/Export.h>

/// What stops a file that would never end. Files that end never notice: the guards answer only where the plain
/// algorithm would run for ever, overflow the stack or fill the memory, and their callers then raise the kind of the
/// nearest fault.
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

} // namespace Quillet::Guard
