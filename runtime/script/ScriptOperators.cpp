#include "ScriptOperators.hpp"

#include <algorithm>
#include <cstdint>

namespace port::script {
namespace {

double shifted(Word op, std::int64_t value, std::int64_t by) {
    // Only the low six bits of the count are looked at, as by the machine itself.
    const auto count = static_cast<unsigned>(static_cast<std::uint64_t>(by) & 63U);
    if (op == Word::ShiftRight) return static_cast<double>(value >> count);
    return static_cast<double>(
        static_cast<std::int64_t>(static_cast<std::uint64_t>(value) << count));
}

}  // namespace

bool compare(Word op, const ScriptValue& left, const ScriptValue& right) {
    const auto* a = std::get_if<double>(&left);
    const auto* b = std::get_if<double>(&right);
    if (a != nullptr && b != nullptr) return compareNumbers(op, *a, *b);
    if (op == Word::Equal) return eq(left, right);
    if (op == Word::NotEqual) return !eq(left, right);
    return compareNumbers(op, num(left), num(right));
}

double arithmetic(Word op, double left, double right) {
    switch (op) {
        case Word::Add:
            return left + right;
        case Word::Sub:
            return left - right;
        case Word::Mul:
            return left * right;
        case Word::Div:
            return quotient(left, right);
        // The divisor is raised to at least 1.
        case Word::Mod:
            return static_cast<double>(integer(left) % std::max<std::int64_t>(1, integer(right)));
        case Word::And:
            return static_cast<double>(integer(left) & integer(right));
        case Word::Or:
            return static_cast<double>(integer(left) | integer(right));
        case Word::Xor:
            return static_cast<double>(integer(left) ^ integer(right));
        default:
            return shifted(op, integer(left), integer(right));
    }
}

void applyPrefix(Word op, ScriptValue& to, const ScriptValue& value) {
    switch (op) {
        case Word::Not:
            return putTruth(to, !holds(value));
        case Word::Tilde:
            return put(to, static_cast<double>(~integer(num(value))));
        case Word::Sub:
            return put(to, -num(value));
        default:
            return put(to, num(value));
    }
}

void putOther(ScriptValue& to, double value) {
    to.emplace<double>(value);
}

void copyOther(ScriptValue& to, const ScriptValue& from) {
    to = from;
}

}  // namespace port::script
