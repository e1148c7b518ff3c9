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

#ifdef _WIN32
constexpr const char* kScript = "line.cmd";
constexpr const char* kScriptStart = "@";
constexpr const char* kProgramSuffix = ".exe";
constexpr char kBetweenFolders = ';';
#else
constexpr const char* kScript = "line.sh";
constexpr const char* kScriptStart = "#!/bin/sh\n";
constexpr const char* kProgramSuffix = "";
constexpr char kBetweenFolders = ':';
#endif

// As a script of the system's shell.
int runShell(const std::string& line) {
    const TempFolder folder;
    const fs::path script = folder.write(kScript, kScriptStart + line + "\n");
    fs::permissions(script, fs::perms::owner_all);
    return runCommand({script.string()});
}

fs::path writeProgram(const TempFolder& folder, const std::string& name) {
    fs::path file = folder.write(name + kProgramSuffix, "#!/bin/sh\n");
    fs::permissions(file, fs::perms::owner_exec, fs::perm_options::add);
    return file;
}

TEST(RunCommand, ReturnsTheChildsCode) {
    EXPECT_EQ(runShell("exit 0"), 0);
    EXPECT_EQ(runShell("exit 7"), 7);
#ifndef _WIN32
    EXPECT_EQ(runShell("kill -9 $$"), 128 + 9);
#endif
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
    EXPECT_EQ(runShell("echo third"), 0);
    std::cout << "fourth\n" << std::flush;
    std::string said = testing::internal::GetCapturedStdout();
    std::erase(said, '\r');
    EXPECT_EQ(said, "first\nsecond\nthird\nfourth\n");
}

TEST(SearchProgram, TakesTheFirstExecutableFileOnThePath) {
    const TempFolder folder;
    fs::create_directories(folder.path() / "folders" / "tool");
    folder.write("plain/tool", "not executable");
    const fs::path tool = writeProgram(folder, "first/tool");
    writeProgram(folder, "second/tool");
    const fs::path other = writeProgram(folder, "second/other");
    std::string value;
    for (const char* name : {"missing", "folders", "plain", "first", "second"}) {
        value += (folder.path() / name).string() + kBetweenFolders;
    }
    const Environment path("PATH", value.substr(0, value.size() - 1));
    EXPECT_EQ(searchProgram("tool"), tool);
    EXPECT_EQ(searchProgram("other"), other);
    EXPECT_EQ(searchProgram("absent"), fs::path());
    EXPECT_EQ(searchProgram(""), fs::path());
}

TEST(SearchProgram, AnswersForAnyLaterWorkingFolder) {
    const TempFolder folder;
    const fs::path tool = writeProgram(folder, "bin/tool");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const Environment path("PATH", "bin");
    const fs::path found = searchProgram("tool");
    fs::current_path(before);
    EXPECT_EQ(found, tool);
}

TEST(BuilderFolder, IsThatOfTheRunningProgram) {
    EXPECT_TRUE(fs::exists(builderFolder() / (std::string("platform_tests") + kProgramSuffix)));
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
