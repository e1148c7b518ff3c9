#include "AttackChains.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "AnimationLookup.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr double kTicksPerComboDelay = 0.30;
constexpr int kLeastComboWindow = 6;
constexpr double kTicksPerChargeTime = 0.6;
constexpr int kByRange = 1;  // comboStyle
constexpr float kReachX = 75;
constexpr float kReachA = 1000;
constexpr float kReachZPerGrabDistance = 3;

bool within(float value, float a, float b) {
    return value >= std::min(a, b) && value <= std::max(a, b);
}

// The first branch holds the first attack, which the others leave out.
int positionIn(int branch, int step) {
    return branch == 0 ? step : step - 1;
}

// Null beyond the branch's end.
const int* entryAt(std::span<const int> branch, int position) {
    const bool there = position >= 0 && static_cast<std::size_t>(position) < branch.size();
    return there ? &branch[static_cast<std::size_t>(position)] : nullptr;
}

}  // namespace

int comboWindowFor(const generated::Character& model, int fallback) {
    if (model.comboDelay <= 0) return fallback;
    return std::max(kLeastComboWindow,
                    static_cast<int>(std::lround(model.comboDelay * kTicksPerComboDelay)));
}

int chargeThreshold(const generated::Animation& animation) {
    return std::max(1, static_cast<int>(std::lround(animation.chargeTime * kTicksPerChargeTime)));
}

std::vector<std::span<const int>> comboBranches(const generated::Character* model) {
    std::vector<std::span<const int>> branches;
    if (!model) return branches;
    std::span rest(model->attackChain, model->attackChainCount);
    while (!rest.empty()) {
        const auto end = std::ranges::find_if(rest, [](int attack) { return attack <= 0; });
        const auto length = static_cast<std::size_t>(end - rest.begin());
        branches.push_back(rest.first(length));
        rest = rest.subspan(std::min(length + 1, rest.size()));
    }
    return branches;
}

int highestAttackIndex(const generated::Character* model) {
    constexpr std::string_view kAttack = "attack";
    int highest = 1;
    if (!model) return highest;
    for (const generated::Animation& animation :
         std::span(model->animations, model->animationCount)) {
        const std::string_view name = animation.name;
        if (!startsWithFolded(name, kAttack)) continue;
        const std::string_view digits = name.substr(kAttack.size());
        if (digits.find_first_not_of("0123456789") != digits.npos) continue;
        highest = std::max(highest, leadingInt(digits).value_or(0));
    }
    return highest;
}

int chainAttackNumber(const generated::Character* model, int step) {
    if (!model) return std::max(1, step + 1);
    step = std::max(0, step);
    if (model->attackChainCount == 0) return step % highestAttackIndex(model) + 1;
    const std::span<const int> first = comboBranches(model).front();
    return first.empty() ? 1 : first[static_cast<std::size_t>(step) % first.size()];
}

bool attackRangePass(const generated::Character* model, int attack, const TargetOffset& target) {
    const auto* animation = exactAnimation(model, "attack" + std::to_string(std::max(1, attack)));
    if (!animation) return false;
    const float byGrab = static_cast<float>(model->grabDistance) / kReachZPerGrabDistance;
    const bool x = animation->hasRangeX
                       ? within(std::abs(target.dx), animation->rangeXMin, animation->rangeXMax)
                       : within(std::abs(target.dx), 0, kReachX);
    const bool z = animation->hasRangeZ
                       ? within(std::abs(target.dz), std::abs(animation->rangeZMin),
                                std::abs(animation->rangeZMax))
                       : within(std::abs(target.dz), 0, std::max(1.0F, byGrab));
    // The only range with a sign: its ends stay as they are.
    const float least = animation->hasRangeA ? animation->rangeAMin : -kReachA;
    const float most = animation->hasRangeA ? animation->rangeAMax : kReachA;
    return x && z && target.da >= least && target.da <= most;
}

int dynamicChainAttackNumber(const generated::Character* model, int step, int& branch,
                             const TargetOffset& target) {
    if (!model || model->comboStyle != kByRange) return chainAttackNumber(model, step);
    const auto branches = comboBranches(model);
    if (branches.empty()) return chainAttackNumber(model, step);
    const auto begin = [&] {
        branch = -1;
        return branches.front().empty() ? 1 : branches.front().front();
    };
    if (step <= 0) return begin();
    const int count = static_cast<int>(branches.size());
    const auto attackIn = [&](int number) {
        return entryAt(branches[static_cast<std::size_t>(number)], positionIn(number, step));
    };
    for (int number = 0; branch < 0 && number < count; ++number) {
        const int* attack = attackIn(number);
        if (attack && attackRangePass(model, *attack, target)) branch = number;
    }
    // A branch of another model's chain may be beyond this one's.
    if (branch < 0 || branch >= count) branch = 0;
    const int* attack = attackIn(branch);
    return attack ? *attack : begin();
}

}  // namespace port
