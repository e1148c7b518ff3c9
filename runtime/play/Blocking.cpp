#include "Blocking.hpp"

#include <algorithm>
#include <cstdint>

#include "AnimationLookup.hpp"
#include "Boxes.hpp"
#include "Chip.hpp"
#include "Defence.hpp"
#include "Entities.hpp"
#include "Frames.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kLeastStun = 2;

bool hasState(const Actor& actor, BlockState bit) {
    return (actor.blockState & bit) != 0;
}

bool canBlock(const Actor& actor, const generated::Frame& frame) {
    return actor.alive && actor.model && frame.hasAttack && findAnimation(actor.model, "block");
}

// Attacks that go through a block: too strong for its power, or for its threshold.
bool eligible(const Actor& actor, const generated::AttackBox& attack) {
    if (hasState(actor, BS_IGNORE_ELIG)) return true;
    const generated::Defense* defence = defenseFor(actor.model, attack.type);
    const int power = defence ? defence->blockPower : 0;
    const int penetration = std::max(0, attack.penetration);
    if ((power != 0 || penetration != 0) && power <= penetration) return false;
    const std::int64_t threshold =
        std::int64_t{actor.model->blockThreshold} + (defence ? defence->blockThreshold : 0);
    return threshold == 0 || attack.damage < threshold;
}

bool facesAttack(const Actor& actor, float attackerX) {
    return actor.model->blockBack || hasState(actor, BS_IGNORE_DIR) || isAhead(actor, attackerX);
}

bool isGuarded(const Actor& actor) {
    return actor.model->guardPoints > 0 && !hasState(actor, BS_IGNORE_GUARD);
}

// What a block costs, and the stun that it brings.
void payForBlock(Tick& tick, Actor& actor, const generated::AttackBox& attack) {
    const generated::Character& model = *actor.model;
    if (isGuarded(actor)) {
        actor.guardPoints = std::max(0, actor.guardPoints - std::max(0, attack.guardCost));
    }
    applyBlockedChip(actor.health, actor.mp, model, defenseFor(&model, attack.type), attack.damage);
    if (actor.health <= 0) {
        actor.alive = false;
        playDieSound(tick.events, &model);
    }
    actor.blocking = true;
    actor.hitStun = std::max(kLeastStun, attack.pauseTime);
}

const generated::Animation* blockReaction(const Actor& actor, const generated::AttackBox& attack) {
    const generated::Character& model = *actor.model;
    const bool hurts = !hasState(actor, BS_IGNORE_BLOCKPAIN) && model.blockPain > 0 &&
                       attack.damage >= model.blockPain;
    const auto* pain = hurts ? reactionAnimation(&model, "blockpain", attack.type) : nullptr;
    return pain ? pain : findAnimation(&model, "block");
}

void setNumber(ScriptContext& context, const char* name, int value) {
    context.local[name] = static_cast<double>(value);
}

// What the hooks of all blockers are told.
void setBlockLocals(ScriptContext& context, const generated::AttackBox& attack,
                    ActorHandle attacker) {
    context.local["attacker"] = attacker;
    setNumber(context, "damage", attack.damage);
    setNumber(context, "attacktype", attack.type);
    setNumber(context, "guardcost", attack.guardCost);
}

// And the rest of it.
void setAllBlockLocals(ScriptContext& context, const generated::Frame& frame,
                       ActorHandle attacker) {
    setBlockLocals(context, frame.attack, attacker);
    setNumber(context, "drop", frame.knockdown ? 1 : 0);
    setNumber(context, "noblock", frame.attack.penetration);
    setNumber(context, "jugglecost", frame.attack.juggleCost);
    setNumber(context, "pauseadd", frame.attack.pauseTime);
    setNumber(context, "tag", frame.attack.tag);
}

// `blockOdds` is a mask of the numbers drawn, not a range.
bool luckHolds(World& world, const RuntimeEntity& entity) {
    if (hasState(entity, BS_ACTIVE) || hasState(entity, BS_IGNORE_CHANCE)) return true;
    const auto odds = static_cast<std::uint32_t>(std::max(0, entity.model->blockOdds));
    return (world.blockRandom() & odds) == 0;
}

bool holdsBlock(const PlayerActor& player) {
    return hasState(player, BS_ACTIVE) || playsBlock(player);
}

}  // namespace

bool playsBlock(const Actor& actor) {
    const generated::Animation* running = actor.animation.animation();
    return running && startsWithFolded(running->name, "block");
}

bool tryBlockEntity(Tick& tick, RuntimeEntity& entity, const generated::Frame& frame,
                    ActorHandle attacker) {
    if (!canBlock(entity, frame)) return false;
    const bool willing = hasState(entity, BS_ACTIVE) || hasState(entity, BS_NATIVE);
    if (!willing && entity.model->blockOdds < 0) return false;
    const generated::AttackBox& attack = frame.attack;
    const Actor* opponent = tick.world.find(attacker);
    if (!eligible(entity, attack) ||
        !facesAttack(entity, opponent ? opponent->worldX : entity.worldX) ||
        !luckHolds(tick.world, entity)) {
        return false;
    }
    if (isGuarded(entity) && entity.guardPoints <= 0) {
        setEntityAnimation(entity, findAnimation(entity.model, "guardbreak"));
        return false;
    }
    payForBlock(tick, entity, attack);
    setEntityAnimation(entity, blockReaction(entity, attack));
    setAllBlockLocals(entity.scriptCtx, frame, attacker);
    tick.scripts.runHook(entity.model->didBlockScript, entity.scriptCtx, "entity-didblock");
    return true;
}

// Players block by holding the block, not by luck, and break no guard.
bool tryBlockPlayer(Tick& tick, PlayerActor& player, const generated::Frame& frame,
                    ActorHandle attacker) {
    if (!canBlock(player, frame) || !holdsBlock(player)) return false;
    const generated::AttackBox& attack = frame.attack;
    // Only entities count as standing before a player.
    const RuntimeEntity* opponent = tick.world.entities.find(attacker);
    if (!eligible(player, attack) ||
        !facesAttack(player, opponent ? opponent->worldX : player.worldX) ||
        (isGuarded(player) && player.guardPoints <= 0)) {
        return false;
    }
    payForBlock(tick, player, attack);
    player.animation.setAnimation(blockReaction(player, attack));
    player.lastFrame = kNoFrame;
    const bool first = player.handle == kPlayer1Handle;
    if (first) {
        setAllBlockLocals(player.scriptCtx, frame, attacker);
    } else {
        setBlockLocals(player.scriptCtx, attack, attacker);
    }
    tick.scripts.runHook(player.model->didBlockScript, player.scriptCtx,
                         first ? "player-didblock" : "coop-didblock");
    return true;
}

}  // namespace port
