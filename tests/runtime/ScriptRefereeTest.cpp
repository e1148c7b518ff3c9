#include "ScriptReferee.hpp"

#include <gtest/gtest.h>

#include <random>

#include "ScriptProgramMaker.hpp"

namespace port::script {
namespace {

void agree(const std::string& text, bool asWritten, int& decided) {
    SCOPED_TRACE((asWritten ? "as written: " : "mended: ") + text);
    ScriptVM vm;
    referee::Witness host;
    vm.setRoot("/nonexistent", asWritten);
    vm.setHost(&host);
    const Outcome machine = byMachine(vm, host, text);
    const Outcome referee = byReferee(text, asWritten);
    if (!machine.decided || !referee.decided) return;
    ++decided;
    EXPECT_EQ(machine.error, referee.error);
    EXPECT_EQ(machine.story, referee.story);
}

// Every second program has mends in it, which end it early where it is taken as written.
TEST(ScriptReferee, AgreesWithTheMachineOnMadePrograms) {
    std::mt19937 choices(1);
    int decided = 0;
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
        const std::string text = madeProgram(std::ref(choices), i % 2 == 1);
        agree(text, false, decided);
        if (i % 4 == 0) agree(text, true, decided);
    }
    EXPECT_GT(decided, 375);
}

// Texts with holes and swaps: faults must show at the same places.
TEST(ScriptReferee, AgreesWithTheMachineOnBrokenPrograms) {
    std::mt19937 choices(2);
    int decided = 0;
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        std::string text = madeProgram(std::ref(choices), i % 2 == 1);
        for (int holes = 0; holes < 2 && !text.empty(); ++holes) {
            const std::size_t at = choices() % text.size();
            text.erase(at, choices() % 3);
            if (choices() % 2) text.insert(at, 1, "(){};:?,=+\"5a"[choices() % 13]);
        }
        agree(text, choices() % 2 == 0, decided);
    }
    EXPECT_GT(decided, 150);
}

}  // namespace
}  // namespace port::script
