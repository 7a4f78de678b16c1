#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace Host {

/// A line on a terminal's standard error for work that takes more than a second, be it on one page.
class Progress
{
public:
    Progress(bool isWanted, long long pageTotal);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Advance();
    /// Makes way for other lines, for as long as the answer is held.
    [[nodiscard]] std::unique_lock<std::mutex> MakeWay();
    /// Ends the line for good.
    void Stop();

private:
    void Show();

    long long total;
    long long done = 0;
    bool isOnLine = false;
    bool isStopped = false;
    std::mutex mutex;
    std::condition_variable stopping;
    std::thread shower;
};

} // namespace Host
