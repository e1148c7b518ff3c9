#include "PlaytestReport.hpp"

#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include "FileBytes.hpp"
#include "PathEncoding.hpp"

namespace port {
namespace {

// As valid UTF-8 on one line.
std::string readable(std::string_view bytes) {
    std::string text = PathEncoding::text(bytes);
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return text;
}

// Values inside each other, a line each.
class JsonText {
  public:
    using Name = std::optional<std::string_view>;

    void open(Name name, char bracket) {
        begin(name);
        text_ += bracket;
        empty_ = true;
        depth_ += 2;
    }
    void close(char bracket) {
        depth_ -= 2;
        if (!empty_) line();
        text_ += bracket;
        empty_ = false;
    }
    void number(Name name, std::uint64_t value) {
        begin(name);
        text_ += std::to_string(value);
    }
    void text(Name name, std::string_view value) {
        begin(name);
        quote(value);
    }
    [[nodiscard]] std::string take() { return std::move(text_ += '\n'); }

  private:
    void begin(Name name) {
        if (depth_ > 0) {
            if (!empty_) text_ += ',';
            line();
        }
        empty_ = false;
        if (!name) return;
        quote(*name);
        text_ += ": ";
    }
    void line() { text_.append(1, '\n').append(depth_, ' '); }
    void quote(std::string_view value) {
        text_ += '"';
        for (const char c : PathEncoding::text(value)) {
            const auto code = static_cast<unsigned char>(c);
            if (code < 0x20) {
                constexpr std::string_view kHex = "0123456789abcdef";
                text_.append("\\u00").append(1, kHex[code >> 4U]).append(1, kHex[code & 15U]);
                continue;
            }
            if (c == '"' || c == '\\') text_ += '\\';
            text_ += c;
        }
        text_ += '"';
    }

    std::string text_;
    std::size_t depth_ = 0;
    bool empty_ = true;
};

// What the lists of a report are called in both files.
struct FaultList {
    const char* key;
    const char* title;
    Tally PlaytestFaults::*tally;
};
constexpr FaultList kFaultLists[] = {
    {"scriptErrors", "Script errors", &PlaytestFaults::scriptErrors},
    {"unsupported", "Functions that nothing answers", &PlaytestFaults::unsupported},
    {"missingPictures", "Missing pictures", &PlaytestFaults::missingPictures},
    {"missingSounds", "Missing sounds", &PlaytestFaults::missingSounds},
};

// What a run as a whole has met.
struct Summary {
    std::size_t cleared = 0;
    int deaths = 0;
    PlaytestFaults faults;
    std::vector<std::string_view> neverMet;  // models, in the order of the tables

    explicit Summary(const Playtest& met) {
        std::set<std::string_view> known;
        for (const PlaytestStage& stage : met) {
            cleared += stage.result == "cleared" ? 1 : 0;
            deaths += stage.deaths;
            faults.add(stage.faults);
            for (const auto& [name, model] : stage.models) known.insert(name);
        }
        for (const auto& model : std::span(generated::kCharacters, generated::kCharacterCount)) {
            if (known.insert(model.name).second) neverMet.emplace_back(model.name);
        }
    }
};

// The most frequent first, as a reader wants them; equal ones by name.
std::vector<std::pair<std::string_view, std::uint64_t>> byCount(const auto& counts) {
    std::vector<std::pair<std::string_view, std::uint64_t>> sorted(counts.begin(), counts.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(),
                             [](const auto& e) { return e.second; });
    return sorted;
}

void addCounts(JsonText& json, const char* name, const auto& counts) {
    json.open(name, '{');
    for (const auto& [text, times] : byCount(counts)) json.number(text, times);
    json.close('}');
}

void addTally(JsonText& json, const char* name, const Tally& tally) {
    addCounts(json, name, tally.counts());
    if (tally.others() > 0) json.number(std::string(name) + "Omitted", tally.others());
}

void addFaults(JsonText& json, const PlaytestFaults& faults) {
    for (const FaultList& list : kFaultLists) addTally(json, list.key, faults.*list.tally);
}

void addStage(JsonText& json, const PlaytestStage& stage) {
    json.open(std::nullopt, '{');
    json.text("stage", stage.row->sourceFile);
    json.text("result", stage.result);
    json.number("ticks", stage.ticks);
    json.number("deaths", static_cast<std::uint64_t>(stage.deaths));
    json.number("spawned", stage.spawned);
    json.number("spawns", stage.row->spawnCount);
    json.open("models", '{');
    for (const auto& [name, model] : stage.models) {
        json.open(name, '{');
        json.number("spawned", model.spawned);
        json.number("animationCount", model.animationCount);
        addCounts(json, "animations", model.animations);
        json.close('}');
    }
    json.close('}');
    addTally(json, "hooks", stage.hooks);
    addFaults(json, stage.faults);
    json.close('}');
}

void addHeading(std::string& out, std::string_view title) {
    out.append("  ").append(title).append("\n");
}

void addTally(std::string& out, const char* title, const Tally& tally) {
    if (tally.counts().empty()) return;
    addHeading(out, title);
    const auto add = [&out](std::uint64_t times, std::string_view text) {
        const std::string count = std::to_string(times);
        out.append(count.size() < 8 ? 8 - count.size() : 0, ' ');
        out.append(count).append("  ").append(text).append("\n");
    };
    for (const auto& [text, times] : byCount(tally.counts())) add(times, readable(text));
    if (tally.others() > 0) add(tally.others(), "others");
}

void addFaults(std::string& out, const PlaytestFaults& faults) {
    for (const FaultList& list : kFaultLists) addTally(out, list.title, faults.*list.tally);
}

std::string minutes(std::uint64_t ticks) {
    const std::uint64_t seconds = ticks / kTicksPerSecond;
    std::string text = std::to_string(seconds / 60) + (seconds % 60 < 10 ? ":0" : ":");
    return text + std::to_string(seconds % 60);
}

void addModels(std::string& out, const PlaytestStage& stage) {
    if (stage.models.empty()) return;
    addHeading(out, "Models that came, and the animations that they entered");
    for (const auto& [name, model] : stage.models) {
        out.append("    ").append(readable(name)).append(", ");
        out.append(std::to_string(model.spawned)).append(model.spawned == 1 ? " time" : " times");
        out.append(", ").append(std::to_string(model.animations.size())).append(" of ");
        out.append(std::to_string(model.animationCount)).append(" animations");
        const char* between = ": ";
        for (const auto& [animation, times] : byCount(model.animations)) {
            out.append(between).append(readable(animation)).append(" ");
            out.append(std::to_string(times));
            between = ", ";
        }
        out += '\n';
    }
}

void addStage(std::string& out, const PlaytestStage& stage) {
    out.append("\n").append(readable(stage.row->sourceFile)).append(": ");
    out.append(stage.result).append(" after ").append(minutes(stage.ticks)).append(", ");
    out.append(std::to_string(stage.deaths)).append(stage.deaths == 1 ? " death, " : " deaths, ");
    out.append(std::to_string(stage.spawned)).append(" of ");
    out.append(std::to_string(stage.row->spawnCount)).append(" spawns came\n");
    addFaults(out, stage.faults);
    addModels(out, stage);
    addTally(out, "Scripts that ran", stage.hooks);
}

}  // namespace

std::string playtestJson(const Playtest& met) {
    const Summary summary(met);
    JsonText json;
    json.open(std::nullopt, '{');
    json.open("summary", '{');
    json.number("stagesCleared", summary.cleared);
    json.number("stagesPlayed", met.size());
    json.number("stages", generated::kStageCount);
    json.number("deaths", static_cast<std::uint64_t>(summary.deaths));
    addFaults(json, summary.faults);
    json.open("modelsNeverMet", '[');
    for (const std::string_view name : summary.neverMet) json.text(std::nullopt, name);
    json.close(']');
    json.close('}');
    json.open("stages", '[');
    for (const PlaytestStage& stage : met) addStage(json, stage);
    json.close(']');
    json.close('}');
    return json.take();
}

std::string playtestText(const Playtest& met) {
    const Summary summary(met);
    std::string out = "Playtest: " + std::to_string(summary.cleared) + " of " +
                      std::to_string(generated::kStageCount) + " stages cleared, " +
                      std::to_string(met.size()) + " played, " + std::to_string(summary.deaths) +
                      (summary.deaths == 1 ? " death" : " deaths") + "\n";
    addFaults(out, summary.faults);
    if (!summary.neverMet.empty()) {
        addHeading(out, "Models that never came");
        for (const std::string_view name : summary.neverMet) {
            out.append("    ").append(readable(name)).append("\n");
        }
    }
    for (const PlaytestStage& stage : met) addStage(out, stage);
    return out;
}

bool writePlaytest(const Playtest& met, const std::filesystem::path& file) {
    std::filesystem::path text = file;
    text += ".txt";
    const bool written = replaceFile(file, playtestJson(met));
    return replaceFile(text, playtestText(met)) && written;
}

}  // namespace port
