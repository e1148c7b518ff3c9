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

const fs::path& GameReader::canonicalParent(const fs::path& path) const {
    const fs::path folder = path.parent_path();
    const auto [entry, isNew] = canonicalFolders_.try_emplace(folder.native());
    if (!isNew) return entry->second;
    fs::path& canonical = entry->second;
    const fs::path above = folder.parent_path();
    const auto [parent, isFirst] = canonicalFolders_.try_emplace(above.native());
    if (isFirst) parent->second = canonicalOrAbsolute(above);
    // Folders that share a parent share its form, unless they are links.
    std::error_code error;
    const bool isPlain = above.is_absolute() && above != folder &&
                         fs::symlink_status(folder, error).type() == fs::file_type::directory &&
                         folder.filename() != "." && folder.filename() != "..";
    canonical = isPlain ? parent->second / folder.filename() : canonicalOrAbsolute(folder);
    return canonical;
}

std::string GameReader::relativeToProject(const fs::path& path) const {
    std::error_code error;
    const fs::path canonical = fs::is_symlink(path, error)
                                   ? canonicalOrAbsolute(path)
                                   : canonicalParent(path) / path.filename();
    const fs::path relative = canonical.lexically_relative(canonicalRoot_);
    return PathEncoding::utf8(relative.empty() ? path : relative);
}

const TextFile& GameReader::lines(const fs::path& path) {
    const auto [entry, isNew] = files_.try_emplace(path.native());
    if (isNew) entry->second = readTextLines(path);
    return entry->second;
}

void GameReader::release(const fs::path& path) {
    files_.erase(path.native());
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
