#pragma once

// Keeping a port up to date while its game is being worked on.

#include <filesystem>
#include <functional>

#include "platform/Console.hpp"

namespace tindrel {

struct WatchOrder {
    std::filesystem::path game;  // as prepareInput takes it
    std::filesystem::path port;
    bool run = false;        // start the port after each build, in place of the one that runs
    bool asWritten = false;  // GameReader's
};

// Converts and compiles at once and after each change, until `goOn`, which is asked several times a
// second, says no: kSuccess then. What a later change breaks is told and waited for; a game or port
// that is no good from the start ends it with kNoInput, kNoData, kRefused or kNoCmake.
[[nodiscard]] int watchGame(
    const WatchOrder& order, const Console& console,
    const std::function<bool()>& goOn = [] { return true; });

}  // namespace tindrel
