#pragma once

// A file that is named again is read again, into records of its own. A few kilobytes that name one
// large file thousands of times would fill the memory, so there is a limit to it.

#include <cstddef>
#include <filesystem>
#include <unordered_set>

#include "reader/TextLines.hpp"

namespace tindrel {

// A real game that names 33 files again comes to 7,000.
inline constexpr std::size_t kMaxRepeatedLines = 4'000'000;
// What the record of an empty file weighs.
inline constexpr std::size_t kLinesPerRead = 200;

class RepeatedReads {
  public:
    // Whether `file` may be read: for the first time always, again as long as all that was read
    // again stays within the limit. A mention beyond counts as that of an absent file.
    [[nodiscard]] bool admit(const std::filesystem::path& file, const TextFile& lines) {
        if (read_.insert(file.native()).second) return true;
        const std::size_t cost = lines.lines().size() + kLinesPerRead;
        if (cost > left_) return false;
        left_ -= cost;
        return true;
    }

  private:
    std::unordered_set<std::filesystem::path::string_type> read_;
    std::size_t left_ = kMaxRepeatedLines;
};

}  // namespace tindrel
