#pragma once

// Plays the game in the tables without a window and holds two runs of it against each other.

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Pilot.hpp"
#include "TempFolder.hpp"

namespace tindrel::fuzz {

// The folders of two ports with the scripts that games here name, one of them with global scripts.
class FuzzPorts {
  public:
    FuzzPorts();
    [[nodiscard]] std::filesystem::path root(bool globalScripts) const;
    // Puts another text in the place of a script.
    void writeScript(bool globalScripts, const std::string& path, std::string_view text) const;

  private:
    tindrel::test::TempFolder folder_;
};

// Plays twice, each time with a pilot of its own that does the same, up to `mostPasses` or until
// there was work enough for one input. A difference between the worlds ends the program.
void playTwice(const std::filesystem::path& root, int mostPasses,
               const std::function<std::unique_ptr<port::Pilot>()>& pilot);

// Nothing that the runtime says is printed any more, unless TINDREL_FUZZ_LOG is set.
void silence();

}  // namespace tindrel::fuzz
