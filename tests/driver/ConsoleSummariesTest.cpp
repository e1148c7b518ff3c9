#include "driver/ConsoleSummaries.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace tindrel {
namespace {

TEST(PrintScanSummary, ShowsEveryFinding) {
    ProjectScan scan;
    scan.root = "/games/mine";
    scan.hasModels = scan.hasMenu = scan.hasLifebar = true;
    scan.fileCount = 1204;
    scan.imageCount = 987;
    scan.audioCount = 61;
    scan.textCount = 152;
    scan.warnings = {"Pasta data/ nao encontrada.", "levels.txt nao encontrado."};
    std::ostringstream out;
    printScanSummary(out, scan);
    EXPECT_EQ(out.str(),
              "OpenBOR project: /games/mine\n"
              "data/: MISSING\n"
              "models.txt: OK\n"
              "levels.txt: MISSING\n"
              "menu.txt: FOUND  video.txt: none  lifebar.txt: FOUND  script.txt: none\n"
              "files=1204 images=987 audio=61 text=152\n"
              "[WARN] Pasta data/ nao encontrada.\n"
              "[WARN] levels.txt nao encontrado.\n");
}

class CompatibilitySummary : public testing::Test {
  protected:
    std::string print(std::size_t issues) {
        analysis_.issues.assign(
            issues, Issue{1, &file_, 12, "hole", "Partial.", CompatStatus::kPartial, true, true});
        std::ostringstream out;
        printCompatibilitySummary(out, analysis_);
        return out.str();
    }
    static auto countLines(const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    }

    SourceFile file_{"data/a.txt", "data/a.txt"};
    ProjectAnalysis analysis_;
};

TEST_F(CompatibilitySummary, CountsThenListsIssuesByStatus) {
    analysis_.textFiles = 1;
    analysis_.models = 2;
    analysis_.stages = 3;
    analysis_.animations = 4;
    analysis_.scripts = 5;
    analysis_.logicalWidth = 480;
    analysis_.logicalHeight = 272;
    analysis_.supported = 6;
    analysis_.partial = 7;
    analysis_.unsupported = 8;
    analysis_.unknown = 9;
    EXPECT_EQ(print(1),
              "Compatibility: text_files=1 models=2 stages=3 animations=4 scripts=5 "
              "resolution=480x272 supported=6 partial=7 unsupported=8 unknown=9\n"
              "[PARTIAL] data/a.txt:12 hole - Partial.\n");
}

TEST_F(CompatibilitySummary, StopsBehindTheFortyFirstIssue) {
    EXPECT_EQ(countLines(print(41)), 1 + 41);
    EXPECT_EQ(print(41).find("more issues"), std::string::npos);
    for (const auto& [issues, rest] : {std::pair{42, "2"}, std::pair{100, "60"}}) {
        const std::string text = print(static_cast<std::size_t>(issues));
        EXPECT_EQ(countLines(text), 1 + 41 + 1);
        const std::string closing =
            "Partial.\n... " + std::string(rest) + " more issues in the report files\n";
        ASSERT_GT(text.size(), closing.size());
        EXPECT_EQ(text.substr(text.size() - closing.size()), closing);
    }
}

}  // namespace
}  // namespace tindrel
