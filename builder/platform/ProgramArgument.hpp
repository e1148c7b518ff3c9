#pragma once

// A path as an argument of a program that is started.

#include <filesystem>
#include <string>

namespace tindrel {

// In UTF-8 with the system's separators; on a system with byte names exactly its bytes.
[[nodiscard]] inline std::string programArgument(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// The path that such an argument of our own means.
[[nodiscard]] inline std::filesystem::path argumentPath(const std::string& argument) {
    return std::filesystem::path(std::u8string(argument.begin(), argument.end()));
}

}  // namespace tindrel
