#include "platform/Process.hpp"
#include "platform/ToolProcess.hpp"

namespace tindrel {

int runTool(const std::vector<std::string>& command, const std::function<bool()>&) {
    return runCommand(command);
}

// The tool shares our console and gets the same event from the system.
void endTool() {}

}  // namespace tindrel
