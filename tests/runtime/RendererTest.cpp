#include "Renderer.hpp"

#include <gtest/gtest.h>

namespace port {
namespace {

TEST(RendererTest, TheNameFollowsThePresentationAndDoesNotSayWhetherSomebodyPlays) {
    bool opens = false;
    std::string name = "headless-looking";
    Renderer renderer({false, [&](const RuntimeConfig&) { return opens; }, [&] { return name; },
                       [] { return true; }, [](const SpriteImage&, const RuntimeConfig&) {}});
    EXPECT_FALSE(renderer.initialize({}));
    EXPECT_EQ(renderer.backend(), "headless");
    opens = true;
    ASSERT_TRUE(renderer.initialize({}));
    EXPECT_EQ(renderer.backend(), "headless-looking");
    EXPECT_FALSE(renderer.headless());
    name = "recovered";
    EXPECT_EQ(renderer.backend(), "recovered");
    EXPECT_FALSE(renderer.headless());
}

}  // namespace
}  // namespace port
