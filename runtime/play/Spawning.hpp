#pragma once

// How entities come into being beside those that a stage sends, and how summoned ones go.

#include "Tick.hpp"

namespace port {

// Queues the child that the animation asks for in this frame. `owner` is asked for the model where
// the animation names none.
void queueChildSpawn(World& world, const generated::Character* owner,
                     const generated::Animation& animation, std::size_t frameIndex,
                     const ActorPlace& place, ActorHandle parent);

// Queues an effect on the ground at the place. Nothing for an empty or unknown name.
void queueEffect(World& world, const char* modelName, SpawnType type, const ActorPlace& place,
                 ActorHandle parent);

// Lets all queued children enter the stage. What their spawn scripts ask for waits for the next
// pass.
void flushChildSpawns(Tick& tick);

// Sends the summoned children of this parent away, or all of its children.
void unsummonChildren(Tick& tick, ActorHandle parent, bool allChildren);

}  // namespace port
