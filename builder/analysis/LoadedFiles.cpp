#include "analysis/LoadedFiles.hpp"

#include "PathEncoding.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kNamedFiles[] = {"models.txt", "levels.txt",  "menu.txt",
                                            "video.txt",  "lifebar.txt", "script.txt"};

bool isScript(const fs::path& file) {
    return isScriptExtension(toLower(PathEncoding::utf8(file.extension())));
}

}  // namespace

LoadedFiles::LoadedFiles(const ProjectScan& project, GameReader& game, const ScriptCheckup& scripts)
    : all_(!project.hasModels), allScripts_(scripts.unchecked > 0), files_(scripts.files) {
    if (all_) return;
    for (const std::string_view name : kNamedFiles) add(game, name);
    for (const ModelDef& model : game.models()) files_.insert(model.sourceFile);
    for (const StageDef& stage : game.stages()) {
        files_.insert(stage.sourceFile);
        for (const std::string& scene : stage.preScenes) add(game, scene);
        for (const std::string& scene : stage.postScenes) add(game, scene);
    }
}

void LoadedFiles::add(GameReader& game, std::string_view name) {
    const fs::path& file = game.resolve(name);
    if (!file.empty() && game.isFile(file)) files_.insert(game.relativeToProject(file));
}

bool LoadedFiles::has(const fs::path& relative) const {
    return all_ || (allScripts_ && isScript(relative)) ||
           files_.contains(PathEncoding::utf8(relative));
}

}  // namespace tindrel
