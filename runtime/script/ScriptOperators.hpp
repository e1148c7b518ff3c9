#pragma once

// What operators make of values, and assignments for the stacks of the machine.

#include <cassert>
#include <cmath>
#include <string>
#include <utility>
#include <variant>

#include "ScriptLexer.hpp"
#include "ScriptVM.hpp"
#include "ScriptValue.hpp"

namespace port::script {

// Out of the way of assignments that keep the kind, which need no more than the bytes.
void putOther(ScriptValue& to, double value);
void copyOther(ScriptValue& to, const ScriptValue& from);

inline void put(ScriptValue& to, double value) {
    if (auto* number = std::get_if<double>(&to)) {
        *number = value;
    } else {
        putOther(to, value);
    }
}

inline void copy(ScriptValue& to, const ScriptValue& from) {
    if (const auto* number = std::get_if<double>(&from)) {
        put(to, *number);
    } else {
        copyOther(to, from);
    }
}

inline void putTruth(ScriptValue& to, bool value) {
    if (auto* truth = std::get_if<bool>(&to)) {
        *truth = value;
    } else {
        to.emplace<bool>(value);
    }
}

// `from` is another value than `to`: a text that is moved onto itself is lost.
inline void take(ScriptValue& to, ScriptValue& from) {
    assert(&to != &from);
    if (const auto* number = std::get_if<double>(&from)) {
        put(to, *number);
    } else {
        to = std::move(from);
    }
}

// What is left behind on a stack must hold no memory and no array.
inline void release(ScriptValue& value) {
    if (value.index() == 2 || value.index() == 5) value.emplace<std::monostate>();
}

[[nodiscard]] inline bool holds(const ScriptValue& value) {
    const auto* known = std::get_if<bool>(&value);
    return known != nullptr ? *known : truth(value);
}

[[nodiscard]] inline bool isSame(double left, double right) {
    return std::fabs(left - right) < 0.000001;
}

// A division by 0 is 0.
[[nodiscard]] inline double quotient(double left, double right) {
    return right == 0.0 ? 0.0 : left / right;
}

[[nodiscard]] constexpr bool isComparison(Word op) {
    return op >= Word::Equal && op <= Word::GreaterEqual;
}

[[nodiscard]] inline bool compareNumbers(Word op, double left, double right) {
    switch (op) {
        case Word::Equal:
            return isSame(left, right);
        case Word::NotEqual:
            return !isSame(left, right);
        case Word::Less:
            return left < right;
        case Word::Greater:
            return left > right;
        case Word::LessEqual:
            return left <= right;
        default:
            return left >= right;
    }
}

[[nodiscard]] bool compare(Word op, const ScriptValue& left, const ScriptValue& right);

// All binary operators but comparisons and the joining of texts.
[[nodiscard]] double arithmetic(Word op, double left, double right);

void applyPrefix(Word op, ScriptValue& to, const ScriptValue& value);

}  // namespace port::script
