#pragma once

namespace tindrel {

// What a run of the builder ends with.
enum ExitCode {
    kSuccess = 0,
    kUsage = 1,    // the usage was printed
    kNoInput = 2,  // no such input, or it could not be prepared
    kNoData = 3,   // no data/ folder in it

    kNothingFound = 4,      // command line: a game to test without models and stages
    kRefusedInDialogs = 4,  // dialogs: the output lies inside the game's data
    kRefused = 5,           // command line: the same

    kFailure = 10,  // the file system or anything else unforeseen

    // A port was to be compiled.
    kNoCmake = 20,  // or no project file
    kNotConfigured = 21,
    kNotCompiled = 22,
    kNoExecutable = 23,
    kExecutableNotCopied = 24,

    // A port was to be packed.
    kNoPort = 30,
    kFoldersNotPacked = 31,
    kExecutableNotPacked = 32,
    kNoZip = 33,

    kChecksFailed = 40,  // a port was to be tested
};

}  // namespace tindrel
