#include "Replay.hpp"

#include <algorithm>
#include <sstream>

#include "AnimationLookup.hpp"
#include "ExitCodes.hpp"
#include "Log.hpp"
#include "Progress.hpp"
#include "StageLoading.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

SavedGame savedGameOf(const std::string& lines) {
    std::istringstream in(lines);
    return readSavedGame(in);
}

}  // namespace

void Replay::configure(RuntimeConfig& config) const {
    std::istringstream settings(recording_.settings);
    readRuntimeConfig(settings, config);
}

bool Replay::start(Game& game) {
    World& world = game.world;
    game.findSave = [this] { return findSave(); };
    for (const RecordedStart& start : recording_.starts) {
        world.player1.model = findCharacter(start.model.c_str());
        if (!world.player1.model || start.stage >= generated::kStageCount) {
            warnLine("REPLAY FAIL: the game has no player ", start.model, " or no stage ",
                     start.stage);
            return false;
        }
        for (std::size_t slot = 0; slot < world.slots.size(); ++slot) {
            world.slots[slot] = {};
            world.slots[slot].joined = start.joined[slot];
            world.slots[slot].selectIndex = start.select[slot];
        }
        world.stage.index = start.stage;
        game.drive = start.drive;
        game.skipsMenus = start.skipsMenus;
        game.extraLives = start.extraLives;
        game.frontend.menuIndex = start.menuRow;
        game.frontend.optionIndex = start.optionRow;
        game.frontend.controlsIndex = start.controlsRow;
        game.frontend.completionCount = start.completions;
        if (start.save.empty()) {
            beginGame(game, start.keepLooks);
        } else {
            resumeGame(game, savedGameOf(start.save));
        }
    }
    return true;
}

std::optional<SavedGame> Replay::findSave() const {
    const auto found = std::ranges::find(recording_.saves, pass_, &Recording::Save::pass);
    if (found == recording_.saves.end()) return std::nullopt;
    return savedGameOf(found->lines);
}

TickInput Replay::next(const Game&) {
    ++pass_;
    const auto& changes = recording_.changes;
    for (; nextChange_ < changes.size() && changes[nextChange_].pass <= pass_; ++nextChange_) {
        input_ = changes[nextChange_].input;
    }
    return input_;
}

bool Replay::goesOn(const Game& game) {
    const auto& hashes = recording_.hashes;
    if (nextHash_ < hashes.size() && hashes[nextHash_].pass == pass_) {
        const Recording::Hash& recorded = hashes[nextHash_++];
        const std::uint64_t hash = game.hash();
        differs_ = recorded.hash != hash;
        if (differs_) {
            const std::string field = firstOtherField(game.runState(), recorded.fields);
            warnLine("REPLAY DIFFERS tick=", game.world.tick, " hash=", hashDigits(hash),
                     field.empty() ? "" : " field=", field);
        }
    }
    return !differs_ && pass_ < recording_.passes;
}

int Replay::result(const Game& game) {
    if (differs_) return kReplayDiffers;
    if (pass_ < recording_.passes) {
        warnLine("REPLAY FAIL: ended before its recording");
        return kReplayDiffers;
    }
    const std::uint64_t hash = game.hash();
    if (recording_.ended && recording_.endHash != hash) {
        warnLine("REPLAY DIFFERS at its end hash=", hashDigits(hash));
        return kReplayDiffers;
    }
    logLine("REPLAY OK passes=", pass_, " hash=", hashDigits(hash));
    return kRanWell;
}

}  // namespace port
