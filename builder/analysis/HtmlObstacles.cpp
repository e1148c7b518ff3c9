#include "analysis/HtmlObstacles.hpp"

#include <algorithm>
#include <map>

#include "PathEncoding.hpp"
#include "analysis/OccurrenceRefiner.hpp"
#include "reader/ModelReader.hpp"

namespace tindrel {
namespace {

using enum CompatStatus;

// Bounds that keep the page light for a game in which everything is wrong.
constexpr std::size_t kMaxCommands = 300;
constexpr std::size_t kMaxMessages = 4;
constexpr std::size_t kMaxFilesOfObstacle = 40;
constexpr std::size_t kMaxLines = 24;
constexpr std::size_t kMaxBusyFiles = 12;

}  // namespace

HtmlObstacles::HtmlObstacles(HtmlPage& page, const ProjectAnalysis& analysis, GameReader& game)
    : page_(page), out_(page.out()) {
    std::map<std::pair<std::string_view, CompatStatus>, std::size_t> index;
    std::unordered_map<const SourceFile*, std::size_t> busyIndex;
    for (const Issue& issue : analysis.issues) {
        const auto [busy, isNewFile] = busyIndex.try_emplace(issue.file, busyFiles_.size());
        if (isNewFile) busyFiles_.push_back({issue.file, 0, {}});
        ++busyFiles_[busy->second].count;

        // Scripts and "@cmd" lines have sections of their own.
        if (issue.command == "script-file" || issue.command == "inline-script-api" ||
            issue.command == "@cmd") {
            continue;
        }
        const auto [entry, isNew] =
            index.try_emplace({issue.command, issue.status}, obstacles_.size());
        if (isNew) obstacles_.push_back({issue.command, issue.status, 0, false, {}, {}});
        addTo(obstacles_[entry->second], issue);
    }
    if (!obstacles_.empty()) {
        for (const ModelDef& model : game.models()) characterFiles_.insert(model.sourceFile);
        for (const StageDef& stage : game.stages()) stageFiles_.insert(stage.sourceFile);
    }
    for (const FileUse& busy : busyFiles_) {
        openLines_[PathEncoding::utf8(busy.file->relative)] = busy.count;
    }
    // What does nothing comes before what does something, and both before what is never
    // loaded.
    const auto weight = [](const Obstacle& obstacle) {
        if (!obstacle.loaded) return 3;
        switch (obstacle.status) {
            case kUnsupported:
                return 0;
            case kUnknown:
                return 1;
            default:
                return 2;
        }
    };
    std::stable_sort(obstacles_.begin(), obstacles_.end(),
                     [&](const Obstacle& a, const Obstacle& b) {
                         if (weight(a) != weight(b)) return weight(a) < weight(b);
                         if (a.count != b.count) return a.count > b.count;
                         return a.command < b.command;
                     });
    for (Obstacle& obstacle : obstacles_) sortByCount(obstacle.files);
    sortByCount(busyFiles_);
}

void HtmlObstacles::sortByCount(std::vector<FileUse>& uses) {
    std::stable_sort(uses.begin(), uses.end(), [](const FileUse& a, const FileUse& b) {
        if (a.file->loaded != b.file->loaded) return a.file->loaded;
        return a.count != b.count ? a.count > b.count : a.file->display < b.file->display;
    });
}

void HtmlObstacles::addTo(Obstacle& obstacle, const Issue& issue) {
    ++obstacle.count;
    obstacle.loaded = obstacle.loaded || issue.file->loaded;
    if (obstacle.messages.size() < kMaxMessages &&
        std::find(obstacle.messages.begin(), obstacle.messages.end(), issue.message) ==
            obstacle.messages.end()) {
        obstacle.messages.push_back(issue.message);
    }
    // Issues stand in the order of the walk, so one file's lines come together.
    if (obstacle.files.empty() || obstacle.files.back().file != issue.file) {
        obstacle.files.push_back({issue.file, 0, {}});
    }
    FileUse& use = obstacle.files.back();
    ++use.count;
    if (use.lines.size() < kMaxLines) use.lines.emplace_back(issue.line, issue.reason);
}

void HtmlObstacles::writeCommands() {
    page_.openSection("commands", "What stands in the way",
                      "Commands that the port does not carry out in full. What does nothing comes "
                      "first, then by how often the game uses it.");
    if (obstacles_.empty()) {
        out_ << "<p class=\"good\">Nothing: every command is carried out in full.</p>\n"
                "</section>\n";
        return;
    }
    std::uint64_t most = 1;
    for (const Obstacle& obstacle : obstacles_) most = std::max(most, obstacle.count);
    const std::size_t shown = std::min(obstacles_.size(), kMaxCommands);
    out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) writeObstacle(obstacles_[i], most);
    out_ << "</div>\n";
    page_.writeRest(obstacles_.size(), shown, "commands");
    out_ << "</section>\n";
}

// "5 characters and 1 stage have `bbox` lines that run in part."
std::string HtmlObstacles::sentence(const Obstacle& obstacle) const {
    std::uint64_t characters = 0, stages = 0, others = 0;
    for (const FileUse& use : obstacle.files) {
        const std::string file = PathEncoding::utf8(use.file->relative);
        ++(characterFiles_.contains(file) ? characters
           : stageFiles_.contains(file)   ? stages
                                          : others);
    }
    std::vector<std::string> who;
    if (characters > 0) who.push_back(counted(characters, "character", "characters"));
    if (stages > 0) who.push_back(counted(stages, "stage", "stages"));
    if (others > 0) {
        who.push_back(who.empty() ? counted(others, "file", "files")
                                  : counted(others, "other file", "other files"));
    }
    std::string text;
    for (std::size_t i = 0; i < who.size(); ++i) {
        if (i > 0) text += i + 1 == who.size() ? " and " : ", ";
        text += who[i];
    }
    const bool isOneLine = obstacle.count == 1;
    text += obstacle.files.size() == 1 ? " has " : " have ";
    text += (isOneLine ? "one " : "") + quoteCode(obstacle.command);
    text += isOneLine ? " line that " : " lines that ";
    return text.append(lookOf(obstacle.status).said(obstacle.count)).append(".");
}

void HtmlObstacles::writeObstacle(const Obstacle& obstacle, std::uint64_t most) {
    page_.openRow(lookOf(obstacle.status), obstacle.command, true, obstacle.count, most,
                  counted(obstacle.files.size(), "file", "files"));
    out_ << "<p>" << markCode(sentence(obstacle)) << "</p>\n";
    for (const std::string_view message : obstacle.messages) {
        out_ << "<p>" << escapeHtml(message) << "</p>\n";
    }
    if (obstacle.status == kPartial) writeFullForms(obstacle.command);
    if (obstacle.status == kUnknown && isModelKeyword(obstacle.command)) {
        out_ << "<p class=\"hint\">The port reads it in an entity file and carries it out all "
                "the same; only the list of judged commands lacks it.</p>\n";
    } else if (obstacle.status == kUnknown) {
        const std::string_view close = closestCommand(obstacle.command);
        if (!close.empty()) {
            out_ << "<p class=\"hint\">Did you mean <code>" << escapeHtml(close)
                 << "</code>?</p>\n";
        }
    }
    const std::size_t shown = std::min(obstacle.files.size(), kMaxFilesOfObstacle);
    out_ << "<ul class=\"places\">\n";
    for (std::size_t i = 0; i < shown; ++i) writePlaces(obstacle.files[i]);
    out_ << "</ul>\n";
    page_.writeRest(obstacle.files.size(), shown, "files");
    out_ << "</div></details>\n";
}

void HtmlObstacles::writePlaces(const FileUse& use) {
    out_ << "<li>";
    page_.writeFile(*use.file);
    out_ << "<span class=\"at\">" << (use.count == 1 ? "line " : "lines ");
    for (std::size_t k = 0; k < use.lines.size(); ++k) {
        const auto& [line, reason] = use.lines[k];
        out_ << (k > 0 ? ", " : "") << line;
        if (!reason.empty()) out_ << ": " << markCode(reason);
    }
    if (use.count > use.lines.size()) {
        out_ << " and " << groupDigits(use.count - use.lines.size()) << " more";
    }
    out_ << "</span></li>\n";
}

// What the reports say of the lines that were raised.
void HtmlObstacles::writeFullForms(std::string_view command) {
    const OccurrenceRefiner::Rules rules = OccurrenceRefiner::rulesOf(command);
    if (rules.empty()) return;
    out_ << "<p>These forms of it run in full:</p>\n<ul class=\"forms\">\n";
    for (const OccurrenceRule* const rule : rules) {
        out_ << "<li>" << escapeHtml(rule->impact) << "</li>\n";
    }
    out_ << "</ul>\n";
}

void HtmlObstacles::writeFiles() {
    if (busyFiles_.empty()) return;
    page_.openSection("files", "Files to open first",
                      "Where most of these lines stand, scripts and animation commands included.");
    const std::size_t shown = std::min(busyFiles_.size(), kMaxBusyFiles);
    out_ << "<ul class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) {
        out_ << "<li class=\"plain part\"><span>";
        page_.writeFile(*busyFiles_[i].file);
        out_ << "</span><span class=\"meter\" aria-hidden=\"true\"><i style=\"width:"
             << busyFiles_[i].count * 100 / busyFiles_.front().count
             << "%\"></i></span><span class=\"count\">" << groupDigits(busyFiles_[i].count)
             << "</span></li>\n";
    }
    out_ << "</ul>\n";
    page_.writeRest(busyFiles_.size(), shown, "files");
    out_ << "</section>\n";
}

}  // namespace tindrel
