// What scripts let enter the stage.

#include <algorithm>

#include "AnimationLookup.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"
#include "ModelFacts.hpp"
#include "Projectiles.hpp"
#include "Spawning.hpp"

namespace port::host {
namespace {

using generated::Character;

// --- The entry of the next spawn

struct EntryRow {
    std::string_view key;
    void (*write)(HostCall&, ScriptSpawnEntry&);
};

// A longer text names nothing.
std::string entryText(HostCall& call, std::size_t index) {
    return call.text(index).substr(0, script::kMaxSpawnName);
}

template <auto Field>
void writeText(HostCall& call, ScriptSpawnEntry& entry) {
    entry.*Field = entryText(call, 1);
}

template <auto Field>
void writePlace(HostCall& call, ScriptSpawnEntry& entry) {
    entry.*Field = call.pixels(1);
}

void writeCoords(HostCall& call, ScriptSpawnEntry& entry) {
    entry.x = call.pixels(1);
    entry.z = call.pixels(2);
    entry.a = call.pixels(3);
}

constexpr auto kEntryRows = sortedTable(
    std::to_array<EntryRow>({
        {"name", writeText<&ScriptSpawnEntry::model>},
        {"model", writeText<&ScriptSpawnEntry::model>},
        {"alias", writeText<&ScriptSpawnEntry::alias>},
        {"item", writeText<&ScriptSpawnEntry::item>},
        {"map", writeText<&ScriptSpawnEntry::map>},
        {"colourmap", writeText<&ScriptSpawnEntry::map>},
        {"colormap", writeText<&ScriptSpawnEntry::map>},
        {"health", [](HostCall& call, ScriptSpawnEntry& entry) { entry.health = call.integer(1); }},
        {"boss", [](HostCall& call, ScriptSpawnEntry& entry) { entry.boss = call.flag(1); }},
        {"x", writePlace<&ScriptSpawnEntry::x>},
        {"z", writePlace<&ScriptSpawnEntry::z>},
        {"a", writePlace<&ScriptSpawnEntry::a>},
        {"altitude", writePlace<&ScriptSpawnEntry::a>},
        {"coords", writeCoords},
    }),
    &EntryRow::key);

// --- Entities

// How one of a model enters.
struct Entrance {
    float x = 0, z = 0, a = 0;  // a: upward
    int health = 0;             // 0: the model's
    int facing = 0;             // 0: as entities come, to the left
    int palette = 0;
};

RuntimeEntity enteringEntity(const Character& model, const Entrance& entrance) {
    RuntimeEntity entity = entityOf(&model);
    entity.worldX = entrance.x;
    entity.z = entrance.z;
    entity.altitude = 0 - std::max(0.0F, entrance.a);
    if (entrance.health > 0) entity.health = entity.maxHealth = entrance.health;
    if (entrance.facing != 0) entity.facing = entrance.facing;
    entity.paletteMap = entrance.palette;
    entity.guardPoints = model.guardPoints;
    startFirstOf(entity.animation, model, {"idle"});
    return entity;
}

ScriptValue enter(HostCall& call, const Character* model, const Entrance& entrance) {
    call.charge(script::kSpawnSteps);
    if (!model) return kNobody;
    RuntimeEntity* entity = call.world().entities.add(enteringEntity(*model, entrance));
    if (!entity) return kNobody;
    call.tick.scripts.runHook(model->onSpawnScript, entity->scriptCtx, "script-spawn-onspawn");
    return entity->handle;
}

// (model, dx, da, dz) from the caller.
bool beside(HostCall& call, const Actor*& caller, Entrance& entrance, bool ahead) {
    caller = std::as_const(call.world()).find(call.caller());
    if (!caller || call.count() < 4) return false;
    const float side = ahead ? static_cast<float>(caller->facing) : 1;
    entrance.x = caller->worldX + call.pixels(1) * side;
    entrance.a = call.pixels(2) - caller->altitude;
    entrance.z = caller->z + call.pixels(3);
    if (ahead) entrance.facing = caller->facing;
    return true;
}

// --- Projectiles

bool fightsForPlayers(const Actor* owner) {
    if (!owner || isPlayer(*owner)) return owner != nullptr;
    return (openborTypeBit(owner->model) & (kTypePlayer | kTypeNpc)) != 0;
}

// How it flies off: the model's speed ahead, and a bomb upward too.
void launch(Shot& shot) {
    constexpr float kNoSpeed = 0.01F;
    constexpr float kUsualSpeed = 2;
    shot.vx = std::max(0.0F, shot.model->speed);
    if (!shot.bomb && shot.vx < kNoSpeed) shot.vx = kUsualSpeed;
    if (shot.bomb) shot.vy = static_cast<float>(std::max(1, shot.model->jumpHeight));
}

}  // namespace

ScriptValue clearSpawnEntry(HostCall& call) {
    call.world().scripted.spawnEntry = {};
    return true;
}

ScriptValue known::entryKey(HostCall& call) {
    return resolveRow(kEntryRows, &EntryRow::key, call, 0);
}

ScriptValue setSpawnEntry(HostCall& call) {
    const EntryRow* row = namedRow(kEntryRows, &EntryRow::key, call, 0);
    if (!row) return false;
    row->write(call, call.world().scripted.spawnEntry);
    return true;
}

ScriptValue spawnEntry(HostCall& call) {
    const World& world = call.world();
    const ScriptSpawnEntry& entry = world.scripted.spawnEntry;
    const float middle = world.camera.x + static_cast<float>(call.tick.config.logicalWidth) / 2;
    Entrance entrance{entry.x == 0 ? middle : entry.x, entry.z, entry.a};
    entrance.health = entry.health;
    entrance.palette = std::max(0, leadingInt(entry.map).value_or(0));
    call.chargeScan(generated::kCharacterCount);
    return enter(call, findCharacter(entry.model.c_str()), entrance);
}

ScriptValue spawnAhead(HostCall& call) {
    const Actor* caller = nullptr;
    Entrance entrance;
    if (!beside(call, caller, entrance, true)) return kNobody;
    return enter(call, call.model(0), entrance);
}

ScriptValue spawnAheadInColours(HostCall& call) {
    const Actor* caller = nullptr;
    Entrance entrance;
    if (!beside(call, caller, entrance, true)) return kNobody;
    entrance.palette = caller->paletteMap;
    return enter(call, call.model(0), entrance);
}

ScriptValue spawnBeside(HostCall& call) {
    const Actor* caller = nullptr;
    Entrance entrance;
    if (!beside(call, caller, entrance, false)) return kNobody;
    return enter(call, call.model(0), entrance);
}

// ([relative,] model, x, z, a, direction, pytype, type, map). A kind of flight other than 0 leaves
// it to the projectile itself to move.
ScriptValue shootProjectile(HostCall& call) {
    if (call.count() != 8 && call.count() != 9) {
        call.tag("projectile-arguments");
        return kNobody;
    }
    const std::size_t first = call.count() - 8;
    const bool relative = first == 1 && call.flag(0);
    Shot shot;
    shot.model = call.model(first);
    if (!shot.model) {
        call.tag("projectile-model");
        return kNobody;
    }
    call.charge(script::kSpawnSteps);
    const Actor* owner = std::as_const(call.world()).find(call.caller());
    shot.owner = owner ? owner->model : nullptr;
    shot.fromPlayer = fightsForPlayers(owner);
    shot.x = call.pixels(first + 1);
    shot.z = call.pixels(first + 2);
    shot.altitude = 0 - call.pixels(first + 3);
    shot.facing = call.flag(first + 4) ? 1 : -1;
    shot.bomb = call.integer(first + 6) == 1;
    if (!call.flag(first + 5)) launch(shot);
    if (relative && owner) {
        shot.x = owner->worldX + shot.x * static_cast<float>(shot.facing);
        shot.z += owner->z;
        shot.altitude += owner->altitude;
    }
    return spawnProjectile(call.tick, shot) ? ActorHandle{1} : kNobody;
}

}  // namespace port::host
