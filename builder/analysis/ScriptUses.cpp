#include "analysis/ScriptUses.hpp"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "analysis/ScriptPatterns.hpp"
#include "analysis/ScriptScan.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

class UseSearch {
  public:
    UseSearch(const ProjectAnalysis& analysis) {
        for (const ScriptFinding& finding : analysis.scriptFindings) {
            for (const std::string& name : finding.report.names) uses_.try_emplace(name);
        }
    }

    [[nodiscard]] bool nothingToFind() const { return uses_.empty(); }

    // `line` is that of the text's beginning; a block of an entity file shows no other.
    void scan(std::string_view text, const std::string& file, std::uint64_t line, bool isBlock) {
        // Made for the first use that is found: most texts have none.
        std::string code;
        std::size_t counted = 0;
        std::uint64_t lineHere = line;
        const auto add = [&](std::string_view name, std::string_view match) {
            const auto known = uses_.find(name);
            if (known == uses_.end()) return;
            const auto at = static_cast<std::size_t>(match.data() - text.data());
            if (code.empty()) code = codeOf(text);
            if (!isBlock) {
                if (at < counted) {
                    counted = 0;
                    lineHere = line;
                }
                lineHere += static_cast<std::uint64_t>(
                    std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                               text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
                counted = at;
            }
            const bool inCode = !isSpace(code[at]) || name.find(':') != std::string_view::npos;
            ScriptUses& uses = known->second;
            ++uses.total;
            if (inCode) ++uses.inCode;
            const auto behind = inCode
                                    ? std::find_if(uses.places.begin(), uses.places.end(),
                                                   [](const ScriptUse& use) { return !use.inCode; })
                                    : uses.places.end();
            uses.places.insert(behind, {file, lineHere, inCode});
            if (uses.places.size() > kMaxScriptUses) uses.places.pop_back();
        };
        std::unordered_set<const char*> definitions;
        forEachFunctionDefinition(text, [&](std::string_view name, std::string_view) {
            definitions.insert(name.data());
        });
        forEachCall(text, [&](std::string_view name) {
            if (!definitions.contains(name.data())) add(toLower(name), name);
        });
        forEachInclude(text, [&](std::string_view raw) {
            add(missingInclude(raw), raw);
            add(unsafeInclude(raw), raw);
        });
        forEachBindentityCall(text, [&](std::string_view rest) {
            // By its parenthesis: what stands behind it may be a text.
            add(bindentityTag(rest), std::string_view(rest.data() - 1, 1));
        });
    }

    auto take() { return std::move(uses_); }

  private:
    std::map<std::string, ScriptUses, std::less<>> uses_;
};

}  // namespace

std::map<std::string, ScriptUses, std::less<>> findScriptUses(const ProjectScan& project,
                                                              const ProjectAnalysis& analysis,
                                                              GameReader& game) {
    UseSearch search(analysis);
    if (search.nothingToFind()) return {};
    const auto sourceOf = [&](const std::filesystem::path& path) {
        return PathEncoding::utf8(path.lexically_relative(project.root));
    };
    for (const TreeEntry& entry : project.entries) {
        if (!entry.regularFile || !isScriptExtension(entry.extension())) continue;
        search.scan(readFileBytes(entry.path()), sourceOf(entry.path()), 1, false);
    }
    const SourceFile* last = nullptr;
    for (const ScriptFinding& finding : analysis.scriptFindings) {
        if (finding.file == last) continue;
        last = finding.file;
        const std::filesystem::path path = project.root / finding.file->relative;
        if (isScriptExtension(toLower(PathEncoding::utf8(path.extension())))) continue;
        for (const TextLine& line : game.lines(path)) {
            if (!line.text().empty()) search.scan(line.text(), sourceOf(path), line.line, true);
        }
        game.release(path);
    }
    return search.take();
}

}  // namespace tindrel
