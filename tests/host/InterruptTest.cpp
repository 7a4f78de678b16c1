#include "Interrupt.h"

#include "CommandRun.h"
#include "ExitStatus.h"
#include "OutputFile.h"
#include "support/PdfBuilder.h"
#include "support/Repeat.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Host::Test {
namespace {

using Quillet::MakePageBuilder;
using Quillet::PdfBuilder;
using namespace std::chrono_literals;

/// Many pages with something on each: seconds of work, and far more output than a pipe holds.
std::string MakeManyPages()
{
    PdfBuilder builder = MakePageBuilder(Quillet::Repeat("0 0 9 9 re f ", 300));
    std::string kids;
    for (int i = 0; i < 3000; ++i)
        kids += std::to_string(builder.Add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 4 0 R >>")) +
                " 0 R ";
    builder.Set(2, "<< /Type /Pages /Kids [" + kids + "] /Count 3000 >>");
    return builder.Build();
}

/// Runs the command in a process of its own, which can be sent signals.
class InterruptTest : public CommandRun
{
public:
    InterruptTest()
    {
        folder.Put("FILE", MakeManyPages());
        EXPECT_EQ(pipe2(stream.data(), O_CLOEXEC), 0);
    }

    ~InterruptTest() override
    {
        close(stream[0]);
        close(stream[1]);
    }

    /// Starts it; its output goes into a pipe that nobody reads. Signals find it prepared.
    void Start(const std::vector<std::string>& words)
    {
        Start([&] { return Run(words, false); });
    }

    void Start(const std::function<int()>& work)
    {
        int ready[2];
        ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
        child = fork();
        if (child == 0) {
            // Whoever runs the tests in the background made them deaf to it.
            std::signal(SIGINT, SIG_DFL);
            alarm(60);
            dup2(stream[1], STDOUT_FILENO);
            Interrupt::Install();
            close(ready[1]);
            _exit(work());
        }
        close(ready[1]);
        char none = 0;
        EXPECT_EQ(read(ready[0], &none, 1), 0);
        close(ready[0]);
    }

    /// The exit status after a signal.
    int Stop(int signal)
    {
        kill(child, signal);
        int status = -1;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    /// False if nothing of the kind happens.
    static bool WaitUntil(const std::function<bool()>& isSo)
    {
        for (int tries = 0; tries < 20'000; ++tries) {
            if (isSo()) return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }

    bool IsPipeFull() const
    {
        pollfd end{stream[1], POLLOUT, 0};
        return poll(&end, 1, 0) == 0;
    }

    std::array<int, 2> stream = {-1, -1};
    pid_t child = -1;
};

TEST_F(InterruptTest, EndsTheWaitForAPassword)
{
    const auto pipe = folder.Get("pipe");
    mkfifo(pipe.c_str(), 0600);
    Start({"info", "FILE", "--password-file", pipe.string()});
    // It can be opened once there is a reader.
    int writer = -1;
    EXPECT_TRUE(WaitUntil([&] { return (writer = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) >= 0; }));
    EXPECT_EQ(Stop(SIGINT), ExitInterrupted);
    close(writer);
}

TEST_F(InterruptTest, EndsTheWaitForAReader)
{
    const std::vector<std::string> rows[] = {
        {"convert", "FILE", "-o", "/dev/stdout", "--format", "json"},
        {"convert", "FILE", "-o", "/dev/stdout", "--format", "json", "--jobs", "3"},
        {"convert", "FILE", "-o", "/dev/stdout", "--format", "svg", "--jobs", "2"},
        {"info", "FILE", "--json"},
    };
    for (const auto& words : rows) {
        Start(words);
        EXPECT_TRUE(WaitUntil([&] { return IsPipeFull(); })) << words.back();
        EXPECT_EQ(Stop(SIGTERM), ExitInterrupted) << words.back();
        std::string rest(1 << 20, 0);
        EXPECT_GT(read(stream[0], rest.data(), rest.size()), 0);
    }
    const auto pipe = folder.Get("OUT.json");
    mkfifo(pipe.c_str(), 0600);
    Start({"convert", "FILE", "-o", "OUT.json"});
    EXPECT_EQ(Stop(SIGINT), ExitInterrupted);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(InterruptTest, LeavesOnlyWhatIsWhole)
{
    for (const char* jobs : {"1", "3"}) {
        Start({"convert", "FILE", "-o", "OUT.svg", "--jobs", jobs});
        EXPECT_TRUE(WaitUntil([&] { return exists(folder.Get("OUT-1.svg")); }));
        EXPECT_EQ(Stop(SIGINT), ExitInterrupted);
        for (const auto& entry : std::filesystem::directory_iterator(folder.Get(""))) {
            if (entry.path() == folder.Get("FILE")) continue;
            EXPECT_EQ(entry.path().extension(), ".svg");
            EXPECT_TRUE(pugi::xml_document().load_file(entry.path().c_str())) << entry.path();
            std::filesystem::remove(entry.path());
        }

        Start({"convert", "FILE", "-o", "OUT.json", "--jobs", jobs});
        EXPECT_TRUE(WaitUntil([&] { return folder.CountFiles() == 2; }));
        EXPECT_EQ(Stop(SIGHUP), ExitInterrupted);
        EXPECT_EQ(folder.CountFiles(), 1);
    }
}

TEST_F(InterruptTest, RemovesTheFileOnTheSecondSignalToo)
{
    for (const bool isSecond : {false, true}) {
        Start([&] {
            OutputFile first(folder.Get("a").string());
            first.Commit();
            OutputFile file(folder.Get("b").string());
            raise(SIGINT);
            if (!isSecond) return Interrupt::IsSet() ? 1 : 2;
            raise(SIGTERM);
            return 3;
        });
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(WEXITSTATUS(status), isSecond ? ExitInterrupted : 1);
        EXPECT_TRUE(exists(folder.Get("a")));
        EXPECT_EQ(folder.CountFiles(), 2);
    }
}

} // namespace
} // namespace Host::Test
