#pragma once

// The kinds of models, and the bits by which masks name them.

#include <string_view>

#include "GeneratedCharacters.hpp"

namespace port {

enum ModelTypeBit {
    kTypeNone = 1 << 0,
    kTypePlayer = 1 << 2,
    kTypeEnemy = 1 << 3,
    kTypeItem = 1 << 4,
    kTypeObstacle = 1 << 5,
    kTypeProjectile = 1 << 6,
    kTypeSteamer = 1 << 7,
    kTypeShot = 1 << 8,
    kTypeTrap = 1 << 9,
    kTypeTextbox = 1 << 10,
    kTypeEndlevel = 1 << 11,
    kTypeNpc = 1 << 12,
    kTypePanel = 1 << 13
};

// The bit of the model's `type`, without regard to case; 0 for no model or any other type.
[[nodiscard]] int openborTypeBit(const generated::Character* model);

}  // namespace port
