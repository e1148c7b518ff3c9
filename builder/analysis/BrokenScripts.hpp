#pragma once

// What of a game's scripts the port's machine cannot compile, and what that costs.

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/ScriptKeys.hpp"
#include "reader/GameReader.hpp"

namespace tindrel {

struct AnimationCommandAudit;

// Something of the game that runs a script.
struct ScriptCaller {
    std::string_view keyword;  // "thinkscript", "@cmd"; for a script run by its name that name
    std::string file;          // relative to the project root, generic form
    std::uint64_t line = 0;    // 0 where it is not known
    std::string script{};      // that a hook's line names, lower case; empty for others
};

// A place at which a run of a script ends with an error.
struct BrokenScript {
    std::string file;        // relative to the project root, generic form
    std::uint64_t line = 0;  // 0 for a whole file
    std::string function;    // lower case; empty for a whole file, and for a line's own text
    std::string token;       // empty at the end of the text
    std::string error;
    std::string_view cure{};                // what its author can do; empty where nothing is known
    std::vector<ScriptCaller> callers;      // that come there, the first kMaxCallers
    std::uint64_t hooks = 0, commands = 0;  // how many do, "@cmd" lines apart
};
inline constexpr std::size_t kMaxCallers = 40;

struct ScriptCheckup {
    std::uint64_t scripts = 0, commands = 0;  // distinct ones that were compiled
    std::uint64_t unchecked = 0;              // that came too late: the limit of work was reached
    std::vector<BrokenScript> broken;         // by file and line
    bool cutShort = false;                    // there is more that breaks off
    std::set<std::string> files;              // that scripts are read from
    std::vector<UnansweredKey> unanswered;    // the most frequent first
};

// Compiles every script that the game can reach, with its includes, and the text of every
// animation command behind its helper. Nothing is run.
[[nodiscard]] ScriptCheckup checkScripts(GameReader& game,
                                         const std::deque<AnimationCommandAudit>& commands);

}  // namespace tindrel
