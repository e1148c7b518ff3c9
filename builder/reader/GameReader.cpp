#include "reader/GameReader.hpp"

#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "reader/LevelSets.hpp"
#include "reader/ModelReader.hpp"

namespace tindrel {
namespace fs = std::filesystem;

GameReader::GameReader(fs::path dataDir, fs::path projectRoot)
    : resolver_(std::move(dataDir)),
      projectRoot_(std::move(projectRoot)),
      canonicalRoot_(canonicalOrAbsolute(projectRoot_)) {}

std::string GameReader::relativeToProject(const fs::path& path) const {
    std::error_code error;
    fs::path canonical;
    if (fs::is_symlink(path, error)) {
        canonical = canonicalOrAbsolute(path);
    } else {
        const auto [folder, isNew] = canonicalFolders_.try_emplace(path.parent_path());
        if (isNew) folder->second = canonicalOrAbsolute(folder->first);
        canonical = folder->second / path.filename();
    }
    const fs::path relative = canonical.lexically_relative(canonicalRoot_);
    return PathEncoding::utf8(relative.empty() ? path : relative);
}

const TextFile& GameReader::lines(const fs::path& path) {
    const auto [entry, isNew] = files_.try_emplace(path);
    if (isNew) entry->second = readTextLines(path);
    return entry->second;
}

void GameReader::release(const fs::path& path) {
    files_.erase(path);
}

const std::vector<ModelDef>& GameReader::models() {
    if (!models_) models_ = readModels(*this);
    return *models_;
}

const std::vector<StageDef>& GameReader::stages() {
    if (!stages_) stages_ = readStages(*this);
    return *stages_;
}

}  // namespace tindrel
