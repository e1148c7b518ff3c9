#pragma once

// How entities come into being, and how summoned ones go.

#include <initializer_list>
#include <string_view>

#include "Tick.hpp"

namespace port {

// An entity as its model makes it, wherever it comes from: looking to the left, not yet placed,
// without guard and animation. No model makes one that does nothing.
[[nodiscard]] RuntimeEntity entityOf(const generated::Character* model);

// The first of these that gives a frame.
void startFirstOf(AnimationPlayer& player, const generated::Character& model,
                  std::initializer_list<std::string_view> names);

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
