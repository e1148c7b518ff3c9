#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "PakWriter.hpp"
#include "TempFolder.hpp"
#include "platform/ProcessPosix.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

class InterruptTest : public ::testing::Test {
  protected:
    // Starts the child, waits until it is ready, sends it the signals; returns the one that it
    // died of, 0 for another ending.
    int interrupt(const std::string& way, const std::vector<int>& signals,
                  const std::string& before = "") {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        const pid_t child =
            startProcess({"sh", "-c", before + "TMPDIR=\"$1\" exec " SESSION_CHILD " \"$2\" \"$3\"",
                          "sh", temp_.path().string(), way, pak_.string()},
                         {.standardOutput = ends[1]});
        ::close(ends[1]);
        EXPECT_GT(child, 0);
        std::string said;
        char letter = 0;
        while (said.find("ready\n") == std::string::npos && ::read(ends[0], &letter, 1) == 1) {
            said += letter;
        }
        EXPECT_EQ(said, "ready\n");
        for (const int number : signals) ::kill(child, number);
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        ::close(ends[0]);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    // Soon; it may stay a zombie for as long as its new parent likes.
    static bool dies(pid_t process) {
        for (int wait = 0; wait < 500; ++wait) {
            std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
            std::string id;
            std::string name;
            std::string state;
            if (!(stat >> id >> name >> state) || state == "Z") return true;
            ::usleep(10'000);
        }
        return false;
    }

    // The helper and the program that the child has started.
    [[nodiscard]] std::pair<pid_t, pid_t> startedProcesses() const {
        std::ifstream pids(pak_.string() + ".pids");
        pid_t helper = 0;
        pid_t program = 0;
        EXPECT_TRUE(pids >> helper >> program);
        return {helper, program};
    }

    bool nothingIsLeft() {
        const fs::path sessions = temp_.path() / "Tindrel-Builder";
        return fs::is_directory(sessions) && fs::is_empty(sessions);
    }

    test::TempFolder folder_;
    test::TempFolder temp_;
    fs::path pak_ = folder_.write("game.pak", test::pakBytes({
                                                  {"data/models.txt", "text"},
                                                  {"data/a/b/c.txt", std::string(100'000, 'c')},
                                                  {"data/d/e.txt", ""},
                                              }));
};

TEST_F(InterruptTest, RemovesTheSession) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGPIPE}) {
        EXPECT_EQ(interrupt("idle", {number}), number);
        EXPECT_TRUE(nothingIsLeft()) << number;
    }
    // What nohup made it ignore it goes on to ignore.
    EXPECT_EQ(interrupt("idle", {SIGHUP, SIGTERM}, "trap '' HUP; "), SIGTERM);
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(InterruptTest, RemovesTheSessionThatIsBeingWritten) {
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(interrupt("unpack", {SIGTERM}), SIGTERM);
        ASSERT_TRUE(nothingIsLeft()) << "round " << round;
    }
}

TEST_F(InterruptTest, EndsTheTool) {
    for (int round = 0; round < 5; ++round) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(interrupt("tool", {SIGTERM}), SIGTERM);
        // By itself the tool takes minutes.
        ASSERT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
        ASSERT_TRUE(nothingIsLeft()) << "round " << round;
        const auto [helper, tool] = startedProcesses();
        EXPECT_EQ(::kill(tool, 0), -1);
        EXPECT_TRUE(dies(helper));
    }
}

// Ctrl+C in a terminal reaches nobody else either, as the command has left the terminal's group.
TEST_F(InterruptTest, EndsTheCommand) {
    for (const int number : {SIGTERM, SIGINT}) {
        EXPECT_EQ(interrupt("build", {number}), number);
        const auto [helper, command] = startedProcesses();
        EXPECT_TRUE(dies(command));
        EXPECT_TRUE(dies(helper));
    }
}

}  // namespace
}  // namespace tindrel
