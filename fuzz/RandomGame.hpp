#pragma once

// A small game made of a few bytes, as a hostile author might write it: most of it makes sense, so
// that there is a fight, and any number or name may be absurd.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Dice.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"

namespace tindrel::fuzz {

// The bytes that choose; zeros when they are used up.
class Choices {
  public:
    explicit Choices(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    unsigned next() {
        if (rest_.empty()) return 0;
        const unsigned byte = rest_.front();
        rest_ = rest_.subspan(1);
        return byte;
    }
    // Of a record that three of the bytes describe.
    Dice dice() {
        const unsigned oddness = next();
        const unsigned low = next();
        return {low | next() << 8U, oddness};
    }
    [[nodiscard]] std::span<const std::uint8_t> rest() const { return rest_; }

  private:
    std::span<const std::uint8_t> rest_;
};

class RandomGame {
  public:
    // Fills the runtime's tables, which hold this game as long as it lives.
    explicit RandomGame(Choices& choices);
    RandomGame(const RandomGame&) = delete;
    RandomGame& operator=(const RandomGame&) = delete;

    // Every name that a game of this kind may use, and some that it may not.
    [[nodiscard]] static std::span<const char* const> scriptNames();

  private:
    // `count` rows of their own memory, so that a step beyond them is seen.
    template <class Row, class Make>
    const Row* rows(std::size_t count, Make make) {
        const std::shared_ptr<Row[]> made(new Row[count]());
        for (std::size_t i = 0; i < count; ++i) made[i] = make(i);
        kept_.push_back(made);
        return made.get();
    }

    generated::Character model(Dice dice, std::size_t index);
    generated::Animation animation(Dice& dice, const char* name);
    generated::Stage stage(Dice dice, std::size_t index);

    std::size_t models_ = 0;
    std::vector<std::shared_ptr<const void>> kept_;
};

}  // namespace tindrel::fuzz
