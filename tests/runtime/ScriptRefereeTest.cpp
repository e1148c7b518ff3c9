#include "ScriptReferee.hpp"

#include <gtest/gtest.h>

#include <random>

#include "ScriptProgramMaker.hpp"

namespace port::script {
namespace {

void agree(const std::string& text, int& decided) {
    SCOPED_TRACE(text);
    ScriptVM vm;
    referee::Witness host;
    vm.setRoot("/nonexistent");
    vm.setHost(&host);
    const Outcome machine = byMachine(vm, host, text);
    const Outcome referee = byReferee(text);
    if (!machine.decided || !referee.decided) return;
    ++decided;
    EXPECT_EQ(machine.error, referee.error);
    EXPECT_EQ(machine.story, referee.story);
}

TEST(ScriptReferee, AgreesWithTheMachineOnMadePrograms) {
    std::mt19937 choices(1);
    int decided = 0;
    for (int i = 0; i < 200 && !HasFailure(); ++i) agree(madeProgram(std::ref(choices)), decided);
    EXPECT_GT(decided, 150);
}

// Texts with holes and swaps: faults must show at the same places.
TEST(ScriptReferee, AgreesWithTheMachineOnBrokenPrograms) {
    std::mt19937 choices(2);
    int decided = 0;
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        std::string text = madeProgram(std::ref(choices));
        for (int holes = 0; holes < 2 && !text.empty(); ++holes) {
            const std::size_t at = choices() % text.size();
            text.erase(at, choices() % 3);
            if (choices() % 2) text.insert(at, 1, "(){};:?,=+\"5a"[choices() % 13]);
        }
        agree(text, decided);
    }
    EXPECT_GT(decided, 150);
}

}  // namespace
}  // namespace port::script
