// What a pass draws, as a list.

#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include "BindingOrder.hpp"
#include "Frames.hpp"
#include "StageScene.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

const SpritePtr kPicture = std::make_shared<const SpriteImage>();

TEST(DrawList, SortsByDepthThenSortThenWhenItCame) {
    DrawList list;
    const auto add = [&](char name, int z, int sortId, SceneKind kind = SceneKind::Actor) {
        list.add(kind, z, sortId, DrawImage{kPicture, name});
    };
    add('h', INT_MAX, 0, SceneKind::Hud);
    add('d', 200, 0, SceneKind::ScriptDrawing);
    add('c', 200, -1);
    add('e', 200, 0);
    add('f', 200, INT_MAX);
    add('b', 199, INT_MAX);
    add('g', 201, INT_MIN, SceneKind::Panel);
    add('a', INT_MIN, 0, SceneKind::FrontPanel);
    list.sort();
    std::string drawn;
    for (const DrawCommand& command : list.scene()) {
        drawn += static_cast<char>(std::get<DrawImage>(list.shape(command)).x);
    }
    EXPECT_EQ(drawn, "abcdefgh");
    const std::size_t last = list.scene().back().sequence;
    list.clear();
    EXPECT_TRUE(list.scene().empty());
    add('x', 0, 0);
    EXPECT_GT(list.scene().back().sequence, last) << "sequences run on";
}

// The picture loads nothing: what matters here is where things stand.
struct Scene : WorldTrial {
    Renderer renderer;
    std::filesystem::path dataRoot = std::filesystem::path(TRIAL_PORT) / "assets/openbor-data";
    SpriteCache cache;
    Scenery scenery;
    DrawList list;

    Scene() {
        quietly([&] { EXPECT_TRUE(renderer.initialize(config)); });
        scenery = loadScenery(*world.stage.row, renderer, dataRoot);
    }
    const std::vector<DrawCommand>& draw() {
        list.clear();
        StageScene scene(world, scenery, config, list);
        scene.addScenery();
        quietly([&] { enterFrames(tick); });
        scene.addActors({cache, renderer, dataRoot});
        list.sort();
        return list.scene();
    }
};

TEST_F(Scene, PanelsActorsAndTheForegroundStandInTheirOrder) {
    std::vector<std::tuple<SceneKind, int, int>> places;
    for (const DrawCommand& c : draw()) places.emplace_back(c.kind, c.z, c.sortId);
    EXPECT_EQ(places,
              (std::vector<std::tuple<SceneKind, int, int>>{{SceneKind::Panel, 110, 0},
                                                            {SceneKind::Actor, 165, 100},
                                                            {SceneKind::ForegroundLayer, 300, 0}}));
    ASSERT_EQ(list.backdrop().size(), 2U) << "the background and the haze";
    const auto& haze = std::get<DrawTiles>(list.backdrop()[1]);
    EXPECT_EQ(haze.y, 20);
    EXPECT_LE(haze.x, 0);

    // The panels move with the camera, the background half as far.
    world.camera.x = 100;
    draw();
    EXPECT_EQ(std::get<DrawImage>(list.shape(list.scene()[0])).x, -100);
    EXPECT_EQ(std::get<DrawImage>(list.backdrop()[0]).x, -50);
}

TEST_F(Scene, ActorsAreDrawnWhereTheyAreWhenAllFramesHaveTakenEffect) {
    play(player, "follow1");
    const float x = player.worldX;
    draw();
    const auto sprite = [&] { return std::get<DrawSprite>(list.shape(list.scene()[1])); };
    EXPECT_EQ(sprite().x, static_cast<int>(x + 5));
    EXPECT_EQ(sprite().frame, player.animation.frame());
    EXPECT_FALSE(sprite().flip);
    player.facing = -1;
    player.worldX = 3e38F;
    draw();
    EXPECT_TRUE(sprite().flip);
    EXPECT_EQ(sprite().x, 1 << 24) << "no number of a world is too large to draw";
    // An animation that goes on without an entry still shows the frame that was entered.
    player.animation.setAnimation(exactAnimation(player.model, "walk"));
    EXPECT_EQ(player.lastFrame, 0U);
    draw();
    EXPECT_STREQ(sprite().frame->sprite, "data/chars/red.gif");
}

TEST_F(Scene, WhoIsBoundStandsBesideItsTarget) {
    RuntimeEntity& first = addEntity("robot");
    RuntimeEntity& second = addEntity("robot");
    EXPECT_EQ(bindingSortId(world, player), 100);
    EXPECT_EQ(bindingSortId(world, first), 500);
    EXPECT_EQ(bindingSortId(world, second), 600);
    first.binding = {.target = second.handle};
    EXPECT_EQ(bindingSortId(world, first), 599) << "right behind it";
    second.binding = {.target = kPlayer1Handle, .sort = 3};
    EXPECT_EQ(bindingSortId(world, first), 102);
    second.binding.target = first.handle;
    EXPECT_NE(bindingSortId(world, first), 0) << "a circle has an end";
}

}  // namespace
}  // namespace port
