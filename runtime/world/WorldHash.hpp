#pragma once

// A number that two runs share if their worlds are the same: FNV-1a of 64 bits over values in a
// fixed order, whatever the machine's byte order.

#include <bit>
#include <concepts>
#include <cstdint>
#include <string_view>

namespace port {

class WorldHash {
  public:
    template <class... Values>
    void add(const Values&... values) {
        (addOne(values), ...);
    }
    [[nodiscard]] std::uint64_t value() const { return hash_; }

  private:
    static constexpr std::uint64_t kOffset = 0xCBF29CE484222325U;
    static constexpr std::uint64_t kPrime = 0x100000001B3U;

    void addByte(std::uint8_t byte) { hash_ = (hash_ ^ byte) * kPrime; }
    void addOne(std::integral auto number) {
        auto bits = static_cast<std::uint64_t>(number);
        for (int i = 0; i < 8; ++i, bits >>= 8U) addByte(static_cast<std::uint8_t>(bits));
    }
    void addOne(double number) { addOne(std::bit_cast<std::uint64_t>(number)); }
    void addOne(float number) { addOne(std::bit_cast<std::uint32_t>(number)); }
    void addOne(std::string_view text) {
        addOne(text.size());
        for (const char c : text) addByte(static_cast<std::uint8_t>(c));
    }
    void addOne(const char* text) { addOne(std::string_view(text)); }

    std::uint64_t hash_ = kOffset;
};

}  // namespace port
