// The script machine, beside the same work in Lua where that is installed. Each pair runs in one
// process, so that the ratio of the two rows holds on any machine.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "Host.hpp"
#include "ScriptLimits.hpp"
#include "ScriptVM.hpp"
#ifdef TINDREL_BENCH_LUA
#include <lua.hpp>
#endif

// The tables of the smallest game.
namespace generated {
const Character kCharacters[] = {{}};
const std::size_t kCharacterCount = 0;
const Stage kStages[] = {{}};
const std::size_t kStageCount = 0;
}  // namespace generated

namespace {

using port::ScriptContext;
using port::ScriptValue;
using port::ScriptVM;

// Answers plus(a, b), the cheapest call that a host can serve.
struct Adder : port::ScriptHost {
    const port::HostFunction* findHostFunction(std::string_view name) const override {
        return name == "plus" ? reinterpret_cast<const port::HostFunction*>(this) : nullptr;
    }
    bool callHostFunction(const port::HostTarget&, std::span<const ScriptValue> args,
                          ScriptContext&, port::UnansweredNames&, ScriptValue& result) override {
        result = std::get<double>(args[0]) + std::get<double>(args[1]);
        return true;
    }
};

// The host of a game: player 1 alone in the world.
struct Game : port::HostServices {
    port::World world;
    port::PlayerDrive drive = port::PlayerDrive::Nobody;
    port::TickInput input;
    port::RuntimeConfig config;
    port::Scripts scripts;
    port::Events events;
    port::Host host{*this, {world, drive, input, config, scripts, events}};

    Game() { world.player1.handle = port::kPlayer1Handle; }
};

// A hook as a game has it: one file that runs again and again.
void runScript(benchmark::State& state, const char* text, port::ScriptHost& host) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto folder =
        std::filesystem::temp_directory_path() / ("tindrel-bench-" + std::to_string(now));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "hook.c") << text;
    ScriptVM vm;
    vm.setRoot(folder);
    vm.setHost(&host);
    ScriptContext context;
    for (auto _ : state) {
        vm.setSteps(port::script::kLoadingSteps);
        const port::ScriptRunResult result = vm.runFile("hook.c", context);
        if (!result.ok || !result.unsupported.empty()) state.SkipWithError(result.error.c_str());
    }
    std::filesystem::remove_all(folder);
}

void runScript(benchmark::State& state, const char* text) {
    Adder host;
    runScript(state, text, host);
}

void emptyHook(benchmark::State& state) {
    runScript(state, "void main() {}");
}
BENCHMARK(emptyHook);

// What a short hook does besides: a local, a branch, a variable of the actor.
void smallHook(benchmark::State& state) {
    runScript(
        state,
        "void main() { int x = getlocalvar(\"n\"); if (x > 5) y = x; setlocalvar(\"n\", 9); }");
}
BENCHMARK(smallHook);

void arithmeticScript(benchmark::State& state) {
    runScript(state,
              "void main() { float s = 0; int i = 0; while (i < 10000) {"
              " s = s + i * 2 - i / 4; i = i + 1; } }");
}
BENCHMARK(arithmeticScript);

// The same with variables that live in the actor's context.
void arithmeticUndeclaredScript(benchmark::State& state) {
    runScript(state,
              "void main() { s = 0; i = 0; while (i < 10000) {"
              " s = s + i * 2 - i / 4; i = i + 1; } }");
}
BENCHMARK(arithmeticUndeclaredScript);

void hostCallsScript(benchmark::State& state) {
    runScript(state,
              "void main() { float s = 0; int i = 0; while (i < 10000) {"
              " s = plus(s, i); i = i + 1; } }");
}
BENCHMARK(hostCallsScript);

// What games ask most, of their own actor. In Lua the property is a field behind a function.
void propertiesScript(benchmark::State& state) {
    Game game;
    runScript(state,
              "void main() { float s = 0; int i = 0; while (i < 10000) {"
              " s = s + getentityproperty(1, \"health\") + getentityproperty(1, \"direction\");"
              " i = i + 1; } }",
              game.host);
}
BENCHMARK(propertiesScript);

void constantsScript(benchmark::State& state) {
    Game game;
    runScript(state,
              "void main() { float s = 0; int i = 0; while (i < 10000) {"
              " s = s + openborconstant(\"FLAG_ATTACK\") + openborvariant(\"elapsed_time\");"
              " i = i + 1; } }",
              game.host);
}
BENCHMARK(constantsScript);

void recursionScript(benchmark::State& state) {
    runScript(state,
              "int fib(int n) { if (n < 2) return n; return fib(n - 1) + fib(n - 2); }"
              "void main() { fib(20); }");
}
BENCHMARK(recursionScript);

void forLoopScript(benchmark::State& state) {
    runScript(state, "void main() { int s = 0; int i; for (i = 0; i < 10000; i++) s += i; }");
}
BENCHMARK(forLoopScript);

// A switch is a chain of comparisons in Lua.
void switchScript(benchmark::State& state) {
    runScript(state,
              "void main() { int s = 0; int i = 0; while (i < 10000) { switch (i % 5) {"
              " case 0: s = s + 1; break; case 1: s = s + 2; break; case 2: s = s + 3; break;"
              " case 3: s = s + 4; break; default: s = s + 5; } i = i + 1; } }");
}
BENCHMARK(switchScript);

// With the name that nobody sets, as games compare handles.
void compareNullScript(benchmark::State& state) {
    runScript(state,
              "void main() { int s = 0; int i = 0; while (i < 10000) {"
              " if (i != NULL) s = s + 1; i = i + 1; } }");
}
BENCHMARK(compareNullScript);

void compareTextsScript(benchmark::State& state) {
    runScript(state,
              "void main() { string name = \"WALK\"; int s = 0; int i = 0; while (i < 10000) {"
              " if (name == \"IDLE\") s = s + 1; if (name == \"WALK\") s = s + 2; i = i + 1; } }");
}
BENCHMARK(compareTextsScript);

#ifdef TINDREL_BENCH_LUA

int plus(lua_State* lua) {
    lua_pushnumber(lua, luaL_checknumber(lua, 1) + luaL_checknumber(lua, 2));
    return 1;
}

// The field of a table that C keeps.
int property(lua_State* lua) {
    lua_rawgeti(lua, LUA_REGISTRYINDEX, luaL_checkinteger(lua, 1) + LUA_RIDX_LAST);
    lua_pushvalue(lua, 2);
    lua_rawget(lua, -2);
    return 1;
}

void runLua(benchmark::State& state, const char* text) {
    lua_State* lua = luaL_newstate();
    luaL_openlibs(lua);
    lua_register(lua, "plus", plus);
    lua_register(lua, "property", property);
    lua_createtable(lua, 0, 2);
    for (const char* key : {"health", "direction"}) {
        lua_pushnumber(lua, 100);
        lua_setfield(lua, -2, key);
    }
    lua_rawseti(lua, LUA_REGISTRYINDEX, LUA_RIDX_LAST + 1);
    if (luaL_dostring(lua, text) != LUA_OK) state.SkipWithError(lua_tostring(lua, -1));
    for (auto _ : state) {
        lua_getglobal(lua, "main");
        if (lua_pcall(lua, 0, 0, 0) != LUA_OK) state.SkipWithError(lua_tostring(lua, -1));
    }
    lua_close(lua);
}

void arithmeticLua(benchmark::State& state) {
    runLua(state,
           "function main() local s = 0.0 local i = 0.0 while i < 10000 do"
           " s = s + i * 2 - i / 4 i = i + 1 end end");
}
BENCHMARK(arithmeticLua);

void arithmeticUndeclaredLua(benchmark::State& state) {
    runLua(state,
           "function main() s = 0.0 i = 0.0 while i < 10000 do"
           " s = s + i * 2 - i / 4 i = i + 1 end end");
}
BENCHMARK(arithmeticUndeclaredLua);

void hostCallsLua(benchmark::State& state) {
    runLua(state,
           "function main() local s = 0.0 local i = 0.0 while i < 10000 do"
           " s = plus(s, i) i = i + 1 end end");
}
BENCHMARK(hostCallsLua);

void propertiesLua(benchmark::State& state) {
    runLua(state,
           "function main() local s = 0.0 local i = 0.0 while i < 10000 do"
           " s = s + property(1, 'health') + property(1, 'direction') i = i + 1 end end");
}
BENCHMARK(propertiesLua);

void recursionLua(benchmark::State& state) {
    runLua(state,
           "function fib(n) if n < 2 then return n end return fib(n - 1) + fib(n - 2) end"
           " function main() fib(20) end");
}
BENCHMARK(recursionLua);

void forLoopLua(benchmark::State& state) {
    runLua(state, "function main() local s = 0.0 for i = 0, 9999 do s = s + i end end");
}
BENCHMARK(forLoopLua);

void switchLua(benchmark::State& state) {
    runLua(state,
           "function main() local s = 0.0 local i = 0 while i < 10000 do local k = i % 5"
           " if k == 0 then s = s + 1 elseif k == 1 then s = s + 2 elseif k == 2 then s = s + 3"
           " elseif k == 3 then s = s + 4 else s = s + 5 end i = i + 1 end end");
}
BENCHMARK(switchLua);

void compareNullLua(benchmark::State& state) {
    runLua(state,
           "function main() local s = 0.0 local i = 0.0 while i < 10000 do"
           " if i ~= NULL then s = s + 1 end i = i + 1 end end");
}
BENCHMARK(compareNullLua);

void compareTextsLua(benchmark::State& state) {
    runLua(state,
           "function main() local name = 'WALK' local s = 0.0 local i = 0.0 while i < 10000 do"
           " if name == 'IDLE' then s = s + 1 end if name == 'WALK' then s = s + 2 end"
           " i = i + 1 end end");
}
BENCHMARK(compareTextsLua);

#endif

}  // namespace

BENCHMARK_MAIN();
