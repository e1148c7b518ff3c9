#pragma once

// What happens when an actor enters a frame. Entry is noticed once a pass, before it is drawn, by
// an index that differs from the last one: only the frame that is current then takes effect.

#include "Tick.hpp"

namespace port {

// Draw hooks and frame entries in the order player 1, co-op players, entities, projectiles.
void enterFrames(Tick& tick);

// When an actor lands: the frame for it, and dust where the animation raises some.
void applyLandFrame(World& world, AnimationPlayer& player, const ActorPlace& place,
                    ActorHandle parent);

// With the velocity before and after gravity: the frame for the moment an actor stops rising.
void applyDropFrameOnApex(AnimationPlayer& player, float before, float after);

// The sound of a hit by this animation, and of the death of this model; null brings none.
void playHitFx(Events& events, const generated::Animation* animation);
void playDieSound(Events& events, const generated::Character* model);

// Lets quakes run out and works out the offset of this pass's picture.
void shakeScreen(World& world);

}  // namespace port
