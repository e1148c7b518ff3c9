// Players by their places, 0 to 3, and their keys.

#include <algorithm>
#include <cmath>

#include "Commands.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"

namespace port::host {
namespace {

// `player` is null where nobody plays.
struct PlayerRow {
    std::string_view key;
    ScriptValue (*read)(const HostCall&, const PlayerSlot&, const Actor* player);
    void (*write)(const HostCall&, PlayerSlot&, Actor* player);
    bool mended;
};

constexpr std::size_t kNewValue = 2;

std::size_t placeOf(const HostCall& call) {
    return static_cast<std::size_t>(std::clamp(call.integer(0), 0, kMostPlayers - 1));
}

// Bits of keys.
unsigned mask(const HostCall& call) {
    return static_cast<unsigned>(std::max(0, call.integer(kNewValue)));
}

template <unsigned PlayerSlot::*Keys>
ScriptValue readKeys(const HostCall& /*call*/, const PlayerSlot& slot, const Actor* /*player*/) {
    return static_cast<double>(slot.*Keys);
}

template <unsigned PlayerSlot::*Keys>
void writeKeys(const HostCall& call, PlayerSlot& slot, Actor* /*player*/) {
    slot.*Keys = mask(call);
}

ScriptValue readHandle(const HostCall& /*call*/, const PlayerSlot& /*slot*/, const Actor* player) {
    return player && player->alive ? player->handle : kNobody;
}

ScriptValue readPlayerName(const HostCall& /*call*/, const PlayerSlot& /*slot*/,
                           const Actor* player) {
    return scriptValue(player && player->model ? player->model->name : "");
}

template <auto Field>
ScriptValue readPlayerField(const HostCall& /*call*/, const PlayerSlot& /*slot*/,
                            const Actor* player) {
    return player ? static_cast<double>(player->*Field) : 0.0;
}

void writePlayerHealth(const HostCall& call, PlayerSlot& /*slot*/, Actor* player) {
    if (!player) return;
    player->health = std::clamp(call.integer(kNewValue), 0, std::max(0, player->maxHealth));
}

void writePlayerScore(const HostCall& call, PlayerSlot& /*slot*/, Actor* player) {
    if (player) player->score = std::max(0, call.integer(kNewValue));
}

// Lives and credits are player 1's, unless the stage gives everybody their own.
PlayerActor* keeperOf(const HostCall& call, const Actor* player) {
    World& world = call.world();
    const bool own = world.stage.row && world.stage.row->noShare > 0;
    if (!player || !own) return player ? &world.player1 : nullptr;
    return static_cast<PlayerActor*>(world.find(player->handle));
}

template <int PlayerActor::*Counter>
ScriptValue readCounter(const HostCall& call, const PlayerSlot& /*slot*/, const Actor* player) {
    const PlayerActor* keeper = keeperOf(call, player);
    return keeper ? static_cast<double>(keeper->*Counter) : 0.0;
}

template <int PlayerActor::*Counter>
void writeCounter(const HostCall& call, PlayerSlot& /*slot*/, Actor* player) {
    if (PlayerActor* keeper = keeperOf(call, player)) {
        keeper->*Counter = std::max(0, call.integer(kNewValue));
    }
}

constexpr auto kPlayerRows = sortedTable(std::to_array<PlayerRow>({
#define PLAYER_PROPERTY(key, read, write, reading) {key, read, write, reading},
#include "HostPlayers.def"
#undef PLAYER_PROPERTY
                                         }),
                                         &PlayerRow::key);

// The keys of the place in that state: 1 newly pressed, 2 released, any other held.
unsigned keysInState(const PlayerSlot& slot, int state) {
    if (state == 1) return slot.newKeys;
    return state == 2 ? slot.releasedKeys : slot.keys;
}

}  // namespace

ScriptValue known::playerKey(HostCall& call) {
    return resolveRow(kPlayerRows, &PlayerRow::key, call, 1);
}

ScriptValue getPlayerProperty(HostCall& call) {
    const std::size_t place = placeOf(call);
    const PlayerRow* row = namedRow(kPlayerRows, &PlayerRow::key, call, 1);
    if (!row) return 0.0;
    return row->read(call, call.world().slots[place], call.world().find(place + kPlayer1Handle));
}

ScriptValue setPlayerProperty(HostCall& call) {
    const std::size_t place = placeOf(call);
    const PlayerRow* row = namedRow(kPlayerRows, &PlayerRow::key, call, 1);
    if (!row || !row->write) return false;
    row->write(call, call.world().slots[place], call.world().find(place + kPlayer1Handle));
    return true;
}

ScriptValue playerKeys(HostCall& call) {
    const unsigned keys = keysInState(call.world().slots[placeOf(call)], call.integer(1));
    for (std::size_t i = 2; i < call.count(); ++i) {
        const std::string& name = call.text(i);
        const unsigned wanted = scriptKeyBit(name);
        const unsigned found = keys & wanted;
        // A name for several buttons asks for any of them.
        if (found == 0) return false;
    }
    return true;
}

}  // namespace port::host
