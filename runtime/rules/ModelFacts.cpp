#include "ModelFacts.hpp"

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "TableDerived.hpp"
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

const std::vector<const generated::Character*>& modelsWithPlatforms() {
    return derivedFromTables([] {
        std::vector<const generated::Character*> all;
        for (const generated::Character& row :
             std::span(generated::kCharacters, generated::kCharacterCount)) {
            if (hasPlatform(row)) all.push_back(&row);
        }
        return all;
    });
}

bool mayCarryPlatform(const generated::Character& model) {
    const auto isWeapon = [&model](const generated::Character* row) {
        return std::ranges::any_of(
            std::span(model.weapons, model.weaponCount), [row](const char* name) {
                return equalsFolded(row->modelName, name) || equalsFolded(row->name, name);
            });
    };
    return hasPlatform(model) || std::ranges::any_of(modelsWithPlatforms(), isWeapon);
}

// Texts of a table are never null; those of a model that is made by hand may be.
std::string_view textOf(const char* text) {
    return text ? text : "";
}

ModelFacts workOut(const generated::Character& model) {
    const std::string_view typeName = textOf(model.type);
    const std::string_view subtype = textOf(model.subtype);
    ModelFacts facts;
    for (const TypeName& type : kTypeNames) {
        if (equalsFolded(typeName, type.name)) facts.typeBit = type.bit;
    }
    constexpr int kAuxiliaryTypes = kTypeNone | kTypeProjectile | kTypeShot;
    facts.auxiliary = typeName.empty() || (facts.typeBit & kAuxiliaryTypes) != 0;
    facts.followsParent = containsFolded(subtype, "follow");
    facts.isWeaponItem = model.weaponNumber > 0 &&
                         (facts.typeBit == kTypeItem || containsFolded(subtype, "weapon") ||
                          containsFolded(subtype, "projectile"));
    facts.mayCarryPlatform = mayCarryPlatform(model);
    return facts;
}

}  // namespace

std::size_t rowOf(const generated::Character& model) {
    const std::less<> before;
    const bool inTable = !before(&model, generated::kCharacters) &&
                         before(&model, generated::kCharacters + generated::kCharacterCount);
    return inTable ? static_cast<std::size_t>(&model - generated::kCharacters)
                   : generated::kCharacterCount;
}

ModelFacts factsOf(const generated::Character& model) {
    const auto& ofTable = derivedFromTables([] {
        std::vector<ModelFacts> all;
        for (const generated::Character& row :
             std::span(generated::kCharacters, generated::kCharacterCount)) {
            all.push_back(workOut(row));
        }
        return all;
    });
    const std::size_t row = rowOf(model);
    return row < ofTable.size() ? ofTable[row] : workOut(model);
}

int openborTypeBit(const generated::Character* model) {
    return model ? factsOf(*model).typeBit : 0;
}

}  // namespace port
