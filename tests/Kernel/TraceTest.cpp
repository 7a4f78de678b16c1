#include <Kernel/Counted.h>
#include <Kernel/DemangleTypeName.h>
#include <Kernel/Trace.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

class Plain
{};

TEST(TraceTest, ReachesTheSinkWhileThereIsOne)
{
    std::string received;
    Kernel::Trace("before %1\n", 1);
    Kernel::SetTraceSink([&received](std::string_view message) { received += message; });
    Kernel::Trace("Unknown filter: %1\n", "Foo");
    Kernel::SetTraceSink(nullptr);
    Kernel::Trace("after\n");
    EXPECT_EQ(received, "Unknown filter: Foo\n");
}

TEST(TraceTest, SinkIsUnusedOnceReplaced)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([] {
            for (int i = 0; i < 2000; ++i)
                Kernel::Trace("%1", i);
        });
    }
    for (int i = 0; i < 50; ++i) {
        // The sanitizers see it if a thread still writes to a buffer that is gone.
        std::vector<std::string> buffer;
        Kernel::SetTraceSink([&buffer](std::string_view message) { buffer.emplace_back(message); });
        std::this_thread::yield();
        Kernel::SetTraceSink(nullptr);
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(Kernel::IsTracing());
}

TEST(DemangleTypeNameTest, GivesTheClassAlone)
{
    EXPECT_EQ(Kernel::DemangleTypeName(typeid(Plain)), "Plain");
    EXPECT_EQ(Kernel::DemangleTypeName(typeid(Kernel::Counted<Kernel::Countable>)), "Counted<Kernel::Countable>");
}

} // namespace
