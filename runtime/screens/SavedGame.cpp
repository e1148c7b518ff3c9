#include "SavedGame.hpp"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <istream>
#include <ostream>
#include <string_view>

#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kVersion = 3;

struct NumberLine {
    std::string_view key;
    std::optional<int> SavedPlayer::*value;
};
struct TextLine {
    std::string_view key;
    std::string SavedPlayer::*value;
};

// The lines of a player, before and behind its score.
constexpr TextLine kModelLine = {"player", &SavedPlayer::model};
constexpr std::array<NumberLine, 4> kNumbersBeforeScore = {{{"alive", &SavedPlayer::alive},
                                                            {"health", &SavedPlayer::health},
                                                            {"mp", &SavedPlayer::mp},
                                                            {"palette", &SavedPlayer::palette}}};
constexpr std::string_view kScoreKey = "score";
constexpr std::array<NumberLine, 2> kNumbersBehindScore = {
    {{"lives", &SavedPlayer::lives}, {"credits", &SavedPlayer::credits}}};
constexpr TextLine kWeaponLine = {"weapon", &SavedPlayer::weapon};
constexpr NumberLine kUsesLine = {"weapon_uses", &SavedPlayer::weaponUses};
constexpr TextLine kItemLine = {"weapon_item", &SavedPlayer::weaponItem};
constexpr NumberLine kDropsLine = {"weapon_drops", &SavedPlayer::weaponDrops};

class PlayerWriter {
  public:
    PlayerWriter(std::ostream& out, const SavedPlayer& player, std::size_t number)
        : out_(out), player_(player), number_(number) {}

    void line(const TextLine& line) { key(line.key) << player_.*line.value << '\n'; }
    void line(const NumberLine& line) {
        if (const auto& number = player_.*line.value) key(line.key) << *number << '\n';
    }
    void score() {
        if (player_.score) key(kScoreKey) << *player_.score << '\n';
    }

  private:
    std::ostream& key(std::string_view name) { return out_ << name << number_ << '='; }

    std::ostream& out_;
    const SavedPlayer& player_;
    std::size_t number_;
};

std::optional<std::int64_t> leadingInt64(std::string_view text) {
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return std::nullopt;
    return value;
}

void readPlayerLine(SavedPlayer& player, std::string_view key, std::string_view text) {
    const auto number = leadingInt(text);
    const auto numberLine = [&](const NumberLine& line) {
        if (key == line.key && number) player.*line.value = number;
    };
    for (const NumberLine& line : kNumbersBeforeScore) numberLine(line);
    for (const NumberLine& line : kNumbersBehindScore) numberLine(line);
    numberLine(kUsesLine);
    numberLine(kDropsLine);
    for (const TextLine& line : {kModelLine, kWeaponLine, kItemLine}) {
        if (key == line.key) player.*line.value = text;
    }
    if (key != kScoreKey) return;
    if (const auto score = leadingInt64(text)) player.score = score;
}

void readLine(SavedGame& game, std::string_view key, std::string_view text) {
    const auto number = leadingInt(text);
    if (key == "stage" && number) game.stage = *number;
    if (key == "active_players" && number) game.activePlayers = std::clamp(*number, 1, 4);
    if (key == "joined_mask" && number) game.joinedMask = std::clamp(*number, 1, 15);
    if (key == "lives" && number) game.lives = std::max(0, *number);
    if (key == "credits" && number) game.credits = std::max(0, *number);
    if (key.empty()) return;
    const char last = key.back();
    if (last < '1' || last > '4') return;
    auto& player = game.players[static_cast<std::size_t>(last - '1')];
    if (!player) player.emplace();
    readPlayerLine(*player, key.substr(0, key.size() - 1), text);
}

}  // namespace

void writeSavedGame(std::ostream& out, const SavedGame& game) {
    out << "save_version=" << kVersion << "\nstage=" << game.stage << "\nchapter=" << game.chapter
        << "\nactive_players=" << game.activePlayers << '\n';
    if (game.joinedMask) out << "joined_mask=" << *game.joinedMask << '\n';
    if (game.lives) out << "lives=" << *game.lives << '\n';
    if (game.credits) out << "credits=" << *game.credits << '\n';
    for (std::size_t slot = 0; slot < game.players.size(); ++slot) {
        if (!game.players[slot]) continue;
        PlayerWriter writer(out, *game.players[slot], slot + 1);
        writer.line(kModelLine);
        for (const NumberLine& line : kNumbersBeforeScore) writer.line(line);
        writer.score();
        for (const NumberLine& line : kNumbersBehindScore) writer.line(line);
        writer.line(kWeaponLine);
        writer.line(kUsesLine);
        writer.line(kItemLine);
        writer.line(kDropsLine);
    }
}

SavedGame readSavedGame(std::istream& in) {
    SavedGame game;
    eachKeyValue(in,
                 [&](std::string_view key, std::string_view text) { readLine(game, key, text); });
    return game;
}

}  // namespace port
