// Bindings of one actor to another.

#include <string>

#include "Bindings.hpp"
#include "HostFunctions.hpp"

namespace port::host {
namespace {

constexpr unsigned kKnownBits = kBindAnimation | kBindFrame | kBindAnimationOrDie |
                                kBindFrameOrDie | kBindXAt | kBindX | kBindAltitudeAt |
                                kBindAltitude | kBindZAt | kBindZ;

// Whether the way from the target to what it is bound to comes back to the actor.
bool leadsBack(HostCall& call, ActorHandle target, const Actor& actor) {
    std::size_t links = 0;
    // A circle elsewhere, which the next tick will break, must not hold this one up.
    const std::size_t most = call.world().entities.size() + kMostPlayers;
    while (target != kNobody && target != actor.handle && links++ < most) {
        const Actor* next = std::as_const(call.world()).find(target);
        target = next ? next->binding.target : kNobody;
    }
    call.chargeScan(links);
    return target == actor.handle;
}

// Offsets that are no numbers stay as they were, without effect.
EntityBinding bindingOf(HostCall& call, ActorHandle target, EntityBinding binding) {
    unsigned config = 0;
    const auto offset = [&](std::size_t index, int& value, unsigned bit) {
        if (!call.isNumeric(index)) return;
        value = call.integer(index);
        config |= bit;
    };
    offset(2, binding.x, kBindX);
    offset(3, binding.z, kBindZ);
    offset(4, binding.a, kBindAltitude);
    if (call.has(5)) binding.direction = call.integer(5);
    if (call.isNumeric(6)) config |= static_cast<unsigned>(call.integer(6));
    binding.sort = call.isNumeric(7) ? call.integer(7) : -1;
    binding.config = static_cast<int>(config);
    binding.target = target;
    const unsigned rest = config & ~kKnownBits;
    if (rest != 0) call.tag("bindentity-config:", std::to_string(rest));
    return binding;
}

}  // namespace

ScriptValue bindActor(HostCall& call) {
    if (call.count() < 2) {
        call.tag("bindentity-arguments");
        return false;
    }
    World& world = call.world();
    const ActorHandle target = call.handle(1);
    if (call.handle(0) == kNobody) return false;
    Actor* actor = bindableActor(world, call.handle(0));
    if (!actor) {
        call.tag("bindentity-invalid-actor");
        return false;
    }
    const EntityBinding old = std::exchange(actor->binding, {});
    if (target == kNobody) return true;
    if (!bindableActor(world, target)) {
        call.tag("bindentity-invalid-target");
        return false;
    }
    if (leadsBack(call, target, *actor)) {
        call.tag("bindentity-cycle");
        return false;
    }
    actor->binding = bindingOf(call, target, old);
    applyEntityBinding(world, *actor);
    return true;
}

}  // namespace port::host
