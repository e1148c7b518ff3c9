#include "AnimationLookup.hpp"

#include <algorithm>
#include <span>
#include <string>

#include "TextFields.hpp"

namespace port {
namespace {

// Ten minutes: as good as for ever.
constexpr int kLongestDuration = 36000;
constexpr int kDeathTicks = 30;
constexpr int kPlayDeathAnimation = 2;

enum AttackType { kFirstNumbered = 2, kLastNumbered = 999, kBurn = 1002, kShock = 1004 };

std::span<const generated::Animation> animationsOf(const generated::Character* model) {
    if (!model) return {};
    return {model->animations, model->animationCount};
}

}  // namespace

const generated::Character* findCharacter(const char* name) {
    if (!name) return nullptr;
    for (const generated::Character& model :
         std::span(generated::kCharacters, generated::kCharacterCount)) {
        if (equalsFolded(model.modelName, name) || equalsFolded(model.name, name)) return &model;
    }
    return nullptr;
}

const generated::Animation* exactAnimation(const generated::Character* model,
                                           std::string_view wanted) {
    for (const generated::Animation& animation : animationsOf(model)) {
        if (equalsFolded(animation.name, wanted)) return &animation;
    }
    return nullptr;
}

const generated::Animation* findAnimation(const generated::Character* model,
                                          std::string_view preferred) {
    const auto animations = animationsOf(model);
    if (animations.empty()) return nullptr;
    for (const generated::Animation& animation : animations) {
        const bool matches =
            preferred.empty() ? *animation.name == '\0' : containsFolded(animation.name, preferred);
        if (matches) return &animation;
    }
    return &animations.front();
}

const generated::Animation* findActionAnimation(const generated::Character* base,
                                                const generated::Character* weapon,
                                                std::string_view preferred) {
    if (weapon) {
        if (const auto* own = exactAnimation(weapon, preferred)) return own;
        if (keepsBaseAnimationsOut(*weapon)) return nullptr;
    }
    return findAnimation(base, preferred);
}

bool keepsBaseAnimationsOut(const generated::Character& weapon) {
    constexpr unsigned kOwnAnimationsOnly = 1;
    return (static_cast<unsigned>(weapon.modelCopyFlags) & kOwnAnimationsOnly) != 0;
}

const generated::Animation* followAnimationFor(const generated::Character* model,
                                               const generated::Animation* source) {
    if (!source || source->followAnim <= 0) return nullptr;
    return exactAnimation(model, "follow" + std::to_string(source->followAnim));
}

const generated::Animation* reactionAnimation(const generated::Character* model,
                                              std::string_view base, int attackType) {
    const bool pain = base == "pain";
    const bool fall = base == "fall";
    const generated::Animation* special = nullptr;
    if (attackType == kShock && pain) special = exactAnimation(model, "spain");
    if (attackType == kShock && fall) special = exactAnimation(model, "shock");
    if (attackType == kBurn && pain) special = exactAnimation(model, "bpain");
    if (attackType == kBurn && (pain || fall) && !special) special = exactAnimation(model, "burn");
    if (attackType == kBurn && fall && !special) special = exactAnimation(model, "bfell");
    if (attackType >= kFirstNumbered && attackType <= kLastNumbered) {
        special = exactAnimation(model, std::string(base) + std::to_string(attackType));
    }
    return special ? special : exactAnimation(model, base);
}

int animationDuration(const generated::Animation* animation, std::size_t first) {
    if (!animation || first >= animation->frameCount) return 1;
    int ticks = 1;
    for (const generated::Frame& frame :
         std::span(animation->frames, animation->frameCount).subspan(first)) {
        if (frame.delay < 0 || frame.delay >= kLongestDuration - ticks) return kLongestDuration;
        ticks += std::max(1, frame.delay);
    }
    return ticks;
}

int deathDuration(const generated::Character& model, const generated::Animation* animation) {
    return model.noDieBlink == kPlayDeathAnimation ? animationDuration(animation) : kDeathTicks;
}

}  // namespace port
