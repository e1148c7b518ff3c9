#pragma once

// Compiling a port for Windows on another system.

#include <filesystem>

#include "platform/Console.hpp"

namespace tindrel {

// By CMake and MinGW-w64: puts OpenBOR-Port.exe at the port's top. The codes and the exceptions of
// buildPort.
[[nodiscard]] int buildPortForWindows(const std::filesystem::path& portFolder,
                                      const Console& console);

}  // namespace tindrel
