#include "PageQueue.h"

namespace Host {

long long PageQueue::TakePlace()
{
    std::unique_lock lock(mutex);
    const auto isReady = [this] { return nextPlace >= placeCount || nextPlace < turn + maxLead; };
    changed.wait(lock, isReady);
    return nextPlace < placeCount ? nextPlace++ : -1;
}

void PageQueue::Stop()
{
    placeCount = nextPlace;
}

} // namespace Host
