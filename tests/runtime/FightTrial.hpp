#pragma once

// Fighters made for a test: a model of their own, a body of 20 by 40, and attacks of a single frame
// that reach 30 pixels ahead.

#include <deque>
#include <string>
#include <vector>

#include "WorldTrial.hpp"

namespace port {

struct FightTrial : WorldTrial {
    struct Cast {
        generated::Character row;
        std::deque<generated::Frame> frames;
        std::vector<generated::Animation> animations;
        std::vector<generated::Defense> defenses;
    };
    std::deque<Cast> casts;
    Cast* hero;

    // Player 1 stands at 100 and looks right.
    FightTrial() {
        hero = &cast("player", {"idle", "block", "pain", "fall", "death"});
        hero->row.name = "Hero";
        scripts.open(folder.path(), folder.path() / "data", nullptr);
        player.model = &hero->row;
        player.health = player.maxHealth = 100;
        stand(player, 100, 1);
        world.stage.length = 1000;
    }

    Cast& cast(const char* type, std::initializer_list<const char*> animations) {
        Cast& cast = casts.emplace_back();
        cast.row = *findCharacter("robot");
        cast.row.type = type;
        cast.row.blockOdds = -1;
        cast.row.knockdownCount = 0;
        cast.animations.reserve(16);
        cast.row.animationCount = 0;
        for (const char* name : animations) animate(cast, name);
        return cast;
    }
    generated::Animation& animate(Cast& cast, const char* name) {
        generated::Frame& frame =
            cast.frames.emplace_back(findCharacter("robot")->animations->frames[0]);
        frame.offsetX = frame.offsetY = 0;
        frame.hasBBox = true;
        frame.bbox = {-10, -40, 20, 40};
        generated::Animation& animation =
            cast.animations.emplace_back(findCharacter("robot")->animations[0]);
        animation.name = name;
        animation.frames = &frame;
        animation.frameCount = 1;
        cast.row.animations = cast.animations.data();
        cast.row.animationCount = cast.animations.size();
        return animation;
    }
    // Its attack reaches from the actor's place 30 pixels ahead.
    generated::Frame& arm(Cast& cast, const char* name, int damage = 10) {
        animate(cast, name);
        generated::Frame& frame = cast.frames.back();
        frame.hasAttack = true;
        frame.attack = {};
        frame.attack.x = 0, frame.attack.y = -40, frame.attack.w = 30, frame.attack.h = 40;
        frame.attack.damage = damage;
        frame.attack.landingType = -1;
        frame.dropVy = -3;
        return frame;
    }
    static generated::Defense defense(const char* type) {
        return {type, 1, 0, 1, 0, 0, 0, false, 0, false};
    }
    static void defend(Cast& cast, std::vector<generated::Defense> defenses) {
        cast.defenses = std::move(defenses);
        cast.row.defenses = cast.defenses.data();
        cast.row.defenseCount = cast.defenses.size();
    }

    static void stand(Actor& actor, float x, int facing) {
        actor.worldX = x;
        actor.z = 200;
        actor.facing = facing;
        play(actor, "idle");
    }
    RuntimeEntity& enter(Cast& cast, float x, int facing = -1) {
        RuntimeEntity entity;
        entity.model = &cast.row;
        stand(entity, x, facing);
        return *world.entities.add(std::move(entity));
    }
    RuntimeCoopPlayer& join(float x, int facing = 1) {
        RuntimeCoopPlayer& mate = joinCoop("hero");
        mate.model = &hero->row;
        mate.health = mate.maxHealth = 100;
        stand(mate, x, facing);
        return mate;
    }
    // Runs that attack from its first tick.
    static void attack(Actor& actor, const char* name) {
        play(actor, name);
        actor.attackTicks = 10;
        actor.attackHasHit = false;
    }
    // A script that writes what `what`, an expression, gives at the end of the global "heard".
    const char* hear(const char* file, const std::string& what) {
        folder.write(std::string("data/scripts/") + file,
                     "void main(){ setglobalvar(\"heard\", getglobalvar(\"heard\") + (" + what +
                         ") + \" \"); }");
        return paths.emplace_back(std::string("scripts/") + file).c_str();
    }
    std::deque<std::string> paths;

    [[nodiscard]] static std::string running(const Actor& actor) {
        return actor.animation.animation() ? actor.animation.animation()->name : "";
    }
};

}  // namespace port
