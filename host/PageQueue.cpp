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
    const std::lock_guard lock(mutex);
    placeCount = nextPlace;
    changed.notify_all();
}

bool PageQueue::HasMore() const
{
    const std::lock_guard lock(mutex);
    return nextPlace < placeCount;
}

PageQueue::Turn::Turn(PageQueue& ownQueue, long long place) : queue(ownQueue)
{
    std::unique_lock lock(queue.mutex);
    queue.changed.wait(lock, [&] { return queue.turn == place; });
}

PageQueue::Turn::~Turn()
{
    const std::lock_guard lock(queue.mutex);
    ++queue.turn;
    queue.changed.notify_all();
}

} // namespace Host
