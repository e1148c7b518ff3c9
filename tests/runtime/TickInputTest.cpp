#include "TickInput.hpp"

#include <gtest/gtest.h>

namespace port {
namespace {

HeldInput holding(std::initializer_list<int> keys, unsigned buttons = 0, int pad = 0) {
    HeldInput held;
    for (const int key : keys) held.keys.set(static_cast<std::size_t>(key));
    held.pads[static_cast<std::size_t>(pad)] = {true, static_cast<std::uint16_t>(buttons), 0, 0, 0};
    return held;
}

TEST(TickInput, APressIsSeenByAllWhoAskInItsPassAndByNobodyInTheNext) {
    TickInput input = nextInput({}, holding({65}));
    EXPECT_TRUE(input.keyPressed(65));
    EXPECT_TRUE(input.keyPressed(65)) << "whoever asks second has it too";
    EXPECT_FALSE(input.keyPressed(66));
    EXPECT_FALSE(input.keyPressed(256));
    EXPECT_FALSE(input.keyPressed(-1));
    input = nextInput(input, holding({65, 66}));
    EXPECT_FALSE(input.keyPressed(65)) << "still held";
    EXPECT_TRUE(input.keyPressed(66));
    EXPECT_FALSE(input.withoutPresses().keyPressed(66));
    input = nextInput(input.withoutPresses(), holding({65, 66}));
    EXPECT_FALSE(input.keyPressed(66)) << "a press that was passed over does not come again";
    input = nextInput(nextInput(input, {}), holding({65}));
    EXPECT_TRUE(input.keyPressed(65)) << "after its release";
}

TEST(TickInput, PadsAreToldApart) {
    TickInput input = nextInput({}, holding({}, kPadA | kPadStart, 3));
    EXPECT_TRUE(input.buttonPressed(3, kPadA));
    EXPECT_TRUE(input.buttonPressed(3, kPadB | kPadStart)) << "any of them";
    EXPECT_TRUE(input.buttonPressed(9, kPadA)) << "beyond the last pad is the last";
    EXPECT_FALSE(input.buttonPressed(3, kPadB));
    EXPECT_FALSE(input.buttonPressed(0, kPadA));
    input = nextInput(input, holding({}, kPadA | kPadB, 3));
    EXPECT_FALSE(input.buttonPressed(3, kPadA));
    EXPECT_TRUE(input.buttonPressed(3, kPadB));
}

}  // namespace
}  // namespace port
