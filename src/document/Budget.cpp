#include <Quillet/Budget.h>

#include "document/Limits.h"

#include <Kernel/Abortable.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace Quillet {

namespace {

thread_local Budget::Scope* t_scope = nullptr;

/// How much a thread spends before it tells the account, which other threads use as well.
constexpr long long c_settleStep = 1 << 16;

long long GetAllowance(unsigned long long fileBytes)
{
    const unsigned long long near = std::min(fileBytes, Limits::c_nearBytes);
    // No file is so long that this overflows.
    const unsigned long long beyond = std::min(fileBytes - near, 1ull << 48);
    return Limits::c_baseUnits + static_cast<long long>(near * Limits::c_unitsPerNearByte) +
           static_cast<long long>(beyond * Limits::c_unitsPerByte);
}

long long TakeShare(long long units, Budget::Share share, bool isInner)
{
    if (share == Budget::Share::All) return units;
    return units / Limits::c_shareParts * (isInner ? Limits::c_innerShare : Limits::c_pageShare);
}

} // namespace

Kernel::Counted<Budget> Budget::ForFile(unsigned long long fileBytes)
{
    return Kernel::MakeCounted<Budget>(GetAllowance(fileBytes));
}

long long Budget::GetLeft() const
{
    return std::max(left.load(std::memory_order_relaxed), 0ll);
}

Budget::Scope::Scope(Kernel::Counted<const Budget> scopeAccount, Share share, const bool* abortFlag)
    : account(std::move(scopeAccount)), abort(abortFlag), outer(t_scope),
      isOuterPaying(outer && share == Share::Page && outer->account == account)
{
    if (outer) outer->Settle();
    long long available = std::numeric_limits<long long>::max();
    if (account) available = isOuterPaying ? std::min(outer->left, account->GetLeft()) : account->GetLeft();
    left = TakeShare(available, share, isOuterPaying);
    isCut = left <= 0;
    t_scope = this;
}

Budget::Scope::~Scope()
{
    Settle();
    t_scope = outer;
    if (isOuterPaying) outer->left -= spent;
    if (outer && account && outer->account == account && account->GetLeft() == 0) outer->Cut();
}

bool Budget::Scope::IsAborted() const
{
    return Kernel::IsAborted(abort);
}

bool Budget::Scope::Take(long long units)
{
    if (isCut) return false;
    // What is refused was not done: it takes no more than there is, and nothing from others.
    const long long paid = std::min(units, left);
    left -= paid;
    spent += paid;
    unsettled += paid;
    if (paid < units) Cut();
    if (unsettled >= c_settleStep) Settle();
    return !IsRefusing();
}

void Budget::Scope::Settle()
{
    if (!account) return;
    const long long paid = std::exchange(unsettled, 0);
    if (account->left.fetch_sub(paid, std::memory_order_relaxed) < paid) Cut();
}

void Budget::Scope::Cut()
{
    isCut = true;
    if (account) account->isCut.store(true, std::memory_order_relaxed);
}

Budget::Reprieve::Reprieve() : held(std::exchange(t_scope, nullptr)) {}

Budget::Reprieve::~Reprieve()
{
    t_scope = held;
}

bool Budget::Spend(unsigned long long units)
{
    constexpr unsigned long long c_most = 1ull << 48;
    return !t_scope || t_scope->Take(static_cast<long long>(std::min(units, c_most)));
}

bool Budget::IsSpent()
{
    return t_scope && t_scope->IsRefusing();
}

} // namespace Quillet
