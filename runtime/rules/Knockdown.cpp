#include "Knockdown.hpp"

#include <algorithm>

#include "Defence.hpp"

namespace port {

bool resolveKnockdown(const generated::Character* model, float& meter, bool requested,
                      int attackType, float power) {
    if (!model) return requested;
    const float threshold = model->knockdownCount;
    // What cannot move never falls; below 0 every hit fells, also one that was not meant to.
    if (model->noMove || threshold < 0) {
        meter = 0;
        return !model->noMove;
    }
    const generated::Defense* defence = defenseFor(model, attackType);
    const float scale = defence ? std::max(0.0F, defence->knockdown) : 1;
    if (!requested || scale <= 0) return false;
    if (threshold <= 0) return true;
    const float force = std::max(1.0F, power) * scale;
    meter += force;
    // A lone hit is enough also where a script has left the meter below 0.
    if (force < threshold && meter < threshold) return false;
    meter = 0;
    return true;
}

}  // namespace port
