#pragma once

// The outside programs that unpack ZIP and RAR, as a system names and calls them.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tindrel {

using Command = std::vector<std::string>;

// The chain in its order. The paths are absolute, so that no tool takes one for an option.
struct ArchiveTools {
    using Call = Command (*)(const std::filesystem::path& archive,
                             const std::filesystem::path& destination);
    Call zip;       // for a ZIP only
    Call tar;       // for both
    Call sevenZip;  // for both; an empty command where there is no 7-Zip. Throws ("exists").
    // Runs one of them to its end, or to the moment when the second argument says no: its exit
    // code, -1 when it did not start.
    std::function<int(const Command&, const std::function<bool()>&)> run;
};

// PowerShell, tar.exe and 7z.exe.
[[nodiscard]] ArchiveTools windowsArchiveTools();

// unzip, bsdtar and 7-Zip under its names.
[[nodiscard]] ArchiveTools posixArchiveTools();

// Those of the system we run on.
[[nodiscard]] ArchiveTools systemArchiveTools();

}  // namespace tindrel
