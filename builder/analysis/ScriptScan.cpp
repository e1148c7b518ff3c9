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

// Steps that ordering the findings may take in one analysis; the largest real games need a tenth.
// Beyond it findings are as complete, but stand in the order in which the project shows them first.
constexpr std::uint64_t kWalkBudget = 20'000'000;

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

// What is wrong with a "bindentity" call whose arguments begin `rest`; empty for nothing.
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

ScriptScanner::ScriptScanner(GameReader& game, const ProjectScan& project)
    : game_(game), project_(project), walkBudget_(kWalkBudget) {}

const NativePath* ScriptScanner::findByBaseName(const std::string& name) {
    if (byBaseName_.empty()) {
        for (const TreeEntry& entry : project_.entries) {
            if (!entry.regularFile) continue;
            const auto [known, isNew] = byBaseName_.try_emplace(entry.name(), &entry.native);
            if (!isNew) known->second = nullptr;
        }
    }
    const auto found = byBaseName_.find(name);
    return found == byBaseName_.end() ? nullptr : found->second;
}

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
    const NativePath* const file = findByBaseName(toLower(PathEncoding::utf8(relative.filename())));
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
    forEachInclude(text, [&](std::string_view raw) {
        fs::path found;
        switch (findScript(raw, file, found)) {
            case Lookup::kFound:
                includes.push_back(fileId(found));
                break;
            case Lookup::kMissing:
                uses.push_back(intern("include-missing:" + std::string(raw), Section::kInclude));
                break;
            case Lookup::kUnsafe:
                uses.push_back(intern("unsafe-include:" + std::string(raw), Section::kInclude));
                break;
        }
    });
    forEachBindentityCall(text, [&](std::string_view rest) {
        const std::string_view tag = bindentityTag(rest);
        if (!tag.empty()) appendDistinct(uses, intern(tag, Section::kBindentity));
    });
    std::unordered_map<std::string, bool> seen;
    forEachCall(text, [&](std::string_view name) {
        std::string lowered = toLower(name);
        if (knownScriptNames().contains(lowered) || !seen.try_emplace(lowered).second) return;
        uses.push_back(intern(lowered, Section::kCall));
    });
    const auto define = [&](std::string_view name) {
        definitions.push_back(intern(toLower(name), Section::kCall));
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

// All scripts of the project at once, so that what follows from their includes is found together.
void ScriptScanner::prepareProject() {
    if (prepared_) return;
    prepared_ = true;
    for (const TreeEntry& entry : project_.entries) {
        if (entry.regularFile && (entry.extension() == ".c" || entry.extension() == ".h")) {
            static_cast<void>(fileId(entry.path()));
        }
    }
    scanPending();
    undefined_ = graph_.undefinedUses(static_cast<SymbolId>(symbols_.size()));
    heights_ = graph_.heights();
}

bool ScriptScanner::reachesDepthLimit(FileId id) {
    if (id >= heights_.size()) {
        if (graph_.node(id).includes.empty()) return false;
        heights_ = graph_.heights();
    }
    return heights_[id] >= kIncludeDepthLimit;
}

// What the file and all that it brings in use and none of them defines, in no useful order.
std::vector<SymbolId> ScriptScanner::findingsOf(FileId id) {
    const bool isPrepared = id < undefined_.size();
    if (isPrepared && !reachesDepthLimit(id)) return undefined_[id];
    bool complete = false;
    const std::vector<FileId> files = graph_.reach(id, complete);
    if (isPrepared && complete) return undefined_[id];

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

std::vector<std::string> ScriptScanner::report(FileId id) {
    std::vector<SymbolId> findings = findingsOf(id);
    if (findings.size() > 1) {
        std::unordered_map<SymbolId, std::size_t> place;
        for (const FileId file : graph_.walk(id, walkBudget_)) {
            for (const SymbolId symbol : graph_.node(file).uses) {
                place.try_emplace(symbol, place.size());
            }
        }
        std::sort(findings.begin(), findings.end(), [&](SymbolId a, SymbolId b) {
            return std::tuple(symbols_[a].section, place[a], a) <
                   std::tuple(symbols_[b].section, place[b], b);
        });
    }
    std::vector<std::string> result;
    if (reachesDepthLimit(id)) result.emplace_back(kDepthLimitTag);
    for (const SymbolId symbol : findings) result.push_back(symbols_[symbol].text);
    return result;
}

std::vector<std::string> ScriptScanner::scanScriptSource(
    const fs::path& file, std::optional<std::string_view> inlineText) {
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

std::optional<std::size_t> ScriptScanner::parameterCount(const fs::path& file,
                                                         std::string_view lowerName) {
    prepareProject();
    const FileId id = fileId(file);
    scanPending();
    const auto name = symbolIds_.find(lowerName);
    if (name == symbolIds_.end()) return std::nullopt;
    for (const FileId unit : graph_.walk(id, walkBudget_)) {
        for (const Signature& signature : signatures_[unit]) {
            if (signature.name == name->second) return signature.parameters;
        }
    }
    return std::nullopt;
}

}  // namespace tindrel
