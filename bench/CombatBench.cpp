// A tick in which each of a crowd strikes: who is the first that it touches? Beside it the plain
// answer, that each looks at all the others in turn.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <utility>

#include "Crowd.hpp"
#include "ModelFacts.hpp"

namespace {

generated::Character fighter(const char* type) {
    generated::Character model{};
    model.name = model.modelName = "fighter";
    model.type = type;
    model.subtype = "";
    return model;
}

}  // namespace

namespace generated {

const Character kCharacters[] = {fighter("enemy"), fighter("npc")};
const std::size_t kCharacterCount = 2;
const Stage kStages[] = {{}};
const std::size_t kStageCount = 0;

}  // namespace generated

namespace {

constexpr int kReach = 30;

// How a crowd stands, and whom its attacks are meant for.
enum Layout {
    kHeap,       // all at one place, all against all
    kStrangers,  // all at one place, and none of the kind that the attacks are meant for
    kStreet,     // over some screens
    kDead        // over some screens, after thousands who have died
};
constexpr const char* kLayoutNames[] = {"heap", "strangers", "street", "dead"};

struct Fight {
    port::World world;
    port::TickInput input;
    port::RuntimeConfig config;
    port::Scripts scripts;
    port::Events events;
    port::PlayerDrive drive = port::PlayerDrive::Nobody;
    port::Tick tick{world, drive, input, config, scripts, events};
    int wanted;

    Fight(int count, Layout layout) : wanted(layout == kStrangers ? 1 << 12 : 1 << 3) {
        std::minstd_rand random(7);
        for (int i = 0; layout == kDead && i < 20 * count; ++i) add(0, false);
        for (int i = 0; i < count; ++i) {
            const bool heaped = layout == kHeap || layout == kStrangers;
            add(heaped ? 100 : static_cast<float>(random() % 2000), true);
        }
    }

    void add(float x, bool alive) {
        port::RuntimeEntity entity;
        entity.model = &generated::kCharacters[0];
        entity.worldX = x;
        entity.alive = entity.visible = alive;
        world.entities.add(std::move(entity));
        if (alive) world.roster.present.push_back(world.entities.nextHandle() - 1);
        world.roster.next = world.entities.nextHandle();
    }

    [[nodiscard]] static port::RectF attackOf(const port::RuntimeEntity& entity) {
        return {entity.worldX, entity.z - 40, kReach, 40};
    }
    [[nodiscard]] static bool strikes(const port::RuntimeEntity& attacker, int wanted,
                                      const port::RuntimeEntity& target) {
        return &target != &attacker && (port::openborTypeBit(target.model) & wanted) != 0;
    }
};

void byCrowd(benchmark::State& state) {
    Fight fight(static_cast<int>(state.range(1)), static_cast<Layout>(state.range(0)));
    std::size_t met = 0;
    for (auto _ : state) {
        port::Crowd crowd(fight.tick);
        crowd.visit([&](port::RuntimeEntity& attacker) {
            const port::RectF box = Fight::attackOf(attacker);
            crowd.visitTouching(box, fight.wanted, [&](port::RuntimeEntity& target) {
                if (!Fight::strikes(attacker, fight.wanted, target)) return true;
                crowd.changed(target);  // as a hit changes it
                met += target.handle;
                return false;
            });
        });
    }
    state.SetLabel(kLayoutNames[state.range(0)]);
    benchmark::DoNotOptimize(met);
}

void byLookingAtEach(benchmark::State& state) {
    Fight fight(static_cast<int>(state.range(1)), static_cast<Layout>(state.range(0)));
    std::size_t met = 0;
    for (auto _ : state) {
        for (const port::RuntimeEntity& attacker : fight.world.entities) {
            if (!attacker.alive) continue;
            const port::RectF box = Fight::attackOf(attacker);
            for (const port::RuntimeEntity& target : fight.world.entities) {
                if (!target.alive || !Fight::strikes(attacker, fight.wanted, target) ||
                    !port::overlaps(box, port::bodyOf(target))) {
                    continue;
                }
                met += target.handle;
                break;
            }
        }
    }
    state.SetLabel(kLayoutNames[state.range(0)]);
    benchmark::DoNotOptimize(met);
}

void sizes(benchmark::internal::Benchmark* bench) {
    for (const int layout : {kHeap, kStrangers, kStreet, kDead}) {
        for (const int count : {30, 250, 1000}) bench->Args({layout, count});
    }
    bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(byCrowd)->Apply(sizes);
BENCHMARK(byLookingAtEach)->Apply(sizes);

}  // namespace

BENCHMARK_MAIN();
