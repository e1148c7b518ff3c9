#pragma once

// Whom an actor turns against.

#include <cmath>

#include "Actor.hpp"
#include "Factions.hpp"

namespace port {

// Of those considered, the nearest whom the seeker fights and sees, the first of equals. Distance
// is asked first: it is what rules most of a crowd out.
class TargetSearch {
  public:
    explicit TargetSearch(const Actor& seeker) : seeker_(seeker) {}

    [[nodiscard]] bool isNearer(const Actor& candidate) const {
        return !best_ || distanceTo(candidate) < distance_;
    }
    // `hostile`: whether the seeker fights it unless their models say otherwise.
    void consider(const Actor& candidate, bool hostile) {
        if (!isNearer(candidate)) return;
        if (!modelIsHostileTo(seeker_.model, candidate.model, hostile)) return;
        if (!modelCanPerceive(seeker_.model, candidate.model)) return;
        best_ = &candidate;
        distance_ = distanceTo(candidate);
    }
    // Null for none.
    [[nodiscard]] const Actor* best() const { return best_; }

  private:
    [[nodiscard]] float distanceTo(const Actor& other) const {
        return std::abs(other.worldX - seeker_.worldX) + std::abs(other.z - seeker_.z);
    }

    const Actor& seeker_;
    const Actor* best_ = nullptr;
    float distance_ = 0;
};

}  // namespace port
