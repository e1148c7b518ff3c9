#include "Startup.hpp"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/wait.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "PathEncoding.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using testing::ExitedWithCode;
using tindrel::test::TempFolder;

RunSwitches parse(const std::vector<std::string>& arguments, bool foldCase = false) {
    return parseArguments(arguments, foldCase);
}

TEST(Arguments, AreReadInAnyOrder) {
    EXPECT_FALSE(parse({}).diagnose || parse({}).smoke || parse({}).start);
    EXPECT_EQ(parse({}).smokeFrames, 600);
    EXPECT_TRUE(parse({"a", "--diagnose"}).diagnose);
    EXPECT_TRUE(parse({"--diagnostic", "--verbose", "-"}).diagnose);
    EXPECT_TRUE(parse({"--smoke-game"}).smoke);
    EXPECT_EQ(parse({"first", "--smoke-game", "second", "-x"}).start, "second");
    EXPECT_EQ(parse({""}).start, "");

    EXPECT_FALSE(parse({"--Diagnose"}).diagnose);
    const std::vector<std::string> ignored = {"--dignose", "--record", "--help=x"};
    EXPECT_EQ(parse({"--dignose", "--record", "--autoplay", "--help=x", "folder"}).ignored,
              ignored);
    EXPECT_TRUE(parse({"--DIAGNOSE"}, true).diagnose);
    EXPECT_EQ(parse({"--Smoke-Frames=90", "Port"}, true).smokeFrames, 90);
    EXPECT_EQ(parse({"--Smoke-Frames=90", "Port"}, true).start, "Port") << "paths keep their case";
}

TEST(Arguments, SmokeFramesAreClampedAndForgiving) {
    const std::pair<const char*, int> cases[] = {
        {"--smoke-frames=61", 61},          {"--smoke-frames=10", 60},   {"--smoke-frames=-1", 60},
        {"--smoke-frames=5000", 3600},      {"--smoke-frames=abc", 600}, {"--smoke-frames=", 600},
        {"--smoke-frames=99999999999", 600}};
    for (const auto& [argument, frames] : cases) {
        EXPECT_EQ(parse({argument}).smokeFrames, frames) << argument;
        EXPECT_TRUE(parse({argument}).smoke) << argument;
    }
    EXPECT_FALSE(parse({"--smoke-frames"}).smoke);
    EXPECT_EQ(parse({"--capture=Some Folder", "--capture-every=7"}).capture, "Some Folder");
    EXPECT_EQ(parse({"--capture-every=7"}).captureEvery, 7);
    EXPECT_EQ(parse({"--capture-every=often"}).captureEvery, 30);
    EXPECT_FALSE(parse({"--capture-every=7"}).capture);
}

// All switches, in the help, in the manual page and in each shell.
TEST(Arguments, AreWhatManualAndCompletionsTell) {
    const auto read = [](const std::string& name) {
        std::ifstream in(std::filesystem::path(TINDREL_SOURCE_DIR) / "packaging" / name);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string manual = read("man/OpenBOR-Port.6");
    const std::string bash = read("completions/OpenBOR-Port.bash");
    const std::string zsh = read("completions/OpenBOR-Port.zsh");
    const std::string fish = read("completions/OpenBOR-Port.fish");
    const auto expect = [](const std::string& text, const std::string& pattern) {
        EXPECT_TRUE(std::regex_search(text, std::regex(pattern))) << pattern;
    };
    for (const SwitchInfo& known : switchTable()) {
        const std::string name(known.name.substr(2));
        expect(helpText(), "\n  --" + name + "[ =\\[]");
        expect(manual, "\n\\.It Fl Fl " + name + "( Ns|\n)");
        expect(bash, "[' ]--" + name + "[=' ]");
        expect(zsh, "--" + name + "(=-?)?[\\[,}]");
        expect(fish, " -l " + name + " ");
    }
    std::istringstream help(helpText());
    for (std::string line; std::getline(help, line);) EXPECT_LE(line.size(), 80U) << line;
}

TEST(PortRoot, IsSearchedInEightFolders) {
    const TempFolder folder;
    std::filesystem::create_directories(folder.path() / "port/assets/openbor-data");
    const auto root = folder.path() / "port";
    const std::filesystem::path none = "/none";
    EXPECT_EQ(findPortRoot(root, none), root);
    EXPECT_EQ(findPortRoot(root / "runtime/build/x64/Release", none), root);
    EXPECT_EQ(findPortRoot(root / "1/2/3/4/5/6/7", none), root);
    EXPECT_EQ(findPortRoot(root / "1/2/3/4/5/6/7/", none), root) << "the slash is no level";
    EXPECT_EQ(findPortRoot(root / "1/2/3/4/5/6/7/8", none), none);
    EXPECT_EQ(findPortRoot(root / "x/../y", none), root);
    EXPECT_EQ(findPortRoot(folder.path(), none), none);
    EXPECT_EQ(findPortRoot("/", none), none);
    EXPECT_EQ(findPortRoot("", none), none);

    folder.write("file/assets/openbor-data", "no folder");
    EXPECT_EQ(findPortRoot(folder.path() / "file", none), none);
    folder.write("port/assets/openbor-data/game.txt", "");
    EXPECT_EQ(findPortRoot(root / "assets/openbor-data/game.txt", none), root)
        << "a file dropped on the program";
}

TEST(Preflight, NamesTheFirstThingThatIsMissing) {
    EXPECT_NE(preflightFailure(false, 0, 0).find("Pasta assets/openbor-data"), std::string::npos);
    EXPECT_NE(preflightFailure(true, 0, 0).find("Nenhum personagem"), std::string::npos);
    EXPECT_NE(preflightFailure(true, 1, 0).find("Nenhuma fase"), std::string::npos);
    EXPECT_EQ(preflightFailure(true, 1, 1), "");
}

// The program as a player starts it, on a port in a folder of the test's own.
struct PortRun : testing::Test {
    TempFolder folder;
    std::string root = PathEncoding::utf8(folder.path());
    std::string output;
    std::string errors;

    void makePort() {
        std::filesystem::copy(std::filesystem::path(TRIAL_PORT) / "assets",
                              folder.path() / "assets", std::filesystem::copy_options::recursive);
        folder.write("config/graphics.ini", "[video]\nfps_limit=0\n");
    }

    // A path below the folder as an argument of the shell.
    [[nodiscard]] std::string quoted(const std::string& below = {}) const {
        return '"' + root + (below.empty() ? "" : "/") + below + '"';
    }

    // The exit code of `program` with these arguments.
    int start(const std::string& arguments, const std::string& program = PORT_PROGRAM) {
        const std::string command =
            '"' + program + "\" " + arguments + " >" + quoted("output") + " 2>" + quoted("errors");
#ifdef _WIN32
        // Its shell takes the outermost quotes away.
        const int code = std::system(("\"" + command + "\"").c_str());
#else
        const int status = std::system(command.c_str());
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
        output = folder.read("output");
        errors = folder.read("errors");
        return code;
    }

    // A copy of the program in `folder`.
    static std::string copiedInto(const std::filesystem::path& folder) {
        auto copy = folder / "OpenBOR-Port";
        copy += std::filesystem::path(PORT_PROGRAM).extension();
        std::filesystem::copy_file(PORT_PROGRAM, copy);
        return copy.string();
    }

    std::string log() {
        return folder.read("runtime-startup.log");
    }
};

TEST_F(PortRun, DiagnoseChecksAndStops) {
    makePort();
    folder.write("runtime-startup.log", "an earlier start\n");
    EXPECT_EQ(start("--diagnose " + quoted()), 0);
    const std::filesystem::path program = std::filesystem::absolute(PORT_PROGRAM);
    EXPECT_EQ(log(), "an earlier start\nSTART exe=" + PathEncoding::utf8(program.parent_path()) +
                         " root=" + root +
                         "\nPREFLIGHT assets=ok characters=5 stages=5\nDIAGNOSE OK\n");
    EXPECT_EQ(errors, "");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "runtime-crash.log"));
}

TEST_F(PortRun, TellsOfItselfWithoutATrace) {
    makePort();
    folder.write("config/port.ini", "[port]\r\nbuilder=1.2.3\r\n");
    std::filesystem::remove(folder.path() / "runtime-startup.log");
    EXPECT_EQ(start("--version " + quoted()), 0);
    EXPECT_EQ(output, "OpenBOR-Port, made by Tindrel Builder 1.2.3\n5 characters, 5 stages\n");
    EXPECT_EQ(start("--help " + quoted()), 0);
    EXPECT_EQ(output, helpText());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "runtime-startup.log"));
}

TEST_F(PortRun, APortWithoutAssetsFallsBackOnTheProgramsFolderAndFails) {
    const TempFolder alone;
    EXPECT_EQ(start("--diagnose " + quoted(), copiedInto(alone.path())), 1);
    const std::string where = PathEncoding::utf8(alone.path());
    const std::string message =
        "Pasta assets/openbor-data nao encontrada. Mantenha o EXE junto das pastas assets e "
        "config.";
    EXPECT_EQ(alone.read("runtime-startup.log"),
              "START exe=" + where + " root=" + where +
                  "\nPREFLIGHT assets=missing characters=5 stages=5\nFATAL: " + message + "\n");
    EXPECT_EQ(errors, message + "\n");
}

TEST_F(PortRun, AGameThatEndsEarlyEndsWithOne) {
    makePort();
    EXPECT_EQ(start(quoted() + " --smoke-frames=1000"), 1) << "900 passes without a window";
    EXPECT_TRUE(
        errors.ends_with("SMOKE GAME FAIL gameplay_frames=900 expected=1000\n"
                         "O runtime encerrou de forma anormal (codigo 73).\n"))
        << errors;
    EXPECT_TRUE(
        log().ends_with("EXIT code=73\nFATAL: O runtime encerrou de forma anormal (codigo 73).\n"))
        << log();
}

TEST_F(PortRun, AHeadlessGamePlaysItselfAndKeepsItsSettings) {
    makePort();
    std::filesystem::create_directories(folder.path() / "portable/bin");
    EXPECT_EQ(start("", copiedInto(folder.path() / "portable/bin")), 0) << errors;
    EXPECT_TRUE(log().ends_with("INITIALIZED OK\nEXIT code=0\n")) << log();
    EXPECT_TRUE(folder.read("config/graphics.ini").starts_with("[video]\nrenderer=d3d11\n"));
}

TEST_F(PortRun, TwoRunsOnTheSameInputsShowTheSame) {
    makePort();
    const auto hash = [&](const std::string& captures) {
        EXPECT_EQ(
            start(quoted() + " --smoke-frames=60 --capture-every=20 --capture=" + quoted(captures)),
            0)
            << errors;
        const std::size_t at = output.find("SMOKE GAME HASH ");
        EXPECT_NE(at, output.npos) << output;
        return output.substr(at, 32);
    };
    EXPECT_EQ(hash("first"), hash("second"));
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "first")) {
        const std::string name = entry.path().filename().string();
        names.push_back(name);
        EXPECT_EQ(folder.read("first/" + name), folder.read("second/" + name)) << name;
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"frame-000020.png", "frame-000040.png",
                                               "frame-000060.png"}));
}

TEST(RunPort, MovesToThePortsFolder) {
    const TempFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::create_directories(folder.path() / "assets/openbor-data/bgs");
    const std::string start = PathEncoding::utf8(folder.path() / "assets/openbor-data/bgs");
    const char* arguments[] = {"openbor-port", start.c_str(), "--diagnose"};
    EXPECT_EXIT(
        {
            const int code = runPort(3, arguments);
            std::exit(std::filesystem::current_path() == folder.path() ? code : 99);
        },
        ExitedWithCode(0), "^$");
    EXPECT_EQ(std::filesystem::current_path(), before);
}

}  // namespace
}  // namespace port
