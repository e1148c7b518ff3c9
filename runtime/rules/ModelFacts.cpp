#include "ModelFacts.hpp"

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "AnimationLookup.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

struct TypeName {
    std::string_view name;
    ModelTypeBit bit;
};

constexpr TypeName kTypeNames[] = {
    {"none", kTypeNone},       {"player", kTypePlayer},     {"enemy", kTypeEnemy},
    {"item", kTypeItem},       {"obstacle", kTypeObstacle}, {"projectile", kTypeProjectile},
    {"steamer", kTypeSteamer}, {"shot", kTypeShot},         {"trap", kTypeTrap},
    {"textbox", kTypeTextbox}, {"endlevel", kTypeEndlevel}, {"npc", kTypeNpc},
    {"panel", kTypePanel}};

bool hasPlatform(const generated::Character& model) {
    return std::ranges::any_of(
        std::span(model.animations, model.animationCount), [](const auto& animation) {
            return std::ranges::any_of(std::span(animation.frames, animation.frameCount),
                                       &generated::Frame::hasPlatform);
        });
}

bool mayCarryPlatform(const generated::Character& model) {
    return hasPlatform(model) ||
           std::ranges::any_of(std::span(model.weapons, model.weaponCount), [](const char* name) {
               const auto* weapon = findCharacter(name);
               return weapon && hasPlatform(*weapon);
           });
}

ModelFacts workOut(const generated::Character& model) {
    ModelFacts facts;
    for (const TypeName& type : kTypeNames) {
        if (equalsFolded(model.type, type.name)) facts.typeBit = type.bit;
    }
    constexpr int kAuxiliaryTypes = kTypeNone | kTypeProjectile | kTypeShot;
    facts.auxiliary = *model.type == '\0' || (facts.typeBit & kAuxiliaryTypes) != 0;
    facts.followsParent = containsFolded(model.subtype, "follow");
    facts.isWeaponItem = facts.typeBit == kTypeItem || containsFolded(model.subtype, "weapon") ||
                         containsFolded(model.subtype, "projectile");
    facts.mayCarryPlatform = mayCarryPlatform(model);
    return facts;
}

}  // namespace

ModelFacts factsOf(const generated::Character& model) {
    static const std::vector<ModelFacts> kOfTable = [] {
        std::vector<ModelFacts> all;
        for (const generated::Character& row :
             std::span(generated::kCharacters, generated::kCharacterCount)) {
            all.push_back(workOut(row));
        }
        return all;
    }();
    const std::less<> before;
    const bool inTable = !before(&model, generated::kCharacters) &&
                         before(&model, generated::kCharacters + generated::kCharacterCount);
    return inTable ? kOfTable[static_cast<std::size_t>(&model - generated::kCharacters)]
                   : workOut(model);
}

int openborTypeBit(const generated::Character* model) {
    return model ? factsOf(*model).typeBit : 0;
}

}  // namespace port
