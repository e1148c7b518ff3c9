#include "analysis/HtmlScripts.hpp"

#include <algorithm>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "analysis/ClosestWord.hpp"
#include "analysis/ScriptCheckReport.hpp"
#include "analysis/ScriptKnownNames.hpp"

namespace tindrel {
namespace {

using enum CompatStatus;

constexpr std::size_t kMaxConsequences = 12;
constexpr std::size_t kMaxNamesInSentence = 4;
constexpr std::size_t kMaxShownFunctions = 300;
constexpr std::size_t kMaxScriptNames = 5000;  // all of any game that somebody wrote
constexpr std::size_t kMaxCalls = 80;
constexpr std::size_t kMaxVerdicts = 60;

// What the record's message says behind the command and its helper.
std::string_view verdictOf(const AnimationCommandAudit& audit) {
    constexpr std::string_view kHelper = "; helper=";
    constexpr std::string_view kEnd = "; ";
    std::size_t prefix = audit.command.size() + kEnd.size();
    if (!audit.helper.empty()) prefix += kHelper.size() + audit.helper.size();
    return std::string_view(audit.message).substr(std::min(prefix, audit.message.size()));
}

std::string placeText(const std::string& file, std::uint64_t line) {
    return line > 0 ? file + ':' + std::to_string(line) : file;
}

// "`a`, `b` and 3 others", as markCode() takes it.
std::string listed(const std::vector<std::string>& names) {
    std::string text;
    const std::size_t shown = std::min(names.size(), kMaxNamesInSentence);
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
        text += '`' + names[i] + '`';
    }
    if (names.size() > shown) {
        text += " and " + counted(names.size() - shown, "other", "others");
    }
    return text;
}

std::string onlyMentioned(const ScriptReport& lacks) {
    if (lacks.mentioned.size() == lacks.names.size()) {
        return "No code calls any of these, only comments and texts: nothing keeps the helper from "
               "running.";
    }
    return markCode("Only comments and texts call " + listed(lacks.mentioned) + ".");
}

// "One call" for a function, "One name" for what is no call.
std::string_view kindOf(const std::vector<std::string>& names, bool one) {
    const bool calls = std::none_of(names.begin(), names.end(), [](const std::string& name) {
        return name.find_first_of(":-") != std::string::npos;
    });
    if (calls) return one ? "call" : "calls";
    return one ? "fault" : "faults";
}

// What a name that a script calls was to be.
std::string_view meantBy(std::string_view name) {
    ClosestWord closest(name);
    for (const std::string_view known : knownScriptNames()) closest.offer(known);
    return closest.found();
}

}  // namespace

struct HtmlScripts::Cost {
    std::uint64_t commands = 0;                    // that it holds back
    const AnimationCommandAudit* first = nullptr;  // of them
    const ScriptReport* lacks = nullptr;           // null for a helper that is not there

    // With code between backquotes.
    [[nodiscard]] std::string sentence() const {
        const std::string held = counted(commands, "animation command", "animation commands") + ".";
        if (lacks == nullptr) {
            return "One helper that is not there, `" + first->helper + "`, holds back " + held;
        }
        const bool one = lacks->names.size() == 1;
        return (one ? std::string("One ") : groupDigits(lacks->names.size()) + ' ')
            .append(kindOf(lacks->names, one))
            .append(", ")
            .append(listed(lacks->names))
            .append(one ? ", holds back " : ", hold back ")
            .append(held);
    }
};

// The dearest first.
std::vector<HtmlScripts::Cost> HtmlScripts::costsOf(const ProjectAnalysis& analysis) {
    std::map<std::string_view, Cost> byCause;
    for (const AnimationCommandAudit& audit : analysis.animationAudit) {
        if (audit.status == kSupported || audit.helper.empty()) continue;
        const std::string_view verdict = verdictOf(audit);
        const bool isAbsent = verdict.starts_with("helper file") || verdict == "unsafe helper path";
        if (audit.helperReport == nullptr && !isAbsent) continue;
        Cost& cost = byCause[isAbsent ? std::string_view(audit.helper) : verdict];
        if (cost.commands++ > 0) continue;
        cost.first = &audit;
        cost.lacks = audit.helperReport.get();
    }
    std::vector<Cost> costs;
    for (const auto& [cause, cost] : byCause) costs.push_back(cost);
    std::ranges::stable_sort(costs, std::ranges::greater(), &Cost::commands);
    return costs;
}

void HtmlScripts::writeConsequences() {
    const std::vector<Cost> costs = costsOf(analysis_);
    if (costs.empty()) return;
    page_.openSection("consequences", "What costs most",
                      "Mending one of these frees many lines at once.");
    const std::size_t shown = std::min(costs.size(), kMaxConsequences);
    out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) writeCost(costs[i], costs.front().commands);
    out_ << "</div>\n";
    page_.writeRest(costs.size(), shown, "causes");
    out_ << "</section>\n";
}

void HtmlScripts::writeCost(const Cost& cost, std::uint64_t most) {
    page_.openRow(lookOf(kPartial), cost.sentence(), false, cost.commands, most,
                  cost.commands == 1 ? "line" : "lines");
    if (cost.lacks != nullptr) {
        if (!cost.lacks->mentioned.empty()) {
            out_ << "<p class=\"hint\">" << onlyMentioned(*cost.lacks) << "</p>\n";
        }
        for (const std::string& name : cost.lacks->names) {
            const auto uses = uses_.find(name);
            if (uses == uses_.end()) continue;
            out_ << "<p><code>" << escapeHtml(name) << "</code></p>\n";
            writePlaces(uses->second);
        }
    }
    out_ << "<p>The first of the lines: ";
    page_.writeFile(*cost.first->file);
    out_ << ':' << cost.first->line << "</p>\n</div></details>\n";
}

void HtmlScripts::write() {
    writeBrokenScripts();
    writeNames();
    writeAnimationCommands();
}

void HtmlScripts::writeBrokenScripts() {
    const ScriptCheckup& checkup = analysis_.scriptCheck;
    if (checkup.scripts + checkup.commands == 0) return;
    page_.openSection(
        "broken", "Scripts that break off",
        "Every script that the game reaches was compiled as the port does it. A run that "
        "comes to one of these places ends there, and the game goes on without the "
        "rest of it.");
    out_ << "<p class=\"" << (checkup.broken.empty() ? "good" : "summary") << "\">"
         << escapeHtml(summaryOf(checkup)) << "</p>\n";
    const std::size_t shown = std::min(checkup.broken.size(), kMaxShownFunctions);
    std::uint64_t most = 1;
    for (const BrokenScript& broken : checkup.broken) {
        most = std::max(most, broken.hooks + broken.commands);
    }
    if (shown > 0) out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) writeBrokenScript(checkup.broken[i], most);
    if (shown > 0) out_ << "</div>\n";
    page_.writeRest(checkup.broken.size(), shown, "places");
    out_ << "</section>\n";
}

void HtmlScripts::writeBrokenScript(const BrokenScript& broken, std::uint64_t most) {
    const std::uint64_t callers = broken.hooks + broken.commands;
    page_.openRow(lookOf(kUnsupported), placeText(broken.file, broken.line), true, callers, most,
                  callers == 1 ? "use" : "uses");
    out_ << "<p>" << markCode(faultOf(broken)) << "</p>\n<p>" << escapeHtml(costOf(broken))
         << ".</p>\n<ul class=\"places\">\n";
    for (const ScriptCaller& caller : broken.callers) {
        out_ << "<li><span>";
        page_.writeFile(caller.file);
        out_ << "</span><span class=\"at\">";
        if (caller.line > 0) out_ << "line " << caller.line << ", ";
        out_ << "<code>" << escapeHtml(caller.keyword) << "</code></span></li>\n";
    }
    out_ << "</ul>\n";
    page_.writeRest(callers, broken.callers.size(), "uses");
    out_ << "</div></details>\n";
}

void HtmlScripts::writePlaces(const ScriptUses& uses) {
    out_ << "<ul class=\"places\">\n";
    for (const ScriptUse& use : uses.places) {
        out_ << "<li><span>";
        page_.writeFile(use.file);
        out_ << "</span><span class=\"at\">line " << use.line
             << (use.inCode ? "" : ", in a comment or text") << "</span></li>\n";
    }
    out_ << "</ul>\n";
    page_.writeRest(uses.total, uses.places.size(), "places");
}

void HtmlScripts::writeNames() {
    if (analysis_.scriptFindings.empty() && analysis_.scriptCheck.unanswered.empty()) return;
    page_.openSection("scripts", "What scripts ask for",
                      "Functions and includes that scripts use and the port does not know. Such a "
                      "call is logged when it is reached.");
    std::map<std::string_view, std::uint64_t> scripts;
    for (const ScriptFinding& finding : analysis_.scriptFindings) {
        for (const std::string& name : finding.report.names) ++scripts[name];
    }
    // What code calls comes first: the rest is no obstacle.
    using Entry = std::pair<std::string_view, std::uint64_t>;
    std::vector<Entry> entries(scripts.begin(), scripts.end());
    const auto isMention = [&](const Entry& entry) {
        const ScriptUses& uses = uses_.find(entry.first)->second;
        return uses.total > 0 && uses.inCode == 0;
    };
    const auto mentions =
        std::stable_partition(entries.begin(), entries.end(), std::not_fn(isMention));
    const auto byCount = [](const Entry& a, const Entry& b) { return a.second > b.second; };
    std::stable_sort(entries.begin(), mentions, byCount);
    std::stable_sort(mentions, entries.end(), byCount);
    const auto writeList = [&](auto first, auto last) {
        const auto total = static_cast<std::size_t>(last - first);
        const std::size_t shown = std::min(total, kMaxScriptNames);
        if (total == 0) return;
        const std::uint64_t most = first->second;
        out_ << "<div class=\"list\">\n";
        for (std::size_t i = 0; i < shown; ++i, ++first) {
            const auto uses = uses_.find(first->first);
            writeName(uses->first, uses->second, first->second, most);
        }
        out_ << "</div>\n";
        page_.writeRest(total, shown, "names");
    };
    writeList(entries.begin(), mentions);
    if (mentions != entries.end()) {
        out_ << "<h3>Only in comments and texts <small>"
             << groupDigits(static_cast<std::uint64_t>(entries.end() - mentions))
             << "</small></h3>\n<p class=\"lead\">Nothing calls these; the other reports count "
                "them all the same.</p>\n";
        writeList(mentions, entries.end());
    }
    writeKeys();
    out_ << "</section>\n";
}

void HtmlScripts::writeKeys() {
    const std::vector<UnansweredKey>& keys = analysis_.scriptCheck.unanswered;
    if (keys.empty()) return;
    out_
        << "<h3>Keys without an answer <small>" << groupDigits(keys.size())
        << "</small></h3>\n<p class=\"lead\">The port knows the function, but not what it is asked "
           "for: reading such a key tells nothing, and writing it changes nothing.</p>\n"
           "<div class=\"list\">\n";
    const std::size_t shown = std::min(keys.size(), kMaxScriptNames);
    for (std::size_t i = 0; i < shown; ++i) {
        const UnansweredKey& key = keys[i];
        page_.openRow(lookOf(kPartial), key.function + " \"" + key.key + '"', true, key.places,
                      keys.front().places, key.places == 1 ? "place" : "places");
        out_ << "<p>" << (key.places == 1 ? "In " : "First in ");
        page_.writeFile(key.file);
        out_ << ", line " << key.line << ".</p>\n</div></details>\n";
    }
    out_ << "</div>\n";
    page_.writeRest(keys.size(), shown, "keys");
}

void HtmlScripts::writeName(const std::string& name, const ScriptUses& uses, std::uint64_t scripts,
                            std::uint64_t most) {
    const bool isMention = uses.total > 0 && uses.inCode == 0;
    page_.openRow(lookOf(isMention ? kIgnoredSafely : kPartial), name, true, scripts, most,
                  scripts == 1 ? "script" : "scripts");
    const std::string_view meant = meantBy(name);
    if (!meant.empty()) {
        out_ << "<p class=\"hint\">Did you mean <code>" << escapeHtml(meant) << "</code>?</p>\n";
    }
    if (uses.total > 0) {
        writePlaces(uses);
    } else {
        writeFindings(name);
    }
    out_ << "</div></details>\n";
}

// For what no single place shows: the scripts that it is said of.
void HtmlScripts::writeFindings(const std::string& name) {
    std::size_t total = 0;
    out_ << "<ul class=\"places\">\n";
    for (const ScriptFinding& finding : analysis_.scriptFindings) {
        const std::vector<std::string>& names = finding.report.names;
        if (std::find(names.begin(), names.end(), name) == names.end()) continue;
        if (++total > kMaxScriptUses) continue;
        out_ << "<li>";
        page_.writeFile(*finding.file);
        out_ << "</li>\n";
    }
    out_ << "</ul>\n";
    page_.writeRest(total, kMaxScriptUses, "scripts");
}

struct HtmlScripts::Verdict {
    CompatStatus status;
    std::string_view text;
    std::uint64_t count = 0;
    std::vector<const AnimationCommandAudit*> calls;  // the first of them
};

// What does not run first, then by how many lines it is about.
std::vector<HtmlScripts::Verdict> HtmlScripts::verdictsOf(const ProjectAnalysis& analysis) {
    std::map<std::pair<CompatStatus, std::string_view>, Verdict> groups;
    for (const AnimationCommandAudit& audit : analysis.animationAudit) {
        const std::string_view text = verdictOf(audit);
        Verdict& group =
            groups.try_emplace({audit.status, text}, Verdict{audit.status, text, 0, {}})
                .first->second;
        ++group.count;
        if (group.calls.size() < kMaxCalls) group.calls.push_back(&audit);
    }
    std::vector<Verdict> verdicts;
    for (auto& [key, group] : groups) verdicts.push_back(std::move(group));
    std::ranges::stable_sort(verdicts, [](const Verdict& a, const Verdict& b) {
        const bool aRuns = a.status == kSupported;
        const bool bRuns = b.status == kSupported;
        return aRuns != bRuns ? bRuns : a.count > b.count;
    });
    return verdicts;
}

void HtmlScripts::writeAnimationCommands() {
    const std::vector<Verdict> verdicts = verdictsOf(analysis_);
    if (verdicts.empty()) return;
    page_.openSection("calls", "Animation commands",
                      "Every <code>@cmd</code> line is judged by itself: whether this very call is "
                      "known to run, bound to the frame that follows it.");
    const std::uint64_t most = std::ranges::max(verdicts, {}, &Verdict::count).count;
    const std::size_t shown = std::min(verdicts.size(), kMaxVerdicts);
    out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) writeVerdict(verdicts[i], most);
    out_ << "</div>\n";
    page_.writeRest(verdicts.size(), shown, "verdicts");
    out_ << "</section>\n";
}

void HtmlScripts::writeVerdict(const Verdict& verdict, std::uint64_t most) {
    page_.openRow(lookOf(verdict.status), verdict.text, false, verdict.count, most,
                  verdict.count == 1 ? "line" : "lines");
    if (verdict.calls.front()->helperReport != nullptr) {
        const ScriptReport& lacks = *verdict.calls.front()->helperReport;
        if (!lacks.mentioned.empty()) {
            out_ << "<p class=\"hint\">" << onlyMentioned(lacks) << "</p>\n";
        }
    }
    out_ << "<ul class=\"calls\">\n";
    for (const AnimationCommandAudit* const audit : verdict.calls) {
        out_ << "<li><span class=\"at\">";
        page_.writeFile(*audit->file);
        out_ << ':' << audit->line << "</span><code>" << escapeHtml(audit->command) << "</code>";
        if (!audit->helper.empty()) {
            out_ << "<span class=\"at\">with <code>" << escapeHtml(audit->helper)
                 << "</code></span>";
        }
        out_ << "</li>\n";
    }
    out_ << "</ul>\n";
    page_.writeRest(verdict.count, verdict.calls.size(), "lines");
    out_ << "</div></details>\n";
}

}  // namespace tindrel
