#include "document/Guard.h"

#include "document/Limits.h"

namespace Quillet::Guard {

namespace {

thread_local int t_depth = 0;

} // namespace

Descent::Descent() : isAllowed(++t_depth <= Limits::c_maxDescent) {}

Descent::~Descent()
{
    --t_depth;
}

} // namespace Quillet::Guard
