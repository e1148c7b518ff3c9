#pragma once

// Single files and folders of a port.

#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/OutputFile.hpp"

namespace tindrel {

// A text file of exactly this text. Throws ("open", "write") when the disk takes no more.
void writeTextFile(const std::filesystem::path& path, std::string_view text,
                   LineEnds ends = LineEnds::kOfSystem);

// Puts a copy of the regular file `source` in place of whatever file or link stands at `target`,
// whose folder exists. On failure there is no file at `target`. A target that is the source itself,
// or an earlier copy of it as it is now, stays untouched.
[[nodiscard]] std::error_code replaceWithCopy(const std::filesystem::path& source,
                                              const std::filesystem::path& target);

// A real directory at `target`, in place of a file or link. Its parent exists.
[[nodiscard]] std::error_code makeFolder(const std::filesystem::path& target);

}  // namespace tindrel
