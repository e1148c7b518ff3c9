#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "ScriptLimits.hpp"
#include "ScriptTrial.hpp"

namespace port::script {
namespace {

TEST(ScriptLoops, Run) {
    const ScriptCase rows[] = {
        {"int i = 0; while (i < 3) { say(i); i++; }", "0 1 2"},
        {"int i = 5; do { say(i); i++; } while (i < 3); say(9);", "5 9"},
        {"int i; for (i = 0; i < 3; i++) say(i); say(i);", "0 1 2 3"},
        {"for (int i = 3; i; i -= 1) say(i);", "3 2 1"},
        {"int i = 0; for (; i < 2; say(i)) i++;", "1 2"},
        {"int i = 0; while (1) { i++; if (i == 2) continue; if (i > 4) break; say(i); }", "1 3 4"},
        {"int i = 0; do { i++; if (i == 2) continue; say(i); } while (i < 4);", "1 3 4"},
        {"int i; for (i = 0; i < 5; i++) { if (i == 1) continue; if (i == 3) break; say(i); }",
         "0 2"},
        {"int i; int j; for (i = 0; i < 3; i++) { for (j = 0; j < 9; j++) { if (j == i) break; }"
         " say(j); }",
         "0 1 2"},
        {"int i; for (i = 0; i < 3; i++) { switch (i) { case 1: continue; default: break; } "
         "say(i); }",
         "0 2"},
        // How often conditions are evaluated.
        {"while (say(0)) say(1);", "0"},
        {"int i = 2; while (say(i)) i--;", "2 1 0"},
        {"int i; for (i = 0; say(i) < 2; i++) say(9);", "0 0 9 1 9 2"},  // once ahead of the loop
        {"for (; say(0); ) say(1);", "0"},
    };
    expectScripts(rows);
}

TEST(ScriptLoops, StopSilentlyAtTheLimitOfRounds) {
    const ScriptCase rows[] = {
        {"int n = 0; while (1) n++; say(n - 99999);", "1"},
        {"int n = 0; do n++; while (1); say(n - 99999);", "1"},
        {"int n = 0; for (;;) n++; say(n - 99999);", "1"},
        {"int n = 0; for (; n < 200000; ) n++; say(n - 99999);", "1"},
        {"int n = 0; int m; for (m = 0; m < 3; m++) while (1) n++; say(n - 299999);", "1"},
    };
    expectScripts(rows);
}

TEST(ScriptLoops, EndARunThatMultipliesThem) {
    Trial trial;
    const auto ends = [&](const char* body) {
        trial.vm.setSteps(1'000'000);
        return trial.body(body).error;
    };
    const char* const kOut = "script step limit exceeded";
    EXPECT_EQ(ends("say(1); for (;;) for (;;) for (;;) x++;"), kOut);
    EXPECT_EQ(trial.body("say(2);").error, kOut);  // nothing is left for the next
    EXPECT_EQ(ends("text = \"x\"; for (;;) text = text + text;"), "script text too long");
    EXPECT_EQ(ends("for (;;) array(50000);"), kOut);
    EXPECT_EQ(ends("set(array(), 99999999, 1);"), "script array too large");
    EXPECT_EQ(ends("int i; for (;;) { i++; setlocalvar(i, i); }"), kOut);
    // What costs time without being an instruction.
    for (const char* body : {
             "int i; for (i = 0; i < 9000; i++) setglobalvar(i, i); for (i = 0; i < 99; i++) "
             "clearindexedvar();",
             "mixed t = \"x\"; int i; for (i = 0; i < 15; i++) t = t + t; mixed u = t + 1; t = t + "
             "1;"
             "for (;;) t == u;",
             "mixed t = \"1\"; int i; for (i = 0; i < 15; i++) t = t + t; for (;;) -t;",
             "mixed a = array(9000); for (;;) { add(a, 0, 1); delete(a, 0); }",
             "mixed a = array(); mixed t = \"x\"; int i; for (i = 0; i < 9; i++) t = t + t;"
             "for (i = 0; i < 99; i++) set(a, t + i, 1); for (;;) delete(a, t + 99);",
             "mixed a = array(); mixed t = \"x\"; int i; for (i = 0; i < 15; i++) t = t + t;"
             "set(a, t, 1); t = 0; for (;;) key(a);",
         }) {
        EXPECT_EQ(ends(body), kOut) << body;
        EXPECT_LT(trial.vm.stepsLeft(), 0);
        trial.vm.globals().clear();
    }
    for (const char* name : {"local", "global"}) {
        const std::string of = std::string(name) + "var(";
        EXPECT_EQ(ends(("int i; for (i = 0; i < 5000; i++) set" + of + "i, i);").c_str()), "");
        const std::int64_t before = trial.vm.stepsLeft();
        EXPECT_EQ(trial.body("clear" + of + ");").error, "");
        EXPECT_GT(before - trial.vm.stepsLeft(), 5000) << name;
    }
    const std::string longName(50'000, 'b');
    EXPECT_EQ(ends(("for (;;) " + longName + "();").c_str()), kOut);
    EXPECT_EQ(ends(("int i; for (;;) { " + longName + "; i++; setlocalvar(i, 1); }").c_str()),
              kOut);
    std::string wide = "void main() { for (;;) f(); } void f(";
    for (int i = 0; i < 4000; ++i) wide += "int p" + std::to_string(i) + ", ";
    trial.vm.setSteps(1'000'000);
    EXPECT_EQ(trial.script(wide + "int q) {}").error, kOut);
    EXPECT_EQ(ends("for (;;) x++;"), "");
    EXPECT_EQ(trial.host.said, "1");
}

// However little each run takes: what all values weigh together is bounded.
TEST(ScriptLoops, CannotGrowFromPassToPass) {
    Trial trial;
    trial.folder.write("grow.c",
                       "void main() { mixed t = \"x\"; int i; for (i = 0; i < 20; i++) t = t + t;"
                       "kept++; setlocalvar(kept, t); }");
    std::string error;
    int runs = 0;
    for (; error.empty() && runs < 1000; ++runs) {
        trial.vm.setSteps(kPassSteps);
        error = trial.vm.runFile("grow.c", trial.context).error;
    }
    EXPECT_EQ(error, "script memory limit exceeded");
    EXPECT_LE(runs, 256);
    EXPECT_GT(runs, 200);
    EXPECT_EQ(trial.body("clearlocalvar();").error, "");
    EXPECT_EQ(trial.vm.runFile("grow.c", trial.context).error, "");
    trial.context.local.clear();
    const std::size_t before = ScriptMemory::bytes();
    for (const char* body :
         {"mixed a = array(9); set(a, \"name\", \"x\" + 1); delete(a, \"name\");",
          "mixed a = array(); int i; for (i = 0; i < 99; i++) set(a, i, a + i);",
          "x = \"a\" + 1; x = 0; setglobalvar(x + \"y\", 2); clearglobalvar();"}) {
        EXPECT_EQ(trial.body(body).error, "");
        trial.context.local = {};
        trial.vm.setHost(&trial.host);  // forgets the scripts and their texts
        EXPECT_LE(ScriptMemory::bytes(), before) << body;
    }
}

TEST(ScriptFunctions, AreFoundByTheirDefinition) {
    const ScriptCase rows[] = {
        {"void f(int a, float b) { say(a, b); } void main() { f(1, 2); F(3); f(4, 5, 6); }",
         "1 2 3 nil 4 5"},  // missing ones are empty, spare ones dropped
        {"int f(); int f() { return 1; } int F() { return 2; } void main() { say(f()); }", "1"},
        {"VOID MAIN() { say(1); } // main()", "1"},
        {"main() { say(1); }", "", "requested function/main() not found"},
        {"int x = 5; void main() { say(x); }", "0"},  // nothing outside functions runs
        {"void f(void) { say(1); } void main() { f(); }", "1"},
        {"void f(int a[], int *b, mixed c = 3) { say(a, b, c); } void main() { f(1, 2); }",
         "1 2 nil"},
        {"void f(int, int b) { say(b); } void main() { f(1, 2); }", "2"},
        {"int f(int n) { if (n < 2) return n; return f(n - 1) + f(n - 2); }"
         "void main() { say(f(10)); }",
         "55"},
        {"int f() { } void main() { say(f()); }", "nil"},
        // A function sees its own names and the actor's, never its caller's.
        {"void f() { say(x, y); x = 3; y = 4; } void main() { int x = 1; y = 2; f(); say(x, y); }",
         "0 2 1 4"},
        {"void f() { int y = 7; } void main() { y = 1; f(); say(y); }", "1"},
        {"void f() { x = \"}\"; } void main() { f(); say(1); }", "1"},
        {"void f() { x = \"{\"; } void main() { say(1); }", "",
         "requested function/main() not found"},
        {"int say2(int a) { return say(a) + 1; } void main() { say(say2(1) + say2(5)); }", "1 5 8"},
        {"int size(int a) { return 7; } int free(int a) { return 8; }"
         "void main() { say(size(1), free(1), free(array())); }",
         "0 8 1"},  // the language's own come first, as far as they take the arguments
        {"int get(int a) { return 7; } void main() { say(get(1)); }", "7"},
        // Nobody's loop holds the break: it goes on in the caller's.
        {"void f() { break; } void main() { int i; for (i = 0; i < 3; i++) { say(i); f(); } "
         "say(9); }",
         "0 9"},
        {"void f() { continue; } void g() { switch (1) { case 1: f(); say(7); } }"
         "void main() { int i; for (i = 0; i < 2; i++) { g(1 + f()); say(i); } say(9); }",
         "9"},
        {"void f() { break; } void main() { switch (1) { case 1: say(\"a\" + f()); } say(9); }",
         "9"},
        {"int f() { break; } void main() { int i = 0; while (i < 2) { i++; while (f()) say(1); "
         "say(2); }"
         " say(i); }",
         "1"},  // a condition is no part of its own loop
    };
    expectScripts(rows);
}

TEST(ScriptFunctions, ReturnEveryKindOfValue) {
    const ScriptCase rows[] = {
        {"int f(x) { return x; } void g() { return; } void main() { a = f(array(3)); "
         "say(f(1.5), f(\"a text that is longer than a short one\"), f(1 == 1), f(null()), a, "
         "f()); x = f(\"abc\"); y = g(); say(x, y, size(a)); }",
         "1.5 'a text that is longer than a short one' true @0 [array] nil 'abc' nil 3"},
        {"string f() { string s = \"a\"; s = s + \"b\"; return s; } "
         "string g(a, b) { switch (a) { case 1: return b + f(); } return f() + b; }"
         "void main() { say(\"x\" + g(1, 2) + g(2, f())); if (f()) say(f() == \"ab\"); }",
         "'x2ababab' true"},
    };
    expectScripts(rows);
}

TEST(ScriptFunctions, RecurseTo64) {
    Trial trial;
    const char* text =
        "int f(int n) { if (n < 2) return 1; return 1 + f(n - 1); }"
        "void main() { say(f(63)); say(f(64)); }";
    EXPECT_EQ(trial.script(text).error, "script recursion limit exceeded");
    EXPECT_EQ(trial.host.said, "63");
    trial.host.said.clear();
    EXPECT_TRUE(trial.script("void main() { say(1); }").ok);  // the machine is as good as new
    EXPECT_EQ(trial.host.said, "1");
}

TEST(ScriptFunctions, AStrayBreakLeavesTheRun) {
    Trial trial;
    EXPECT_THROW(trial.body("say(1); break; say(2);"), BreakSignal);
    EXPECT_THROW(trial.body("switch (1) { case 1: say(3); continue; }"), ContinueSignal);
    EXPECT_TRUE(trial.body("say(4);").ok);
    EXPECT_EQ(trial.host.said, "1 3 4");
}

TEST(ScriptRuns, HostileNestingIsAnError) {
    const auto repeated = [](std::string_view part) {
        std::string text;
        for (int i = 0; i < 10000; ++i) text += part;
        return text;
    };
    Trial trial;
    for (const char* part : {"(", "!", "{", "if(1)", "while(0)", "f(", "1?", "do ", "for(;;)"}) {
        EXPECT_EQ(trial.body(repeated(part)).error, "script nesting limit exceeded") << part;
    }
    // Long is not deep.
    EXPECT_EQ(trial.body("int x = 0" + repeated("+1") + "; say(x + \"\");").error, "");
    EXPECT_EQ(
        trial.body("if (0) say(1);" + repeated(" else if (0) say(2);") + " else say(3);").error,
        "");
    EXPECT_EQ(trial.body("say(1" + repeated(",1") + ");").error, "too many arguments");
    EXPECT_EQ(trial.host.said, "'10000' 3");
    std::string many = "void main() { say(2, f()); } int f(";
    for (int i = 0; i < 5000; ++i) many += "int p" + std::to_string(i) + ", ";
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(trial.script(many + "int q) {}").error, "too many script variables");
    }
    // A switch whose labels begin walks of their own, inside each other.
    std::string text = "say(1);";
    for (int i = 0; i < 60; ++i) {
        text = "switch (x) { case 1: if (1) y = 1 ? case + 2 : 3; else { " + text + " } }";
    }
    EXPECT_EQ(trial.body(text).error, "script function too large");
    std::string large =
        "x = \"" + std::string(100'000, 'a') + "\"; " + std::string(50'000, 'b') + "();";
    for (int i = 0; i < 60; ++i) {
        large = "switch (x) { case 1: if (1) y = 1 ? case + 2 : 3; else { " + large + " } }";
    }
    EXPECT_EQ(trial.body(large).error, "script function too large");
}

TEST(ScriptRuns, ReportWhatNobodyKnows) {
    Trial trial;
    const char* text = "#pragma once\nvoid main() { Strange(1); strange(); Strange(2); say(1); }";
    EXPECT_EQ(trial.script(text).unsupported.all(),
              (std::vector<std::string>{"preprocessor:pragma", "Strange", "strange"}));
    trial.vm.setHost(nullptr);
    for (int run = 0; run < 3; ++run) {  // however often it ran
        const ScriptRunResult result = trial.vm.runFile("trial0.c", trial.context);
        EXPECT_TRUE(result.ok);
        EXPECT_EQ(result.unsupported.all(),
                  (std::vector<std::string>{"preprocessor:pragma", "Strange", "strange", "say"}));
    }
}

TEST(ScriptRuns, FindFiles) {
    Trial trial;
    trial.folder.write("Scripts/Hook.C", "void main() { say(1); } void other() { say(2); }");
    trial.folder.write("scripts2/deep/lone.c", "void extra() {}");
    const auto run = [&](const char* path, const char* function = "main") {
        return trial.vm.runFile(path, trial.context, function).error;
    };
    EXPECT_EQ(run(""), "");
    EXPECT_EQ(run("data/scripts/hook.c"), "");
    EXPECT_EQ(run("DATA\\data\\scripts\\HOOK.c", "OTHER"), "");
    EXPECT_EQ(run("elsewhere/hook.c", "none"), "");  // by its unique name, and "main" instead
    EXPECT_EQ(trial.host.said, "1 2 1");
    EXPECT_EQ(run("lone.c"), "requested function/main() not found");
    EXPECT_EQ(run("../Hook.C"), "unsafe script path");
    EXPECT_EQ(run("/Hook.C"), "unsafe script path");
    trial.folder.write("C:/m.c", "void main() { say(3); }");
    EXPECT_EQ(run("C:/m.c"), "unsafe script path");
    EXPECT_EQ(run("data/./c:m.c"), "unsafe script path");
    for (int again = 0; again < 2; ++again) {
        const std::string error = run("none.c");
        EXPECT_EQ(error.find("script not found: "), 0U);
        EXPECT_EQ(error.substr(error.size() - 7), "/none.c");
    }
    // What was read once is not read again.
    trial.folder.write("Scripts/Hook.C", "void main() { say(5); }");
    trial.host.said.clear();
    EXPECT_EQ(run("data/scripts/hook.c"), "");
    EXPECT_EQ(trial.host.said, "1");
}

TEST(ScriptRuns, AnimationCommandsStandOnTheirHelper) {
    Trial trial;
    trial.folder.write("helper.c",
                       "#define LOUD say\n#pragma X\n#import \"lib.h\"\n"
                       "void main() { say(1); }\nvoid shout(int x) { lib(x); }");
    trial.folder.write("lib.h", "void lib(int x) { LOUD(x, x); }");
    trial.folder.write("open.c", "void main() { say(1); }\nvoid f() { say(2); /* ");
    trial.folder.write("off.c", "void main() { say(1); }\n#ifdef NONE\n");
    trial.folder.write("bad.c", "void main() { say(1); ) }");
    trial.folder.write("brace.c", "void main() { say(1); } void f() { if (1) { say(2); }");
    trial.folder.write("main.c", "void main() { say(1);");
    trial.folder.write("calls.c", "void main() { f(); } void f() { say(1);");
    trial.folder.write("text.c", "void main() { say(\"}\");");
    trial.folder.write("quote.c", "void main() { say(1); }\nchar *s = \"a");
    trial.folder.write("asked.c", "void main() { say(1); say(\"a");
    trial.folder.write("brace'.c", "void main() { say(1); }\nvoid f() { say('}");
    trial.folder.write("later.c", "void main() { extra(6); }");
    const auto run = [&](const char* helper, const char* text) {
        trial.host.said.clear();
        return trial.vm.runAnimationCommand(helper, text, trial.context);
    };
    const struct {
        const char* helper;
        const char* text;
        const char* said;
        const char* error = "";
    } rows[] = {
        {"", "", ""},
        {"", "say(2); x = say(3);", "2 3"},
        {"data/HELPER.c", "shout(2);", "1 2 2"},
        {"helper.c", "LOUD(3)", "1 3"},
        {"helper.c", "", "1"},
        {"helper.c", "#define LOUD shout\nLOUD(4);", "1 4 4"},
        {"helper.c", "} void shout(int y) { say(9); } void z() { ", "1"},  // the first one stands
        {"helper.c", "extra(5); } void extra(int y) { say(y);", "1 5"},
        {"helper.c", "say(1", "1", "expected ) near '}'"},
        {"open.c", "say(3);", "1", "generated animation function not found"},
        {"open.c", "say(3); */ } void g() { } void", "1", "generated animation function not found"},
        {"off.c", "say(3);", "1", "generated animation function not found"},
        {"brace.c", "say(3);", "1", "generated animation function not found"},
        {"brace.c", "} } void __tindrel_animation_frame() { say(3);", "1 3"},
        {"main.c", "say(3);", "1 3", "expected } near ''"},  // a call, and a block of main
        {"calls.c", "say(3);", "1 3", "expected } near ''"},
        {"text.c", "say(3);", "'}' 3 3", "expected } near ''"},  // ends main only for the search
        {"quote.c", "say(3);", "1", "generated animation function not found"},
        {"quote.c", "\"; void __tindrel_animation_frame() { say(3);", "1 3"},
        {"asked.c", "say(3);", "1", "expected ) near ''"},
        {"brace'.c", "say(3);", "1", "generated animation function not found"},
        {"brace'.c", "'); } void __tindrel_animation_frame() { say(3);", "1 3"},
        {"later.c", "say(3); } void extra(int y) { say(y);", "6 3"},
        {"bad.c", "say(3);", "1", "unexpected token )"},  // its error ends the run
        {"../helper.c", "say(3);", "", "unsafe animation script path"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.helper) + ": " + row.text);
        for (int again = 0; again < 2; ++again) {
            const ScriptRunResult result = run(row.helper, row.text);
            EXPECT_EQ(trial.host.said, row.said);
            EXPECT_EQ(result.error, row.error);
            const bool reports = std::string_view(row.helper).ends_with("ELPER.c");
            if (reports) {
                EXPECT_EQ(result.unsupported.all(),
                          std::vector<std::string>{"preprocessor:pragma"});
            }
        }
    }
    // What a command cannot change is shared by all of them.
    std::string large = "void main() { say(1); }";
    for (int i = 0; i < 2000; ++i) large += "void f" + std::to_string(i) + "() { x = 1; }";
    for (const char* end : {"", "void f() {", "/*", "\n#ifdef NONE", "char *s = \"a"}) {
        const std::string name = "large" + std::to_string(large.size()) + ".c";
        trial.folder.write(name, large + end);
        large += ' ';
        run(name.c_str(), "say(2);");
        const std::int64_t before = trial.vm.stepsLeft();
        run(name.c_str(), "say(3);");
        EXPECT_LT(before - trial.vm.stepsLeft(), 100) << end;
    }
    // A missing helper lets the command run all the same.
    const ScriptRunResult missing = run("none.c", "say(3);");
    EXPECT_FALSE(missing.ok);
    EXPECT_EQ(missing.error.find("animation helper not found: "), 0U);
    EXPECT_EQ(trial.host.said, "3");
}

// A host that runs scripts, forgets variables and fails.
struct Busy : Listener {
    bool other(const std::string& name, std::span<const ScriptValue> args, ScriptContext& context,
               UnansweredNames&, ScriptValue& result) override {
        if (name == "forget") context.local.clear();
        if (name == "fail") throw std::runtime_error("host failed");
        if (name == "run") {
            const ScriptRunResult run = vm->runFile(str(args[0]), context);
            if (!run.ok) error = run.error;
        }
        result = std::string("done");
        return true;
    }
    ScriptVM* vm = nullptr;
    std::string error;
};

TEST(ScriptRuns, HostsMayRunScriptsAndForgetVariables) {
    Trial trial;
    Busy host;
    host.vm = &trial.vm;
    trial.vm.setHost(&host);
    trial.folder.write("inner.c", "void main() { int i = 5; kept = i; say(i); }");
    trial.folder.write("again.c", "void main() { depth++; run(\"again.c\"); }");
    ASSERT_TRUE(trial.body("int i = 1; kept = 2; say(\"a\" + run(\"inner.c\"), i, kept);").ok);
    EXPECT_EQ(host.said, "5 'adone' 1 5");
    host.said.clear();
    ASSERT_TRUE(trial.body("kept = 1; say(kept); forget(); say(kept); kept = 2; say(kept);").ok);
    EXPECT_EQ(host.said, "1 0 2");
    EXPECT_EQ(trial.body("say(1); fail(); say(2);").error, "host failed");
    EXPECT_TRUE(trial.vm.runFile("again.c", trial.context).ok);
    EXPECT_EQ(host.error, "script recursion limit exceeded");
    EXPECT_EQ(num(trial.context.local["depth"]), 64.0);
}

// As if the runs that a host makes for a call stood in the place of the call.
TEST(ScriptRuns, AStrayBreakOfAnInnerRunConcernsTheLoopsAroundTheCall) {
    Trial trial;
    Busy host;
    host.vm = &trial.vm;
    trial.vm.setHost(&host);
    trial.folder.write("break.c", "void main() { mixed t = \"held\"; break; }");
    trial.folder.write("continue.c", "void main() { f(1); } void f(x) { forget(); continue; }");
    trial.folder.write("outer.c", "void main() { run(\"break.c\"); say(8); }");
    const ScriptCase rows[] = {
        {"int i; for (i = 0; i < 3; i++) { say(i); say(7 + run(\"break.c\"), 6); } say(9);", "0 9"},
        {"int i; for (i = 0; i < 2; i++) { say(i); kept = 5; run(\"continue.c\"); say(7); } "
         "say(kept);",
         "0 1 0"},
        {"int i = 0; while (i < 2) { i++; switch (1) { case 1: run(\"break.c\"); say(7); } say(i); "
         "switch (1) { case 1: run(\"continue.c\"); say(7); } say(6); }",
         "1 2"},
        {"void f(x) { say(x + run(\"outer.c\")); say(7); } void main() { mixed t = \"kept\"; "
         "do { f(\"x\"); } while (1); say(t); }",
         "'kept'"},
    };
    for (const ScriptCase& row : rows) {
        SCOPED_TRACE(row.text);
        const bool whole = std::string_view(row.text).find("main(") != std::string_view::npos;
        host.said.clear();
        EXPECT_EQ((whole ? trial.script(row.text) : trial.body(row.text)).error, "");
        EXPECT_EQ(host.said, row.said);
    }
    // Far more often than runs may be inside each other, and each at its cost.
    const std::int64_t before = trial.vm.stepsLeft();
    host.said.clear();
    EXPECT_TRUE(trial.body("int i; for (i = 0; i < 1000; i++) run(\"continue.c\"); say(i);").ok);
    EXPECT_EQ(host.said, "1000");
    EXPECT_GT(before - trial.vm.stepsLeft(), 10'000);
    EXPECT_THROW(trial.body("run(\"outer.c\");"), BreakSignal);
    EXPECT_THROW(trial.body("switch (1) { case 1: run(\"continue.c\"); }"), ContinueSignal);
}

}  // namespace
}  // namespace port::script
