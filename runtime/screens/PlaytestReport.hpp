#pragma once

// A playtest as files: JSON for programs, and the same for readers.

#include <filesystem>
#include <string>

#include "Playtest.hpp"

namespace port {

// Valid whatever the names hold: bytes that are no UTF-8 are read as Windows-1252.
[[nodiscard]] std::string playtestJson(const Playtest& met);
[[nodiscard]] std::string playtestText(const Playtest& met);

// Replaces `file` and `file`.txt, each whole. False when one cannot be written; it then stands as
// it was.
[[nodiscard]] bool writePlaytest(const Playtest& met, const std::filesystem::path& file);

}  // namespace port
