#include "AssetPaths.hpp"

#include <gtest/gtest.h>

#include "PathEncoding.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using std::filesystem::path;
using tindrel::test::TempFolder;

TEST(AssetPaths, NamesBecomeRelativeAndSafe) {
    struct Case {
        std::string_view raw;
        const char* normal;
    };
    const Case cases[] = {
        {"chars\\hero\\idle.gif", "chars/hero/idle.gif"},
        {"././.\\DATA/x.gif", "x.gif"},
        {"data/data/x.gif", "data/x.gif"},
        {"database/x.gif", "database/x.gif"},
        {"a/./b//../c.gif", "a/c.gif"},
        {"caf\xE9.gif", "caf\xC3\xA9.gif"},
        {"", ""},
        {"data/", ""},
        {"/etc/passwd", ""},
        {"data//etc/passwd", ""},
        {"\\\\host\\share", ""},
        {"C:\\x.gif", ""},
        {"chars/d:/x.gif", ""},
        {"../x.gif", ""},
        {"a/../../x.gif", ""},
        {std::string_view("a\0b", 3), ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PathEncoding::utf8(normalizeDataPath(c.raw)), c.normal) << c.raw;
    }
    EXPECT_TRUE(normalizeDataPath(std::string(100'000, '/')).empty());
    EXPECT_TRUE(normalizeDataPath(std::string(1 << 20, 'a')).empty());
}

struct AssetFileTest : testing::Test {
    TempFolder folder;

    path at(const char* relative) { return folder.path() / relative; }
    std::string sprite(std::string_view raw) { return shown(resolveSpriteAsset(root(), raw)); }
    std::string audio(std::string_view raw) { return shown(resolveAudioAsset(root(), raw)); }

    const path& root() { return folder.path(); }
    // Relative to the data root.
    std::string shown(const path& found) {
        return found.empty() ? "" : PathEncoding::utf8(found.lexically_relative(root()));
    }
    // False where the disk takes one spelling for the other.
    bool seesCase() {
        folder.write("case", "");
        return !std::filesystem::exists(at("CASE"));
    }
};

TEST_F(AssetFileTest, CaseFollowsTheDisk) {
    if (!seesCase()) GTEST_SKIP() << "the disk ignores case by itself";
    folder.write("Chars/Hero/Idle.GIF", "");
    EXPECT_EQ(runtimeCasePath(at("chars/HERO/idle.gif")), at("Chars/Hero/Idle.GIF"));
    EXPECT_EQ(runtimeCasePath(at("chars/hero/none.gif")), at("Chars/Hero/none.gif"));
    EXPECT_EQ(runtimeCasePath(at("chars/Other/Hero/x")), at("Chars/Other/Hero/x"));

    folder.write("CHARS/x", "");
    EXPECT_EQ(runtimeCasePath(at("chars/hero/idle.gif")), at("chars/hero/idle.gif"))
        << "two spellings of a folder";
    EXPECT_EQ(runtimeCasePath(at("CHARS/x")), at("CHARS/x")) << "the exact one is no question";
    EXPECT_EQ(runtimeCasePath(at("Chars/hero/idle.gif")), at("Chars/Hero/Idle.GIF"));
    EXPECT_TRUE(runtimeCasePath({}).empty());
}

TEST_F(AssetFileTest, LegacyNamesOnTheDiskMatchTheirText) {
    std::error_code refused;
    std::filesystem::create_directory(folder.path() / "caf\xE9", refused);
    if (refused || !seesCase()) GTEST_SKIP() << "this disk holds no such name";
    EXPECT_EQ(resolveSpriteAsset(root(), "CAF\xE9"), folder.path() / "caf\xE9");
    EXPECT_EQ(resolveSpriteAsset(root(), "caf\xC3\xA9"), folder.path() / "caf\xE9");
}

TEST_F(AssetFileTest, SpritesMayHaveAnotherExtension) {
    folder.write("a.png", "");
    folder.write("two.bmp", "");
    folder.write("two.pcx", "");
    folder.write("dir/b.gif", "");
    folder.write("noext", "");
    EXPECT_EQ(sprite("data/a.png"), "a.png");
    EXPECT_EQ(sprite("a.gif"), "a.png");
    EXPECT_EQ(sprite("a.01"), "a.png");
    EXPECT_EQ(sprite("a"), "a.png");
    EXPECT_EQ(sprite("two.gif"), "two.gif") << "two answers are none";
    EXPECT_EQ(sprite("two.pcx"), "two.pcx");
    EXPECT_EQ(sprite("two"), "two.bmp") << "without an extension the first is meant";
    EXPECT_EQ(sprite("dir\\b"), "dir/b.gif");
    EXPECT_EQ(sprite("noext"), "noext");
    EXPECT_EQ(sprite("missing.gif"), "missing.gif");
    EXPECT_EQ(sprite(""), "");
    EXPECT_EQ(sprite("../a.png"), "");
    if (seesCase()) {
        EXPECT_EQ(sprite("DIR/B.PNG"), "dir/b.gif");
    }
}

TEST_F(AssetFileTest, SoundsMayLackTheirExtension) {
    folder.write("hit.wav", "");
    folder.write("hit.mp3", "");
    folder.write("music/theme.bor", "");
    EXPECT_EQ(audio("data/hit"), "hit.wav");
    EXPECT_EQ(audio("music/theme"), "music/theme.bor");
    EXPECT_EQ(audio("music/theme.ogg"), "music/theme.ogg") << "an extension stands as written";
    EXPECT_EQ(audio("none"), "none");
    EXPECT_EQ(audio(""), "");
    EXPECT_EQ(audio("/hit"), "");
    if (seesCase()) {
        EXPECT_EQ(audio("Music/THEME.bor"), "music/theme.bor");
    }
}

TEST_F(AssetFileTest, HostileNamesAreMissingFiles) {
    folder.write("file", "");
    std::string longName(5000, 'n');
    longName += ".gif";
    std::string deep;
    for (int i = 0; i < 8000; ++i) deep += "d/";
    for (const std::string& name : {longName, deep + "x", std::string("file/below.gif")}) {
        EXPECT_EQ(sprite(name), name);
        EXPECT_EQ(audio(name + "/x"), name + "/x");
    }
}

}  // namespace
}  // namespace port
