#pragma once

// Player 1 and co-op players of a model that each test makes its own, on an empty stage.

#include <deque>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "CoopPlayers.hpp"
#include "Player1.hpp"
#include "PlayerInput.hpp"
#include "Roster.hpp"
#include "WorldTrial.hpp"

namespace port {

struct PlayerTrial : WorldTrial {
    std::deque<std::vector<generated::Frame>> frames;
    std::vector<generated::Animation> animations;
    generated::Character model;
    generated::Stage stage;
    generated::Geometry hole{};

    PlayerTrial() {
        for (const char* name :
             {"idle", "walk", "run", "jump", "jumpattack", "attack1", "attack2", "fall", "rise",
              "land", "grab", "throw", "block", "death", "freespecial2"}) {
            animations.push_back(*exactAnimation(player.model, "walk"));
            animations.back().name = name;
            frames.emplace_back(6, *animations.back().frames);
            for (generated::Frame& frame : frames.back()) frame.delay = 1;
            animations.back().frames = frames.back().data();
            animations.back().frameCount = frames.back().size();
        }
        model = *player.model;
        model.onDrawScript = model.onSpawnScript = model.animationScript = "";
        model.animations = animations.data();
        model.animationCount = animations.size();
        model.speed = 3;
        model.jumpHeight = 4;
        model.comboDelay = 0;
        model.subjectToMinZ = model.subjectToMaxZ = false;
        stage = *world.stage.row;
        stage.zMin = 100;
        stage.zMax = 300;
        stage.playerStartX = 30;
        stage.playerStartZ = 220;
        world.stage.row = &stage;
        world.stage.length = 1000;
        stand(player);
    }

    void stand(PlayerActor& actor) {
        actor.model = &model;
        startIdle(actor);
        actor.worldX = 150;
        actor.z = 200;
        actor.altitude = 0;
        actor.facing = 1;
    }
    RuntimeCoopPlayer& addCoop(int playerSlot = 1) {
        stand(joinCoop("hero"));
        RuntimeCoopPlayer& coop = world.coop.back();
        coop.playerSlot = playerSlot;
        coop.gamepadId = playerSlot;
        return coop;
    }
    generated::Animation& animation(std::string_view name) {
        return const_cast<generated::Animation&>(*exactAnimation(&model, name));
    }
    static std::string playing(const Actor& actor) { return actor.animation.animation()->name; }

    // What is held from the next tick on, keys and buttons of the pads.
    void hold(std::initializer_list<int> keys, unsigned player1Buttons = 0,
              unsigned coopButtons = 0) {
        HeldInput held;
        for (const int key : keys) held.keys[static_cast<std::size_t>(key)] = true;
        for (PadState& pad : held.pads) {
            pad.connected = true;
            pad.buttons = static_cast<std::uint16_t>(coopButtons);
        }
        held.pads[0].buttons = static_cast<std::uint16_t>(player1Buttons);
        next = held;
    }
    // A tick of the players; what is pressed is pressed in its first one.
    void ticks(int count = 1) {
        quietly([&] {
            for (int i = 0; i < count; ++i) {
                input = nextInput(input, next);
                ++world.tick;
                updatePlayer(tick);
                updateCoopPlayers(tick);
                updateRoster(world);
            }
        });
    }
    // Holds for a tick, then lets go, which the next tick notices.
    void press(std::initializer_list<int> keys, unsigned coopButtons = 0) {
        hold(keys, 0, coopButtons);
        ticks();
        hold({});
    }
    void makeHole() {
        hole.kind = "hole";
        hole.w = 1000;
        hole.h = 400;
        stage.geometry = &hole;
        stage.geometryCount = 1;
        world.stage.geometryKinds = {GeometryKind::Hole};
        model.subjectToHole = true;
    }

    HeldInput next;
};

}  // namespace port
