#include "AnimationLookup.hpp"

#include <span>
#include <string>

#include "TextFields.hpp"

namespace port {
namespace {

std::span<const generated::Animation> animationsOf(const generated::Character* model) {
    if (!model) return {};
    return {model->animations, model->animationCount};
}

}  // namespace

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
    const std::string wanted = foldAscii(preferred);
    for (const generated::Animation& animation : animations) {
        const std::string name = foldAscii(animation.name);
        if (name == wanted || (!wanted.empty() && name.find(wanted) != name.npos)) {
            return &animation;
        }
    }
    return &animations.front();
}

}  // namespace port
