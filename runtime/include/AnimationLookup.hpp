#pragma once

// Finding a model's animations by name. Names compare without regard to case.

#include <string_view>

#include "../generated/GeneratedCharacters.hpp"

namespace port {

// The first animation of just this name; null if there is none, or no model.
[[nodiscard]] const generated::Animation* exactAnimation(const generated::Character* model,
                                                         std::string_view wanted);

// The first animation whose name is or holds `preferred`, else the model's first one; null only
// without a model or animations. An empty name matches only an animation of empty name.
[[nodiscard]] const generated::Animation* findAnimation(const generated::Character* model,
                                                        std::string_view preferred);

}  // namespace port
