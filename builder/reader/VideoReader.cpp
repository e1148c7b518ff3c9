#include "reader/VideoReader.hpp"

#include <algorithm>
#include <string_view>

#include "platform/FileStatus.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

struct VideoKeyword {
    std::string_view name;
    std::int32_t VideoInfo::*field;
    std::int32_t minimum;
};

constexpr std::int32_t kAnyNumber = INT32_MIN;
constexpr VideoKeyword kVideoKeywords[] = {
    {"video", &VideoInfo::mode, kAnyNumber},  {"videomode", &VideoInfo::mode, kAnyNumber},
    {"width", &VideoInfo::width, 160},        {"hresolution", &VideoInfo::width, 160},
    {"resolutionx", &VideoInfo::width, 160},  {"height", &VideoInfo::height, 120},
    {"vresolution", &VideoInfo::height, 120}, {"resolutiony", &VideoInfo::height, 120},
};

struct VideoMode {
    std::int32_t mode, width, height;
};

constexpr VideoMode kVideoModes[] = {{1, 480, 272}, {2, 640, 480}, {3, 720, 480}, {4, 960, 540}};

}  // namespace

VideoInfo parseVideoInfo(const TextFile& file) {
    VideoInfo info;
    for (const TextLine& line : file) {
        if (line.args.empty()) continue;
        for (const auto& [name, field, minimum] : kVideoKeywords) {
            if (line.key == name) {
                info.*field = std::max(parseIntOr(line.args[0], info.*field), minimum);
            }
        }
    }
    // A size that the lines spelled out wins over the mode, unless it is the default size.
    if (info.width == VideoInfo{}.width && info.height == VideoInfo{}.height) {
        for (const VideoMode& known : kVideoModes) {
            if (known.mode != info.mode) continue;
            info.width = known.width;
            info.height = known.height;
        }
    }
    return info;
}

VideoInfo readVideoInfo(GameReader& game) {
    const std::filesystem::path file = game.resolve("video.txt");
    if (file.empty() || !tindrel::exists(file)) return {};
    VideoInfo info = parseVideoInfo(game.lines(file));
    info.exists = true;
    info.sourceFile = "data/video.txt";
    return info;
}

}  // namespace tindrel
