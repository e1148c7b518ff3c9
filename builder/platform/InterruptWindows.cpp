#include <windows.h>

#include "platform/Interrupt.hpp"

namespace tindrel {
namespace {

// The system calls this on a thread of its own; FALSE passes the event on to the default, which
// ends the program.
BOOL WINAPI onConsoleEvent(DWORD) {
    cleanUpForInterrupt();
    return FALSE;
}

}  // namespace

void watchForInterrupts() {
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

}  // namespace tindrel
