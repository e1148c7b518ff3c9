// How a stage ends, and which comes next.

#include "Boxes.hpp"
#include "StageFlow.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

struct StageEnd : WorldTrial {
    generated::Character exitModel = *findCharacter("puff");
    generated::Stage row = *world.stage.row;

    StageEnd() {
        exitModel.type = "EndLevel";
        player.worldX = 100;
        player.z = 200;
        world.stage.row = &row;
    }
    RuntimeEntity& layExit(float x) {
        RuntimeEntity& exit = addEntity("puff");
        exit.model = &exitModel;
        exit.worldX = x;
        exit.z = 200;
        return exit;
    }
    bool ends() {
        quietly([&] { updateEndLevelTriggers(tick); });
        return world.stage.complete;
    }
    std::size_t next(const char* named) {
        row.nextStage = named;
        NextStage next;
        quietly([&] { next = takeNextStage(world); });
        EXPECT_EQ(next.broken, !warnings.empty());
        return next.target;
    }
};

TEST_F(StageEnd, AnExitIsTouchedByBodiesNotByPlaces) {
    const float touching = bodyOf(player).w;
    layExit(100 + touching);
    EXPECT_FALSE(ends()) << "side by side";
    RuntimeEntity& hidden = layExit(100);
    hidden.visible = false;
    EXPECT_FALSE(ends());
    RuntimeEntity& exit = layExit(100 + touching - 1);
    RuntimeEntity& other = layExit(100);
    EXPECT_TRUE(ends());
    EXPECT_EQ(log, "Endlevel touched model=Puff players=1\n");
    EXPECT_FALSE(exit.alive || exit.visible);
    EXPECT_TRUE(other.alive) << "the first counts";
    EXPECT_EQ(world.branch.target, kNoStage);
}

TEST_F(StageEnd, AnExitForBothWaitsForAllWhoLive) {
    exitModel.subtype = "BOTH";
    joinCoop("hero");
    joinCoop("hero").alive = false;
    world.coop[0].worldX = 500;
    layExit(100);
    EXPECT_FALSE(ends());
    world.coop[0].worldX = 100;
    world.coop[0].z = 200;
    EXPECT_TRUE(ends());
    EXPECT_EQ(log, "Endlevel touched model=Puff players=2 subtype=both\n");
    world.stage.complete = false;
    player.alive = world.coop[0].alive = false;
    layExit(100);
    EXPECT_FALSE(ends()) << "the dead go nowhere";
}

TEST_F(StageEnd, AnExitMayNameWhereItLeads) {
    exitModel.branch = "nowhere";
    layExit(100);
    EXPECT_TRUE(ends());
    EXPECT_EQ(warnings, "Endlevel branch not found: nowhere\n");
    EXPECT_EQ(world.branch.target, kNoStage);
    world.stage.complete = false;
    exitModel.branch = "ROOFTOP";
    layExit(100);
    EXPECT_TRUE(ends());
    EXPECT_EQ(world.branch.target, 2U);
    EXPECT_EQ(next("data/levels/yard.txt"), 2U) << "before the stage's own successor";
    EXPECT_EQ(resolveBranchTarget(""), kNoStage) << "stages without a name have no branch";
}

TEST_F(StageEnd, ASuccessorIsFoundByTheEndOfItsPathOrTheWayIsBroken) {
    EXPECT_EQ(next("yard.txt"), 1U) << "the first of two";
    EXPECT_EQ(next("DATA\\levels/roof.txt"), 2U);
    EXPECT_EQ(next("cellar.txt"), kNoStage);
    EXPECT_EQ(warnings, "Stage next target not found: cellar.txt\n");
    EXPECT_EQ(next("../yard.txt"), kNoStage) << "no path at all is no end of one";
    EXPECT_EQ(next(""), 1U) << "the next of the set";
    row.campaignEnd = true;
    EXPECT_EQ(next(""), kNoStage);
    EXPECT_TRUE(warnings.empty());
}

}  // namespace
}  // namespace port
