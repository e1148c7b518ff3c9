// What a pass draws, as a list.

#include <algorithm>
#include <array>
#include <climits>
#include <string>
#include <tuple>
#include <vector>

#include "BindingOrder.hpp"
#include "Frames.hpp"
#include "Shadows.hpp"
#include "StageScene.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

const SpritePtr kPicture = std::make_shared<const SpriteImage>();

TEST(DrawList, SortsByDepthThenSortThenWhenItCame) {
    DrawList list;
    std::size_t sequence = 7;
    const auto add = [&](char name, int z, int sortId, SceneKind kind = SceneKind::Actor) {
        list.add(kind, z, sortId, sequence, DrawImage{kPicture, name});
    };
    add('h', INT_MAX, 0, SceneKind::Hud);
    add('d', 200, 0, SceneKind::ScriptDrawing);
    add('c', 200, -1);
    add('e', 200, 0);
    add('f', 200, INT_MAX);
    add('b', 199, INT_MAX);
    add('g', 201, INT_MIN, SceneKind::Panel);
    add('a', INT_MIN, 0, SceneKind::FrontPanel);
    sequence = 3;
    add('D', 200, 0, SceneKind::ScriptDrawing);
    list.sort();
    std::string drawn;
    for (const DrawCommand& command : list.scene()) {
        drawn += static_cast<char>(std::get<DrawImage>(list.shape(command)).x);
    }
    EXPECT_EQ(drawn, "abcDdefgh");
    list.clear();
    EXPECT_TRUE(list.scene().empty());
}

// The picture loads nothing: what matters here is where things stand.
struct Scene : WorldTrial {
    Renderer renderer;
    std::filesystem::path dataRoot = std::filesystem::path(TRIAL_PORT) / "assets/openbor-data";
    SpriteCache cache;
    Scenery scenery;
    DrawList list;
    // What a test changes in the tables.
    generated::Stage stage = *world.stage.row;
    generated::Character model = *player.model;

    Scene() {
        quietly([&] { EXPECT_TRUE(renderer.initialize(config)); });
        scenery = loadScenery(*world.stage.row, renderer, dataRoot);
        world.stage.row = &stage;
    }
    void draw() {
        list.clear();
        StageScene scene(world, scenery, config, {cache, renderer, dataRoot}, list);
        scene.addScenery();
        quietly([&] { enterFrames(tick); });
        scene.addActors();
        list.sort();
    }
    // The first shape of the kind; fails when it has another form.
    template <class Shape>
    const Shape& first(SceneKind kind) {
        static const Shape kNothing{};
        const auto found = std::ranges::find(list.scene(), kind, &DrawCommand::kind);
        const Shape* shape =
            found == list.scene().end() ? nullptr : std::get_if<Shape>(&list.shape(*found));
        EXPECT_NE(shape, nullptr) << "kind " << static_cast<int>(kind);
        return shape ? *shape : kNothing;
    }
    int count(SceneKind kind) {
        return static_cast<int>(std::ranges::count(list.scene(), kind, &DrawCommand::kind));
    }
};

TEST_F(Scene, EachKindStandsInItsOrder) {
    using Place = std::tuple<SceneKind, int, int>;
    draw();
    std::vector<Place> places;
    for (const DrawCommand& c : list.scene()) places.emplace_back(c.kind, c.z, c.sortId);
    EXPECT_EQ(places, (std::vector<Place>{{SceneKind::Panel, 110, 0},
                                          {SceneKind::Shadow, 113, 100},
                                          {SceneKind::Actor, 165, 100},
                                          {SceneKind::ForegroundLayer, 300, 0}}));

    // A model may choose its depth, whatever its z.
    model.setLayer = -5;
    player.model = &model;
    RuntimeProjectile thrown;
    thrown.model = &model;
    thrown.animation.setAnimation(player.animation.animation());
    world.projectiles.push_back(thrown);
    draw();
    EXPECT_EQ(list.scene()[2].z, 155);
    const auto flying = std::ranges::find(list.scene(), SceneKind::Projectile, &DrawCommand::kind);
    ASSERT_NE(flying, list.scene().end());
    EXPECT_EQ(flying->z, 155) << "so may what it throws";

    // The panels move with the camera, the background half as far, and all with a shake.
    world.camera.x = 100;
    world.shake.rockX = 3;
    draw();
    EXPECT_EQ(first<DrawImage>(SceneKind::Panel).x, -97);
    EXPECT_EQ(std::get<DrawImage>(list.backdrop()[0]).x, -47);
}

TEST_F(Scene, ActorsAreDrawnWhereTheyAreWhenAllFramesHaveTakenEffect) {
    play(player, "follow1");
    const float x = player.worldX;
    draw();
    const auto sprite = [&] { return first<DrawSprite>(SceneKind::Actor); };
    EXPECT_EQ(sprite().x, static_cast<int>(x + 5));
    EXPECT_EQ(sprite().frame, player.animation.frame());
    EXPECT_FALSE(sprite().flip);
    // By the camera that the scenery was drawn by, wherever a script has put it since.
    const int before = sprite().x;
    list.clear();
    StageScene scene(world, scenery, config, {cache, renderer, dataRoot}, list);
    world.camera.x += 50;
    scene.addActors();
    EXPECT_EQ(sprite().x, before);
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

TEST_F(Scene, AShadowOnTheGroundStaysWhereItsActorWasBeforeTheFrames) {
    play(player, "follow1");
    world.shake = {.rockX = 4, .rockY = 4};
    stage.cameraOffsetX = 10;
    stage.cameraOffsetY = 20;
    player.worldX = 100.7F;
    draw();
    EXPECT_EQ(first<DrawSprite>(SceneKind::Actor).x, 99) << "moved 5 by its frame, and shaken";
    EXPECT_EQ(first<DrawRectangle>(SceneKind::Shadow),
              (DrawRectangle{82, 183, 16, 3, colorKey(35, 35, 35)}));

    // Where the game has a picture, that is centred there.
    std::filesystem::create_directories(folder.path() / "sprites");
    std::filesystem::copy(dataRoot / "chars/red.gif", folder.path() / "sprites/Shadow6.gif");
    dataRoot = folder.path();
    model.shadow = 9;
    player.model = &model;
    cache.clear();
    draw();
    const auto& shadow = first<DrawImage>(SceneKind::Shadow);
    EXPECT_EQ(shadow.x + shadow.image->width / 2, 95);
    EXPECT_EQ(shadow.y + shadow.image->height / 2, 188);
}

TEST_F(Scene, OnlyTheLivingOnOrAboveTheGroundCastAShadow) {
    RuntimeEntity& robot = addEntity("robot");
    RuntimeCoopPlayer& mate = joinCoop("mate");
    draw();
    EXPECT_EQ(count(SceneKind::Shadow), 3);
    player.altitude = 1;
    mate.alive = false;
    draw();
    EXPECT_EQ(count(SceneKind::Shadow), 1) << "not of who falls into a hole";
    EXPECT_EQ(count(SceneKind::Actor), 3);
    robot.visible = false;
    draw();
    EXPECT_EQ(count(SceneKind::Shadow), 0);
    model.shadow = 0;
    player.altitude = -50;
    player.model = &model;
    draw();
    EXPECT_EQ(count(SceneKind::Shadow), 0);
}

TEST_F(Scene, AProjectedShadowIsTheFrameThrownOnTheGround) {
    model.gfxShadow = 1;
    model.subjectToPlatform = true;
    player.model = &model;
    player.altitude = -30;
    stage.shadowColor = 0;
    stage.shadowAlpha = 2;
    stage.stageLightX = 110;
    stage.stageLightY = -90;
    draw();
    ASSERT_EQ(count(SceneKind::Shadow), 1) << "instead of the one on the ground";
    const DrawSprite* shadow = &first<DrawSprite>(SceneKind::Shadow);
    const DrawSprite& actor = first<DrawSprite>(SceneKind::Actor);
    EXPECT_EQ(shadow->x, actor.x);
    EXPECT_EQ(shadow->y, actor.y + 30);
    EXPECT_EQ(shadow->frame, actor.frame);
    EXPECT_FLOAT_EQ(shadow->draw.scaleY, -0.5F);
    EXPECT_FLOAT_EQ(shadow->draw.shiftX, 0.5F);
    EXPECT_EQ(shadow->draw.alphaMode, 2);
    EXPECT_EQ(shadow->draw.fillColor, 0);

    // A platform below casts it higher up, unless the model chooses otherwise.
    RuntimeEntity& crate = addEntity("robot");
    generated::Frame top = *crate.animation.frame();
    top.hasPlatform = true;
    top.platform = {0, 0, -20, -20, 20, 20, 10, 16};
    generated::Animation still = *crate.animation.animation();
    still.frames = &top;
    still.frameCount = 1;
    crate.animation.setAnimation(&still);
    crate.worldX = player.worldX + 5;
    crate.z = player.z + 4;
    const auto rowWithBase = [&](int base) {
        model.gfxShadowBase = base;
        draw();
        return first<DrawSprite>(SceneKind::Shadow).y;
    };
    EXPECT_EQ(rowWithBase(0), 165 - 16);
    EXPECT_EQ(rowWithBase(1), 165);
    EXPECT_EQ(rowWithBase(2), 165 - 30);
    EXPECT_EQ(rowWithBase(9), 165 - 30);

    stage.shadowColor = -1;
    draw();
    EXPECT_EQ(count(SceneKind::Shadow), 1) << "the crate's";
}

TEST(ProjectedShadow, KeepsOfTheFramesMethodWhatIsNotTheShadowsOwn) {
    generated::DrawMethod own{};
    own.scaleX = own.scaleY = own.shiftX = 7;
    own.flipX = true;
    generated::DrawMethod shadow = projectedShadowMethod(own, nullptr);
    EXPECT_TRUE(shadow.enabled);
    EXPECT_FALSE(shadow.flipX) << "a method that is off says nothing";
    EXPECT_EQ(shadow.scaleX, 1);
    EXPECT_FLOAT_EQ(shadow.scaleY, -80.0F / 180.0F);
    EXPECT_EQ(shadow.alphaMode, 1);
    EXPECT_EQ(shadow.fillColor, 0x202020);

    own = {true, -2, -3, true, false, 1, 4, 5, 999, 6, 7, 90, true};
    generated::Stage stage{};
    stage.shadowColor = 1;
    shadow = projectedShadowMethod(own, &stage);
    EXPECT_EQ(shadow.scaleX, -2);
    EXPECT_TRUE(shadow.flipX);
    EXPECT_FLOAT_EQ(shadow.scaleY, -0.18F * 3) << "no light is too flat";
    EXPECT_EQ(shadow.shiftX, 1);
    EXPECT_EQ(shadow.remap + shadow.tintMode + shadow.tintColor + shadow.rotate, 0);
    EXPECT_EQ(shadow.fillColor, 0x101010);
}

TEST_F(Scene, WaterLiesBelowTheBackgroundAndOnlyAFloatingStageHeaves) {
    scenery.water = scenery.background;
    stage.backgroundHeight = 90;
    stage.cameraOffsetY = 5;
    stage.waterWarp = 40;
    world.camera.x = 77;
    world.tick = 50;
    const auto waterAt = [&](int rockMode) {
        stage.rockMode = rockMode;
        world.shake = {.quakeTicks = 1, .quakeIntensity = 9};
        shakeScreen(world);
        draw();
        const auto* water = std::get_if<DrawWater>(&list.backdrop().back());
        EXPECT_NE(water, nullptr);
        return water ? *water : DrawWater{};
    };
    DrawWater water = waterAt(0);
    EXPECT_EQ(water.y, 95);
    EXPECT_NE(world.shake.rockX, 0);
    EXPECT_EQ(water.x, world.shake.rockX - scenery.water->width) << "the camera leaves it";
    EXPECT_EQ(water.surface, (WaterSurface{WaterSurface::Motion::Waves, 50 / 60.0 * 15 * 1.65}));
    water = waterAt(1);
    EXPECT_EQ(water.y, 95 + 2);
    EXPECT_EQ(water.surface, (WaterSurface{WaterSurface::Motion::Flow, 50 / 60.0 * 15 * 2}));
    EXPECT_EQ(waterAt(3).surface, WaterSurface{});
}

TEST_F(Scene, ABackgroundThatScrollsDownTheScreenCoversIt) {
    const int height = scenery.background->height;
    world.stage.verticalScroll = true;
    scenery.backgroundOffsetY = 3;
    world.shake.rockX = 2;
    for (const int sign : {1, -1}) {
        world.stage.verticalScrollSign = sign;
        for (const float scroll : {0.0F, 2.5F, static_cast<float>(height) * 7 + 1, 1e30F}) {
            world.stage.verticalStageScroll = scroll;
            draw();
            const auto& tiles = std::get<DrawTiles>(list.backdrop()[0]);
            EXPECT_EQ(tiles.x, 2);
            EXPECT_LE(tiles.y, 0);
            EXPECT_GT(tiles.y, -height);
            EXPECT_GE(tiles.y + tiles.rows * tiles.stepY, config.logicalHeight);
            if (scroll > 1e9F) continue;
            const auto shifted = tiles.y - 3 + sign * static_cast<int>(scroll);
            EXPECT_EQ(shifted % height, 0) << scroll;
        }
    }
}

TEST_F(Scene, LayersRepeatWithinTheirLimitsFromTheLeft) {
    generated::Layer row{};
    const int width = scenery.background->width;
    const auto tiles = [&] {
        scenery.foregroundLayers = {{scenery.background, LayerKind::FrontPanel, &row}};
        draw();
        return first<DrawTiles>(SceneKind::FrontPanel);
    };
    row.xOffset = 3 * width + 1;
    row.zOffset = 40;
    EXPECT_EQ(tiles(), (DrawTiles{scenery.background, 1 - width, 40, width,
                                  scenery.background->height, 256, 1, 0}));
    row.xRatio = 0.5F;
    row.bgSpeedRatio = -30;
    row.xSpacing = -100'000;
    row.zSpacing = 6;
    row.xRepeat = 2;
    row.zRepeat = 1000;
    row.alpha = 6;
    world.camera.x = 101;
    world.tick = 61;
    const int stepY = scenery.background->height + 6;
    const DrawTiles drawn = tiles();
    EXPECT_EQ(drawn.x, std::min(0, row.xOffset - 50 - 31)) << "half of a pixel goes away from 0";
    EXPECT_EQ(drawn.y, 40 - (40 + stepY - 1) / stepY * stepY);
    EXPECT_EQ(std::tuple(drawn.stepX, drawn.stepY, drawn.columns, drawn.rows, drawn.blend),
              std::tuple(1, stepY, 2, 64, 6));
    const auto front = std::ranges::find(list.scene(), SceneKind::FrontPanel, &DrawCommand::kind);
    EXPECT_EQ(front->z, 232 + 50);
}

TEST_F(Scene, LayersStandInTheirOrderBehindAndBefore) {
    std::array<generated::Layer, 4> rows{};
    const auto make = [&](std::size_t i, const char* kind, int zOrder) {
        rows[i].kind = kind;
        rows[i].path = "data/bgs/sky.gif";
        rows[i].zOrder = zOrder;
    };
    make(0, "bglayer", 5);
    make(1, "FGLayer", -1);
    make(2, "fglayer", 3);
    make(3, "frontpanel", -9);
    stage.layers = rows.data();
    stage.layerCount = rows.size();
    scenery = loadScenery(stage, renderer, dataRoot);
    std::vector<int> orders;
    for (const auto* layers : {&scenery.backgroundLayers, &scenery.foregroundLayers}) {
        for (const RuntimeStageLayer& layer : *layers) orders.push_back(layer.row->zOrder);
        orders.push_back(0);
    }
    EXPECT_EQ(orders, (std::vector{-1, 5, 0, -9, 3, 0}));
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

TEST_F(Scene, WhatScriptsDrawStandsAmongTheRest) {
    ScriptPictures pictures;
    ScriptDrawing& drawing = world.scripted.drawing;
    const std::uintptr_t screen = pictures.addScreen(4, 4);
    const auto command = [](ScriptDrawKind kind, int z) {
        ScriptDrawCommand made;
        made.kind = kind;
        made.z = z;
        return made;
    };
    drawing.add(drawing.queue, command(ScriptDrawKind::Box, 110));
    auto text = command(ScriptDrawKind::Text, 9000);
    text.font = -5;
    drawing.add(drawing.queue, text);
    auto shown = command(ScriptDrawKind::Screen, 9000);
    shown.screen = screen;
    drawing.add(drawing.flushedQueue, shown);
    shown.screen = screen + 1;
    drawing.add(drawing.flushedQueue, shown);

    draw();
    // What a script asks for while frames take effect.
    drawing.add(drawing.queue, command(ScriptDrawKind::Dot, 110));
    StageScene(world, scenery, config, {cache, renderer, dataRoot}, list)
        .addScriptDrawing(pictures);
    list.sort();
    std::string order;
    for (const DrawCommand& item : list.scene()) {
        const DrawShape& shape = list.shape(item);
        if (item.kind == SceneKind::Panel) order += "panel ";
        if (item.kind == SceneKind::Actor) order += "actor ";
        if (item.kind != SceneKind::ScriptDrawing) continue;
        if (std::holds_alternative<DrawRectangle>(shape)) order += "box ";
        if (std::holds_alternative<DrawDot>(shape)) order += "dot ";
        if (std::holds_alternative<DrawScriptScreen>(shape)) order += "screen ";
        if (const auto* line = std::get_if<DrawTextLine>(&shape)) {
            order += "text" + std::to_string(line->size) + " ";
        }
    }
    EXPECT_EQ(order, "box panel dot actor text6 screen ")
        << "by when they came; a screen that is gone shows nothing";
}

TEST_F(Scene, AScriptsDrawMethodReplacesThatOfTheFrames) {
    player.hasScriptDraw = true;
    player.scriptDraw = kPlainDrawMethod;
    player.scriptDraw.enabled = true;
    player.scriptDraw.scaleX = 3;
    draw();
    EXPECT_EQ(first<DrawSprite>(SceneKind::Actor).draw.scaleX, 3);
    // It outlasts the stage, and a new game.
    startPlayers(tick, false);
    EXPECT_TRUE(player.hasScriptDraw);
}

}  // namespace
}  // namespace port
