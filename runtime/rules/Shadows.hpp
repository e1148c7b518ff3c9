#pragma once

// What shadow an actor casts, and where. Screen rows are without camera and shake.

#include "World.hpp"

namespace port {

// The number of the shadow sprite on the ground below, 1 to 6; 0 for none.
[[nodiscard]] int shadowSprite(const generated::Character* model, float altitude);

// Whether the model's own frame is thrown on the ground, where the stage has a light to throw it.
[[nodiscard]] bool castsProjectedShadow(const generated::Character* model,
                                        const generated::Stage* stage);
// The row that it begins at: by the model's choice the ground, the actor in the air, or, where it
// stands on a platform, what that is above.
[[nodiscard]] float projectedShadowRow(const World& world, const Actor& actor);
// The frame's draw method as its shadow's: upside down, flattened and slanted by the light of the
// stage. A null stage has a light of its own.
[[nodiscard]] generated::DrawMethod projectedShadowMethod(const generated::DrawMethod& own,
                                                          const generated::Stage* stage);

}  // namespace port
