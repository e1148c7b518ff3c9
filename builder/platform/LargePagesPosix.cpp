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
    constexpr std::size_t kLargePage = std::size_t{2} << 20U;
    mallopt(M_TOP_PAD, kStep);
    mallopt(M_TRIM_THRESHOLD, 2 * kStep);
    mallopt(M_MMAP_THRESHOLD, kStep / 2);
    auto* const before = static_cast<std::byte*>(sbrk(0));
    void* volatile const grown = std::malloc(std::size_t{1} << 20U);  // volatile, or it is left out
    std::free(grown);
    const auto* const after = static_cast<std::byte*>(sbrk(0));
    const std::size_t inLargePage = reinterpret_cast<std::uintptr_t>(before) % kLargePage;
    std::byte* const first = inLargePage == 0 ? before : before + (kLargePage - inLargePage);
    if (first < after) {
        madvise(first, static_cast<std::size_t>(after - first), MADV_HUGEPAGE);
    }
#endif
}

}  // namespace tindrel
