#pragma once

// The players' keys as bits, and the command strings of models that sequences of them fulfil.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "World.hpp"

namespace port {

// As scripts know them.
enum ScriptKeyBits : unsigned {
    SK_LEFT = 1U << 0U,
    SK_RIGHT = 1U << 1U,
    SK_UP = 1U << 2U,
    SK_DOWN = 1U << 3U,
    SK_ATTACK = 1U << 4U,
    SK_JUMP = 1U << 5U,
    SK_SPECIAL = 1U << 6U,  // the dash button
    SK_START = 1U << 7U,
    SK_ESC = 1U << 8U,
    SK_ATTACK2 = 1U << 9U,   // the grab button
    SK_ATTACK3 = 1U << 10U,  // the throw button
    SK_ATTACK4 = 1U << 11U   // the pickup button
};

// The bits of a key by the name that scripts have for it, without regard to case; 0 for none.
[[nodiscard]] unsigned scriptKeyBit(std::string_view name);
// The same with the short names of commands; "f" is ahead and "b" behind for that facing.
[[nodiscard]] unsigned commandBit(std::string_view token, int facing);
// The number in the first brackets at or after `from`, 0 or more; `fallback` for none.
[[nodiscard]] int bracketNumber(std::string_view text, std::size_t from, int fallback = 0);

// What must happen in one tick.
struct ParsedCommandStep {
    unsigned press = 0;            // rise
    unsigned hold = 0;             // are held, beside something that happens
    unsigned holdTrigger = 0;      // have just been held for `holdMin` ticks
    unsigned release = 0;          // fall
    int holdMin = 0, holdMax = 0;  // ticks for `hold` and `release`; holdMax 0: no limit
    int chordTime = 0;             // ticks within which all of `press` must have risen; 0: in one
    bool operator==(const ParsedCommandStep&) const = default;
};

struct ParsedCommand {
    std::vector<ParsedCommandStep> steps;
    int sequenceGrace = 50;  // ticks between neighbouring steps
    int specificity = 0;     // how much it asks for
    bool operator==(const ParsedCommand&) const = default;
};

// Tokens that no key has for its name are passed over. Of a command that is too long for any
// history only a part is kept that is so too.
[[nodiscard]] ParsedCommand parseOpenBorCommand(std::string_view raw, int facing);

using InputHistory = std::span<const InputHistoryEntry>;

// Ticks that the bit has been held up to entry `pos`, or up to the one before if it falls there.
[[nodiscard]] int heldDuration(InputHistory history, int pos, unsigned bit);
[[nodiscard]] bool commandStepMatches(InputHistory history, int pos, const ParsedCommandStep& step);

// Whether the newest entry completes the command. The score tells how much that takes.
[[nodiscard]] bool matchOpenBorCommand(InputHistory history, std::string_view raw, int facing,
                                       int* score = nullptr);

// The animation of the model's command of the highest score that fires now, the later of equals;
// null for none.
[[nodiscard]] const generated::Animation* commandTarget(const generated::Character* model,
                                                        InputHistory history, int facing);
// The same of the first cancel of the running animation; `hits` are those of the running attack.
[[nodiscard]] const generated::Animation* cancelTarget(const generated::Character* model,
                                                       const generated::Animation* animation,
                                                       std::size_t frame, int hits,
                                                       InputHistory history, int facing);

}  // namespace port
