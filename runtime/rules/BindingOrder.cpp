#include "BindingOrder.hpp"

#include <algorithm>
#include <cstdint>

namespace port {
namespace {

constexpr std::int64_t kBetweenActors = 100;
constexpr std::int64_t kFirstEntity = 500;
// Of a row of bindings so many links count, so that a circle comes to an end.
constexpr int kLongestChain = 64;

int clamped(std::int64_t sort) {
    return static_cast<int>(std::clamp<std::int64_t>(sort, INT32_MIN, INT32_MAX));
}

}  // namespace

int bindingSortId(const World& world, const Actor& actor) {
    const Actor* base = &actor;
    std::int64_t sort = 0;
    for (int links = 0; base->binding.target != kNobody && links < kLongestChain; ++links) {
        const Actor* target = world.find(base->binding.target);
        sort += base->binding.sort;
        if (!target) return clamped(sort);
        base = target;
    }
    sort += base->handle <= kLastPlayerHandle
                ? static_cast<std::int64_t>(base->handle) * kBetweenActors
                : kFirstEntity + static_cast<std::int64_t>(world.entities.indexOf(base->handle)) *
                                     kBetweenActors;
    return clamped(sort);
}

}  // namespace port
