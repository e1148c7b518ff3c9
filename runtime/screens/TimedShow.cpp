#include "TimedShow.hpp"

#include <algorithm>

namespace port {
namespace {

constexpr int kFrameMilliseconds = 16;

}  // namespace

void showFor(Game& game, int milliseconds) {
    game.show();
    for (int left = milliseconds; left > 0 && !game.playsByItself(); left -= kFrameMilliseconds) {
        if (!game.renderer.pumpEvents()) return;
        game.devices.clock.sleep(std::min(left, kFrameMilliseconds));
    }
}

}  // namespace port
