// Two runs are told apart by every field of their worlds.

#include "WorldHash.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

#include "AnimationLookup.hpp"

namespace port {
namespace {

// Changes one field after the other, each back again, and asks whether the run is seen to differ
// there and nowhere else. Every record of the world goes through it by its own list of fields.
class FieldChanges {
  public:
    explicit FieldChanges(World& world) : world_(world), hash_(hash()), lines_(fieldLines(run())) {}

    void walk() {
        field("world", world_);
        EXPECT_GT(changes_, 150) << "the world has become suspiciously small";
    }

  private:
    [[nodiscard]] RunState run() const { return {world_, scripts_, 0}; }
    [[nodiscard]] std::uint64_t hash() const { return worldHash(run()); }

    void expectSeen(const std::string& path) {
        ++changes_;
        EXPECT_NE(hash(), hash_) << path << " does not count";
        const std::vector<std::string> now = fieldLines(run());
        const auto at = std::ranges::mismatch(lines_, now).in2;
        EXPECT_TRUE(at != now.end() && at->starts_with(path)) << path << " is told as " << *at;
    }
    template <class Value>
    void change(const std::string& path, Value& value, Value other) {
        std::swap(value, other);
        expectSeen(path);
        std::swap(value, other);
    }

    template <class Value>
    void field(const std::string& path, Value& value) {
        if constexpr (HasFields<Value>) {
            Value::visitFields(
                value, [&](const char* name, auto& inner) { field(path + "." + name, inner); });
        } else if constexpr (std::is_same_v<Value, bool>) {
            change(path, value, !value);
        } else if constexpr (std::is_enum_v<Value>) {
            change(path, value, static_cast<Value>(1));
        } else if constexpr (std::is_arithmetic_v<Value>) {
            change(path, value, static_cast<Value>(value + 1));
        } else {
            special(path, value);
        }
    }

    void special(const std::string& path, const generated::Character*& model) {
        change(path, model, findCharacter(model ? "mate" : "hero"));
    }
    void special(const std::string& path, const generated::Animation*& animation) {
        change(path, animation, findAnimation(findCharacter("hero"), "walk"));
    }
    void special(const std::string& path, const generated::Frame*& frame) {
        change(path, frame, findAnimation(findCharacter("hero"), "walk")->frames);
    }
    void special(const std::string& path, const generated::Spawn*& spawn) {
        change(path, spawn, generated::kStages[0].spawns);
    }
    void special(const std::string& path, const generated::Stage*& stage) {
        change(path, stage, generated::kStages + 1);
    }
    void special(const std::string& path, AnimationPlayer& player) {
        AnimationPlayer other;
        other.setAnimation(findAnimation(findCharacter("hero"), "idle"));
        change(path, player, other);
        AnimationPlayer before = std::exchange(player, other);
        const FieldChanges shown(world_);
        player.update(1);
        EXPECT_NE(hash(), shown.hash_) << path << ".tick";
        player.setFrame(1);
        EXPECT_NE(hash(), shown.hash_) << path << ".frame";
        player = before;
    }
    void special(const std::string& path, ScriptContext& context) {
        special(path + ".local", context.local);
        field(path + ".entity", context.entity);
        field(path + ".other", context.other);
        field(path + ".player", context.player);
        field(path + ".playerIndex", context.playerIndex);
    }
    void special(const std::string& path, ScriptVariables& variables) {
        auto more = variables;
        more["zz"] = 1.0;
        change(path, variables, more);
    }
    void special(const std::string& path, generated::DrawMethod& draw) {
        auto& [enabled, scaleX, scaleY, flipX, flipY, shiftX, alphaMode, remap, fillColor, tintMode,
               tintColor, rotate, flipRotate] = draw;
        for (bool* part : {&enabled, &flipX, &flipY, &flipRotate}) field(path, *part);
        for (float* part : {&scaleX, &scaleY, &shiftX}) field(path, *part);
        for (int* part : {&alphaMode, &remap, &fillColor, &tintMode, &tintColor, &rotate}) {
            field(path, *part);
        }
    }
    void special(const std::string& path, std::mt19937& random) {
        change(path, random, std::mt19937(7));
    }
    void special(const std::string& path, std::set<ActorHandle>& handles) {
        change(path, handles, {9});
    }
    void special(const std::string& path, EntityList& entities) {
        for (std::size_t i = 0; i < entities.size(); ++i) {
            field(path + "[" + std::to_string(i) + "]", entities[i]);
        }
    }
    template <class Values>
    void special(const std::string& path, Values& values) {
        if constexpr (requires { values.push_back({}); }) {
            values.push_back({});
            expectSeen(path);
            values.pop_back();
        }
        std::size_t index = 0;
        for (auto& value : values) field(path + "[" + std::to_string(index++) + "]", value);
    }

    World& world_;
    ScriptVM scripts_;
    std::uint64_t hash_;
    std::vector<std::string> lines_;
    int changes_ = 0;
};

TEST(WorldHash, EveryFieldOfTheWorldCountsAndIsTold) {
    World world;
    world.coop.emplace_back();
    world.entities.add({});
    world.projectiles.emplace_back();
    world.pendingChildSpawns.emplace_back();
    world.pendingWeaponDrops.emplace_back();
    world.stage.spawnState.emplace_back();
    world.stage.eventState.emplace_back();
    FieldChanges(world).walk();
}

TEST(WorldHash, ScriptsCountWithEveryElementOfTheirArrays) {
    World world;
    ScriptVM scripts;
    const auto hash = [&](int screen = 0) { return worldHash({world, scripts, screen}); };
    auto inner = newScriptArray();
    auto outer = newScriptArray();
    inner->indexed = {1.0, outer};  // they hold each other
    outer->named["in"] = inner;
    outer->namedOrder = {"in"};
    scripts.globals()["a"] = outer;
    std::uint64_t last = hash();
    EXPECT_EQ(hash(), last);
    const auto change = [&](const char* what, auto&& edit) {
        edit();
        EXPECT_NE(hash(), last) << what;
        last = hash();
    };
    change("element", [&] { inner->indexed[0] = 2.0; });
    change("kind", [&] { inner->indexed[0] = "2"; });
    change("cursor", [&] { outer->cursor = 1; });
    change("order", [&] { outer->namedOrder = {"out"}; });
    change("sharing", [&] {
        auto copy = newScriptArray();
        copy->indexed = {"2", outer};
        outer->named["in"] = copy;
        scripts.globals()["b"] = inner;
    });
    EXPECT_NE(hash(1), last) << "the screen";
    inner->indexed.clear();  // lets the circle go
    outer->named.clear();
}

TEST(WorldHash, ItTellsTheFirstFieldInWhichTwoRunsPart) {
    World one, other;
    ScriptVM scripts;
    const auto difference = [&] { return firstDifference({one, scripts}, {other, scripts}); };
    EXPECT_EQ(difference(), "");
    other.player1.health = 25;
    other.camera.x = 0.1F;
    EXPECT_EQ(difference(), "world.player1.health=100 and world.player1.health=25");
    other.player1.health = 100;
    EXPECT_EQ(difference(), "world.camera.x=0 and world.camera.x=0.10000000149011612");
    other.camera.x = 0;
    one.camera.x = std::numeric_limits<float>::quiet_NaN();
    other.camera.x = -one.camera.x;
    EXPECT_EQ(difference(), "") << "the sign of no number is the processor's";
    EXPECT_EQ(worldHash({one, scripts}), worldHash({other, scripts}));
    one.camera.x = other.camera.x = 0;
    other.entities.add({});
    EXPECT_EQ(difference(), "world.entities.nextHandle=5 and world.entities.nextHandle=6");
    EXPECT_EQ(hashDigits(0xABCU), "0000000000000abc");
}

TEST(Entities, HandlesAreNeverUsedAgain) {
    EntityList list;
    const ActorHandle first = list.add({})->handle;
    EXPECT_EQ(first, 5U);
    RuntimeEntity* second = list.add({});
    EXPECT_EQ(second->scriptCtx.local.at("self"), ScriptValue(second->handle));
    EXPECT_EQ(list.find(second->handle), second);
    EXPECT_EQ(list.indexOf(second->handle), 1U);
    EXPECT_EQ(list.find(second->handle + 1), nullptr);
    list.clear();
    EXPECT_EQ(list.find(first), nullptr);
    EXPECT_EQ(list.add({})->handle, 7U);
    EXPECT_EQ(list.indexOf(7), 0U);
    int visits = 0;
    list.visit([&](RuntimeEntity&) {
        if (++visits < 10) list.add({});
    });
    EXPECT_EQ(visits, 10) << "those that the visits add are visited";
}

}  // namespace
}  // namespace port
