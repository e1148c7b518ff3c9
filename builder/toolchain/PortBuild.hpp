#pragma once

// Compiling a port with CMake.

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Console.hpp"
#include "platform/HostSystem.hpp"

namespace tindrel {

// Names of a port's executable: as CMake builds it, and as it stands at the port's top.
struct ExecutableNames {
    std::string_view built;
    std::string_view finished;
};

[[nodiscard]] constexpr ExecutableNames executableNames(System system) {
    if (system == System::kWindows) return {"openbor-port.exe", "OpenBOR-Port.exe"};
    return {"openbor-port", "OpenBOR-Port"};
}

// What each configuration is given beyond the folders and the build type, most demanding first.
[[nodiscard]] std::vector<std::vector<std::string>> configurations(System system, bool hasNinja);

// Prints the command line, then runs it like runCommand.
[[nodiscard]] int runCommandEcho(const Console& console, const std::vector<std::string>& command);

// Configures and compiles `<port>/runtime` and puts the finished file at the port's top.
// An ExitCode: kSuccess, or one from kNoCmake to kExecutableNotCopied. Throws
// ("create_directories", "exists", "absolute").
[[nodiscard]] int buildPort(const std::filesystem::path& portFolder, const Console& console);

// The same, but compiles only what has changed since the last time, where that can be. `replacing`
// is called when the new executable is about to take the place of the old one.
[[nodiscard]] int rebuildPort(const std::filesystem::path& portFolder, const Console& console,
                              const std::function<void()>& replacing);

}  // namespace tindrel
