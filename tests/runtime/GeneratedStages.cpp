// Four stages in three sets, one of them locked.

#include "generated/GeneratedStages.hpp"

#include <iterator>

namespace generated {
namespace {

constexpr Stage stageOf(const char* set, int ifComplete) {
    Stage stage{};
    stage.sourceFile = "levels/stage.txt";
    stage.setName = set;
    stage.ifComplete = ifComplete;
    return stage;
}

}  // namespace

const Stage kStages[] = {stageOf("Story", -1), stageOf("", 0), stageOf("STORY", 3),
                         stageOf("Bonus", 2)};
const std::size_t kStageCount = std::size(kStages);

}  // namespace generated
