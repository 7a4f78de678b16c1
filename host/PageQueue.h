#pragma once

#include <condition_variable>
#include <mutex>

namespace Host {

/// Hands out places in a row to workers, and lets each of them take its turn in that order.
class PageQueue
{
public:
    /// `length` places in all; no worker runs ahead of the one whose turn it is by more than `lead` places.
    PageQueue(long long length, long long lead) : placeCount(length), maxLead(lead) {}

    /// The next place, or -1 when there are no more.
    long long TakePlace();
    /// Ends the handing out; places already taken still get their turn.
    void Stop();
    /// Whether there are places that nobody took.
    bool HasMore() const;

    /// Runs `work` when all places before this one have had their turn; others may take places meanwhile. Called once
    /// for each place taken; the turn is over even if `work` throws.
    template <typename Work>
    void InTurn(long long place, Work work)
    {
        const Turn held(*this, place);
        work();
    }

private:
    /// The turn of a place, from here to the end of the block.
    class Turn
    {
    public:
        Turn(PageQueue& ownQueue, long long place);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        PageQueue& queue;
    };

    mutable std::mutex mutex;
    std::condition_variable changed;
    long long placeCount;
    long long maxLead;
    long long nextPlace = 0;
    long long turn = 0;
};

} // namespace Host
