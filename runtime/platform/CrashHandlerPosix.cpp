#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#if defined(__linux__)
#include <link.h>
#include <ucontext.h>
#endif

#include <array>
#include <cerrno>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "CrashHandler.hpp"

namespace port::platform {

bool gAutomatedRun = false;

namespace {

// Everything that the handler needs stands ready: it may neither allocate nor take a lock.
std::array<char, 4096> gCrashLogPath;
std::array<char, 4096> gModulePath;
std::uintptr_t gModuleBase = 0;
std::uintptr_t gModuleEnd = 0;
alignas(16) std::array<char, 65536> gSignalStack;  // a fault of the stack leaves none to run on

constexpr std::array<int, 5> kSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

template <std::size_t N>
void keep(std::array<char, N>& target, std::string_view text) {
    const std::size_t length = text.copy(target.data(), N - 1);
    target[length] = '\0';
}

// A line of fixed size; what does not fit is cut off.
class Line {
  public:
    void text(std::string_view text) {
        for (const char c : text) {
            if (size_ < buffer_.size()) buffer_[size_++] = c;
        }
    }
    void number(std::uintptr_t value, unsigned base) {
        std::array<char, 20> digits{};
        std::size_t first = digits.size();
        do {
            digits[--first] = "0123456789abcdef"[value % base];
            value /= base;
        } while (value != 0);
        text({digits.data() + first, digits.size() - first});
    }
    void hexadecimal(std::uintptr_t value) {
        text("0x");
        number(value, 16);
    }
    [[nodiscard]] const char* data() const { return buffer_.data(); }
    [[nodiscard]] std::size_t size() const { return size_; }

  private:
    std::array<char, 512> buffer_{};
    std::size_t size_ = 0;
};

// Where the program stood, 0 where the machine's registers are not known here.
std::uintptr_t programCounter(const void* context) {
#if defined(__linux__) && defined(__x86_64__)
    const auto* user = static_cast<const ucontext_t*>(context);
    return static_cast<std::uintptr_t>(user->uc_mcontext.gregs[REG_RIP]);
#elif defined(__linux__) && defined(__aarch64__)
    return static_cast<std::uintptr_t>(static_cast<const ucontext_t*>(context)->uc_mcontext.pc);
#else
    static_cast<void>(context);
    return 0;
#endif
}

void portUnhandledSignal(int signal, siginfo_t* info, void* context) {
    const int savedErrno = errno;
    const std::uintptr_t at = programCounter(context);
    const bool inModule = at >= gModuleBase && at < gModuleEnd;
    Line line;
    line.text("UNHANDLED SIGNAL code=");
    line.number(static_cast<std::uintptr_t>(signal), 10);
    line.text(" address=");
    line.hexadecimal(at);
    line.text(" fault=");
    line.hexadecimal(reinterpret_cast<std::uintptr_t>(info->si_addr));
    line.text(" offset=");
    line.hexadecimal(inModule ? at - gModuleBase : 0);
    line.text(" module=");
    line.text(inModule ? gModulePath.data() : "?");
    line.text("\r\n");

    const int file = open(gCrashLogPath.data(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (file >= 0) {
        // Nothing is left to do about a write that fails.
        [[maybe_unused]] const ssize_t written = write(file, line.data(), line.size());
        fsync(file);
        close(file);
    }
    errno = savedErrno;
    // The default action stands again and ends the process as soon as this returns.
    raise(signal);
}

#if defined(__linux__)
int noteMainModule(dl_phdr_info* info, std::size_t, void*) {
    gModuleBase = info->dlpi_addr;
    gModuleEnd = gModuleBase;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& header = info->dlpi_phdr[i];
        if (header.p_type != PT_LOAD) continue;
        const std::uintptr_t end = gModuleBase + header.p_vaddr + header.p_memsz;
        if (end > gModuleEnd) gModuleEnd = end;
    }
    return 1;  // the program itself is the first
}
#endif

}  // namespace

void installCrashHandler(const std::filesystem::path& crashLog) {
    keep(gCrashLogPath, crashLog.native());
    std::error_code ignored;
    keep(gModulePath, std::filesystem::read_symlink("/proc/self/exe", ignored).native());
#if defined(__linux__)
    dl_iterate_phdr(noteMainModule, nullptr);
#endif

    stack_t stack{};
    stack.ss_sp = gSignalStack.data();
    stack.ss_size = gSignalStack.size();
    sigaltstack(&stack, nullptr);

    struct sigaction action {};
    action.sa_sigaction = portUnhandledSignal;
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_ONSTACK | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int signal : kSignals) sigaction(signal, &action, nullptr);
}

}  // namespace port::platform
