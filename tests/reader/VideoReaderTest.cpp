#include "reader/VideoReader.hpp"

#include <gtest/gtest.h>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

TEST(VideoReader, TheModeSetsTheSizeOnlyWhereNoLineDid) {
    struct Case {
        const char* text;
        std::int32_t mode, width, height;
    };
    const Case cases[] = {
        {"", 0, 320, 240},
        {"video 1", 1, 480, 272},
        {"VideoMode 2", 2, 640, 480},
        {"video 3", 3, 720, 480},
        {"video 5", 5, 320, 240},
        {"video -1", -1, 320, 240},
        {"video 2\nwidth 400", 2, 400, 240},
        {"width 100\nvideo 2", 2, 160, 240},
        {"width 320\nheight 240\nvideo 4", 4, 960, 540},
        {"hresolution 500\nvresolution -5", 0, 500, 120},
        {"resolutionx 500x\nresolutiony 300", 0, 500, 300},
        {"video 2\nvideo abc\nvideo\ncolourdepth 16bit\nresolution 1 1", 2, 640, 480},
        {"width 99999999999", 0, 320, 240},
    };
    for (const auto& [text, mode, width, height] : cases) {
        const VideoInfo info = parseVideoInfo(TextFile(text));
        EXPECT_EQ(info.mode, mode) << text;
        EXPECT_EQ(info.width, width) << text;
        EXPECT_EQ(info.height, height) << text;
    }
}

TEST(VideoReader, TellsWhetherTheFileIsThere) {
    const test::TempFolder folder;
    GameReader without(folder.path(), folder.path());
    EXPECT_FALSE(readVideoInfo(without).exists);
    EXPECT_EQ(readVideoInfo(without).sourceFile, "");

    folder.write("VIDEO.txt", "video 2");
    GameReader with(folder.path(), folder.path());
    const VideoInfo info = readVideoInfo(with);
    EXPECT_TRUE(info.exists);
    EXPECT_EQ(info.sourceFile, "data/video.txt");
    EXPECT_EQ(info.width, 640);
}

}  // namespace
}  // namespace tindrel
