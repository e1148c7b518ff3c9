#pragma once

// The registry rates a command as a word; a single occurrence can do better. Where its arguments
// are of a form that the port's runtime executes in full, it is raised to SUPPORTED.

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "analysis/AssetFinder.hpp"
#include "analysis/CommandRegistry.hpp"
#include "analysis/ScriptScan.hpp"
#include "reader/GameReader.hpp"

namespace tindrel {

// What a rule may ask about the game around the line that it looks at; every answer is worked out
// once, per file or per distinct text.
class GameFacts {
  public:
    GameFacts(const ProjectScan& project, GameReader& game, ScriptScanner& scanner)
        : game_(game), scanner_(scanner), assets_(project, game) {}

    // The file that the lines now come from.
    void enter(const std::filesystem::path& file);

    // The model that the file describes; null when no registry entry names the file.
    [[nodiscard]] const ModelDef* model();
    // That model has an animation of the name, which is in lower case.
    [[nodiscard]] bool hasAnimation(std::string_view name);
    [[nodiscard]] bool isStage();
    // The stage file has a spawn of its own for that weapon; inside of another it would do nothing.
    [[nodiscard]] bool spawnsWeapon(std::string_view name);
    // models.txt itself.
    [[nodiscard]] bool isModelRegistry();
    [[nodiscard]] bool knowsModel(std::string_view name);
    // A picture with a palette of its own: GIF, indexed PNG or BMP, or an ACT palette.
    [[nodiscard]] bool isIndexedImage(std::string_view path);
    [[nodiscard]] bool imageExists(std::string_view path);
    // Why a scene file is not shown as it is written, as a sentence with code between backquotes:
    // it holds something but "music", "silence" and "animation" with pictures that are there. Empty
    // where it is.
    [[nodiscard]] const std::string& faultOfScene(std::string_view path);
    // What a script uses and the port does not know; null when it is not there. The second is of a
    // text in the file itself and holds until the next such text.
    [[nodiscard]] const ScriptReport* script(std::string_view path);
    [[nodiscard]] const ScriptReport& inlineScript(std::string_view text);

  private:
    void readModelNames();

    GameReader& game_;
    ScriptScanner& scanner_;
    AssetFinder assets_;
    std::filesystem::path file_;
    std::optional<std::string> relative_;
    // Of the file, once a line asks for them: many lines may.
    std::optional<std::unordered_set<std::string>> animations_;
    std::optional<std::unordered_set<std::string_view>> spawnedWeapons_;
    bool modelsRead_ = false;
    std::unordered_map<std::string, const ModelDef*> modelFiles_;
    std::unordered_set<std::string> modelNames_;
    std::unordered_map<std::string, const StageDef*> stageFiles_;
    std::unordered_map<std::string, bool> indexed_;
    std::unordered_map<std::string, std::string> scenes_;
    std::unordered_map<std::string, std::optional<ScriptReport>> scripts_;
    std::string_view inlineText_;  // that `inlineReport_` is of
    ScriptReport inlineReport_;
};

// One rule: occurrences of `command` whose arguments `fits` accepts are raised, with `impact`.
struct OccurrenceRule {
    std::string_view command;  // lower case; aliases are separated by one blank
    bool (*fits)(const TextLine& line, GameFacts& facts);
    std::string_view impact;
    // What keeps a line that does not fit from it, as a sentence with code between backquotes;
    // empty where its form does. Null where only that can.
    std::string (*obstacle)(const TextLine& line, GameFacts& facts) = nullptr;
};

// All rules; the first that fits decides.
[[nodiscard]] std::span<const OccurrenceRule> occurrenceRules();

class OccurrenceRefiner {
  public:
    OccurrenceRefiner(const ProjectScan& project, GameReader& game, ScriptScanner& scanner);

    // The rules for a command, to be looked up once for all of its lines. `key` is in lower case.
    using Rules = std::span<const OccurrenceRule* const>;
    [[nodiscard]] static Rules rulesOf(std::string_view key);

    // Raises `rule`, the registry's verdict on `line` of `file`, where one of `rules` fits.
    void refineOccurrence(CommandRule& rule, Rules rules, const TextLine& line,
                          const std::filesystem::path& file);

    // Why none of `rules` fits a line of the file that was refined last; empty without rules.
    [[nodiscard]] std::string reasonAgainst(Rules rules, const TextLine& line);

  private:
    GameFacts facts_;
};

}  // namespace tindrel
