#include "PeakMemory.h"

#include <cstdlib>
#include <fstream>
#include <string>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Quillet {

namespace {

/// A line of /proc/self/status, in kilobytes; 0 where there is none.
long long ReadStatus(const std::string& name)
{
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.compare(0, name.size(), name) == 0) return std::atoll(line.c_str() + name.size());
    return 0;
}

} // namespace

PeakMemory::PeakMemory()
{
#ifdef __GLIBC__
    // What earlier rounds gave back would be used again unseen.
    malloc_trim(0);
#endif
    std::ofstream("/proc/self/clear_refs") << "5"; // The peak starts anew.
    start = ReadStatus("VmRSS:");
}

double PeakMemory::GetMegabytes() const
{
    return static_cast<double>(ReadStatus("VmHWM:") - start) / 1024;
}

} // namespace Quillet
