#include <windows.h>

#include <mutex>
#include <utility>

#include "platform/CommandLine.hpp"
#include "platform/Companion.hpp"
#include "platform/Interrupt.hpp"
#include "platform/Process.hpp"
#include "platform/ToolProcess.hpp"
#include "platform/WideText.hpp"

namespace tindrel {
namespace {

struct Companion {
    std::mutex mutex;
    HANDLE process = nullptr;
};

// Never destroyed: an interrupt may come while the program's statics go.
Companion& companion() {
    static Companion& only = *new Companion;
    return only;
}

}  // namespace

int runTool(const std::vector<std::string>& command, const std::function<bool()>&) {
    return runCommand(command);
}

// A tool shares our console and gets the same event from the system; a game has no console.
void endTool() {
    endCompanion();
}

bool startCompanion(const std::vector<std::string>& command) {
    endCompanion();
    startInterruptWatch();
    const std::lock_guard lock(companion().mutex);
    std::wstring line = widen(quoteCommandLine(command));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == 0) {
        return false;
    }
    CloseHandle(process.hThread);
    companion().process = process.hProcess;
    return true;
}

void endCompanion() {
    const std::lock_guard lock(companion().mutex);
    const HANDLE process = std::exchange(companion().process, nullptr);
    if (process == nullptr) return;
    TerminateProcess(process, 0);
    WaitForSingleObject(process, INFINITE);
    CloseHandle(process);
}

}  // namespace tindrel
