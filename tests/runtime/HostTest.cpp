// The table of what scripts may call, how arguments read, and what needs no world.

#include <cmath>
#include <limits>
#include <set>

#include "HostTrial.hpp"

namespace port {
namespace {

using HostCalls = HostTrial;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST_F(HostCalls, TheTableHoldsWhatScriptsMayCall) {
    const std::string plain =
        "sin, cos, sqrt, atan, atan2, pow, abs, floor, ceil, checkhole, checkholeindex, "
        "checkwall, checkwallindex, bindentity, strlength, getscriptvar, setscriptvar, "
        "openfilestream, getfilestreamline, getfilestreamargument, filestreamnextline, "
        "getfilestreamposition, setfilestreamposition, filestreamappend, createfilestream, "
        "savefilestream, closefilestream, allocscreen, clearscreen, drawspritetoscreen, "
        "drawboxtoscreen, drawlinetoscreen, drawdottoscreen, drawstringtoscreen, drawscreen, "
        "setdrawmethod, changedrawmethod, clearspriteq, drawspriteq, aichecklie, aicheckgrabbed, "
        "aicheckgrab, aicheckescape, aicheckbusy, aicheckattack, aicheckmove, fademusic, "
        "playsound, projectile, openborconstant, openborvariant, changeopenborvariant, "
        "setopenborvariant, jumptobranch, getentity, get_entity, findtarget, find_target, "
        "checkrange, check_range, getentityproperty, get_entity_property, changeentityproperty, "
        "change_entity_property, setentityproperty, getmodelproperty, get_model_property, "
        "getlevelproperty, get_level_property, changelevelproperty, set_level_property, "
        "setlevelproperty, getentityvar, get_entity_var, setentityvar, set_entity_var, "
        "clearentityvar, clear_entity_var, tossentity, setanimation, changeanimation, "
        "performattack, perform_attack, setidle, updateframe, damageentity, damage_entity, "
        "killentity, kill_entity, getplayerproperty, get_player_property, changeplayerproperty, "
        "change_player_property, playerkeys, key, spawn01, spawn01map, spawn000, clearspawnentry, "
        "clear_spawn_entry, setspawnentry, set_spawn_entry, spawn, spawnentity, spawn_entity, "
        "rgbcolor, rgbcolour, loadsprite, freesprite, free, getgfxproperty, get_gfx_property, "
        "drawdot, drawline, drawbox, drawstring, drawsprite, playmusic, pausemusic, loadsample, "
        "unloadsample, playsample, log, printf, debug, ";
    std::set<std::string> wanted, known;
    for (std::size_t at = 0, end = 0; (end = plain.find(", ", at)) != plain.npos; at = end + 2) {
        wanted.insert(plain.substr(at, end - at));
    }
    ASSERT_EQ(wanted.size(), 125U);
    std::size_t rows = 0;
    for (const HostFunction& row : hostFunctions()) {
        if (row.mended) continue;
        known.emplace(row.name);
        ++rows;
    }
    EXPECT_EQ(known, wanted);
    EXPECT_EQ(rows, 125U) << "no name twice";
}

TEST_F(HostCalls, MendedFunctionsAreUnknownWhereAGameIsTakenToTheLetter) {
    EXPECT_EQ(call("trunc", -2.7), ScriptValue(-2.0));
    EXPECT_EQ(call("ROUND", -2.5), ScriptValue(-3.0));
    const auto kind = [&](const char* name) { return call("openborconstant", text(name)); };
    EXPECT_EQ(call("typeof", kEmpty), kind("VT_EMPTY"));
    EXPECT_EQ(call("typeof", std::uintptr_t{0}), kind("VT_EMPTY"));
    EXPECT_EQ(call("typeof", 2.0), kind("VT_INTEGER"));
    EXPECT_EQ(call("typeof", 2.5), kind("VT_DECIMAL"));
    EXPECT_EQ(call("typeof", text("2")), kind("VT_STR"));
    EXPECT_EQ(call("typeof", std::uintptr_t{7}), kind("VT_PTR"));
    EXPECT_EQ(findHostFunction("executeanimation")->run, findHostFunction("performattack")->run);
    config.asWritten = true;
    for (const char* name : {"typeof", "trunc", "round", "executeanimation"}) {
        EXPECT_EQ(call(name, 2.7), kEmpty);
        EXPECT_EQ(tags, Tags{name});
    }
    EXPECT_EQ(call("floor", 2.7), ScriptValue(2.0));
}

TEST_F(HostCalls, ACallIsFoundInAnyCaseAndAnUnknownOneIsNotedAsWritten) {
    EXPECT_EQ(call("StrLength", text("four")), ScriptValue(4.0));
    EXPECT_EQ(call("Strlenght"), kEmpty);
    EXPECT_EQ(tags, Tags{"Strlenght"});
}

TEST_F(HostCalls, ArgumentsReadAsWhatAFunctionExpects) {
    // As text: whole numbers plainly, others with six digits behind the point.
    EXPECT_EQ(call("strlength", 1234567.0), ScriptValue(7.0));
    EXPECT_EQ(call("strlength", 0.5), ScriptValue(8.0));
    EXPECT_EQ(call("strlength", true), ScriptValue(1.0));
    EXPECT_EQ(call("strlength", kPlayer1Handle), ScriptValue(0.0));
    EXPECT_EQ(call("strlength"), ScriptValue(0.0));
    // As a number.
    EXPECT_EQ(call("abs", text(" -2.5 apples")), ScriptValue(2.5));
    EXPECT_EQ(call("abs", text("apples")), ScriptValue(0.0));
    EXPECT_EQ(call("abs", true), ScriptValue(1.0));
    EXPECT_EQ(call("abs", ActorHandle{7}), ScriptValue(7.0));
    EXPECT_EQ(call("rgbcolor", 1.9, 300.0, -5.0), ScriptValue(65536.0 + 255 * 256));
    EXPECT_EQ(call("rgbcolor", kNaN, 1e308, -1e308), ScriptValue(255.0 * 256));
    // As an actor: what is 0 means the caller, and what names nobody is nobody.
    RuntimeEntity& entity = add(makeEnemy(), 100);
    be(entity);
    const ScriptValue x = text("x");
    EXPECT_EQ(call("getentityproperty", 0.0, x), ScriptValue(100.0));
    EXPECT_EQ(call("getentityproperty", std::monostate(), x), ScriptValue(100.0));
    EXPECT_EQ(call("getentityproperty", kPlayer1Handle, x), ScriptValue(500.0));
    EXPECT_EQ(call("getentityproperty", 1.0, x), ScriptValue(500.0));
    for (const double nobody : {2.0, 999.0, 1e300, -1.0, kNaN}) {
        EXPECT_EQ(call("getentityproperty", nobody, x), kEmpty) << "only 0 means the caller";
    }
    be(player);
    EXPECT_EQ(call("getentityproperty", 0.0, x), ScriptValue(500.0));
    context = {};
    EXPECT_EQ(call("getentityproperty", 0.0, x), kEmpty);
}

TEST_F(HostCalls, AHandleNeverReachesSomebodyElse) {
    const ActorHandle gone = add(makeEnemy(), 100).handle;
    world.entities.clear();
    RuntimeEntity& next = add(makeEnemy(), 200);
    EXPECT_EQ(call("changeentityproperty", gone, text("x"), 50.0), kEmpty);
    EXPECT_EQ(next.worldX, 200);
    EXPECT_EQ(call("getentityproperty", gone, text("exists")), ScriptValue(0.0));
    EXPECT_EQ(call("killentity", gone), ScriptValue(0.0));
    EXPECT_TRUE(next.visible);
}

TEST_F(HostCalls, MathematicsIsPlain) {
    EXPECT_EQ(call("sqrt", 9.0), ScriptValue(3.0));
    EXPECT_EQ(call("sqrt", -9.0), ScriptValue(0.0));
    EXPECT_EQ(call("pow", 2.0, 10.0), ScriptValue(1024.0));
    EXPECT_EQ(call("atan2", 1.0, 0.0), ScriptValue(std::atan2(1.0, 0.0)));
    EXPECT_EQ(call("floor", -1.5), ScriptValue(-2.0));
    EXPECT_EQ(call("ceil", -1.5), ScriptValue(-1.0));
    EXPECT_EQ(call("cos"), ScriptValue(0.0));
    EXPECT_EQ(call("pow", 2.0), ScriptValue(0.0));
}

TEST_F(HostCalls, ConstantsAreNumbersOrWords) {
    const auto constant = [&](const char* name) { return call("openborconstant", text(name)); };
    EXPECT_EQ(constant("TYPE_ENEMY"), text("enemy"));
    EXPECT_EQ(constant("ANI_Attack1"), text("attack1"));
    EXPECT_EQ(constant("FLAG_ATTACK4"), ScriptValue(2048.0));
    EXPECT_EQ(constant("aimove2_ignoreholes"), ScriptValue(65536.0));
    EXPECT_EQ(constant("aimove1_star"), ScriptValue(1024.0));
    EXPECT_EQ(constant("ENTITY_PROPERTY_VELOCITY_Y"), text("tossv"));
    EXPECT_EQ(constant("model_property_subject_to_gravity"), text("subject_to_gravity"));
    EXPECT_EQ(constant("blend_multiply"), ScriptValue(3.0));
    EXPECT_EQ(constant("a constant with a name that is longer than any of the table"),
              ScriptValue(0.0));
    EXPECT_EQ(constant("max_ents"), ScriptValue(1024.0));
    EXPECT_EQ(constant("atk_freeze"), ScriptValue(1003.0));
    EXPECT_EQ(constant("Entity_Property_Opponent"), text("opponent")) << "the key of a property";
    EXPECT_EQ(constant("entity_property_mood"), ScriptValue(0.0));
    config.asWritten = true;
    EXPECT_EQ(constant("max_ents"), ScriptValue(0.0));
    EXPECT_EQ(constant("entity_property_opponent"), ScriptValue(0.0));
    EXPECT_EQ(constant("entity_property_velocity_y"), text("tossv"));
}

TEST_F(HostCalls, VariablesBelongToTheirActor) {
    RuntimeEntity& entity = add(makeEnemy(), 100);
    be(entity);
    call("setentityvar", 0.0, text("mood"), 5.0);
    call("setentityvar", kPlayer1Handle, 3.0, text("three"));
    EXPECT_EQ(call("getentityvar", entity.handle, text("mood")), ScriptValue(5.0));
    EXPECT_EQ(call("getentityvar", kPlayer1Handle, text("3")), text("three"));
    EXPECT_EQ(call("getentityvar", kPlayer1Handle, text("mood")), kEmpty);
    call("clearentityvar", kPlayer1Handle, text("other"));
    EXPECT_EQ(world.slots[0].scriptVars.size(), 1U);
    call("clearentityvar", kPlayer1Handle);
    EXPECT_TRUE(world.slots[0].scriptVars.empty());
    EXPECT_EQ(call("setscriptvar", 2.7, 9.0), ScriptValue(9.0));
    EXPECT_EQ(context.local.at("__scriptvar_2"), ScriptValue(9.0));
    EXPECT_EQ(call("getscriptvar", 2.0), ScriptValue(9.0));
    EXPECT_EQ(call("setscriptvar", -1.0, 9.0), kEmpty);
    EXPECT_EQ(tags, Tags{"setscriptvar-index"});
}

// Constant keys find their rows when a call is compiled, others when it is made.
TEST_F(HostCalls, WhatIsResolvedBeforehandIsWhatACallFinds) {
    RuntimeEntity& entity = add(makeEnemy(), 100);
    entity.altitude = -5;
    entity.verticalVelocity = -1;  // on its way up: players and entities answer differently
    player.altitude = -5;
    const std::pair<const char*, std::vector<std::string>> calls[] = {
        {"openborconstant", {"\"FLAG_JUMP\""}},
        {"openborconstant", {"\"Ani_Walk\""}},
        {"openborconstant", {"\"no such\""}},
        {"openborvariant", {"\"ELAPSED_TIME\""}},
        {"openborvariant", {"\"no such\""}},
        {"rgbcolor", {"1", "2", "3"}},
        {"sqrt", {"-1"}},
        {"pow", {"2"}},
        {"getentityproperty", {"who", "\"Health\""}},
        {"getentityproperty", {"who", "\"aiflag\"", "\"falling\""}},
        {"getentityproperty", {"who", "\"playerindex\""}},
        {"getentityproperty", {"who", "\"no such\""}},
        {"getplayerproperty", {"0", "\"maxhealth\""}},
        {"getmodelproperty", {"who", "\"speed\""}},
        {"getlevelproperty", {"\"zmax\""}},
        {"getlevelproperty", {"0", "\"zmax\""}},
        {"changelevelproperty", {"\"camerax\"", "7"}},
        {"setspawnentry", {"\"health\"", "7"}},
        {"changedrawmethod", {"who", "\"scalex\"", "128"}},
    };
    std::string body;
    for (const auto& [name, arguments] : calls) {
        std::string direct, named;
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::string variable = "v" + std::to_string(i);
            direct += (i == 0 ? "" : ", ") + arguments[i];
            named += (i == 0 ? "" : ", ") + variable;
            body += variable + " = " + arguments[i] + ";";
        }
        body += std::string("note(\"") + name + "\", " + name + "(" + direct + "), " + name + "(" +
                named + "));";
    }
    folder.write("data/both.c",
                 "void note(void name, void a, void b) {"
                 " if (typed(a) != typed(b)) setglobalvar(\"hooks\", getglobalvar(\"hooks\") + name"
                 " + \":\" + typed(a) + \"/\" + typed(b) + \" \"); }"
                 "string typed(void v) { if (isempty(v)) return \"empty\"; return \"\" + v; }"
                 "void main() { who = getlocalvar(\"self\");" +
                     body +
                     "setglobalvar(\"done\", openborconstant(\"AIMOVE1_STAR\") +"
                     " getentityproperty(who, \"health\")); }");
    scripts.open(folder.path(), folder.path() / "data", &host);
    for (Actor* actor : {static_cast<Actor*>(&player), static_cast<Actor*>(&entity)}) {
        scripts.machine().globals()["hooks"] = std::string();
        scripts.beginPass();
        quietly([&] { scripts.runHook("both.c", actor->scriptCtx, "both"); });
        EXPECT_EQ(global("hooks"), "") << warnings;
        EXPECT_EQ(global("done"), std::to_string(1024 + actor->health)) << warnings;
    }
}

// "key" is also the language's, for the names of an array.
TEST_F(HostCalls, KeysOfAPlayerAreAskedForByBothNames) {
    script("ask.c",
           "setglobalvar(\"one\", 2 + key(0, 0, \"attack\"));"
           "setglobalvar(\"two\", 2 + playerkeys(0, 0, \"jump\"));"
           "void list = array(0); set(list, \"name\", 1);"
           "setglobalvar(\"three\", key(list));");
    world.slots[0].keys = 1U << 4U;
    scripts.beginPass();
    quietly([&] { scripts.runHook("ask.c", context, "ask"); });
    EXPECT_EQ(global("one") + " " + global("two") + " " + global("three"), "3 2 name") << warnings;
}

TEST_F(HostCalls, SoundsSucceedWhenTheyDecode) {
    const ScriptValue hit = text("data/sounds/hit.wav");
    EXPECT_EQ(call("playsound", hit), ScriptValue(true));
    EXPECT_EQ(call("playsound", text("data/sounds/absent.wav")), ScriptValue(false));
    EXPECT_EQ(call("playsound", text("data/chars/red.gif")), ScriptValue(false));
    EXPECT_EQ(call("loadsample", text("sounds/absent.wav")), ScriptValue(-1.0));
    EXPECT_EQ(call("loadsample", text("sounds/hit.wav")), ScriptValue(0.0));
    EXPECT_EQ(call("loadsample", hit), ScriptValue(1.0));
    EXPECT_EQ(call("loadsample", text("sounds/hit.wav")), ScriptValue(0.0));
    call("unloadsample", 0.0);
    EXPECT_EQ(call("playsample", 0.0), ScriptValue(-1.0));
    EXPECT_EQ(call("playsample", 1.0, 0.0, kNaN, 1e308, -1e308, 1.0), ScriptValue(1.0));
    EXPECT_EQ(call("playsound", 1.0), ScriptValue(true));
    EXPECT_EQ(call("playsound", -1.0), ScriptValue(false));
    EXPECT_EQ(call("playmusic", text("music/song")), ScriptValue(true)) << "any extension";
    EXPECT_EQ(call("playmusic", text("music/song"), 1.0, kNaN), ScriptValue(true));
    EXPECT_EQ(call("playmusic", text("../song.wav")), ScriptValue(false));
}

TEST_F(HostCalls, WhatScriptsPrintIsBounded) {
    call("log", text("here"), text("not this"));
    EXPECT_EQ(log, "[OpenBOR script] here\n");
    const std::string line(1U << 20U, 'x');
    for (int i = 0; i < 10; ++i) call("printf", line);
    EXPECT_EQ(log, "");
}

TEST_F(HostCalls, WorkThatGrowsTakesSteps) {
    script("spin.c", "int i; for(i=0;i<100000;i++){ playmusic(\"absent\"); }");
    scripts.beginPass();
    quietly([&] { scripts.runHook("spin.c", context, "spin"); });
    EXPECT_EQ(warnings, "Script VM spin error [spin.c]: script step limit exceeded\n");
}

}  // namespace
}  // namespace port
