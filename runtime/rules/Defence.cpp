#include "Defence.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "TextFields.hpp"

namespace port {
namespace {

// "normal" and the number; plain types below 2 are all "normal1".
bool isNumbered(std::string_view word, int attackType) {
    constexpr std::string_view kNormal = "normal";
    if (!startsWithFolded(word, kNormal)) return false;
    char digits[16];
    const char* end = std::to_chars(digits, digits + sizeof digits, std::max(1, attackType)).ptr;
    return word.substr(kNormal.size()) == std::string_view(digits, end);
}

bool isKeyOf(std::string_view word, int attackType) {
    if (attackType < 0) return equalsFolded(word, "land");
    switch (attackType) {
        case kAttackBlast:
            return equalsFolded(word, "blast");
        case kAttackBurn:
            return equalsFolded(word, "burn");
        case kAttackFreeze:
            return equalsFolded(word, "freeze");
        case kAttackShock:
            return equalsFolded(word, "shock");
        case kAttackSteal:
            return equalsFolded(word, "steal");
        default:
            return isNumbered(word, attackType);
    }
}

}  // namespace

const generated::Defense* defenseFor(const generated::Character* model, int attackType) {
    if (!model) return nullptr;
    const generated::Defense* normal = nullptr;
    const generated::Defense* all = nullptr;
    for (const generated::Defense& entry : std::span(model->defenses, model->defenseCount)) {
        if (isKeyOf(entry.type, attackType)) return &entry;
        if (equalsFolded(entry.type, "normal")) normal = &entry;
        if (equalsFolded(entry.type, "all")) all = &entry;
    }
    return normal ? normal : all;
}

// A product of floats, in which 5 times 0.7 is the 3.5 that the author of a game means.
int scaledDamage(int raw, float factor) {
    const float damage = std::round(static_cast<float>(raw) * factor);
    if (!(damage > 0)) return 0;
    return static_cast<int>(std::min<double>(damage, INT32_MAX));
}

int effectiveDamage(const generated::Character* model, int raw, int attackType) {
    const generated::Defense* defence = defenseFor(model, attackType);
    return defence ? scaledDamage(raw, defence->factor) : std::max(0, raw);
}

bool defenseAllowsPain(const generated::Character* model, int raw, int attackType) {
    const generated::Defense* defence = defenseFor(model, attackType);
    return !defence || defence->pain <= 0 || static_cast<float>(raw) >= defence->pain;
}

}  // namespace port
