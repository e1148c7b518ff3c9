#pragma once

// One call that a script makes: its arguments, read as what a function expects, and all that the
// function may work with.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "AudioSystem.hpp"
#include "Devices.hpp"
#include "Renderer.hpp"
#include "ScriptLimits.hpp"
#include "ScriptPictures.hpp"
#include "SoundEffects.hpp"
#include "SpriteCache.hpp"
#include "Tick.hpp"

namespace port {

// What calls reach of a game beside the tick.
struct HostServices {
    std::filesystem::path root;  // of the port
    std::filesystem::path dataRoot;
    Renderer renderer;
    AudioSystem audio;
    SoundEffects effects;
    SpriteCache sprites;
    ScriptPictures scriptPictures;
    std::function<bool()> isPlaying = [] { return true; };  // the stage, not a menu or its loading
    std::size_t printRoom = script::kMaxPrintedBytes;       // left for what scripts print

    explicit HostServices(const platform::Devices& devices = {})
        : renderer(devices.presentation, devices.fonts), audio(devices.audio) {}
};

// An argument that is missing reads as an empty value, or as the fallback where there is one.
struct HostCall {
    Tick& tick;
    HostServices& services;
    ScriptContext& context;
    std::string_view name;  // of the function, in lower case
    std::span<const ScriptValue> args;
    UnansweredNames& unsupported;
    std::size_t row = HostTarget::kNoRow;  // that a constant names, see namedRow()

    [[nodiscard]] World& world() const { return tick.world; }
    [[nodiscard]] std::size_t count() const { return args.size(); }
    [[nodiscard]] bool has(std::size_t index) const { return index < args.size(); }
    // Numbers and truths; texts that look like numbers are texts.
    [[nodiscard]] bool isNumeric(std::size_t index) const;
    [[nodiscard]] const ScriptValue& value(std::size_t index) const;

    [[nodiscard]] double number(std::size_t index, double fallback = 0) const;
    // Towards zero, kept within an int; 0 for no number.
    [[nodiscard]] int integer(std::size_t index, int fallback = 0) const;
    // Kept within 2^24 pixels; 0 for no number.
    [[nodiscard]] float pixels(std::size_t index, float fallback = 0) const;
    [[nodiscard]] bool flag(std::size_t index, bool fallback = false) const;
    // Whole numbers without a fraction, others with six digits of one; handles and arrays are
    // empty. What was made of a number lasts until the next one is.
    [[nodiscard]] const std::string& text(std::size_t index);
    // 0 for what is none; a number that no handle can be names nothing.
    [[nodiscard]] std::uintptr_t handle(std::size_t index) const;

    // Whose script it is; 0 for a script of the stage or of the game.
    [[nodiscard]] ActorHandle caller() const;
    // The handle as it stands, or the caller's for 0.
    [[nodiscard]] ActorHandle actorHandle(std::size_t index) const;
    // By actorHandle(). Null for nobody, also for somebody of an earlier stage.
    [[nodiscard]] Actor* actor(std::size_t index) const;
    // By its name; null for an unknown one.
    [[nodiscard]] const generated::Character* model(std::size_t index);

    // Notes what the function cannot do with its arguments, once a run of the script.
    void tag(std::string_view text) { unsupported.add(text); }
    void tag(std::string_view text, std::string_view more);
    // Takes steps for work that is more than a few instructions: the rows or actors looked at.
    void charge(std::size_t steps);
    void chargeScan(std::size_t looked) { charge(1 + looked / script::kScannedPerStep); }

    std::string scratch = {};  // what text() made of a value that is none
};

// Texts, numbers and truths of the tables as scripts get them: truths are 1 and 0.
[[nodiscard]] inline ScriptValue scriptValue(double number) {
    return number;
}
[[nodiscard]] inline ScriptValue scriptValue(const char* text) {
    return ScriptText(text);
}
[[nodiscard]] inline ScriptValue scriptTruth(bool truth) {
    return truth ? 1.0 : 0.0;
}
// As scripts count heights and speeds: upward.
[[nodiscard]] inline ScriptValue scriptUpward(float downward) {
    return 0.0 - static_cast<double>(downward);
}

[[nodiscard]] inline bool isPlayer(const Actor& actor) {
    return actor.handle <= kLastPlayerHandle;
}

}  // namespace port
