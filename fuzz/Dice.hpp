#pragma once

// Chance that is the same on every machine, and the values that it gives to the fields of a table.

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

#include "Fields.hpp"

namespace tindrel::fuzz {

class Dice {
  public:
    // Of 256 values about `oddness` squared over 2,048 are absurd: one in eight at the most, as a
    // game of nothing else never comes to a fight.
    Dice(std::uint32_t seed, unsigned oddness)
        : state_(seed * 0x9E3779B97F4A7C15U + 1), oddness_(oddness * oddness) {}

    // 0 to sides - 1.
    std::uint32_t roll(std::uint32_t sides) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state_ >> 33U) % sides;
    }
    bool once(std::uint32_t in) { return roll(in) == 0; }
    template <class Value>
    Value pick(std::span<const Value> of) {
        return of[roll(static_cast<std::uint32_t>(of.size()))];
    }
    template <class Value, std::size_t Size>
    Value pick(const Value (&of)[Size]) {
        return pick(std::span<const Value>(of));
    }
    bool odd() { return roll(1U << 19U) < oddness_; }

    // Within the range, unless it is absurd.
    int number(int low, int high);
    float fraction(float low, float high);
    const char* word();

    // A value for a field of that type; records are filled field by field, pointers stay null.
    template <class Value>
    Value value() {
        if constexpr (std::is_same_v<Value, bool>) {
            return once(4);
        } else if constexpr (std::is_same_v<Value, int>) {
            return once(3) ? number(-2, 12) : number(0, 0);
        } else if constexpr (std::is_same_v<Value, float>) {
            return once(3) ? fraction(-2, 12) : fraction(0, 0);
        } else if constexpr (std::is_same_v<Value, const char*>) {
            return odd() ? word() : "";
        } else if constexpr (std::is_class_v<Value>) {
            return record<Value>(std::make_index_sequence<port::fields::count<Value>()>());
        } else {
            return Value{};
        }
    }

  private:
    struct Anything {
        Dice& dice;
        template <class Value>
        operator Value() const {  // NOLINT(google-explicit-constructor)
            return dice.value<Value>();
        }
    };
    template <class Record, std::size_t... Each>
    Record record(std::index_sequence<Each...>) {
        return Record{(static_cast<void>(Each), Anything{*this})...};
    }

    std::uint64_t state_;
    std::uint32_t oddness_;
};

}  // namespace tindrel::fuzz
