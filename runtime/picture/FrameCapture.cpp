#include "FrameCapture.hpp"

#include <string>
#include <system_error>

#include "ImageEncoder.hpp"
#include "Log.hpp"
#include "PathEncoding.hpp"

namespace port {
namespace {

// "frame-000030.png" for pass 30.
std::string frameName(std::uint64_t pass) {
    constexpr std::size_t kDigits = 6;
    const std::string number = std::to_string(pass);
    const std::string zeros(number.size() < kDigits ? kDigits - number.size() : 0, '0');
    return "frame-" + zeros + number + ".png";
}

}  // namespace

void FrameCapture::pass(const SpriteImage& canvas) {
    if (folder_.empty() || ++passes_ % every_ != 0) return;
    std::error_code notMade;  // writing then fails and says so
    std::filesystem::create_directories(folder_, notMade);
    const std::filesystem::path path = folder_ / frameName(passes_);
    std::string error;
    if (encodePng(canvas, path, error) || reported_) return;
    reported_ = true;
    warnLine("Capture ", PathEncoding::utf8(path), ": ", error);
}

}  // namespace port
