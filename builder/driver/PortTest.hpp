#pragma once

#include <filesystem>

#include "platform/Console.hpp"

namespace tindrel {

// Checks that a generated port is complete and fits its game, then compiles it. kChecksFailed, or
// the code of buildPort. `asWritten` is GameReader's. Throws file-system errors.
[[nodiscard]] int testPort(const std::filesystem::path& port, bool asWritten,
                           const Console& console);

}  // namespace tindrel
