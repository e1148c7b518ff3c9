#include "driver/PortTest.hpp"

#include <ostream>
#include <string>
#include <string_view>

#include "PathEncoding.hpp"
#include "analysis/HtmlReport.hpp"
#include "analysis/PlaytestFile.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "driver/ConsoleSummaries.hpp"
#include "driver/OutputNames.hpp"
#include "generator/PortFiles.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"
#include "reader/TextLines.hpp"
#include "toolchain/PortBuild.hpp"
#include "toolchain/PortPackage.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kVideoConfig = "config/openbor-video.ini";
constexpr std::string_view kRequired[] = {
    "assets/openbor-data",
    "runtime/CMakeLists.txt",
    "runtime/generated/GeneratedCharacters.cpp",
    "runtime/generated/GeneratedStages.cpp",
    "runtime/src/Engine.cpp",
    kVideoConfig,
};

void checkVideoConfig(const fs::path& port, const ProjectAnalysis& analysis, int& failures,
                      const Console& console) {
    const std::string text = readFileBytes(port / kVideoConfig);
    const auto states = [&](std::string_view name, std::int32_t value) {
        return text.find(std::string(name) + '=' + std::to_string(value)) != std::string::npos;
    };
    if (states("logical_width", analysis.logicalWidth) &&
        states("logical_height", analysis.logicalHeight)) {
        console.out << "[PASS] video config matches detected resolution\n";
        return;
    }
    console.err << "[FAIL] video config does not match detected resolution\n";
    ++failures;
}

bool takePlaytest(const fs::path& file, const fs::path& reports, const Console& console) {
    std::string why;
    if (!readPlaytest(file, why)) {
        console.err << "Erro: relatorio de jogo invalido: " << displayPath(file) << ": " << why
                    << '\n';
        return false;
    }
    createDirectories(reports);
    const fs::path copy = reports / kPlaytestName;
    if (const std::error_code error = replaceWithCopy(file, copy)) {
        throw fs::filesystem_error("copy_file", file, copy, error);
    }
    return true;
}

}  // namespace

int testPort(const fs::path& port, const std::optional<fs::path>& playtest, bool asWritten,
             const Console& console) {
    const fs::path reports = port / "reports";
    if (playtest && !takePlaytest(*playtest, reports, console)) return kNoInput;
    const ProjectScan scan = scanProject(port);
    printScanSummary(console.out, scan);
    GameReader game(scan.dataDir, scan.root, scan.entries, asWritten);
    const ProjectAnalysis analysis = analyzeProject(scan, game);
    printCompatibilitySummary(console.out, analysis);
    if (playtest) {
        writeHtmlReport(scan, analysis, game, reports, PageLinks::kPortAssets,
                        PathEncoding::utf8(nameSelection(scan.root).name));
        console.out << "Wrote " << displayPath(reports / "index.html") << '\n';
    }

    int failures = 0;
    for (const std::string_view path : kRequired) checkExists(port, failures, path, console);
    checkVideoConfig(port, analysis, failures, console);
    return failures > 0 ? kChecksFailed : buildPort(port, console);
}

}  // namespace tindrel
