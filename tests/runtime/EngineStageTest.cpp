// Stages: loading, the start of a game on them, and their picture.

#include <array>
#include <filesystem>
#include <fstream>

#include "AnimationLookup.hpp"
#include "Engine.hpp"
#include "EngineTrial.hpp"

namespace port {
namespace {

struct EngineStage : EngineTrial {
    // With players who stand still.
    EngineStage() {
        EXPECT_TRUE(initialize());
        game.drive = PlayerDrive::Devices;
    }

    bool load(std::size_t index) {
        return captured([&] { return loadStage(game, index, false); });
    }
    // Red, green, blue.
    std::array<int, 3> pixel(int x, int y) {
        const SpriteImage& canvas = game.renderer.canvas();
        const std::size_t at = pixelOffset(canvas, x, y);
        return {canvas.bgra[at + 2], canvas.bgra[at + 1], canvas.bgra[at]};
    }
};

TEST_F(EngineStage, AStageIsAsLongAsItsPicturesAndWhatWaitsInIt) {
    EXPECT_TRUE(load(0));
    EXPECT_EQ(world.stage.length, 2564) << "the spawn at 2000 stands 500 pixels on";
    EXPECT_TRUE(world.stage.noJoin) << "the gate at the start holds";
    EXPECT_EQ(world.stageScriptCtx.local.at("level"), ScriptValue(1.0));
    EXPECT_TRUE(logged("Stage 1/5: data/levels/street.txt geometry=0 length=2564")) << log;
    EXPECT_TRUE(log.starts_with("Decoded music: wav-pcm16 1ch 22050Hz frames=40\n")) << log;

    EXPECT_TRUE(load(1));
    EXPECT_EQ(world.stage.length, 320);
    EXPECT_FALSE(world.stage.noJoin);
    EXPECT_EQ(world.stageScriptCtx.local.size(), 0U) << "a stage's variables end with it";
    EXPECT_TRUE(log.find("Preview music: ") != log.npos) << "a stage without music of its own";
    EXPECT_FALSE(load(5));
    EXPECT_EQ(world.stage.index, 1U);

    generated::Stage row = generated::kStages[2];
    const generated::StageEvent gate = {1, "wait", 1000, 0, 0, true, ""};
    row.events = &gate;
    row.eventCount = 1;
    EXPECT_EQ(stageLength(row, {}, 200), 1200) << "the camera reaches what waits";
}

// Also of those who come behind it: who has joined or may do so, and the game's own.
TEST_F(EngineStage, AStageHasItsScriptsCompiled) {
    folder.write("assets/openbor-data/scripts/join2.c", "void main() {}");
    folder.write("assets/openbor-data/scripts/other.c", "void main() {}");
    const auto prepared = [&](const char* path) { return game.scripts.prepareHook(path) == 0; };
    world.player1.model = findCharacter("Mate");
    world.slots[2].selectIndex = world.slots[3].selectIndex = 1;  // Mate as well
    for (const bool joined : {false, true}) {
        game.scripts.open(game.root, game.dataRoot, &game.host);
        world.slots[1].joined = joined;
        EXPECT_TRUE(load(1));
        EXPECT_TRUE(prepared("data/scripts/spawn.c")) << "Hero's";
        EXPECT_TRUE(prepared("scripts/join2.c"));
        EXPECT_TRUE(prepared("scripts/updated.c"));
        EXPECT_FALSE(prepared("scripts/other.c"));
    }
}

TEST_F(EngineStage, AStageHasItsMusicDecodedOnce) {
    EXPECT_TRUE(load(0));
    const auto song = game.dataRoot / "music/song.wav";
    const auto time = std::filesystem::last_write_time(song);
    std::fstream(song, std::ios::in | std::ios::out).seekp(34).put(8);  // bits of a sample
    EXPECT_TRUE(load(0));
    EXPECT_TRUE(logged("Decoded music: wav-pcm8 1ch 22050Hz frames=80")) << "it has changed";
    std::fstream(song, std::ios::in | std::ios::out).seekp(34).put(16);
    std::filesystem::last_write_time(song, time);
    EXPECT_TRUE(load(0));
    EXPECT_TRUE(logged("Decoded music: wav-pcm16 1ch 22050Hz frames=40")) << log;
    std::fstream(song, std::ios::in | std::ios::out).seekp(34).put(8);
    std::filesystem::last_write_time(song, time);
    EXPECT_TRUE(load(0));
    EXPECT_TRUE(logged("Decoded music: wav-pcm16 1ch 22050Hz frames=40")) << "nothing tells of it";
}

TEST_F(EngineStage, AStageToTheLeftBeginsAtItsRightEnd) {
    game.config.logicalWidth = 200;
    EXPECT_TRUE(load(1));
    EXPECT_EQ(world.camera.x, 120);
    EXPECT_EQ(world.player1.place().facing, -1);
    EXPECT_EQ(world.player1.place().x, 60) << "the stage's own place";
    EXPECT_EQ(world.player1.place().altitude, -12);
}

TEST_F(EngineStage, AGameBeginsFreshWithTheStagesWeapon) {
    world.entities.add({});
    world.slots[2].joined = true;
    begin(1);
    EXPECT_EQ(world.entities.size(), 0U);
    ASSERT_EQ(world.coop.size(), 1U);
    EXPECT_EQ(world.coop[0].playerSlot, 2);
    EXPECT_EQ(world.coop[0].gamepadId, 2);
    EXPECT_EQ(world.coop[0].paletteMap, 2);
    EXPECT_EQ(world.coop[0].scriptCtx.local.at("self"), ScriptValue(std::uintptr_t{3}));
    ASSERT_NE(world.player1.equippedWeapon, nullptr) << "setweap";
    EXPECT_EQ(world.coop[0].equippedWeapon, world.player1.equippedWeapon);
    EXPECT_TRUE(logged("New game started local_players=2")) << log;
}

TEST_F(EngineStage, ThePictureShowsSceneryBehindActorsBehindTheForeground) {
    standStill();
    ticks(1);
    EXPECT_EQ(pixel(310, 230), (std::array<int, 3>{0, 0, 64})) << "the background";
    EXPECT_EQ(pixel(10, 50), (std::array<int, 3>{64, 64, 64})) << "a panel";
    EXPECT_EQ(pixel(10, 120), (std::array<int, 3>{0, 0, 64}));
    const ActorPlace at = world.player1.place();
    EXPECT_EQ(pixel(static_cast<int>(at.x), static_cast<int>(at.z) - 4),
              (std::array<int, 3>{255, 0, 0}))
        << "the hero";
    EXPECT_EQ(pixel(120, 170), (std::array<int, 3>{0, 64, 0})) << "the bush in front";

    // The panels move with the camera, the background half as far.
    world.camera.x = 1590;
    world.camera.fixed = true;
    ticks(1);
    EXPECT_EQ(pixel(9, 90), (std::array<int, 3>{64, 64, 64}));
    EXPECT_EQ(pixel(10, 90)[0], 24) << "four panels of 400 pixels have ended; nothing is behind";
}

TEST_F(EngineStage, HostileNumbersDrawNothingAndBreakNothing) {
    world.camera.x = 3e38F;
    ticks(2);
    world.camera.x = -3e38F;
    ticks(2);
    EXPECT_EQ(game.frontend.state, FrontendState::Playing);
}

}  // namespace
}  // namespace port
