#include "analysis/PlaytestAge.hpp"

#include <algorithm>
#include <set>
#include <system_error>

#include "PathEncoding.hpp"
#include "analysis/HtmlText.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// The way from the data folder to a file of it, given the way from the project root: in a port both
// differ from what they were in the game.
std::string belowData(std::string_view source, std::string_view dataFolder) {
    source.remove_prefix(std::min(dataFolder.size() + 1, source.size()));
    return PathEncoding::text(source);
}

// What the tables that were played and those of the game differ in; empty for the same names.
std::string difference(const PlayedGame& played, GameReader& game) {
    const std::size_t stages = game.stages().size();
    if (stages != played.stages) {
        return "it knows " + counted(played.stages, "stage", "stages") + ", and the game has " +
               groupDigits(stages);
    }
    const std::string dataFolder = game.relativeToProject(game.dataDir());
    std::set<std::string> files;
    for (const StageDef& stage : game.stages()) {
        files.insert(belowData(stage.sourceFile, dataFolder));
    }
    for (const PlayedStage& stage : played.played) {
        if (!files.contains(belowData(stage.stage, "data"))) {
            return "the game has no stage " + quoteCode(stage.stage);
        }
    }
    std::set<std::string> models;
    for (const ModelDef& model : game.models()) models.insert(PathEncoding::text(model.name));
    for (const std::string& model : played.models) {
        if (!models.contains(model)) return "the game has no model " + quoteCode(model);
    }
    for (const std::string& model : models) {
        if (!played.models.contains(model)) return "it knows no model " + quoteCode(model);
    }
    return {};
}

fs::file_time_type timeOf(const fs::path& file) {
    std::error_code absent;
    const fs::file_time_type time = fs::last_write_time(file, absent);
    return absent ? fs::file_time_type::min() : time;
}

}  // namespace

std::string whyOutdated(const PlayedGame& played, const fs::path& report, const fs::path& tables,
                        const ProjectScan& project, GameReader& game) {
    if (const std::string other = difference(played, game); !other.empty()) {
        return "This report is of another conversion: " + other + '.';
    }
    const fs::file_time_type end = timeOf(report);
    fs::file_time_type newest = end;
    const TreeEntry* last = nullptr;
    std::size_t changed = 0;
    for (const TreeEntry& entry : project.entries) {
        if (!entry.regularFile) continue;
        const fs::file_time_type time = timeOf(entry.path());
        changed += time > end ? 1 : 0;
        if (time <= newest) continue;
        newest = time;
        last = &entry;
    }
    if (last != nullptr) {
        return "This report is older than the game: " + counted(changed, "file has", "files have") +
               " changed since, the last of them " +
               quoteCode(displayPath(last->path().lexically_relative(project.root))) + '.';
    }
    if (!tables.empty() && std::max(timeOf(tables / "GeneratedCharacters.cpp"),
                                    timeOf(tables / "GeneratedStages.cpp")) > end) {
        return "This report is older than the port: its tables have changed since.";
    }
    return {};
}

}  // namespace tindrel
