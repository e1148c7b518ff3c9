#pragma once

// What scripts may know of actors.

#include <string_view>

namespace port::host {

// In any case.
[[nodiscard]] bool isActorKey(std::string_view key);

}  // namespace port::host
