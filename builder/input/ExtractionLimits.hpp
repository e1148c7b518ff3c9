#pragma once

#include <cstdint>

namespace tindrel {

// What one container may become on disk before it counts as an attack. The largest known game has
// 10,600 files and 152 MB.
struct ExtractionLimits {
    std::uint64_t files = 200'000;  // and, counted by itself, folders
    std::uint64_t bytes = 16ULL << 30U;
};

}  // namespace tindrel
