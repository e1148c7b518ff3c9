#pragma once

// The halves of running a child, for those who need something between or beside them.

#include <sys/types.h>

#include <string>
#include <vector>

namespace tindrel {

struct StartOptions {
    int standardOutput = -1;  // a descriptor; -1 for our own output
    bool ownSession = false;  // with a process group of its own, and without our terminal
    bool emptyInput = false;
    bool utf8Locale = false;  // instead of ours, so that every file name can be spelled
};

// Starts `command` in our folder, and with our environment. -1 when it could not start.
[[nodiscard]] pid_t startProcess(const std::vector<std::string>& command,
                                 const StartOptions& options = {});

// The exit code; 128 + the signal's number for a killed child; 1 when the system does not tell.
[[nodiscard]] int waitForProcess(pid_t process);

// All that the child writes on its standard output; `code` becomes its exit code, -1 as above.
[[nodiscard]] std::string runCommandOutput(const std::vector<std::string>& command, int& code);

}  // namespace tindrel
