#include "Recording.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string_view>

#include "Log.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr std::string_view kVersionLine = "version=1";
constexpr std::array<std::string_view, 4> kSections = {"gameplay", "combat", "input", "reading"};

// Numbers of a line, one after the other.
class Words {
  public:
    explicit Words(std::string_view line) : rest_(line) {}

    std::string_view next() { return takeWord(rest_); }
    [[nodiscard]] std::string_view rest() const { return trimmed(rest_); }
    [[nodiscard]] bool atEnd() const { return trimmed(rest_).empty(); }
    // Nothing for what is no such number.
    template <class Number>
    std::optional<Number> number(int base = 10) {
        const std::string_view word = next();
        Number value{};
        const auto read = std::from_chars(word.data(), word.data() + word.size(), value, base);
        if (read.ec != std::errc() || read.ptr != word.data() + word.size()) return std::nullopt;
        return value;
    }

  private:
    std::string_view rest_;
};

// "input k <keys> n <pressed keys> p <pad> <buttons> <x> <y> <trigger> <pressed buttons> ...": keys
// and buttons as hexadecimal numbers; an absent pad is left out.
void writeInput(std::ostream& out, const TickInput& input) {
    const auto keys = [&out](char mark, const auto& set) {
        if (set.none()) return;
        out << ' ' << mark;
        for (std::size_t key = 0; key < set.size(); ++key) {
            if (set[key]) out << ' ' << key;
        }
    };
    out << "input" << std::hex;
    keys('k', input.held.keys);
    keys('n', input.pressedKeys);
    for (std::size_t pad = 0; pad < input.held.pads.size(); ++pad) {
        const PadState& state = input.held.pads[pad];
        if (!state.connected) continue;
        out << " p " << pad << ' ' << state.buttons << std::dec << ' ' << state.thumbLX << ' '
            << state.thumbLY << ' ' << int{state.rightTrigger} << std::hex << ' '
            << input.pressedButtons[pad];
    }
    out << std::dec << '\n';
}

bool readPad(Words& words, TickInput& input) {
    const auto pad = words.number<unsigned>();
    const auto buttons = words.number<std::uint16_t>(16);
    const auto x = words.number<std::int16_t>();
    const auto y = words.number<std::int16_t>();
    const auto trigger = words.number<std::uint8_t>();
    const auto pressed = words.number<std::uint16_t>(16);
    if (!pad || *pad >= kPadCount || !buttons || !x || !y || !trigger || !pressed) return false;
    input.held.pads[*pad] = {true, *buttons, *x, *y, *trigger};
    input.pressedButtons[*pad] = *pressed;
    return true;
}

bool readInput(Words& words, TickInput& input) {
    char mark = ' ';
    while (!words.atEnd()) {
        Words ahead = words;
        const std::string_view word = ahead.next();
        if (word == "k" || word == "n" || word == "p") {
            mark = word.front();
            words = ahead;
            if (mark == 'p' && !readPad(words, input)) return false;
            continue;
        }
        const auto key = words.number<unsigned>(16);
        if (!key || *key >= kKeyCount || (mark != 'k' && mark != 'n')) return false;
        (mark == 'k' ? input.held.keys : input.pressedKeys).set(*key);
    }
    return true;
}

bool readPass(std::string_view line, Recording& out) {
    Words words(line);
    const auto pass = words.number<std::uint64_t>();
    if (!pass || *pass < out.passes || *pass > Recording::kMostPasses || out.ended) return false;
    out.passes = *pass;
    const std::string_view what = words.next();
    if (what == "input") {
        if (*pass == 0) return false;
        out.changes.push_back({*pass, {}});
        return readInput(words, out.changes.back().input);
    }
    if (what == "hash") {
        const auto tick = words.number<std::uint64_t>();
        const auto hash = words.number<std::uint64_t>(16);
        // A replay waits for each in its turn.
        const std::uint64_t last = out.hashes.empty() ? 0 : out.hashes.back().pass;
        if (!tick || !hash || *pass <= last) return false;
        out.hashes.push_back({*pass, *tick, *hash, std::string(words.next())});
        return words.atEnd();
    }
    if (what == "save") {
        if (out.saves.empty() || out.saves.back().pass != *pass) out.saves.push_back({*pass, {}});
        out.saves.back().lines.append(words.rest()).append("\n");
        return true;
    }
    const auto hash = words.number<std::uint64_t>(16);
    if (what != "end" || !hash) return false;
    out.ended = true;
    out.endHash = *hash;
    return words.atEnd();
}

bool readStart(std::string_view line, RecordedStart& start) {
    const std::size_t equals = line.find('=');
    if (equals == line.npos) return false;
    const std::string_view key = line.substr(0, equals);
    Words words(line.substr(equals + 1));
    if (key == "model") {
        start.model = line.substr(equals + 1);
        return true;
    }
    if (key == "players") {
        for (std::size_t slot = 0; slot < start.joined.size(); ++slot) {
            const auto select = words.number<int>();
            if (!select || *select < -1) return false;
            start.joined[slot] = *select >= 0;
            start.select[slot] = std::max(0, *select);
        }
        return words.atEnd();
    }
    if (key == "rows") {
        for (int* row : {&start.menuRow, &start.optionRow, &start.controlsRow}) {
            constexpr unsigned kMostRows = 100;
            const auto number = words.number<unsigned>();
            if (!number || *number >= kMostRows) return false;
            *row = static_cast<int>(*number);
        }
        return words.atEnd();
    }
    const auto number = words.number<std::uint32_t>();
    if (!number || !words.atEnd()) return false;
    if (key == "stage") start.stage = *number;
    if (key == "keep_looks") start.keepLooks = *number != 0;
    if (key == "skips_menus") start.skipsMenus = *number != 0;
    if (key == "extra_lives" || key == "completions") {
        if (*number > INT32_MAX) return false;
        (key == "completions" ? start.completions : start.extraLives) = static_cast<int>(*number);
    }
    if (key == "drive") {
        if (*number > static_cast<std::uint32_t>(PlayerDrive::SelfCheck)) return false;
        start.drive = static_cast<PlayerDrive>(*number);
    }
    return key == "stage" || key == "keep_looks" || key == "drive" || key == "skips_menus" ||
           key == "extra_lives" || key == "completions";
}

}  // namespace

bool readRecording(std::istream& in, Recording& out, std::string& error) {
    std::string section, line;
    bool versionKnown = false;
    for (int number = 1; std::getline(in, line); ++number) {
        // The run broke off in the middle of it.
        if (in.eof()) break;
        const std::string_view text = trimmed(line);
        if (text.empty()) continue;
        bool good = true;
        if (text.front() == '[') {
            section = text;
            if (section == "[begin]") out.starts.emplace_back();
            good = out.starts.size() <= Recording::kMostStarts &&
                   (section != "[save]" || !out.starts.empty());
            out.settings.append(text).append("\n");
        } else if (section == "[recording]") {
            good = versionKnown = text == kVersionLine;
        } else if (section == "[begin]") {
            good = readStart(text, out.starts.back());
        } else if (section == "[save]") {
            out.starts.back().save.append(text).append("\n");
        } else if (section == "[passes]") {
            good = readPass(text, out);
        } else {
            out.settings.append(text).append("\n");
        }
        if (good && (versionKnown || section == "[recording]")) continue;
        error = "line " + std::to_string(number) + ": " + std::string(text.substr(0, 80));
        return false;
    }
    if (!versionKnown || out.starts.empty()) {
        error = "no recording";
        return false;
    }
    return true;
}

bool Recorder::open(const std::filesystem::path& file) {
    // The same bytes on every system.
    out_.open(file, std::ios::trunc | std::ios::binary);
    out_.imbue(std::locale::classic());
    return out_.good();
}

void Recorder::resumes(const SavedGame& save) {
    if (!out_.is_open()) return;
    std::stringstream text;
    writeSavedGame(text, save);
    if (passes_ == 0) save_ = text.str();
    for (std::string line; passes_ > 0 && std::getline(text, line);) {
        out_ << passes_ << " save " << line << '\n';
    }
}

void Recorder::begin(const RecordedStart& start, const RuntimeConfig& config) {
    if (!out_.is_open() || passes_ > 0) return;
    if (!hasStart_) {
        out_ << "[recording]\n" << kVersionLine << '\n';
        out_.precision(std::numeric_limits<float>::max_digits10);
        for (const std::string_view section : kSections) {
            writeRuntimeSection(out_, config, section);
        }
    }
    hasStart_ = true;
    out_ << "[begin]\nstage=" << start.stage << "\nplayers=";
    for (std::size_t slot = 0; slot < start.joined.size(); ++slot) {
        out_ << (start.joined[slot] ? start.select[slot] : -1) << ' ';
    }
    out_ << "\nmodel=" << start.model << "\ndrive=" << static_cast<int>(start.drive)
         << "\nkeep_looks=" << int{start.keepLooks} << "\nskips_menus=" << int{start.skipsMenus}
         << "\nextra_lives=" << start.extraLives << "\nrows=" << start.menuRow << ' '
         << start.optionRow << ' ' << start.controlsRow << "\ncompletions=" << start.completions
         << '\n';
    if (!save_.empty()) out_ << "[save]\n" << std::exchange(save_, {});
}

void Recorder::pass(const TickInput& input) {
    if (!hasStart_) return;
    if (++passes_ == 1) out_ << "[passes]\n";
    if (input == last_) return;
    last_ = input;
    out_ << passes_ << ' ';
    writeInput(out_, input);
}

// Flushed here, so that a run that breaks off is kept up to its last second.
void Recorder::played(const RunState& run) {
    if (passes_ == 0 || run.world.tick % kRecordedHashTicks != 0) return;
    out_ << passes_ << " hash " << run.world.tick << ' ' << hashDigits(worldHash(run)) << ' '
         << fieldDigits(run).digits << '\n'
         << std::flush;
}

void Recorder::end(std::uint64_t hash) {
    if (passes_ == 0) return;
    out_ << passes_ << " end " << hashDigits(hash) << '\n' << std::flush;
    if (!out_) warnLine("RECORD FAIL: the recording could not be written to its end");
}

}  // namespace port
