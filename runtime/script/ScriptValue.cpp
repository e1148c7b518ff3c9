#include "ScriptValue.hpp"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <utility>
#include <vector>

namespace port {
namespace {

void moveArrays(ScriptArray& from, std::vector<ScriptArrayPtr>& to) {
    const auto move = [&](ScriptValue& value) {
        auto* array = std::get_if<ScriptArrayPtr>(&value);
        if (array != nullptr && *array) to.push_back(std::move(*array));
    };
    for (ScriptValue& value : from.indexed) move(value);
    for (auto& [name, value] : from.named) move(value);
}

}  // namespace

// Arrays may hold arrays to any depth; they are let go one by one, so that the depth of the data
// is never a depth of calls.
ScriptArray::~ScriptArray() {
    ScriptMemory::giveBack(sizeof(ScriptArray));
    std::vector<ScriptArrayPtr> waiting;
    moveArrays(*this, waiting);
    while (!waiting.empty()) {
        const ScriptArrayPtr array = std::move(waiting.back());
        waiting.pop_back();
        if (array.use_count() == 1) moveArrays(*array, waiting);
    }
}

namespace script {

bool truth(const ScriptValue& value) {
    switch (value.index()) {
        case 1:
            return *std::get_if<double>(&value) != 0.0;
        case 2:
            return !std::get_if<ScriptText>(&value)->empty();
        case 3:
            return *std::get_if<bool>(&value);
        case 4:
            return *std::get_if<std::uintptr_t>(&value) != 0;
        case 5:
            return static_cast<bool>(*std::get_if<ScriptArrayPtr>(&value));
        default:
            return false;
    }
}

double num(const ScriptValue& value) {
    switch (value.index()) {
        case 1:
            return *std::get_if<double>(&value);
        case 2:
            return parsedNumber(*std::get_if<ScriptText>(&value));
        case 3:
            return *std::get_if<bool>(&value) ? 1.0 : 0.0;
        case 4:
            return static_cast<double>(*std::get_if<std::uintptr_t>(&value));
        default:
            return 0.0;
    }
}

std::string str(const ScriptValue& value) {
    switch (value.index()) {
        case 1: {
            char text[32];
            const auto end = std::to_chars(text, text + sizeof text, *std::get_if<double>(&value),
                                           std::chars_format::general, 6);
            return {text, end.ptr};
        }
        case 2:
            return *std::get_if<ScriptText>(&value);
        case 3:
            return *std::get_if<bool>(&value) ? "1" : "0";
        case 4:
            return std::to_string(*std::get_if<std::uintptr_t>(&value));
        case 5:
            return *std::get_if<ScriptArrayPtr>(&value) ? "[array]" : "";
        default:
            return {};
    }
}

bool eq(const ScriptValue& a, const ScriptValue& b) {
    const auto* left = std::get_if<ScriptText>(&a);
    const auto* right = std::get_if<ScriptText>(&b);
    if (left != nullptr && right != nullptr) return *left == *right;
    if (left != nullptr) return *left == str(b);
    if (right != nullptr) return *right == str(a);
    const auto* first = std::get_if<ScriptArrayPtr>(&a);
    const auto* second = std::get_if<ScriptArrayPtr>(&b);
    if (first != nullptr || second != nullptr) {
        return first != nullptr && second != nullptr && *first == *second;
    }
    return std::fabs(num(a) - num(b)) < 0.000001;
}

double parsedNumber(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(text.c_str(), &end);
    return end == text.c_str() || errno == ERANGE ? 0.0 : value;
}

double literalNumber(const std::string& text) {
    if (text.size() <= 2 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) {
        return parsedNumber(text);
    }
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 16);
    return errno == ERANGE ? 0.0 : static_cast<double>(value);
}

}  // namespace script
}  // namespace port
