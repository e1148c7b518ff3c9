#pragma once

// A saved game as it stands in the file: lines of key=value. What was not saved is absent.

#include <array>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace port {

struct SavedPlayer {
    std::string model;
    std::optional<int> alive, health, mp, palette, lives, credits, weaponUses, weaponDrops;
    std::optional<std::int64_t> score;
    std::string weapon, weaponItem;  // models; empty for none
    bool operator==(const SavedPlayer&) const = default;
};

struct SavedGame {
    static constexpr std::size_t kPlayers = 4;

    int stage = 0;
    int chapter = 0;                // written, and not read back
    int activePlayers = 1;          // 1 to 4
    std::optional<int> joinedMask;  // 1 to 15, bit 0 for player 1
    std::optional<int> lives, credits;
    // By slot; a file holds player 1 and those that it says something of.
    std::array<std::optional<SavedPlayer>, kPlayers> players;
    bool operator==(const SavedGame&) const = default;
};

// The lines of the file in its order, without those of what is absent.
void writeSavedGame(std::ostream& out, const SavedGame& game);

// Whatever the lines say that can be read; the rest is left at its default. Never fails.
[[nodiscard]] SavedGame readSavedGame(std::istream& in);

}  // namespace port
