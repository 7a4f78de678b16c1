#include "document/Guard.h"

#include "document/DocumentState.h"
#include "document/Limits.h"

#include <Quillet/PdfDocument.h>

#include <Kernel/HashAccumulator.h>

namespace Quillet::Guard {

namespace {

thread_local int t_depth = 0;

Trail& GetTrail(const Ref& ref)
{
    thread_local Trail t_trail;
    return ref.document ? ref.document->GetState().trail : t_trail;
}

} // namespace

Descent::Descent() : isAllowed(++t_depth <= Limits::c_maxDescent) {}

Descent::~Descent()
{
    --t_depth;
}

std::size_t Trail::Hash::operator()(const Step& step) const
{
    std::size_t hash = Ref::PlaceHash()(step.place) + static_cast<std::size_t>(step.way);
    Kernel::HashAccumulator::AddToHash(hash, &step.scope, sizeof step.scope);
    return hash;
}

Walk::Walk(Way usedWay, const Ref& start, const void* usedScope)
    : trail(GetTrail(start)), way(usedWay), scope(usedScope)
{}

Walk::~Walk()
{
    for (const Step& step : entered)
        trail.steps.erase(step);
}

bool Walk::Enter(const Ref& ref)
{
    const Step step{way, scope, ref.GetPlace()};
    // First here: a step that stayed on the trail alone would close the way for good.
    entered.push_back(step);
    const bool isNew = trail.steps.insert(step).second;
    if (!isNew) entered.pop_back();
    return isNew;
}

} // namespace Quillet::Guard
