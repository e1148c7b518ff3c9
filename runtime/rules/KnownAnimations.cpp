#include "KnownAnimations.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "ModelFacts.hpp"
#include "TableDerived.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

using generated::Animation;
using generated::Character;

constexpr std::array<std::string_view, 5> kNames = {"idle", "walk", "run", "dodge", "grab"};

struct KnownOfModel {
    std::array<const Animation*, kNames.size()> found{}, exact{};
    std::array<std::vector<const Animation*>, 3> attacks;  // by AttackReach
};

bool isAttack(std::string_view name) {
    for (const std::string_view kind : {"attack", "shoot", "throw"}) {
        if (name.size() <= kind.size() || !startsWithFolded(name, kind)) continue;
        return std::ranges::all_of(name.substr(kind.size()),
                                   [](char c) { return c >= '0' && c <= '9'; });
    }
    return false;
}

KnownOfModel findKnown(const Character& model) {
    KnownOfModel known;
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        known.found[i] = findAnimation(&model, kNames[i]);
        known.exact[i] = exactAnimation(&model, kNames[i]);
    }
    for (const Animation& animation : std::span(model.animations, model.animationCount)) {
        if (!isAttack(animation.name)) continue;
        const bool far = animation.throwFrame >= 0 || animation.tossFrame >= 0;
        for (const AttackReach reach :
             {AttackReach::Any, far ? AttackReach::Far : AttackReach::Close}) {
            known.attacks[static_cast<std::size_t>(reach)].push_back(&animation);
        }
    }
    return known;
}

const std::vector<KnownOfModel>& knownOfTable() {
    return derivedFromTables([] {
        std::vector<KnownOfModel> all;
        for (const Character& row : std::span(generated::kCharacters, generated::kCharacterCount)) {
            all.push_back(findKnown(row));
        }
        return all;
    });
}

template <class Read>
auto readKnown(const Character& model, Read read) {
    const std::vector<KnownOfModel>& table = knownOfTable();
    const std::size_t row = rowOf(model);
    return row < table.size() ? read(table[row]) : read(findKnown(model));
}

}  // namespace

const Animation* findAnimation(const Character* model, KnownAnimation wanted) {
    if (!model) return nullptr;
    return readKnown(*model, [wanted](const KnownOfModel& known) {
        return known.found[static_cast<std::size_t>(wanted)];
    });
}

const Animation* findActionAnimation(const Character* base, const Character* weapon,
                                     KnownAnimation wanted) {
    if (!weapon) return findAnimation(base, wanted);
    const Animation* own = readKnown(*weapon, [wanted](const KnownOfModel& known) {
        return known.exact[static_cast<std::size_t>(wanted)];
    });
    if (own) return own;
    return keepsBaseAnimationsOut(*weapon) ? nullptr : findAnimation(base, wanted);
}

bool hasAttackAnimations(const Character& model) {
    return attackAnimation(model, AttackReach::Any, 0);
}

const Animation* attackAnimation(const Character& model, AttackReach reach, std::uint64_t turn) {
    return readKnown(model, [&](const KnownOfModel& known) -> const Animation* {
        const auto& list = known.attacks[static_cast<std::size_t>(reach)];
        return list.empty() ? nullptr : list[turn % list.size()];
    });
}

}  // namespace port
