#include "Chip.hpp"

#include <algorithm>
#include <cstdint>

#include "Defence.hpp"

namespace port {
namespace {

// Values of `blockType`.
constexpr int kByModel = 0;
constexpr int kMpThenHealth = 1;
constexpr int kMpAndHealth = 2;
constexpr int kHealth = -1;

constexpr float kGlobalRatio = 0.25F;

// What falls below the floor, or was below it, ends up there: a block that must not kill does not
// kill whom a script has left without health.
void take(int& from, int amount, int floor) {
    from = static_cast<int>(std::max<std::int64_t>(floor, std::int64_t{from} - amount));
}

int routeOf(const generated::Character& model, const generated::Defense* defence) {
    const int route = defence && defence->blockTypeDefined ? defence->blockType : kByModel;
    if (route != kByModel) return route;
    return model.globalMpBlock ? kMpThenHealth : kHealth;
}

}  // namespace

int blockedChipDamage(const generated::Character& model, const generated::Defense* defence,
                      int raw) {
    const float global = model.globalBlockRatio ? kGlobalRatio : 0;
    const float ratio = defence && defence->blockRatioDefined ? defence->blockRatio : global;
    return ratio > 0 ? scaledDamage(std::max(0, raw), ratio) : 0;
}

void applyBlockedChip(int& hp, int& mp, const generated::Character& model,
                      const generated::Defense* defence, int raw) {
    const int chip = blockedChipDamage(model, defence, raw);
    if (chip <= 0) return;
    const int floor = model.noChipDeath ? 1 : 0;
    switch (routeOf(model, defence)) {
        case kMpThenHealth: {
            const int paid = std::clamp(mp, 0, chip);
            mp -= paid;
            take(hp, chip - paid, floor);
            break;
        }
        case kMpAndHealth:
            take(mp, chip, 0);
            take(hp, chip, floor);
            break;
        default:
            take(hp, chip, floor);
    }
}

}  // namespace port
