// A game of two models, by hand: an enemy that stands first and a player.

#include "generated/GeneratedCharacters.hpp"

#include <array>

namespace generated {
namespace {

constexpr Frame frameOf(int delay) {
    Frame frame{};
    frame.sprite = "";
    frame.delay = delay;
    return frame;
}

constexpr std::array kFrames = {frameOf(2), frameOf(2)};

constexpr Animation animationOf(const char* name) {
    Animation animation{};
    animation.name = name;
    animation.frames = kFrames.data();
    animation.frameCount = kFrames.size();
    return animation;
}

constexpr std::array kHeroAnimations = {animationOf("JumpAttack"), animationOf("Walk"),
                                        animationOf("attack"), animationOf("Idle")};

constexpr Character characterOf(const char* name, const char* type, int health) {
    Character character{};
    character.modelName = name;
    character.name = name;
    character.type = type;
    character.health = health;
    character.animations = kHeroAnimations.data();
    character.animationCount = kHeroAnimations.size();
    return character;
}

}  // namespace

const Character kCharacters[] = {characterOf("Robot", "enemy", 50),
                                 characterOf("Hero", "Player", 120)};
const std::size_t kCharacterCount = std::size(kCharacters);

}  // namespace generated
