#include "generator/RepairPackage.hpp"

#include <gtest/gtest.h>

#include "TempFolder.hpp"

namespace tindrel::test {
namespace {
namespace fs = std::filesystem;

class RepairPackage : public testing::Test {
  protected:
    RepairPackage() { project_.root = game_.path(); }

    void add(const char* file, CompatStatus status, const char* message) {
        const SourceFile& source = analysis_.files.emplace_back(SourceFile{file, file});
        Issue& issue = analysis_.issues.emplace_back();
        issue.file = &source;
        issue.line = 7;
        issue.command = "word";
        issue.message = message;
        issue.status = status;
    }

    TempFolder game_, out_;
    ProjectScan project_;
    ProjectAnalysis analysis_;
};

TEST_F(RepairPackage, ListsIssuesAndCopiesTheirFilesOnce) {
    game_.write("data/a.txt", "a");
    game_.write("data/chars/b.txt", "b");
    game_.write("data/c.txt", "no issue");
    add("data/a.txt", CompatStatus::kUnknown, "says \"no\"\t\\\n\r");
    add("data/chars/b.txt", CompatStatus::kPartial, "");
    add("data/a.txt", CompatStatus::kUnsupported, "");
    add("data/gone.txt", CompatStatus::kUnsupported, "");
    writeRepairPackage(project_, analysis_, out_.path());
    EXPECT_EQ(out_.read("AI-Repair/issues.json"),
              "{\n  \"source\": \"" + game_.path().string() + "\",\n  \"issues\": [\n" +
                  R"(    {"level":"UNKNOWN","file":"data/a.txt","line":7,"command":"word",)"
                  R"("message":"says \"no\"\t\\\n)"
                  "\r\"},\n"
                  R"(    {"level":"PARTIAL","file":"data/chars/b.txt","line":7,)"
                  R"("command":"word","message":""},)"
                  "\n"
                  R"(    {"level":"UNSUPPORTED","file":"data/a.txt","line":7,)"
                  R"("command":"word","message":""},)"
                  "\n"
                  R"(    {"level":"UNSUPPORTED","file":"data/gone.txt","line":7,)"
                  R"("command":"word","message":""})"
                  "\n  ]\n}\n");
    // The carriage return stands raw there, and escaped in the strict form.
    const std::string strict = out_.read("AI-Repair/issues-strict.json");
    EXPECT_NE(strict.find("says \\\"no\\\"\\t\\\\\\n\\r\"}"), std::string::npos) << strict;
    EXPECT_EQ(strict.find('\r'), std::string::npos);
    EXPECT_EQ(out_.read("AI-Repair/original-sources/data/a.txt"), "a");
    EXPECT_EQ(out_.read("AI-Repair/original-sources/data/chars/b.txt"), "b");
    EXPECT_FALSE(fs::exists(out_.path() / "AI-Repair/original-sources/data/c.txt"));
    EXPECT_FALSE(fs::exists(out_.path() / "AI-Repair/original-sources/data/gone.txt"));
    EXPECT_TRUE(fs::exists(out_.path() / "AI-Repair/logs/runtime.log"));
    EXPECT_TRUE(fs::exists(out_.path() / "AI-Repair/README-AI-REPAIR.md"));
}

TEST_F(RepairPackage, WithoutIssues) {
    writeRepairPackage(project_, analysis_, out_.path());
    EXPECT_EQ(out_.read("AI-Repair/issues.json"),
              "{\n  \"source\": \"" + game_.path().string() + "\",\n  \"issues\": [\n  ]\n}\n");
    EXPECT_FALSE(fs::exists(out_.path() / "AI-Repair/issues-strict.json"));
    EXPECT_TRUE(fs::is_empty(out_.path() / "AI-Repair/original-sources"));
}

TEST_F(RepairPackage, AFolderThatCannotBeMadeEndsTheRun) {
    out_.write("AI-Repair", "a file in the way");
    EXPECT_THROW(writeRepairPackage(project_, analysis_, out_.path()), fs::filesystem_error);
}

}  // namespace
}  // namespace tindrel::test
