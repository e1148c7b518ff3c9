// The pieces between a game's names or a player's keys and the audio system.

#include "SoundEffects.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "MusicPreview.hpp"
#include "PathEncoding.hpp"
#include "TempFolder.hpp"
#include "VolumeKeys.hpp"

namespace port {
namespace {

using tindrel::test::TempFolder;

struct SoundEffectsTest : testing::Test {
    TempFolder folder;
    AudioSystem audio{platform::AudioOutput{}};
    SoundEffects effects;
    std::string warnings;

    // How often the file was decoded.
    int play(std::string_view name) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        effects.play(audio, name, "hit: ");
        warnings = testing::internal::GetCapturedStderr();
        const std::string log = testing::internal::GetCapturedStdout();
        return log.starts_with("Decoded effect: ") ? 1 : 0;
    }
};

TEST_F(SoundEffectsTest, ANameIsLookedForOnceHoweverItsTextWasMade) {
    folder.write("sounds/hit.bor", std::string(200, '\1'));
    folder.write("sounds/bad.bor", "cut");
    effects.open(folder.path());
    for (int i = 0; i < 2; ++i) {
        // Both texts take the same place in memory, one after the other.
        std::string text = "data/Sounds/HIT";
        EXPECT_EQ(play(text), 1);
        text = "data/Sounds/LOW";
        EXPECT_EQ(play(text), 0);
        EXPECT_EQ(warnings, "") << "what is missing is silent";
    }
    folder.write("Sounds/low.bor", std::string(200, '\1'));
    EXPECT_EQ(play("data/Sounds/LOW"), 0) << "not looked for again";
    EXPECT_EQ(play(""), 0);
    EXPECT_EQ(play("../hit.bor"), 0);
    EXPECT_EQ(play("sounds/bad.bor"), 0);
    EXPECT_EQ(warnings, "hit: invalid OpenBOR .bor: file is smaller than 160-byte header\n");

    effects.open(folder.path());
    EXPECT_EQ(play("Sounds/low"), 1) << "opening forgets";
}

TEST_F(SoundEffectsTest, OnlyTheGamesOwnFaultsAreMissing) {
    platform::AudioOutput broken;
    broken.open = [] { return std::string("no device"); };
    AudioSystem silent(broken);
    folder.write("hit.bor", std::string(200, '\1'));
    folder.write("bad.bor", "cut");
    effects.open(folder.path());
    std::string missing;
    effects.watchMissing([&](std::string_view name) { missing.append(name).append(" "); });
    testing::internal::CaptureStderr();
    for (const char* name : {"hit.bor", "bad.bor", "hit.bor", "none.bor"}) {
        effects.play(silent, name, "hit: ");
    }
    EXPECT_EQ(missing, "bad.bor none.bor ");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(said, '\n'), 3) << said;
}

TEST_F(SoundEffectsTest, NamesWithoutEndPushOutWhatWasKnown) {
    effects.open(folder.path());
    EXPECT_EQ(play("hit.bor"), 0);
    folder.write("hit.bor", std::string(200, '\1'));
    EXPECT_EQ(play("hit.bor"), 0);
    for (char letter = 'a'; letter <= 'z'; ++letter) play(std::string(1U << 20U, letter));
    EXPECT_EQ(play("hit.bor"), 1);
}

TEST(MusicPreviewTest, TakesTheFileThatLooksMostLikeMusic) {
    TempFolder folder;
    const auto preview = [&](std::string_view preferred) {
        const std::filesystem::path file = previewMusicFile(folder.path(), preferred);
        return file.empty() ? "" : PathEncoding::utf8(file.lexically_relative(folder.path()));
    };
    EXPECT_EQ(preview("auto"), "");
    EXPECT_EQ(previewMusicFile(folder.path() / "missing", "auto"), "");
    folder.write("music/readme.txt", "");
    EXPECT_EQ(preview("txt"), "") << "a text is no sound";
    folder.write("sounds/b.flac", "");
    folder.write("sounds/a.MP3", "");
    EXPECT_EQ(preview("auto"), "sounds/a.MP3") << "of equals the first by name";
    EXPECT_EQ(preview("FLAC"), "sounds/b.flac");
    folder.write("sounds/c.wav", "");
    EXPECT_EQ(preview("auto"), "sounds/c.wav");
    folder.write("sounds/z.bor", "");
    EXPECT_EQ(preview("auto"), "sounds/z.bor");
    folder.write("x/BigMusic/c.wav", "");
    EXPECT_EQ(preview("auto"), "x/BigMusic/c.wav") << "40 points against 30";
    EXPECT_EQ(preview(".bor"), "sounds/z.bor");
}

TEST(VolumeKeysTest, EachKeyStepsOneVolume) {
    AudioSystem audio{platform::AudioOutput{}};
    EXPECT_FALSE(applyVolumeKey(audio, kKeyF2 - 1));
    EXPECT_FALSE(applyVolumeKey(audio, kKeyF7 + 1));
    const auto after = [&](int key) {
        audio.setMusicVolume(0.5F);
        audio.setEffectsVolume(0.5F);
        audio.setMasterVolume(0.5F);
        EXPECT_TRUE(applyVolumeKey(audio, key));
        return std::vector<float>{audio.musicVolume(), audio.effectsVolume(), audio.masterVolume()};
    };
    using Volumes = std::vector<float>;
    EXPECT_EQ(after(kKeyF2), (Volumes{0.45F, 0.5F, 0.5F}));
    EXPECT_EQ(after(kKeyF3), (Volumes{0.55F, 0.5F, 0.5F}));
    EXPECT_EQ(after(kKeyF4), (Volumes{0.5F, 0.45F, 0.5F}));
    EXPECT_EQ(after(kKeyF5), (Volumes{0.5F, 0.55F, 0.5F}));
    EXPECT_EQ(after(kKeyF6), (Volumes{0.5F, 0.5F, 0.45F}));
    EXPECT_EQ(after(kKeyF7), (Volumes{0.5F, 0.5F, 0.55F}));
}

}  // namespace
}  // namespace port
