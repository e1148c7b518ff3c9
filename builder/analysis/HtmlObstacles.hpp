#pragma once

// What stands in the way of a game: its commands that do not run in full, and the files to open
// first, as sections of the HTML report.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "analysis/HtmlPage.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "reader/GameReader.hpp"

namespace tindrel {

class HtmlObstacles {
  public:
    HtmlObstacles(HtmlPage& page, const ProjectAnalysis& analysis, GameReader& game);

    [[nodiscard]] std::size_t commands() const { return obstacles_.size(); }
    [[nodiscard]] std::size_t files() const { return busyFiles_.size(); }
    // Issues of each file by its path relative to the project root, in generic form.
    using CountByFile = std::unordered_map<std::string, std::uint64_t>;
    [[nodiscard]] const CountByFile& openLines() const { return openLines_; }

    void writeCommands();
    void writeFiles();

  private:
    // Lines of one file that share a fate.
    struct FileUse {
        const SourceFile* file = nullptr;
        std::uint64_t count = 0;
        // The first of them, with why they do not run in full, where that is known.
        std::vector<std::pair<std::uint64_t, std::string_view>> lines;
    };

    // Occurrences of one command with one status.
    struct Obstacle {
        std::string_view command;
        CompatStatus status = CompatStatus::kUnknown;
        std::uint64_t count = 0;
        bool loaded = false;                     // some of them
        std::vector<std::string_view> messages;  // distinct, the first few
        std::vector<FileUse> files;
    };

    static void addTo(Obstacle& obstacle, const Issue& issue);
    static void sortByCount(std::vector<FileUse>& uses);
    void writeObstacle(const Obstacle& obstacle, std::uint64_t most);
    [[nodiscard]] std::string sentence(const Obstacle& obstacle) const;
    void writeFullForms(std::string_view command);
    void writePlaces(const FileUse& use);

    HtmlPage& page_;
    OutputFile& out_;
    std::vector<Obstacle> obstacles_;
    std::vector<FileUse> busyFiles_;
    CountByFile openLines_;
    std::unordered_set<std::string> characterFiles_, stageFiles_;  // relative, in generic form
};

}  // namespace tindrel
