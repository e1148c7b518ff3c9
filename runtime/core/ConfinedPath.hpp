#pragma once

// Files that a game's scripts name: kept below one folder, whatever a name says and whatever links
// lie there.

#include <filesystem>
#include <string_view>

namespace port {

// The file that `raw` means below `base`, in the disk's spelling. It may be missing, and folders on
// the way to it. Empty for a name that normalizeDataPath() refuses, and where anything below `base`
// is a link, a file in a folder's place or no plain file at the end. Never throws.
[[nodiscard]] std::filesystem::path confinedPath(const std::filesystem::path& base,
                                                 std::string_view raw);

}  // namespace port
