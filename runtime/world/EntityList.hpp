#pragma once

// The entities of a stage, in the order of their coming. They are only ever added, until the stage
// ends: the dead keep their place, and references last.

#include <cstddef>
#include <deque>
#include <vector>

#include "Actor.hpp"

namespace port {

class EntityList {
  public:
    // Crowded stages show dozens of entities. The dead of a stage add up: ten a second for hours.
    static constexpr std::size_t kMostVisible = 1024;
    static constexpr std::size_t kMostEntities = 100'000;

    // The only way in: gives the entity its handle and the standing variables of its scripts. Null,
    // said once a stage on the error stream, when the stage is full.
    RuntimeEntity* add(RuntimeEntity entity);
    // Forgets all. Handles go on where they were.
    void clear();

    // Null for a handle that names none of them.
    [[nodiscard]] RuntimeEntity* find(ActorHandle handle);
    [[nodiscard]] const RuntimeEntity* find(ActorHandle handle) const;
    // The place in the order of coming; meaningless for a handle that find() does not know.
    [[nodiscard]] std::size_t indexOf(ActorHandle handle) const {
        return static_cast<std::size_t>(handle - first_);
    }

    // Visits all, also those that the visits add.
    template <class Visit>
    void visit(Visit visit) {
        std::size_t next = 0;
        while (next < entities_.size()) visit(entities_[next++]);
    }

    [[nodiscard]] std::size_t size() const { return entities_.size(); }
    [[nodiscard]] RuntimeEntity& operator[](std::size_t index) { return entities_[index]; }
    [[nodiscard]] const RuntimeEntity& operator[](std::size_t index) const {
        return entities_[index];
    }
    // To look at: what may run scripts goes by visit().
    [[nodiscard]] auto begin() const { return entities_.begin(); }
    [[nodiscard]] auto end() const { return entities_.end(); }
    // The handle of the next one.
    [[nodiscard]] ActorHandle nextHandle() const { return next_; }

  private:
    [[nodiscard]] bool hasRoom();

    std::deque<RuntimeEntity> entities_;
    ActorHandle first_ = kFirstEntityHandle;  // of entities_[0]; theirs follow each other
    ActorHandle next_ = kFirstEntityHandle;
    // Places of the visible, and of those that have gone since this was last looked through: only
    // where there seem to be too many, as the dead may be a hundred thousand.
    std::vector<std::size_t> present_;
    bool fullReported_ = false;
};

}  // namespace port
