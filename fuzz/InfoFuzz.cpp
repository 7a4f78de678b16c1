/// A whole file: what `quillet info` prints of it, as text and as JSON.

#include "Info.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The fuzzer itself writes to standard error.
    if (!std::freopen("/dev/null", "w", stdout)) std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const int file = memfd_create("input", 0);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size)) std::abort();
    for (const bool isJson : {false, true}) {
        // With a password, nobody is asked for one.
        Host::RunInfo({{"/proc/self/fd/" + std::to_string(file), "user", true}, isJson});
    }
    close(file);
    return 0;
}
