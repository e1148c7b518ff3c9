#include "analysis/HtmlPlaytest.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace tindrel {
namespace {

using enum CompatStatus;

// Bounds that keep the page light whatever the report holds.
constexpr std::size_t kMaxTexts = 200;
constexpr std::size_t kMaxStages = 300;

constexpr std::uint64_t kTicksPerSecond = 60;

// By PlayedGame::Kind.
constexpr std::string_view kTitles[] = {
    "Script errors",
    "Names that nothing answered",
    "Missing pictures",
    "Missing sounds",
};

std::string minutes(std::uint64_t ticks) {
    const std::uint64_t seconds = ticks / kTicksPerSecond;
    return groupDigits(seconds / 60) + (seconds % 60 < 10 ? ":0" : ":") +
           std::to_string(seconds % 60);
}

std::string_view toneOf(std::string_view result) {
    if (result == "cleared") return lookOf(kSupported).tone;
    // The run was over, or the game went elsewhere.
    if (result == "left") return lookOf(kIgnoredSafely).tone;
    return lookOf(kUnsupported).tone;
}

void writeStages(HtmlPage& page, const PlayedGame& game) {
    OutputFile& out = page.out();
    out << "<h3>Stages <small>" << groupDigits(game.played.size())
        << "</small></h3>\n<ul class=\"list\">\n";
    const std::size_t shown = std::min(game.played.size(), kMaxStages);
    for (std::size_t i = 0; i < shown; ++i) {
        const PlayedStage& stage = game.played[i];
        out << "<li class=\"plain " << toneOf(stage.result) << "\"><span>";
        page.writeFile(stage.stage);
        out << " <span class=\"chip\">" << escapeHtml(stage.result)
            << "</span></span><span class=\"at\">" << minutes(stage.ticks) << " of play, "
            << counted(stage.deaths, "death", "deaths") << "</span><span class=\"count\">"
            << groupDigits(stage.spawned) << "<small>of " << groupDigits(stage.spawns)
            << " came</small></span></li>\n";
    }
    out << "</ul>\n";
    page.writeRest(game.played.size(), shown, "stages");
}

void writeFaults(HtmlPage& page, std::string_view title, const PlayedFaults& faults) {
    if (faults.texts.empty()) return;
    OutputFile& out = page.out();
    out << "<h3>" << title << " <small>" << groupDigits(faults.texts.size())
        << "</small></h3>\n<ul class=\"list\">\n";
    const std::size_t shown = std::min(faults.texts.size(), kMaxTexts);
    for (std::size_t i = 0; i < shown; ++i) {
        const auto& [text, times] = faults.texts[i];
        out << "<li class=\"plain\"><code>" << escapeHtmlPath(text)
            << "</code><span></span><span class=\"count\">" << groupDigits(times) << "<small>"
            << (times == 1 ? "time" : "times") << "</small></span></li>\n";
    }
    out << "</ul>\n";
    page.writeRest(faults.texts.size(), shown, "of these");
    if (faults.omitted > 0) {
        out << "<p class=\"rest\">and " << groupDigits(faults.omitted)
            << " times what the report had no room for</p>\n";
    }
}

void writeNeverMet(HtmlPage& page, const PlayedGame& game) {
    if (game.neverMet.empty()) return;
    OutputFile& out = page.out();
    page.openFold("Models that never came", game.neverMet.size());
    out << "<p>";
    const std::size_t shown = std::min(game.neverMet.size(), kMaxTexts);
    for (std::size_t i = 0; i < shown; ++i) {
        out << (i > 0 ? ", " : "") << "<code>" << escapeHtml(game.neverMet[i]) << "</code>";
    }
    out << "</p>\n</details>\n";
    page.writeRest(game.neverMet.size(), shown, "models");
}

}  // namespace

std::string stagesCleared(const PlayedGame& game) {
    return "cleared " + groupDigits(game.stagesCleared) + " of " +
           counted(game.stages, "stage", "stages");
}

void writePlaytestSection(HtmlPage& page, const PlayedGame& game, std::string_view outdated) {
    page.openSection(
        "play", "What play showed",
        "A bot " + stagesCleared(game) + ". What it met says nothing of what it did not come by.");
    if (!outdated.empty()) page.out() << "<p class=\"warn\">" << markCode(outdated) << "</p>\n";
    writeStages(page, game);
    bool faultless = true;
    for (std::size_t kind = 0; kind < game.faults.size(); ++kind) {
        writeFaults(page, kTitles[kind], game.faults[kind]);
        faultless = faultless && game.faults[kind].texts.empty();
    }
    if (faultless) {
        page.out() << "<p class=\"good\">No script broke off, and no name, picture or sound was "
                      "missing.</p>\n";
    }
    writeNeverMet(page, game);
    page.out() << "</section>\n";
}

}  // namespace tindrel
