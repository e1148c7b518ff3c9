#pragma once

#include <filesystem>

namespace tindrel {

// Removes the folder with everything in it, whatever an unpacked archive made of it: read-only
// folders, and trees too deep to be named by a path. Links are removed, never followed. Errors are
// swallowed.
void removeTree(const std::filesystem::path& folder) noexcept;

}  // namespace tindrel
