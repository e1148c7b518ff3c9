#include "EntityList.hpp"

#include <utility>

#include "Log.hpp"

namespace port {

bool EntityList::hasRoom() {
    if (entities_.size() >= kMostEntities || next_ >= kEndOfEntityHandles) return false;
    if (present_.size() >= kMostVisible) {
        std::erase_if(present_, [this](std::size_t index) { return !entities_[index].visible; });
    }
    return present_.size() < kMostVisible;
}

// Models that spawn each other must not fill the memory.
RuntimeEntity* EntityList::add(RuntimeEntity entity) {
    if (!hasRoom()) {
        if (!std::exchange(fullReported_, true)) warnLine("Spawn refused: the stage is full");
        return nullptr;
    }
    entity.handle = next_++;
    entity.scriptCtx.entity = entity.handle;
    entity.scriptCtx.local["self"] = entity.handle;
    present_.push_back(entities_.size());
    return &entities_.emplace_back(std::move(entity));
}

void EntityList::clear() {
    entities_.clear();
    present_.clear();
    first_ = next_;
    fullReported_ = false;
}

const RuntimeEntity* EntityList::find(ActorHandle handle) const {
    return handle >= first_ && handle < next_ ? &entities_[indexOf(handle)] : nullptr;
}

RuntimeEntity* EntityList::find(ActorHandle handle) {
    return handle >= first_ && handle < next_ ? &entities_[indexOf(handle)] : nullptr;
}

}  // namespace port
