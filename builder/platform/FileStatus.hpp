#pragma once

// Questions to the file system. What is merely absent, or could never exist under that name, is an
// answer; every other trouble throws a filesystem_error that is named after the operation.

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace tindrel {

// Throws ("exists") for an error other than absence.
[[nodiscard]] bool exists(const std::filesystem::path& path);

// A real directory: a symbolic link or mount point does not count. Throws ("status").
[[nodiscard]] bool isDirectory(const std::filesystem::path& path);

// Present, and neither a directory nor a link to one. Throws ("status").
[[nodiscard]] bool isFile(const std::filesystem::path& path);

// Creates the folder with all its parents. Throws ("create_directories").
void createDirectories(const std::filesystem::path& path);

// The absolute form. Throws ("absolute").
[[nodiscard]] std::filesystem::path absolute(const std::filesystem::path& path);

// The weakly canonical form. Throws ("weakly_canonical").
[[nodiscard]] std::filesystem::path weaklyCanonical(const std::filesystem::path& path);

// The weakly canonical form, or where that fails the lexically normal absolute form.
[[nodiscard]] std::filesystem::path canonicalOrAbsolute(const std::filesystem::path& path);

// True for the errors that mean "not there": a name that no file has, or that none can have.
[[nodiscard]] bool isAbsence(const std::error_code& error);

// True for the errors by which a full or read-only disk shows itself.
[[nodiscard]] bool isDiskFailure(const std::error_code& error);

}  // namespace tindrel
