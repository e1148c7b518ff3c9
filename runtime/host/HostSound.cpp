// What scripts let be heard, and what they tell their developer. A sound succeeds when its file is
// there and decodes, whether or not there is a device to hear it by: a game goes on alike.

#include <algorithm>

#include "AssetPaths.hpp"
#include "HostFunctions.hpp"
#include "Log.hpp"

namespace port::host {
namespace {

struct Play {
    float gain = 1, speed = 1;
    bool loop = false;
};

bool playFile(HostCall& call, const std::string& name, const Play& play) {
    if (name.empty()) return false;
    call.charge(script::kFileSteps);
    const std::filesystem::path& file = call.services.effects.fileOf(name);
    if (file.empty()) return false;
    call.services.audio.playEffect(file, play.gain, play.loop, play.speed);
    return call.services.audio.lastDecoded();
}

// Empty for a number that no sound has.
const std::string& sampleName(const HostCall& call, std::size_t index) {
    static const std::string kNone;
    const auto& samples = call.world().scripted.samples;
    const int number = call.integer(index);
    const bool known = number >= 0 && static_cast<std::size_t>(number) < samples.size();
    return known ? samples[static_cast<std::size_t>(number)] : kNone;
}

// The number for a name: its own, a new one, or where there are none left one that was unloaded;
// -1 for none.
std::ptrdiff_t numberFor(std::vector<std::string>& samples, const std::string& name) {
    auto place = std::ranges::find(samples, name);
    if (place == samples.end() && samples.size() < script::kMaxSamples) {
        place = samples.insert(place, name);
    }
    if (place == samples.end()) place = std::ranges::find(samples, std::string());
    if (place == samples.end()) return -1;
    *place = name;
    return place - samples.begin();
}

// From nothing to `most`; nothing for what is no number.
double upTo(double most, double value) {
    return value > 0 ? std::min(value, most) : 0;
}

}  // namespace

ScriptValue playMusic(HostCall& call) {
    call.charge(script::kMusicSteps);
    AudioSystem& audio = call.services.audio;
    const double offset = upTo(9e15, call.number(2));
    audio.playMusic(resolveAudioAsset(call.services.dataRoot, call.text(0)), call.flag(1, true),
                    static_cast<std::int64_t>(offset));
    return audio.lastDecoded();
}

ScriptValue pauseMusic(HostCall& call) {
    call.services.audio.pauseMusic(call.flag(0));
    return true;
}

ScriptValue fadeMusic(HostCall& call) {
    call.services.audio.stopMusic();
    return true;
}

ScriptValue playSound(HostCall& call) {
    const bool byNumber = call.isNumeric(0);
    return playFile(call, byNumber ? sampleName(call, 0) : call.text(0), {});
}

ScriptValue loadSample(HostCall& call) {
    call.charge(script::kFileSteps);
    const std::string& name = call.text(0);
    if (name.empty() || call.services.effects.fileOf(name).empty()) return -1.0;
    const std::ptrdiff_t number = numberFor(call.world().scripted.samples, name);
    if (number < 0) call.tag("loadsample-limit");
    return static_cast<double>(number);
}

ScriptValue unloadSample(HostCall& call) {
    auto& samples = call.world().scripted.samples;
    const int number = call.integer(0, -1);
    if (number < 0 || static_cast<std::size_t>(number) >= samples.size()) return false;
    samples[static_cast<std::size_t>(number)].clear();
    return true;
}

ScriptValue playSample(HostCall& call) {
    constexpr double kFull = 100;
    constexpr double kLoudest = 8;
    const double left = call.number(2, kFull);
    const double right = call.number(3, left);
    const double speed = call.number(4, kFull) / kFull;
    Play play;
    play.gain = static_cast<float>(upTo(kLoudest, (left + right) / (2 * kFull)));
    play.speed = static_cast<float>(upTo(kLoudest, speed));
    play.loop = call.flag(5);
    return playFile(call, sampleName(call, 0), play) ? 1.0 : -1.0;
}

ScriptValue printLine(HostCall& call) {
    const std::string& text = call.text(0);
    std::size_t& room = call.services.printRoom;
    if (text.size() >= room) {
        if (room > 0) warnLine("Script output ends: there was too much of it");
        room = 0;
        return true;
    }
    room -= text.size() + 1;
    call.charge(text.size() / script::kTextPerStep);
    logLine("[OpenBOR script] ", text);
    return true;
}

}  // namespace port::host
