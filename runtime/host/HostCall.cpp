#include "HostCall.hpp"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>

#include "AnimationLookup.hpp"
#include "Pixels.hpp"
#include "ScriptValue.hpp"

namespace port {
namespace {

// Names nothing and nobody, also not the caller as 0 does.
constexpr std::uintptr_t kNoHandle = UINTPTR_MAX;

// A double in fixed notation has up to 309 digits before the point.
constexpr std::size_t kLongestNumber = 352;

std::string decimalText(double value) {
    std::string text(kLongestNumber, '\0');
    const int digits = std::trunc(value) == value ? 0 : 6;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, digits);
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    return text;
}

}  // namespace

const ScriptValue& HostCall::value(std::size_t index) const {
    static const ScriptValue kEmpty;
    return has(index) ? args[index] : kEmpty;
}

bool HostCall::isNumeric(std::size_t index) const {
    return std::holds_alternative<double>(value(index)) ||
           std::holds_alternative<bool>(value(index));
}

double HostCall::number(std::size_t index, double fallback) const {
    return has(index) ? script::num(args[index]) : fallback;
}

int HostCall::integer(std::size_t index, int fallback) const {
    const double given = number(index, fallback);
    if (std::isnan(given)) return 0;
    return static_cast<int>(std::clamp<double>(given, INT_MIN, INT_MAX));
}

float HostCall::pixels(std::size_t index, float fallback) const {
    return static_cast<float>(withinReach(number(index, fallback)));
}

bool HostCall::flag(std::size_t index, bool fallback) const {
    return number(index, fallback ? 1 : 0) != 0;
}

const std::string& HostCall::text(std::size_t index) {
    const ScriptValue& given = value(index);
    if (const auto* text = std::get_if<ScriptText>(&given)) return text->str();
    scratch.clear();
    if (const auto* truth = std::get_if<bool>(&given)) scratch = *truth ? "1" : "0";
    if (const auto* number = std::get_if<double>(&given)) scratch = decimalText(*number);
    return scratch;
}

std::uintptr_t HostCall::handle(std::size_t index) const {
    const ScriptValue& given = value(index);
    if (const auto* handle = std::get_if<std::uintptr_t>(&given)) return *handle;
    const double number = script::num(given);
    return number >= 0 && number <= UINT32_MAX ? static_cast<std::uintptr_t>(number) : kNoHandle;
}

ActorHandle HostCall::caller() const {
    if (context.entity != kNobody) return context.entity;
    if (!context.player) return kNobody;
    return static_cast<ActorHandle>(std::clamp(context.playerIndex, 0, kMostPlayers - 1)) +
           kPlayer1Handle;
}

ActorHandle HostCall::actorHandle(std::size_t index) const {
    const std::uintptr_t given = handle(index);
    return given == kNobody ? caller() : given;
}

Actor* HostCall::actor(std::size_t index) const {
    return tick.world.find(actorHandle(index));
}

const generated::Character* HostCall::model(std::size_t index) {
    chargeScan(generated::kCharacterCount);
    const std::string& wanted = text(index);
    return wanted.empty() ? nullptr : findCharacter(wanted.c_str());
}

void HostCall::tag(std::string_view text, std::string_view more) {
    unsupported.add(std::string(text).append(more));
}

void HostCall::charge(std::size_t steps) {
    ScriptVM& machine = tick.scripts.machine();
    machine.setSteps(machine.stepsLeft() - static_cast<std::int64_t>(steps));
}

}  // namespace port
