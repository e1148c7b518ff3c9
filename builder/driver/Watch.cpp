#include "driver/Watch.hpp"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <exception>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "analysis/AssetFinder.hpp"
#include "analysis/MissingFiles.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "driver/ReportFolder.hpp"
#include "generator/PortTree.hpp"
#include "input/PreparedInput.hpp"
#include "platform/Companion.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Interrupt.hpp"
#include "platform/ProgramArgument.hpp"
#include "reader/DataPaths.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"
#include "reader/TreeState.hpp"
#include "toolchain/PortBuild.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Looking at a large game takes a twentieth of the time, and an edit is seen within a second.
constexpr std::chrono::milliseconds kShortestPause = 100ms;
constexpr std::chrono::milliseconds kLongestPause = 1000ms;
constexpr int kPausePerLook = 20;
// A file that is written all the time, such as a log, does not put the conversion off for ever.
constexpr auto kLongestUnrest = 5s;

constexpr std::size_t kShownChanges = 3;
constexpr std::size_t kShownFindings = 10;

std::string timeOfDay() {
    const std::time_t now = std::time(nullptr);
    char text[16];
    return {text, std::strftime(text, sizeof text, "%H:%M:%S ", std::localtime(&now))};
}

std::string tenths(Clock::duration duration) {
    const auto all = std::chrono::duration_cast<std::chrono::milliseconds>(duration).count() / 100;
    return std::to_string(all / 10) + '.' + std::to_string(all % 10) + " s";
}

// What is wrong at a place of the game, in the form of the summary: "[kind] file:line what".
struct Finding {
    std::string_view kind;
    std::string file;
    std::uint64_t line = 0;
    std::string what;
};

std::vector<Finding> findingsOf(const ProjectAnalysis& analysis,
                                const std::vector<MissingGroup>& missing) {
    std::vector<Finding> findings;
    for (const Issue& issue : analysis.issues) {
        std::string what = std::string(issue.command) + " - " + std::string(issue.message);
        if (!issue.reason.empty()) what += " (" + std::string(issue.reason) + ')';
        findings.push_back({compatStatusName(issue.status), std::string(issue.file->display),
                            issue.line, std::move(what)});
    }
    for (const MissingGroup& group : missing) {
        for (const MissingName& name : group.names) {
            std::string what = name.text + " - " + std::string(group.title);
            if (!name.meant.empty()) what += ", did you mean " + name.meant + '?';
            findings.push_back({"MISSING", name.namedBy, name.line, std::move(what)});
        }
    }
    return findings;
}

// How often each is found; without line numbers, which an edit moves.
using FindingCounts = std::map<std::pair<std::string, std::string>, std::size_t>;

class Watch {
  public:
    Watch(const WatchOrder& order, const Console& console, const std::function<bool()>& goOn)
        : order_(order), console_(console), goOn_(goOn) {
        // What else lies beside a game's data is no reason to convert it.
        const fs::path game = canonicalOrAbsolute(order.game);
        const fs::path data = childOf(game, "data");
        std::error_code absent;
        watched_ = fs::is_directory(data, absent) ? data : game;
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { endCompanion(); }

    int run() {
        startInterruptWatch();
        state_ = look();
        for (bool first = true;; first = false) {
            const int code = update(first);
            if (first &&
                (code == kNoInput || code == kNoData || code == kRefused || code == kNoCmake)) {
                return code;
            }
            if (first) say() << "watching " << displayPath(watched_) << " (Ctrl+C ends)\n";
            console_.out.flush();
            if (!waitForChange()) return kSuccess;
        }
    }

  private:
    std::ostream& say() { return console_.out << timeOfDay(); }

    int update(bool first) {
        const Clock::time_point start = Clock::now();
        int code = kFailure;
        try {
            code = convert(first);
            if (code == kSuccess) code = build(first);
            if (code == kSuccess) {
                say() << "the port is up to date after " << tenths(Clock::now() - start) << '\n';
                if (order_.run) startPort();
            }
        } catch (const std::exception& error) {
            console_.err << "Falha ao processar o projeto: " << error.what() << '\n';
        }
        if (code != kSuccess) say() << "no new port\n";
        return code;
    }

    int convert(bool first) {
        PreparedInput prepared;
        try {
            prepared = prepareInput(order_.game);
        } catch (const std::exception& error) {
            console_.err << "Erro preparando entrada: " << error.what() << '\n';
            return kNoInput;
        }
        const ProjectScan scan = scanProject(prepared.gameRoot, std::move(prepared.gameData));
        if (!scan.hasData) {
            console_.err << "Erro: pasta data/ nao encontrada.\n";
            return kNoData;
        }
        if (isInsideDataFolder(scan.dataDir, order_.port)) {
            console_.err << "Erro: a pasta de saida nao pode ficar dentro de data/.\n";
            return kRefused;
        }
        GameReader game(scan.dataDir, scan.root, scan.entries, order_.asWritten);
        const ProjectAnalysis analysis = analyzeProject(scan, game);
        // Somebody may be playing the port meanwhile.
        generatePort(scan, analysis, game, order_.port, PortSettings::kKept);
        writeReportFolder(order_.game, scan, analysis, game, order_.port / "reports",
                          PageLinks::kPortAssets);
        say() << "converted: supported=" << analysis.supported << " partial=" << analysis.partial
              << " unsupported=" << analysis.unsupported << " unknown=" << analysis.unknown << '\n';
        AssetFinder assets(scan, game);
        const std::vector<Finding> findings =
            findingsOf(analysis, findMissingFiles(game, assets, analysis));
        if (!first) sayNewFindings(findings);
        known_.clear();
        for (const Finding& finding : findings) ++known_[{finding.file, finding.what}];
        return kSuccess;
    }

    void sayNewFindings(const std::vector<Finding>& findings) {
        std::size_t found = 0;
        for (const Finding& finding : findings) {
            if (std::size_t& known = known_[{finding.file, finding.what}]; known > 0) {
                --known;
            } else if (found++ < kShownFindings) {
                console_.out << '[' << finding.kind << "] " << finding.file;
                if (finding.line > 0) console_.out << ':' << finding.line;
                console_.out << ' ' << finding.what << '\n';
            }
        }
        if (found > kShownFindings) {
            console_.out << "... " << found - kShownFindings << " more in reports/index.html\n";
        }
    }

    int build(bool first) {
        const auto replacing = [this] {
            if (order_.run) endCompanion();
        };
        const int code = rebuildPort(order_.port, console_, replacing);
        // What an earlier run left may have been interrupted, or moved here.
        return first && code == kNotCompiled ? buildPort(order_.port, console_) : code;
    }

    void startPort() {
        const fs::path program =
            tindrel::absolute(order_.port / executableNames(kHostSystem).finished);
        if (!startCompanion({programArgument(program)})) {
            console_.err << "Erro: nao foi possivel iniciar " << displayPath(program) << '\n';
        }
    }

    TreeState look() {
        const Clock::time_point start = Clock::now();
        TreeState state = treeState(watched_, order_.port);
        const auto taken =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        pause_ = std::clamp(taken * kPausePerLook, kShortestPause, kLongestPause);
        return state;
    }

    bool waitForChange() {
        TreeState now;
        do {
            if (!goOn_()) return false;
            std::this_thread::sleep_for(pause_);
            now = look();
        } while (now == state_);
        // Whoever saves several files, or a large one, gets to finish.
        const Clock::time_point last = Clock::now() + kLongestUnrest;
        bool quiet = false;
        while (!quiet && Clock::now() < last) {
            std::this_thread::sleep_for(kShortestPause);
            TreeState later = look();
            quiet = later == now;
            now = std::move(later);
        }
        sayChanges(changedFiles(state_, now));
        state_ = std::move(now);
        return true;
    }

    void sayChanges(const std::vector<fs::path>& files) {
        std::ostream& out = say() << "changed:";
        const std::size_t shown = std::min(files.size(), kShownChanges);
        for (std::size_t i = 0; i < shown; ++i) {
            out << (i > 0 ? ", " : " ") << displayPath(files[i].lexically_relative(watched_));
        }
        if (files.size() > shown) out << " and " << files.size() - shown << " more";
        out << '\n' << std::flush;
    }

    const WatchOrder& order_;
    const Console& console_;
    const std::function<bool()>& goOn_;
    fs::path watched_;
    TreeState state_;  // at the start of the last conversion
    std::chrono::milliseconds pause_{};
    FindingCounts known_;  // of the last conversion
};

}  // namespace

int watchGame(const WatchOrder& order, const Console& console, const std::function<bool()>& goOn) {
    return Watch(order, console, goOn).run();
}

}  // namespace tindrel
