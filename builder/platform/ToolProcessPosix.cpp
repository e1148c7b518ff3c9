#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/Companion.hpp"
#include "platform/Interrupt.hpp"
#include "platform/Process.hpp"
#include "platform/ProcessPosix.hpp"
#include "platform/ToolProcess.hpp"

namespace tindrel {
namespace {

constexpr std::chrono::milliseconds kLongestPause{50};
// For a game to save what it saves when its window is closed.
constexpr std::chrono::seconds kFarewell{3};

// The child that runs leads a process group of its own, so that it dies with all its helpers.
struct Tool {
    std::mutex mutex;
    pid_t group = 0;  // 0 for none; never a process that was waited for, whose id may be reused
    int signal = SIGKILL;  // by which an interrupt ends it
    pid_t companion = 0;   // the same, of one that shares our group
    bool stopped = false;
};

Tool& tool() {
    static Tool& only = *new Tool;
    return only;
}

// The process stays a zombie: its id still belongs to it when the group is killed. `options` may
// be WNOHANG.
bool hasEnded(pid_t process, int options) {
    siginfo_t info{};
    const int result =
        ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT | options);
    return result == 0 ? info.si_pid != 0 : errno != EINTR;
}

// -1 when it could not start, or must not as the program is about to end.
pid_t startGroup(int signal, const std::vector<std::string>& command, const StartOptions& options) {
    const std::lock_guard lock(tool().mutex);
    if (tool().stopped) return -1;
    const pid_t process = startProcess(command, options);
    if (process < 0) return -1;
    tool().group = process;
    tool().signal = signal;
    return process;
}

}  // namespace

int runTool(const std::vector<std::string>& command, const std::function<bool()>& mayGoOn) {
    // Without a terminal and without input it finds nobody to ask for a password.
    const StartOptions options{.ownSession = true, .emptyInput = true, .utf8Locale = true};
    const pid_t process = startGroup(SIGKILL, command, options);
    if (process < 0) return -1;
    std::chrono::milliseconds pause{1};
    while (!hasEnded(process, WNOHANG)) {
        if (!mayGoOn()) ::kill(-process, SIGKILL);
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, kLongestPause);
    }
    const std::lock_guard lock(tool().mutex);
    // A helper that outlives the tool would write on behind our back.
    ::kill(-process, SIGKILL);
    tool().group = 0;
    return waitForProcess(process);
}

// Unlike a tool the child keeps our input and locale, and is asked to end rather than killed, so
// that it leaves no half-written file that looks finished.
int runCommand(const std::vector<std::string>& command) {
    startInterruptWatch();
    const pid_t process = startGroup(SIGTERM, command, {.ownSession = true});
    if (process < 0) return -1;
    while (!hasEnded(process, 0)) {
    }
    int code = 0;
    {
        const std::lock_guard lock(tool().mutex);
        tool().group = 0;
        code = waitForProcess(process);
    }
    // An interrupt that has ended the command ends this program too, by its signal and not with the
    // command's code.
    const InterruptHold hold;
    return code;
}

void endTool() {
    const std::lock_guard lock(tool().mutex);
    tool().stopped = true;
    if (tool().group != 0) ::kill(-tool().group, tool().signal);
    if (tool().companion != 0) ::kill(tool().companion, SIGTERM);
}

// In our own group it hears of the terminal's interrupts, too, and may read the terminal.
bool startCompanion(const std::vector<std::string>& command) {
    endCompanion();
    startInterruptWatch();
    const std::lock_guard lock(tool().mutex);
    if (tool().stopped) return false;
    const pid_t process = startProcess(command);
    tool().companion = std::max(process, 0);
    return process >= 0;
}

void endCompanion() {
    const std::lock_guard lock(tool().mutex);
    const pid_t process = std::exchange(tool().companion, 0);
    if (process == 0) return;
    ::kill(process, SIGTERM);
    const auto last = std::chrono::steady_clock::now() + kFarewell;
    while (!hasEnded(process, WNOHANG) && std::chrono::steady_clock::now() < last) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ::kill(process, SIGKILL);
    static_cast<void>(waitForProcess(process));
}

}  // namespace tindrel
