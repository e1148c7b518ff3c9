#include "toolchain/CmakeSearch.hpp"

#include <gtest/gtest.h>

#include "FakeTools.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

std::vector<std::string> names(const std::vector<fs::path>& paths) {
    std::vector<std::string> result;
    for (const fs::path& path : paths) result.push_back(path.generic_string());
    return result;
}

TEST(CmakeCandidates, PrefersPortableThenNewerThenFuller) {
    const std::string studio = "Microsoft Visual Studio/";
    const std::string bundled = "/Common7/IDE/CommonExtensions/Microsoft/CMake/CMake/bin/cmake.exe";
    EXPECT_EQ(names(cmakeCandidates(System::kWindows, {"B", "P", "X"})),
              (std::vector<std::string>{
                  "B/tools/cmake/bin/cmake.exe",
                  "B/cmake/bin/cmake.exe",
                  "P/CMake/bin/cmake.exe",
                  "P/" + studio + "2026/Community" + bundled,
                  "P/" + studio + "2026/Professional" + bundled,
                  "P/" + studio + "2026/Enterprise" + bundled,
                  "P/" + studio + "2022/Community" + bundled,
                  "P/" + studio + "2022/Professional" + bundled,
                  "P/" + studio + "2022/Enterprise" + bundled,
                  "X/CMake/bin/cmake.exe",
                  "X/" + studio + "2026/BuildTools" + bundled,
                  "X/" + studio + "2022/BuildTools" + bundled,
              }));
    EXPECT_EQ(cmakeCandidates(System::kWindows, {"B", "", "X"}).size(), 5U);
    EXPECT_EQ(cmakeCandidates(System::kWindows, {"B", "P", ""}).size(), 9U);
    EXPECT_EQ(names(cmakeCandidates(System::kLinux, {"B", "P", "X"})),
              (std::vector<std::string>{"B/tools/cmake/bin/cmake", "B/cmake/bin/cmake"}));
}

TEST(FindCmake, SearchesThePath) {
    const test::FakeTools tools;
    EXPECT_EQ(findCmake(), tools.cmake());
    tools.removeProgram("cmake");
    EXPECT_EQ(findCmake(), fs::path());
}

}  // namespace
}  // namespace tindrel
