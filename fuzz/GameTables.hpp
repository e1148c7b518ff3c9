#pragma once

// The tables of a game as memory that a program fills while it runs. The runtime sees them as the
// constants that the builder would have written.

#include <span>

#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"

namespace tindrel::fuzz {

constexpr std::size_t kMostModels = 8;
constexpr std::size_t kMostStages = 4;

// Copies the rows; what they point to stays the caller's. No game may be running.
void setTables(std::span<const generated::Character> models,
               std::span<const generated::Stage> stages);

}  // namespace tindrel::fuzz
