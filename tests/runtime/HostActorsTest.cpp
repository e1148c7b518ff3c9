// What scripts know of actors and do to them.

#include <limits>

#include "Bindings.hpp"
#include "HostTrial.hpp"
#include "ScriptState.hpp"

namespace port {
namespace {

struct HostActors : HostTrial {
    generated::Character& model = makeModel("enemy", {"idle", "walk", "attack1"});
    RuntimeEntity& foe = add(model, 100);
    RuntimeCoopPlayer& mate = joinCoop("mate");

    template <class... Args>
    ScriptValue get(const Actor& actor, const char* key, const Args&... more) {
        return call("getentityproperty", actor.handle, text(key), more...);
    }
    template <class... Args>
    void set(const Actor& actor, const char* key, const Args&... values) {
        call("changeentityproperty", actor.handle, text(key), values...);
    }
};

TEST_F(HostActors, HeightsAndSpeedsCountUpwardForScripts) {
    foe.altitude = -10;
    foe.verticalVelocity = -3;
    EXPECT_EQ(get(foe, "A"), ScriptValue(10.0));
    EXPECT_EQ(get(foe, "tossv"), ScriptValue(3.0));
    set(foe, "position", 50.0, std::monostate(), 20.0);
    EXPECT_EQ(foe.worldX, 50);
    EXPECT_EQ(foe.z, 200) << "what is no number stays";
    EXPECT_EQ(foe.altitude, -20);
    set(foe, "velocity", std::monostate(), 2.0, 5.0);
    EXPECT_EQ(foe.scriptVelocityX, 0);
    EXPECT_EQ(foe.scriptVelocityZ, 2);
    EXPECT_EQ(foe.verticalVelocity, -5);
    set(foe, "direction", 1.0);
    EXPECT_EQ(foe.facing, 1);
    set(foe, "x", std::numeric_limits<double>::infinity());
    EXPECT_EQ(foe.worldX, 1 << 24);
}

TEST_F(HostActors, HealthStaysWithinItsBounds) {
    set(foe, "maxhealth", 60.0);
    set(foe, "health", 1e300);
    EXPECT_EQ(foe.health, 60);
    set(foe, "maxhealth", -4.0);
    EXPECT_EQ(foe.maxHealth, 1);
    EXPECT_EQ(foe.health, 1);
    call("changeplayerproperty", 1.0, text("health"), 1000.0);
    EXPECT_EQ(mate.health, mate.maxHealth);
    EXPECT_EQ(call("getplayerproperty", 9.0, text("health")), ScriptValue(0.0));
    EXPECT_EQ(call("changeentityproperty", foe.handle, text("mood"), 3.0), ScriptValue(3.0))
        << "an unknown key does nothing";
}

TEST_F(HostActors, KindsOfActorsHaveDifferentProperties) {
    foe.alive = player.alive = mate.alive = false;
    EXPECT_EQ(get(foe, "exists"), ScriptValue(1.0)) << "visible";
    EXPECT_EQ(get(player, "exists"), ScriptValue(0.0));
    EXPECT_EQ(get(foe, "dead"), ScriptValue(1.0));
    EXPECT_EQ(get(mate, "playerindex"), ScriptValue(1.0));
    EXPECT_EQ(get(foe, "playerindex"), kEmpty);
    set(foe, "subject_to_screen", 1.0);
    EXPECT_TRUE(foe.subjectToScreen);
    EXPECT_EQ(get(foe, "subject_to_screen"), ScriptValue(1.0));
    EXPECT_EQ(get(player, "subject_to_screen"), kEmpty);
    foe.altitude = player.altitude = -5;
    foe.verticalVelocity = player.verticalVelocity = -1;
    EXPECT_EQ(get(player, "aiflag", text("falling")), ScriptValue(1.0)) << "in the air";
    EXPECT_EQ(get(foe, "aiflag", text("falling")), ScriptValue(0.0)) << "on its way up";
    EXPECT_EQ(get(foe, "aiflag", text("drop")), ScriptValue(1.0));
    foe.attackTicks = player.attackTicks = 3;
    EXPECT_EQ(get(foe, "aiflag", text("attacking")), ScriptValue(1.0));
    EXPECT_EQ(get(player, "aiflag", text("attacking")), kEmpty);
    EXPECT_EQ(get(player, "attacking"), ScriptValue(1.0));
}

TEST_F(HostActors, WhatScriptsAskBesidesIsAnsweredUnlessAGameIsTakenToTheLetter) {
    foe.maxMp = 10;
    set(foe, "mp", 99.0);
    EXPECT_EQ(foe.mp, 10);
    set(foe, "maxmp", 4.0);
    EXPECT_EQ(get(foe, "mp"), ScriptValue(4.0));
    EXPECT_EQ(get(foe, "subject_to_minz"), ScriptValue(foe.model->subjectToMinZ ? 1.0 : 0.0));
    set(foe, "subject_to_minz", 1.0);
    set(foe, "subject_to_wall", 0.0);
    set(foe, "subject_to_hole", 0.0);
    EXPECT_EQ(foe.scriptedBounds, kBoundMinZ | kBoundWalls | kBoundHoles);
    EXPECT_EQ(foe.heldBounds, kBoundMinZ);
    set(foe, "subject_to_hole", 1.0);
    EXPECT_EQ(get(foe, "subject_to_hole"), ScriptValue(1.0));
    world.tick = 100;
    set(foe, "invinctime", 150.0);
    EXPECT_EQ(foe.invincibleTicks, 50);
    EXPECT_EQ(get(foe, "invinctime"), ScriptValue(150.0));
    set(foe, "invincible", 0.0);
    EXPECT_EQ(get(foe, "invinctime"), ScriptValue(0.0));
    set(foe, "y", 12.0);
    EXPECT_EQ(foe.altitude, -12);
    EXPECT_EQ(get(foe, "animvalid", text("WALK")), ScriptValue(1.0));
    EXPECT_EQ(get(foe, "animvalid", text("jump")), ScriptValue(0.0));
    EXPECT_EQ(get(foe, "defaultname"), get(foe, "name"));
    RuntimeEntity& carrier = add(makeModel("obstacle", {"idle"}), 100);
    carry(carrier, 40, 20, 25);
    EXPECT_EQ(get(foe, "base"), ScriptValue(25.0));

    const ScriptValue key = call("openborconstant", text("ENTITY_PROPERTY_OPPONENT"));
    call("set_entity_property", foe.handle, key, mate.handle);
    EXPECT_EQ(call("get_entity_property", foe.handle, key), ScriptValue(mate.handle));
    foe.opponent = 999;
    EXPECT_EQ(get(foe, "opponent"), ScriptValue(kNobody)) << "somebody who has gone";
    player.grabbedEntity = foe.handle;
    EXPECT_EQ(get(player, "grabbing"), ScriptValue(foe.handle));
    set(foe, "parent", kPlayer1Handle);
    EXPECT_EQ(get(foe, "parent"), ScriptValue(kPlayer1Handle));

    player.livesRemaining = 3;
    call("changeplayerproperty", 1.0, text("lives"), 5.0);
    EXPECT_EQ(player.livesRemaining, 5) << "they share them";
    stage.noShare = 1;
    call("changeplayerproperty", 1.0, text("lives"), 2.0);
    EXPECT_EQ(mate.livesRemaining, 2);
    EXPECT_EQ(call("getplayerproperty", 0.0, text("lives")), ScriptValue(5.0));
    EXPECT_EQ(call("getplayerproperty", 3.0, text("credits")), ScriptValue(0.0)) << "nobody";

    config.asWritten = true;
    for (const char* letter : {"mp", "subject_to_wall", "opponent", "y", "defaultname"}) {
        EXPECT_EQ(get(foe, letter), kEmpty) << letter;
    }
    set(foe, "mp", 1.0);
    EXPECT_EQ(foe.mp, 4);
    EXPECT_EQ(call("getplayerproperty", 0.0, text("lives")), ScriptValue(0.0));
    call("set_entity_property", foe.handle, text("x"), 5.0);
    EXPECT_EQ(tags, Tags{"set_entity_property"});
}

TEST_F(HostActors, AntigravityNeedsAName) {
    be(foe);
    call("changeentityproperty", 0.0, text("antigravity"), 0.5);
    EXPECT_FALSE(foe.hasScriptAntigravity);
    set(foe, "antigravity", 0.5);
    EXPECT_EQ(get(foe, "antigravity"), ScriptValue(0.5));
}

TEST_F(HostActors, ModelsAreReachedByNameHandleAndActor) {
    const auto property = [&](const ScriptValue& of, const char* key) {
        return call("getmodelproperty", of, text(key));
    };
    const ScriptValue handle = get(player, "modelptr");
    EXPECT_GE(std::get<ActorHandle>(handle), kFirstModelHandle);
    EXPECT_EQ(property(handle, "hp"), ScriptValue(120.0));
    EXPECT_EQ(property(text("HERO"), "guardrate"), ScriptValue(5.0));
    EXPECT_EQ(property(mate.handle, "name"), text("Mate"));
    EXPECT_EQ(property(text("nobody"), "name"), kEmpty);
    EXPECT_EQ(property(ActorHandle{kFirstModelHandle + 5000}, "name"), kEmpty);
    EXPECT_EQ(property(mate.handle, "nograb"), ScriptValue(0.0));
}

TEST_F(HostActors, ATossDiffersByKind) {
    player.jumping = true;
    call("tossentity", kPlayer1Handle, 0.0, 2.0, 3.0);
    EXPECT_EQ(player.jumpVelocityX, 2);
    EXPECT_EQ(player.scriptVelocityX, 0);
    player.jumping = false;
    call("tossentity", kPlayer1Handle, 0.0, 4.0, 0.0);
    EXPECT_EQ(player.scriptVelocityX, 4);
    call("tossentity", kPlayer1Handle, 6.0, 1.0, 1.0);
    EXPECT_TRUE(player.jumping);
    EXPECT_EQ(player.altitude, -0.5F);
    EXPECT_EQ(player.verticalVelocity, -6);
    EXPECT_EQ(player.jumpVelocityZ, 1);
    EXPECT_EQ(player.scriptVelocityX, 0);
    call("tossentity", mate.handle, 6.0, 1.0, 1.0);
    EXPECT_TRUE(mate.jumping);
    EXPECT_EQ(mate.scriptVelocityX, 1);
    call("tossentity", foe.handle, 6.0, 1.0, 1.0);
    EXPECT_EQ(foe.altitude, -0.5F);
    EXPECT_EQ(foe.scriptVelocityX, 1);
    be(foe);
    EXPECT_EQ(call("tossentity", 0.0, 6.0), ScriptValue(false)) << "0 is nobody here";
}

TEST_F(HostActors, AnimationsAndAttacksBegin) {
    player.model = mate.model = &model;
    player.lastFrame = foe.lastFrame = 0;
    call("changeanimation", kPlayer1Handle, text("WALK"));
    EXPECT_EQ(playing(player), "walk");
    EXPECT_EQ(player.lastFrame, kNoFrame);
    call("setidle", kPlayer1Handle);
    EXPECT_EQ(playing(player), "idle");
    const_cast<generated::Animation&>(model.animations[2]).energyCost = 5;
    foe.health = 3;
    foe.mp = 0;
    EXPECT_EQ(call("performattack", foe.handle), ScriptValue(false)) << "it cannot pay";
    model.onDoAttackScript = hook("strike.c", "attack");
    scripts.machine().setHost(&host);
    player.health = mate.health = foe.health = 50;
    for (Actor* actor :
         {static_cast<Actor*>(&player), static_cast<Actor*>(&mate), static_cast<Actor*>(&foe)}) {
        EXPECT_EQ(call("performattack", actor->handle, text("attack1")), ScriptValue(true));
        EXPECT_EQ(playing(*actor), "attack1");
        EXPECT_EQ(actor->attackTicks, 11);
        EXPECT_EQ(actor->attackCooldown, 3);
    }
    EXPECT_EQ(foe.health, 45);
    EXPECT_EQ(global("hooks"), "strike.c:attack1 strike.c:attack1 strike.c:attack1 ");
    EXPECT_EQ(player.attackId, 1U);
    EXPECT_EQ(mate.attackId, 1U);
    folder.write("data/broken.c", "void main(){ (; }");
    model.onDoAttackScript = "broken.c";
    std::string reported;
    for (const ActorHandle actor : {kPlayer1Handle, mate.handle, foe.handle}) {
        call("performattack", actor);
        reported += warnings.substr(0, warnings.find(" error")) + "|";
    }
    EXPECT_EQ(reported,
              "Script VM script-player-performattack|Script VM script-coop-performattack|"
              "Script VM script-entity-performattack|");
}

TEST_F(HostActors, DamageAndDeathAreGivenByHandle) {
    foe.health = foe.maxHealth = player.health = mate.health = 40;
    be(player);
    call("damageentity", foe.handle, kPlayer1Handle, 7.0);
    EXPECT_EQ(foe.health, 33);
    EXPECT_EQ(foe.scriptCtx.local.at("attacker"), ScriptValue(kPlayer1Handle));
    call("damageentity", foe.handle, 3.0);
    EXPECT_EQ(foe.health, 30);
    call("damageentity", foe.handle);
    EXPECT_EQ(foe.health, 29);
    call("damageentity", mate.handle, 0.0, 4.0);
    EXPECT_EQ(mate.health, 36);
    call("damageentity", 0.0, 0.0, 4.0);
    EXPECT_EQ(player.health, 36);
    EXPECT_EQ(call("killentity", 0.0), ScriptValue(0.0)) << "0 is nobody here";
    EXPECT_EQ(call("killentity", foe.handle, 1.0), ScriptValue(1.0));
    EXPECT_EQ(tags, Tags{"killentity-trigger"});
    EXPECT_FALSE(foe.alive || foe.visible);
    EXPECT_EQ(foe.health, 0);
}

TEST_F(HostActors, TargetsAreTheNearestWhomOneFights) {
    mate.alive = false;
    player.worldX = 300;
    RuntimeEntity& near = add(makeModel("obstacle", {"idle"}), 260);
    const RuntimeEntity& item = add(makeModel("item", {"idle"}), 290);
    updateRoster(world);
    EXPECT_EQ(call("findtarget", kPlayer1Handle), ScriptValue(near.handle));
    near.alive = false;
    EXPECT_EQ(call("findtarget", kPlayer1Handle), ScriptValue(foe.handle));
    EXPECT_EQ(call("findtarget", foe.handle), ScriptValue(kPlayer1Handle));
    model.hostileMask = 1 << 4;  // items
    EXPECT_EQ(call("findtarget", foe.handle), ScriptValue(item.handle));
    model.hostileMask = 1 << 13;
    EXPECT_EQ(call("findtarget", foe.handle), ScriptValue(kNobody));

    config.enemyAttackRange = 50;
    model.grabDistance = 80;
    player.worldX = 170;
    EXPECT_EQ(call("checkrange", foe.handle, kPlayer1Handle), ScriptValue(true));
    EXPECT_EQ(call("checkrange", kPlayer1Handle, foe.handle), ScriptValue(false));
    player.z += 25;
    EXPECT_EQ(call("checkrange", foe.handle, kPlayer1Handle), ScriptValue(false));
    EXPECT_EQ(call("checkrange", foe.handle, 999.0), ScriptValue(false));
    EXPECT_EQ(call("getentity", 1.0), ScriptValue(near.handle)) << "the dead keep their place";
    EXPECT_EQ(call("getentity", 77.0), ScriptValue(kNobody));
}

TEST_F(HostActors, BindingsTakeTheOffsetsThatAreNumbers) {
    player.facing = -1;
    call("bindentity", foe.handle, kPlayer1Handle, 10.0, std::monostate(), 5.0, 1.0);
    EXPECT_EQ(foe.worldX, player.worldX - 10) << "at once";
    EXPECT_EQ(foe.altitude, -5);
    EXPECT_EQ(foe.facing, -1);
    EXPECT_EQ(foe.binding.config, kBindX | kBindAltitude);
    EXPECT_EQ(foe.binding.sort, -1);
    call("bindentity", foe.handle, kPlayer1Handle, std::monostate(), 3.0, 0.0, 0.0, 16.0, 7.0);
    EXPECT_EQ(tags, Tags{"bindentity-config:16"});
    EXPECT_EQ(foe.binding.x, 10) << "kept, without effect";
    EXPECT_EQ(foe.binding.config, kBindZ | kBindAltitude | 16);
    EXPECT_EQ(foe.binding.sort, 7);
    call("bindentity", foe.handle, 0.0);
    EXPECT_EQ(foe.binding.target, kNobody);
}

TEST_F(HostActors, BindingsThatLeadNowhereAreNone) {
    RuntimeEntity& second = add(model, 200);
    call("bindentity", second.handle, foe.handle, 10.0);
    call("bindentity", foe.handle, kPlayer1Handle, 10.0);
    call("bindentity", foe.handle, second.handle, 10.0);
    EXPECT_EQ(tags, Tags{"bindentity-cycle"});
    EXPECT_EQ(foe.binding.target, kNobody) << "the old one is gone too";
    call("bindentity", foe.handle);
    EXPECT_EQ(tags, Tags{"bindentity-arguments"});
    call("bindentity", foe.handle, 999.0);
    EXPECT_EQ(tags, Tags{"bindentity-invalid-target"});
    second.visible = false;
    call("bindentity", second.handle, foe.handle);
    EXPECT_EQ(tags, Tags{"bindentity-invalid-actor"});
    be(foe);
    call("bindentity", 0.0, kPlayer1Handle, 10.0);
    EXPECT_EQ(foe.binding.target, kNobody) << "0 is nobody here";
    EXPECT_TRUE(tags.empty());
}

TEST_F(HostActors, KeysAreAskedByPlaceAndName) {
    world.slots[1].keys = 1U << 4U | 1U << 2U;
    world.slots[1].newKeys = 1U << 5U;
    const auto keys = [&](double state, const auto&... names) {
        return call("playerkeys", 1.0, state, text(names)...);
    };
    EXPECT_EQ(keys(0, "attack", "MoveUp"), ScriptValue(true));
    EXPECT_EQ(keys(0, "attack", "jump"), ScriptValue(false));
    EXPECT_EQ(keys(1, "jump"), ScriptValue(true));
    EXPECT_EQ(keys(1, "anybutton"), ScriptValue(true)) << "any of its buttons";
    EXPECT_EQ(keys(2, "anybutton"), ScriptValue(false));
    EXPECT_EQ(keys(0, "attack", "tail"), ScriptValue(false));
    call("changeplayerproperty", 1.0, text("disablekeys"), -1e300);
    EXPECT_EQ(world.slots[1].disabledKeys, 0U);
    call("changeplayerproperty", 1.0, text("playkeys"), 3.0);
    EXPECT_EQ(call("getplayerproperty", 1.0, text("PlayKeys")), ScriptValue(3.0));
    EXPECT_EQ(call("getplayerproperty", 1.0, text("entity")), ScriptValue(mate.handle));
    mate.alive = false;
    EXPECT_EQ(call("getplayerproperty", 1.0, text("entity")), ScriptValue(kNobody));
}

}  // namespace
}  // namespace port
