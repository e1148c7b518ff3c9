#include "World.hpp"

#include <algorithm>
#include <utility>

namespace port {

const Actor* World::find(ActorHandle handle) const {
    if (handle == kPlayer1Handle) return &player1;
    if (handle > kLastPlayerHandle) return entities.find(handle);
    const std::size_t index = handle - kFirstCoopHandle;
    return handle >= kFirstCoopHandle && index < coop.size() ? &coop[index] : nullptr;
}

Actor* World::find(ActorHandle handle) {
    return const_cast<Actor*>(std::as_const(*this).find(handle));
}

RuntimeCoopPlayer* World::coopOfSlot(int playerSlot) {
    const auto found = std::ranges::find(coop, playerSlot, &RuntimeCoopPlayer::playerSlot);
    return found == coop.end() ? nullptr : &*found;
}

}  // namespace port
