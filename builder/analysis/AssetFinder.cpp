#include "analysis/AssetFinder.hpp"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kPictureExtensions[] = {".gif", ".bmp", ".pcx", ".png"};
constexpr std::string_view kSoundExtensions[] = {".ogg", ".oga", ".wav", ".bor", ".mp3", ".flac"};

// Where the extension begins, dot included; the end of the text when there is none.
std::size_t extensionAt(std::string_view text) {
    const std::size_t name = text.find_last_of("/\\") + 1;  // npos + 1 is 0
    const std::size_t dot = text.rfind('.');
    return dot == std::string_view::npos || dot <= name ? text.size() : dot;
}

}  // namespace

std::string foldedPath(std::string_view text) {
    return toLower(normalizeDataPath(text));
}

AssetFinder::AssetFinder(const ProjectScan& project, GameReader& game)
    : game_(game), entries_(project.entries) {
    const std::size_t prefix = PathEncoding::utf8(project.dataDir).size() + 1;
    std::unordered_set<std::string_view> folders;
    for (const TreeEntry& entry : project.entries) {
        const std::string_view folded = std::string_view(entry.folded).substr(prefix);
        if (entry.directory) {
            foldersDifferInCase_ |= !folders.insert(folded).second;
        } else if (entry.regularFile) {
            const auto [known, isNew] =
                files_.try_emplace(folded, entry.symlink ? nullptr : &entry.native);
            if (!isNew) known->second = nullptr;
        }
    }
}

const NativePath* AssetFinder::fileAt(std::string_view text, const std::string& folded) {
    const auto known = files_.find(folded);
    if (known == files_.end()) return nullptr;
    if (known->second != nullptr && !foldersDifferInCase_) return known->second;
    const fs::path& path = game_.resolve(text);
    return !path.empty() && game_.isFile(path) ? &path.native() : nullptr;
}

const NativePath* AssetFinder::file(std::string_view text) {
    return fileAt(text, foldedPath(text));
}

const NativePath* AssetFinder::picture(std::string_view text) {
    const std::string folded = foldedPath(text);
    if (const NativePath* const exact = fileAt(text, folded)) return exact;
    const std::size_t extension = text.size() - extensionAt(text);
    const std::string stem(text.substr(0, text.size() - extension));
    const std::string foldedStem =
        folded.substr(0, folded.size() - std::min(extension, folded.size()));
    const NativePath* found = nullptr;
    for (const std::string_view candidate : kPictureExtensions) {
        const NativePath* const sibling =
            fileAt(stem + std::string(candidate), foldedStem + std::string(candidate));
        if (sibling == nullptr) continue;
        if (extension == 0) return sibling;
        if (found != nullptr) return nullptr;  // two stand-ins are as bad as none
        found = sibling;
    }
    return found;
}

const NativePath* AssetFinder::script(std::string_view text) {
    const std::string folded = foldedPath(text);
    if (const NativePath* const exact = fileAt(text, folded)) return exact;
    if (!isSafeRelativePath(PathEncoding::path(folded))) return nullptr;
    if (!baseNames_) baseNames_.emplace(entries_);
    return baseNames_->only(std::string_view(folded).substr(folded.rfind('/') + 1));
}

const NativePath* AssetFinder::sound(std::string_view text) {
    const std::string folded = foldedPath(text);
    if (const NativePath* const exact = fileAt(text, folded)) return exact;
    if (extensionAt(text) != text.size()) return nullptr;
    for (const std::string_view candidate : kSoundExtensions) {
        const NativePath* const found =
            fileAt(std::string(text).append(candidate), folded + std::string(candidate));
        if (found != nullptr) return found;
    }
    return nullptr;
}

}  // namespace tindrel
