#pragma once

// The runtime's source, which the builder carries and writes unchanged into every port.

#include <filesystem>
#include <span>
#include <string_view>

namespace tindrel {

struct EmbeddedFile {
    std::string_view path;  // relative to the port's root, forward slashes
    std::string_view content;
};

// All carried files in the order of writing, but the schema headers of the tables.
[[nodiscard]] std::span<const EmbeddedFile> runtimeFiles();

// The carried table schema, GeneratedCharacters.hpp or GeneratedStages.hpp; empty for other names.
[[nodiscard]] std::string_view schemaHeader(std::string_view name);

// What becomes of the settings of a port that has been played: they are the player's.
enum class PortSettings { kFresh, kKept };

// A port whose scripts are to be taken to the letter has a line for that in its settings, kept or
// not. Throws ("create_directories", "write").
void writeRuntime(const std::filesystem::path& outputFolder, bool asWritten, PortSettings settings);

}  // namespace tindrel
