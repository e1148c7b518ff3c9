#pragma once

namespace port {

// What a port's process ends with.
enum ExitCode {
    kRanWell = 0,
    kStartFailed = 1,        // or the run below ended abnormally
    kWindowLost = 70,        // a window that closed within three passes
    kSmokeNotStarted = 72,   // a game that checks itself could not begin,
    kSmokeEndedEarly = 73,   // ended before its frames were played,
    kSmokeStuck = 74,        // or left gameplay for good
    kAutoplayStuck = 75,     // a bot that got no further,
    kAutoplayGameOver = 76,  // or lost all its lives
    kReplayDiffers = 77,     // a recording came to another world
    kReportNotWritten = 78   // all went well but for the report of it
};

}  // namespace port
