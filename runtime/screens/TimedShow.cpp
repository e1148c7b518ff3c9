#include "TimedShow.hpp"

#include <algorithm>

namespace port {
namespace {

constexpr std::int64_t kPictureMilliseconds = 16;

}  // namespace

ShowEnd TimedShow::run(const ShowRule& rule, const ShowPicture& picture) {
    for (std::int64_t elapsed = 0; elapsed < rule.milliseconds; elapsed += kPictureMilliseconds) {
        const bool waits = !game_.playsByItself();
        if (waits && !game_.renderer.pumpEvents()) return ShowEnd::Closed;
        if (waits) input_ = nextInput(input_, game_.heldInput());
        const bool skipped = waits && std::ranges::any_of(rule.skipKeys, [this](int key) {
                                 return input_.keyPressed(key);
                             });
        if (skipped && !rule.skipsAfterPicture) return ShowEnd::Skipped;
        game_.drawing.clear();
        picture(game_.drawing, elapsed);
        game_.show();
        if (skipped) return ShowEnd::Skipped;
        if (!waits) break;
        const std::int64_t left = rule.milliseconds - elapsed;
        game_.devices.clock.sleep(static_cast<int>(std::min(left, kPictureMilliseconds)));
    }
    return ShowEnd::Elapsed;
}

}  // namespace port
