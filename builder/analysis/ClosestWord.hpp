#pragma once

// Which known word somebody meant who wrote an unknown one.

#include <cstddef>
#include <string_view>

namespace tindrel {

class ClosestWord {
  public:
    explicit ClosestWord(std::string_view written);

    void offer(std::string_view known);
    // The nearest of those offered, the first where two are equally near; empty where none is
    // near enough to be meant.
    [[nodiscard]] std::string_view found() const { return found_; }

  private:
    std::string_view written_;
    std::size_t slips_ = 0;  // that make a word too far
    std::string_view found_;
};

}  // namespace tindrel
