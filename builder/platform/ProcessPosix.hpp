#pragma once

// The halves of running a child, for those who need something between or beside them.

#include <sys/types.h>

#include <string>
#include <vector>

namespace tindrel {

// Starts `command` with our environment and folder, its standard output on the descriptor where
// one is given. -1 when it could not start. `session` makes it the leader of a session, and so of
// a process group, of its own.
[[nodiscard]] pid_t startProcess(const std::vector<std::string>& command, int standardOutput = -1,
                                 bool session = false);

// The exit code; 128 + the signal's number for a killed child; 1 when the system does not tell.
[[nodiscard]] int waitForProcess(pid_t process);

// All that the child writes on its standard output; `code` becomes its exit code, -1 as above.
[[nodiscard]] std::string runCommandOutput(const std::vector<std::string>& command, int& code);

}  // namespace tindrel
