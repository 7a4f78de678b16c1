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

/// The work that one page may cause. The outermost one on a thread opens the budget, those within share it: a form that
/// draws ten forms that draw ten others ends in theory only.
class QUILLET_API Page
{
public:
    /// With the work of a real page.
    Page();
    explicit Page(long long work);
    ~Page();
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    /// Takes from the budget of this thread; false once it is used up: stop, keeping what there is. Without an open
    /// budget there is no limit.
    static bool Spend(long long units);
    /// The budget is used up: what was built last may be cut short.
    static bool IsSpent();

private:
    bool isOutermost;
};

/// Sets the budget of this thread aside. What the process or the document builds once, for all pages, is neither paid
/// for nor cut short by the page that asks for it first.
class QUILLET_API Reprieve
{
public:
    Reprieve();
    ~Reprieve();
    Reprieve(const Reprieve&) = delete;
    Reprieve& operator=(const Reprieve&) = delete;

private:
    bool wasPageOpen;
};

} // namespace Quillet::Guard
