#pragma once

// A property that must hold for every input: unlike an assert, it is checked in every build.

#include <cstdio>
#include <cstdlib>

namespace tindrel::fuzz {

inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "Broken: %s\n", what);
    std::abort();
}

}  // namespace tindrel::fuzz
