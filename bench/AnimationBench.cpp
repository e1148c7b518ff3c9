// A second of 1,000 animations, tick by tick, beside the least that such a step can be: a counter
// that runs down and then takes the next delay from an array.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <random>
#include <vector>

#include "AnimationPlayer.hpp"

namespace {

constexpr int kPlayers = 1000;
constexpr int kTicks = 60;

// Animations of 1 to 24 frames that show each for up to 12 ticks and now and then for ever; two in
// three loop, half of these within a window.
struct Reels {
    std::vector<std::vector<generated::Frame>> frames;
    std::vector<generated::Animation> animations;

    Reels() {
        std::minstd_rand random(7);
        const auto below = [&](int limit) {
            return static_cast<int>(random() % static_cast<unsigned>(limit));
        };
        for (int i = 0; i < 64; ++i) {
            auto& reel = frames.emplace_back(static_cast<std::size_t>(1 + below(24)));
            for (generated::Frame& frame : reel) frame.delay = below(50) == 0 ? -1 : below(13);
            generated::Animation& animation = animations.emplace_back();
            animation.frames = reel.data();
            animation.frameCount = reel.size();
            animation.loop = i % 3 != 0;
            animation.loopStart = i % 2 * below(24);
            animation.loopEnd = i % 2 == 0 ? -1 : below(24);
        }
    }
    [[nodiscard]] const generated::Animation& of(std::size_t player) const {
        return animations[player % animations.size()];
    }
};

const Reels& reels() {
    static const Reels all;
    return all;
}

void playSecond(std::vector<port::AnimationPlayer>& players) {
    for (std::size_t i = 0; i < players.size(); ++i) players[i].setAnimation(&reels().of(i));
    for (int tick = 0; tick < kTicks; ++tick) {
        for (port::AnimationPlayer& player : players) player.update(1);
    }
}

// The same animations, their frames in a row with the place of the frame after each.
struct Counters {
    static constexpr int kForEver = INT_MAX;
    struct Counter {
        int left, frame;
    };
    std::vector<int> delays, next, firsts;
    std::vector<Counter> counters = std::vector<Counter>(kPlayers);

    Counters() {
        for (const generated::Animation& animation : reels().animations) append(animation);
    }
    void append(const generated::Animation& animation) {
        const int first = static_cast<int>(delays.size());
        const int last = static_cast<int>(animation.frameCount) - 1;
        const int end = animation.loopEnd < 0 ? last : std::min(animation.loopEnd, last);
        firsts.push_back(first);
        for (int i = 0; i <= last; ++i) {
            const int delay = animation.frames[i].delay;
            const bool stops = delay < 0 || (i == last && !animation.loop);
            const bool loops = animation.loop && i >= end;
            delays.push_back(stops ? kForEver : std::max(1, delay));
            next.push_back(first + (loops ? std::min(animation.loopStart, end) : i + 1));
        }
    }
    void playSecond() {
        for (std::size_t i = 0; i < counters.size(); ++i) {
            const int first = firsts[i % firsts.size()];
            counters[i] = {delays[static_cast<std::size_t>(first)], first};
        }
        for (int tick = 0; tick < kTicks; ++tick) {
            for (Counter& counter : counters) {
                if (--counter.left > 0) continue;
                counter.frame = next[static_cast<std::size_t>(counter.frame)];
                counter.left = delays[static_cast<std::size_t>(counter.frame)];
            }
        }
    }
};

void countUpdates(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * kPlayers * kTicks);
}

void animationPlayers(benchmark::State& state) {
    std::vector<port::AnimationPlayer> players(kPlayers);
    for (auto _ : state) {
        playSecond(players);
        benchmark::DoNotOptimize(players.data());
        benchmark::ClobberMemory();
    }
    countUpdates(state);
}
BENCHMARK(animationPlayers);

void plainCounters(benchmark::State& state) {
    Counters plain;
    for (auto _ : state) {
        plain.playSecond();
        benchmark::DoNotOptimize(plain.counters.data());
        benchmark::ClobberMemory();
    }
    countUpdates(state);

    // The comparison holds only if both end on the same frames.
    std::vector<port::AnimationPlayer> players(kPlayers);
    playSecond(players);
    for (std::size_t i = 0; i < players.size(); ++i) {
        const auto first = static_cast<std::size_t>(plain.firsts[i % plain.firsts.size()]);
        if (first + players[i].frameIndex() != static_cast<std::size_t>(plain.counters[i].frame)) {
            state.SkipWithError("the counters do not end where the animations end");
            return;
        }
    }
}
BENCHMARK(plainCounters);

}  // namespace

BENCHMARK_MAIN();
