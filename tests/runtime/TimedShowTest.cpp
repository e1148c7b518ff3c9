// What is shown while the loop stands still, and the presses that end it.

#include "TimedShow.hpp"

#include <numeric>

#include "EngineTrial.hpp"
#include "ImageBytes.hpp"
#include "StageShows.hpp"

namespace port {
namespace {

constexpr int kJump = 32;

template <class Window>
struct Shows : Window {
    using Window::beforePass, Window::folder, Window::framesShown, Window::game, Window::keysDown,
        Window::sleeps, Window::world;
    generated::Stage row = generated::kStages[2];
    std::vector<generated::CutsceneAnimation> steps;
    int pumps = 0;

    Shows() {
        EXPECT_TRUE(Window::initialize());
        world.stage.row = &row;
        // A key that is down for one look at the devices, from the given one on.
        beforePass = [this] {
            ++pumps;
            keysDown.clear();
            if (pumps == pressAt) keysDown = {kJump};
        };
    }
    int pressAt = 0;

    void step(int scene, int durationTicks = 10) {
        steps.push_back({"data/bgs/sky.gif", 0, 0, 0, 0, durationTicks, scene, "", false, false});
    }
    // The pictures that it showed.
    int play() {
        row.sceneAnimations = steps.data();
        row.sceneAnimationCount = steps.size();
        framesShown = pumps = 0;
        sleeps.clear();
        Window::quietly([&] { playStageCutscene(game, false); });
        return framesShown;
    }
};
using WindowShows = Shows<WindowTrial>;
using LonelyShows = Shows<EngineTrial>;

TEST_F(WindowShows, AStepLastsItsTicksOrOneRunOfItsPicture) {
    test::GifFrame red{0, 0, 1, 1, {0}, {}};
    red.delay = 3;
    const test::GifFrame green{0, 0, 1, 1, {1}, {}};
    folder.write("assets/openbor-data/film.gif",
                 test::gif(1, 1, {0xFF0000, 0x00FF00, 0, 0}, {red, green}));
    step(0, 0);
    steps[0].path = "film";
    EXPECT_EQ(play(), 9);
    EXPECT_EQ(std::accumulate(sleeps.begin(), sleeps.end(), 0), 30 + 100);
    EXPECT_EQ(game.renderer.canvas().bgra[1], 255) << "a frame without a delay: 100 ms";
    steps[0].durationTicks = 10;
    EXPECT_EQ(play(), 10);
    EXPECT_EQ(sleeps, std::vector<int>(10, 16));
    EXPECT_EQ(game.renderer.canvas().bgra[2], 255) << "it begins again";
    steps[0].path = "bgs/absent";
    EXPECT_EQ(play(), 0);
}

TEST_F(WindowShows, APressEndsTheSceneOrOnlyItsStepOrNothing) {
    for (const int scene : {0, 0, 1}) step(scene);
    pressAt = 4;
    EXPECT_EQ(play(), 3 + 10) << "the rest of the scene goes too";
    steps[0].skip = 1;
    EXPECT_EQ(play(), 3 + 10 + 10);
    steps[0].noSkip = 1;
    EXPECT_EQ(play(), 30);
}

TEST_F(WindowShows, AKeyThatIsHeldIsNoPressAndNoPressLeaksIntoTheNextPass) {
    step(0);
    step(1);
    game.input.held.keys[kJump] = true;
    beforePass = [this] { keysDown = {kJump}; };
    EXPECT_EQ(play(), 20);

    // Escape ends the scene, is still down when the loop goes on, and pauses nothing.
    game.input = {};
    beforePass = [this] { keysDown = {kKeyEscape}; };
    EXPECT_EQ(play(), 10) << "one press, one scene";
    world.stage = freshStageRun(1);
    game.frontend.state = FrontendState::Playing;
    passesUntilClosed = 2;
    run();
    EXPECT_EQ(game.frontend.state, FrontendState::Playing);
    EXPECT_GT(world.tick, 0U);
}

TEST_F(WindowShows, AClosedWindowEndsAllScenes) {
    for (const int scene : {0, 1, 2}) step(scene);
    passesUntilClosed = 2;
    EXPECT_EQ(play(), 2);
}

TEST_F(WindowShows, ThePictureOfACompleteStageIsShownToTheEndOfThePress) {
    const auto show = [&] {
        framesShown = pumps = 0;
        playStageCompleteScreen(game);
        return framesShown;
    };
    EXPECT_EQ(show(), 0);
    row.completeBg = 1;
    EXPECT_EQ(show(), 90);
    pressAt = 5;
    EXPECT_EQ(show(), 5);
    game.drive = PlayerDrive::SelfCheck;
    sleeps.clear();
    EXPECT_EQ(show(), 1);
    EXPECT_TRUE(sleeps.empty());
}

TEST_F(LonelyShows, WhereNobodyLooksEachPictureIsShownOnce) {
    for (const int scene : {0, 1, 1}) step(scene, 2000000000);
    EXPECT_EQ(play(), 3);
    EXPECT_TRUE(sleeps.empty());
}

}  // namespace
}  // namespace port
