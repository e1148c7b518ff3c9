#pragma once

// Where a run writes that was told no folder.

#include <filesystem>

#include "input/PreparedInput.hpp"

namespace tindrel {

// Beside an input file under its name; inside a game folder. Throws ("status").
[[nodiscard]] std::filesystem::path defaultReportsFolder(const std::filesystem::path& input,
                                                         const PreparedInput& prepared);

// Beside an input file or a game's folder, under its name. Throws ("status").
[[nodiscard]] std::filesystem::path defaultPortFolder(const std::filesystem::path& input,
                                                      const PreparedInput& prepared);

// What a selection in a dialog is called and where it lies. Throws ("status").
struct SelectionName {
    std::filesystem::path folder;
    std::filesystem::path name;

    // The neighbour of the selection that has `suffix` behind its name.
    [[nodiscard]] std::filesystem::path beside(const char* suffix) const;
};

[[nodiscard]] SelectionName nameSelection(const std::filesystem::path& selection);

inline constexpr const char* kReportsSuffix = "-analysis";
inline constexpr const char* kPortSuffix = "-Native-Port";

}  // namespace tindrel
