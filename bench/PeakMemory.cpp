#include "PeakMemory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

bool isCounting = false;
long long heldBytes = 0;
long long peakBytes = 0;

} // namespace

// In a program these take the place of the libraries' own. The other forms of new and delete come down to them.

void* operator new(std::size_t size)
{
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (!memory) throw std::bad_alloc();
    if (isCounting) {
        heldBytes += static_cast<long long>(malloc_usable_size(memory));
        peakBytes = std::max(peakBytes, heldBytes);
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    if (isCounting) heldBytes -= static_cast<long long>(malloc_usable_size(memory));
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace Quillet {

PeakMemory::PeakMemory()
{
    heldBytes = 0;
    peakBytes = 0;
    isCounting = true;
}

PeakMemory::~PeakMemory()
{
    isCounting = false;
}

double PeakMemory::GetMegabytes() const
{
    return static_cast<double>(peakBytes) / (1024 * 1024);
}

} // namespace Quillet
