#pragma once

// A private folder of one run, for what has to be unpacked.

#include <filesystem>

namespace tindrel {

// A new folder below the system's temporary folder. It is removed when an interrupt ends the
// program; otherwise by its owner. Throws a runtime_error when it cannot be made.
[[nodiscard]] std::filesystem::path createTempSession();

// Removes it with all that it holds. Cannot fail.
void removeTempSession(const std::filesystem::path& session) noexcept;

}  // namespace tindrel
