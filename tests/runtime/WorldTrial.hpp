#pragma once

// A world on the tables of the trial game, and all that a step of a tick asks for.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "AnimationLookup.hpp"
#include "Players.hpp"
#include "StageRules.hpp"
#include "TempFolder.hpp"
#include "Tick.hpp"

namespace port {

struct WorldTrial : testing::Test {
    tindrel::test::TempFolder folder;
    World world;
    TickInput input;
    RuntimeConfig config;
    Scripts scripts;
    Events events;
    PlayerDrive drive = PlayerDrive::Devices;
    Tick tick{world, drive, input, config, scripts, events};
    Player1& player = world.player1;
    std::string log, warnings;

    // Player 1, the hero, at the start of the first stage.
    WorldTrial() {
        scripts.open(folder.path(), std::filesystem::path(TRIAL_PORT) / "assets" / "openbor-data",
                     nullptr);
        world.stage = freshStageRun(0);
        player.model = findCharacter("hero");
        startPlayers(tick, false);
    }

    template <class Call>
    void quietly(Call call) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        call();
        log = testing::internal::GetCapturedStdout();
        warnings = testing::internal::GetCapturedStderr();
    }

    // Starts an animation of the actor's own.
    static void play(Actor& actor, const char* animation) {
        actor.animation.setAnimation(exactAnimation(actor.model, animation));
        actor.lastFrame = kNoFrame;
    }
    // A co-op player of that model, in the next slot.
    RuntimeCoopPlayer& joinCoop(const char* model) {
        const int slot = static_cast<int>(world.coop.size()) + 1;
        auto joined = freshPlayer<RuntimeCoopPlayer>(slot, kFirstCoopHandle + world.coop.size());
        joined.model = findCharacter(model);
        joined.playerSlot = slot;
        startIdle(joined);
        return world.coop.emplace_back(std::move(joined));
    }
    RuntimeEntity& addEntity(const char* model) {
        RuntimeEntity entity;
        entity.model = findCharacter(model);
        entity.animation.setAnimation(findAnimation(entity.model, "idle"));
        return *world.entities.add(std::move(entity));
    }
    // A variable that all scripts share, as text; empty if it is not there.
    std::string global(const std::string& name) {
        const auto& globals = scripts.machine().globals();
        const auto found = globals.find(name);
        if (found == globals.end()) return "";
        const auto* text = std::get_if<ScriptText>(&found->second);
        const auto* number = std::get_if<double>(&found->second);
        return text ? text->str() : number ? std::to_string(static_cast<int>(*number)) : "?";
    }
};

}  // namespace port
