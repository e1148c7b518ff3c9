#include <gtest/gtest.h>

#include <random>

#include "ScriptTrial.hpp"

namespace port::script {
namespace {

TEST(ScriptValues, PrintAndConvert) {
    const ScriptCase rows[] = {
        {"say(1234567, 123456, 0.1, 1.0, -0.5, 1e100);", "1.23457e+06 123456 0.1 1 -0.5 1e+100"},
        {"say(\"\" + 1234567, \"\" + true, \"\" + null(), \"\" + array());",
         "'1.23457e+06' '1' '0' '[array]'"},
        {"say(0x1F, 0Xff, 0x, 0xFFFFFFFFFFFFFFFFFF, 1.2.3, .5, 1e, 1e999);",
         "31 255 0 0 1.2 0.5 1 0"},
        {"say(-\"12abc\", -\"abc\", -\" 3\", -\"0x10\", -\"1e999\");", "-12 -0 -3 -16 -0"},
        {"say(+\"12\", -true, ~5, ~null(), !0, !\"\", !\"0\", !null(), !array());",
         "12 -1 -6 -1 true true false true false"},
        {"say(- - 3, !!7, -~0);", "3 true 1"},
        {"say(\"a\" + 1, 1 + \"a\", 1 + 2 + \"a\", \"a\" + 1 + 2);", "'a1' '1a' '3a' 'a12'"},
        {"say(true + true, null() + 1, isempty() + 1);", "2 1 2"},
    };
    expectScripts(rows);
}

TEST(ScriptValues, Compare) {
    const ScriptCase rows[] = {
        {"say(1 == \"1\", 1 == \"1.0\", 1 == 1.0000001, 1 == 1.00001, 1 != 2);",
         "true false true false true"},
        {"say(\"a\" == \"a\", \"a\" == \"A\", \"\" == getlocalvar(\"x\"), 0 == "
         "getlocalvar(\"x\"));",
         "true false true true"},
        {"say(null() == 0, null() == \"0\", true == 1, true == \"1\", 2 == true);",
         "true true true true false"},
        {"mixed a = array(); mixed b = a; say(a == b, a == array(), a == 0, a == \"[array]\");",
         "true false false true"},
        {"say(\"10\" > 9, \"b\" > \"a\", 1 <= 1, 2 < 1, 2 >= \"2\");",
         "true false true false true"},
    };
    expectScripts(rows);
}

TEST(ScriptValues, CombineByLevel) {
    const ScriptCase rows[] = {
        {"say(1 + 2 * 3, (1 + 2) * 3, 10 - 4 - 3, 2 * 3 % 4);", "7 9 3 2"},
        {"say(1 << 2 + 1, 1 | 6 & 3, 5 ^ 1 | 8, 1 < 2 == 1);", "8 3 12 true"},
        {"say(7 / 2, 7 / 0, 7 % 4, 7 % 0, -7 % 4, 7 % -3, 7.9 % 4.9);", "3.5 0 3 0 -3 0 3"},
        {"say(6 & 3, 6 | 1, 6 ^ 3, 1 << 4, -16 >> 2);", "2 7 5 16 -4"},
        {"say(1e30 & 1, 1 << 64, 1 << -1);", "0 1 -9.22337e+18"},  // beyond 64 bits, as the CPU
        {"say(1 || say(2), 0 || 5, 1 && 0, 0 && say(3), 2 && \"x\");",
         "true true false false true"},
        {"say(0 || 0 || say(4) && 0);", "4 false"},
        {"say(1 ? 2 : 3, 0 ? say(2) : 3, (0 ? 1 : 2) + 1, 0 ? 1 : 0 ? 2 : 3, 1 + 1 ? 4 : 5);",
         "2 3 3 3 4"},
        {"say(1 ? \"a\" : 0 ? say(1) : say(2));", "'a'"},
        {"int x = say(1) + say(2) * say(3); say(x);", "1 2 3 7"},
    };
    expectScripts(rows);
}

TEST(ScriptValues, LiveInTheFunctionTheActorOrTheGame) {
    Trial trial;
    // Undeclared variables persist with the actor, declared ones with the call.
    ASSERT_TRUE(trial.body("kept = 1; int own = 2; setglobalvar(\"all\", 3);").ok);
    ASSERT_TRUE(trial.body("say(kept, own, all, getlocalvar(\"kept\"), getlocalvar(\"own\"));").ok);
    EXPECT_EQ(trial.host.said, "1 0 3 1 nil");
    EXPECT_EQ(trial.context.local.size(), 1U);
    ScriptContext other;
    trial.host.said.clear();
    trial.context.local["all"] = 9.0;
    ASSERT_TRUE(trial.body("say(all);").ok);  // the actor's hides the game's
    ASSERT_TRUE(trial.vm.runFile("trial1.c", other).ok);
    EXPECT_EQ(trial.host.said, "9 0 0 3 nil nil");

    const ScriptCase rows[] = {
        // A name counts as declared from when the declaration has run.
        {"x = 1; int i = 0; while (i < 2) { say(x); int x = 5; x++; i++; } say(x, "
         "getlocalvar(\"x\"));",
         "1 6 6 1"},
        {"if (0) int x = 1; x = 2; say(getlocalvar(\"x\"));", "2"},
        {"{ int x = 1; } say(x);", "1"},  // there are no block scopes
        {"say(x); say(isempty(x), isempty(getlocalvar(\"x\")));", "0 false true"},
        {"setlocalvar(\"x\", 4); say(x); x = 5; say(getlocalvar(\"x\")); clearlocalvar(); say(x);",
         "4 5 0"},
        {"say(setlocalvar(\"a\", \"b\"), setglobalvar(1, 2), getglobalvar(\"1\"), clearglobalvar(),"
         "getglobalvar(1));",
         "'b' 2 2 1 nil"},
        {"say(maxglobalvarindex()); setindexedvar(3.7, \"x\"); setglobalvar(\"y\", 1);"
         "say(getindexedvar(3), getglobalvar(\"#3\"), maxglobalvarindex(), clearindexedvar());"
         "say(getindexedvar(3), y);",
         "-1 'x' 'x' 1 1 nil 1"},
    };
    expectScripts(rows);
}

TEST(ScriptValues, RandomNumbersAreSigned32BitAndReplay) {
    Trial trial;
    ASSERT_TRUE(trial.body("int i; for (i = 0; i < 64; i++) setindexedvar(i, rand());").ok);
    std::mt19937 generator(0x0B0B0B);
    bool negative = false;
    for (int i = 0; i < 64; ++i) {
        const double value = num(trial.vm.globals()["#" + std::to_string(i)]);
        EXPECT_EQ(value, static_cast<double>(static_cast<std::int32_t>(generator())));
        negative = negative || value < 0;
    }
    EXPECT_TRUE(negative);
    EXPECT_EQ(trial.vm.random(), generator);
    Trial other;  // begins the same, whatever the first has drawn
    ASSERT_TRUE(other.body("setglobalvar(\"x\", rand());").ok);
    EXPECT_EQ(num(other.vm.globals()["x"]), num(trial.vm.globals()["#0"]));
}

TEST(ScriptValues, ArraysHoldValuesByPlaceAndName) {
    const ScriptCase rows[] = {
        {"mixed a = array(2); say(size(a), get(a, 0), set(a, 0, \"x\"), get(a, 0), get(a, 2),"
         "get(a, -1));",
         "2 nil 'x' 'x' nil nil"},
        {"mixed a = array(); set(a, 3, 1); say(size(a), set(a, -1, 5), size(array(-2)));", "4 0 0"},
        {"mixed a = array(); say(add(a, 0, 1), add(a, 1, 2), add(a, 1, 3), add(a, 4, 9),"
         "add(a, -1, 9)); say(get(a, 0), get(a, 1), get(a, 2));",
         "1 1 1 0 0 1 3 2"},
        {"mixed a = array(3); set(a, 1, 5); say(delete(a, 0), get(a, 0), delete(a, 2), size(a));",
         "1 5 0 2"},
        {"mixed a = array(1); set(a, \"k\", 7); say(size(a), get(a, \"k\"), get(a, \"K\"),"
         "delete(a, \"k\"), delete(a, \"k\"), size(a));",
         "2 7 nil 1 0 1"},
        {"mixed a = array(); mixed b = a; set(b, 0, 4); say(get(a, 0), free(a), get(a, 0));",
         "4 1 4"},
        {"mixed a = array(); set(a, \"z\", 1); set(a, \"y\", 2); set(a, \"z\", 3);"
         "say(key(a), value(a), next(a), key(a), value(a), next(a), key(a));"
         "say(previous(a), key(a), previous(a), key(a), next(a), reset(a), key(a));",
         "'z' 3 1 'y' 2 1 'y' 1 'z' 1 'z' 1 1 'z'"},
        {"mixed a = array(); set(a, \"x\", 1); set(a, \"y\", 2); next(a); delete(a, \"y\");"
         "say(key(a)); delete(a, \"x\"); say(key(a), value(a)); set(a, \"w\", 5); say(key(a));",
         "'x' nil nil 'w'"},
        {"say(get(1, 0), set(\"x\", 0, 1), add(0, 0, 1), delete(x, 0), next(1), previous(1), "
         "reset(1),"
         "key(1), value(x), size(1));",
         "nil nil nil nil nil nil nil nil nil 0"},
        {"say(a[0]);", "", "expected ) near '['"},
    };
    expectScripts(rows);
}

// Letting go of a chain must not be as deep as the chain is long.
TEST(ScriptValues, LongChainsOfArraysAreReleased) {
    Trial trial;
    ASSERT_TRUE(trial
                    .body("mixed a = array(1); int i;"
                          "for (i = 0; i < 99999; i++) { mixed b = array(1); set(b, 0, a); a = b; }"
                          "chain = a; a = 0; b = 0;")
                    .ok);
    EXPECT_EQ(trial.context.local["chain"].index(), 5U);
    trial.context.local.clear();
}

}  // namespace
}  // namespace port::script
