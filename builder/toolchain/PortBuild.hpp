#pragma once

// Compiling a port with CMake.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// A CMake program; empty when none was found. Throws ("exists").
[[nodiscard]] std::filesystem::path findCmake();

// Prints the command line on standard output, then runs it like runCommand.
[[nodiscard]] int runCommandEcho(const std::vector<std::string>& command);

// File name of a finished port: "OpenBOR-Port.exe" on Windows, "OpenBOR-Port" elsewhere.
[[nodiscard]] std::string_view finishedFileName();

// Configures and compiles `<port>/runtime` and puts the finished file at the port's top.
// 0 built, 20 no project file or no CMake, 21 configure failed, 22 compilation failed, 23 no
// executable, 24 copying it failed. Throws ("create_directories").
[[nodiscard]] int buildPort(const std::filesystem::path& portFolder);

}  // namespace tindrel
