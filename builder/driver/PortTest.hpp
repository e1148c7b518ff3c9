#pragma once

#include <filesystem>
#include <optional>

#include "platform/Console.hpp"

namespace tindrel {

// Checks that a generated port is complete and fits its game, then compiles it. `playtest` is a
// bot's report, if there is one: it goes to the port's reports, and their page tells what it holds.
// kNoInput for a report that cannot be read, kChecksFailed, or the code of buildPort. `asWritten`
// is GameReader's. Throws file-system errors.
[[nodiscard]] int testPort(const std::filesystem::path& port,
                           const std::optional<std::filesystem::path>& playtest, bool asWritten,
                           const Console& console);

}  // namespace tindrel
