#include "HostProperties.hpp"

// What actors are, as scripts read and change it.

#include <algorithm>
#include <climits>
#include <cstdint>
#include <utility>

#include "AnimationLookup.hpp"
#include "HostFunctions.hpp"
#include "HostModels.hpp"
#include "KeyTable.hpp"
#include "Movement.hpp"
#include "PlayerMotion.hpp"

namespace port::host {
namespace {

enum class Whose : std::uint8_t { Everyone, Players, Entities };

// Values to be written begin with the third argument.
struct ActorRow {
    std::string_view key;
    ScriptValue (*read)(HostCall&, const Actor&);
    void (*write)(HostCall&, Actor&);
    Whose whose;
    bool mended;
};

constexpr std::size_t kValue = 2;

const RuntimeEntity& asEntity(const Actor& actor) {
    return static_cast<const RuntimeEntity&>(actor);
}

// --- Reading

template <auto Field>
ScriptValue readField(HostCall& /*call*/, const Actor& actor) {
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

ScriptValue readBase(HostCall& call, const Actor& actor) {
    call.chargeScan(call.world().roster.carriers.size());
    return scriptUpward(groundUnder(call.world(), actor));
}

template <Bound kBound>
ScriptValue readBound(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(isHeldBy(actor, kBound));
}

ScriptValue readInvincible(HostCall& /*call*/, const Actor& actor) {
    return scriptTruth(actor.invincibleTicks > 0);
}

// As scripts count time: the tick at which it ends.
ScriptValue readInvincibleUntil(HostCall& call, const Actor& actor) {
    if (actor.invincibleTicks <= 0) return 0.0;
    return static_cast<double>(call.world().tick) + actor.invincibleTicks;
}

// The handle where it names somebody; nobody for one who has gone.
ScriptValue somebody(HostCall& call, ActorHandle handle) {
    const Actor* actor = std::as_const(call.world()).find(handle);
    return actor ? actor->handle : kNobody;
}

ScriptValue readOpponent(HostCall& call, const Actor& actor) {
    return somebody(call, actor.opponent);
}

// Only player 1 grabs.
ScriptValue readGrabbing(HostCall& call, const Actor& actor) {
    if (actor.handle != kPlayer1Handle) return kNobody;
    return somebody(call, static_cast<const Player1&>(actor).grabbedEntity);
}

ScriptValue readParent(HostCall& call, const Actor& actor) {
    return somebody(call, asEntity(actor).parentHandle);
}

ScriptValue readHasAnimation(HostCall& call, const Actor& actor) {
    if (!actor.model) return 0.0;
    call.chargeScan(actor.model->animationCount);
    return scriptTruth(exactAnimation(actor.model, call.text(kValue)) != nullptr);
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

void writeBoundOf(HostCall& call, Actor& actor, Bound bound) {
    actor.scriptedBounds |= bound;
    actor.heldBounds = call.flag(kValue) ? actor.heldBounds | bound : actor.heldBounds & ~bound;
}

template <Bound kBound>
void writeBound(HostCall& call, Actor& actor) {
    writeBoundOf(call, actor, kBound);
}

void writeMp(HostCall& call, Actor& actor) {
    actor.mp = std::clamp(call.integer(kValue), 0, std::max(0, actor.maxMp));
}

void writeMaxMp(HostCall& call, Actor& actor) {
    actor.maxMp = std::max(0, call.integer(kValue));
    actor.mp = std::min(actor.mp, actor.maxMp);
}

void writeScore(HostCall& call, Actor& actor) {
    actor.score = std::max(0, call.integer(kValue));
}

// Until a script says otherwise: no game lasts so long.
void writeInvincible(HostCall& call, Actor& actor) {
    actor.invincibleTicks = call.flag(kValue) ? INT_MAX : 0;
}

void writeInvincibleUntil(HostCall& call, Actor& actor) {
    const double ticks = call.number(kValue) - static_cast<double>(call.world().tick);
    actor.invincibleTicks = static_cast<int>(std::clamp<double>(ticks > 0 ? ticks : 0, 0, INT_MAX));
}

void writeLandingDamage(HostCall& call, Actor& actor) {
    actor.landingDamage = std::max(0, call.integer(kValue));
    if (call.isNumeric(kValue + 1)) actor.landingType = call.integer(kValue + 1);
}

void writeOpponent(HostCall& call, Actor& actor) {
    actor.opponent = call.handle(kValue);
}

void writeParent(HostCall& call, Actor& actor) {
    static_cast<RuntimeEntity&>(actor).parentHandle = call.handle(kValue);
}

using generated::Character;
using enum Whose;

constexpr auto kActorRows = sortedTable(std::to_array<ActorRow>({
#define ACTOR_PROPERTY(key, read, write, whose, reading) {key, read, write, whose, reading},
#include "HostProperties.def"
#undef ACTOR_PROPERTY
                                        }),
                                        &ActorRow::key);

constexpr std::size_t kKey = 1;

// The row of a key for this kind of actor, which may be the second of that key; null for none.
const ActorRow* rowFor(const Actor& actor, HostCall& call) {
    const ActorRow* row = namedRow(kActorRows, &ActorRow::key, call, kKey);
    const Whose other = isPlayer(actor) ? Whose::Entities : Whose::Players;
    if (!row || row->whose != other) return row;
    const ActorRow* next = row + 1;
    return next != kActorRows.end() && next->key == row->key ? next : nullptr;
}

}  // namespace

bool isActorKey(std::string_view key) {
    return findRow(kActorRows, &ActorRow::key, FoldedKey(key)) != nullptr;
}

ScriptValue known::actorKey(HostCall& call) {
    return resolveRow(kActorRows, &ActorRow::key, call, kKey);
}

ScriptValue getActorProperty(HostCall& call) {
    const Actor* actor = call.actor(0);
    // Scripts keep handles of those who have gone, and ask so whether they have.
    if (!actor) return FoldedKey(call.text(kKey)) == "exists" ? ScriptValue(0.0) : ScriptValue();
    const ActorRow* row = rowFor(*actor, call);
    return row && row->read ? row->read(call, *actor) : ScriptValue();
}

ScriptValue setActorProperty(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return {};
    const ActorRow* row = rowFor(*actor, call);
    if (row && row->write) row->write(call, *actor);
    return call.value(kValue);
}

}  // namespace port::host
