#include "analysis/CommandRegistry.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tindrel {
namespace {

using enum CompatStatus;

TEST(CommandRegistry, EveryKindOfVerdict) {
    struct Case {
        std::string_view word;
        CompatStatus status;
        bool parser, runtime;
        std::string_view impactStart;
    };
    const std::vector<Case> cases = {
        {"frame", kSupported, true, true, "Animation command executed"},
        // The name of a property of models wins over the same word among spawn properties.
        {"health", kSupported, true, true, "Model property applied"},
        {"score", kSupported, true, true, "Spawn properties."},
        {"MAXATTACKS", kIgnoredSafely, true, true, "Legacy fixed-table capacity"},
        {"throw", kPartial, true, false, "Legacy throw model flag"},
        {"2pitem", kPartial, false, false, "Two-player conditional item drop"},
        {"#", kIgnoredSafely, true, true, ""},
        {"comment", kIgnoredSafely, true, true, ""},
        {"@end_script", kSupported, true, true, "Closes the inline script block"},
        {"subject_to_platform", kPartial, true, false, "OpenBOR movement-subject flag"},
        // Stands on two rows, of which the earlier decides.
        {"updatescript", kPartial, true, true, "Hook is invoked by ScriptVM."},
        {"script", kPartial, true, true, "Legacy/update entity script"},
    };
    for (const Case& expected : cases) {
        const CommandRule rule = lookupCommand(expected.word);
        EXPECT_EQ(rule.status, expected.status) << expected.word;
        EXPECT_EQ(rule.parserSupported, expected.parser) << expected.word;
        EXPECT_EQ(rule.runtimeSupported, expected.runtime) << expected.word;
        EXPECT_EQ(rule.impact.substr(0, expected.impactStart.size()), expected.impactStart)
            << expected.word;
    }
    EXPECT_TRUE(lookupCommand("#").impact.empty());
    EXPECT_EQ(compatStatusName(static_cast<CompatStatus>(9)), "UNKNOWN");
}

TEST(CommandRegistry, NumberedWords) {
    EXPECT_TRUE(lookupCommand("attack3").impact.starts_with("Per-frame hit/attack data."));
    for (const char* word : {"attack4", "Attack12", "attack0000000000000000000000000000000001"}) {
        EXPECT_TRUE(lookupCommand(word).impact.starts_with("Numbered attack")) << word;
    }
    for (const char* word : {"map0", "MAP77"}) {
        EXPECT_TRUE(lookupCommand(word).impact.starts_with("Legacy spawn palette")) << word;
    }
    EXPECT_EQ(lookupCommand("map").impact, "Spawn properties.");
    for (const char* word : {"attack1x", "attack-1", "attackx", "map1x", "mapp", "attack4.0"}) {
        EXPECT_EQ(lookupCommand(word).status, kUnknown) << word;
    }
}

TEST(CommandRegistry, WordsThatNoRowLists) {
    for (const std::string& word :
         {std::string("myspecialSCRIPT"), std::string("scripted"), std::string("attack1script"),
          std::string(400, 'x') + "script"}) {
        const CommandRule rule = lookupCommand(word);
        EXPECT_EQ(rule.status, kPartial) << word;
        EXPECT_TRUE(rule.parserSupported) << word;
        EXPECT_FALSE(rule.runtimeSupported) << word;
    }
    for (const std::string& word : {std::string(), std::string("frames"), std::string(400, 'x'),
                                    std::string("frame\0", 6), std::string("frame delay")}) {
        const CommandRule rule = lookupCommand(word);
        EXPECT_EQ(rule.status, kUnknown) << word;
        EXPECT_FALSE(rule.parserSupported) << word;
        EXPECT_EQ(rule.impact,
                  "Command is not in the central registry. It is logged and does not abort "
                  "conversion.")
            << word;
    }
}

TEST(CommandRegistry, MisspeltWords) {
    EXPECT_EQ(closestCommand("cradits"), "credits");
    EXPECT_EQ(closestCommand("dealy"), "delay");  // neighbours swapped
    EXPECT_EQ(closestCommand("backgruond"), "background");
    EXPECT_EQ(closestCommand("projectilhits"), "projectilehit");
    EXPECT_EQ(closestCommand("frmae"), "frame");
    for (const char* word : {"", "fr", "xyzzy", "wobble", "fraamee", "p4smenu", "noslowfx"}) {
        EXPECT_EQ(closestCommand(word), "") << word;
    }
    EXPECT_EQ(closestCommand(std::string(100000, 'x')), "");
}

}  // namespace
}  // namespace tindrel
