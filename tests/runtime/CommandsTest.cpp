// The reading and matching of command strings.

#include "Commands.hpp"

#include <gtest/gtest.h>

#include <random>

#include "AnimationLookup.hpp"

namespace port {
namespace {

using Entries = std::vector<InputHistoryEntry>;

// One letter a tick and key: "a" is pressed in that tick and let go in the next one unless it
// stands there again. "." is a tick without keys.
Entries typed(std::initializer_list<std::string_view> ticks) {
    Entries history;
    unsigned before = 0;
    for (const std::string_view keys : ticks) {
        unsigned held = 0;
        for (const char key : keys) held |= commandBit(std::string_view(&key, 1), 1);
        history.push_back({held, held & ~before, before & ~held});
        before = held;
    }
    return history;
}

Entries heldFor(int ticks, bool released) {
    Entries history(static_cast<std::size_t>(ticks), {SK_ATTACK, 0, 0});
    history.front().newKeys = SK_ATTACK;
    if (released) history.push_back({0, 0, SK_ATTACK});
    return history;
}

// The matcher again, step by step and without a shortcut.
struct Referee {
    const Entries& h;

    [[nodiscard]] const InputHistoryEntry& at(int pos) const {
        return h[static_cast<std::size_t>(pos)];
    }
    [[nodiscard]] int duration(int pos, unsigned bit) const {
        int start = pos;
        if ((at(pos).held & bit) == 0) {
            if ((at(pos).released & bit) == 0) return 0;
            start = pos - 1;
        }
        int count = 0;
        for (int i = start; i >= 0 && (at(i).held & bit) != 0; --i) ++count;
        return count;
    }
    [[nodiscard]] bool rose(int pos, int ticks, unsigned bit) const {
        for (int back = 0; back <= ticks; ++back) {
            if (pos - back >= 0 && (at(pos - back).newKeys & bit) != 0) return true;
        }
        return false;
    }
    [[nodiscard]] bool step(int pos, const ParsedCommandStep& s) const {
        for (unsigned bit = 1; bit <= SK_ATTACK4; bit <<= 1U) {
            const int ticks = duration(pos, bit);
            if ((s.release & bit) != 0 && (at(pos).released & bit) == 0) return false;
            if ((s.holdTrigger & bit) != 0 && (at(pos).held & bit) == 0) return false;
            if ((s.holdTrigger & bit) != 0 && ticks != std::max(1, s.holdMin)) return false;
            if ((s.press & bit) != 0 && s.chordTime <= 0 && (at(pos).newKeys & bit) == 0) {
                return false;
            }
            if ((s.press & bit) != 0 && s.chordTime > 0) {
                if ((at(pos).held & bit) == 0 || !rose(pos, s.chordTime, bit)) return false;
            }
            if (((s.hold | s.release) & bit) != 0) {
                if (ticks < s.holdMin || (s.holdMax > 0 && ticks > s.holdMax)) return false;
            }
        }
        return s.press != 0 || s.release != 0 || s.holdTrigger != 0;
    }
    // The score, -1 for no match.
    [[nodiscard]] int match(const ParsedCommand& command) const {
        if (h.empty() || command.steps.empty()) return -1;
        int pos = static_cast<int>(h.size()) - 1;
        int newest = -1;
        int previous = -1;
        for (auto s = command.steps.rbegin(); s != command.steps.rend(); ++s) {
            for (;; --pos) {
                if (pos < 0) return -1;
                if (previous >= 0 && previous - pos > command.sequenceGrace) return -1;
                if (step(pos, *s)) break;
            }
            if (newest < 0) newest = pos;
            previous = pos;
            --pos;
        }
        if (newest != static_cast<int>(h.size()) - 1) return -1;
        return static_cast<int>(command.steps.size()) * 100 + command.specificity;
    }
};

TEST(Commands, MatchAsTheRefereeSays) {
    std::mt19937 random(20);
    const auto below = [&random](unsigned end) { return random() % end; };
    const std::string_view keys[] = {"a", "j", "d", "f", "b"};
    const std::string_view joins[] = {" ", " ", " -> ", ", ", " + ", " +[3] ", " + "};
    const auto randomCommand = [&] {
        std::string text;
        for (unsigned left = 1 + below(3); left > 0; --left) {
            const bool release = below(5) == 0;
            text += std::string(release ? "~" : "") + std::string(keys[below(5)]);
            if (below(8) == 0) text += '*';
            if (below(4) == 0) text += '[' + std::to_string(below(4)) + ']';
            if (text.back() == ']' && below(3) == 0) text += '[' + std::to_string(below(5)) + ']';
            if (left > 1) text += joins[below(7)];
        }
        return below(3) == 0 ? text + ":[" + std::to_string(below(6)) + "]" : text;
    };
    const unsigned used = SK_ATTACK | SK_JUMP | SK_DOWN | SK_LEFT | SK_RIGHT;
    int matches = 0;
    for (int run = 0; run < 4000; ++run) {
        Entries history;
        unsigned held = 0;
        for (unsigned length = below(16); length > 0; --length) {
            const unsigned before = held;
            // A key or two change at a time.
            for (int change = 0; change < 2; ++change) held ^= (1U << below(6)) & used;
            history.push_back({held, held & ~before, before & ~held});
        }
        for (int i = 0; i < 8; ++i) {
            const std::string command = randomCommand();
            const int facing = below(2) == 0 ? 1 : -1;
            const int wanted = Referee{history}.match(parseOpenBorCommand(command, facing));
            int score = -1;
            const bool matched = matchOpenBorCommand(history, command, facing, &score);
            ASSERT_EQ(matched ? score : -1, wanted) << "run " << run << ": " << command;
            matches += matched ? 1 : 0;
        }
    }
    EXPECT_GT(matches, 500) << "the trial hardly matches anything";
}

TEST(Commands, AreReadTokenByToken) {
    const auto parse = [](const char* text, int facing = 1) {
        return parseOpenBorCommand(text, facing);
    };
    EXPECT_TRUE(parse("a+j").steps.empty()) << "one unknown token";
    EXPECT_EQ(parse("a + j").steps, std::vector<ParsedCommandStep>{{.press = SK_ATTACK | SK_JUMP}});
    EXPECT_EQ(parse("a +[3] j").steps,
              (std::vector<ParsedCommandStep>{{.press = SK_ATTACK | SK_JUMP, .chordTime = 3}}));
    EXPECT_EQ(parse("F->F,A", -1).steps,
              (std::vector<ParsedCommandStep>{
                  {.press = SK_LEFT}, {.press = SK_LEFT}, {.press = SK_ATTACK}}));
    EXPECT_EQ(parse("b + k", -1).steps,
              std::vector<ParsedCommandStep>{{.press = SK_RIGHT | SK_SPECIAL}});

    const ParsedCommand charge = parse("~a[10][40] + d*[5] + moveup");
    EXPECT_EQ(charge.steps, (std::vector<ParsedCommandStep>{{.press = SK_UP,
                                                             .holdTrigger = SK_DOWN,
                                                             .release = SK_ATTACK,
                                                             .holdMin = 10,
                                                             .holdMax = 40}}));
    EXPECT_EQ(charge.specificity, 7);
    EXPECT_EQ(parse("d f a:[10]").sequenceGrace, 10);
    EXPECT_EQ(parse("d:[3] f:[0] a").sequenceGrace, 1) << "the last one, at least 1";
    EXPECT_EQ(parse("d:[x] a").sequenceGrace, 50);
    EXPECT_EQ(parse("a:[7").steps.size(), 0U) << "an open bracket leaves an unknown key";
    EXPECT_EQ(parse("a nonsense + j").steps,
              (std::vector<ParsedCommandStep>{{.press = SK_ATTACK}, {.press = SK_JUMP}}));
    EXPECT_EQ(bracketNumber("a[-5]", 0, 9), 0);
    EXPECT_EQ(bracketNumber("a[99999999999]", 0, 9), 9);
    EXPECT_EQ(scriptKeyBit("AnyButton"),
              SK_ATTACK | SK_ATTACK2 | SK_ATTACK3 | SK_ATTACK4 | SK_JUMP | SK_SPECIAL);
    EXPECT_EQ(scriptKeyBit("a"), 0U) << "a short name of commands only";
}

TEST(Commands, FireOnTheTickOfTheirLastStepOnly) {
    const auto fires = [](const Entries& history, const char* command, int facing = 1) {
        return matchOpenBorCommand(history, command, facing);
    };
    EXPECT_TRUE(fires(typed({"l", ".", "l", "a"}), "F F A", -1));
    EXPECT_FALSE(fires(typed({"l", ".", "l", "a"}), "F F A", 1)) << "read anew for each side";
    EXPECT_FALSE(fires(typed({"l", "l", "a"}), "F F A", -1)) << "held is not pressed again";
    EXPECT_FALSE(fires(typed({"d", "a", "."}), "d a")) << "a tick too late";
    EXPECT_TRUE(fires(typed({"a", "a", "a", "aj"}), "a +[3] j"));
    EXPECT_FALSE(fires(typed({"a", "a", "a", "a", "aj"}), "a +[3] j"));
    EXPECT_FALSE(fires(typed({"a", "aj"}), "a + j"));

    EXPECT_FALSE(fires(heldFor(10, false), "a[10]")) << "holding alone is nothing that happens";
    EXPECT_TRUE(fires(heldFor(10, true), "~a[10]"));
    EXPECT_FALSE(fires(heldFor(9, true), "~a[10]"));
    EXPECT_FALSE(fires(heldFor(9, false), "a*[10]"));
    EXPECT_TRUE(fires(heldFor(10, false), "a*[10]"));
    EXPECT_FALSE(fires(heldFor(11, false), "a*[10]")) << "one precise tick";

    Entries far = typed({"d"});
    far.resize(50);
    far.push_back({SK_ATTACK, SK_ATTACK, 0});
    EXPECT_TRUE(fires(far, "d a"));
    far.insert(far.begin() + 1, InputHistoryEntry{});
    EXPECT_FALSE(fires(far, "d a")) << "51 ticks apart";
}

TEST(Commands, ThatNoHistoryHoldsNeverFire) {
    const auto presses = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) text += "a:[1] ";
        return text;
    };
    const Entries full(PlayerSlot::kLongestHistory, {SK_ATTACK, SK_ATTACK, 0});
    EXPECT_TRUE(matchOpenBorCommand(full, presses(128), 1));
    EXPECT_FALSE(matchOpenBorCommand(full, presses(20'000), 1));
    EXPECT_EQ(parseOpenBorCommand(presses(20'000), 1).steps.size(), 129U);
}

TEST(Commands, TheHigherScoreWinsAndOfEqualsTheLater) {
    generated::Character model = *findCharacter("hero");
    generated::Animation animations[4] = {};
    const char* names[] = {"idle", "freespecial2", "big", "late"};
    for (int i = 0; i < 4; ++i) animations[i].name = names[i];
    model.animations = animations;
    model.animationCount = 4;
    const generated::Command commands[] = {{"d f a", "big"}, {"f a", "late"}, {"a", ""},
                                           {"j", "big"},     {"j", "2"},      {"b", "unknown"}};
    model.commands = commands;
    model.commandCount = 6;
    const auto target = [&](const Entries& history) -> std::string {
        const auto* found = commandTarget(&model, history, 1);
        return found ? found->name : "none";
    };
    EXPECT_EQ(target(typed({"d", "r", "a"})), "big");
    EXPECT_EQ(target(typed({"r", "a"})), "late");
    EXPECT_EQ(target(typed({"a"})), "none");
    EXPECT_EQ(target(typed({"j"})), "freespecial2");
    EXPECT_EQ(target(typed({"l"})), "idle") << "the first for a name that is not there";
    EXPECT_EQ(commandTarget(nullptr, typed({"j"}), 1), nullptr);

    const generated::Cancel cancels[] = {{1, 2, 1, "a", "big"}, {2, 3, 0, "a", "late"}};
    animations[0].cancels = cancels;
    animations[0].cancelCount = 2;
    const auto cancelled = [&](std::size_t frame, int hits) -> std::string {
        const auto* found = cancelTarget(&model, &animations[0], frame, hits, typed({"a"}), 1);
        return found ? found->name : "none";
    };
    EXPECT_EQ(cancelled(0, 5), "none");
    EXPECT_EQ(cancelled(1, 0), "none");
    EXPECT_EQ(cancelled(2, 1), "big");
    EXPECT_EQ(cancelled(2, 0), "late");
    EXPECT_EQ(cancelled(3, 1), "late");
}

}  // namespace
}  // namespace port
