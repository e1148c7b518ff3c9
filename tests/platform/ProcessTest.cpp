#include "platform/Process.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

#include "Environment.hpp"
#include "TempFolder.hpp"
#include "platform/CommandLine.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;
using test::Environment;
using test::TempFolder;

TEST(RunCommand, ReturnsTheChildsCode) {
    EXPECT_EQ(runCommand({"sh", "-c", "exit 0"}), 0);
    EXPECT_EQ(runCommand({"sh", "-c", "exit 7"}), 7);
    EXPECT_EQ(runCommand({"sh", "-c", "kill -9 $$"}), 128 + 9);
    EXPECT_EQ(runCommand({}), -1);
    EXPECT_EQ(runCommand({"no-such-program-of-ours"}), -1);
    EXPECT_EQ(runCommand({"/"}), -1) << "a folder cannot be started";
}

TEST(RunCommand, HandsArgumentsOverVerbatim) {
    const TempFolder folder;
    const std::string out = (folder.path() / "out").string();
    const std::vector<std::string> odd = {"",  " two  words ", "\"quoted\" \\", "$HOME",
                                          "*", "a\nb",         "a\xC3\xA7\xFF"};
    std::vector<std::string> command = {
        "sh", "-c", "out=$1; shift; printf '[%s]' \"$@\" > \"$out\"", "sh", out};
    std::string expected;
    for (const std::string& argument : odd) {
        command.push_back(argument);
        expected += '[' + argument + ']';
    }
    EXPECT_EQ(runCommand(command), 0);
    EXPECT_EQ(folder.read("out"), expected);
}

TEST(RunCommand, KeepsOurOutputBeforeTheChilds) {
    testing::internal::CaptureStdout();
    std::printf("first\n");
    std::cout << "second\n";
    EXPECT_EQ(runCommand({"echo", "third"}), 0);
    std::cout << "fourth\n" << std::flush;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "first\nsecond\nthird\nfourth\n");
}

TEST(SearchProgram, TakesTheFirstExecutableFileOnThePath) {
    const TempFolder folder;
    fs::create_directories(folder.path() / "folders" / "tool");
    folder.write("plain/tool", "not executable");
    for (const char* name : {"first/tool", "second/tool", "second/other"}) {
        fs::permissions(folder.write(name, "#!/bin/sh\n"), fs::perms::owner_exec,
                        fs::perm_options::add);
    }
    const std::string top = folder.path().string();
    const Environment path("PATH", top + "/missing:" + top + "/folders:" + top + "/plain:" + top +
                                       "/first:" + top + "/second");
    EXPECT_EQ(searchProgram("tool"), folder.path() / "first" / "tool");
    EXPECT_EQ(searchProgram("other"), folder.path() / "second" / "other");
    EXPECT_EQ(searchProgram("absent"), fs::path());
    EXPECT_EQ(searchProgram(""), fs::path());
}

TEST(SearchProgram, AnswersForAnyLaterWorkingFolder) {
    const TempFolder folder;
    fs::permissions(folder.write("bin/tool", "#!/bin/sh\n"), fs::perms::owner_exec,
                    fs::perm_options::add);
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const Environment path("PATH", "bin");
    const fs::path found = searchProgram("tool");
    fs::current_path(before);
    EXPECT_EQ(found, folder.path() / "bin" / "tool");
}

TEST(BuilderFolder, IsThatOfTheRunningProgram) {
    EXPECT_TRUE(fs::exists(builderFolder() / "toolchain_tests"));
}

TEST(QuoteCommandLine, KeepsBackslashesAndQuotesApart) {
    const struct {
        std::vector<std::string> command;
        const char* line;
    } cases[] = {
        {{}, ""},
        {{"cmake", "-S", "a b"}, R"("cmake" "-S" "a b")"},
        {{""}, R"("")"},
        {{R"(C:\x\y.txt)"}, R"("C:\x\y.txt")"},
        {{R"(C:\x\)"}, R"("C:\x\\")"},
        {{R"(say "hi")"}, R"("say \"hi\"")"},
        {{R"(a\"b)"}, R"("a\\\"b")"},
        {{R"(a\\"b\\)", "c"}, R"("a\\\\\"b\\\\" "c")"},
    };
    for (const auto& [command, line] : cases) EXPECT_EQ(quoteCommandLine(command), line);
}

}  // namespace
}  // namespace tindrel
