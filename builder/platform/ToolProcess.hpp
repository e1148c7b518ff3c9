#pragma once

// An outside tool that works for us in the background of a run.

#include <functional>
#include <string>
#include <vector>

namespace tindrel {

// Like runCommand, for a tool that must not ask: where the system allows it has neither a terminal
// nor input, and is killed once `mayGoOn`, which is asked every now and then, says no. One at a
// time.
[[nodiscard]] int runTool(const std::vector<std::string>& command,
                          const std::function<bool()>& mayGoOn);

// Ends the tool or command that runs at this moment, if any, and lets no other start. From any
// thread.
void endTool();

}  // namespace tindrel
