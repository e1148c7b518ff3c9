#pragma once

// What must be gone when the user interrupts the program (Ctrl+C, a closed terminal, a polite
// kill): temporary folders, and the outside tool that fills them.

#include <filesystem>
#include <mutex>

namespace tindrel {

// Whoever writes into such a folder holds one of these: an interrupt waits until it ends or lets
// the interrupt in, so that nothing is written behind the back of the removal. Does not nest.
class InterruptHold {
  public:
    InterruptHold();
    InterruptHold(const InterruptHold&) = delete;
    InterruptHold& operator=(const InterruptHold&) = delete;
    ~InterruptHold() = default;

    // Whether an interrupt waits.
    [[nodiscard]] static bool isAwaited();
    // To be called often in long work. Does not return when an interrupt waits. No file or listing
    // of what goes with the program is open then: not every system removes what is in use.
    void letIn();

    // The folder goes with the program from now on, or no longer. The first call starts the watch.
    void removeOnInterrupt(const std::filesystem::path& folder);
    void forget(const std::filesystem::path& folder);

  private:
    std::unique_lock<std::mutex> lock_;
};

// Starts the watch without a folder, for an outside program that must not outlive this one. Not for
// who has an InterruptHold.
void startInterruptWatch();

// For the system's side: ends the running tool, waits for the holder, removes the folders. Nobody
// gets a hold after that, so that the program can only end.
void cleanUpForInterrupt();

// Arranges for cleanUpForInterrupt() before the program ends by an interrupt. One per system.
void watchForInterrupts();

}  // namespace tindrel
