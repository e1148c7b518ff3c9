#pragma once

// The last words of a port that faults: one line in its crash log.

#include <filesystem>

namespace port::platform {

// Set for a run that nobody watches: no message box may appear then.
extern bool gAutomatedRun;

// From now on a fault appends a line to `crashLog`, shows a box where there are boxes, and ends the
// process as the fault would have. May be called again with another path.
void installCrashHandler(const std::filesystem::path& crashLog);

}  // namespace port::platform
