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
    /// Ends the handing out; places already taken still get their turn. Called in a turn, or while there are no
    /// workers.
    void Stop();
    /// Whether there are places that nobody took. Called like `Stop`.
    bool HasMore() const { return nextPlace < placeCount; }

    /// Runs `work` when all places before this one have had their turn. Called once for each place taken; the turn is
    /// over even if `work` throws.
    template <typename Work>
    void InTurn(long long place, Work work)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return turn == place; });
        const EndOfTurn end{*this};
        work();
    }

private:
    struct EndOfTurn
    {
        PageQueue& queue;

        ~EndOfTurn()
        {
            ++queue.turn;
            queue.changed.notify_all();
        }
    };

    std::mutex mutex;
    std::condition_variable changed;
    long long placeCount;
    long long maxLead;
    long long nextPlace = 0;
    long long turn = 0;
};

} // namespace Host
