#include "HostModels.hpp"

#include "HostFunctions.hpp"
#include "KeyTable.hpp"
#include "ModelFacts.hpp"
#include "ScriptHandles.hpp"

namespace port::host {
namespace {

using generated::Character;

struct ModelRow {
    std::string_view key;
    ScriptValue (*read)(const Character&);
};

template <auto Field>
ScriptValue field(const Character& model) {
    return scriptValue(model.*Field);
}

constexpr auto kModelRows =
    sortedTable(std::to_array<ModelRow>({
                    {"name", field<&Character::name>},
                    {"type", field<&Character::type>},
                    {"subtype", field<&Character::subtype>},
                    {"health", field<&Character::health>},
                    {"hp", field<&Character::health>},
                    {"speed", field<&Character::speed>},
                    {"runspeed", field<&Character::runSpeed>},
                    {"grabdistance", field<&Character::grabDistance>},
                    {"jugglepoints", field<&Character::jugglePoints>},
                    {"blockodds", field<&Character::blockOdds>},
                    {"blockpain", field<&Character::blockPain>},
                    {"blockthreshold", field<&Character::blockThreshold>},
                    {"guardpoints", field<&Character::guardPoints>},
                    {"guardrate", field<&Character::guardRate>},
                    {"aggression", field<&Character::aggression>},
                    {"stealth", field<&Character::stealth>},
                    {"perception", field<&Character::perception>},
                    {"aiattack", field<&Character::aiAttack>},
                    {"aimove", field<&Character::aiMove>},
                    {"candamage", field<&Character::canDamageMask>},
                    {"hostile", field<&Character::hostileMask>},
                    {"projectilehit", field<&Character::projectileHitMask>},
                    {"nograb", field<&Character::noGrab>},
                    {"grabforce", field<&Character::grabForce>},
                    {"grabresistance", field<&Character::grabResistance>},
                    {"throwdamage", field<&Character::throwDamage>},
                    {"throwdist", field<&Character::throwDistance>},
                    {"throwheight", field<&Character::throwHeight>},
                    {"bounce", field<&Character::bounce>},
                    {"bouncefactor", field<&Character::bounceFactor>},
                    {"subject_to_gravity", field<&Character::subjectToGravity>},
                }),
                &ModelRow::key);

// By name, by its own handle, or the one of an actor.
const Character* modelOf(HostCall& call) {
    if (std::holds_alternative<ScriptText>(call.value(0))) return call.model(0);
    if (const Character* model = modelOfHandle(call.handle(0))) return model;
    const Actor* actor = call.actor(0);
    return actor ? actor->model : nullptr;
}

}  // namespace

ScriptValue modelHandle(const Character* model) {
    const std::size_t row = model ? rowOf(*model) : generated::kCharacterCount;
    return row < generated::kCharacterCount ? kFirstModelHandle + row : std::uintptr_t{0};
}

const Character* modelOfHandle(std::uintptr_t handle) {
    if (handle < kFirstModelHandle) return nullptr;
    const std::size_t row = handle - kFirstModelHandle;
    return row < generated::kCharacterCount ? &generated::kCharacters[row] : nullptr;
}

ScriptValue known::modelKey(HostCall& call) {
    return resolveRow(kModelRows, &ModelRow::key, call, 1);
}

// Empty for a key that models have not.
ScriptValue getModelProperty(HostCall& call) {
    const Character* model = modelOf(call);
    const ModelRow* row = namedRow(kModelRows, &ModelRow::key, call, 1);
    return model && row ? row->read(*model) : ScriptValue();
}

}  // namespace port::host
