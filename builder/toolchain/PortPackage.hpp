#pragma once

// The portable package of a port, and the check that the port test is made of.

#include <filesystem>
#include <string_view>

namespace tindrel {

// Builds the port and gathers what a player needs into a folder and a ZIP beside it. The codes of
// buildPort, 30 no valid port, 31 copying failed, 32 copying the executable failed, 33 ZIP failed.
// Throws ("absolute", "current_path(const path&)").
[[nodiscard]] int packagePort(const std::filesystem::path& portFolder);

// Prints "[PASS] <relative>" on standard output, or "[FAIL] missing <relative>" on standard error
// and adds 1 to `failures`. Throws ("exists") for an error other than absence.
void checkExists(const std::filesystem::path& root, int& failures, std::string_view relative);

}  // namespace tindrel
