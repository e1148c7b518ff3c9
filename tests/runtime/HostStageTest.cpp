// What scripts know of the stage, change on it and let enter it.

#include "HostTrial.hpp"

namespace port {
namespace {

struct HostStage : HostTrial {
    template <class... Args>
    double number(const char* name, const Args&... args) {
        const ScriptValue result = call(name, args...);
        const auto* given = std::get_if<double>(&result);
        return given ? *given : -999;
    }
    RuntimeEntity* named(const ScriptValue& handle) {
        const auto* given = std::get_if<ActorHandle>(&handle);
        return given ? world.entities.find(*given) : nullptr;
    }
};

TEST_F(HostStage, VariantsTellOfTheGame) {
    const auto variant = [&](const char* name) { return number("openborvariant", text(name)); };
    config.logicalWidth = 480;
    world.stage.index = 2;
    joinCoop("mate");
    EXPECT_EQ(variant("COUNT_PLAYERS"), 2);
    EXPECT_EQ(variant("levelheight"), 1000);
    EXPECT_EQ(variant("current_level"), 2);
    EXPECT_EQ(variant("in_level"), 1);
    inPlay = false;
    EXPECT_EQ(variant("in_level"), 0);
    EXPECT_EQ(variant("nosuch"), 0);
    add(makeEnemy(), 100);
    add(makeEnemy(), 100).visible = false;
    EXPECT_EQ(variant("ent_count"), 1);
    EXPECT_EQ(variant("ent_max"), 2) << "one above the last that getentity() finds";
    EXPECT_EQ(variant("player_max_z"), 1000);
    world.lastHit = {40, 200, -15, 3};
    EXPECT_EQ(variant("lasthita"), 15);
    stage.setOrder = generated::kStages[2].setOrder;
    const bool sameSet = generated::kStages[1].setOrder == stage.setOrder;
    EXPECT_EQ(variant("current_stage") > 1, sameSet);
    config.asWritten = true;
    for (const char* letter : {"ent_max", "player_max_z", "lasthita", "current_stage"}) {
        EXPECT_EQ(variant(letter), 0) << letter;
    }
    config.asWritten = false;
    call("changeopenborvariant", text("xpos"), 1e9);
    EXPECT_EQ(world.camera.x, 2000 - 480);
    call("changeopenborvariant", text("levelpos"), -5.0);
    EXPECT_EQ(variant("xpos"), 0);
    call("changeopenborvariant", text("nojoin"), 1.0);
    EXPECT_TRUE(world.stage.noJoin);
}

TEST_F(HostStage, LevelPropertiesTakeALevelAheadOfTheKey) {
    stage.branchName = "yard";
    EXPECT_EQ(call("getlevelproperty", text("branch")), text("yard"));
    EXPECT_EQ(call("getlevelproperty", 1.0, text("zmax")), ScriptValue(1000.0));
    EXPECT_EQ(call("setlevelproperty", 1.0, text("camerax"), 50.0), ScriptValue(true));
    EXPECT_EQ(world.camera.x, 50);
    EXPECT_EQ(call("changelevelproperty", text("camerax"), 60.0), ScriptValue(true));
    EXPECT_EQ(world.camera.x, 60);
    EXPECT_EQ(call("changelevelproperty", text("zmax"), 60.0), ScriptValue(false));
    world.stage.row = nullptr;
    EXPECT_EQ(call("getlevelproperty", text("branch")), kEmpty);
}

TEST_F(HostStage, ABranchIsTakenByName) {
    const ScriptText name = generated::kStages[2].branchName;
    ASSERT_FALSE(name.empty());
    EXPECT_EQ(call("jumptobranch", name), ScriptValue(true));
    EXPECT_EQ(world.branch.target, 2U);
    EXPECT_FALSE(world.stage.complete);
    EXPECT_EQ(call("jumptobranch", text("NoWhere"), 1.0), ScriptValue(false));
    EXPECT_EQ(tags, Tags{"jumptobranch-missing:nowhere"});
    EXPECT_FALSE(world.branch.immediate);
    call("jumptobranch", name, 1.0);
    EXPECT_TRUE(world.branch.immediate);
    EXPECT_TRUE(world.stage.complete);
}

TEST_F(HostStage, WallsAndHolesAreNumberedApart) {
    ground(GeometryKind::Hole, 300, 10, 0);
    ground(GeometryKind::Wall, 0, 50, 20);
    ground(GeometryKind::Wall, 40, 50, 60);
    ground(GeometryKind::Hole, 40, 100, -4);
    ground(GeometryKind::Hole, 100, 100, 0);
    const auto ask = [&](const char* name, double x, const auto&... altitude) {
        return number(name, x, 200.0, altitude...);
    };
    EXPECT_EQ(ask("checkwall", 45), 60) << "the highest";
    EXPECT_EQ(tags, Tags{"terrain-legacy-rectangle"});
    EXPECT_EQ(ask("checkwallindex", 45), 1);
    EXPECT_EQ(ask("checkwall", 45, 30.0), 20) << "that is not above";
    EXPECT_EQ(ask("checkwallindex", 45, 10.0), -1);
    EXPECT_EQ(ask("checkhole", 80), 0) << "a wall covers it";
    EXPECT_EQ(ask("checkholeindex", 80), -1);
    EXPECT_EQ(ask("checkholeindex", 120), 1) << "the first";
    EXPECT_EQ(ask("checkholeindex", 120, 0.0), 2) << "the highest";
    EXPECT_EQ(ask("checkhole", 120, 3.0), 0) << "above all of them";
    EXPECT_EQ(ask("checkholeindex", 305), 0);
    EXPECT_EQ(number("checkwall", 45.0), 0);
    EXPECT_EQ(tags, Tags{"checkwall-arguments"});
}

TEST_F(HostStage, ASpawnFollowsItsEntry) {
    config.logicalWidth = 400;
    world.camera.x = 100;
    EXPECT_EQ(call("spawn"), ScriptValue(kNobody)) << "no model yet";
    call("setspawnentry", text("Name"), text("robot"));
    RuntimeEntity* entity = named(call("spawn"));
    ASSERT_NE(entity, nullptr);
    EXPECT_EQ(entity->worldX, 300) << "in the middle of the screen";
    EXPECT_EQ(entity->health, 50);
    EXPECT_EQ(playing(*entity), "idle");
    call("setspawnentry", text("coords"), 20.0, 30.0, 40.0);
    call("setspawnentry", text("health"), 7.0);
    call("setspawnentry", text("map"), 2.0);
    entity = named(call("spawn"));
    EXPECT_EQ(entity->place().x, 20);
    EXPECT_EQ(entity->place().z, 30);
    EXPECT_EQ(entity->place().altitude, -40);
    EXPECT_EQ(entity->maxHealth, 7);
    EXPECT_EQ(entity->paletteMap, 2);
    call("clearspawnentry");
    EXPECT_TRUE(world.scripted.spawnEntry.model.empty());
}

TEST_F(HostStage, ASpawnBesideItsCallerLooksAsItDoes) {
    player.facing = -1;
    player.altitude = -10;
    player.paletteMap = 3;
    be(player);
    const auto spawn = [&](const char* how) {
        return *named(call(how, text("robot"), 20.0, 5.0, 7.0));
    };
    const RuntimeEntity ahead = spawn("spawn01");
    EXPECT_EQ(ahead.worldX, player.worldX - 20);
    EXPECT_EQ(ahead.altitude, -15);
    EXPECT_EQ(ahead.z, player.z + 7);
    EXPECT_EQ(ahead.facing, -1);
    EXPECT_EQ(ahead.paletteMap, 0);
    EXPECT_EQ(spawn("spawn01map").paletteMap, 3);
    EXPECT_EQ(spawn("spawn000").worldX, player.worldX + 20);
    EXPECT_EQ(call("spawn01", text("robot"), 20.0, 5.0), ScriptValue(kNobody));
    context = {};
    EXPECT_EQ(call("spawn01", text("robot"), 20.0, 5.0, 7.0), ScriptValue(kNobody));
}

TEST_F(HostStage, ASpawnThatSpawnsItselfEnds) {
    call("setspawnentry", text("name"), text("puff"));
    script("scripts/child.c", "spawn();");
    for (int i = 0; i < 30; ++i) call("spawn");
    EXPECT_LE(world.entities.size(), EntityList::kMostVisible);
    EXPECT_EQ(call("spawn"), ScriptValue(kNobody));
}

TEST_F(HostStage, AProjectileFliesForItsCaller) {
    player.altitude = -10;
    be(player);
    const auto shoot = [&](const auto&... args) {
        world.projectiles.clear();
        return call("projectile", args...);
    };
    EXPECT_EQ(shoot(1.0, text("puff"), 5.0, 6.0, 7.0, 0.0, 0.0, 0.0, 0.0),
              ScriptValue(ActorHandle{1}));
    ASSERT_EQ(world.projectiles.size(), 1U);
    RuntimeProjectile shot = world.projectiles[0];
    EXPECT_EQ(shot.worldX, player.worldX - 5);
    EXPECT_EQ(shot.z, player.z + 6);
    EXPECT_EQ(shot.altitude, -17);
    EXPECT_EQ(shot.vx, -1) << "the model's speed";
    EXPECT_TRUE(shot.fromPlayer);
    RuntimeEntity& enemy = add(makeEnemy(), 100);
    be(enemy);
    shoot(text("puff"), 5.0, 6.0, 7.0, 1.0, 0.0, 1.0, 0.0);
    shot = world.projectiles.at(0);
    EXPECT_EQ(shot.worldX, 5) << "not from the caller";
    EXPECT_TRUE(shot.bomb);
    EXPECT_LT(shot.vy, 0);
    EXPECT_FALSE(shot.fromPlayer);
    EXPECT_EQ(shot.ownerModel, enemy.model);
    shoot(text("puff"), 5.0, 6.0, 7.0, 1.0, 1.0, 1.0, 0.0);
    EXPECT_EQ(world.projectiles.at(0).vy, 0) << "it moves itself";
    EXPECT_EQ(shoot(text("puff"), 5.0), ScriptValue(kNobody));
    EXPECT_EQ(tags, Tags{"projectile-arguments"});
    EXPECT_EQ(shoot(text("ghost"), 5.0, 6.0, 7.0, 1.0, 1.0, 1.0, 0.0), ScriptValue(kNobody));
    EXPECT_EQ(tags, Tags{"projectile-model"});
}

}  // namespace
}  // namespace port
