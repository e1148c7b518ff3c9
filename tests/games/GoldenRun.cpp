// Makes recordings of whole runs, and holds later runs against them.
//
//     golden record <port> <script> <recording>
//     golden check <port> <script> <recording>
//
// The script says what the players do and what must come of it. A line is one of
//
//     players 1 3            who plays, by places; without it player 1 alone
//     bot 1500               a bot plays, for so many passes
//     lives 5                that bot's players have so many more lives
//     60 right run, 3: jump  what player 1 holds for 60 passes, and what player 3 does meanwhile
//     to 300 right           the same until player 1 has come to that place on the stage
//     log Hole reset         a line of the log begins so, behind the one before in the script
//     end world.tick=60      a field has this value when the run is over, or with < or > a number
//                            below or above it

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Autoplay.hpp"
#include "Engine.hpp"
#include "ExitCodes.hpp"
#include "Log.hpp"
#include "Replay.hpp"
#include "StageLoading.hpp"
#include "TextFields.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

struct Move {
    int passes = 0;      // or, for 0,
    bool right = false;  // from which side
    int place = 0;       // player 1 comes to this place
    std::string held;    // as written
};

struct RunScript {
    std::vector<int> players = {1};
    int botPasses = 0, botLives = 0;
    std::vector<Move> moves;
    std::vector<std::string> log, end;
};

// What is held at once, for the keys of player 1 and the pads of the others.
struct Button {
    std::string_view name;
    int RuntimeConfig::*key;
    int RuntimeConfig::*button;  // null for directions and running
    int direction;               // of the pad
};
constexpr Button kButtons[] = {
    {"left", &RuntimeConfig::keyLeft, nullptr, kPadLeft},
    {"right", &RuntimeConfig::keyRight, nullptr, kPadRight},
    {"up", &RuntimeConfig::keyUp, nullptr, kPadUp},
    {"down", &RuntimeConfig::keyDown, nullptr, kPadDown},
    {"attack", &RuntimeConfig::keyAttack, &RuntimeConfig::padAttack, 0},
    {"jump", &RuntimeConfig::keyJump, &RuntimeConfig::padJump, 0},
    {"dash", &RuntimeConfig::keyDash, &RuntimeConfig::padDash, 0},
    {"grab", &RuntimeConfig::keyGrab, &RuntimeConfig::padGrab, 0},
    {"throw", &RuntimeConfig::keyThrow, &RuntimeConfig::padThrow, 0},
    {"pickup", &RuntimeConfig::keyPickup, &RuntimeConfig::padPickup, 0},
    {"run", &RuntimeConfig::keyRun, nullptr, 0},
};

[[noreturn]] void fail(const std::string& what) {
    std::cerr << what << '\n';
    std::exit(1);
}

HeldInput held(std::string_view text, const RuntimeConfig& config) {
    HeldInput input;
    int place = 1;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        if (word.ends_with(',')) word.remove_suffix(1);
        if (word.ends_with(':')) {
            place = leadingInt(word).value_or(0);
            if (place < 2 || place > kMostPlayers) fail("No player " + std::string(word));
            continue;
        }
        const auto* const button = std::ranges::find(kButtons, word, &Button::name);
        if (button == std::end(kButtons)) fail("No button " + std::string(word));
        if (place == 1) {
            input.keys.set(static_cast<std::size_t>(config.*button->key));
            continue;
        }
        PadState& pad = input.pads[static_cast<std::size_t>(place) - 1];
        pad.connected = true;
        const int mask = button->button ? config.*button->button : button->direction;
        pad.buttons = static_cast<std::uint16_t>(pad.buttons | mask);
        if (word == "run") pad.rightTrigger = 255;
    }
    return input;
}

RunScript readScript(const char* file) {
    std::ifstream in(file);
    RunScript script;
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        const std::string word(takeWord(rest));
        if (word.empty() || word.starts_with('#')) continue;
        rest = trimmed(rest);
        const int number = leadingInt(word).value_or(0);
        if (word == "players") {
            script.players.clear();
            while (!trimmed(rest).empty()) {
                script.players.push_back(leadingInt(takeWord(rest)).value_or(0));
            }
        } else if (word == "bot") {
            script.botPasses = leadingInt(rest).value_or(0);
        } else if (word == "lives") {
            script.botLives = leadingInt(rest).value_or(0);
        } else if (word == "log") {
            script.log.emplace_back(rest);
        } else if (word == "end") {
            script.end.emplace_back(rest);
        } else if (word == "to") {
            const int place = leadingInt(takeWord(rest)).value_or(0);
            const bool right = rest.find("right") != rest.npos;
            script.moves.push_back({0, right, place, std::string(rest)});
        } else if (number > 0) {
            script.moves.push_back({number, false, 0, std::string(rest)});
        } else {
            fail("Not understood: " + line);
        }
    }
    if ((script.botPasses > 0) == !script.moves.empty())
        fail("Either a bot plays or somebody moves");
    if (script.log.empty() || script.end.empty()) fail("Nothing is expected of the run");
    return script;
}

// Plays the moves of a script.
class ScriptedPlay final : public Pilot {
  public:
    explicit ScriptedPlay(const RunScript& script) : script_(script) {}

    bool start(Game& game) override {
        for (PlayerSlot& slot : game.world.slots) slot = {};
        for (const int place : script_.players) {
            game.world.slots.at(static_cast<std::size_t>(place) - 1).joined = true;
        }
        game.world.stage.index = 0;
        beginGame(game);
        return game.frontend.state == FrontendState::Playing;
    }
    TickInput next(const Game& game) override {
        return nextInput(game.input, held(script_.moves[move_].held, game.config));
    }
    bool goesOn(const Game& game) override {
        constexpr int kLongestWay = 1200;
        const Move& move = script_.moves[move_];
        ++passes_;
        const float x = game.world.player1.worldX;
        const auto place = static_cast<float>(move.place);
        const bool done =
            move.passes > 0 ? passes_ >= move.passes : (move.right ? x >= place : x <= place);
        lost_ = !done && move.passes == 0 && passes_ > kLongestWay;
        if (lost_) warnLine("Player 1 does not come to ", move.place, " but to ", x);
        if (done || lost_) {
            logMove(game.world);
            ++move_;
            passes_ = 0;
        }
        return !lost_ && move_ < script_.moves.size() &&
               game.frontend.state == FrontendState::Playing;
    }
    int result(const Game&) override { return lost_ ? kReplayDiffers : kRanWell; }

  private:
    // For those who write scripts.
    void logMove(const World& world) const {
        std::ostringstream line;
        const auto add = [&line](const PlayerActor& player) {
            line << " | " << player.worldX << ' ' << player.z << ' ' << player.altitude
                 << " hp=" << player.health;
        };
        add(world.player1);
        for (const RuntimeCoopPlayer& player : world.coop) add(player);
        const Move& move = script_.moves[move_];
        logLine("MOVE ", move.passes > 0 ? move.passes : move.place, ' ', move.held,
                " tick=", world.tick, line.str());
    }

    const RunScript& script_;
    std::size_t move_ = 0;
    int passes_ = 0;
    bool lost_ = false;
};

// Lets a bot play for a while.
class BotPlay final : public Pilot {
  public:
    BotPlay(int passes, int lives) : bot_({0, lives, {}}), passes_(passes) {}

    bool start(Game& game) override { return bot_.start(game); }
    TickInput next(const Game& game) override { return bot_.next(game); }
    bool goesOn(const Game& game) override { return bot_.goesOn(game) && --passes_ > 0; }
    int result(const Game&) override { return passes_ == 0 ? kRanWell : kReplayDiffers; }

  private:
    Autoplay bot_;
    int passes_;
};

std::unique_ptr<Pilot> playerOf(const RunScript& script) {
    if (script.botPasses > 0) return std::make_unique<BotPlay>(script.botPasses, script.botLives);
    return std::make_unique<ScriptedPlay>(script);
}

std::unique_ptr<Pilot> replayOf(const char* file) {
    std::ifstream in(file);
    Recording recording;
    std::string error;
    if (!readRecording(in, recording, error)) fail(std::string(file) + ": " + error);
    return std::make_unique<Replay>(std::move(recording));
}

// Whether the line of a field is what an "end" of a script says of it.
bool isAsExpected(const std::string& field, const std::string& expected) {
    if (field == expected) return true;
    const std::size_t sign = expected.find_first_of("<>");
    if (sign == expected.npos || !field.starts_with(expected.substr(0, sign) + "=")) return false;
    const double value = std::stod(field.substr(sign + 1));
    const double limit = std::stod(expected.substr(sign + 1));
    return expected[sign] == '<' ? value < limit : value > limit;
}

// How many of what the script expects is not so.
int countFailures(const RunScript& script, const std::string& log, const RunState& run) {
    int failures = 0;
    const auto miss = [&failures](const std::string& what) {
        ++failures;
        std::cerr << what << '\n';
    };
    std::istringstream lines(log);
    std::string line;
    for (const std::string& expected : script.log) {
        do {
            std::getline(lines, line);
        } while (lines && !line.starts_with(expected));
        if (lines) continue;
        miss("Not logged, or not in this order: " + expected);
        lines.clear();
        lines.seekg(0);
    }
    const std::vector<std::string> fields = fieldLines(run);
    for (const std::string& expected : script.end) {
        const auto met = [&expected](const auto& field) { return isAsExpected(field, expected); };
        if (std::ranges::any_of(fields, met)) continue;
        miss("Expected at the end: " + expected);
        const std::string name = expected.substr(0, expected.find_first_of("=<>")) + "=";
        for (const std::string& field : fields) {
            if (field.starts_with(name)) miss("             and not: " + field);
        }
    }
    return failures;
}

int run(std::string_view task, const char* portFolder, const char* scriptFile,
        const char* recording) {
    const RunScript script = readScript(scriptFile);
    Engine engine;
    if (task == "record") {
        engine.setPilot(playerOf(script));
        if (!engine.record(recording)) fail(std::string("Cannot write ") + recording);
    } else {
        engine.setPilot(replayOf(recording));
    }
    std::ostringstream log;
    std::streambuf* const shown = std::cout.rdbuf(log.rdbuf());
    std::streambuf* const warned = std::cerr.rdbuf(log.rdbuf());
    const int code = engine.initialize(portFolder) ? engine.run() : kStartFailed;
    std::cout.rdbuf(shown);
    std::cerr.rdbuf(warned);
    std::cout << log.str() << std::flush;
    if (code != kRanWell) fail("The run broke off, see its last line");
    return countFailures(script, log.str(), engine.game().runState()) == 0 ? 0 : 1;
}

}  // namespace
}  // namespace port

int main(int argc, char** argv) {
    const std::string_view task = argc == 5 ? argv[1] : "";
    if (task != "record" && task != "check") {
        std::cerr << "golden record|check <port> <script> <recording>\n";
        return 2;
    }
    return port::run(task, argv[2], argv[3], argv[4]);
}
