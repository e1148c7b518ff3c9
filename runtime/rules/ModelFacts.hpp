#pragma once

// What the texts of a model mean, worked out once: a tick compares numbers.

#include "GeneratedCharacters.hpp"

namespace port {

// The kinds of models, as the bits by which masks name them.
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

struct ModelFacts {
    int typeBit = 0;         // of `type`, without regard to case; 0 for any other text
    bool auxiliary = false;  // a thing that fights on its owner's side
    bool followsParent = false;
    bool isWeaponItem = false;  // lies there to be taken by entities
    // Whether some frame, its own or of a weapon that it may carry, is a platform.
    bool mayCarryPlatform = false;
};

// Of any model; those of the table are worked out at the first call.
[[nodiscard]] ModelFacts factsOf(const generated::Character& model);

// 0 for no model.
[[nodiscard]] int openborTypeBit(const generated::Character* model);

}  // namespace port
