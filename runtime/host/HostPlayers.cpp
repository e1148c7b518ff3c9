// Players by their places, 0 to 3, and their keys.

#include <algorithm>
#include <cmath>

#include "Commands.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"

namespace port::host {
namespace {

struct PlayerRow {
    std::string_view key;
    // `player` is null where nobody plays.
    ScriptValue (*read)(const PlayerSlot& slot, const Actor* player);
    void (*write)(HostCall&, PlayerSlot& slot, Actor* player) = nullptr;
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
ScriptValue readKeys(const PlayerSlot& slot, const Actor* /*player*/) {
    return static_cast<double>(slot.*Keys);
}

template <unsigned PlayerSlot::*Keys>
void writeKeys(HostCall& call, PlayerSlot& slot, Actor* /*player*/) {
    slot.*Keys = mask(call);
}

ScriptValue readHandle(const PlayerSlot& /*slot*/, const Actor* player) {
    return player && player->alive ? player->handle : kNobody;
}

ScriptValue readPlayerName(const PlayerSlot& /*slot*/, const Actor* player) {
    return scriptValue(player && player->model ? player->model->name : "");
}

ScriptValue readPlayerHealth(const PlayerSlot& /*slot*/, const Actor* player) {
    return static_cast<double>(player ? player->health : 0);
}

ScriptValue readPlayerMaxHealth(const PlayerSlot& /*slot*/, const Actor* player) {
    return static_cast<double>(player ? player->maxHealth : 0);
}

void writePlayerHealth(HostCall& call, PlayerSlot& /*slot*/, Actor* player) {
    if (!player) return;
    player->health = std::clamp(call.integer(kNewValue), 0, std::max(0, player->maxHealth));
}

constexpr auto kPlayerRows = sortedTable(
    std::to_array<PlayerRow>({
        {"entity", readHandle},
        {"health", readPlayerHealth, writePlayerHealth},
        {"maxhealth", readPlayerMaxHealth},
        {"name", readPlayerName},
        {"keys", readKeys<&PlayerSlot::keys>},
        {"newkeys", readKeys<&PlayerSlot::newKeys>},
        {"releasekeys", readKeys<&PlayerSlot::releasedKeys>},
        {"releasedkeys", readKeys<&PlayerSlot::releasedKeys>},
        {"playkeys", readKeys<&PlayerSlot::playKeys>, writeKeys<&PlayerSlot::playKeys>},
        {"disablekeys", readKeys<&PlayerSlot::disabledKeys>, writeKeys<&PlayerSlot::disabledKeys>},
    }),
    &PlayerRow::key);

// The keys of the place in that state: 1 newly pressed, 2 released, any other held.
unsigned keysInState(const PlayerSlot& slot, int state) {
    if (state == 1) return slot.newKeys;
    return state == 2 ? slot.releasedKeys : slot.keys;
}

}  // namespace

ScriptValue getPlayerProperty(HostCall& call) {
    const std::size_t place = placeOf(call);
    const PlayerRow* row = findRow(kPlayerRows, &PlayerRow::key, FoldedKey(call.text(1)));
    if (!row) return 0.0;
    return row->read(call.world().slots[place], call.world().find(place + kPlayer1Handle));
}

ScriptValue setPlayerProperty(HostCall& call) {
    const std::size_t place = placeOf(call);
    const PlayerRow* row = findRow(kPlayerRows, &PlayerRow::key, FoldedKey(call.text(1)));
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
