// Who sees whom, and who is whose enemy.

#include "Factions.hpp"

#include <gtest/gtest.h>

#include "ModelFacts.hpp"

namespace port {
namespace {

generated::Character modelOf(const char* type) {
    generated::Character model{};
    model.type = type;
    return model;
}

TEST(Factions, AMaskDecidesWhereThereIsOne) {
    generated::Character enemy = modelOf("enemy");
    const generated::Character npc = modelOf("NPC");
    const generated::Character stranger = modelOf("robot");
    EXPECT_TRUE(modelIsHostileTo(&enemy, &npc, true));
    EXPECT_FALSE(modelIsHostileTo(&enemy, &npc, false));
    enemy.hostileMask = kTypePlayer;
    EXPECT_FALSE(modelIsHostileTo(&enemy, &npc, true));
    EXPECT_TRUE(modelCanDamage(&enemy, &npc, true)) << "another mask";
    enemy.hostileMask = kTypeNpc;
    EXPECT_TRUE(modelIsHostileTo(&enemy, &npc, false));
    enemy.hostileMask = -1;
    EXPECT_FALSE(modelIsHostileTo(&enemy, &stranger, true)) << "of a type that no mask names";
    EXPECT_TRUE(modelIsHostileTo(&enemy, nullptr, true));
}

TEST(Factions, ThingsFightOnTheirOwnersSide) {
    generated::Character owner = modelOf("player");
    owner.canDamageMask = kTypeEnemy;
    owner.perception = 5;
    generated::Character target = modelOf("npc");
    target.stealth = 5;
    for (const char* type : {"", "none", "Projectile", "shot"}) {
        const generated::Character thing = modelOf(type);
        EXPECT_FALSE(modelCanDamage(&thing, &target, true, &owner)) << type;
        EXPECT_TRUE(modelCanPerceive(&thing, &target, &owner)) << type;
    }
    generated::Character ally = modelOf("item");
    EXPECT_TRUE(modelCanDamage(&ally, &target, true, &owner)) << "no such thing";
    EXPECT_FALSE(modelCanPerceive(&ally, &target, &owner));
    generated::Character own = modelOf("none");
    own.canDamageMask = kTypeNpc;
    EXPECT_TRUE(modelCanDamage(&own, &target, false, &owner)) << "its own mask comes first";
    target.stealth = -3;
    ally.perception = -9;
    EXPECT_TRUE(modelCanPerceive(&ally, &target)) << "nobody sees less than nothing";
    EXPECT_FALSE(modelCanPerceive(&ally, nullptr));
}

}  // namespace
}  // namespace port
