#include "MusicPreview.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <system_error>

#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

namespace fs = std::filesystem;

// How well a file serves as music, by its path below the data root; 0 for one that is no sound.
int musicScore(const fs::path& file, const fs::path& dataRoot,
               std::string_view preferredExtension) {
    struct Format {
        std::string_view extension;
        int score;
    };
    constexpr std::array kFormats = {Format{".bor", 30}, Format{".wav", 20}, Format{".ogg", 10},
                                     Format{".oga", 10}, Format{".mp3", 10}, Format{".flac", 10}};
    const std::string extension = foldAscii(PathEncoding::utf8(file.extension()));
    const auto* format = std::ranges::find(kFormats, extension, &Format::extension);
    if (format == kFormats.end()) return 0;
    const bool inMusic =
        containsFolded(PathEncoding::utf8(file.lexically_relative(dataRoot)), "music");
    const bool isPreferred =
        equalsFolded(std::string_view(extension).substr(1), preferredExtension);
    return format->score + (inMusic ? 20 : 0) + (isPreferred ? 40 : 0);
}

}  // namespace

fs::path previewMusicFile(const fs::path& dataRoot, std::string_view preferredFormat) {
    // "auto" is the extension of no sound.
    if (preferredFormat.starts_with('.')) preferredFormat.remove_prefix(1);
    fs::path best;
    int bestScore = 0;
    std::error_code failed;
    fs::recursive_directory_iterator entry(dataRoot, fs::directory_options::skip_permission_denied,
                                           failed);
    for (const fs::recursive_directory_iterator end; !failed && entry != end;
         entry.increment(failed)) {
        const int score = musicScore(entry->path(), dataRoot, preferredFormat);
        if (score == 0 || score < bestScore) continue;
        if (score == bestScore && !(entry->path() < best)) continue;
        std::error_code ignored;
        if (!entry->is_regular_file(ignored)) continue;
        best = entry->path();
        bestScore = score;
    }
    return best;
}

}  // namespace port
