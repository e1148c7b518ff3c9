#include "Commands.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <unordered_map>
#include <utility>

#include "AnimationLookup.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kScorePerStep = 100;
constexpr unsigned kAnyButton =
    SK_ATTACK | SK_ATTACK2 | SK_ATTACK3 | SK_ATTACK4 | SK_JUMP | SK_SPECIAL;

struct KeyName {
    std::string_view name;
    unsigned bits;
};

constexpr KeyName kScriptNames[] = {
    {"moveleft", SK_LEFT},     {"left", SK_LEFT},       {"moveright", SK_RIGHT},
    {"right", SK_RIGHT},       {"moveup", SK_UP},       {"up", SK_UP},
    {"movedown", SK_DOWN},     {"down", SK_DOWN},       {"attack", SK_ATTACK},
    {"attack1", SK_ATTACK},    {"attack2", SK_ATTACK2}, {"attack3", SK_ATTACK3},
    {"attack4", SK_ATTACK4},   {"jump", SK_JUMP},       {"special", SK_SPECIAL},
    {"start", SK_START},       {"esc", SK_ESC},         {"escape", SK_ESC},
    {"anybutton", kAnyButton},
};

constexpr KeyName kCommandNames[] = {
    {"a", SK_ATTACK}, {"a2", SK_ATTACK2}, {"a3", SK_ATTACK3}, {"a4", SK_ATTACK4},
    {"j", SK_JUMP},   {"s", SK_SPECIAL},  {"k", SK_SPECIAL},  {"u", SK_UP},
    {"d", SK_DOWN},   {"l", SK_LEFT},     {"r", SK_RIGHT},
};

unsigned bitsOf(std::span<const KeyName> names, std::string_view name) {
    for (const KeyName& key : names) {
        if (equalsFolded(key.name, name)) return key.bits;
    }
    return 0;
}

bool isEmpty(const ParsedCommandStep& step) {
    return (step.press | step.hold | step.holdTrigger | step.release) == 0;
}

// The text without the times ":[n]" between its steps; the last one holds.
std::string takeSequenceGrace(std::string_view raw, int& grace) {
    std::string text;
    for (;;) {
        const std::size_t open = raw.find(":[");
        const std::size_t close = open == raw.npos ? open : raw.find(']', open);
        if (close == raw.npos) return text.append(raw);
        const auto ticks = leadingInt(raw.substr(open + 2, close - open - 2));
        if (ticks) grace = std::max(1, *ticks);
        text.append(raw.substr(0, open)).push_back(' ');
        raw.remove_prefix(close + 1);
    }
}

// Collects the steps of a command from its tokens.
class StepReader {
  public:
    StepReader(ParsedCommand& command, int facing) : command_(command), facing_(facing) {}

    void read(std::string_view token) {
        if (token == "|") {
            flush();
            joins_ = false;
        } else if (token == "+") {
            joins_ = true;
        } else if (token.starts_with("+[")) {
            step_.chordTime = bracketNumber(token, 1);
            joins_ = true;
        } else {
            if (!joins_ && !isEmpty(step_)) flush();
            joins_ = false;
            addKey(token);
        }
    }
    // One step more than the history has ticks is enough: such a command never fires.
    void flush() {
        const bool room = command_.steps.size() <= PlayerSlot::kLongestHistory;
        if (room && !isEmpty(step_)) command_.steps.push_back(step_);
        step_ = {};
    }

  private:
    void addKey(std::string_view token) {
        const bool release = token.starts_with('~');
        if (release) token.remove_prefix(1);
        std::string key(token);
        const bool trigger = std::erase(key, '*') > 0;
        const std::size_t bracket = key.find('[');
        const bool timed = bracket != key.npos;
        const unsigned bit = commandBit(std::string_view(key).substr(0, bracket), facing_);
        if (bit == 0) return;
        unsigned& bits = release   ? step_.release
                         : trigger ? step_.holdTrigger
                         : timed   ? step_.hold
                                   : step_.press;
        bits |= bit;
        if (timed) limitHold(key, bracket);
        command_.specificity += 1 + (timed ? 1 : 0) + (release || trigger ? 1 : 0);
    }
    // "[least]" or "[least][most]".
    void limitHold(std::string_view key, std::size_t bracket) {
        step_.holdMin = std::max(step_.holdMin, bracketNumber(key, bracket));
        const std::size_t close = key.find(']');
        const int most = close == key.npos ? 0 : bracketNumber(key, close + 1);
        if (most <= 0) return;
        step_.holdMax = step_.holdMax == 0 ? most : std::min(step_.holdMax, most);
    }

    ParsedCommand& command_;
    int facing_;
    ParsedCommandStep step_;
    bool joins_ = false;  // the next key belongs to the same step
};

// A model's texts never change: each is parsed once for each side.
const ParsedCommand& parsedCommand(std::string_view raw, int facing) {
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    static std::array<std::unordered_map<std::string, ParsedCommand, Hash, std::equal_to<>>, 2>
        known;
    auto& ofSide = known[facing >= 0 ? 1 : 0];
    const auto found = ofSide.find(raw);
    if (found != ofSide.end()) return found->second;
    return ofSide.try_emplace(std::string(raw), parseOpenBorCommand(raw, facing)).first->second;
}

// Calls test(bit) for each bit that is set; whether all hold.
template <class Test>
bool allBits(unsigned bits, Test test) {
    for (; bits != 0; bits &= bits - 1) {
        if (!test(bits & ~(bits - 1))) return false;
    }
    return true;
}

bool roseWithin(InputHistory history, int pos, int ticks, unsigned bit) {
    const int first = ticks < pos ? pos - ticks : 0;
    for (int at = pos; at >= first; --at) {
        if (history[static_cast<std::size_t>(at)].newKeys & bit) return true;
    }
    return false;
}

bool pressMatches(InputHistory history, int pos, const ParsedCommandStep& step) {
    const InputHistoryEntry& entry = history[static_cast<std::size_t>(pos)];
    if (step.chordTime <= 0) return (step.press & ~entry.newKeys) == 0;
    return (step.press & ~entry.held) == 0 && allBits(step.press, [&](unsigned bit) {
               return roseWithin(history, pos, step.chordTime, bit);
           });
}

// A number names one of the free specials.
const generated::Animation* targetAnimation(const generated::Character* model,
                                            std::string_view target) {
    if (target.empty()) return nullptr;
    std::string name(target);
    if (target.find_first_not_of("0123456789") == target.npos) name.insert(0, "freespecial");
    const generated::Animation* exact = exactAnimation(model, name);
    return exact ? exact : findAnimation(model, name);
}

}  // namespace

unsigned scriptKeyBit(std::string_view name) {
    return bitsOf(kScriptNames, name);
}

unsigned commandBit(std::string_view token, int facing) {
    const bool right = facing >= 0;
    if (equalsFolded(token, "f")) return right ? SK_RIGHT : SK_LEFT;
    if (equalsFolded(token, "b")) return right ? SK_LEFT : SK_RIGHT;
    const unsigned bits = bitsOf(kCommandNames, token);
    return bits != 0 ? bits : scriptKeyBit(token);
}

int bracketNumber(std::string_view text, std::size_t from, int fallback) {
    const std::size_t open = text.find('[', from);
    if (open == text.npos) return fallback;
    const std::size_t close = text.find(']', open);
    if (close == text.npos) return fallback;
    const auto number = leadingInt(text.substr(open + 1, close - open - 1));
    return number ? std::max(0, *number) : fallback;
}

ParsedCommand parseOpenBorCommand(std::string_view raw, int facing) {
    ParsedCommand command;
    const std::string timeless = takeSequenceGrace(raw, command.sequenceGrace);
    std::string text;
    for (std::size_t at = 0; at < timeless.size(); ++at) {
        if (timeless.compare(at, 2, "->") == 0) {
            text += " | ";
            ++at;
        } else {
            text += timeless[at] == ',' ? ' ' : timeless[at];
        }
    }
    StepReader reader(command, facing);
    std::string_view rest = text;
    for (auto token = takeWord(rest); !token.empty(); token = takeWord(rest)) reader.read(token);
    reader.flush();
    return command;
}

int heldDuration(InputHistory history, int pos, unsigned bit) {
    if (pos < 0) return 0;
    const InputHistoryEntry& entry = history[static_cast<std::size_t>(pos)];
    if (!(entry.held & bit)) {
        if (!(entry.released & bit)) return 0;
        --pos;
    }
    int ticks = 0;
    while (pos >= 0 && (history[static_cast<std::size_t>(pos)].held & bit)) {
        --pos;
        ++ticks;
    }
    return ticks;
}

bool commandStepMatches(InputHistory history, int pos, const ParsedCommandStep& step) {
    if (pos < 0 || (step.press | step.release | step.holdTrigger) == 0) return false;
    const InputHistoryEntry& entry = history[static_cast<std::size_t>(pos)];
    if ((step.release & ~entry.released) != 0 || (step.holdTrigger & ~entry.held) != 0) {
        return false;
    }
    const int triggerTicks = std::max(1, step.holdMin);
    return pressMatches(history, pos, step) &&
           allBits(step.holdTrigger,
                   [&](unsigned bit) { return heldDuration(history, pos, bit) == triggerTicks; }) &&
           allBits(step.hold | step.release, [&](unsigned bit) {
               const int ticks = heldDuration(history, pos, bit);
               return ticks >= step.holdMin && (step.holdMax <= 0 || ticks <= step.holdMax);
           });
}

bool matchOpenBorCommand(InputHistory history, std::string_view raw, int facing, int* score) {
    const ParsedCommand& command = parsedCommand(raw, facing);
    if (history.empty() || command.steps.empty()) return false;
    const int newest = static_cast<int>(history.size()) - 1;
    // Most commands end here: their last step does not happen now.
    if (!commandStepMatches(history, newest, command.steps.back())) return false;
    int previous = newest;
    int pos = newest - 1;
    for (std::size_t left = command.steps.size() - 1; left > 0; --pos) {
        if (pos < 0 || previous - pos > command.sequenceGrace) return false;
        if (!commandStepMatches(history, pos, command.steps[left - 1])) continue;
        previous = pos;
        --left;
    }
    if (score) {
        *score = static_cast<int>(command.steps.size()) * kScorePerStep + command.specificity;
    }
    return true;
}

const generated::Animation* commandTarget(const generated::Character* model, InputHistory history,
                                          int facing) {
    if (!model) return nullptr;
    const generated::Animation* best = nullptr;
    int bestScore = -1;
    for (const generated::Command& command : std::span(model->commands, model->commandCount)) {
        int score = 0;
        if (!matchOpenBorCommand(history, command.sequence, facing, &score)) continue;
        const generated::Animation* target = targetAnimation(model, command.targetAnimation);
        if (!target || score < bestScore) continue;
        best = target;
        bestScore = score;
    }
    return best;
}

const generated::Animation* cancelTarget(const generated::Character* model,
                                         const generated::Animation* animation, std::size_t frame,
                                         int hits, InputHistory history, int facing) {
    if (!model || !animation) return nullptr;
    for (const generated::Cancel& cancel : std::span(animation->cancels, animation->cancelCount)) {
        const bool open = std::cmp_less_equal(cancel.startFrame, frame) &&
                          std::cmp_less_equal(frame, cancel.endFrame) && hits >= cancel.hits;
        if (!open || !matchOpenBorCommand(history, cancel.command, facing)) continue;
        if (const auto* target = targetAnimation(model, cancel.targetAnimation)) return target;
    }
    return nullptr;
}

}  // namespace port
