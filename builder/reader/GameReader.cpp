#include "reader/GameReader.hpp"

#include <algorithm>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/LevelSets.hpp"
#include "reader/ModelReader.hpp"

namespace tindrel {
namespace fs = std::filesystem;

GameReader::GameReader(fs::path dataDir, fs::path projectRoot, std::span<const TreeEntry> known,
                       bool asWritten)
    : resolver_(std::move(dataDir), known),
      projectRoot_(std::move(projectRoot)),
      asWritten_(asWritten) {}

bool GameReader::isFile(const fs::path& path) const {
    return resolver_.plainType(path) == fs::file_type::regular || tindrel::isFile(path);
}

bool GameReader::isUnlinkedFile(const fs::path& path) const {
    if (resolver_.plainType(path) == fs::file_type::regular) return true;
    return !tindrel::isLink(path) && tindrel::isFile(path);
}

const fs::path& GameReader::canonicalFolder(const fs::path& folder) const {
    const auto known = canonicalFolders_.find(folder.native());
    if (known != canonicalFolders_.end()) return known->second;
    return canonicalFolders_.emplace(folder.native(), weaklyCanonical(folder)).first->second;
}

// Folders that share a parent share its form, so that only a link needs questions of its own.
const fs::path& GameReader::canonicalParent(const fs::path& path) const {
    const fs::path folder = path.parent_path();
    const fs::path name = folder.filename();
    if (canonicalFolders_.contains(folder.native()) || !folder.is_absolute() || name.empty() ||
        name == "." || name == ".." || resolver_.plainType(folder) != fs::file_type::directory) {
        return canonicalFolder(folder);
    }
    fs::path canonical = canonicalFolder(folder.parent_path()) / name;
    return canonicalFolders_.emplace(folder.native(), std::move(canonical)).first->second;
}

std::string GameReader::relativeToProject(const fs::path& path) const {
    const bool linked = resolver_.plainType(path) == fs::file_type::none && tindrel::isLink(path);
    const fs::path canonical =
        linked ? weaklyCanonical(path) : canonicalParent(path) / path.filename();
    const fs::path relative = canonical.lexically_relative(canonicalFolder(projectRoot_));
    return PathEncoding::utf8(relative.empty() ? path : relative);
}

const TextFile& GameReader::lines(const fs::path& path) {
    const auto [entry, isNew] = files_.try_emplace(path.native());
    if (isNew) {
        entry->second = readTextLines(path, asWritten_);
        collect(path, entry->second.reading().lines());
    }
    return entry->second;
}

void GameReader::collect(const fs::path& path, std::span<const MendedLine> mended) {
    if (mended.empty()) return;
    std::vector<MendedLine>& lines = mendedLines_[relativeToProject(path)];
    lines.insert(lines.end(), mended.begin(), mended.end());
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
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
