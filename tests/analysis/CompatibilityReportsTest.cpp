#include "analysis/CompatibilityReports.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "TempFolder.hpp"
#include "analysis/ParityAudit.hpp"

namespace tindrel {
namespace {

using enum CompatStatus;

TEST(CompatibilityReports, EmptyGame) {
    const test::TempFolder folder;
    ProjectScan project;
    project.root = folder.below("say \"hé\"");
    writeReports(project, {}, folder.path() / "out" / "reports");
    const std::string source = test::text(project.root);
    EXPECT_EQ(folder.read("out/reports/compatibility-report.txt"),
              "OPENBOR CONVERSION REPORT\n\nGame: say \"hé\"\nSource: " + source +
                  "\nOpenBOR hint: \nLogical resolution: 320x240\nModels: 0\nStages: 0\n"
                  "Animations: 0\nScripts: 0\nAudio files: 0\nText files: 0\n\n"
                  "Parser occurrences:\n"
                  "  SUPPORTED .... 0 (0%)\n"
                  "  PARTIAL ...... 0 (0%)\n"
                  "  UNSUPPORTED .. 0\n"
                  "  UNKNOWN ...... 0\n\n"
                  "Status means parser support AND runtime support. A parsed-but-not-executed "
                  "command is PARTIAL.\n\n"
                  "Command registry:\n\nIssues (file:line command impact):\n");
    EXPECT_EQ(folder.read("out/reports/animation-command-audit.txt"),
              "ANIMATION COMMAND AUDIT\nPer-call diagnostics; no generic suppression of "
              "PARTIAL.\n\n");
    EXPECT_EQ(folder.read("out/reports/analysis.json"),
              "{\n"
              "  \"game\": \"say \\\"hé\\\"\",\n"
              "  \"logicalWidth\": 320,\n"
              "  \"logicalHeight\": 240,\n"
              "  \"models\": 0,\n"
              "  \"stages\": 0,\n"
              "  \"animations\": 0,\n"
              "  \"scripts\": 0,\n"
              "  \"audioFiles\": 0,\n"
              "  \"supported\": 0,\n"
              "  \"partial\": 0,\n"
              "  \"unsupported\": 0,\n"
              "  \"unknown\": 0,\n"
              "  \"commands\": {\n"
              "  }\n"
              "}\n");
}

TEST(CompatibilityReports, CommandsIssuesAndAudit) {
    const test::TempFolder folder;
    ProjectScan project;
    project.root = folder.path();
    ProjectAnalysis analysis;
    analysis.supported = 2;
    analysis.partial = 1;
    analysis.commandCounts = {{"a\\\"b", 1}, {"frame", 2}, {"lost", 7}};
    analysis.commandStatus = {{"a\\\"b", kUnknown}, {"frame", kPartial}};
    analysis.commandStatusCounts = {{"a\\\"b", {{kUnknown, 1}}},
                                    {"frame", {{kSupported, 1}, {kIgnoredSafely, 1}}}};
    const SourceFile& file = analysis.files.emplace_back(SourceFile{"data/x.txt", "data\\x.txt"});
    analysis.issues.push_back({1, &file, 3, "frame", "not here", kPartial, true, false});
    analysis.issues.push_back({2, &file, 4, "frame", "", kUnsupported, true, false});
    analysis.animationAudit.push_back({&file, 5, "f", "", "f; empty command", kPartial});

    folder.write("analysis.json", "older and much longer than what is to come");
    writeReports(project, analysis, folder.path());
    const std::string report = folder.read("compatibility-report.txt");
    EXPECT_NE(report.find("  SUPPORTED .... 2 (66%)\n  PARTIAL ...... 1 (33%)\n"),
              std::string::npos);
    EXPECT_EQ(report.substr(report.find("Command registry:")),
              "Command registry:\n"
              "  a\\\"b x1 -> UNKNOWN\n"
              "  frame x2 -> PARTIAL (SUPPORTED=1, IGNORED_SAFELY=1)\n"
              "  lost x7 -> UNKNOWN\n"
              "\nIssues (file:line command impact):\n"
              "  [PARTIAL] data\\x.txt:3 frame - not here\n"
              "  [UNSUPPORTED] data\\x.txt:4 frame\n");
    EXPECT_EQ(folder.read("animation-command-audit.txt"),
              "ANIMATION COMMAND AUDIT\nPer-call diagnostics; no generic suppression of "
              "PARTIAL.\n\n[PARTIAL] data\\x.txt:5 f; empty command\n");
    const std::string json = folder.read("analysis.json");
    EXPECT_EQ(json.substr(json.find("  \"commands\"")),
              "  \"commands\": {\n"
              "    \"a\\\\\\\"b\": {\"count\": 1, \"status\": \"UNKNOWN\", \"statusCounts\": "
              "{\"UNKNOWN\": 1}},\n"
              "    \"frame\": {\"count\": 2, \"status\": \"PARTIAL\", \"statusCounts\": "
              "{\"SUPPORTED\": 1, \"IGNORED_SAFELY\": 1}},\n"
              "    \"lost\": {\"count\": 7, \"status\": \"UNKNOWN\", \"statusCounts\": {}}\n"
              "  }\n"
              "}\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "analysis-strict.json"));

    analysis.commandCounts.emplace("\x1A", 1);
    writeReports(project, analysis, folder.path());
    EXPECT_NE(folder.read("analysis.json").find("\"\x1A\": {\"count\": 1"), std::string::npos);
    EXPECT_NE(folder.read("analysis-strict.json").find("\"\\u001a\": {\"count\": 1"),
              std::string::npos);
}

TEST(CompatibilityReports, FolderThatCannotBeMade) {
    const test::TempFolder folder;
    folder.write("file", "");
    try {
        writeReports({}, {}, folder.path() / "file" / "reports");
        FAIL() << "no exception";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find("create_directories"), std::string::npos);
    }
}

TEST(ParityAudit, HeadingsRowsAndPriorities) {
    std::ostringstream out;
    printParityAudit(out);
    const std::string text = out.str();
    const std::string start =
        "Tindrel Builder 0.34.32 - Parity Audit\n\nStatus: GREEN = native behavior implemented; "
        "YELLOW = known but partial; RED = major compatibility layer still required.\n\n"
        "## Frontend\n\n- [GREEN] Main menu - Native frontend preserves";
    EXPECT_EQ(text.substr(0, start.size()), start);
    const auto count = [&](std::string_view piece) {
        std::size_t found = 0;
        for (std::size_t at = text.find(piece); at != std::string::npos;
             at = text.find(piece, at + 1)) {
            ++found;
        }
        return found;
    };
    EXPECT_EQ(count("\n## "), 11U);  // ten categories, each once, and the closing block
    EXPECT_EQ(count("\n- [GREEN] ") + count("\n- [YELLOW] "), 44U);
    EXPECT_NE(text.find("generically.\n\n## Highest priority remaining\n\n1. Unify"),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("when Windows lacks a codec.\n"));
}

}  // namespace
}  // namespace tindrel
