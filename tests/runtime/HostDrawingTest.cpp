// What scripts draw, their screens and their files.

#include <climits>
#include <cmath>

#include "HostTrial.hpp"
#include "ImageBytes.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

struct HostDrawing : HostTrial {
    ScriptDrawing& drawing = world.scripted.drawing;

    HostDrawing() {
        quietly([&] { EXPECT_TRUE(renderer.initialize(config)); });
    }
    [[nodiscard]] const ScriptDrawCommand& last() const { return drawing.queue.back(); }
    std::uintptr_t handle(const ScriptValue& value) {
        const auto* given = std::get_if<std::uintptr_t>(&value);
        return given ? *given : 0;
    }
    std::uintptr_t screen(double width, double height) {
        return handle(call("allocscreen", width, height));
    }
    test::Argb pixel(std::uintptr_t screen, int x, int y) {
        return test::pixelOf(scriptPictures.screen(screen)->image, x, y);
    }
    // A picture of one blue pixel, as a script has it.
    std::uintptr_t sprite() {
        return scriptPictures.addSprite(
            std::make_shared<const SpriteImage>(test::plain(1, 1, 0xFF0000FF)));
    }
};

TEST_F(HostDrawing, CommandsWaitInTheOrderOfTheirCalls) {
    EXPECT_EQ(call("drawbox", 1.0, 2.0, 3.0, 4.0, 5.0), kEmpty);
    EXPECT_EQ(tags, Tags{"drawbox"}) << "too few arguments";
    EXPECT_EQ(call("drawscreen", 1.0, 2.0, 3.0), ScriptValue(false));
    EXPECT_TRUE(drawing.queue.empty());

    call("drawbox", 1.0, 2.0, 3.0, 4.0, -5.0, 4279246896.0, 6.0);
    EXPECT_EQ(last().kind, ScriptDrawKind::Box);
    EXPECT_EQ(last().h, 4);
    EXPECT_EQ(last().z, -5);
    EXPECT_EQ(last().color, 0x102030U) << "of 0xFF102030";
    call("drawstring", NAN, 1e308, -1e308, text("score"), 9000.0);
    EXPECT_EQ(last().x, 0);
    EXPECT_EQ(last().y, 1 << 24);
    EXPECT_EQ(last().font, INT_MIN);
    EXPECT_EQ(last().sequence, 1U);

    // The method of the moment, not of the pass.
    call("setdrawmethod", 0.0, 1.0, 512.0, 128.0, 0.0, 1.0, 64.0, 2.0, 0.0, 0.0, -90.0);
    call("drawsprite", sprite(), 5.0, 6.0, 7.0, 8.0);
    call("changedrawmethod", 0.0, text("reset"), 1.0);
    EXPECT_EQ(last().draw.scaleX, 2);
    EXPECT_EQ(last().draw.scaleY, 0.5F);
    EXPECT_EQ(last().draw.shiftX, 0.25F);
    EXPECT_EQ(last().draw.rotate, 270);
    EXPECT_EQ(last().sortId, 8);
    EXPECT_FALSE(drawing.commonDrawMethod.enabled);
    EXPECT_EQ(drawing.commonDrawMethod.scaleX, 1);

    // Both ends count; a reversed pair is swapped.
    call("drawspriteq", 0.0, 0.0, 7.0, -5.0, 10.0, 20.0);
    ASSERT_EQ(drawing.flushedQueue.size(), 2U);
    EXPECT_EQ(drawing.flushedQueue[1].x, 15);
    EXPECT_EQ(drawing.flushedQueue[1].sequence, 4U);
    EXPECT_EQ(drawing.queue.size(), 3U) << "it is not cleared";
    call("clearspriteq");
    EXPECT_TRUE(drawing.queue.empty());
    EXPECT_EQ(drawing.flushedQueue.size(), 2U);
}

TEST_F(HostDrawing, ActorsHaveDrawMethodsOfTheirOwn) {
    RuntimeEntity& foe = add(makeModel("enemy", {"idle"}), 100);
    call("changedrawmethod", foe.handle, text("ScaleX"), 512.0);
    EXPECT_TRUE(foe.hasScriptDraw);
    EXPECT_EQ(foe.scriptDraw.scaleX, 2);
    EXPECT_EQ(foe.scriptDraw.scaleY, 1);
    EXPECT_EQ(drawing.commonDrawMethod.scaleX, 1);
    EXPECT_EQ(call("changedrawmethod", foe.handle, text("Mood"), 1.0), ScriptValue(false));
    EXPECT_EQ(tags, Tags{"changedrawmethod-property:Mood"});
    call("changedrawmethod", foe.handle, text("reset"), 1.0);
    EXPECT_FALSE(foe.hasScriptDraw) << "the frames' own hold again";
    EXPECT_EQ(call("setdrawmethod", 77.0, 1.0), ScriptValue(false)) << "nobody";
    call("setdrawmethod", 1.0, 1.0, 256.0, 256.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0);
    EXPECT_EQ(tags, Tags{"setdrawmethod-transparencybg"});
    EXPECT_TRUE(player.hasScriptDraw);
}

TEST_F(HostDrawing, ScreensAreDrawnIntoAtOnce) {
    EXPECT_EQ(screen(4096, 4097), 0U);
    EXPECT_EQ(tags, Tags{"allocscreen-size"});
    EXPECT_EQ(screen(NAN, 1e308), 0U);
    call("allocscreen", 7.0);
    EXPECT_EQ(tags, Tags{"allocscreen-arguments"});
    const std::uintptr_t large = screen(4096, 4096);
    EXPECT_NE(large, 0U);
    EXPECT_EQ(call("free", large), ScriptValue(true));

    const std::uintptr_t a = screen(8, 4);
    EXPECT_EQ(call("getgfxproperty", a, text("width")), ScriptValue(8.0));
    EXPECT_EQ(pixel(a, 0, 0), 0U) << "clear";
    call("drawboxtoscreen", a, 0.0, 0.0, 2.0, 2.0, double{0xFF0000});
    call("drawboxtoscreen", a, 1.0, 0.0, 1.0, 1.0, double{0x0000FF}, 6.0);
    call("drawdottoscreen", a, 7.0, 3.0, double{0x00FF00}, 7.0);
    EXPECT_EQ(pixel(a, 0, 1), 0xFFFF0000U);
    EXPECT_EQ(pixel(a, 1, 0), 0xFF7F007FU);
    EXPECT_EQ(pixel(a, 7, 3), 0xFF00FF00U) << "modulo 7, no blend";
    EXPECT_EQ(call("drawstringtoscreen", a, 1.0, 1.0, 0.0), ScriptValue(false));
    call("drawstringtoscreen", a, 1.0, 1.0, 0.0, text("words"));
    EXPECT_EQ(call("drawspritetoscreen", a, a, 0.0, 0.0), ScriptValue(false)) << "no sprite";
    call("drawspritetoscreen", sprite(), a, 4.0, 0.0);
    EXPECT_EQ(pixel(a, 4, 0), 0xFF0000FFU);

    // A queue into a screen: by depth, with the text apart; also of a screen into itself.
    const std::uintptr_t b = screen(8, 4);
    call("drawdot", 0.0, 0.0, 5.0, double{0x111111});
    call("drawscreen", a, 0.0, 0.0, 4.0);
    call("drawstring", 3.0, 3.0, 0.0, text("more"), 4.0);
    EXPECT_EQ(call("drawspriteq", b, 0.0, -10.0, 10.0, 1.0, 0.0), ScriptValue(true));
    EXPECT_EQ(pixel(b, 1, 0), 0xFF111111U);
    EXPECT_EQ(pixel(b, 2, 1), 0xFFFF0000U);
    ASSERT_EQ(scriptPictures.screen(b)->text.size(), 2U);
    EXPECT_EQ(scriptPictures.screen(b)->text[0].x, 2);
    EXPECT_EQ(call("drawspriteq", a, 0.0, 4.0, 4.0), ScriptValue(true));
    EXPECT_EQ(call("drawspriteq", large), ScriptValue(false)) << "it is free";
    EXPECT_EQ(call("clearscreen", a, 1.0), ScriptValue(false));
    EXPECT_EQ(call("clearscreen", a), ScriptValue(true));
    EXPECT_EQ(pixel(a, 0, 1), 0U);
    EXPECT_TRUE(scriptPictures.screen(a)->text.empty());
}

TEST_F(HostDrawing, AQueueTakesSoMuchAndNoMore) {
    scripts.machine().setSteps(INT64_MAX / 2);
    for (std::size_t i = 0; i < ScriptDrawing::kMostCommands; ++i) {
        drawing.add(drawing.queue, {});
    }
    EXPECT_EQ(call("drawdot", 1.0, 1.0, 1.0, 1.0), ScriptValue(false));
    EXPECT_EQ(tags, Tags{"draw-queue-limit"});
    EXPECT_EQ(call("drawspriteq", 0.0), ScriptValue(false));
    EXPECT_TRUE(drawing.flushedQueue.empty());
    // Painting is paid for when it is asked for.
    drawing.clearQueues();
    scripts.machine().setSteps(1'000'000);
    call("drawbox", 0.0, 0.0, 1e9, 1e9, 1.0, 1.0);
    const auto pixels = config.logicalWidth * config.logicalHeight;
    EXPECT_LT(scripts.machine().stepsLeft(), 1'000'000 - pixels / 8);
}

struct HostFiles : HostTrial {
    std::string line(std::uintptr_t stream) {
        const ScriptValue value = call("getfilestreamline", stream);
        return std::get<ScriptText>(value).str();
    }
    std::uintptr_t open(const char* path, double fromSaves = 1) {
        return std::get<std::uintptr_t>(call("openfilestream", text(path), fromSaves));
    }
    template <class... Type>
    ScriptValue word(std::uintptr_t stream, int index, Type... type) {
        return call("getfilestreamargument", stream, static_cast<double>(index), text(type)...);
    }
};

TEST_F(HostFiles, LinesAndWordsAreReadWhereTheStreamStands) {
    folder.write("saves/list.txt", "one 0x1F 'two words' \"a\\\"b\" 2.5x\r\n\r\nlast 010\rend");
    const std::uintptr_t file = open("LIST.TXT");
    ASSERT_EQ(file, 0x1C000000U);
    EXPECT_EQ(word(file, 0), text("one"));
    EXPECT_EQ(word(file, 1, "Integer"), ScriptValue(31.0));
    EXPECT_EQ(word(file, 2, "text"), text("two words"));
    EXPECT_EQ(word(file, 3, ""), text("a\"b"));
    EXPECT_EQ(word(file, 4, "float"), ScriptValue(2.5));
    EXPECT_EQ(word(file, 0, "int"), ScriptValue(0.0));
    EXPECT_EQ(word(file, 5, "decimal"), ScriptValue(0.0));
    EXPECT_EQ(word(file, -1), text(""));
    EXPECT_EQ(call("filestreamnextline", file), ScriptValue(true));
    EXPECT_EQ(line(file), "");
    call("filestreamnextline", file);
    EXPECT_EQ(word(file, 1, "int"), ScriptValue(8.0)) << "octal";
    EXPECT_EQ(call("filestreamnextline", file), ScriptValue(true));
    EXPECT_EQ(line(file), "end");
    EXPECT_EQ(call("filestreamnextline", file), ScriptValue(false));
    EXPECT_EQ(line(file), "");
    call("setfilestreamposition", file, 4.0);
    EXPECT_EQ(word(file, 0), text("0x1F"));
    call("setfilestreamposition", file, 1e300);
    EXPECT_EQ(call("getfilestreamposition", file), ScriptValue(48.0)) << "the end";
    EXPECT_EQ(call("closefilestream", file), ScriptValue(true));
    EXPECT_EQ(call("closefilestream", file), ScriptValue(false));
    EXPECT_EQ(line(file), "");
    EXPECT_EQ(open("missing.txt"), 0U);
    EXPECT_EQ(open("../saves/list.txt"), 0U);
    EXPECT_EQ(open("list.txt", 0), 0U) << "it is no file of the game";
}

TEST_F(HostFiles, WhatIsSavedIsReadAgainAndStaysInItsFolder) {
    const auto stream = std::get<std::uintptr_t>(call("createfilestream"));
    EXPECT_EQ(call("filestreamappend", stream, 12.0, 1.0), ScriptValue(true));
    EXPECT_EQ(call("filestreamappend", stream, text("x"), 0.0), ScriptValue(true));
    EXPECT_EQ(call("filestreamappend", stream, text("x"), 2.0), ScriptValue(false));
    EXPECT_EQ(call("savefilestream", stream, text("deep/er/best.txt")), ScriptValue(true));
    EXPECT_EQ(folder.read("saves/deep/er/best.txt"), "12 \r\nx ");
    EXPECT_EQ(call("savefilestream", stream, text("Deep/er/BEST.txt")), ScriptValue(true))
        << "again, over itself";

    std::filesystem::create_directory_symlink(folder.path(), root / "saves" / "out");
    std::filesystem::create_symlink(root / "outside.txt", root / "saves" / "link.txt.tmp");
    for (const char* path : {"out/outside.txt", "../outside.txt", "link.txt", "", "deep"}) {
        EXPECT_EQ(call("savefilestream", stream, text(path)), ScriptValue(false)) << path;
    }
    EXPECT_FALSE(std::filesystem::exists(root / "outside.txt"));
    EXPECT_EQ(call("savefilestream", 5.0, text("a.txt")), ScriptValue(false)) << "no stream";

    world.scripted.files.saved = ScriptFiles::kMostSaved - 100;
    EXPECT_EQ(call("savefilestream", stream, text("more.txt")), ScriptValue(false));
    EXPECT_EQ(tags, Tags{"savefilestream-limit"});
    world.scripted.files.bytes = ScriptFiles::kMostBytes - 1;
    EXPECT_EQ(call("filestreamappend", stream, text("x"), 1.0), ScriptValue(false));
    EXPECT_EQ(open("deep/er/best.txt"), 0U);
}

}  // namespace
}  // namespace port
