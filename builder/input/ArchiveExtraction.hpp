#pragma once

// ZIP and RAR, unpacked by whatever tool the machine has.

#include <filesystem>
#include <string>

#include "input/ArchiveTools.hpp"
#include "input/ExtractionLimits.hpp"

namespace tindrel {

enum class ArchiveMethod { Zip = 1, Rar = 2 };

// Tries the tools until one ends with 0. What they leave is made safe to read: no links, no special
// files, all of it readable, and within the limits. False with a text in `error` when no tool could
// do it or a limit is broken. Throws filesystem_error ("exists") from the search for 7-Zip only.
[[nodiscard]] bool extractArchive(const std::filesystem::path& archive,
                                  const std::filesystem::path& destination, ArchiveMethod method,
                                  std::string& error,
                                  const ArchiveTools& tools = systemArchiveTools(),
                                  const ExtractionLimits& limits = {});

}  // namespace tindrel
