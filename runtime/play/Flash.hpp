#pragma once

#include "Boxes.hpp"
#include "World.hpp"

namespace port {

// Queues the flash of a hit where attack and body overlap: the frame's own, else the target's, each
// by a model's name. Nothing without an overlap, or for an attack that flashes not.
void queueAttackFlash(World& world, const generated::Frame& frame, const Actor& target,
                      bool blocked, const RectF& attack, const RectF& body);

}  // namespace port
