#include "Scripts.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "ScriptTrial.hpp"

namespace port::script {
namespace {

class ScriptsOfAGame : public testing::Test, public Listener {
  protected:
    ScriptsOfAGame() {
        folder.write("data/count.c",
                     "void main() { setglobalvar(\"n\", getglobalvar(\"n\") + 1); }");
        folder.write("data/spin.c", "void main() { int i; for (i = 0; i < 9000; i++) {} }");
        scripts.open(folder.path(), folder.path() / "data", this);
    }
    bool other(const std::string& name, std::span<const ScriptValue>, ScriptContext&,
               UnansweredNames&, ScriptValue&) override {
        if (name == "act") act();
        return !name.starts_with("unknown");
    }
    // Runs a hook; what it says on the error stream.
    std::string hook(const char* path, const char* event = "event") {
        testing::internal::CaptureStderr();
        scripts.runHook(path, context, event);
        return testing::internal::GetCapturedStderr();
    }
    std::string command(const Scripts::FrameCommand& command) {
        testing::internal::CaptureStderr();
        scripts.runFrameCommand(command, context);
        return testing::internal::GetCapturedStderr();
    }
    double counted() { return num(scripts.machine().globals()["n"]); }

    tindrel::test::TempFolder folder;
    Scripts scripts;
    ScriptContext context;
    std::function<void()> act = [] {};
};

TEST_F(ScriptsOfAGame, HooksSayWhatFailsAndLogWhatNobodyAnswers) {
    EXPECT_EQ(hook(""), "");
    folder.write("data/odd.c", "void main() { unknownA(); unknownB(1); ) }");
    EXPECT_EQ(hook("data/ODD.c"), "Script VM event error [data/ODD.c]: unexpected token )\n");
    EXPECT_EQ(hook("../x.c", nullptr), "Script VM hook error [../x.c]: unsafe script path\n");
    EXPECT_EQ(hook("odd.c", nullptr), "Script VM hook error [odd.c]: unexpected token )\n");
    EXPECT_EQ(folder.read("logs/script-vm.log"),
              "event\tdata/ODD.c\tunsupported=unknownA\nevent\tdata/ODD.c\tunsupported=unknownB\n"
              "hook\todd.c\tunsupported=unknownA\nhook\todd.c\tunsupported=unknownB\n");
}

TEST_F(ScriptsOfAGame, FrameCommandsRunBehindTheirHelper) {
    folder.write("data/helper.c", "void main() { say(animhandle); } void f(int x) { say(x); }");
    Scripts::FrameCommand frame{.event = "entity", .model = "Bob", .animation = "idle"};
    EXPECT_EQ(command(frame), "");
    EXPECT_EQ(spelled(context.local["animhandle"]), "'idle'");  // also where nothing runs
    frame = {"entity", "Bob", "helper.c", "walk", 3, "walk3.gif", "f(1);", "f(2); unknown();"};
    EXPECT_EQ(command(frame), "");
    EXPECT_EQ(said, "'walk' 1 2");
    EXPECT_EQ(folder.read("logs/script-vm.log"),
              "entity\tmodel=Bob\thelper=helper.c\tcall=f(1); f(2); unknown();\t"
              "unsupported=unknown\n");
    frame.command = "(";
    EXPECT_EQ(command(frame),
              "Animation ScriptVM entity model=Bob anim=walk frame=3 frameSprite=walk3.gif "
              "helper=helper.c call=f(1); ( error: unexpected token }\n");
    // A command that its host runs inside another leaves that one as it is.
    said.clear();
    act = [&] { scripts.runFrameCommand({.animation = "inner", .command = "say(4);"}, context); };
    EXPECT_EQ(command({.model = "Bob", .animation = "outer", .command = "act(); say(5); ("}),
              "Animation ScriptVM  model=Bob anim=outer frame=0 frameSprite= helper= "
              "call= act(); say(5); ( error: unexpected token }\n");
    EXPECT_EQ(said, "4 5");
}

TEST_F(ScriptsOfAGame, APassAndALoadHaveStepsOfTheirOwn) {
    const std::string spent = "Script VM event error [spin.c]: script step limit exceeded\n";
    scripts.setPassSteps(50'000);
    scripts.beginPass();
    EXPECT_EQ(hook("spin.c"), "");
    EXPECT_EQ(hook("spin.c"), spent);
    EXPECT_EQ(command({.command = "say(1);"}).find("Animation ScriptVM"), 0U);
    {
        const Scripts::Loading loading(scripts);
        for (int i = 0; i < 50; ++i) EXPECT_EQ(hook("spin.c"), "");
    }
    EXPECT_EQ(hook("spin.c"), spent);
    scripts.beginPass();
    EXPECT_EQ(hook("spin.c"), "");

    // A script inside another takes from the same steps; a load inside one does not.
    folder.write("data/outer.c", "void main() { act(); setglobalvar(\"done\", 1); }");
    act = [&] {
        scripts.runHook("count.c", context, "inner");
        const std::int64_t before = scripts.machine().stepsLeft();
        const Scripts::Loading loading(scripts);
        for (int i = 0; i < 50; ++i) scripts.runHook("spin.c", context, "inner");
        EXPECT_LT(before, 50'000);
    };
    scripts.beginPass();
    EXPECT_EQ(hook("outer.c"), "");
    EXPECT_EQ(counted(), 1.0);
    act = [&] {
        while (scripts.machine().stepsLeft() >= 0) scripts.runHook("count.c", context, "inner");
    };
    scripts.beginPass();
    EXPECT_EQ(hook("outer.c"),
              "Script VM inner error [count.c]: script step limit exceeded\n"
              "Script VM event error [outer.c]: script step limit exceeded\n");
}

// What a game says, logs and pays for its first runs, with and without the preparing.
TEST_F(ScriptsOfAGame, PreparingShowsInNothingButTime) {
    folder.write("data/lib.c", "#pragma x\nvoid twice(int x) { say(x + x); }\n");
    folder.write("data/hook.c", "#include \"lib.c\"\nvoid main() { twice(2); unknownA(); ( }");
    folder.write("data/helper.c", "#include \"lib.c\"\nvoid main() { say(1); }");
    const char* const hooks[] = {"hook.c", "gone.c", "../x.c", "helper.c"};
    const Scripts::FrameCommand commands[] = {{.helper = "helper.c", .command = "twice(3);"},
                                              {.helper = "gone.c", .command = "say(4);"},
                                              {.helper = "helper.c", .inlineScript = "say(5)"}};
    const auto play = [&](bool prepared) {
        scripts.open(folder.path(), folder.path() / "data", this);
        folder.write("logs/script-vm.log", "");
        scripts.beginPass();
        const std::int64_t before = scripts.machine().stepsLeft();
        if (prepared) {
            std::size_t steps = 0, again = 0;
            for (const char* path : hooks) steps += scripts.prepareHook(path);
            for (const auto& frame : commands) steps += scripts.prepareFrameCommand(frame);
            EXPECT_GT(steps, 0U);
            for (const char* path : hooks) again += scripts.prepareHook(path);
            for (const auto& frame : commands) again += scripts.prepareFrameCommand(frame);
            EXPECT_EQ(again, 0U);
            EXPECT_EQ(said + folder.read("logs/script-vm.log"), "");
            EXPECT_EQ(scripts.machine().stepsLeft(), before);
        }
        std::string told;
        for (int round = 0; round < 2; ++round) {
            for (const char* path : hooks) told += hook(path);
            for (const auto& frame : commands) told += command(frame);
            told += std::to_string(before - scripts.machine().stepsLeft()) + '\n';
        }
        return told + std::exchange(said, {}) + folder.read("logs/script-vm.log");
    };
    said.clear();
    const std::string told = play(false);
    EXPECT_NE(told.find("preprocessor:pragma"), std::string::npos) << told;
    EXPECT_EQ(play(true), told);
}

TEST_F(ScriptsOfAGame, TheLogIsBounded) {
    const std::string name = "unknown" + std::string(kMaxLogBytes / 3, 'x');
    folder.write("data/long.c", "void main() { " + name + "(); }");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(hook("long.c"), "");
    const std::string log = folder.read("logs/script-vm.log");
    EXPECT_EQ(log.size(), 2 * (std::string("event\tlong.c\tunsupported=\n").size() + name.size()));
}

}  // namespace
}  // namespace port::script
