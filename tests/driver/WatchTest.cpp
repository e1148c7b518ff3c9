#include "driver/Watch.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "FakeTools.hpp"
#include "driver/SmallGame.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

class WatchTest : public testing::Test {
  protected:
    WatchTest() { test::writeGame(folder_, "game"); }

    // Watches while `edits` are made, each once the port has settled after the one before.
    int watch(std::vector<std::function<void()>> edits = {}, bool run = false) {
        std::size_t next = 0;
        int quiet = 0;
        std::size_t seen = 0;
        const auto goOn = [&] {
            const std::size_t said = out_.str().size() + err_.str().size();
            quiet = said == seen ? quiet + 1 : 0;
            seen = said;
            if (quiet < 2) return true;
            quiet = 0;
            if (next == edits.size()) return false;
            // What it has seen so far is of another time.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            edits[next++]();
            return true;
        };
        return watchGame({folder_.path() / "game", folder_.path() / "port", run}, {out_, err_},
                         goOn);
    }

    [[nodiscard]] bool said(const std::string& text) const {
        return out_.str().find(text) != std::string::npos;
    }

    test::TempFolder folder_;
    test::FakeTools tools_;
    std::ostringstream out_, err_;
};

TEST_F(WatchTest, ConvertsAndCompilesWhatChanged) {
    const fs::path characters =
        folder_.path() / "port" / "runtime" / "generated" / "GeneratedCharacters.cpp";
    fs::file_time_type before;
    const int code = watch({[&] {
                                before = fs::last_write_time(characters);
                                tools_.log("");
                                folder_.write("port/config/graphics.ini", "a player's own");
                                folder_.write("game/data/levels/one.txt",
                                              "spawn Hero\ncoords 99 200\nat 0\nnosuchword 1\n"
                                              "spawn Heroe\ncoords 1 200\nat 0\n");
                            },
                            [&] { folder_.write("game/notes.txt", "no part of the data"); }});
    EXPECT_EQ(code, 0) << err_.str();
    EXPECT_EQ(err_.str(), "");
    EXPECT_TRUE(said("changed: levels/one.txt\n")) << out_.str();
    EXPECT_TRUE(said("\n[UNKNOWN] data/levels/one.txt:4 nosuchword - ")) << out_.str();
    EXPECT_TRUE(
        said("\n[MISSING] data/levels/one.txt:5 Heroe - Spawned names that no model has, did "
             "you mean Hero?\n"))
        << out_.str();
    EXPECT_NE(folder_.read("port/runtime/generated/GeneratedStages.cpp").find(",99,"),
              std::string::npos);
    EXPECT_EQ(fs::last_write_time(characters), before);
    EXPECT_EQ(folder_.read("port/config/graphics.ini"), "a player's own");
    EXPECT_EQ(tools_.log(), "--build " + (folder_.path() / "port/runtime/build").string() +
                                " --config Release\n");
    // How the game is read follows from the conversion, even so.
    const auto watchOnce = [&](bool asWritten) {
        return watchGame({folder_.path() / "game", folder_.path() / "port", false, asWritten},
                         {out_, err_}, [] { return false; });
    };
    EXPECT_EQ(watchOnce(true), 0);
    EXPECT_EQ(folder_.read("port/config/graphics.ini"),
              "a player's own\n[reading]\nas_written=true\n");
    EXPECT_EQ(watchOnce(false), 0);
    EXPECT_EQ(folder_.read("port/config/graphics.ini"), "a player's own");
}

TEST_F(WatchTest, GoesOnWhenGameOrCompilerFail) {
    const int code =
        watch({[&] {
                   tools_.set("fail-build");
                   folder_.write("game/data/chars/hero.txt", "name Hero\nanim idle\n");
               },
               [&] { fs::rename(folder_.path() / "game/data", folder_.path() / "elsewhere"); },
               [&] {
                   tools_.unset("fail-build");
                   fs::rename(folder_.path() / "elsewhere", folder_.path() / "game/data");
               }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(said("no new port\n")) << out_.str();
    EXPECT_NE(err_.str().find("Err"), std::string::npos) << "the game was gone";
    const std::string text = out_.str();
    EXPECT_NE(text.rfind("the port is up to date after "), std::string::npos);
    EXPECT_GT(text.rfind("the port is up to date after "), text.rfind("no new port")) << text;
}

TEST_F(WatchTest, StartsThePortAgainAfterEachBuild) {
    tools_.write("program", "#!/bin/sh\necho started >> \"${0%/*}/starts\"\nexec /bin/sleep 60\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(
        watch({[&] { folder_.write("game/data/chars/hero.gif", "GIF89a, repainted"); }}, true), 0)
        << err_.str();
    EXPECT_EQ(folder_.read("port/starts"), "started\nstarted\n");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(40))
        << "both were asked to end";
}

TEST_F(WatchTest, WhatIsNoGoodFromTheStartEndsIt) {
    const auto watchThat = [&](const std::string& game, const std::string& port) {
        return watchGame({folder_.path() / game, folder_.path() / port}, {out_, err_},
                         [] { return false; });
    };
    fs::create_directories(folder_.path() / "empty");
    EXPECT_NE(watchThat("empty", "port"), 0);
    EXPECT_EQ(watchThat("game", "game/data/port"), 5);
    tools_.removeProgram("cmake");
    EXPECT_EQ(watchThat("game", "port"), 20);
}

}  // namespace
}  // namespace tindrel
