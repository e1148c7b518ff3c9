#pragma once

// A conservative screen of script sources: which functions a script calls that the port's script
// machine does not know. It reads text and parses nothing, and errs toward reporting.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/GameReader.hpp"

namespace tindrel {

// Scans one project; every file is read and scanned once, whatever includes it.
class ScriptScanner {
  public:
    explicit ScriptScanner(GameReader& game) : game_(game) {}

    // Distinct unsupported names and tags of `file` with everything that it includes, or of
    // `inlineText` alone with the includes that it names as seen from `file`.
    [[nodiscard]] std::vector<std::string> scanScriptSource(
        const std::filesystem::path& file, std::optional<std::string_view> inlineText = {});

  private:
    GameReader& game_;
};

}  // namespace tindrel
