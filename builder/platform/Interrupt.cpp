#include "platform/Interrupt.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "platform/RemoveTree.hpp"
#include "platform/ToolProcess.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct Watch {
    std::mutex mutex;  // held by the writer
    std::atomic<bool> interrupted{false};
    bool started = false;
    std::vector<fs::path> folders;
};

// Never destroyed: an interrupt may come while the program's statics go.
Watch& watch() {
    static Watch& only = *new Watch;
    return only;
}

// For who holds the mutex.
void startWatch() {
    if (!watch().started) watchForInterrupts();
    watch().started = true;
}

}  // namespace

InterruptHold::InterruptHold() : lock_(watch().mutex) {
    letIn();
}

bool InterruptHold::isAwaited() {
    return watch().interrupted;
}

void InterruptHold::letIn() {
    if (!isAwaited()) return;
    lock_.unlock();
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

void InterruptHold::removeOnInterrupt(const fs::path& folder) {
    startWatch();
    watch().folders.push_back(folder);
}

void InterruptHold::forget(const fs::path& folder) {
    std::vector<fs::path>& folders = watch().folders;
    folders.erase(std::remove(folders.begin(), folders.end(), folder), folders.end());
}

void startInterruptWatch() {
    const InterruptHold hold;
    startWatch();
}

void cleanUpForInterrupt() {
    watch().interrupted = true;
    endTool();
    watch().mutex.lock();
    for (const fs::path& folder : watch().folders) removeTree(folder);
}

}  // namespace tindrel
