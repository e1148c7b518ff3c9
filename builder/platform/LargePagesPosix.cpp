#include <cstddef>
#include <cstdlib>

#include "platform/LargePages.hpp"

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#endif

namespace tindrel {

void preferLargePages() {
#ifdef __GLIBC__
    // The heap of the C library grows by as much at once, in address space alone: memory is taken
    // where it is touched. What is freed stays for the next allocation.
    constexpr int kStep = 64 << 20;
    constexpr std::uintptr_t kLargePage = 2U << 20U;
    mallopt(M_TOP_PAD, kStep);
    mallopt(M_TRIM_THRESHOLD, 2 * kStep);
    mallopt(M_MMAP_THRESHOLD, kStep / 2);
    const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
    void* volatile const grown = std::malloc(std::size_t{1} << 20U);  // volatile, or it is left out
    std::free(grown);
    const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
    const std::uintptr_t first = (before + kLargePage - 1) / kLargePage * kLargePage;
    if (after > first) madvise(reinterpret_cast<void*>(first), after - first, MADV_HUGEPAGE);
#endif
}

}  // namespace tindrel
