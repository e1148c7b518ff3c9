#include "ModelFacts.hpp"

#include <functional>
#include <span>
#include <string_view>
#include <vector>

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

ModelFacts workOut(const generated::Character& model) {
    ModelFacts facts;
    for (const TypeName& type : kTypeNames) {
        if (equalsFolded(model.type, type.name)) facts.typeBit = type.bit;
    }
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
