#include "FrameCapture.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "FileBytes.hpp"
#include "ImageDecoder.hpp"
#include "ImageEncoder.hpp"
#include "SpritePixels.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using test::Argb;
using test::picture;
using test::pixelsOf;
using tindrel::test::TempFolder;

struct FrameCaptureTest : testing::Test {
    TempFolder folder;
    const SpriteImage canvas = picture(2, {0xFF102030, 0x00FFFE01, 0x80000000, 0xFFFFFFFF});

    void SetUp() override {
        std::string error;
        if (!encodePng(canvas, folder.path() / "probe.png", error)) GTEST_SKIP() << error;
    }
    [[nodiscard]] std::set<std::string> files(const char* below) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() / below)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }
};

TEST_F(FrameCaptureTest, WritesOpaqueColoursAndReplacesWhole) {
    folder.write("a.png", std::string(10'000, 'x'));
    std::string error;
    ASSERT_TRUE(encodePng(canvas, folder.path() / "a.png", error)) << error;
    EXPECT_EQ(files("."), (std::set<std::string>{"a.png", "probe.png"})) << "nothing unfinished";
    const auto file = readFileBytes(folder.path() / "a.png", 10'000);
    ASSERT_TRUE(file && file->size() > 26);
    EXPECT_EQ((*file)[25], 2) << "the colour type is RGB";
    if (!canDecodeImages()) return;
    DecodedImage image;
    ASSERT_TRUE(decodeImage(*file, image, error)) << error;
    EXPECT_EQ(pixelsOf({image.width, image.height, image.bgra}),
              (std::vector<Argb>{0xFF102030, 0xFFFFFE01, 0xFF000000, 0xFFFFFFFF}));
}

TEST_F(FrameCaptureTest, RefusesWhatItCannotWrite) {
    std::string error;
    EXPECT_FALSE(encodePng({}, folder.path() / "a.png", error));
    EXPECT_FALSE(encodePng({2, 2, std::vector<std::uint8_t>(15)}, folder.path() / "a", error));
    EXPECT_EQ(error, "there is no picture to write");
    std::filesystem::create_directories(folder.path() / "taken.png" / "inner");
    EXPECT_FALSE(encodePng(canvas, folder.path() / "taken.png", error));
    EXPECT_EQ(error, "the file cannot be written");
    EXPECT_EQ(files("."), (std::set<std::string>{"probe.png", "taken.png"}));
}

TEST_F(FrameCaptureTest, TakesEachNthPassFromTheFirstOn) {
    FrameCapture capture(folder.path() / "new" / "shots", 3);
    for (int i = 0; i < 8; ++i) capture.pass(canvas);
    EXPECT_EQ(files("new/shots"), (std::set<std::string>{"frame-000003.png", "frame-000006.png"}));

    FrameCapture usual(folder.path() / "usual");
    for (int i = 0; i < 59; ++i) usual.pass(canvas);
    EXPECT_EQ(files("usual"), std::set<std::string>{"frame-000030.png"});

    FrameCapture each(folder.path() / "each", -5);
    each.pass(canvas);
    EXPECT_EQ(files("each"), std::set<std::string>{"frame-000001.png"});
}

TEST_F(FrameCaptureTest, ComplainsOnceAndGoesOn) {
    FrameCapture capture(folder.write("file", "no folder") / "shots", 1);
    testing::internal::CaptureStderr();
    capture.pass(canvas);
    capture.pass(canvas);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(said.starts_with("Capture ")) << said;
    EXPECT_TRUE(said.ends_with("frame-000001.png: the file cannot be written\n")) << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);

    const std::set<std::string> before = files(".");
    FrameCapture idle;
    for (int i = 0; i < 60; ++i) idle.pass(canvas);
    EXPECT_EQ(files("."), before);
}

}  // namespace
}  // namespace port
