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
    [[nodiscard]] bool isStage();
    // models.txt itself.
    [[nodiscard]] bool isModelRegistry();
    [[nodiscard]] bool knowsModel(std::string_view name);
    // A picture with a palette of its own: GIF, indexed PNG or BMP, or an ACT palette.
    [[nodiscard]] bool isIndexedImage(std::string_view path);
    [[nodiscard]] bool imageExists(std::string_view path);
    // A scene file that holds nothing but "music", "silence" and "animation" with pictures that
    // are there.
    [[nodiscard]] bool isPlainScene(std::string_view path);
    // A script that is found and uses nothing unsupported.
    [[nodiscard]] bool isVerifiedScript(std::string_view path);
    [[nodiscard]] bool isVerifiedInline(std::string_view text);

  private:
    void readModelNames();
    GameReader& game_;
    ScriptScanner& scanner_;
    AssetFinder assets_;
    std::filesystem::path file_;
    std::optional<std::string> relative_;
    bool modelsRead_ = false;
    std::unordered_map<std::string, const ModelDef*> modelFiles_;
    std::unordered_set<std::string> modelNames_;
    std::unordered_set<std::string> stageFiles_;
    std::unordered_map<std::string, bool> indexed_, scenes_, scripts_;
};

// One rule: occurrences of `command` whose arguments `fits` accepts are raised, with `impact`.
struct OccurrenceRule {
    std::string_view command;  // lower case; aliases are separated by one blank
    bool (*fits)(const TextLine& line, GameFacts& facts);
    std::string_view impact;
    enum class Names { kNothing, kPicture, kPictures, kModels } names = Names::kNothing;
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
