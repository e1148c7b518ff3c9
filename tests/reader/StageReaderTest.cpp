#include "reader/StageReader.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tindrel {
namespace {

using Strings = std::vector<std::string>;
using Shape = std::array<float, 9>;

StageDef parse(std::string text) {
    return parseStage(TextFile(std::move(text), true));
}

// "kind value/group @at", the time only where the event has one.
Strings showEvents(const StageDef& stage) {
    Strings out;
    for (const StageEventDef& event : stage.events) {
        std::string text =
            event.kind + ' ' + std::to_string(event.value) + '/' + std::to_string(event.group);
        if (event.hasAt) text += " @" + std::to_string(event.at);
        out.push_back(std::move(text));
    }
    return out;
}

// "s" or "e", sequence and id of every instruction.
Strings showInstructions(const StageDef& stage) {
    Strings out;
    for (const auto& [sequence, kind, refId] : stage.instructions) {
        out.push_back((kind == kInstructionSpawn ? "s" : "e") + std::to_string(sequence) + ':' +
                      std::to_string(refId));
    }
    return out;
}

TEST(StageReader, TakesItsLimitsFromTheLevelSet) {
    LevelSetDef set;
    set.name = "Easy";
    set.order = 2;
    set.lives = 3;
    set.credits = 4;
    set.canSave = 1;
    set.skipSelect = 1;
    set.completeBg = 1;
    set.noShare = 1;
    set.ifComplete = 5;
    const StageDef stage = parseStage(TextFile(""), set, {100, 200, 90});
    EXPECT_EQ(stage.setName, "Easy");
    EXPECT_EQ(stage.setOrder, 2);
    EXPECT_EQ(stage.lives, 3);
    EXPECT_EQ(stage.credits, 4);
    EXPECT_EQ(stage.canSave, 1);
    EXPECT_EQ(stage.skipSelect, 1);
    EXPECT_EQ(stage.completeBg, 1);
    EXPECT_EQ(stage.noShare, 1);
    EXPECT_EQ(stage.ifComplete, 5);
    EXPECT_EQ(stage.zMin, 100);
    EXPECT_EQ(stage.zMax, 200);
    EXPECT_EQ(stage.backgroundHeight, 90);
    EXPECT_EQ(stage.direction, "right");
    EXPECT_TRUE(stage.musicLoop);
    EXPECT_EQ(stage.playerStartZ, 200) << "a default start does not move with zMin";
    EXPECT_FALSE(stage.player1SpawnDefined);
    EXPECT_TRUE(stage.instructions.empty());
}

TEST(StageReader, NumbersAndFlags) {
    struct Case {
        const char* text;
        std::int32_t StageDef::*field;
        std::int32_t expected;
    };
    const Case cases[] = {
        {"rock 9", &StageDef::rockMode, 3},
        {"rock -1", &StageDef::rockMode, 0},
        {"bossmusic a 5", &StageDef::bossMusicOffset, 5},
        {"bossmusic a -5", &StageDef::bossMusicOffset, 0},
        {"bossmusic a 5\nbossmusic b", &StageDef::bossMusicOffset, 5},
        {"water a -7", &StageDef::waterWarp, -7},
        {"light 3 4", &StageDef::stageLightY, 4},
        {"light 3", &StageDef::stageLightX, 0},
        {"setweap -2", &StageDef::setWeapon, 0},
        {"setweap 2", &StageDef::setWeapon, 2},
        {"settime 99", &StageDef::setTime, 99},
        {"cameratype -1", &StageDef::cameraType, -1},
        {"type none", &StageDef::cameraType, 1},
        {"type 0", &StageDef::cameraType, 1},
        {"cameratype 2\ntype Both", &StageDef::cameraType, 2},
        {"cameraoffset 5 -6", &StageDef::cameraOffsetX, 5},
        {"cameraoffset 5 -6", &StageDef::cameraOffsetY, -6},
        {"cameraoffset 5", &StageDef::cameraOffsetX, 0},
        {"shadowcolor x", &StageDef::shadowColor, -1},
        {"shadowcolor 2", &StageDef::shadowColor, 2},
        {"shadowalpha 8", &StageDef::shadowAlpha, 6},
        {"scrollspeed 3x", &StageDef::scrollSpeed, 3},
        {"spawn2 10 -20 30", &StageDef::player2StartX, 10},
        {"spawn2 10 -20 30", &StageDef::player2StartZ, 140},
        {"spawn2 10 -20 30", &StageDef::player2StartA, 30},
        {"spawn2 10 -20", &StageDef::player2StartX, 98},
        {"spawn3 0 2147483647 0", &StageDef::player3StartZ, 2147483647},
        {"spawn4 0 x 0", &StageDef::player4StartZ, 160},
    };
    for (const auto& [text, field, expected] : cases) {
        EXPECT_EQ(parse(text).*field, expected) << text;
    }

    const StageDef stage = parse(
        "spawn1 10 20 0\nspawn3 1 2\nspawn4 1 2 3\nmusic data/M.ogg 0\nnoslow 1\nnotime 0\n"
        "type BOTH\ndirection LEFT\nnext data/n.txt\nbranch data/b.txt\nlevelscript data/s.c\n"
        "EndLevel\nwater Data/W.gif\nbossmusic Data/B.ogg\n");
    EXPECT_EQ(stage.playerStartZ, 180);
    EXPECT_TRUE(stage.player1SpawnDefined);
    EXPECT_FALSE(stage.player2SpawnDefined);
    EXPECT_FALSE(stage.player3SpawnDefined);
    EXPECT_TRUE(stage.player4SpawnDefined);
    EXPECT_EQ(stage.music, "M.ogg");
    EXPECT_FALSE(stage.musicLoop);
    EXPECT_TRUE(stage.noSlow);
    EXPECT_FALSE(stage.noTime);
    EXPECT_EQ(stage.typeName, "both");
    EXPECT_EQ(stage.direction, "left");
    EXPECT_EQ(stage.nextStage, "n.txt");
    EXPECT_EQ(stage.branchStage, "b.txt");
    ASSERT_EQ(stage.events.size(), 1U);
    EXPECT_EQ(stage.events[0].text, "data/b.txt");
    EXPECT_EQ(stage.levelScript, "s.c");
    EXPECT_TRUE(stage.endLevel);
    EXPECT_EQ(stage.waterPath, "W.gif");
    EXPECT_EQ(stage.bossMusic, "B.ogg");
}

TEST(StageReader, LayersReadNumbersByPosition) {
    const StageDef stage = parse(
        "background data/Sky.gif .25 x 1 2 3 4 5 6 7\n"
        "panel data/p.gif 9\n"
        "frontpanel f.gif\n"
        "bglayer b.gif .1 .2 1 2 3 4 5 6 7 9 1 10 20 1.5 -2 99\n"
        "bglayer short.gif 2\n"
        "fglayer g.gif 44 .1 .2 1 2 3 4 5 6 7 -1 1 10 20 1.5 -2\n"
        "fglayer short.gif\n"
        "fglayer\n");
    ASSERT_EQ(stage.layers.size(), 7U);
    EXPECT_EQ(stage.background, "Sky.gif");
    EXPECT_EQ(stage.panels, Strings{"p.gif"});

    const LayerDef& sky = stage.layers[0];
    EXPECT_EQ(sky.kind, "background");
    EXPECT_FLOAT_EQ(sky.xRatio, 0.25F);
    EXPECT_FLOAT_EQ(sky.zRatio, 0.5F);
    EXPECT_EQ(sky.xOffset, 1);
    EXPECT_EQ(sky.zRepeat, 6);
    EXPECT_EQ(sky.transparency, 0) << "a background ends at zRepeat";
    EXPECT_EQ(stage.layers[1].kind, "panel");
    EXPECT_FLOAT_EQ(stage.layers[1].xRatio, 0.5F);
    EXPECT_EQ(stage.layers[2].kind, "frontpanel");
    EXPECT_FLOAT_EQ(stage.layers[2].xRatio, 1.5F);
    EXPECT_FLOAT_EQ(stage.layers[2].zRatio, 0.5F);

    for (const std::size_t i : {3U, 5U}) {
        const LayerDef& layer = stage.layers[i];
        EXPECT_EQ(layer.kind, i == 3 ? "bglayer" : "fglayer");
        EXPECT_EQ(layer.path, i == 3 ? "b.gif" : "g.gif");
        EXPECT_EQ(layer.zOrder, i == 3 ? 0 : 44);
        EXPECT_FLOAT_EQ(layer.xRatio, 0.1F);
        EXPECT_FLOAT_EQ(layer.zRatio, 0.2F);
        EXPECT_EQ(layer.xOffset, 1);
        EXPECT_EQ(layer.zOffset, 2);
        EXPECT_EQ(layer.xSpacing, 3);
        EXPECT_EQ(layer.zSpacing, 4);
        EXPECT_EQ(layer.xRepeat, 5);
        EXPECT_EQ(layer.zRepeat, 6);
        EXPECT_EQ(layer.transparency, 7);
        EXPECT_EQ(layer.alpha, i == 3 ? 6 : 0);
        EXPECT_EQ(layer.waterMode, 1);
        EXPECT_EQ(layer.amplitude, 10);
        EXPECT_EQ(layer.wavelength, 20);
        EXPECT_FLOAT_EQ(layer.waveSpeed, 1.5F);
        EXPECT_FLOAT_EQ(layer.bgSpeedRatio, -2);
    }
    EXPECT_FLOAT_EQ(stage.layers[4].xRatio, 2);
    EXPECT_FLOAT_EQ(stage.layers[4].zRatio, 0.5F);
    EXPECT_FLOAT_EQ(stage.layers[6].xRatio, 1);
    EXPECT_FLOAT_EQ(stage.layers[6].zRatio, 1);
}

TEST(StageReader, WallsAndHolesOfSevenNumbersAreShapes) {
    const StageDef stage = parse(
        "wall 1 2 3\n"
        "wall 1 2 3 4\n"
        "platform 1 2 3 4 5 6 7 8\n"
        "hole 1 2 3 4 5 6 7\n"
        "wall 1 2.5 x 4 5 6 7 8 9\n"
        "obstacle 1 2 3 4 5\n");
    ASSERT_EQ(stage.geometry.size(), 5U);
    const GeometryDef& box = stage.geometry[0];
    EXPECT_EQ(box.kind, "wall");
    EXPECT_EQ(box.x, 1);
    EXPECT_EQ(box.h, 4);
    EXPECT_EQ(box.depth, 0);
    EXPECT_FALSE(box.openborShape);
    EXPECT_FALSE(stage.geometry[1].openborShape) << "a platform stays a box";
    EXPECT_EQ(stage.geometry[1].altitude, 6);
    EXPECT_TRUE(stage.geometry[2].openborShape);
    EXPECT_EQ(stage.geometry[2].shape, (Shape{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(stage.geometry[3].shape, (Shape{1, 2.5F, 0, 4, 5, 6, 7, 8}));
    EXPECT_EQ(stage.geometry[3].z, 2);
    EXPECT_EQ(stage.geometry[4].depth, 5);
}

TEST(StageReader, PanelOrderPicksByLetterOrNotAtAll) {
    const std::string panels = "panel a\npanel b\npanel c\n";
    struct Case {
        std::string order;
        Strings expected;
        bool valid;
    };
    const std::vector<Case> cases = {
        {"order aCb\n", {"a", "c", "b"}, true},
        {"order aa\norder a\n", {"a", "a", "a"}, true},
        {"", {"a", "b", "c"}, true},
        {"order a1\n", {"a", "b", "c"}, false},
        {"order ad\n", {"a", "b", "c"}, false},
        {"order a\xC3\xA9\n", {"a", "b", "c"}, false},
    };
    for (const auto& [order, expected, valid] : cases) {
        // The order may stand ahead of the panels.
        const StageDef stage = parse(order + panels);
        EXPECT_EQ(stage.panels, expected) << order;
        EXPECT_EQ(stage.panelOrderValid, valid) << order;
    }
    EXPECT_EQ(parse("order aa\norder a").panelOrder, "aaa");
}

TEST(StageReader, OneAtServesTheSpawnAndEverythingThatWaits) {
    const StageDef stage = parse(
        "spawn Foo\n"
        "group 3 5\n"
        "wait\n"
        "nojoin\n"
        "canjoin 7\n"
        "blockade 500\n"
        "at 100\n"
        "coords 1 2\n"
        "at 200\n"
        "spawn Bar\n"
        "at\n");
    ASSERT_EQ(stage.spawns.size(), 2U);
    EXPECT_EQ(stage.spawns[0].at, 100);
    EXPECT_EQ(stage.spawns[0].x, 1) << "an \"at\" leaves the block open";
    EXPECT_EQ(stage.spawns[1].at, 0);
    EXPECT_TRUE(stage.spawns[1].hasAt);
    EXPECT_EQ(showEvents(stage),
              (Strings{"group 3/5 @100", "wait 0/0 @100", "nojoin 1/0 @100", "canjoin 0/0 @100",
                       "blockade 500/0 @100", "scrollat 0/0 @200"}));
    // A spawn's number is drawn where its block opens; its instruction follows where it closes.
    EXPECT_EQ(showInstructions(stage),
              (Strings{"e1:0", "e2:1", "e3:2", "e4:3", "e5:4", "e6:5", "s0:0", "s7:1"}));
}

TEST(StageReader, EventsWithoutAnAt) {
    struct Case {
        const char* text;
        Strings expected;
    };
    const std::vector<Case> cases = {
        {"at 100", {"scrollat 0/0 @100"}},
        {"group 3", {"group 3/3"}},
        {"group", {"group 0/0"}},
        {"group x 9\nfoo\nat 5", {"group 0/9", "scrollat 0/0 @5"}},
        {"wait 50", {"wait 0/0 @50"}},
        {"wait\nat 200\nat 300", {"wait 0/0 @200", "scrollat 0/0 @300"}},
        {"nojoin 0\nat 1", {"nojoin 0/0 @1"}},
        {"nojoin x\nat 1", {"nojoin 1/0 @1"}},
        {"blockade 500\nmusic x.ogg\nat 9", {"blockade 500/0 @500", "scrollat 0/0 @9"}},
        {"blockade 500", {"blockade 500/0 @500"}},
        {"blockade 0\nunknown", {"blockade 0/0"}},
        {"blockade", {"blockade 0/0"}},
        {"blockade 500 -20\nat 7", {"blockade 500/0 @-20", "scrollat 0/0 @7"}},
        {"blockade 5\nwait\ncanjoin\nat 8", {"blockade 5/0 @8", "wait 0/0 @8", "canjoin 0/0 @8"}},
        {"scrollx 5\nscrollspeed -1\nscrollx", {"scrollx 5/0", "scrollspeed -1/0"}},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(showEvents(parse(text)), expected) << text;
    }
}

TEST(StageReader, SpawnBlocks) {
    const StageDef stage = parse(
        "alias outside\n"
        "spawn Foo\n"
        "alias Bob\n"
        "item Apple\n"
        "map 2\n"
        "health x\n"
        "score 50\n"
        "spawnscript data/s.c\n"
        "music m.ogg\n"
        "coords 10 x 30 40\n"
        "boss\n"
        "flip 1\n"
        "weapon Knife\n"
        "spawn Bar\n"
        "map12\n"
        "mapx\n"
        "boss 1\n"
        "boss 0\n"
        "spawn Baz\n"
        "palette 7\n"
        "boss 0\n"
        "health 20\n"
        "set A\n"
        "score 1\n"
        "set\n"
        "score 2\n");
    ASSERT_EQ(stage.spawns.size(), 3U);
    const SpawnDef& foo = stage.spawns[0];
    EXPECT_EQ(foo.model, "Foo");
    EXPECT_EQ(foo.alias, "Bob");
    EXPECT_EQ(foo.item, "Apple");
    EXPECT_EQ(foo.map, "2");
    EXPECT_EQ(foo.health, -1);
    EXPECT_EQ(foo.score, 50);
    EXPECT_EQ(foo.spawnScript, "s.c");
    EXPECT_EQ(foo.x, 10);
    EXPECT_EQ(foo.z, 200);
    EXPECT_EQ(foo.a, 30);
    EXPECT_EQ(foo.y, 40);
    EXPECT_TRUE(foo.boss);
    EXPECT_EQ(foo.spawnType, kSpawnBoss);
    EXPECT_TRUE(foo.flip);
    EXPECT_FALSE(foo.hasAt);
    EXPECT_EQ(stage.music, "m.ogg");

    const SpawnDef& bar = stage.spawns[1];
    EXPECT_EQ(bar.alias, "Bar");
    EXPECT_EQ(bar.map, "12");
    EXPECT_FALSE(bar.boss);
    EXPECT_EQ(bar.spawnType, kSpawnBoss) << "taking \"boss\" back leaves the type";
    EXPECT_FALSE(bar.flip);

    const SpawnDef& baz = stage.spawns[2];
    EXPECT_EQ(baz.id, 2);
    EXPECT_EQ(baz.map, "7");
    EXPECT_EQ(baz.spawnType, kSpawnPlain);
    EXPECT_EQ(baz.health, 20);
    EXPECT_EQ(baz.score, 1) << "a \"set\" with a name is no end of the block";
}

TEST(StageReader, ItemsAndWeaponsOpenABlockOutsideOne) {
    const StageDef stage = parse(
        "item\n"
        "item Apple\n"
        "at 5\n"
        "file\n"
        "weapon Knife\n"
        "item Pear\n"
        "spawn\n"
        "coords 1 1\n");
    ASSERT_EQ(stage.spawns.size(), 2U);
    EXPECT_EQ(stage.spawns[0].model, "Apple");
    EXPECT_EQ(stage.spawns[0].spawnType, kSpawnItem);
    EXPECT_EQ(stage.spawns[0].at, 5);
    EXPECT_EQ(stage.spawns[1].model, "Knife");
    EXPECT_EQ(stage.spawns[1].spawnType, kSpawnWeapon);
    EXPECT_EQ(stage.spawns[1].item, "Pear");
    EXPECT_EQ(stage.spawns[1].x, 0);
    EXPECT_EQ(showInstructions(stage), (Strings{"s0:0", "s1:1"}));
}

}  // namespace
}  // namespace tindrel
