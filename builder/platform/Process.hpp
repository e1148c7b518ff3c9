#pragma once

// Child processes and the search for programs.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// Runs the program `command[0]`, looked up along PATH, with the other elements as its arguments in
// UTF-8, and waits without a time limit. The child shares the console, and ends when an interrupt
// ends us. Its exit code, or -1 when there is nothing to run or the start failed.
[[nodiscard]] int runCommand(const std::vector<std::string>& command);

// The program's full path along the system's search path; empty when it is not there.
[[nodiscard]] std::filesystem::path searchProgram(std::string_view name);

// Folder of the running builder; the working directory where the system does not tell.
[[nodiscard]] std::filesystem::path builderFolder();

// Environment variable as a path; empty when unset.
[[nodiscard]] std::filesystem::path environmentPath(const char* name);

[[nodiscard]] unsigned long processId();

}  // namespace tindrel
