#pragma once

// One line of progress on the error stream, rewritten in place; silent unless it is a terminal.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace tindrel {

class Progress {
  public:
    // `total` 0 means that only a count is known.
    Progress(std::string_view label, std::uint64_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();  // erases the line

    // Redraws at most ten times a second.
    void advance(std::uint64_t steps = 1);

  private:
    void draw();

    std::string label_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
    bool visible_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point nextDraw_;
};

}  // namespace tindrel
