#pragma once

// Compiling a port with CMake.

#include <filesystem>
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
// 0 built, 20 no project file or no CMake, 21 configure failed, 22 compilation failed, 23 no
// executable, 24 copying it failed. Throws ("create_directories", "exists", "absolute").
[[nodiscard]] int buildPort(const std::filesystem::path& portFolder, const Console& console);

}  // namespace tindrel
