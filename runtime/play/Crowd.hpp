#pragma once

// The living entities of a stage and where their bodies are, so that a fight of a thousand need not
// look at all for each.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Boxes.hpp"
#include "Tick.hpp"

namespace port {

// A tree over bodies that stand side by side: a node knows what box holds all of its bodies, their
// types, and the first and last of their places in the order of entities. It answers who is the
// first to be touched without asking those whose nodes cannot hold one that comes earlier.
class Crowd {
  public:
    // Any type, also one that has no bit.
    static constexpr int kEverybody = 1 << 30;

    explicit Crowd(Tick& tick) : tick_(tick) {}

    // Visits the living, in the order of entities, also those that the visits add.
    template <class Visit>
    void visit(Visit visit) {
        for (std::size_t next = 0; RuntimeEntity* entity = firstAlive(next); ++next) {
            visit(*entity);
        }
    }

    // Visits those of the living whose body overlaps the box and whose type is among these bits,
    // in the order of entities, until a visit says false. Each counts as it is when its turn comes.
    template <class Visit>
    void visitTouching(const RectF& box, int types, Visit visit) {
        for (std::size_t from = 0; RuntimeEntity* entity = firstTouching(box, types, from);) {
            from = tick_.world.entities.indexOf(entity->handle) + 1;
            if (!visit(*entity)) return;
        }
    }

    // To be called when a step has changed place, frame or life of the entity. What scripts change
    // is noticed without.
    void changed(const RuntimeEntity& entity);

  private:
    struct Node {
        float left, top, right, bottom;
        int types;                  // 0: nobody
        std::uint32_t first, last;  // places in the order of entities
    };

    // By place in the order of `living_`, or beyond its end.
    RuntimeEntity* firstAlive(std::size_t& at);
    RuntimeEntity* firstTouching(const RectF& box, int types, std::size_t from);
    void gather();
    void freshen();
    void build();
    [[nodiscard]] Node leafOf(std::uint32_t place) const;
    [[nodiscard]] static Node join(const Node& a, const Node& b);

    Tick& tick_;
    std::size_t gathered_ = 0;           // entities known so far; 0: not begun
    std::vector<std::uint32_t> living_;  // their places, ascending; some may have died since
    std::size_t built_ = 0;              // of living_, those in the tree
    std::int64_t steps_ = 0;             // that scripts had left when the tree was last right
    std::vector<std::uint32_t> leaves_;  // for each of living_, its node
    std::vector<Node> nodes_;            // the children of node n are 2n and 2n + 1; 1 is the top
};

}  // namespace port
