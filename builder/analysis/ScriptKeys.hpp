#pragma once

// The keys, by which scripts ask a port for properties, variants and constants, that it does not
// answer.

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace tindrel {

struct UnansweredKey {
    std::string function;  // lower case
    std::string key;       // lower case
    std::uint64_t places = 0;
    std::string file;  // of the first of them, relative to the project root
    std::uint64_t line = 0;
};

// A game that is taken to the letter is answered less.
class ScriptKeys {
  public:
    explicit ScriptKeys(bool asWritten) : asWritten_(asWritten) {}

    // Whether a port answers a text that stands as argument `index` of `count` of a call; also true
    // where it is no key.
    [[nodiscard]] bool answers(std::string_view function, std::string_view text, std::size_t index,
                               std::size_t count) const;
    // One that it does not. A place counts once, however many scripts include it.
    void note(std::string_view function, std::string_view text, const std::string& file,
              std::uint64_t line);
    // The most frequent first.
    [[nodiscard]] std::vector<UnansweredKey> unanswered() const;

  private:
    bool asWritten_;
    std::set<std::tuple<std::string, std::uint64_t, std::string, std::string>> places_;
    std::map<std::pair<std::string, std::string>, UnansweredKey> keys_;
};

}  // namespace tindrel
