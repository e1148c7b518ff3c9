#pragma once

// What happens when an attack meets a body, whoever attacks whom.

#include "Boxes.hpp"
#include "Counter.hpp"
#include "Damage.hpp"

namespace port {

// An attack in the frame that it had when its turn came, whatever hooks make of the attacker since.
struct Strike {
    const generated::Animation* animation = nullptr;
    const generated::Frame* frame = nullptr;
    RectF box;  // empty: no attack
    ActorHandle attacker = kNobody;
    float worldX = 0;  // of the attacker
    int facing = 1;
};

// The actor's running attack; empty for an actor without a model.
[[nodiscard]] Strike strikeOf(const Actor& attacker);

// All that its frame does to whom it hits.
[[nodiscard]] Hit hitOf(const Strike& strike);

// The target answers with a counter, or blocks, or is hurt, and there is a flash. `body` is the one
// that was met. True when it was blocked.
bool meet(Tick& tick, const Strike& strike, RuntimeEntity& target, const RectF& body, bool hostile);
bool meet(Tick& tick, const Strike& strike, Player1& target, const RectF& body, bool hostile);
bool meet(Tick& tick, const Strike& strike, RuntimeCoopPlayer& target, const RectF& body,
          bool hostile);

// That it has hit, as the attacker keeps it.
void countHit(Actor& attacker);
// What the attacker's hook is told about the hit.
void setHitLocals(ScriptContext& context, const Strike& strike, ActorHandle target, bool blocked);

// The move that follows this hit; null for none.
[[nodiscard]] const generated::Animation* followUp(const Actor& attacker, const Strike& strike,
                                                   const Actor& target, bool hostile, bool blocked);
// It takes the place of the running attack.
void startFollowUp(RuntimeEntity& attacker, const generated::Animation* animation);
void startFollowUp(Player1& attacker, const generated::Animation* animation);
void startFollowUp(RuntimeCoopPlayer& attacker, const generated::Animation* animation);

}  // namespace port
