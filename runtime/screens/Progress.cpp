#include "Progress.hpp"

#include <algorithm>
#include <climits>
#include <sstream>
#include <system_error>

#include "AnimationLookup.hpp"
#include "FileBytes.hpp"
#include "Players.hpp"
#include "StageLoading.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

std::filesystem::path saveFile(const Game& game) {
    return game.root / "saves" / "slot1.sav";
}

std::filesystem::path unlockFile(const Game& game) {
    return game.root / "saves" / "unlocks.ini";
}

// What the player's own file holds.
std::optional<SavedGame> keptGame(const Game& game) {
    if (!game.ownProgress) return std::nullopt;
    const auto text = readSmallText(saveFile(game));
    if (!text) return std::nullopt;
    std::istringstream in(*text);
    return readSavedGame(in);
}

void writeProgress(const std::filesystem::path& file, std::string_view text) {
    std::error_code failed;
    std::filesystem::create_directories(file.parent_path(), failed);
    // The game goes on without.
    static_cast<void>(replaceFile(file, text));
}

const char* nameOf(const generated::Character* model) {
    return model ? model->name : "";
}

SavedPlayer saved(const PlayerActor& player) {
    return {.model = nameOf(player.model),
            .alive = player.alive ? 1 : 0,
            .health = player.health,
            .mp = player.mp,
            .palette = player.paletteMap,
            .lives = player.livesRemaining,
            .credits = player.creditsRemaining,
            .weaponUses = player.weaponUses,
            .weaponDrops = player.weaponDropsRemaining,
            .score = player.score,
            .weapon = nameOf(player.equippedWeapon),
            .weaponItem = nameOf(player.weaponItemModel)};
}

SavedGame savedGame(const World& world) {
    SavedGame save;
    save.stage = static_cast<int>(world.stage.index);
    save.chapter = world.stage.row->chapter;
    save.activePlayers = 1 + static_cast<int>(world.coop.size());
    save.lives = world.player1.livesRemaining;
    save.credits = world.player1.creditsRemaining;
    save.players[0] = saved(world.player1);
    unsigned mask = 1;
    for (const RuntimeCoopPlayer& player : world.coop) {
        if (player.playerSlot >= 1 && player.playerSlot < kMostPlayers) {
            mask |= 1U << static_cast<unsigned>(player.playerSlot);
        }
        save.players[static_cast<std::size_t>(std::clamp(player.playerSlot, 1, 3))] = saved(player);
    }
    save.joinedMask = static_cast<int>(mask);
    return save;
}

// The place of the saved name among those that can be chosen; the first for an unknown one.
int selectIndexOf(const SavedGame& save, std::size_t slot,
                  const std::vector<const generated::Character*>& models) {
    if (!save.players[slot]) return 0;
    const auto found = std::ranges::find_if(models, [&](const generated::Character* model) {
        return equalsFolded(model->name, save.players[slot]->model);
    });
    return found == models.end() ? 0 : static_cast<int>(found - models.begin());
}

void chooseSaved(Game& game, const SavedGame& save,
                 const std::vector<const generated::Character*>& models) {
    World& world = game.world;
    const unsigned active = (1U << static_cast<unsigned>(save.activePlayers)) - 1;
    const unsigned mask = static_cast<unsigned>(save.joinedMask.value_or(static_cast<int>(active)));
    int joined = 0;
    for (std::size_t slot = 0; slot < world.slots.size(); ++slot) {
        world.slots[slot].joined = slot == 0 || (mask >> slot & 1U) != 0;
        world.slots[slot].selectIndex = selectIndexOf(save, slot, models);
        joined += world.slots[slot].joined ? 1 : 0;
    }
    game.config.activePlayers = joined;
    world.player1.model = models[static_cast<std::size_t>(world.slots[0].selectIndex)];
    world.stage.index =
        std::min(static_cast<std::size_t>(std::max(0, save.stage)), generated::kStageCount - 1);
}

// The first of these that was saved.
void restoreCount(int& count, std::optional<int> own, std::optional<int> general) {
    if (own && *own >= 0) {
        count = *own;
    } else if (general) {
        count = *general;
    }
}

void restore(PlayerActor& player, const SavedPlayer& save, const SavedGame& game) {
    if (save.alive == 0) {
        player.alive = false;
        player.health = 0;
    } else if (save.health.value_or(0) > 0) {
        player.alive = true;
        player.health = std::clamp(*save.health, 1, std::max(1, player.maxHealth));
    }
    if (save.mp && *save.mp >= 0) player.mp = std::clamp(*save.mp, 0, std::max(0, player.maxMp));
    player.paletteMap = std::max(0, save.palette.value_or(0));
    player.score = std::max<std::int64_t>(0, save.score.value_or(0));
    restoreCount(player.livesRemaining, save.lives, game.lives);
    restoreCount(player.creditsRemaining, save.credits, game.credits);
    player.equippedWeapon = findCharacter(save.weapon.c_str());
    player.weaponUses = std::max(0, save.weaponUses.value_or(0));
    player.weaponItemModel = findCharacter(save.weaponItem.c_str());
    player.weaponDropsRemaining = save.weaponDrops.value_or(-1);
}

}  // namespace

void saveProgress(const Game& game) {
    const generated::Stage* stage = game.world.stage.row;
    if (!game.ownProgress || !stage || stage->canSave <= 0) return;
    std::ostringstream text;
    writeSavedGame(text, savedGame(game.world));
    writeProgress(saveFile(game), text.view());
}

bool loadProgress(Game& game) {
    const auto save = game.findSave ? game.findSave() : keptGame(game);
    return save && resumeGame(game, *save);
}

bool resumeGame(Game& game, const SavedGame& save) {
    const auto models = selectableModels();
    if (models.empty() || generated::kStageCount == 0) return false;
    game.recorder.resumes(save);
    chooseSaved(game, save, models);
    beginGame(game, true);
    World& world = game.world;
    // A player of whom the file says nothing has what it says of all.
    const auto ofSlot = [&save](std::size_t slot) {
        return save.players[slot].value_or(SavedPlayer{});
    };
    restore(world.player1, ofSlot(0), save);
    for (RuntimeCoopPlayer& player : world.coop) {
        restore(player, ofSlot(static_cast<std::size_t>(std::clamp(player.playerSlot, 1, 3))),
                save);
    }
    return true;
}

void loadUnlockProgress(Game& game) {
    game.frontend.completionCount = 0;
    std::istringstream in(readSmallText(unlockFile(game)).value_or(""));
    eachKeyValue(in, [&game](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (equalsFolded(key, "completion_count") || equalsFolded(key, "completions")) {
            game.frontend.completionCount = std::max(0, *value);
        }
    });
}

void saveUnlockProgress(const Game& game) {
    if (!game.ownProgress) return;
    writeProgress(unlockFile(game),
                  "completion_count=" + std::to_string(game.frontend.completionCount) + "\n");
}

void finishProgress(Game& game) {
    if (game.drive == PlayerDrive::SelfCheck) return;
    if (game.frontend.completionCount < INT_MAX) ++game.frontend.completionCount;
    saveUnlockProgress(game);
    if (!game.ownProgress) return;
    std::error_code absent;
    std::filesystem::remove(saveFile(game), absent);
}

}  // namespace port
