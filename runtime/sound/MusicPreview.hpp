#pragma once

#include <filesystem>
#include <string_view>

namespace port {

// The music of a game that names none: of the sound files below the data root the one that looks
// most like music, of equals the first by name. `preferredFormat` is an extension, or "auto" for
// no preference. Empty when there is no sound file.
[[nodiscard]] std::filesystem::path previewMusicFile(const std::filesystem::path& dataRoot,
                                                     std::string_view preferredFormat);

}  // namespace port
