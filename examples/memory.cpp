// A host with the file in memory, a password, and an end that another thread sets: memory FILE [PASSWORD]

#include <Quillet/Quillet.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>

namespace {

/// Sets a flag once some time is over, unless the work is done before.
class Deadline
{
public:
    Deadline(bool& abortFlag, std::chrono::milliseconds time)
        : thread([this, &abortFlag, time] {
              std::unique_lock lock(mutex);
              // The library reads the flag while it works, so it is stored as an atomic value.
              if (!isDone.wait_for(lock, time, [this] { return isOver; })) std::atomic_ref(abortFlag).store(true);
          })
    {}
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline()
    {
        {
            const std::lock_guard lock(mutex);
            isOver = true;
        }
        isDone.notify_one();
        thread.join();
    }

private:
    std::mutex mutex;
    std::condition_variable isDone;
    bool isOver = false;
    std::thread thread;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("usage: memory FILE [PASSWORD]\n", stderr);
        return EXIT_FAILURE;
    }
    std::ifstream file(argv[1], std::ios::binary);
    // The memory stays the host's, and outlives the document.
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    bool isAborted = false;
    const auto document = Kernel::MakeCounted<Quillet::PdfDocument>();
    document->SetAbortPointer(&isAborted);
    if (argc > 2) document->SetPassword(argv[2]);
    const Deadline deadline(isAborted, std::chrono::seconds(20));
    if (!document->OpenMemory(bytes.data(), bytes.size())) {
        std::fprintf(stderr, "memory: %s\n", Quillet::GetErrorName(document->GetDefaultErrorHandler()->lastError));
        return EXIT_FAILURE;
    }
    int built = 0;
    for (int index = 0; index < document->GetPageCount(); ++index) {
        try {
            const auto page = document->GetPage(index);
            // Null for a page that the host did not wait for.
            if (!page) break;
            page->BuildObjects();
            ++built;
        } catch (Quillet::Error::Type error) {
            std::fprintf(stderr, "memory: page %d: %s\n", index + 1, Quillet::GetErrorName(error));
        }
    }
    std::printf("%d of %d pages\n", built, document->GetPageCount());
    return built == document->GetPageCount() ? EXIT_SUCCESS : EXIT_FAILURE;
}
