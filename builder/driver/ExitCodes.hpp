#pragma once

namespace tindrel {

// What the driver itself ends with; build, package and port test add their own.
enum ExitCode {
    kSuccess = 0,
    kUsage = 1,
    kNoInput = 2,
    kNoData = 3,
    kNothingFound = 4,      // command line: neither models nor stages
    kRefusedInDialogs = 4,  // dialogs: output inside the game's data
    kRefused = 5,           // command line: output inside the game's data
    kFailure = 10,
};

}  // namespace tindrel
