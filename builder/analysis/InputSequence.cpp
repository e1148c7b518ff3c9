#include "analysis/InputSequence.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/HtmlText.hpp"

namespace tindrel {
namespace {

constexpr int kLongest = 1'000'000'000;

constexpr std::array<std::string_view, 32> kInputTokens = {
    "a",       "a2",      "a3",   "a4",       "j",     "s",        "k",       "u",
    "d",       "l",       "r",    "f",        "b",     "moveleft", "left",    "moveright",
    "right",   "moveup",  "up",   "movedown", "down",  "attack",   "attack1", "attack2",
    "attack3", "attack4", "jump", "special",  "start", "esc",      "escape",  "anybutton"};

// A token that the runtime's matcher takes whole: "~f", "a*", "d[20]", "+[3]".
struct InputToken {
    enum class Kind { kKey, kJoin, kStepEnd, kPause } kind = Kind::kKey;
    bool release = false, trigger = false, timed = false;
    int least = 0, most = 0;  // times in brackets; most 0: no limit
};

// One or two groups of one number each.
bool readTimes(std::string_view rest, InputToken& out) {
    for (int* const time : {&out.least, &out.most}) {
        const std::size_t close = rest.find(']');
        if (rest.front() != '[' || close == std::string_view::npos) return false;
        const std::optional<int> number = integer(rest.substr(1, close - 1));
        if (!number || *number < 0 || *number > kLongest) return false;
        *time = *number;
        rest.remove_prefix(close + 1);
        if (rest.empty()) return true;
    }
    return false;
}

std::optional<InputToken> readInputToken(std::string_view token) {
    using enum InputToken::Kind;
    InputToken out;
    const std::size_t bracket = std::min(token.find('['), token.size());
    out.timed = bracket < token.size();
    if (out.timed && !readTimes(token.substr(bracket), out)) return std::nullopt;
    token = token.substr(0, bracket);
    if (token == "+") {
        out.kind = kJoin;
    } else if (out.timed && token == ":") {
        out.kind = kPause;
    } else if (!out.timed && (token == "->" || token == "|")) {
        out.kind = kStepEnd;
    } else {
        out.release = token.starts_with('~');
        token.remove_prefix(out.release ? 1 : 0);
        std::string key(token);
        out.trigger = std::erase(key, '*') > 0;
        if (!isOneOf(key, kInputTokens)) return std::nullopt;
    }
    return out;
}

// The keys of one moment. Something must happen in it: keys that are merely held make no moment,
// and none can be held longer than the longest time and shorter than the least.
class InputStep {
  public:
    void add(const InputToken& key) {
        const bool holds = !key.release && !key.trigger && key.timed;
        isEmpty_ = false;
        happens_ = happens_ || !holds;
        isTimed_ = isTimed_ || holds || key.release;
        least_ = std::max(least_, key.least);
        if (key.most > 0) most_ = most_ == 0 ? key.most : std::min(most_, key.most);
    }
    // Why it never happens; empty where it can.
    [[nodiscard]] std::string_view fault() const {
        if (isEmpty_) return {};
        if (!happens_) return "one of its steps holds keys and presses none";
        return isTimed_ && most_ > 0 && least_ > most_ ? "no key can be held for these times" : "";
    }

  private:
    bool isEmpty_ = true, happens_ = false, isTimed_ = false;
    int least_ = 0, most_ = 0;
};

}  // namespace

std::string faultOfInputSequence(Args args) {
    InputStep step;
    bool joins = false;
    bool hasKey = false;
    for (std::string_view rest : args) {
        while (!rest.empty()) {
            const std::size_t comma = std::min(rest.find(','), rest.size());
            const std::string_view text = rest.substr(0, comma);
            rest.remove_prefix(std::min(comma + 1, rest.size()));
            if (text.empty()) continue;
            const std::optional<InputToken> token = readInputToken(text);
            if (!token) return quoteCode(text) + " is no key";
            if (token->kind == InputToken::Kind::kPause) continue;
            const bool ends = token->kind == InputToken::Kind::kStepEnd;
            const bool isKey = token->kind == InputToken::Kind::kKey;
            if (ends || (isKey && !joins)) {
                if (!step.fault().empty()) return std::string(step.fault());
                step = {};
            }
            joins = token->kind == InputToken::Kind::kJoin;
            if (isKey) step.add(*token);
            hasKey = hasKey || isKey;
        }
    }
    return hasKey ? std::string(step.fault()) : "it names no key";
}

}  // namespace tindrel
