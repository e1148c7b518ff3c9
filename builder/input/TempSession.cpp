#include "input/TempSession.hpp"

#include <chrono>
#include <stdexcept>
#include <string>

#include "platform/FileStatus.hpp"
#include "platform/Interrupt.hpp"
#include "platform/Process.hpp"
#include "platform/RemoveTree.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

fs::path sessionsFolder() {
    std::error_code error;
    fs::path base = fs::temp_directory_path(error);
    if (error) base = fs::current_path();
    // Outside tools get these paths, and must not take one for an option.
    fs::path folder = tindrel::absolute(base) / "Tindrel-Builder";
    // Shared by all users of the machine, like the temporary folder itself.
    if (fs::create_directories(folder, error)) {
        fs::permissions(folder, fs::perms::all | fs::perms::sticky_bit, error);
    }
    return folder;
}

}  // namespace

fs::path createTempSession() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto ticks = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    fs::path session =
        sessionsFolder() / ("session-" + std::to_string(ticks) + '-' + std::to_string(processId()));
    InterruptHold hold;
    hold.removeOnInterrupt(session);
    std::error_code error;
    if (!fs::create_directories(session, error) || error) {
        hold.forget(session);
        throw std::runtime_error("Nao foi possivel criar area temporaria: " + displayPath(session));
    }
    fs::permissions(session, fs::perms::owner_all, error);
    return session;
}

void removeTempSession(const fs::path& session) noexcept {
    try {
        InterruptHold hold;
        removeTree(session);
        hold.forget(session);
    } catch (const std::exception&) {
        // Only a lock that the system refuses leads here.
    }
}

}  // namespace tindrel
