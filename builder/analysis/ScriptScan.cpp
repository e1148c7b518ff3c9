#include "analysis/ScriptScan.hpp"

#include <algorithm>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "analysis/ScriptKnownNames.hpp"
#include "analysis/ScriptPatterns.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kDepthLimitTag = "include-depth-limit";
// Behind the name of a call that stands in code; no name can end so.
constexpr std::string_view kCodeCallMark = "()";

// No file needs more: the largest real games come by with a tenth of it in all.
constexpr std::uint64_t kLargestShare = 20'000'000;
// A parameter list weighs as much: it stays in memory.
constexpr std::uint64_t kSignatureSteps = 8;

// The configuration of a binding that the port's runtime executes.
constexpr std::int32_t kNativeBindConfig = 15 | 64 | 128 | 256 | 512 | 1024 | 2048;
constexpr std::size_t kBindConfigArgument = 6;

// The constant that an argument is: integers joined by '|'.
std::optional<std::int32_t> constantOf(std::string_view argument) {
    std::int32_t value = 0;
    while (true) {
        const std::size_t bar = argument.find('|');
        std::string_view part = argument.substr(0, bar);
        while (!part.empty() && isSpace(part.back())) part.remove_suffix(1);
        const std::optional<std::int32_t> number = parseAutoBase(part, true);
        if (!number) return std::nullopt;
        value |= *number;
        if (bar == std::string_view::npos) return value;
        argument.remove_prefix(bar + 1);
    }
}

// Parameters between the parenthesis that opened `rest` and the next closing one.
std::optional<std::size_t> countParameters(std::string_view rest) {
    const std::size_t close = rest.find(')');
    if (close == std::string_view::npos) return std::nullopt;
    const std::string_view list = rest.substr(0, close);
    const auto first = std::find_if_not(list.begin(), list.end(), isSpace);
    std::string_view trimmed = list.substr(static_cast<std::size_t>(first - list.begin()));
    while (!trimmed.empty() && isSpace(trimmed.back())) trimmed.remove_suffix(1);
    if (trimmed.empty() || trimmed == "void") return 0;
    return static_cast<std::size_t>(std::count(list.begin(), list.end(), ',')) + 1;
}

void appendDistinct(std::vector<SymbolId>& list, SymbolId symbol) {
    if (std::find(list.begin(), list.end(), symbol) == list.end()) list.push_back(symbol);
}

}  // namespace

std::string missingInclude(std::string_view path) {
    return "include-missing:" + PathEncoding::text(path);
}

std::string unsafeInclude(std::string_view path) {
    return "unsafe-include:" + PathEncoding::text(path);
}

std::string_view bindentityTag(std::string_view rest) {
    std::vector<std::string_view> arguments;
    if (!splitCallArguments(rest, arguments) || arguments.size() < 2) {
        return "api/function:bindentity-arguments";
    }
    if (arguments.size() <= kBindConfigArgument) return {};
    const std::optional<std::int32_t> config = constantOf(arguments[kBindConfigArgument]);
    if (!config) return "api/function:bindentity-config-dynamic";
    return (*config & ~kNativeBindConfig) != 0 ? "api/function:bindentity-config-advanced" : "";
}

ScriptScanner::ScriptScanner(GameReader& game, const ProjectScan& project, std::uint64_t walkSteps)
    : game_(game), project_(project), walkSteps_(walkSteps) {}

ScriptScanner::Lookup ScriptScanner::findScript(std::string_view raw, const fs::path& current,
                                                fs::path& found) {
    std::string text(raw);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::string_view rest = text;
    while (equalsFolded(rest.substr(0, 5), "data/")) rest.remove_prefix(5);
    const fs::path relative = PathEncoding::path(rest).lexically_normal();
    if (!isSafeRelativePath(relative)) return Lookup::kUnsafe;

    found = game_.resolve(rest);
    if (!found.empty() && game_.isFile(found)) return Lookup::kFound;
    if (!current.empty()) {
        const fs::path beside =
            current.parent_path().lexically_relative(game_.dataDir()) / relative;
        found = game_.resolve(PathEncoding::utf8(beside));
        if (!found.empty() && game_.isFile(found)) return Lookup::kFound;
    }
    if (!baseNames_) baseNames_.emplace(project_.entries);
    const NativePath* const file =
        baseNames_->only(toLower(PathEncoding::utf8(relative.filename())));
    if (file == nullptr) return Lookup::kMissing;
    found = *file;
    return Lookup::kFound;
}

SymbolId ScriptScanner::intern(std::string_view text, Section section) {
    const auto known = symbolIds_.find(text);
    if (known != symbolIds_.end()) return known->second;
    const auto id = static_cast<SymbolId>(symbols_.size());
    const Symbol& symbol = symbols_.emplace_back(Symbol{std::string(text), section});
    symbolIds_.emplace(symbol.text, id);
    return id;
}

SymbolId ScriptScanner::internCodeCall(std::string_view name) {
    return intern(std::string(name).append(kCodeCallMark), Section::kCodeCall);
}

FileId ScriptScanner::fileId(const fs::path& file) {
    const auto [entry, isNew] =
        fileIds_.try_emplace(PathEncoding::utf8(file), static_cast<FileId>(graph_.size()));
    if (isNew) {
        graph_.add();
        paths_.push_back(file);
        signatures_.emplace_back();
        pending_.push_back(entry->second);
    }
    return entry->second;
}

ScriptScanner::Include ScriptScanner::include(std::string_view raw, const fs::path& file,
                                              std::string_view folder) {
    const auto [entry, isNew] =
        includes_.try_emplace(std::string(folder).append(1, '\0').append(raw));
    if (isNew) {
        fs::path found;
        Include& made = entry->second;
        made.lookup = findScript(raw, file, found);
        if (made.lookup == Lookup::kFound) made.file = fileId(found);
    }
    return entry->second;
}

void ScriptScanner::scanPending() {
    while (!pending_.empty()) {
        const FileId id = pending_.back();
        pending_.pop_back();
        scanText(id, readFileBytes(paths_[id]), paths_[id]);
    }
}

void ScriptScanner::scanText(FileId id, std::string_view text, const fs::path& file) {
    std::vector<SymbolId> uses;
    std::vector<SymbolId> definitions;
    std::vector<FileId> includes;
    std::unordered_set<FileId> included;
    const std::string folder = PathEncoding::utf8(file.parent_path());
    forEachInclude(text, [&](std::string_view raw) {
        const Include found = include(raw, file, folder);
        switch (found.lookup) {
            case Lookup::kFound:
                // A second time it brings nothing new.
                if (included.insert(found.file).second) includes.push_back(found.file);
                break;
            case Lookup::kMissing:
                uses.push_back(intern(missingInclude(raw), Section::kInclude));
                break;
            case Lookup::kUnsafe:
                uses.push_back(intern(unsafeInclude(raw), Section::kInclude));
                break;
        }
    });
    forEachBindentityCall(text, [&](std::string_view rest) {
        const std::string_view tag = bindentityTag(rest);
        if (!tag.empty()) appendDistinct(uses, intern(tag, Section::kBindentity));
    });
    std::unordered_set<std::string> called;
    forEachCall(text, [&](std::string_view name) {
        std::string lowered = toLower(name);
        if (knownScriptNames().contains(lowered) || !called.insert(lowered).second) return;
        uses.push_back(intern(lowered, Section::kCall));
    });
    if (!game_.asWritten()) scanMendedCalls(id, text);
    if (!called.empty()) {
        std::unordered_set<std::string> inCode;
        forEachCall(codeOf(text), [&](std::string_view name) {
            std::string lowered = toLower(name);
            if (!called.contains(lowered) || !inCode.insert(lowered).second) return;
            uses.push_back(internCodeCall(lowered));
        });
    }
    const auto define = [&](std::string_view name) {
        const std::string lowered = toLower(name);
        definitions.push_back(internCodeCall(lowered));
        definitions.push_back(intern(lowered, Section::kCall));
    };
    forEachFunctionMacro(text, define);
    forEachObjectMacro(text, define);
    forEachFunctionDefinition(text, [&](std::string_view name, std::string_view rest) {
        define(name);
        if (const auto count = countParameters(rest)) {
            signatures_[id].push_back({definitions.back(), *count});
        }
    });
    IncludeGraph::Node& node = graph_.node(id);
    node.uses = std::move(uses);
    node.definitions = std::move(definitions);
    node.includes = std::move(includes);
}

void ScriptScanner::scanMendedCalls(FileId id, std::string_view text) {
    std::uint64_t line = 1;
    std::size_t counted = 0;
    forEachCall(text, [&](std::string_view name) {
        std::string lowered = toLower(name);
        if (!mendedScriptNames().contains(lowered)) return;
        const auto at = static_cast<std::size_t>(name.data() - text.data());
        line += static_cast<std::uint64_t>(
            std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                       text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
        counted = at;
        mendedCalls_[id].push_back({intern(lowered, Section::kCall), line});
    });
}

// Takes out what is no finding unless the game is taken to the letter; gives the lines of the text
// itself that this is about.
std::vector<std::uint64_t> ScriptScanner::mend(FileId id, std::vector<SymbolId>& findings) {
    if (game_.asWritten()) return {};
    std::unordered_set<SymbolId> mended;
    for (const SymbolId symbol : findings) {
        const auto& [text, section] = symbols_[symbol];
        const bool isCall = section == Section::kCall;
        if (isCall && mendedScriptNames().contains(text)) mended.insert(symbol);
    }
    std::erase_if(findings, [&](SymbolId symbol) { return mended.contains(symbol); });
    std::vector<std::uint64_t> lines;
    const auto calls = mendedCalls_.find(id);
    if (calls == mendedCalls_.end()) return lines;
    for (const MendedCall& call : calls->second) {
        if (mended.contains(call.name)) lines.push_back(call.line);
    }
    return lines;
}

// All scripts of the project at once, so that what follows from their includes is found together.
void ScriptScanner::prepareProject() {
    if (prepared_) return;
    prepared_ = true;
    for (const TreeEntry& entry : project_.entries) {
        if (entry.regularFile && isScriptExtension(entry.extension())) {
            static_cast<void>(fileId(entry.path()));
        }
    }
    scanPending();
    walkShare_ = std::min(kLargestShare, walkSteps_ / std::max<std::uint64_t>(graph_.size(), 1));
    graph_.extendHeights(heights_);
    for (FileId id = 0; id < graph_.size(); ++id) {
        bool complete = true;
        if (reachesDepthLimit(id)) static_cast<void>(graph_.reach(id, complete));
        whole_.push_back(complete);
    }
    undefined_ = graph_.undefinedUses(static_cast<SymbolId>(symbols_.size()), whole_);
}

bool ScriptScanner::reachesDepthLimit(FileId id) {
    if (id >= heights_.size()) {
        if (graph_.node(id).includes.empty()) return false;
        graph_.extendHeights(heights_);
    }
    return heights_[id] >= kIncludeDepthLimit;
}

// What the file and all that it brings in use and none of them defines, in no useful order.
std::vector<SymbolId> ScriptScanner::findingsOf(FileId id) {
    if (id < whole_.size() && whole_[id]) return undefined_[id];
    bool complete = false;
    const std::vector<FileId> files = graph_.reach(id, complete);
    std::unordered_set<SymbolId> settled;
    for (const FileId file : files) {
        const std::vector<SymbolId>& definitions = graph_.node(file).definitions;
        settled.insert(definitions.begin(), definitions.end());
    }
    std::vector<SymbolId> findings;
    for (const FileId file : files) {
        for (const SymbolId symbol : graph_.node(file).uses) {
            if (settled.insert(symbol).second) findings.push_back(symbol);
        }
    }
    return findings;
}

ScriptReport ScriptScanner::report(FileId id) {
    std::vector<SymbolId> findings = findingsOf(id);
    ScriptReport result;
    result.mendedLines = mend(id, findings);
    std::unordered_set<std::string_view> inCode;
    std::erase_if(findings, [&](SymbolId symbol) {
        const auto& [text, section] = symbols_[symbol];
        if (section != Section::kCodeCall) return false;
        inCode.insert(std::string_view(text).substr(0, text.size() - kCodeCallMark.size()));
        return true;
    });
    bool ordered = true;
    if (findings.size() > 1) {
        std::unordered_map<SymbolId, std::size_t> place;
        std::uint64_t steps = walkShare_;
        const std::vector<FileId> files = graph_.walk(id, steps);
        ordered = !files.empty();
        for (const FileId file : files) {
            for (const SymbolId symbol : graph_.node(file).uses) {
                place.try_emplace(symbol, place.size());
            }
        }
        std::sort(findings.begin(), findings.end(), [&](SymbolId a, SymbolId b) {
            return std::tuple(symbols_[a].section, place[a], a) <
                   std::tuple(symbols_[b].section, place[b], b);
        });
    }
    if (reachesDepthLimit(id)) result.names.emplace_back(kDepthLimitTag);
    if (!ordered) result.names.emplace_back(kWalkLimitTag);
    for (const SymbolId symbol : findings) {
        const auto& [text, section] = symbols_[symbol];
        result.names.push_back(text);
        if (section == Section::kCall && !inCode.contains(text)) result.mentioned.push_back(text);
    }
    return result;
}

ScriptReport ScriptScanner::scanScriptSource(const fs::path& file,
                                             std::optional<std::string_view> inlineText) {
    prepareProject();
    if (!inlineText) {
        const FileId id = fileId(file);
        scanPending();
        const auto [entry, isNew] = reports_.try_emplace(id);
        if (isNew) entry->second = report(id);
        return entry->second;
    }
    const FileId id = graph_.add();
    paths_.emplace_back();
    signatures_.emplace_back();
    scanText(id, *inlineText, file);
    scanPending();
    return report(id);
}

const ScriptScanner::ParameterCounts* ScriptScanner::parameterCounts(const fs::path& file) {
    prepareProject();
    const FileId id = fileId(file);
    scanPending();
    const auto [entry, isNew] = parameterCounts_.try_emplace(id);
    std::optional<ParameterCounts>& counts = entry->second;
    if (isNew) {
        std::uint64_t steps = walkShare_;
        const std::vector<FileId> files = graph_.walk(id, steps);
        if (!files.empty()) counts.emplace();
        for (const FileId unit : files) {
            const std::uint64_t weight = signatures_[unit].size() * kSignatureSteps;
            if (weight > steps) {
                counts.reset();
                break;
            }
            steps -= weight;
            for (const Signature& signature : signatures_[unit]) {
                counts->try_emplace(symbols_[signature.name].text, signature.parameters);
            }
        }
    }
    return counts ? &*counts : nullptr;
}

}  // namespace tindrel
