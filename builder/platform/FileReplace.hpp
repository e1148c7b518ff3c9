#pragma once

// Changes to what already stands on disk.

#include <filesystem>
#include <system_error>

namespace tindrel {

// Copies a file with its permissions, over one that is there already.
void copyFileOver(const std::filesystem::path& from, const std::filesystem::path& to,
                  std::error_code& error);

// Copies a regular file with its permissions and its time of change to where nothing stands, as
// shared blocks where the file system has them. Fails with file_exists otherwise; a failure leaves
// nothing behind.
void copyNewFile(const std::filesystem::path& from, const std::filesystem::path& to,
                 std::error_code& error);

// Removes what stands at `path` with everything in it; of a link only the link. Absence is fine.
void removeAll(const std::filesystem::path& path, std::error_code& error);

}  // namespace tindrel
