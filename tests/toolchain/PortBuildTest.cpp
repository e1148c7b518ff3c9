#include "toolchain/PortBuild.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "FakeTools.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

class PortBuildTest : public testing::Test {
  protected:
    PortBuildTest() { test::writePort(folder_, "game"); }

    int build() { return buildPort(port_, {out_, err_}); }

    // A command as it is echoed, and as the fake logs it.
    [[nodiscard]] std::string echo(const std::vector<std::string>& arguments) const {
        std::string line = "> \"" + tools_.cmake() + '"';
        for (const std::string& argument : arguments) line += " \"" + argument + '"';
        return line + '\n';
    }
    [[nodiscard]] std::string runtime() const { return (port_ / "runtime").string(); }
    [[nodiscard]] std::string tree() const { return runtime() + "/build"; }
    [[nodiscard]] std::string plainLine() const {
        return "-S " + runtime() + " -B " + tree() + " -DCMAKE_BUILD_TYPE=Release";
    }

    test::TempFolder folder_;
    test::FakeTools tools_;
    fs::path port_ = folder_.path() / "game";
    std::ostringstream out_, err_;
};

TEST_F(PortBuildTest, PutsTheExecutableAtTheTop) {
    folder_.write("game/runtime/build/old/openbor-port", "an earlier build's");
    folder_.write("game/OpenBOR-Port", "an earlier build's");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(err_.str(), "");
    EXPECT_EQ(out_.str(), echo({"-S", runtime(), "-B", tree(), "-DCMAKE_BUILD_TYPE=Release"}) +
                              echo({"--build", tree(), "--config", "Release"}) +
                              "NATIVE BUILD SUCCESS: " + (port_ / "OpenBOR-Port").string() + '\n');
    EXPECT_EQ(tools_.log(), plainLine() + "\n--build " + tree() + " --config Release\n");
    EXPECT_EQ(folder_.read("game/OpenBOR-Port"), folder_.read("game/runtime/build/openbor-port"));
    EXPECT_NE(fs::status(port_ / "OpenBOR-Port").permissions() & fs::perms::owner_exec,
              fs::perms::none);
}

TEST_F(PortBuildTest, TriesNinjaFirstAndEachTryAfresh) {
    tools_.addProgram("ninja", "#!/bin/sh\n");
    tools_.set("fail-ninja");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(tools_.log(), plainLine() + " -G Ninja\n" + plainLine() + "\n--build " + tree() +
                                " --config Release\n");
    tools_.log("");
    tools_.set("fail-configure");
    EXPECT_EQ(build(), 21);
    EXPECT_EQ(tools_.log(), plainLine() + " -G Ninja\n" + plainLine() + '\n');
}

TEST_F(PortBuildTest, CompilesAgainWithoutConfiguring) {
    int replaced = 0;
    const auto rebuild = [&] { return rebuildPort(port_, {out_, err_}, [&] { ++replaced; }); };
    EXPECT_EQ(rebuild(), 0);
    EXPECT_EQ(tools_.log(), plainLine() + "\n--build " + tree() + " --config Release\n");
    tools_.log("");
    EXPECT_EQ(rebuild(), 0);
    EXPECT_EQ(tools_.log(), "--build " + tree() + " --config Release\n");
    EXPECT_EQ(replaced, 2);
    tools_.set("fail-build");
    EXPECT_EQ(rebuild(), 22);
    EXPECT_EQ(replaced, 2) << "the old one stays where nothing new was made";
}

TEST_F(PortBuildTest, NamesWhatIsMissing) {
    tools_.removeProgram("cmake");
    EXPECT_EQ(build(), 20);
    EXPECT_EQ(err_.str(),
              "Erro: CMake nao foi encontrado. Instale o CMake/Visual Studio Build Tools ou "
              "coloque um CMake portatil em tools/cmake/bin ao lado do Builder.\n");
    err_.str("");
    fs::remove(port_ / "runtime" / "CMakeLists.txt");
    EXPECT_EQ(build(), 20);
    EXPECT_EQ(err_.str(),
              "Erro: runtime/CMakeLists.txt nao encontrado em " + port_.string() + '\n');
    EXPECT_EQ(out_.str(), "");
}

TEST_F(PortBuildTest, LeavesAnEarlierExecutableWhenTheBuildFails) {
    folder_.write("game/OpenBOR-Port", "an earlier build's");
    tools_.set("fail-build");
    EXPECT_EQ(build(), 22);
    EXPECT_EQ(err_.str(), "");
    EXPECT_EQ(folder_.read("game/OpenBOR-Port"), "an earlier build's");
}

TEST_F(PortBuildTest, MissesAnExecutableThatWasNotMade) {
    tools_.set("no-executable");
    EXPECT_EQ(build(), 23);
    EXPECT_EQ(err_.str(), "Erro: compilacao terminou sem localizar openbor-port.\n");
}

TEST_F(PortBuildTest, ReportsAFailedCopy) {
    fs::create_directories(port_ / "OpenBOR-Port");
    EXPECT_EQ(build(), 24);
    EXPECT_EQ(err_.str().rfind("Erro copiando runtime final: ", 0), 0U) << err_.str();
}

TEST(Configurations, FallBackFromClangToWhateverIsThere) {
    const std::string runtime = "-DCMAKE_MSVC_RUNTIME_LIBRARY=MultiThreaded";
    using Tries = std::vector<std::vector<std::string>>;
    EXPECT_EQ(configurations(System::kWindows, true),
              (Tries{{"-G", "Visual Studio 18 2026", "-A", "x64", "-T", "ClangCL", runtime},
                     {"-G", "Visual Studio 17 2022", "-A", "x64", "-T", "ClangCL", runtime},
                     {"-A", "x64", runtime},
                     {}}));
}

}  // namespace
}  // namespace tindrel
