#include "document/Guard.h"

#include "document/Limits.h"

#include <utility>

namespace Quillet::Guard {

namespace {

thread_local int t_depth = 0;
thread_local bool t_isPageOpen = false;
thread_local long long t_remainingWork = 0;

} // namespace

Descent::Descent() : isAllowed(++t_depth <= Limits::c_maxDescent) {}

Descent::~Descent()
{
    --t_depth;
}

Page::Page() : Page(Limits::c_maxPageWork) {}

Page::Page(long long work) : isOutermost(!t_isPageOpen)
{
    if (!isOutermost) return;
    t_isPageOpen = true;
    t_remainingWork = work;
}

Page::~Page()
{
    if (isOutermost) t_isPageOpen = false;
}

bool Page::Spend(long long units)
{
    if (!t_isPageOpen) return true;
    t_remainingWork -= units;
    return t_remainingWork >= 0;
}

bool Page::IsSpent()
{
    return t_isPageOpen && t_remainingWork < 0;
}

Reprieve::Reprieve() : wasPageOpen(std::exchange(t_isPageOpen, false)) {}

Reprieve::~Reprieve()
{
    t_isPageOpen = wasPageOpen;
}

} // namespace Quillet::Guard
