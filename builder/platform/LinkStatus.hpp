#pragma once

// What stands under a name itself. Not every standard library knows the links of Windows, and then
// reads, overwrites or removes what they lead to.

#include <filesystem>
#include <system_error>

namespace tindrel {

// A symbolic link or, on Windows, a junction. False for what cannot be asked.
[[nodiscard]] bool isLink(const std::filesystem::path& path);

// As fs::symlink_status(), with the type symlink for every link.
[[nodiscard]] std::filesystem::file_status linkStatus(const std::filesystem::path& path,
                                                      std::error_code& error);

}  // namespace tindrel
