#include "Progress.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

#include <unistd.h>

namespace Host {

using namespace std::chrono_literals;

Progress::Progress(bool isWanted, long long pageTotal) : total(pageTotal)
{
    if (!isWanted || !isatty(STDERR_FILENO)) return;
    try {
        shower = std::thread([this] { Show(); });
    } catch (const std::exception&) {
        // The work goes on without the line.
    }
}

Progress::~Progress()
{
    Stop();
}

void Progress::Show()
{
    std::unique_lock lock(mutex);
    long long shown = -1;
    for (auto pause = 1000ms; !stopping.wait_for(lock, pause, [this] { return isStopped; }); pause = 100ms) {
        if (isOnLine && shown == done) continue;
        shown = done;
        std::fprintf(stderr, "\rpage %lld of %lld", std::min(done + 1, total), total);
        std::fflush(stderr);
        isOnLine = true;
    }
}

void Progress::Advance()
{
    const std::lock_guard lock(mutex);
    ++done;
}

std::unique_lock<std::mutex> Progress::MakeWay()
{
    std::unique_lock lock(mutex);
    if (isOnLine) std::fputs("\r\x1b[K", stderr);
    isOnLine = false;
    return lock;
}

void Progress::Stop()
{
    if (!shower.joinable()) return;
    {
        const auto lock = MakeWay();
        isStopped = true;
    }
    stopping.notify_all();
    shower.join();
}

} // namespace Host
