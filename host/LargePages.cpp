#include "LargePages.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Host {

#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)

namespace {

constexpr std::uintptr_t c_smallPage = 4096;
constexpr std::uintptr_t c_largePage = 2 << 20;
/// Of addresses: memory is taken when it is touched.
constexpr int c_reserve = 1 << 30;
/// The largest size that the allocator takes.
constexpr int c_largestFromHeap = 32 << 20;
constexpr int c_usualPad = 128 << 10;

} // namespace

void UseLargePages()
{
    const auto end = reinterpret_cast<std::uintptr_t>(sbrk(0));
    // What the allocator writes before the system is asked, at both ends of a first block, makes its pages small ones.
    constexpr std::uintptr_t c_before = c_usualPad + 2 * c_smallPage;
    const std::uintptr_t start = (end + c_before + c_largePage - 1) / c_largePage * c_largePage - c_before;
    if (sbrk(static_cast<std::intptr_t>(start - end)) == reinterpret_cast<void*>(-1)) return;
    // The heap grows once, by all that it may have in large pages; large blocks come from it too, and it keeps what is
    // freed.
    mallopt(M_MMAP_THRESHOLD, c_largestFromHeap);
    mallopt(M_TRIM_THRESHOLD, c_reserve);
    mallopt(M_TOP_PAD, c_reserve);
    void* volatile first = std::malloc(c_usualPad); // Volatile, lest the compiler see that it is for nothing.
    std::free(first);
    mallopt(M_TOP_PAD, c_usualPad);
    const auto grown = reinterpret_cast<std::uintptr_t>(sbrk(0));
    if (grown > start) madvise(reinterpret_cast<void*>(start), grown - start, MADV_HUGEPAGE);
}

#else

void UseLargePages() {}

#endif

} // namespace Host
