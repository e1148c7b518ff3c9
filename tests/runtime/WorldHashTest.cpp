#include "WorldHash.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

namespace port {
namespace {

template <class... Values>
std::uint64_t hashOf(const Values&... values) {
    WorldHash hash;
    hash.add(values...);
    return hash.value();
}

// The numbers come from FNV-1a elsewhere, over the bytes with the lowest first: runs of other
// machines and days must agree with them.
TEST(WorldHash, IsTheSameOnEveryMachine) {
    EXPECT_EQ(hashOf(), 0xCBF29CE484222325U);
    EXPECT_EQ(hashOf(std::uint64_t{0x0807060504030201}), 0x7EB5108B368A78EDU);
    EXPECT_EQ(hashOf(-1), 0x8CF51A8BFCA3883DU);
    EXPECT_EQ(hashOf(1.0F), 0x97A29EE2DA29518U);
    EXPECT_EQ(hashOf(1.0), 0xAAB1693229BA1DB8U);
    EXPECT_EQ(hashOf("ab"), 0x9C6001D328A94690U);
    EXPECT_EQ(hashOf("walk", 3, -1.5), 0xA3F4A836F72AB0E6U);
    EXPECT_EQ(hashOf(std::string_view("walk"), std::int64_t{3}, -1.5), hashOf("walk", 3, -1.5));
}

}  // namespace
}  // namespace port
