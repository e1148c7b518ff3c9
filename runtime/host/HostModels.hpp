#pragma once

// What scripts may know of a model.

#include <string_view>

#include "GeneratedCharacters.hpp"
#include "ScriptVM.hpp"

namespace port::host {

// The handle that names the model to scripts; 0 for none, or for one that is not of the table.
[[nodiscard]] ScriptValue modelHandle(const generated::Character* model);
// The model of that handle; null for any other.
[[nodiscard]] const generated::Character* modelOfHandle(std::uintptr_t handle);

}  // namespace port::host
