#include "analysis/HtmlReport.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PathEncoding.hpp"
#include "analysis/AssetFinder.hpp"
#include "analysis/HtmlGallery.hpp"
#include "analysis/HtmlObstacles.hpp"
#include "analysis/HtmlPage.hpp"
#include "analysis/HtmlPlaytest.hpp"
#include "analysis/HtmlScripts.hpp"
#include "analysis/HtmlStyle.hpp"
#include "analysis/HtmlText.hpp"
#include "analysis/MendedLines.hpp"
#include "analysis/MissingFiles.hpp"
#include "analysis/PlaytestAge.hpp"
#include "analysis/PlaytestFile.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using enum CompatStatus;

// Bounds that keep the page light for a game in which everything is wrong.
constexpr std::size_t kMaxUnloadedFiles = 40;
constexpr std::size_t kMaxTableRows = 1500;

std::string lines(std::uint64_t count) {
    return counted(count, "line", "lines");
}

class HtmlReport {
  public:
    HtmlReport(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
               const fs::path& reportsFolder, PageLinks pageLinks)
        : project_(project),
          analysis_(analysis),
          game_(game),
          assets_(project, game),
          links_(project, linkBase(project, reportsFolder, pageLinks)),
          out_(reportsFolder / "index.html"),
          page_(out_, project, links_),
          obstacles_(page_, analysis, game) {
        if (project.hasData) missing_ = findMissingFiles(game, assets_, analysis);
        std::string unread;  // whoever gave the report was told
        const fs::path playtest = reportsFolder / kPlaytestName;
        played_ = readPlaytest(playtest, unread);
        if (played_) {
            const fs::path tables = pageLinks == PageLinks::kPortAssets
                                        ? reportsFolder.parent_path() / "runtime" / "generated"
                                        : fs::path();
            outdated_ = whyOutdated(*played_, playtest, tables, project, game);
        }
        for (const MissingGroup& group : missing_) missingTotal_ += group.total;
        for (const SourceFile& file : analysis.files) {
            unloadedFiles_ += file.loaded ? 0 : 1;
            StatusCounts& counts = file.loaded ? loaded_ : unloaded_;
            for (std::size_t i = 0; i < counts.size(); ++i) counts[i] += file.byStatus[i];
        }
        judged_ = judged(loaded_);
    }

    void write(const std::string& name) {
        out_
            << "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
               "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
               "<meta name=\"referrer\" content=\"no-referrer\">\n<title>"
            << name << " - compatibility</title>\n<style>" << kHtmlStyle
            << "</style>\n</head>\n<body>\n"
               "<a class=\"to-main\" href=\"#main\">Skip to the report</a>\n<div class=\"page\">\n";
        writeNavigation();
        out_ << "<main id=\"main\">\n";
        writeHero(name);
        if (played_) writePlaytestSection(page_, *played_, outdated_);
        HtmlScripts scripts(page_, project_, analysis_, game_);
        scripts.writeConsequences();
        obstacles_.writeCommands();
        obstacles_.writeFiles();
        writeUnloaded();
        writeMissing();
        scripts.write();
        if (project_.hasData) {
            HtmlGallery gallery(page_, game_, assets_, links_, obstacles_.openLines());
            gallery.writeCharacters();
            gallery.writeStages();
        }
        writeAllCommands();
        out_ << "<footer>The same findings as plain text: <a href=\"compatibility-report.txt\">"
                "compatibility-report.txt</a>, <a href=\"animation-command-audit.txt\">"
                "animation-command-audit.txt</a>, <a href=\"analysis.json\">analysis.json</a>."
                "</footer>\n</main>\n</div>\n</body>\n</html>\n";
        out_.close();
    }

  private:
    using StatusCounts = decltype(SourceFile::byStatus);

    static std::uint64_t judged(const StatusCounts& counts) {
        return std::accumulate(counts.begin(), counts.end(), std::uint64_t{0}) -
               of(counts, kIgnoredSafely);
    }
    static std::uint64_t of(const StatusCounts& counts, CompatStatus status) {
        return counts[static_cast<std::size_t>(status)];
    }

    static fs::path linkBase(const ProjectScan& project, const fs::path& reportsFolder,
                             PageLinks pageLinks) {
        if (pageLinks == PageLinks::kPortAssets) return "../assets/openbor-data";
        if (pageLinks == PageLinks::kNone) return {};
        return canonicalOrAbsolute(project.dataDir)
            .lexically_relative(canonicalOrAbsolute(reportsFolder));
    }

    void writeNavigation() {
        out_ << "<nav aria-label=\"Sections\"><p>Compatibility</p><ol>\n";
        const auto entry = [&](std::string_view id, std::string_view title, std::uint64_t count) {
            out_ << "<li><a href=\"#" << id << "\">" << title << "<b>" << groupDigits(count)
                 << "</b></a></li>\n";
        };
        if (played_) entry("play", "Played stages", played_->played.size());
        entry("commands", "In the way", obstacles_.commands());
        if (obstacles_.files() > 0) entry("files", "Files to open", obstacles_.files());
        if (unloadedFiles_ > 0) entry("unloaded", "Never loaded", unloadedFiles_);
        entry("missing", "Missing files", missingTotal_);
        if (analysis_.scriptCheck.scripts + analysis_.scriptCheck.commands > 0) {
            entry("broken", "Broken scripts", analysis_.scriptCheck.broken.size());
        }
        const std::uint64_t unknown =
            analysis_.scriptFindings.size() + analysis_.scriptCheck.unanswered.size();
        if (unknown > 0) entry("scripts", "Scripts", unknown);
        if (!analysis_.animationAudit.empty()) {
            entry("calls", "@cmd lines", analysis_.animationAudit.size());
        }
        if (analysis_.models > 0) entry("characters", "Characters", analysis_.models);
        if (analysis_.stages > 0) entry("stages", "Stages", analysis_.stages);
        entry("all", "Every command", analysis_.commandCounts.size());
        out_ << "</ol></nav>\n";
    }

    // "4 do not run, 3 are not known and 2 run in part"; empty where all is well.
    static std::string faultsIn(const StatusCounts& counts) {
        std::vector<std::string> faults;
        for (const CompatStatus status : {kUnsupported, kUnknown, kPartial}) {
            if (of(counts, status) == 0) continue;
            faults.push_back(groupDigits(of(counts, status))
                                 .append(" ")
                                 .append(lookOf(status).said(of(counts, status))));
        }
        std::string text;
        for (std::size_t i = 0; i < faults.size(); ++i) {
            if (i > 0) text += i + 1 == faults.size() ? " and " : ", ";
            text += faults[i];
        }
        return text;
    }

    [[nodiscard]] std::string verdict() const {
        if (judged_ + judged(unloaded_) == 0) return "There is no command in this folder to judge.";
        std::string text;
        const std::string faults = faultsIn(loaded_);
        if (judged_ == 0) {
            text = "The game loads no line that could be judged.";
        } else if (faults.empty()) {
            text = "Every one of " + lines(judged_) + " that " + (judged_ == 1 ? "was" : "were") +
                   " judged runs as written.";
        } else {
            text = std::to_string(of(loaded_, kSupported) * 100 / judged_) + "% of the " +
                   lines(judged_) + " that were judged run as written; " + faults + '.';
        }
        if (unloadedFiles_ > 0) {
            const std::string apart = faultsIn(unloaded_);
            text += " Apart from these, " + counted(unloadedFiles_, "file", "files") + " with " +
                    lines(judged(unloaded_)) +
                    (unloadedFiles_ == 1 ? " is never loaded" : " are never loaded") +
                    (apart.empty() ? "." : ": " + apart + '.');
        }
        if (missingTotal_ > 0) {
            text += ' ' + counted(missingTotal_, "name leads", "names lead") + " nowhere.";
        }
        if (played_) {
            text += outdated_.empty() ? " A bot that played it " : " A bot that once played it ";
            text += stagesCleared(*played_) + '.';
        }
        return text;
    }

    // Which way the game is read. One without a line to mend reads the same in both.
    [[nodiscard]] std::string reading() const {
        const std::uint64_t mended = countMendedLines(game_);
        if (mended == 0) return "as written";
        return std::string("<a href=\"") + kMendedLinesName + "\">" +
               counted(mended, "line", "lines") + " mended</a>";
    }

    void writeHero(const std::string& name) {
        out_ << "<header class=\"hero\">\n<p class=\"kicker\">Compatibility report</p>\n<h1>"
             << name << "</h1>\n<p class=\"verdict\">" << verdict() << "</p>\n";
        std::vector<std::pair<CompatStatus, std::uint64_t>> counts;
        for (const CompatStatus status :
             {kSupported, kPartial, kUnsupported, kUnknown, kIgnoredSafely}) {
            counts.emplace_back(status, of(loaded_, status));
        }
        if (judged_ + of(loaded_, kIgnoredSafely) > 0) {
            out_ << "<div class=\"bar\" aria-hidden=\"true\">";
            for (const auto& [status, count] : counts) {
                if (count == 0) continue;
                out_ << "<i class=\"" << lookOf(status).tone << "\" style=\"flex-grow:" << count
                     << "\"></i>";
            }
            out_ << "</div>\n";
        }
        out_ << "<ul class=\"tiles\">\n";
        for (const auto& [status, count] : counts) {
            out_ << "<li class=\"" << lookOf(status).tone << "\"><b>" << groupDigits(count)
                 << "</b><span>" << lookOf(status).said(count) << "</span><small>"
                 << compatStatusName(status);
            if (judged_ > 0 && (status == kSupported || status == kPartial)) {
                out_ << " · " << count * 100 / judged_ << '%';
            }
            out_ << "</small></li>\n";
        }
        out_ << "</ul>\n<dl class=\"facts\">\n";
        const auto fact = [&](std::string_view what, const std::string& value) {
            out_ << "<div><dt>" << what << "</dt><dd>" << value << "</dd></div>\n";
        };
        fact("Models", groupDigits(analysis_.models));
        fact("Animations", groupDigits(analysis_.animations));
        fact("Stages", groupDigits(analysis_.stages));
        fact("Scripts", groupDigits(analysis_.scripts));
        fact("Sounds", groupDigits(analysis_.audioFiles));
        fact("Text files", groupDigits(analysis_.textFiles));
        fact("Resolution", std::to_string(analysis_.logicalWidth) + " × " +
                               std::to_string(analysis_.logicalHeight));
        fact("Reading", reading());
        out_ << "</dl>\n</header>\n";
    }

    void writeUnloaded() {
        if (unloadedFiles_ == 0) return;
        page_.openSection("unloaded", "Files that are never loaded",
                          "Neither <code>models.txt</code> nor <code>levels.txt</code> leads to "
                          "these, nor does a script that runs. Where this page speaks of them "
                          "they are marked.");
        out_ << "<ul class=\"list\">\n";
        std::size_t shown = 0;
        for (const SourceFile& file : analysis_.files) {
            if (file.loaded || shown == kMaxUnloadedFiles) continue;
            ++shown;
            out_ << "<li class=\"plain skip\"><span>";
            page_.writeFile(file);
            out_ << "</span><span></span><span class=\"count\">"
                 << groupDigits(judged(file.byStatus)) << "</span></li>\n";
        }
        out_ << "</ul>\n";
        page_.writeRest(unloadedFiles_, shown, "files");
        out_ << "</section>\n";
    }

    void writeMissing() {
        page_.openSection(
            "missing", "Missing files",
            "Names in the game's text that nothing on disk answers to, whatever their case. "
            "For each the first place that names it.");
        if (missing_.empty()) {
            out_ << "<p class=\"good\">None: every name that was looked for was found.</p>\n";
        }
        for (const MissingGroup& group : missing_) {
            out_ << "<h3>" << group.title << " <small>" << groupDigits(group.total)
                 << "</small></h3>\n<ul class=\"list\">\n";
            for (const MissingName& name : group.names) {
                out_ << "<li class=\"plain\"><code>" << escapeHtmlPath(name.text)
                     << "</code><span class=\"at\">";
                writeNamedBy(name);
                out_ << "</span><span class=\"count\">" << groupDigits(name.mentions) << "<small>"
                     << (name.mentions == 1 ? "use" : "uses") << "</small></span></li>\n";
            }
            out_ << "</ul>\n";
            page_.writeRest(group.total, group.names.size(), "names");
        }
        out_ << "</section>\n";
    }

    void writeNamedBy(const MissingName& name) {
        if (name.namedBy.empty()) return;
        page_.writeFile(name.namedBy);
        if (name.line > 0) out_ << ':' << name.line;
        if (!name.meant.empty()) {
            out_ << ", did you mean <code>" << escapeHtml(name.meant) << "</code>?";
        }
    }

    void writeAllCommands() {
        page_.openSection("all", "Every command",
                          "All words that the game's text uses as commands.");
        page_.openFold("Show the table", analysis_.commandCounts.size());
        out_ << "<div class=\"list scroll\"><table><thead><tr><th scope=\"col\">Command</th>"
                "<th scope=\"col\" class=\"n\">Uses</th><th scope=\"col\">Verdict</th>"
                "<th scope=\"col\">Uses by verdict</th></tr></thead><tbody>\n";
        std::size_t shown = 0;
        for (const auto& [command, count] : analysis_.commandCounts) {
            if (shown++ == kMaxTableRows) break;
            const CompatStatus status = analysis_.commandStatus.at(command);
            out_ << "<tr><td><code>" << escapeHtml(command) << "</code></td><td class=\"n\">"
                 << groupDigits(count) << "</td><td><span class=\"chip " << lookOf(status).tone
                 << "\">" << compatStatusName(status) << "</span></td><td>";
            const auto& byStatus = analysis_.commandStatusCounts.at(command);
            if (byStatus.size() > 1) {
                std::string_view separator;
                for (const auto& [part, uses] : byStatus) {
                    out_ << separator << compatStatusName(part) << ' ' << groupDigits(uses);
                    separator = ", ";
                }
            }
            out_ << "</td></tr>\n";
        }
        out_ << "</tbody></table></div></details>\n";
        page_.writeRest(analysis_.commandCounts.size(), kMaxTableRows, "commands");
        out_ << "</section>\n";
    }

    const ProjectScan& project_;
    const ProjectAnalysis& analysis_;
    GameReader& game_;
    AssetFinder assets_;
    DataLinks links_;
    OutputFile out_;
    HtmlPage page_;
    std::optional<PlayedGame> played_;
    std::string outdated_;  // why that no longer fits the game
    std::vector<MissingGroup> missing_;
    std::uint64_t missingTotal_ = 0, judged_ = 0, unloadedFiles_ = 0;
    // In files that the game loads, of which `judged_` counts, and in others.
    StatusCounts loaded_{}, unloaded_{};
    HtmlObstacles obstacles_;
};

}  // namespace

void writeHtmlReport(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
                     const fs::path& reportsFolder, PageLinks pageLinks, const std::string& title) {
    HtmlReport(project, analysis, game, reportsFolder, pageLinks).write(escapeHtml(title));
}

}  // namespace tindrel
