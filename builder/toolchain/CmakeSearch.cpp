#include "toolchain/CmakeSearch.hpp"

#include <string>
#include <string_view>

#include "platform/FileStatus.hpp"
#include "platform/Process.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct CandidateRow {
    System system;
    fs::path SearchFolders::*base;
    std::string_view visualStudio;  // "<year>/<edition>" whose own CMake is meant, or empty
    std::string_view program;       // below the base, or below the Visual Studio's CMake folder
};

constexpr std::string_view kBundled =
    "/Common7/IDE/CommonExtensions/Microsoft/CMake/CMake/bin/cmake.exe";

constexpr auto kBuilder = &SearchFolders::builder;
constexpr auto kPrograms = &SearchFolders::programFiles;
constexpr auto kProgramsX86 = &SearchFolders::programFilesX86;

// The newer year comes before the fuller edition.
constexpr CandidateRow kCandidates[] = {
    {System::kWindows, kBuilder, "", "tools/cmake/bin/cmake.exe"},
    {System::kWindows, kBuilder, "", "cmake/bin/cmake.exe"},
    {System::kWindows, kPrograms, "", "CMake/bin/cmake.exe"},
    {System::kWindows, kPrograms, "2026/Community", kBundled},
    {System::kWindows, kPrograms, "2026/Professional", kBundled},
    {System::kWindows, kPrograms, "2026/Enterprise", kBundled},
    {System::kWindows, kPrograms, "2022/Community", kBundled},
    {System::kWindows, kPrograms, "2022/Professional", kBundled},
    {System::kWindows, kPrograms, "2022/Enterprise", kBundled},
    {System::kWindows, kProgramsX86, "", "CMake/bin/cmake.exe"},
    {System::kWindows, kProgramsX86, "2026/BuildTools", kBundled},
    {System::kWindows, kProgramsX86, "2022/BuildTools", kBundled},
    {System::kLinux, kBuilder, "", "tools/cmake/bin/cmake"},
    {System::kLinux, kBuilder, "", "cmake/bin/cmake"},
};

constexpr std::string_view programName(System system) {
    return system == System::kWindows ? "cmake.exe" : "cmake";
}

}  // namespace

std::vector<fs::path> cmakeCandidates(System system, const SearchFolders& folders) {
    std::vector<fs::path> candidates;
    for (const CandidateRow& row : kCandidates) {
        const fs::path& base = folders.*row.base;
        if (row.system != system || base.empty()) continue;
        std::string below(row.program);
        if (!row.visualStudio.empty()) {
            below.insert(0, row.visualStudio).insert(0, "Microsoft Visual Studio/");
        }
        candidates.push_back(base / below);
    }
    return candidates;
}

fs::path findCmake() {
    fs::path found = searchProgram(programName(kHostSystem));
    if (!found.empty()) return found;
    const SearchFolders folders{builderFolder(), environmentPath("ProgramFiles"),
                                environmentPath("ProgramFiles(x86)")};
    for (fs::path& candidate : cmakeCandidates(kHostSystem, folders)) {
        if (tindrel::exists(candidate)) return std::move(candidate);
    }
    return {};
}

}  // namespace tindrel
