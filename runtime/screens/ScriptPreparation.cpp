#include "ScriptPreparation.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "AnimationLookup.hpp"
#include "GlobalScripts.hpp"
#include "Players.hpp"
#include "ScriptLimits.hpp"

namespace port {
namespace {

// Bytes of a known command's text that cost one of the steps, which are some 100 ns here.
constexpr std::size_t kLookedUpPerStep = 256;

class Preparation {
  public:
    explicit Preparation(Scripts& scripts) : scripts_(scripts) {}

    void add(const generated::Character* model) {
        if (model != nullptr && known_.insert(model).second) models_.push_back(model);
    }

    // Whom the slots of players behind the first have chosen, of those who have joined or have not.
    void addChosen(const World& world, int places, bool joined) {
        const auto models = selectableModels();
        if (models.empty()) return;
        const int last = static_cast<int>(models.size()) - 1;
        for (int slot = 1; slot < std::min(kMostPlayers, places); ++slot) {
            const PlayerSlot& place = world.slots[static_cast<std::size_t>(slot)];
            const int chosen = std::clamp(place.selectIndex, 0, last);
            if (place.joined == joined) add(models[static_cast<std::size_t>(chosen)]);
        }
    }

    void hook(const char* path) {
        if (left_ > 0) pay(scripts_.prepareHook(path));
    }

    void global(const char* path) {
        if (scripts_.has(path)) hook(path);
    }

    // The models that were added since the last time, and those that they bring along.
    void run() {
        for (; done_ < models_.size() && left_ > 0; ++done_) {
            hooks(*models_[done_]);
            frames(*models_[done_]);
            addCompany(*models_[done_]);
        }
    }

  private:
    void pay(std::size_t steps) { left_ -= static_cast<std::int64_t>(steps); }

    void hooks(const generated::Character& model) {
        for (const char* path : {model.onSpawnScript,
                                 model.thinkScript,
                                 model.updateScript,
                                 model.onDrawScript,
                                 model.keyScript,
                                 model.onMoveXScript,
                                 model.onMoveZScript,
                                 model.onBlockSScript,
                                 model.onBlockZScript,
                                 model.onBlockWScript,
                                 model.onEntityCollisionScript,
                                 model.onDoAttackScript,
                                 model.didHitScript,
                                 model.didBlockScript,
                                 model.takeDamageScript,
                                 model.onPainScript,
                                 model.onFallScript,
                                 model.onDeathScript,
                                 model.onKillScript,
                                 model.onModelCopyScript}) {
            hook(path);
        }
    }

    void frames(const generated::Character& model) {
        for (std::size_t a = 0; a < model.animationCount; ++a) {
            const generated::Animation& animation = model.animations[a];
            const char* last = nullptr;
            for (std::size_t f = 0; f < animation.frameCount && left_ > 0; ++f) {
                const char* const command = animation.frames[f].animationCommand;
                // Most frames have the command of the one before, or none.
                if (last != nullptr && std::strcmp(command, last) == 0) continue;
                last = command;
                pay(scripts_.prepareFrameCommand({.helper = model.animationScript,
                                                  .inlineScript = animation.inlineScript,
                                                  .command = command}));
                pay(1 + std::strlen(animation.inlineScript) / kLookedUpPerStep);
            }
        }
    }

    void addCompany(const generated::Character& model) {
        for (std::size_t i = 0; i < model.weaponCount; ++i) add(findCharacter(model.weapons[i]));
        add(findCharacter(model.subEntityModel));
        for (std::size_t a = 0; a < model.animationCount; ++a) {
            add(findCharacter(model.animations[a].custEntity));
        }
    }

    Scripts& scripts_;
    std::vector<const generated::Character*> models_;  // in the order of their coming
    std::size_t done_ = 0;                             // of those
    std::unordered_set<const generated::Character*> known_;
    std::int64_t left_ = script::kPreparingSteps;
};

}  // namespace

void prepareScripts(Scripts& scripts, const World& world, int places) {
    Preparation preparation(scripts);
    for (const char* path : kKeyScripts) preparation.global(path);
    preparation.global(kKeyAllScript);
    preparation.add(world.player1.model);
    for (const RuntimeCoopPlayer& player : world.coop) preparation.add(player.model);
    // The others of a new game come when its stage has been loaded.
    preparation.addChosen(world, places, true);
    for (const generated::Character* model : world.stage.spawnModels) preparation.add(model);
    const generated::Stage& stage = *world.stage.row;
    for (std::size_t i = 0; i < stage.spawnCount; ++i) {
        preparation.add(findCharacter(stage.spawns[i].item));
    }
    preparation.run();
    for (std::size_t i = 0; i < stage.spawnCount; ++i) {
        preparation.hook(stage.spawns[i].spawnScript);
    }
    for (const char* path : kJoinScripts) preparation.global(path);
    preparation.global(kJoinAllScript);
    preparation.addChosen(world, places, false);
    preparation.run();
    // These run in the first pass, which the loading holds up in any case.
    preparation.global(kUpdateScript);
    preparation.global(kUpdatedScript);
}

}  // namespace port
