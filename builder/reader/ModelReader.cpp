#include "reader/ModelReader.hpp"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/ModelKeywords.hpp"
#include "reader/RepeatedReads.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct KnownKeyword {
    const ModelKeyword* row = nullptr;
    bool needsAnimation = false;
    bool mended = false;  // read only where a game's lines are mended
};

using KeywordIndex = std::unordered_map<std::string_view, KnownKeyword, KeywordHash>;

const KeywordIndex& keywordIndex() {
    static const KeywordIndex index = [] {
        KeywordIndex all;
        const auto add = [&](std::span<const ModelKeyword> rows, bool needsAnimation,
                             bool mended = false) {
            for (const ModelKeyword& row : rows) {
                for (const std::string_view name : row.names) {
                    if (!name.empty())
                        all.emplace(name, KnownKeyword{&row, needsAnimation, mended});
                }
            }
        };
        add(propertyKeywords(), false);
        add(animationKeywords(), true);
        add(frameKeywords(), true);
        add(boxFieldKeywords(), true, true);
        return all;
    }();
    return index;
}

// What the script ahead of the first animation may take in all copies of one model. Beyond it no
// animation gets one: no hand writes that, and long blocks times many animations would not end.
constexpr std::size_t kMaxCopiedScriptBytes = 64U << 20U;

// "attack7": the digits that are glued on; empty when it is another word.
std::string_view attackNumber(std::string_view key) {
    constexpr std::string_view kAttack = "attack";
    if (key.substr(0, kAttack.size()) != kAttack) return {};
    const std::string_view digits = key.substr(kAttack.size());
    return std::all_of(digits.begin(), digits.end(), isDigit) ? digits : std::string_view{};
}

void readLine(ModelParser& parser, const TextLine& line) {
    parser.line = line.line;
    const bool inAnimation = !parser.model.animations.empty();
    if (!line.text().empty()) {
        (inAnimation ? parser.animation().inlineScript : parser.modelScript) += line.text();
        return;
    }
    static const KeywordIndex& index = keywordIndex();
    if (const auto found = index.find(line.key); found != index.end()) {
        const auto [row, needsAnimation, mended] = found->second;
        if ((needsAnimation && !inAnimation) || line.args.size() < row->minArgs) return;
        if (!mended || parser.mends(Mend::kBoxField)) row->action(parser, line.args);
    } else if (const auto number = attackNumber(line.key); inAnimation && !number.empty()) {
        readNumberedAttack(parser, number, line.args);
    }
}

std::string stemOf(const fs::path& path) {
    return PathEncoding::utf8(path.stem());
}

// What models.txt says about all models, wherever in the file it says so.
struct GlobalFlag {
    std::string_view key;
    bool ModelDef::*flag;
};

constexpr GlobalFlag kGlobalFlags[] = {
    {"nocost", &ModelDef::globalNoCost},
    {"blockratio", &ModelDef::globalBlockRatio},
    {"mpblock", &ModelDef::globalMpBlock},
    {"nochipdeath", &ModelDef::noChipDeath},
};

// Carries the global flags alone.
ModelDef readGlobalFlags(const TextFile& registry) {
    ModelDef flags;
    for (const TextLine& line : registry) {
        if (line.args.empty()) continue;
        for (const auto& [key, flag] : kGlobalFlags) {
            if (line.key == key) flags.*flag = parseIntOr(line.args[0], 0) != 0;
        }
    }
    return flags;
}

std::vector<ModelDef> readRegisteredModels(GameReader& game, const TextFile& registry) {
    std::vector<ModelDef> models;
    const ModelDef globals = readGlobalFlags(registry);
    std::set<std::string> seen;
    RepeatedReads reads;
    for (const TextLine& line : registry) {
        const auto entry = registeredModel(line);
        if (!entry) continue;
        const auto& [name, path] = *entry;
        const fs::path& resolved = game.resolve(path);
        if (resolved.empty() || !game.isUnlinkedFile(resolved)) continue;
        if (!reads.admit(resolved, game.lines(resolved))) continue;

        ModelDef model = readModelFile(game, resolved);
        if (model.animations.empty()) continue;
        model.modelName =
            name.empty() ? stemOf(PathEncoding::path(normalizeDataPath(path))) : std::string(name);
        if (model.modelName.empty()) model.modelName = model.name;
        if (model.name.empty()) model.name = model.modelName;
        const std::string key =
            toLower(model.modelName) + '\n' + PathEncoding::utf8(resolved.lexically_normal());
        if (!seen.insert(key).second) continue;

        for (const GlobalFlag& row : kGlobalFlags) model.*row.flag = globals.*row.flag;
        models.push_back(std::move(model));
    }
    return models;
}

void check(const char* operation, const fs::path& path, const std::error_code& error) {
    if (error) throw fs::filesystem_error(operation, path, error);
}

bool isTextFile(const fs::directory_entry& entry) {
    if (toLower(PathEncoding::utf8(entry.path().extension())) != ".txt") return false;
    std::error_code error;
    const bool regular = entry.is_regular_file(error);
    if (!isAbsence(error)) check("status", entry.path(), error);
    return regular;
}

// For projects without a usable registry: every text file that describes an entity is one.
std::vector<ModelDef> findModels(GameReader& game) {
    std::vector<ModelDef> models;
    std::error_code error;
    fs::recursive_directory_iterator walk(game.dataDir(), error);
    check("recursive_directory_iterator", game.dataDir(), error);
    while (walk != fs::recursive_directory_iterator()) {
        const fs::path path = walk->path();
        if (tindrel::isLink(path)) walk.disable_recursion_pending();
        if (isTextFile(*walk)) {
            ModelDef model = readModelFile(game, path);
            if (!model.animations.empty() && !model.name.empty()) {
                model.modelName = model.name;
                models.push_back(std::move(model));
            }
        }
        walk.increment(error);
        check("recursive_directory_iterator", path, error);
    }
    return models;
}

}  // namespace

void ModelParser::endAnimation() {
    if (model.animations.empty()) return;
    animation().frames.assign(std::make_move_iterator(frames.begin()),
                              std::make_move_iterator(frames.end()));
    frames.clear();
}

ModelDef parseModel(const TextFile& file, std::string_view stem, Reading& reading) {
    ModelParser parser{reading};
    for (const TextLine& line : file) readLine(parser, line);
    parser.endAnimation();
    ModelDef& model = parser.model;
    if (parser.modelScript.size() <= kMaxCopiedScriptBytes / (model.animations.size() + 1)) {
        for (AnimationDef& animation : model.animations) {
            animation.inlineScript.insert(0, parser.modelScript);
        }
    }
    if (model.name.empty()) model.name = stem;
    return std::move(model);
}

ModelDef readModelFile(GameReader& game, const fs::path& path) {
    Reading reading = game.newReading();
    ModelDef model = parseModel(game.lines(path), stemOf(path), reading);
    game.collect(path, reading.lines());
    model.sourceFile = game.relativeToProject(path);
    return model;
}

std::optional<RegisteredModel> registeredModel(const TextLine& line) {
    if ((line.key != "load" && line.key != "know") || line.args.empty()) return std::nullopt;
    if (line.args.size() == 1) return RegisteredModel{{}, line.args[0]};
    return RegisteredModel{line.args[0], line.args[1]};
}

bool isModelKeyword(std::string_view key) {
    return keywordIndex().contains(key);
}

std::vector<ModelDef> readModels(GameReader& game) {
    if (!tindrel::exists(game.dataDir())) return {};
    const fs::path& registry = game.resolve("models.txt");
    if (!registry.empty() && tindrel::exists(registry)) {
        std::vector<ModelDef> models = readRegisteredModels(game, game.lines(registry));
        if (!models.empty()) return models;
    }
    return findModels(game);
}

}  // namespace tindrel
