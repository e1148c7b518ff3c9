#pragma once

// One model of the game: the header of an entity file, its animations and their frames.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// Attack types: 1 the plain attack, n the numbered "attackN", and the special ones below.
enum AttackType : std::int32_t {
    kAttackBlast = 1001,
    kAttackBurn = 1002,
    kAttackFreeze = 1003,
    kAttackShock = 1004,
    kAttackSteal = 1005,
};

// BoxDef to ModelDef, plain structures of the fields listed there.
#define RECORD(Row, Record) struct Record {
#define FIELD(type, name, value) type name = value;
#define NESTED(Row, name) Row##Def name;
#define LIST(element, name, count, array) std::vector<element> name;
#define OPTIONAL_LIST LIST
#define OWN FIELD
// clang-format off
#define END_RECORD };
// clang-format on
#include "reader/Characters.def"

// All script paths of a model, with the keyword that sets each.
struct ModelScript {
    std::string_view keyword;
    std::string ModelDef::*path;
};
inline constexpr ModelScript kModelScripts[] = {
    {"thinkscript", &ModelDef::thinkScript},
    {"updatescript", &ModelDef::updateScript},
    {"keyscript", &ModelDef::keyScript},
    {"onmovexscript", &ModelDef::onMoveXScript},
    {"onmovezscript", &ModelDef::onMoveZScript},
    {"onblockascript", &ModelDef::onBlockAScript},
    {"onblockyscript", &ModelDef::onBlockYScript},
    {"onblockzscript", &ModelDef::onBlockZScript},
    {"onblocksscript", &ModelDef::onBlockSScript},
    {"onblockwscript", &ModelDef::onBlockWScript},
    {"onblockoscript", &ModelDef::onBlockOScript},
    {"onblockpscript", &ModelDef::onBlockPScript},
    {"didblockscript", &ModelDef::didBlockScript},
    {"ondoattack", &ModelDef::onDoAttackScript},
    {"onkillscript", &ModelDef::onKillScript},
    {"onentitycollision", &ModelDef::onEntityCollisionScript},
    {"onmodelcopy", &ModelDef::onModelCopyScript},
    {"animationscript", &ModelDef::animationScript},
    {"takedamagescript", &ModelDef::takeDamageScript},
    {"didhitscript", &ModelDef::didHitScript},
    {"ondrawscript", &ModelDef::onDrawScript},
    {"onspawnscript", &ModelDef::onSpawnScript},
    {"ondeathscript", &ModelDef::onDeathScript},
    {"onpainscript", &ModelDef::onPainScript},
    {"onfallscript", &ModelDef::onFallScript},
};

}  // namespace tindrel
