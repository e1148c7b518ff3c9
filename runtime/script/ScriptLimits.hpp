#pragma once

// What scripts may take of the machine that they run on. Scripts come from anywhere: each limit
// stands far above what real games need, and is reached in bounded time and memory.

#include <cstddef>
#include <cstdint>

namespace port::script {

// --- Steps: about an instruction each, 5 ns.

// All scripts of one pass of the loop, about a tenth of a second: with all its scripts at their
// worst a game is slow, but answers. The hooks of real games take below a hundredth of it.
inline constexpr std::int64_t kPassSteps = 20'000'000;
// Scripts that run while a stage is loaded: there a pause of half a second is no harm.
inline constexpr std::int64_t kLoadingSteps = 100'000'000;
// What may be compiled ahead while a stage is loaded, about a tenth of a second, and then the
// script that is at hand; the others are compiled when they first run.
inline constexpr std::int64_t kPreparingSteps = 1'000'000;
// Bytes of a copied, joined or compared text that cost one step.
inline constexpr std::size_t kTextPerStep = 8;
// Bytes of source read and of expanded text kept, and tokens compiled, that cost one step. Below
// their true price, which is paid once for each script: its first run must not fail for it.
inline constexpr std::size_t kSourcePerStep = 32;
inline constexpr std::size_t kExpandedPerStep = 4;
inline constexpr std::size_t kCompiledPerStep = 4;
// Steps that one element, named entry or variable costs, so that memory is bounded by the steps.
inline constexpr std::size_t kEntrySteps = 16;

// --- Running

// A loop that has run so often just stops: a runaway script loses time, and never the game.
inline constexpr std::int32_t kMaxRounds = 100'000;
// Functions inside each other, as games expect it; the next call ends the run.
inline constexpr std::size_t kMaxCalls = 64;
// Runs inside each other, by a host that runs a script while it serves one: each is a dozen calls
// deep on the stack of the process.
inline constexpr std::size_t kMaxRuns = 64;
// Longest text and largest array that a script can make; real ones stay below 1 KiB and 1,000.
inline constexpr std::size_t kMaxText = std::size_t{1} << 20U;
inline constexpr std::size_t kMaxArray = std::size_t{1} << 20U;

// Bytes of all values of all scripts together; real games hold below 1 MiB. A script that keeps
// more from pass to pass than it lets go then ends with an error, and the game goes on.
inline constexpr std::size_t kMaxMemory = std::size_t{256} << 20U;

// --- Compiling a function

// Brackets, blocks, statements and prefix operators inside each other: bounds the depth of calls
// in the compiler. Real scripts stay below 30.
inline constexpr int kMaxNesting = 200;
// A hostile switch can be compiled anew from each of its labels; real functions stay below 10,000
// instructions.
inline constexpr std::size_t kMaxCode = std::size_t{1} << 18U;
// Tokens that the searches for labels may pass, for the same reason.
inline constexpr std::size_t kMaxScanned = 10'000'000;
// Declared names of a function; real ones have below 50. Each call has a register for all of them.
inline constexpr std::size_t kMaxVariables = 4096;
// Arguments of one call; real ones have below 20. Those of calls inside each other stand in
// registers at the same time.
inline constexpr std::size_t kMaxArguments = 255;
// Registers and constants that an instruction can name.
inline constexpr std::size_t kMaxOperands = std::size_t{1} << 16U;
// At each level of nesting there may be the arguments of a call and a value for each of the ten
// levels of operators.
static_assert(kMaxVariables + kMaxNesting * (kMaxArguments + 10) < kMaxOperands);

// --- Preprocessing

// Bytes of expanded text of one script, and of source read for it: a script that includes or
// expands itself without end stops here with "preprocessor-size". Real ones stay below 2 MiB.
inline constexpr std::size_t kMaxExpandedText = std::size_t{16} << 20U;
inline constexpr std::size_t kMaxConsumedText = 16 * kMaxExpandedText;
// A longer file is no script.
inline constexpr std::size_t kMaxSourceFile = kMaxExpandedText;
// Files open at once; beyond it a file's text stands unexpanded with "preprocessor-depth".
inline constexpr int kMaxIncludeDepth = 24;
// Passes of macros over one line: one that expands to itself stops here.
inline constexpr int kMaxPasses = 16;
// What macros may add to one line; real ones add below 1 KiB.
inline constexpr std::size_t kMaxLineGrowth = std::size_t{1} << 22U;
// What the look-up of an include, and each segment that it repeats, weigh against kMaxConsumedText,
// about their time.
inline constexpr std::size_t kIncludeWeight = 16;
// Complaints that are listed and logged.
inline constexpr std::size_t kMaxReports = 1000;
// A longer include is expanded again each time; so many fit below kMaxExpandedText.
inline constexpr std::size_t kMaxRemembered = std::size_t{1} << 20U;

// --- Keeping

// Bytes of tokens, texts and code of all scripts of a game, about; what comes later does not run.
// A token of text weighs some 40 bytes, and the largest games have below 20 MiB of text.
inline constexpr std::size_t kMaxLibrary = std::size_t{2} << 30U;
// Beyond this nothing is made ahead of its first run, so that what never runs leaves room for what
// does.
inline constexpr std::size_t kMaxPrepared = kMaxLibrary / 8;

// --- Logging

// What one run of the port may log of calls that nothing answers: a script that makes some in every
// tick must not fill a player's disk.
inline constexpr std::size_t kMaxLogBytes = std::size_t{8} << 20U;

// What they may print in a run of the port by `log` and the like, for the same reason.
inline constexpr std::size_t kMaxPrintedBytes = std::size_t{8} << 20U;

// --- The functions of the host

// Rows of a table, or actors, looked at for one step.
inline constexpr std::size_t kScannedPerStep = 4;
// A file that is looked for or decoded, some 0.1 ms; and a piece of music, which is decoded whole
// at each call.
inline constexpr std::size_t kFileSteps = 20'000;
inline constexpr std::size_t kMusicSteps = 1'000'000;
// A file that is written, renamed and put into folders that are made, some ms.
inline constexpr std::size_t kSaveSteps = 500'000;
// What drawing costs: each command, each letter, each tint that is worked out, and in eighths of a
// step the pixels that are put down, mixed with others, or scaled and turned.
inline constexpr std::size_t kDrawSteps = 60;
inline constexpr std::size_t kLetterSteps = 12;
inline constexpr std::size_t kTintSteps = 500;
inline constexpr std::size_t kPixelEighths = 1;
inline constexpr std::size_t kMixedPixelEighths = 8;
inline constexpr std::size_t kScaledPixelEighths = 32;
// What comes into the world: an entity, a projectile.
inline constexpr std::size_t kSpawnSteps = 1000;
// The longest name of something that a script spawns.
inline constexpr std::size_t kMaxSpawnName = 256;
// Numbers of `setscriptvar`, from 0 on.
inline constexpr int kMaxScriptVariables = 1024;
// Sounds with a number; games have some hundreds.
inline constexpr std::size_t kMaxSamples = 4096;

}  // namespace port::script
