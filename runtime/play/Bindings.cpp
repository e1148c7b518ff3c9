#include "Bindings.hpp"

#include <cstdint>
#include <vector>

#include "AnimationLookup.hpp"
#include "EntityEnd.hpp"
#include "Roster.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

bool isBindable(const Actor& actor) {
    return actor.handle <= kLastPlayerHandle ? actor.alive
                                             : static_cast<const RuntimeEntity&>(actor).visible;
}

bool matchAnimation(Actor& actor, const Actor& target) {
    const generated::Animation* wanted = target.animation.animation();
    const generated::Animation* running = actor.animation.animation();
    if (!wanted || wanted == running) return true;
    if (running && equalsFolded(running->name, wanted->name)) return true;
    const generated::Animation* own = exactAnimation(actor.model, wanted->name);
    if (!own) return false;
    actor.animation.setAnimation(own);
    actor.lastFrame = kNoFrame;
    return true;
}

bool matchFrame(Actor& actor, const Actor& target) {
    const std::size_t wanted = target.animation.frameIndex();
    const generated::Animation* running = actor.animation.animation();
    if (!running || wanted >= running->frameCount) return false;
    if (actor.animation.frameIndex() != wanted) actor.animation.setFrame(wanted);
    return true;
}

int boundFacing(const Actor& actor, const Actor& target) {
    const bool apart = actor.worldX != target.worldX;
    const int toward = target.worldX < actor.worldX ? -1 : 1;
    switch (actor.binding.direction) {
        case kSameDirection:
            return target.facing;
        case kOppositeDirection:
            return -target.facing;
        case kRightDirection:
            return 1;
        case kLeftDirection:
            return -1;
        case kTowardDirection:
            return apart ? toward : actor.facing;
        case kAwayDirection:
            return apart ? -toward : actor.facing;
        default:
            return actor.facing;
    }
}

void applyBinding(Actor& actor, const Actor& target) {
    const EntityBinding& binding = actor.binding;
    const auto has = [&binding](BindingConfig bit) {
        return (static_cast<unsigned>(binding.config) & bit) != 0;
    };
    const auto end = [&actor](bool dies) {
        if (dies) removeActor(actor);
        actor.binding = {};
    };
    if (has(kBindAnimation) && !matchAnimation(actor, target)) {
        return end(has(kBindAnimationOrDie));
    }
    if (has(kBindFrame) && !matchFrame(actor, target) && has(kBindFrameOrDie)) return end(true);
    actor.facing = boundFacing(actor, target);
    const auto x = static_cast<float>(binding.x);
    const auto z = static_cast<float>(binding.z);
    const auto a = static_cast<float>(binding.a);
    if (has(kBindX)) {
        actor.worldX = target.worldX + x * static_cast<float>(target.facing);
    } else if (has(kBindXAt)) {
        actor.worldX = x;
    }
    if (has(kBindAltitude)) {
        actor.altitude = target.altitude - a;
    } else if (has(kBindAltitudeAt)) {
        actor.altitude = -a;
    }
    if (has(kBindZ)) {
        actor.z = target.z + z;
    } else if (has(kBindZAt)) {
        actor.z = z;
    }
}

// Goes from each bound actor up to the end of its chain of targets, and back down applying.
class BindingWalk {
  public:
    explicit BindingWalk(World& world) : world_(world) {}

    void apply(Actor& actor) {
        climb(actor);
        while (!chain_.empty()) {
            Actor& bound = *chain_.back();
            chain_.pop_back();
            applyEntityBinding(world_, bound);
            state(bound) = State::Done;
        }
    }

  private:
    enum class State : std::uint8_t { New, Climbing, Done };

    void climb(Actor& first) {
        for (Actor* actor = &first; actor && actor->binding.target != kNobody;
             actor = world_.find(actor->binding.target)) {
            State& state = this->state(*actor);
            if (state == State::Done) return;
            if (state == State::Climbing) {
                chain_.back()->binding = {};
                return;
            }
            state = State::Climbing;
            chain_.push_back(actor);
        }
    }

    State& state(const Actor& actor) {
        const std::size_t place = actor.handle <= kLastPlayerHandle
                                      ? actor.handle
                                      : kFirstEntityHandle + world_.entities.indexOf(actor.handle);
        if (place >= states_.size()) states_.resize(place + 1);
        return states_[place];
    }

    World& world_;
    std::vector<State> states_;
    std::vector<Actor*> chain_;
};

}  // namespace

Actor* bindableActor(World& world, ActorHandle handle) {
    Actor* actor = world.find(handle);
    return actor && isBindable(*actor) ? actor : nullptr;
}

void applyEntityBinding(World& world, Actor& actor) {
    const Actor* target = bindableActor(world, actor.binding.target);
    if (target && isBindable(actor)) {
        applyBinding(actor, *target);
    } else {
        actor.binding = {};
    }
}

void applyEntityBindings(World& world) {
    BindingWalk walk(world);
    const auto visit = [&walk](Actor& actor) {
        if (actor.binding.target != kNobody) walk.apply(actor);
        return false;
    };
    visit(world.player1);
    for (RuntimeCoopPlayer& player : world.coop) visit(player);
    visitRoster(world, world.roster.present, visit);
}

}  // namespace port
