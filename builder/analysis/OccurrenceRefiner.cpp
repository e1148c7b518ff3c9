#include "analysis/OccurrenceRefiner.hpp"

#include <algorithm>
#include <array>
#include <fstream>
#include <vector>

#include "PathEncoding.hpp"
#include "analysis/HtmlText.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using RulesByCommand = std::unordered_map<std::string_view, std::vector<const OccurrenceRule*>>;

RulesByCommand groupRules() {
    RulesByCommand groups;
    for (const OccurrenceRule& rule : occurrenceRules()) {
        for (std::string_view rest = rule.command; !rest.empty();) {
            const std::size_t blank = std::min(rest.find(' '), rest.size());
            groups[rest.substr(0, blank)].push_back(&rule);
            rest.remove_prefix(std::min(blank + 1, rest.size()));
        }
    }
    return groups;
}

// Decided by what the file begins with, whatever it is called; an ACT palette has no signature and
// goes by its name and size.
bool holdsPalette(const fs::path& file) {
    std::array<unsigned char, 32> head{};
    std::ifstream in(file, std::ios::binary);
    in.read(reinterpret_cast<char*>(head.data()), head.size());
    const auto length = static_cast<std::size_t>(in.gcount());
    const std::string_view text(reinterpret_cast<const char*>(head.data()), length);
    constexpr std::size_t kPngColourType = 25;
    constexpr std::size_t kBmpBitCount = 28;
    if (text.substr(0, 4) == "GIF8") return true;
    if (text.substr(0, 4) == "\x89PNG") return length > kPngColourType && head[kPngColourType] == 3;
    if (text.substr(0, 2) == "BM") return length > kBmpBitCount && head[kBmpBitCount] <= 8;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    return !error && toLower(PathEncoding::utf8(file.extension())) == ".act" &&
           (size == 768 || size == 772);
}

}  // namespace

void GameFacts::enter(const fs::path& file) {
    if (file.native() == file_.native()) return;
    file_ = file;
    relative_.reset();
    animations_.reset();
    spawnedWeapons_.reset();
    inlineText_ = {};
}

void GameFacts::readModelNames() {
    if (!relative_) relative_ = game_.relativeToProject(file_);
    if (modelsRead_) return;
    modelsRead_ = true;
    for (const ModelDef& model : game_.models()) {
        modelFiles_.try_emplace(model.sourceFile, &model);
        modelNames_.insert(toLower(model.modelName));
    }
    for (const StageDef& stage : game_.stages()) stageFiles_.try_emplace(stage.sourceFile, &stage);
}

const ModelDef* GameFacts::model() {
    readModelNames();
    const auto found = modelFiles_.find(*relative_);
    return found == modelFiles_.end() ? nullptr : found->second;
}

bool GameFacts::hasAnimation(std::string_view name) {
    if (!animations_) {
        animations_.emplace();
        if (const ModelDef* const described = model()) {
            for (const AnimationDef& animation : described->animations) {
                animations_->insert(toLower(animation.name));
            }
        }
    }
    return animations_->contains(std::string(name));
}

bool GameFacts::isStage() {
    readModelNames();
    return stageFiles_.contains(*relative_);
}

bool GameFacts::spawnsWeapon(std::string_view name) {
    if (!spawnedWeapons_) {
        readModelNames();
        spawnedWeapons_.emplace();
        const auto stage = stageFiles_.find(*relative_);
        if (stage != stageFiles_.end()) {
            for (const SpawnDef& spawn : stage->second->spawns) {
                if (spawn.spawnType == kSpawnWeapon) spawnedWeapons_->insert(spawn.model);
            }
        }
    }
    return spawnedWeapons_->contains(name);
}

bool GameFacts::knowsModel(std::string_view name) {
    readModelNames();
    return modelNames_.contains(toLower(name));
}

bool GameFacts::isModelRegistry() {
    return file_.native() == game_.resolve("models.txt").native();
}

bool GameFacts::imageExists(std::string_view path) {
    return assets_.picture(path) != nullptr;
}

bool GameFacts::isIndexedImage(std::string_view path) {
    const auto [entry, isNew] = indexed_.try_emplace(std::string(path));
    if (isNew) {
        const NativePath* const file = assets_.picture(path);
        entry->second = file != nullptr && holdsPalette(*file);
    }
    return entry->second;
}

const std::string& GameFacts::faultOfScene(std::string_view path) {
    const auto [entry, isNew] = scenes_.try_emplace(std::string(path));
    std::string& fault = entry->second;
    if (!isNew) return fault;
    const fs::path& file = game_.resolve(path);
    if (file.empty() || !game_.isFile(file)) return fault = quoteCode(path) + " is not there";
    bool hasPicture = false;
    for (const TextLine& line : game_.lines(file)) {
        if (line.key == "animation" && !line.args.empty()) {
            hasPicture = true;
            if (!imageExists(line.args[0])) fault = quoteCode(line.args[0]) + " is not there";
        } else if (line.key != "music" && line.key != "silence") {
            fault = "it has a line " + quoteCode(line.key);
        }
        if (!fault.empty()) return fault;
    }
    if (!hasPicture) fault = "it shows no picture";
    return fault;
}

const ScriptReport* GameFacts::script(std::string_view path) {
    const auto [entry, isNew] = scripts_.try_emplace(std::string(path));
    if (isNew) {
        fs::path file;
        if (scanner_.findScript(path, {}, file) == ScriptScanner::Lookup::kFound) {
            entry->second = scanner_.scanScriptSource(file);
        }
    }
    return entry->second ? &*entry->second : nullptr;
}

const ScriptReport& GameFacts::inlineScript(std::string_view text) {
    if (text.data() != inlineText_.data()) inlineReport_ = scanner_.scanScriptSource(file_, text);
    inlineText_ = text;
    return inlineReport_;
}

std::string OccurrenceRefiner::reasonAgainst(Rules rules, const TextLine& line) {
    if (rules.empty()) return {};
    for (const OccurrenceRule* const rule : rules) {
        if (rule->obstacle == nullptr) continue;
        if (std::string reason = rule->obstacle(line, facts_); !reason.empty()) return reason;
    }
    std::string text(line.command());
    if (!line.args.empty()) text += ' ' + joinTokens(line.args, 0, line.args.size());
    return quoteCode(text) + " has none of these forms";
}

OccurrenceRefiner::OccurrenceRefiner(const ProjectScan& project, GameReader& game,
                                     ScriptScanner& scanner)
    : facts_(project, game, scanner) {}

OccurrenceRefiner::Rules OccurrenceRefiner::rulesOf(std::string_view key) {
    static const RulesByCommand kRules = groupRules();
    const auto group = kRules.find(key);
    return group == kRules.end() ? Rules() : Rules(group->second);
}

void OccurrenceRefiner::refineOccurrence(CommandRule& rule, Rules rules, const TextLine& line,
                                         const fs::path& file) {
    if (rules.empty()) return;
    facts_.enter(file);
    for (const OccurrenceRule* const candidate : rules) {
        if (!candidate->fits(line, facts_)) continue;
        rule = {CompatStatus::kSupported, true, true, candidate->impact};
        return;
    }
}

}  // namespace tindrel
