#pragma once

// What the compiling of a game's scripts found, as text.

#include <filesystem>
#include <string>

#include "analysis/BrokenScripts.hpp"

namespace tindrel {

// "Compiled 23 scripts and 140 animation commands: 2 places break off."
[[nodiscard]] std::string summaryOf(const ScriptCheckup& checkup);

// "`dash` breaks off at `}`: expected ) near '}'"
[[nodiscard]] std::string faultOf(const BrokenScript& broken);

// "3 hooks and 1 @cmd line come there"; that nothing does where that is so.
[[nodiscard]] std::string costOf(const BrokenScript& broken);

// Throws ("write") for a full disk.
void writeScriptCheck(const ScriptCheckup& checkup, const std::filesystem::path& file);

}  // namespace tindrel
