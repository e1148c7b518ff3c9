// What actors are, as scripts read and change it.

#include <algorithm>
#include <cstdint>

#include "AnimationLookup.hpp"
#include "HostFunctions.hpp"
#include "HostModels.hpp"
#include "KeyTable.hpp"
#include "Movement.hpp"
#include "PlayerMotion.hpp"

namespace port::host {
namespace {

enum class Whose : std::uint8_t { Everyone, Players, Entities };

// Values to be written begin with the third argument. No write: it is only read, or the other way
// round.
struct ActorRow {
    std::string_view key;
    ScriptValue (*read)(HostCall&, const Actor&);
    void (*write)(HostCall&, Actor&) = nullptr;
    Whose whose = Whose::Everyone;
};

constexpr std::size_t kValue = 2;

const RuntimeEntity& asEntity(const Actor& actor) {
    return static_cast<const RuntimeEntity&>(actor);
}

// --- Reading

template <auto Field>
ScriptValue actorField(HostCall& /*call*/, const Actor& actor) {
    return scriptValue(static_cast<double>(actor.*Field));
}

// A field of the actor's model; empty without one.
template <auto Field>
ScriptValue ofModel(HostCall& /*call*/, const Actor& actor) {
    return actor.model ? scriptValue(actor.model->*Field) : ScriptValue();
}

ScriptValue readAltitude(HostCall& /*call*/, const Actor& actor) {
    return scriptUpward(actor.altitude);
}

ScriptValue readRise(HostCall& /*call*/, const Actor& actor) {
    return scriptUpward(actor.verticalVelocity);
}

ScriptValue readAntigravity(HostCall& /*call*/, const Actor& actor) {
    return static_cast<double>(actorAntigravity(actor));
}

ScriptValue readDirection(HostCall& /*call*/, const Actor& actor) {
    return actor.facing < 0 ? 0.0 : 1.0;
}

ScriptValue readModelHandle(HostCall& /*call*/, const Actor& actor) {
    return modelHandle(actor.model);
}

ScriptValue readFrame(HostCall& /*call*/, const Actor& actor) {
    return static_cast<double>(actor.animation.frameIndex());
}

ScriptValue readAnimating(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(!actor.animation.finished());
}

ScriptValue readAnimation(HostCall& /*call*/, const Actor& actor) {
    const generated::Animation* animation = actor.animation.animation();
    return scriptValue(animation ? animation->name : "");
}

ScriptValue readAttacking(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(actor.attackTicks > 0);
}

ScriptValue readExists(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(isPlayer(actor) ? actor.alive : asEntity(actor).visible);
}

ScriptValue readDead(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(!actor.alive);
}

ScriptValue readSlot(HostCall& /*call*/, const Actor& actor) {
    return static_cast<double>(actor.handle - kPlayer1Handle);
}

ScriptValue readSubjectToScreen(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(asEntity(actor).subjectToScreen);
}

bool isInTheAir(HostCall& call, const Actor& actor) {
    const World& world = call.world();
    call.chargeScan(world.roster.carriers.size());
    return actor.altitude < groundUnder(world, actor) - kOffGround;
}

bool isFalling(const World& world, const Actor& actor) {
    if (!isPlayer(actor)) return asEntity(actor).fallTicks > 0;
    return actor.handle == kPlayer1Handle && world.player1.fallTicks > 0;
}

ScriptValue readPlayerFlag(HostCall& call, const Actor& actor) {
    const FoldedKey flag(call.text(kValue));
    const bool inTheAir = isInTheAir(call, actor);
    if (flag == "drop") return scriptTruth(inTheAir || isFalling(call.world(), actor));
    if (flag == "falling") return scriptTruth(inTheAir);
    return {};
}

ScriptValue readEntityFlag(HostCall& call, const Actor& actor) {
    const FoldedKey flag(call.text(kValue));
    const bool inTheAir = isInTheAir(call, actor);
    if (flag == "drop") return scriptTruth(inTheAir || isFalling(call.world(), actor));
    if (flag == "falling") return scriptTruth(inTheAir && actor.verticalVelocity > 0);
    if (flag == "attacking") return readAttacking(call, actor);
    return {};
}

// --- Writing

template <auto Field>
void writeInteger(HostCall& call, Actor& actor) {
    actor.*Field = call.integer(kValue);
}

template <auto Field>
void writePixels(HostCall& call, Actor& actor) {
    actor.*Field = call.pixels(kValue);
}

void writeAltitude(HostCall& call, Actor& actor) {
    actor.altitude = 0 - call.pixels(kValue);
}

// Only for whoever names the actor: a script's own 0 means nobody here.
void writeAntigravity(HostCall& call, Actor& actor) {
    if (call.handle(0) == kNobody) return;
    actor.hasScriptAntigravity = true;
    actor.scriptAntigravity = call.pixels(kValue);
}

void writeAnimation(HostCall& call, Actor& actor) {
    if (actor.model) call.chargeScan(actor.model->animationCount);
    startAnimation(actor, findAnimation(actor.model, call.text(kValue)));
}

void writePosition(HostCall& call, Actor& actor) {
    if (call.isNumeric(kValue)) actor.worldX = call.pixels(kValue);
    if (call.isNumeric(kValue + 1)) actor.z = call.pixels(kValue + 1);
    if (call.isNumeric(kValue + 2)) actor.altitude = 0 - call.pixels(kValue + 2);
}

void writeVelocity(HostCall& call, Actor& actor) {
    if (call.isNumeric(kValue)) actor.scriptVelocityX = call.pixels(kValue);
    if (call.isNumeric(kValue + 1)) actor.scriptVelocityZ = call.pixels(kValue + 1);
    if (call.isNumeric(kValue + 2)) actor.verticalVelocity = 0 - call.pixels(kValue + 2);
}

void writeHealth(HostCall& call, Actor& actor) {
    actor.health = std::clamp(call.integer(kValue), 0, std::max(0, actor.maxHealth));
}

void writeMaxHealth(HostCall& call, Actor& actor) {
    actor.maxHealth = std::max(1, call.integer(kValue));
    actor.health = std::min(actor.health, actor.maxHealth);
}

void writeDirection(HostCall& call, Actor& actor) {
    actor.facing = call.flag(kValue) ? 1 : -1;
}

// Seen at once, unless the frame has colours of its own.
void writeColours(HostCall& call, Actor& actor) {
    actor.paletteMap = std::max(0, call.integer(kValue));
    const generated::Frame* frame = actor.shown.frame;
    if (frame && frame->draw.remap <= 0) actor.shown.palette = actor.paletteMap;
}

void writeSubjectToScreen(HostCall& call, Actor& actor) {
    static_cast<RuntimeEntity&>(actor).subjectToScreen = call.flag(kValue);
}

using generated::Character;

constexpr auto kActorRows = sortedTable(
    std::to_array<ActorRow>({
        {"x", actorField<&Actor::worldX>, writePixels<&Actor::worldX>},
        {"z", actorField<&Actor::z>, writePixels<&Actor::z>},
        {"a", readAltitude, writeAltitude},
        {"altitude", readAltitude, writeAltitude},
        {"position", nullptr, writePosition},
        {"direction", readDirection, writeDirection},
        {"xdir", actorField<&Actor::scriptVelocityX>},
        {"zdir", actorField<&Actor::scriptVelocityZ>},
        {"tossv", readRise},
        {"velocityy", readRise},
        {"velocity", nullptr, writeVelocity},
        {"antigravity", readAntigravity, writeAntigravity},

        {"health", actorField<&Actor::health>, writeHealth},
        {"maxhealth", actorField<&Actor::maxHealth>, writeMaxHealth},
        {"blockstate", actorField<&Actor::blockState>, writeInteger<&Actor::blockState>},
        {"guardpoints", actorField<&Actor::guardPoints>, writeInteger<&Actor::guardPoints>},
        {"attacking", readAttacking},
        {"exists", readExists},
        {"dead", readDead},
        {"aiflag", readPlayerFlag, nullptr, Whose::Players},
        {"aiflag", readEntityFlag, nullptr, Whose::Entities},
        {"playerindex", readSlot, nullptr, Whose::Players},
        {"subject_to_screen", readSubjectToScreen, writeSubjectToScreen, Whose::Entities},

        {"animation", readAnimation, writeAnimation},
        {"animationid", readAnimation, writeAnimation},
        {"animpos", readFrame},
        {"animationposition", readFrame},
        {"animating", readAnimating},
        {"colourmap", actorField<&Actor::paletteMap>, writeColours},
        {"colormap", actorField<&Actor::paletteMap>, writeColours},
        {"map", actorField<&Actor::paletteMap>, writeColours},

        {"name", ofModel<&Character::name>},
        {"model", ofModel<&Character::name>},
        {"modelptr", readModelHandle},
        {"type", ofModel<&Character::type>},
        {"subtype", ofModel<&Character::subtype>},
        {"speed", ofModel<&Character::speed>},
        {"aggression", ofModel<&Character::aggression>},
        {"stealth", ofModel<&Character::stealth>},
        {"perception", ofModel<&Character::perception>},
        {"aiattack", ofModel<&Character::aiAttack>},
        {"aimove", ofModel<&Character::aiMove>},
        {"candamage", ofModel<&Character::canDamageMask>},
        {"hostile", ofModel<&Character::hostileMask>},
        {"projectilehit", ofModel<&Character::projectileHitMask>},
        {"grabforce", ofModel<&Character::grabForce>},
        {"grabresistance", ofModel<&Character::grabResistance>},
    }),
    &ActorRow::key);

// Null for a key that this kind of actor has not.
const ActorRow* rowFor(const Actor& actor, const FoldedKey& key) {
    const Whose other = isPlayer(actor) ? Whose::Entities : Whose::Players;
    const std::string_view wanted = key;
    auto row = std::ranges::lower_bound(kActorRows, wanted, {}, &ActorRow::key);
    while (row != kActorRows.end() && row->key == wanted && row->whose == other) ++row;
    return row != kActorRows.end() && row->key == wanted ? &*row : nullptr;
}

}  // namespace

ScriptValue getActorProperty(HostCall& call) {
    const FoldedKey key(call.text(1));
    const Actor* actor = call.actor(0);
    // Scripts keep handles of those who have gone, and ask so whether they have.
    if (!actor) return key == "exists" ? ScriptValue(0.0) : ScriptValue();
    const ActorRow* row = rowFor(*actor, key);
    return row && row->read ? row->read(call, *actor) : ScriptValue();
}

ScriptValue setActorProperty(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return {};
    const ActorRow* row = rowFor(*actor, FoldedKey(call.text(1)));
    if (row && row->write) row->write(call, *actor);
    return call.value(kValue);
}

}  // namespace port::host
