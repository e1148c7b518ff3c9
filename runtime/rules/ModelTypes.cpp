#include "ModelTypes.hpp"

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

}  // namespace

int openborTypeBit(const generated::Character* model) {
    if (!model) return 0;
    for (const TypeName& type : kTypeNames) {
        if (equalsFolded(model->type, type.name)) return type.bit;
    }
    return 0;
}

}  // namespace port
