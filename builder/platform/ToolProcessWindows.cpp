#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
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

constexpr DWORD kLongestPause = 50;  // milliseconds
// By which our own console event comes when a child has died of it already.
constexpr DWORD kSameEvent = 2000;
constexpr auto kEndedByConsole = static_cast<int>(0xC000013A);

class Handle {
  public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() {
        if (isOpen()) CloseHandle(handle_);
    }

    [[nodiscard]] HANDLE get() const { return handle_; }
    [[nodiscard]] HANDLE release() { return std::exchange(handle_, nullptr); }
    [[nodiscard]] bool isOpen() const {
        return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE;
    }

  private:
    HANDLE handle_ = nullptr;
};

struct Children {
    std::mutex mutex;
    HANDLE tool = nullptr;  // the job of the one that runs, with all its helpers
    HANDLE companion = nullptr;
    bool stopped = false;
};

// Never destroyed: an interrupt may come while the program's statics go.
Children& children() {
    static Children& only = *new Children;
    return only;
}

struct Started {
    Handle process, thread;
};

// Not open when it could not start, or must not as the program is about to end. For who holds the
// mutex.
Started start(const std::vector<std::string>& command, bool inherits, DWORD flags = 0,
              STARTUPINFOW startup = {}) {
    if (command.empty() || children().stopped) return {};
    std::wstring line = widen(quoteCommandLine(command));
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, inherits ? TRUE : FALSE, flags,
                       nullptr, nullptr, &startup, &process) == 0) {
        return {};
    }
    return {Handle(process.hProcess), Handle(process.hThread)};
}

// What we have written so far stands before what the child writes.
void flushOutput() {
    std::cout.flush();
    std::fflush(stdout);
}

int exitCode(const Handle& process) {
    DWORD code = 1;
    if (GetExitCodeProcess(process.get(), &code) == 0) code = 1;
    return static_cast<int>(code);
}

// It gets our output, and an empty input in which it finds nobody to ask for a password.
Started startTool(const std::vector<std::string>& command, const Handle& job) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const Handle nothing(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup{};
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing.get();
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    const std::lock_guard lock(children().mutex);
    Started tool = start(command, true, CREATE_SUSPENDED, startup);
    if (!tool.process.isOpen()) return {};
    AssignProcessToJobObject(job.get(), tool.process.get());
    ResumeThread(tool.thread.get());
    children().tool = job.get();
    return tool;
}

}  // namespace

int runTool(const std::vector<std::string>& command, const std::function<bool()>& mayGoOn) {
    flushOutput();
    const Handle job(CreateJobObjectW(nullptr, nullptr));
    const Started tool = startTool(command, job);
    if (!tool.process.isOpen()) return -1;
    DWORD pause = 1;
    while (WaitForSingleObject(tool.process.get(), pause) == WAIT_TIMEOUT) {
        if (!mayGoOn()) TerminateJobObject(job.get(), 1);
        pause = std::min(pause * 2, kLongestPause);
    }
    const std::lock_guard lock(children().mutex);
    // A helper that outlives the tool would write on behind our back.
    TerminateJobObject(job.get(), 1);
    children().tool = nullptr;
    return exitCode(tool.process);
}

// Unlike a tool the child keeps our input, and hears of the console's interrupts by itself, so that
// it leaves no half-written file that looks finished.
int runCommand(const std::vector<std::string>& command) {
    startInterruptWatch();
    flushOutput();
    Started child;
    {
        const std::lock_guard lock(children().mutex);
        child = start(command, true);
    }
    if (!child.process.isOpen()) return -1;
    WaitForSingleObject(child.process.get(), INFINITE);
    const int code = exitCode(child.process);
    if (code == kEndedByConsole) Sleep(kSameEvent);
    // An interrupt that has ended the command ends this program too, and not with its code.
    const InterruptHold hold;
    return code;
}

void endTool() {
    {
        const std::lock_guard lock(children().mutex);
        children().stopped = true;
        if (children().tool != nullptr) TerminateJobObject(children().tool, 1);
    }
    // A game has no console that could tell it.
    endCompanion();
}

bool startCompanion(const std::vector<std::string>& command) {
    endCompanion();
    startInterruptWatch();
    const std::lock_guard lock(children().mutex);
    Started companion = start(command, false);
    children().companion = companion.process.release();
    return children().companion != nullptr;
}

void endCompanion() {
    const std::lock_guard lock(children().mutex);
    const Handle process(std::exchange(children().companion, nullptr));
    if (!process.isOpen()) return;
    TerminateProcess(process.get(), 0);
    WaitForSingleObject(process.get(), INFINITE);
}

}  // namespace tindrel
