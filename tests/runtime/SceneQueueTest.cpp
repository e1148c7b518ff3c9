#include "SceneQueue.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace port {
namespace {

struct Scene {
    SceneQueue queue;
    std::vector<SceneQueueTrace> trace{{99, 99, 99, 99}};
    std::string drawn;

    void add(char name, int z, int sortId, std::size_t sequence,
             SceneKind kind = SceneKind::Actor) {
        queue.add(kind, z, sortId, sequence, [this, name] { drawn += name; });
    }
    std::string play() {
        drawn.clear();
        queue.play(trace);
        return drawn;
    }
};

TEST(SceneQueue, DrawsByDepthThenSortThenSequenceWhateverTheKind) {
    Scene scene;
    scene.add('h', INT_MAX, 0, 0, SceneKind::Hud);
    scene.add('e', 200, 0, 8);
    scene.add('d', 200, 0, 7, SceneKind::ScriptDrawing);
    scene.add('c', 200, -1, 9);
    scene.add('f', 200, INT_MAX, 1);
    scene.add('b', 199, INT_MAX, 99);
    scene.add('g', 201, INT_MIN, 0, SceneKind::Panel);
    scene.add('a', INT_MIN, 0, SIZE_MAX, SceneKind::FrontPanel);
    EXPECT_EQ(scene.play(), "abcdefgh");
}

TEST(SceneQueue, ItemsOfOnePlaceKeepTheOrderInWhichTheyCame) {
    Scene scene;
    std::string expected;
    for (char name = 33; name < 127; ++name) {
        scene.add(name, 0, 0, 5);
        expected += name;
    }
    EXPECT_EQ(scene.play(), expected);
}

TEST(SceneQueue, TellsWhatItDrewAndStartsTheNextFrameEmpty) {
    Scene scene;
    scene.add('s', 50, -1, 41, SceneKind::Shadow);
    scene.add('p', 40, 2, 42, SceneKind::Projectile);
    scene.play();
    ASSERT_EQ(scene.trace.size(), 2U);
    const SceneQueueTrace& last = scene.trace.back();
    EXPECT_EQ(std::tuple(last.kind, last.z, last.sortId, last.sequence),
              std::tuple(3, 50, -1, std::size_t{41}));
    scene.queue.clear();
    EXPECT_EQ(scene.play(), "");
    EXPECT_TRUE(scene.trace.empty());
}

}  // namespace
}  // namespace port
