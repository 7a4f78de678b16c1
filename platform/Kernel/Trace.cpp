#include <Kernel/Trace.h>

#include <atomic>
#include <mutex>
#include <utility>

namespace Kernel {

namespace {

struct Channel
{
    std::atomic<bool> isOpen{false};
    std::mutex mutex;
    TraceSink sink;
};

Channel& GetChannel()
{
    // Never destroyed: other static objects may still trace from their destructors.
    static auto& channel = *new Channel;
    return channel;
}

} // namespace

void SetTraceSink(TraceSink sink)
{
    Channel& channel = GetChannel();
    std::lock_guard lock(channel.mutex);
    channel.sink = std::move(sink);
    channel.isOpen.store(static_cast<bool>(channel.sink), std::memory_order_release);
}

bool IsTracing() noexcept
{
    return GetChannel().isOpen.load(std::memory_order_acquire);
}

void WriteTrace(std::string_view message)
{
    Channel& channel = GetChannel();
    std::lock_guard lock(channel.mutex);
    if (channel.sink) channel.sink(message);
}

} // namespace Kernel
