#include "analysis/AssetFinder.hpp"

#include <string>

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

AssetFinder::AssetFinder(const ProjectScan& project, GameReader& game) : game_(game) {
    for (const DataEntry& entry : project.entries) {
        if (entry.regularFile) files_.insert(entry.path.native());
    }
}

const fs::path* AssetFinder::file(std::string_view text) {
    const fs::path& path = game_.resolve(text);
    return files_.count(path.native()) > 0 ? &path : nullptr;
}

const fs::path* AssetFinder::picture(std::string_view text) {
    if (const fs::path* const exact = file(text)) return exact;
    const std::size_t dot = extensionAt(text);
    const fs::path* found = nullptr;
    for (const std::string_view extension : kPictureExtensions) {
        const fs::path* const sibling = file(std::string(text.substr(0, dot)).append(extension));
        if (sibling == nullptr) continue;
        if (dot == text.size()) return sibling;
        if (found != nullptr) return nullptr;  // two stand-ins are as bad as none
        found = sibling;
    }
    return found;
}

const fs::path* AssetFinder::sound(std::string_view text) {
    if (const fs::path* const exact = file(text)) return exact;
    if (extensionAt(text) != text.size()) return nullptr;
    for (const std::string_view extension : kSoundExtensions) {
        if (const fs::path* const found = file(std::string(text).append(extension))) return found;
    }
    return nullptr;
}

}  // namespace tindrel
