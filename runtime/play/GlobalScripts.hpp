#pragma once

// The scripts of a game that belong to no model and no stage, below its data root. Each may be
// absent.

#include <array>

#include "World.hpp"

namespace port {

// Of each pass, before and after all that happens in it.
inline constexpr const char* kUpdateScript = "scripts/update.c";
inline constexpr const char* kUpdatedScript = "scripts/updated.c";
// Of a player's keys and of one who joins in the middle of a game, by slot, and of all of them.
// Nobody joins as the first.
inline constexpr std::array<const char*, kMostPlayers> kKeyScripts = {
    "scripts/key1.c", "scripts/key2.c", "scripts/key3.c", "scripts/key4.c"};
inline constexpr const char* kKeyAllScript = "scripts/keyall.c";
inline constexpr std::array<const char*, kMostPlayers> kJoinScripts = {
    "", "scripts/join2.c", "scripts/join3.c", "scripts/join4.c"};
inline constexpr const char* kJoinAllScript = "scripts/joinall.c";

}  // namespace port
