#pragma once

// The version of this system, which the project's CMakeLists.txt reads from here.

#include <string_view>

// A literal, so that texts are put together where they are compiled.
#define TINDREL_VERSION "0.34.32"

namespace tindrel {

inline constexpr std::string_view kVersion = TINDREL_VERSION;

}  // namespace tindrel
