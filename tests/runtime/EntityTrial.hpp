#pragma once

// A world with entities of models and on ground that a test makes up.

#include <deque>
#include <initializer_list>
#include <vector>

#include "Entities.hpp"
#include "Roster.hpp"
#include "WorldTrial.hpp"

namespace port {

struct EntityTrial : WorldTrial {
    std::deque<generated::Character> models;
    std::deque<generated::Frame> frames;
    std::deque<std::vector<generated::Animation>> animations;
    std::vector<generated::Geometry> areas;
    generated::Stage stage = *world.stage.row;

    EntityTrial() {
        stage.zMin = 0;
        stage.zMax = 1000;
        world.stage.row = &stage;
        world.stage.length = 2000;
        player.worldX = 500;
        player.z = 200;
    }

    // Like the robot of the game, with these animations of one frame of ten ticks.
    generated::Character& makeModel(const char* type, std::initializer_list<const char*> names) {
        generated::Character& model = models.emplace_back(*findCharacter("robot"));
        auto& list = animations.emplace_back();
        for (const char* name : names) {
            generated::Frame& frame = frames.emplace_back(*model.animations[0].frames);
            frame.delay = 10;
            generated::Animation& animation = list.emplace_back(model.animations[0]);
            animation.name = name;
            animation.frames = &frame;
            animation.frameCount = 1;
        }
        model.type = type;
        model.animations = list.data();
        model.animationCount = list.size();
        return model;
    }
    generated::Character& makeEnemy() { return makeModel("enemy", {"idle", "walk", "attack1"}); }

    RuntimeEntity& add(const generated::Character& model, float x, float z = 200) {
        RuntimeEntity entity;
        entity.model = &model;
        entity.animation.setAnimation(model.animations);
        entity.worldX = x;
        entity.z = z;
        return *world.entities.add(std::move(entity));
    }
    void turn(int ticks = 1) {
        quietly([&] {
            for (; ticks > 0; --ticks) {
                ++world.tick;
                updateEntities(tick);
            }
        });
    }
    [[nodiscard]] static std::string playing(const Actor& actor) {
        return actor.animation.animation()->name;
    }

    void ground(GeometryKind kind, int x, int width, int altitude) {
        areas.push_back({"", x, 0, width, 1000, 0, altitude, false, {}});
        world.stage.geometryKinds.push_back(kind);
        stage.geometry = areas.data();
        stage.geometryCount = areas.size();
    }
    // Lets the entity show a platform as wide as this to both sides, and as deep.
    void carry(RuntimeEntity& entity, float half, float depth, float altitude) {
        generated::Frame& frame = const_cast<generated::Frame&>(*entity.animation.frame());
        frame.hasPlatform = true;
        frame.platform = {0, 0, -half, -half, half, half, depth, altitude};
        frame.offsetX = frame.offsetY = 0;
    }
    // A hook that notes in the shared variable "hooks" that it ran, with one of its own variables.
    const char* hook(const std::string& file, const std::string& local) {
        folder.write("data/" + file,
                     "void main(){ setglobalvar(\"hooks\", getglobalvar(\"hooks\") + \"" + file +
                         ":\" + getlocalvar(\"" + local + "\") + \" \"); }");
        scripts.open(folder.path(), folder.path() / "data", nullptr);
        scripts.machine().globals().try_emplace("hooks", std::string());
        return hookNames.emplace_back(file).c_str();
    }
    std::deque<std::string> hookNames;
};

}  // namespace port
