#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

#include "platform/Interrupt.hpp"

namespace tindrel {
namespace {

// SIGPIPE is among them: a reader of our output that closes early ends the program, too.
constexpr int kSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE};

int g_pipe[2] = {-1, -1};

void onSignal(int number) {
    const int before = errno;
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe means that an interrupt is under way already.
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, 1);
    errno = before;
}

void waitAndEnd() {
    unsigned char byte = 0;
    while (::read(g_pipe[0], &byte, 1) != 1) {
        if (errno != EINTR) return;
    }
    const int number = byte;
    cleanUpForInterrupt();
    // The program dies of the signal itself, as its parent expects.
    ::signal(number, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, number);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(number);
    ::_exit(128 + number);
}

}  // namespace

// A handler may do next to nothing, so it only wakes a thread. The signals stay unblocked, as a
// thread in sigwait would not allow: children inherit a blocked signal and could not be stopped.
void watchForInterrupts() {
    if (::pipe(g_pipe) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : g_pipe) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(g_pipe[1], F_SETFL, O_NONBLOCK);

    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread(waitAndEnd).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);

    for (const int number : kSignals) {
        struct sigaction old {};
        ::sigaction(number, nullptr, &old);
        // What was ignored from the start, as under nohup, stays ignored.
        if (old.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = onSignal;
        action.sa_flags = SA_RESTART;
        // One at a time, so that the first is the one that counts.
        sigfillset(&action.sa_mask);
        ::sigaction(number, &action, nullptr);
    }
}

}  // namespace tindrel
