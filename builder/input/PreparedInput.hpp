#pragma once

// One game folder out of whatever the user gave: a folder, a ZIP, a RAR or a PAK.

#include <filesystem>
#include <string>
#include <vector>

#include "reader/ProjectScan.hpp"

namespace tindrel {

// The game that was found, with the temporary session that it may lie in. Movable, not copyable;
// the session is removed when its owner ends or takes over another.
struct PreparedInput {
    std::filesystem::path originalPath;  // the input, absolute and canonical
    std::filesystem::path gameRoot;      // holds data/ or assets/openbor-data
    std::filesystem::path tempDir;       // the session; empty when none was needed
    std::string sourceKind;              // "folder", "zip", "pak", ..., for a person to read
    std::vector<std::filesystem::path> candidates;  // all roots, best first; gameRoot is the first
    bool ownsTempDir = false;
    DataWalk gameData;  // what the search saw below gameRoot's data folder; may be empty

    PreparedInput() = default;
    PreparedInput(PreparedInput&& other) noexcept;
    PreparedInput& operator=(PreparedInput&& other) noexcept;
    PreparedInput(const PreparedInput&) = delete;
    PreparedInput& operator=(const PreparedInput&) = delete;
    ~PreparedInput();
};

// Throws a standard exception whose text tells the user what is wrong with the input. A PAK that is
// skipped beside others is only warned of, on the error stream.
[[nodiscard]] PreparedInput prepareInput(const std::filesystem::path& input);

enum class ContentKind { None, Zip, Rar, Pak };

// What the file's first bytes say; None for what cannot be opened or is no regular file.
[[nodiscard]] ContentKind detectContentKind(const std::filesystem::path& path);

}  // namespace tindrel
