#pragma once

// Where the files that a game's tables name lie under the data root. Games were written for a disk
// that ignores case, and their tables may name a picture or a sound by another extension or none.
// All of these ask the disk at each call; none of them throws for what a name or a disk holds.

#include <filesystem>
#include <string_view>

namespace port {

// Whether an element of a path begins with a drive letter, on every system: joined to a folder on
// Windows it would replace that.
[[nodiscard]] bool hasDriveLetter(const std::filesystem::path& element);

// The path below the data root, without "./" and "data/" in front; empty for one that is empty,
// absolute, rooted (a drive letter included, on every system) or climbs out by "..".
[[nodiscard]] std::filesystem::path normalizeDataPath(std::string_view raw);

// `path` with the case that its components have on the disk; as it was when it exists or when a
// component has two spellings there. What is missing stays as written.
[[nodiscard]] std::filesystem::path runtimeCasePath(const std::filesystem::path& path);

// The picture or sound of that name; empty for an unusable one, a path that does not exist for one
// that is missing or ambiguous. A picture's extension may be wrong, a sound's only missing.
[[nodiscard]] std::filesystem::path resolveSpriteAsset(const std::filesystem::path& dataRoot,
                                                       std::string_view raw);
[[nodiscard]] std::filesystem::path resolveAudioAsset(const std::filesystem::path& dataRoot,
                                                      std::string_view raw);

}  // namespace port
