#pragma once

#include <filesystem>

#include "platform/Console.hpp"

namespace tindrel {

// Checks that a generated port is complete and fits its game, then compiles it. 40 when a check
// fails, else the code of buildPort. Throws file-system errors.
[[nodiscard]] int testPort(const std::filesystem::path& port, const Console& console);

}  // namespace tindrel
