// A second of 1,000 enemies that make for the player and attack, tick by tick, beside the least
// that such a tick can be: plain records that do the same arithmetic without scripts, terrain,
// types and all else that a game may ask for. Then the same with what makes scans long: everybody
// against everybody, and platforms.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <utility>
#include <vector>

#include "Entities.hpp"
#include "ModelFacts.hpp"

namespace {

constexpr std::size_t kEntities = 1000;
constexpr int kTicks = 60;
constexpr int kWidth = 4000, kDepth = 1000;

constexpr int kFrameTicks = 6;

generated::Frame frameOf(bool platform) {
    generated::Frame frame{};
    frame.sprite = frame.sound = frame.animationCommand = "";
    frame.delay = kFrameTicks;
    frame.hasPlatform = platform;
    frame.platform = {0, 0, -20, -20, 20, 20, 10, 30};
    return frame;
}

const std::array<generated::Frame, 2> kFrames = {frameOf(false), frameOf(false)};
const std::array<generated::Frame, 1> kPlatform = {frameOf(true)};

generated::Animation animationOf(const char* name, bool loop) {
    generated::Animation animation{};
    animation.name = name;
    animation.frames = kFrames.data();
    animation.frameCount = kFrames.size();
    animation.loop = loop;
    animation.loopEnd = animation.landFrame = animation.dropFrame = -1;
    animation.throwFrame = animation.tossFrame = -1;
    animation.custKnife = animation.custBomb = animation.landDustModel = "";
    return animation;
}

const std::array<generated::Animation, 3> kAnimations = {
    animationOf("idle", true), animationOf("walk", true), animationOf("attack1", false)};
const generated::Animation kShelf = [] {
    generated::Animation animation = animationOf("idle", true);
    animation.frames = kPlatform.data();
    animation.frameCount = kPlatform.size();
    return animation;
}();

generated::Character characterOf(const char* name, const char* type, int hostileMask) {
    generated::Character model{};
    model.modelName = model.name = name;
    model.type = type;
    for (const char* generated::Character::*text :
         {&generated::Character::subtype, &generated::Character::thinkScript,
          &generated::Character::updateScript, &generated::Character::onMoveXScript,
          &generated::Character::onMoveZScript, &generated::Character::onBlockZScript,
          &generated::Character::onBlockWScript, &generated::Character::onDoAttackScript}) {
        model.*text = "";
    }
    model.animations = kAnimations.data();
    model.animationCount = kAnimations.size();
    model.speed = 1;
    model.hostileMask = hostileMask;
    model.noGrab = model.subjectToGravity = model.subjectToHole = model.subjectToWall = true;
    model.subjectToPlatform = model.subjectToMinZ = model.subjectToMaxZ = true;
    return model;
}

generated::Character shelfOf() {
    generated::Character model = characterOf("shelf", "obstacle", 0);
    model.animations = &kShelf;
    model.animationCount = 1;
    return model;
}

enum Row { kHero, kEnemy, kFoe, kShelfRow };

}  // namespace

namespace generated {

const Character kCharacters[] = {characterOf("hero", "player", 0), characterOf("enemy", "enemy", 0),
                                 characterOf("foe", "enemy", port::kTypeEnemy), shelfOf()};
const std::size_t kCharacterCount = std::size(kCharacters);
const Stage kStages[] = {{}};
const std::size_t kStageCount = 1;

}  // namespace generated

namespace {

struct Place {
    float x, z;
};

const std::vector<Place>& places() {
    static const std::vector<Place> all = [] {
        std::minstd_rand random(7);
        std::vector<Place> made(kEntities);
        for (Place& place : made) {
            place.x = static_cast<float>(random() % kWidth);
            place.z = static_cast<float>(random() % kDepth);
        }
        return made;
    }();
    return all;
}

constexpr Place kPlayer = {kWidth / 2.0F, kDepth / 2.0F};

struct Crowd {
    generated::Stage stage{};
    port::World world;
    port::TickInput input;
    port::RuntimeConfig config;
    port::Scripts scripts;
    port::Events events;
    port::PlayerDrive drive = port::PlayerDrive::Devices;
    port::Tick tick{world, drive, input, config, scripts, events};

    Crowd(Row row, std::size_t shelves) {
        stage.zMax = kDepth;
        world.stage.row = &stage;
        world.player1.model = &generated::kCharacters[kHero];
        world.player1.worldX = kPlayer.x;
        world.player1.z = kPlayer.z;
        for (std::size_t i = 0; i < kEntities; ++i) {
            port::RuntimeEntity entity;
            entity.model = &generated::kCharacters[i < shelves ? kShelfRow : row];
            world.entities.add(std::move(entity));
        }
    }
    void playSecond() {
        for (std::size_t i = 0; i < kEntities; ++i) {
            port::RuntimeEntity& entity = world.entities[i];
            entity.worldX = places()[i].x;
            entity.z = places()[i].z;
            entity.altitude = entity.verticalVelocity = 0;
            entity.attackTicks = entity.attackCooldown = 0;
            entity.animation.setAnimation(entity.model->animations);
        }
        for (int i = 0; i < kTicks; ++i) {
            ++world.tick;
            port::updateEntities(tick);
        }
    }
};

struct Record {
    float x, z;
    int facing, attackTicks, cooldown, animation, frame, frameTicks;
    bool finished;

    void play(int next) {
        if (next == animation) return;
        *this = {x, z, facing, attackTicks, cooldown, next, 0, 0, false};
    }
    void animate() {
        if (finished || ++frameTicks < kFrameTicks) return;
        frameTicks = 0;
        if (frame == 1 && animation == 2) {
            finished = true;
        } else {
            frame = 1 - frame;
        }
    }
};

void updateRecord(Record& self) {
    self.cooldown = std::max(0, self.cooldown - 1);
    if (self.attackTicks > 0) {
        self.animate();
        if (--self.attackTicks == 0) self.play(0);
        return;
    }
    const float dx = kPlayer.x - self.x, dz = kPlayer.z - self.z;
    self.facing = dx < 0 ? -1 : 1;
    if (std::abs(dx) <= 28 && std::abs(dz) <= 20) {
        if (self.cooldown == 0) {
            self.play(2);
            self.attackTicks = 2 * kFrameTicks + 1;
            self.cooldown = self.attackTicks + 18;
        }
    } else {
        const float step = std::max(0.5F, 0.55F);
        if (std::abs(dx) > 3) self.x += dx < 0 ? -step : step;
        if (std::abs(dz) > 3) self.z += dz < 0 ? -step : step;
        self.play(1);
    }
    self.animate();
    self.z = std::clamp(self.z, 0.0F, static_cast<float>(kDepth));
}

void playSecond(std::vector<Record>& records) {
    for (std::size_t i = 0; i < kEntities; ++i) {
        records[i] = {places()[i].x, places()[i].z, 1, 0, 0, 0, 0, 0, false};
    }
    for (int i = 0; i < kTicks; ++i) {
        for (Record& record : records) updateRecord(record);
    }
}

void countTicks(benchmark::State& state) {
    state.counters["tick"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * kTicks,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void playCrowd(benchmark::State& state, Row row, std::size_t shelves) {
    Crowd crowd(row, shelves);
    for (auto _ : state) crowd.playSecond();
    countTicks(state);
}
void enemies(benchmark::State& state) {
    playCrowd(state, kEnemy, 0);
}
void enemiesOfEachOther(benchmark::State& state) {
    playCrowd(state, kFoe, 0);
}
void enemiesAmongPlatforms(benchmark::State& state) {
    playCrowd(state, kEnemy, 20);
}

void plainRecords(benchmark::State& state) {
    std::vector<Record> records(kEntities);
    for (auto _ : state) {
        playSecond(records);
        benchmark::DoNotOptimize(records.data());
        benchmark::ClobberMemory();
    }
    countTicks(state);

    // The comparison holds only if both end in the same places and frames.
    Crowd crowd(kEnemy, 0);
    crowd.playSecond();
    for (std::size_t i = 0; i < kEntities; ++i) {
        const port::RuntimeEntity& entity = crowd.world.entities[i];
        const Record& record = records[i];
        if (entity.worldX != record.x || entity.z != record.z ||
            entity.attackTicks != record.attackTicks ||
            entity.animation.frameIndex() != static_cast<std::size_t>(record.frame)) {
            state.SkipWithError("the records do not end where the entities end");
            return;
        }
    }
}

BENCHMARK(enemies)->Unit(benchmark::kMillisecond);
BENCHMARK(plainRecords)->Unit(benchmark::kMillisecond);
BENCHMARK(enemiesOfEachOther)->Unit(benchmark::kMillisecond);
BENCHMARK(enemiesAmongPlatforms)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
