#include "analysis/ProjectAnalysis.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "analysis/AnimationCommandAudit.hpp"
#include "analysis/LoadedFiles.hpp"
#include "analysis/OccurrenceRefiner.hpp"
#include "analysis/ScriptScan.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Version.hpp"
#include "reader/DataPaths.hpp"
#include "reader/ModelKeywords.hpp"
#include "reader/ModelReader.hpp"
#include "reader/Tokens.hpp"
#include "reader/VideoReader.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using enum CompatStatus;

constexpr int kYellow = 1;
constexpr int kRed = 2;

constexpr std::string_view kNoVideoHint =
    "video.txt absent; logical resolution defaults to 320x240 until a project declares otherwise";
constexpr std::string_view kBareModelImpact =
    "Bare model-registry token outside a spawn directive is a malformed/no-op stage line; ignored "
    "explicitly instead of treated as an unknown command.";
constexpr std::string_view kPanelOrderImpact =
    "Panel order contains a non-letter or references an undefined panel; original panel "
    "definitions are retained as fallback.";
constexpr std::string_view kUncataloguedImpact =
    "Uncatalogued command. Logged; conversion continues.";
constexpr std::string_view kScriptFilePrefix =
    "ScriptVM v" TINDREL_VERSION
    " covers the extended C-like core, preprocessing, native subscreens and "
    "legacy direct-draw queue/drawmethod APIs, but this file uses: ";
constexpr std::string_view kScriptFileSuffix = ". Logged, not silently dropped.";
constexpr std::string_view kInlineScriptPrefix =
    "Inline body is preserved and executed, but requires: ";

// Notes to people that games carry among their data.
constexpr std::string_view kProseNames[] = {"translation.txt", "#translation#.txt"};
constexpr std::string_view kProsePrefixes[] = {"nota", "readme", "leame"};

bool isProse(std::string_view name) {
    if (std::find(std::begin(kProseNames), std::end(kProseNames), name) != std::end(kProseNames)) {
        return true;
    }
    if (std::any_of(std::begin(kProsePrefixes), std::end(kProsePrefixes),
                    [&](std::string_view prefix) { return name.starts_with(prefix); })) {
        return true;
    }
    // Misspellings of "leame.txt", and deliberately nothing longer.
    const auto characters = std::count_if(name.begin(), name.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    });
    return name.starts_with('l') && characters >= 7 && characters <= 14 &&
           name.find("ame.txt") != std::string_view::npos;
}

// One command of the game: its rule is looked up once, its occurrences are counted here.
struct CommandTally {
    std::string_view name;  // key of commandCounts
    CommandRule rule;
    OccurrenceRefiner::Rules refinements;
    std::array<std::uint64_t, 5> byStatus{};  // indexed by CompatStatus
    std::optional<CompatStatus> shown;        // PARTIAL for good once two occurrences differ

    void count(CompatStatus status) {
        shown = shown.value_or(status) == status ? status : kPartial;
        ++byStatus[static_cast<std::size_t>(status)];
    }
};

class ProjectAnalyzer {
  public:
    ProjectAnalyzer(const ProjectScan& project, GameReader& game)
        : project_(project),
          game_(game),
          scripts_(game, project),
          animationCommands_(scripts_),
          refiner_(project, game, scripts_) {}

    ProjectAnalysis run() {
        analysis_.audioFiles = project_.audioCount;
        readVideo();
        readModelsAndStages();
        readModelRegistry();
        for (const TreeEntry& entry : project_.entries) {
            if (entry.regularFile) analyzeFile(entry);
        }
        storeTallies();
        analysis_.scriptCheck = checkScripts(game_, analysis_.animationAudit);
        markUnloaded();
        return std::move(analysis_);
    }

  private:
    // What the lines of the file in hand share.
    struct FileContext {
        const fs::path& path;
        SourceFile* source;
        const TextFile& lines;
        bool inLevels;         // below levels/
        bool panelOrderFault;  // holds a stage whose panel order failed
        Reading& reading;
    };

    void readVideo() {
        const VideoInfo video = readVideoInfo(game_);
        if (!video.exists) {
            analysis_.openBorHint = kNoVideoHint;
            return;
        }
        analysis_.logicalWidth = video.width;
        analysis_.logicalHeight = video.height;
        analysis_.openBorHint = "video.txt present (mode " + std::to_string(video.mode) + ")";
    }

    void readModelsAndStages() {
        const std::vector<ModelDef>& models = game_.models();
        analysis_.models = models.size();
        for (const ModelDef& model : models) analysis_.animations += model.animations.size();
        const std::vector<StageDef>& stages = game_.stages();
        analysis_.stages = stages.size();
        for (const StageDef& stage : stages) {
            if (!stage.panelOrderValid) panelOrderIssueFiles_.insert(stage.sourceFile);
        }
    }

    void readModelRegistry() {
        const fs::path& file = game_.resolve("models.txt");
        if (file.empty() || !tindrel::exists(file)) return;
        for (const TextLine& line : game_.lines(file)) {
            if (registeredModel(line)) modelRegistryTokens_.insert(toLower(line.args[0]));
        }
    }

    void analyzeFile(const TreeEntry& entry) {
        const std::string_view extension = entry.extension();
        if (extension == ".txt") {
            if (!isProse(entry.name())) classifyFile(entry.path());
        } else if (extension == ".cfg") {
            classifyFile(entry.path());
        } else if (isScriptExtension(extension)) {
            analyzeScriptFile(entry.path());
        }
    }

    void analyzeScriptFile(const fs::path& path) {
        ++analysis_.textFiles;
        ++analysis_.scripts;
        ++analysis_.recognized;
        ScriptReport unsupported = scripts_.scanScriptSource(path);
        Reading reading = game_.newReading();
        for (const std::uint64_t line : unsupported.mendedLines) {
            static_cast<void>(reading.mends(Mend::kFunction, line));
        }
        game_.collect(path, reading.lines());
        if (unsupported.clean()) return;
        std::string message(kScriptFilePrefix);
        message += unsupported.joinedNames(", ");
        message += kScriptFileSuffix;
        SourceFile* const source = keepSource(path);
        ++source->byStatus[static_cast<std::size_t>(kPartial)];
        addScriptIssue({source, 1, std::move(unsupported)}, "script-file", std::move(message));
    }

    void classifyFile(const fs::path& path) {
        ++analysis_.textFiles;
        const TextFile& lines = game_.lines(path);
        if (!lines.lines().empty()) {
            const std::string inData =
                toLower(PathEncoding::utf8(path.lexically_relative(project_.dataDir)));
            Reading reading = game_.newReading();
            const FileContext file{
                path,
                keepSource(path),
                lines,
                inData.starts_with("levels/"),
                !panelOrderIssueFiles_.empty() &&
                    panelOrderIssueFiles_.count(game_.relativeToProject(path)) > 0,
                reading};
            for (std::size_t i = 0; i < lines.lines().size(); ++i) classifyLine(file, i);
            game_.collect(path, reading.lines());
        }
        game_.release(path);
    }

    void classifyLine(const FileContext& file, std::size_t index) {
        const TextLine& line = file.lines.lines()[index];
        CommandTally& tally = tallyOf(line.key);
        if (line.key == "@script") reportInlineScript(file, line);

        CommandRule rule = tally.rule;
        if (rule.status == kUnknown && line.args.empty() && file.inLevels &&
            modelRegistryTokens_.count(std::string(line.key)) > 0) {
            rule = {kIgnoredSafely, true, true, kBareModelImpact};
        }
        if (line.key == "order" && file.panelOrderFault) {
            rule.status = kPartial;
            rule.runtimeSupported = false;
            rule.impact = kPanelOrderImpact;
        }
        if (const std::string_view box = boxOfField(line.key);
            !box.empty() && file.reading.mends(Mend::kBoxField, line.line)) {
            rule = lookupCommand(box);
        }
        if (line.key == "@cmd") {
            if (isWholeCall(line.args)) {
                static_cast<void>(file.reading.mends(Mend::kWholeCall, line.line));
            }
            applyAudit(rule, animationCommands_.audit(file.lines, index, file.path, *file.source));
        } else {
            refiner_.refineOccurrence(rule, tally.refinements, line, file.path);
        }
        if (rule.status == kUnknown && rule.impact.empty()) rule.impact = kUncataloguedImpact;
        tally.count(rule.status);
        ++file.source->byStatus[static_cast<std::size_t>(rule.status)];
        count(rule.status);
        if (rule.status == kSupported || rule.status == kIgnoredSafely) return;
        Issue& issue = analysis_.issues.emplace_back(
            Issue{rule.status == kUnsupported ? kRed : kYellow, file.source, line.line, tally.name,
                  rule.impact, rule.status, rule.parserSupported, rule.runtimeSupported});
        std::string reason = refiner_.reasonAgainst(tally.refinements, line);
        if (!reason.empty()) issue.reason = analysis_.texts.emplace_back(std::move(reason));
    }

    void count(CompatStatus status) {
        if (status != kUnknown) ++analysis_.recognized;
        if (status == kSupported) ++analysis_.supported;
        if (status == kPartial) ++analysis_.partial;
        if (status == kUnsupported) ++analysis_.unsupported;
        if (status == kUnknown) ++analysis_.unknown;
    }

    void applyAudit(CommandRule& rule, AnimationCommandAudit audit) {
        const AnimationCommandAudit& kept = analysis_.animationAudit.emplace_back(std::move(audit));
        rule.status = kept.status;
        rule.runtimeSupported = kept.status == kSupported;
        if (!kept.message.empty()) rule.impact = kept.message;
    }

    void reportInlineScript(const FileContext& file, const TextLine& line) {
        ScriptReport unsupported = scripts_.scanScriptSource(file.path, line.text());
        if (!unsupported.mendedLines.empty()) {
            static_cast<void>(file.reading.mends(Mend::kFunction, line.line));
        }
        if (unsupported.clean()) return;
        ++analysis_.recognized;
        std::string message(kInlineScriptPrefix);
        message += unsupported.joinedNames(" ");
        message += ' ';
        ++file.source->byStatus[static_cast<std::size_t>(kPartial)];
        addScriptIssue({file.source, line.line, std::move(unsupported)}, "inline-script-api",
                       std::move(message));
    }

    void addScriptIssue(ScriptFinding finding, std::string_view command, std::string message) {
        ++analysis_.partial;
        analysis_.issues.push_back({kYellow, finding.file, finding.line, command,
                                    analysis_.texts.emplace_back(std::move(message)), kPartial,
                                    true, false});
        analysis_.scriptFindings.push_back(std::move(finding));
    }

    SourceFile* keepSource(const fs::path& path) {
        fs::path relative = path.lexically_relative(project_.root);
        std::string display = displayPath(relative);
        return &analysis_.files.emplace_back(SourceFile{std::move(relative), std::move(display)});
    }

    void markUnloaded() {
        const LoadedFiles loaded(project_, game_, analysis_.scriptCheck);
        for (SourceFile& file : analysis_.files) file.loaded = loaded.has(file.relative);
    }

    // Most lines of a game begin with one of a few dozen words, which stand ready.
    CommandTally& tallyOf(std::string_view key) {
        CommandTally*& ready = readyTallies_[KeywordHash{}(key) % readyTallies_.size()];
        if (ready == nullptr || ready->name != key) ready = &findTally(key);
        return *ready;
    }

    CommandTally& findTally(std::string_view key) {
        const auto known = tallies_.find(key);
        if (known != tallies_.end()) return known->second;
        // The node of the ordered map owns the name that every issue of the command views.
        const std::string_view name =
            analysis_.commandCounts.try_emplace(std::string(key)).first->first;
        CommandTally tally{name, lookupCommand(key), OccurrenceRefiner::rulesOf(key), {}, {}};
        return tallies_.try_emplace(name, tally).first->second;
    }

    void storeTallies() {
        for (auto& [name, total] : analysis_.commandCounts) {
            const CommandTally& tally = tallies_.at(name);
            analysis_.commandStatus[name] = tally.shown.value_or(kUnknown);
            auto& byStatus = analysis_.commandStatusCounts[name];
            for (std::size_t i = 0; i < tally.byStatus.size(); ++i) {
                if (tally.byStatus[i] == 0) continue;
                byStatus[static_cast<CompatStatus>(i)] = tally.byStatus[i];
                total += tally.byStatus[i];
            }
        }
    }

    const ProjectScan& project_;
    GameReader& game_;
    ScriptScanner scripts_;
    AnimationCommandAuditor animationCommands_;
    OccurrenceRefiner refiner_;
    ProjectAnalysis analysis_;
    std::set<std::string> panelOrderIssueFiles_;  // relative to the project root
    std::unordered_set<std::string> modelRegistryTokens_;
    std::unordered_map<std::string_view, CommandTally> tallies_;
    std::array<CommandTally*, 256> readyTallies_{};
};

}  // namespace

std::string_view levelName(int level) {
    constexpr std::string_view kNames[] = {"GREEN", "YELLOW", "RED"};
    return level >= 0 && level < 3 ? kNames[level] : "UNKNOWN";
}

ProjectAnalysis analyzeProject(const ProjectScan& project, GameReader& game) {
    if (!project.hasData) return {};
    return ProjectAnalyzer(project, game).run();
}

}  // namespace tindrel
