#pragma once

// The keywords of an entity file as table rows: what a line needs, how each argument is read and
// which field it sets.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "reader/DataPaths.hpp"
#include "reader/Mends.hpp"
#include "reader/ModelDef.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {

using KeywordArgs = std::span<const std::string_view>;

// What the lines of one entity file change.
struct ModelParser {
    explicit ModelParser(Reading& how) : reading(how) {}

    Reading& reading;
    std::uint32_t line = 0;  // that is being read
    ModelDef model;
    FrameDef frame;                // template that every "frame" line copies
    std::vector<FrameDef> frames;  // of the animation being read, until endAnimation()
    std::string pendingCommand;    // "@cmd" text for the next frame
    std::string modelScript;       // "@script" text ahead of the first animation

    // The one being read; there must be one.
    [[nodiscard]] AnimationDef& animation() { return model.animations.back(); }

    // Gives the animation being read, if any, its frames, in no more room than they need.
    void endAnimation();

    // Whether the line that is being read is mended so.
    [[nodiscard]] bool mends(Mend mend) { return reading.mends(mend, line); }
};

using KeywordAction = void (*)(ModelParser& parser, KeywordArgs args);

struct ModelKeyword {
    std::string_view names[3];  // lower case; unused ones are empty
    std::size_t minArgs = 0;    // a line with fewer does nothing
    KeywordAction action = nullptr;
};

// Rows that act anywhere in the file, and rows that act only once an animation has begun.
[[nodiscard]] std::span<const ModelKeyword> propertyKeywords();
[[nodiscard]] std::span<const ModelKeyword> animationKeywords();
[[nodiscard]] std::span<const ModelKeyword> frameKeywords();
// The fields of body and attack boxes, each on a line of its own.
[[nodiscard]] std::span<const ModelKeyword> boxFieldKeywords();

// Whether the tokens of an "@cmd" line are one call as scripts write it: "playmusic("x", 1)".
[[nodiscard]] bool isWholeCall(KeywordArgs tokens);
// The call that the tokens mean: as it stands if it is whole, else the function and its arguments.
[[nodiscard]] std::string callOf(KeywordArgs tokens, bool whole);

// The action of "attack" with the digits that stand behind it glued on: "attack7".
void readNumberedAttack(ModelParser& parser, std::string_view digits, KeywordArgs args);

// How one argument is read and where it goes. The record is found by the type of the field.
namespace field {

template <typename T>
T& of(ModelParser& parser, T ModelDef::*member) {
    return parser.model.*member;
}
template <typename T>
T& of(ModelParser& parser, T AnimationDef::*member) {
    return parser.animation().*member;
}
template <typename T>
T& of(ModelParser& parser, T FrameDef::*member) {
    return parser.frame.*member;
}
template <typename T>
T& of(ModelParser& parser, T BoxDef::*member) {
    return parser.frame.bbox.*member;
}
template <typename T>
T& of(ModelParser& parser, T AttackBoxDef::*member) {
    return parser.frame.attack.*member;
}
template <typename T>
T& of(ModelParser& parser, T DrawMethodDef::*member) {
    return parser.frame.draw.*member;
}

struct Range {
    std::int32_t low = std::numeric_limits<std::int32_t>::min();
    std::int32_t high = std::numeric_limits<std::int32_t>::max();
};
inline constexpr Range kAnyInt{};
inline constexpr Range kNotNegative{0};
inline constexpr Range kPositive{1};

template <auto Member, std::int32_t Fallback = 0, Range Limits = kAnyInt>
struct Int {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = std::clamp(parseIntOr(token, Fallback), Limits.low, Limits.high);
    }
};

template <auto Member, std::int32_t Fallback = 0>
struct Float {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = parseFloatOr(token, float{Fallback});
    }
};

// Fixed point with 256 for one.
template <auto Member, std::int32_t Fallback = 0>
struct Float256 {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = parseFloatOr(token, float{Fallback}) / 256.0F;
    }
};

template <auto Member, std::int32_t Fallback = 0>
struct Tenths {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = parseTenthsOr(token, float{Fallback});
    }
};

// Brought into 0 to 359.
template <auto Member>
struct Degrees {
    static void read(ModelParser& parser, std::string_view token) {
        const std::int32_t degrees = parseIntOr(token, 0) % 360;
        of(parser, Member) = degrees < 0 ? degrees + 360 : degrees;
    }
};

template <auto Member, std::int32_t Fallback = 0>
struct Flag {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = parseIntOr(token, Fallback) != 0;
    }
};

// A flag that a zero leaves as it is.
template <auto Member>
struct Raise {
    static void read(ModelParser& parser, std::string_view token) {
        if (parseIntOr(token, 0) != 0) of(parser, Member) = true;
    }
};

// A flag that the line raises by being there.
template <auto Member>
struct Mark {
    static void read(ModelParser& parser, std::string_view) { of(parser, Member) = true; }
};

template <auto Member>
struct Text {
    static void read(ModelParser& parser, std::string_view token) { of(parser, Member) = token; }
};

// A name that every later frame copies. One longer than any name is passed over, as it would take
// its length once for each frame.
inline constexpr std::size_t kMaxStickyName = 1024;
template <auto Member>
struct StickyText {
    static void read(ModelParser& parser, std::string_view token) {
        if (token.size() <= kMaxStickyName) of(parser, Member) = token;
    }
};

template <auto Member>
struct Path {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = normalizeDataPath(token);
    }
};

// One argument for several fields.
template <typename... Fields>
struct Each {
    static void read(ModelParser& parser, std::string_view token) {
        (Fields::read(parser, token), ...);
    }
};

}  // namespace field

// An action that gives the arguments to the fields in turn. A field without an argument stays.
template <typename... Fields>
void setFields(ModelParser& parser, KeywordArgs args) {
    std::size_t i = 0;
    ((i < args.size() ? Fields::read(parser, args[i]) : void(), ++i), ...);
}

// The same, but a field without an argument takes its fallback.
template <typename... Fields>
void setAllFields(ModelParser& parser, KeywordArgs args) {
    std::array<std::string_view, sizeof...(Fields)> padded;
    std::copy_n(args.begin(), std::min(args.size(), padded.size()), padded.begin());
    setFields<Fields...>(parser, padded);
}

// A word that stands for a number.
struct NamedValue {
    std::string_view name;  // lower case
    std::int32_t value = 0;
};

// The row that `token` names in any case; null when there is none.
template <typename Row, std::size_t Size>
const Row* findNamed(const Row (&rows)[Size], std::string_view token) {
    const Row* const row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& known) {
        return equalsFolded(token, known.name);
    });
    return row == std::end(rows) ? nullptr : row;
}

}  // namespace tindrel
