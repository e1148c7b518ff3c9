#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Require.hpp"
#include "reader/ModelReader.hpp"

using tindrel::fuzz::require;

namespace {

void checkFrame(const tindrel::FrameDef& frame) {
    require(!frame.sprite.empty(), "a frame has a sprite");
    require(frame.delay >= -1, "a delay is a time or for ever");
    require(!frame.hasBBox || (frame.bbox.w > 0 && frame.bbox.h > 0), "a body box has a size");
    require(!frame.hasAttack || (frame.attack.w > 0 && frame.attack.h > 0),
            "an attack box has a size");
    require(frame.attack.forceDirection >= -2 && frame.attack.forceDirection <= 2,
            "a forced direction is known");
    require(!frame.hasPlatform || (frame.platform.depth > 0 && frame.platform.altitude > 0),
            "a platform has a size");
    require(frame.draw.rotate >= 0 && frame.draw.rotate < 360, "a rotation is within the circle");
    require(std::isfinite(frame.draw.scaleX) && std::isfinite(frame.moveX), "numbers are finite");
}

void checkAnimation(const tindrel::AnimationDef& animation) {
    require(!animation.name.empty(), "an animation has a name");
    require(animation.chargeTime >= 0, "a charge takes time");
    require(animation.counterEnd >= animation.counterStart, "a counter range is in order");
    require(animation.rangeXMin <= animation.rangeXMax, "range is in order");
    require(animation.rangeZMin <= animation.rangeZMax, "rangez is in order");
    require(animation.rangeAMin <= animation.rangeAMax, "rangea is in order");
    for (const auto& cancel : animation.cancels) {
        require(cancel.endFrame >= cancel.startFrame, "a cancel is in order");
    }
    for (const auto& frame : animation.frames) checkFrame(frame);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool asWritten = size % 2 == 1;
    const tindrel::TextFile file(std::string(reinterpret_cast<const char*>(data), size), asWritten);
    const tindrel::ModelDef model = tindrel::parseModel(file, "stem");
    require(!model.name.empty(), "a model has a name");
    require(model.antigravity >= 0 && model.antigravity <= 1, "antigravity is a share");
    require(model.childRecallRange >= 0 && model.childFollowRange >= 0, "child ranges are sizes");
    for (const auto& animation : model.animations) checkAnimation(animation);
    return 0;
}
