#include "Crowd.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <numeric>

#include "ModelFacts.hpp"

namespace port {
namespace {

constexpr float kFar = std::numeric_limits<float>::infinity();

}  // namespace

// The dead stay in the list of entities for as long as the stage lasts: the roster knows who of
// those that stood there at the start of the tick need not be asked.
void Crowd::gather() {
    const EntityList& all = tick_.world.entities;
    const auto take = [&](const RuntimeEntity& entity) {
        if (!entity.alive || !entity.model) return;
        living_.push_back(static_cast<std::uint32_t>(all.indexOf(entity.handle)));
    };
    if (gathered_ == 0) {
        const Roster& roster = tick_.world.roster;
        for (const ActorHandle handle : roster.present) {
            if (const RuntimeEntity* entity = all.find(handle)) take(*entity);
        }
        gathered_ = all.size();
        while (gathered_ > 0 && all[gathered_ - 1].handle >= roster.next) --gathered_;
    }
    for (; gathered_ < all.size(); ++gathered_) take(all[gathered_]);
}

RuntimeEntity* Crowd::firstAlive(std::size_t& at) {
    gather();
    for (; at < living_.size(); ++at) {
        RuntimeEntity& entity = tick_.world.entities[living_[at]];
        if (entity.alive) return &entity;
    }
    return nullptr;
}

Crowd::Node Crowd::leafOf(std::uint32_t place) const {
    const RuntimeEntity& entity = tick_.world.entities[place];
    const RectF body = bodyOf(entity);
    const bool hasArea = body.w > 0 && body.h > 0 && body.x < kFar && body.y < kFar;
    if (!entity.alive || !hasArea) return {kFar, kFar, -kFar, -kFar, 0, place, place};
    return {
        body.x, body.y, body.x + body.w, body.y + body.h, openborTypeBit(entity.model) | kEverybody,
        place,  place};
}

Crowd::Node Crowd::join(const Node& a, const Node& b) {
    if (a.types == 0) return b;
    if (b.types == 0) return a;
    return {std::min(a.left, b.left),     std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom), a.types | b.types,      std::min(a.first, b.first),
            std::max(a.last, b.last)};
}

void Crowd::build() {
    const std::size_t count = living_.size();
    std::vector<Node> bodies;
    bodies.reserve(count);
    for (const std::uint32_t place : living_) bodies.push_back(leafOf(place));
    std::vector<std::uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, {}, [&](std::uint32_t i) { return bodies[i].left; });

    const std::size_t width = std::bit_ceil(std::max<std::size_t>(count, 1));
    nodes_.assign(2 * width, {kFar, kFar, -kFar, -kFar, 0, 0, 0});
    leaves_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        leaves_[order[i]] = static_cast<std::uint32_t>(width + i);
        nodes_[width + i] = bodies[order[i]];
    }
    for (std::size_t n = width - 1; n > 0; --n) nodes_[n] = join(nodes_[2 * n], nodes_[2 * n + 1]);
    built_ = count;
}

// Makes the tree right again after scripts, who may have moved anybody. Those who only moved keep
// their leaf: a tree that is less well sorted answers the same.
void Crowd::freshen() {
    gather();
    const std::int64_t steps = tick_.scripts.machine().stepsLeft();
    if (nodes_.empty() || built_ != living_.size()) {
        build();
    } else if (steps != steps_) {
        for (std::size_t i = 0; i < built_; ++i) nodes_[leaves_[i]] = leafOf(living_[i]);
        for (std::size_t n = nodes_.size() / 2 - 1; n > 0; --n) {
            nodes_[n] = join(nodes_[2 * n], nodes_[2 * n + 1]);
        }
    }
    steps_ = steps;
}

void Crowd::changed(const RuntimeEntity& entity) {
    const auto place = static_cast<std::uint32_t>(tick_.world.entities.indexOf(entity.handle));
    const auto found = std::ranges::lower_bound(living_, place);
    const auto at = static_cast<std::size_t>(found - living_.begin());
    if (at >= built_ || *found != place) return;
    std::size_t n = leaves_[at];
    nodes_[n] = leafOf(place);
    while ((n /= 2) > 0) nodes_[n] = join(nodes_[2 * n], nodes_[2 * n + 1]);
}

RuntimeEntity* Crowd::firstTouching(const RectF& box, int types, std::size_t from) {
    if (!(box.w > 0 && box.h > 0)) return nullptr;
    freshen();
    const float right = box.x + box.w;
    const float bottom = box.y + box.h;
    std::uint32_t best = std::numeric_limits<std::uint32_t>::max();
    // One node waits for each level of the tree, of which there are not more than bits of a place.
    std::array<std::size_t, 34> waiting{1};
    for (std::size_t count = 1; count > 0;) {
        const std::size_t n = waiting[--count];
        const Node& node = nodes_[n];
        const bool canHold = (node.types & types) != 0 && node.first < best && node.last >= from &&
                             box.x < node.right && node.left < right && box.y < node.bottom &&
                             node.top < bottom;
        if (!canHold) continue;
        if (2 * n >= nodes_.size()) {
            // A parent may have taken it along without a word.
            if (tick_.world.entities[node.first].alive) best = node.first;
            continue;
        }
        // The child that begins earlier is asked first.
        const bool swapped = nodes_[2 * n + 1].first < nodes_[2 * n].first;
        waiting[count++] = swapped ? 2 * n : 2 * n + 1;
        waiting[count++] = swapped ? 2 * n + 1 : 2 * n;
    }
    const bool found = best != std::numeric_limits<std::uint32_t>::max();
    return found ? &tick_.world.entities[best] : nullptr;
}

}  // namespace port
