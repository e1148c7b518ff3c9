#include "analysis/HtmlScripts.hpp"

#include <algorithm>
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
constexpr std::size_t kMaxScriptNames = 200;
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

void HtmlScripts::writeConsequences() {
    struct Cost {
        std::string sentence;
        std::uint64_t count = 0;
        const ScriptReport* lacks = nullptr;
        const AnimationCommandAudit* first = nullptr;
    };
    std::map<std::string_view, Cost> byCause;
    for (const AnimationCommandAudit& audit : analysis_.animationAudit) {
        if (audit.status == kSupported || audit.helper.empty()) continue;
        const std::string_view verdict = verdictOf(audit);
        const bool isAbsent = verdict.starts_with("helper file") || verdict == "unsafe helper path";
        if (audit.helperReport == nullptr && !isAbsent) continue;
        Cost& cost = byCause[isAbsent ? std::string_view(audit.helper) : verdict];
        if (cost.count++ == 0) {
            cost.lacks = audit.helperReport.get();
            cost.first = &audit;
        }
    }
    std::vector<Cost> costs;
    for (auto& [cause, cost] : byCause) {
        const std::string held =
            counted(cost.count, "animation command", "animation commands") + ".";
        if (cost.lacks == nullptr) {
            cost.sentence =
                "One helper that is not there, `" + cost.first->helper + "`, holds back " + held;
        } else {
            const std::vector<std::string>& names = cost.lacks->names;
            const bool one = names.size() == 1;
            cost.sentence = (one ? std::string("One ") : groupDigits(names.size()) + ' ')
                                .append(kindOf(names, one))
                                .append(", ")
                                .append(listed(names))
                                .append(one ? ", holds back " : ", hold back ")
                                .append(held);
        }
        costs.push_back(std::move(cost));
    }
    if (costs.empty()) return;
    std::stable_sort(costs.begin(), costs.end(),
                     [](const Cost& a, const Cost& b) { return a.count > b.count; });
    page_.openSection("consequences", "What costs most",
                      "Mending one of these frees many lines at once.");
    const std::size_t shown = std::min(costs.size(), kMaxConsequences);
    out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) {
        const Cost& cost = costs[i];
        page_.openRow(lookOf(kPartial), cost.sentence, false, cost.count, costs.front().count,
                      cost.count == 1 ? "line" : "lines");
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
    out_ << "</div>\n";
    page_.writeRest(costs.size(), shown, "causes");
    out_ << "</section>\n";
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

void HtmlScripts::writeAnimationCommands() {
    if (analysis_.animationAudit.empty()) return;
    page_.openSection("calls", "Animation commands",
                      "Every <code>@cmd</code> line is judged by itself: whether this very call is "
                      "known to run, bound to the frame that follows it.");
    struct Group {
        CompatStatus status;
        std::string_view verdict;
        std::uint64_t count = 0;
        std::vector<const AnimationCommandAudit*> calls;
    };
    std::map<std::pair<CompatStatus, std::string_view>, Group> groups;
    for (const AnimationCommandAudit& audit : analysis_.animationAudit) {
        const std::string_view verdict = verdictOf(audit);
        Group& group =
            groups.try_emplace({audit.status, verdict}, Group{audit.status, verdict, 0, {}})
                .first->second;
        ++group.count;
        if (group.calls.size() < kMaxCalls) group.calls.push_back(&audit);
    }
    std::vector<const Group*> ordered;
    for (const auto& [key, group] : groups) ordered.push_back(&group);
    std::stable_sort(ordered.begin(), ordered.end(), [](const Group* a, const Group* b) {
        const bool aRuns = a->status == kSupported;
        const bool bRuns = b->status == kSupported;
        return aRuns != bRuns ? bRuns : a->count > b->count;
    });
    std::uint64_t most = 1;
    for (const Group* const group : ordered) most = std::max(most, group->count);
    const std::size_t shown = std::min(ordered.size(), kMaxVerdicts);
    out_ << "<div class=\"list\">\n";
    for (std::size_t i = 0; i < shown; ++i) {
        const Group& group = *ordered[i];
        page_.openRow(lookOf(group.status), group.verdict, false, group.count, most,
                      group.count == 1 ? "line" : "lines");
        if (group.calls.front()->helperReport != nullptr) {
            const ScriptReport& lacks = *group.calls.front()->helperReport;
            if (!lacks.mentioned.empty()) {
                out_ << "<p class=\"hint\">" << onlyMentioned(lacks) << "</p>\n";
            }
        }
        out_ << "<ul class=\"calls\">\n";
        for (const AnimationCommandAudit* const audit : group.calls) {
            out_ << "<li><span class=\"at\">";
            page_.writeFile(*audit->file);
            out_ << ':' << audit->line << "</span><code>" << escapeHtml(audit->command)
                 << "</code>";
            if (!audit->helper.empty()) {
                out_ << "<span class=\"at\">with <code>" << escapeHtml(audit->helper)
                     << "</code></span>";
            }
            out_ << "</li>\n";
        }
        out_ << "</ul>\n";
        page_.writeRest(group.count, group.calls.size(), "lines");
        out_ << "</div></details>\n";
    }
    out_ << "</div>\n";
    page_.writeRest(ordered.size(), shown, "verdicts");
    out_ << "</section>\n";
}

}  // namespace tindrel
