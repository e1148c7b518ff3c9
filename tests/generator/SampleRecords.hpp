#pragma once

// Records whose every member holds a value of its own, so that a value in the wrong column shows.

#include <vector>

#include "reader/ModelDef.hpp"
#include "reader/StageDef.hpp"

namespace tindrel::test {

// One value of a flag tells little: across these many records the flags differ in pairs.
inline constexpr int kSampleRecords = 9;

// The last model has an animation without frames and no list that may be empty.
[[nodiscard]] std::vector<ModelDef> sampleModels();
// The last stage has no list at all.
[[nodiscard]] std::vector<StageDef> sampleStages();

}  // namespace tindrel::test
