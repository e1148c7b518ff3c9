#pragma once

// The portable package of a port, and the check that the port test is made of.

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "platform/Console.hpp"
#include "platform/HostSystem.hpp"

namespace tindrel {

// "Win64" or "Linux64": what the package's name and the texts about it call the system.
[[nodiscard]] constexpr std::string_view packagePlatform(System system) {
    return system == System::kWindows ? "Win64" : "Linux64";
}

// A text that the package holds beside the port's own files.
struct PackageText {
    std::string_view name;
    std::string_view content;
    bool isProgram = false;
};

[[nodiscard]] std::span<const PackageText> packageTexts(System system);

// Where a port's package goes: a folder and an archive beside the port. `portFolder` is absolute.
struct PackagePaths {
    std::filesystem::path parent;
    std::filesystem::path stage;
    std::filesystem::path zip;
};

[[nodiscard]] PackagePaths packagePaths(const std::filesystem::path& portFolder,
                                        System target = kHostSystem);

// Builds the port for the target, which another system than this can be if it is Windows, and
// gathers what a player needs into a folder and a ZIP beside it. The codes
// of buildPort, or an ExitCode from kNoPort to kNoZip. Throws ("absolute", "current_path(const
// path&)", and the disk's own failures by name).
[[nodiscard]] int packagePort(const std::filesystem::path& portFolder, const Console& console,
                              System target = kHostSystem);

// Prints "[PASS] <relative>" on `out`, or "[FAIL] missing <relative>" on `err` and adds 1 to
// `failures`. Throws ("exists") for an error other than absence.
void checkExists(const std::filesystem::path& root, int& failures, std::string_view relative,
                 const Console& console);

}  // namespace tindrel
