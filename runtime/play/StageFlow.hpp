#pragma once

// How a stage opens, ends, and which comes next.

#include <string_view>

#include "Tick.hpp"

namespace port {

// Gates that stand at the start hold from the start, and are met again by the queue of events.
void applyReachedJoinGates(World& world, int logicalWidth);

// Ends the stage when players touch an entity that stands for its end; it may name the stage to go
// to. The first that is touched counts.
void updateEndLevelTriggers(Tick& tick);

// The stage of that branch name, without regard to case; kNoStage for none.
[[nodiscard]] std::size_t resolveBranchTarget(std::string_view name);

// Everything the stage had to send has come and gone, and the foremost player is near its end.
[[nodiscard]] bool stageEndReached(const World& world, int logicalWidth);

// What comes after a stage that has ended.
struct NextStage {
    std::size_t target = kNoStage;
    bool broken = false;  // the stage names a successor that is not there
};

// The successor that the stage at `index` names, else the next of its set.
[[nodiscard]] NextStage stageBehind(const generated::Stage& stage, std::size_t index);

// A branch that was taken, else the stage's own successor, else the next of the set. Uses the
// branch up.
[[nodiscard]] NextStage takeNextStage(World& world);

// Who lives how well, to be carried over the loading of a stage.
class Vitals {
  public:
    explicit Vitals(const World& world);
    // As they were.
    void restore(World& world) const;
    // Rested a little in the same chapter, wholly in another; the dead stay dead.
    void restoreRested(World& world, bool sameChapter) const;

  private:
    struct One {
        bool alive;
        int health;
    };
    One player1_;
    std::vector<One> coop_;
};

}  // namespace port
