#include "analysis/BrokenScripts.hpp"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "ScriptCheck.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "reader/ModelKeywords.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// About ten seconds; the scripts of large games take one of them.
constexpr std::size_t kMaxWork = std::size_t{1} << 30U;

// What holding a text against a command takes of it.
constexpr std::size_t kWorkPerText = 2;

// Nobody mends more before asking again.
constexpr std::size_t kMaxBroken = 2000;

// Scripts that the runtime runs by their names.
constexpr std::string_view kNamedScripts[] = {
    "scripts/update.c", "scripts/updated.c", "scripts/key1.c",    "scripts/key2.c",
    "scripts/key3.c",   "scripts/key4.c",    "scripts/keyall.c",  "scripts/join2.c",
    "scripts/join3.c",  "scripts/join4.c",   "scripts/joinall.c",
};

constexpr std::string_view kNoMain = "requested function/main() not found";
constexpr std::string_view kStepCure = "write the step as a line of its own: i++;";
constexpr std::string_view kLeftOpen = "a comment, a text or a bracket is left open";

// The text of a frame's command, as the runtime puts it together.
std::string composed(const AnimationDef& animation, const FrameDef& frame) {
    std::string text = animation.inlineScript;
    if (!frame.animationCommand.empty()) text.append(1, '\n').append(frame.animationCommand);
    return text;
}

// Where a line begins, counted from 1; the end of the text where it has fewer.
std::size_t startOfLine(std::string_view text, std::size_t line) {
    std::size_t at = 0;
    for (; line > 1 && at < text.size(); --line)
        at = std::min(text.find('\n', at), text.size()) + 1;
    return std::min(at, text.size());
}

Mend mendOf(port::script::ScriptMend mend) {
    switch (mend) {
        case port::script::ScriptMend::MacroComment:
            return Mend::kMacroComment;
        case port::script::ScriptMend::IncludeComment:
            return Mend::kIncludeComment;
        case port::script::ScriptMend::Undefine:
            return Mend::kUndefine;
        case port::script::ScriptMend::Declarators:
            return Mend::kDeclarators;
        case port::script::ScriptMend::Step:
            break;
    }
    return Mend::kStep;
}

// A line of a model's file that runs a text of its own; a block of an "@script" stands under
// the line that opens it.
struct OwnLine {
    std::string_view keyword;
    std::uint64_t line;
};
// Those lines by the lines of their texts.
class OwnLines {
  public:
    // `work` is counted up with each text that is held against a command.
    explicit OwnLines(std::size_t& work) : work_(work) {}

    void add(OwnLine line, std::string text) {
        const std::string_view kept = texts_.emplace_back(std::move(text));
        for (std::size_t at = 0; at < kept.size();) {
            const std::size_t end = std::min(kept.find('\n', at), kept.size());
            byLine_[kept.substr(at, end - at)].push_back({line, kept, at});
            at = end + 1;
        }
    }
    // What the n-th line of a command's text comes from. Many blocks have a line like it, so
    // the whole text must stand around it.
    [[nodiscard]] std::vector<OwnLine> at(std::string_view command, std::size_t n) const {
        std::vector<OwnLine> result;
        const std::size_t start = startOfLine(command, n);
        const std::size_t end = std::min(command.find('\n', start), command.size());
        const auto found = byLine_.find(command.substr(start, end - start));
        if (found == byLine_.end()) return result;
        work_ += kWorkPerText * found->second.size();
        for (const Origin& origin : found->second) {
            if (origin.offset <= start &&
                command.substr(start - origin.offset).starts_with(origin.text)) {
                result.push_back(origin.line);
            }
        }
        return result;
    }

  private:
    struct Origin {
        OwnLine line;
        std::string_view text;
        std::size_t offset;  // of the line in it
    };
    std::size_t& work_;
    std::deque<std::string> texts_;
    std::unordered_map<std::string_view, std::vector<Origin>> byLine_;
};

class Checkup {
  public:
    Checkup(GameReader& game, const std::deque<AnimationCommandAudit>& commands)
        : game_(game),
          keys_(game.asWritten()),
          check_(game.dataDir(), game.asWritten(), [this](const port::script::TextArgument& text) {
              if (keys_.answers(text.function, text.text, text.index, text.count)) return;
              keys_.note(text.function, text.text, relative(text.file), text.line);
          }) {
        const SourceFile* file = nullptr;
        std::vector<const AnimationCommandAudit*>* lines = nullptr;  // of that file
        for (const AnimationCommandAudit& audit : commands) {
            if (audit.file != file) {
                file = audit.file;
                lines = &commandLines_[PathEncoding::utf8(file->relative)];
            }
            lines->push_back(&audit);
        }
    }

    ScriptCheckup run() {
        collectHooks();
        for (const ModelDef& model : game_.models()) {
            units_[model.animationScript].models.push_back(&model);
        }
        for (const auto& [path, unit] : units_) checkUnit(path, unit);
        for (auto& [place, broken] : broken_) result_.broken.push_back(std::move(broken));
        locateCallers();
        result_.unanswered = keys_.unanswered();
        for (const auto& [file, lines] : mended_) {
            game_.collect(file, std::vector<MendedLine>(lines.begin(), lines.end()));
        }
        return std::move(result_);
    }

  private:
    // What runs one script.
    struct Unit {
        std::vector<ScriptCaller> hooks;
        std::vector<const ModelDef*> models;  // whose animations it helps
    };
    using Place = std::tuple<std::string, std::uint64_t, std::string, std::string, std::string>;
    using CommandLines = std::map<std::string, std::vector<ScriptCaller>>;
    // The lines of a file by their keyword and the script that they name.
    using HookLines = std::map<std::pair<std::string, std::string>, std::vector<std::uint64_t>>;
    using NameSet = std::unordered_set<std::string_view>;
    using CallersByName = std::unordered_map<std::string_view, std::vector<std::string_view>>;
    using Commands = std::unordered_map<std::string, port::script::CheckedFunction>;

    void addHook(std::string_view path, std::string_view keyword, std::string_view file) {
        if (path.empty()) return;
        units_[std::string(path)].hooks.push_back({keyword, std::string(file), 0, folded(path)});
    }

    void collectHooks() {
        for (const ModelDef& model : game_.models()) {
            for (const ModelScript& script : kModelScripts) {
                // A helper runs with the commands of frames, see units_.
                if (script.path == &ModelDef::animationScript) continue;
                addHook(model.*script.path, script.keyword, model.sourceFile);
            }
        }
        std::set<std::string_view> stageFiles;
        for (const StageDef& stage : game_.stages()) {
            if (!stageFiles.insert(stage.sourceFile).second) continue;  // played once more
            addHook(stage.levelScript, "levelscript", stage.sourceFile);
            for (const SpawnDef& spawn : stage.spawns) {
                addHook(spawn.spawnScript, "spawnscript", stage.sourceFile);
            }
        }
        for (const std::string_view name : kNamedScripts) {
            const fs::path& file = game_.resolve(name);
            if (file.empty() || !game_.isFile(file)) continue;
            addHook(name, name, game_.relativeToProject(file));
        }
    }

    void checkUnit(const std::string& path, const Unit& unit) {
        if (isWorkDone()) {
            ++result_.unchecked;
            return;
        }
        const port::script::CheckedScript& script = check_.file(path);
        const CommandLines lines = linesOf(unit);
        if (!path.empty() && script.error.empty()) {
            ++result_.scripts;
            noteFiles(script);
            judgeWhole(script, unit, lines);
        }
        note(script.mended);
        std::optional<CallersByName> callersOf;  // few scripts need it
        for (const port::script::CheckedFunction* const function : script.functions) {
            note(function->mended);
            if (function->breaks.empty() || isFull()) continue;
            if (!callersOf) callersOf = callersIn(script);
            const NameSet leading = leadingTo(*callersOf, function->name);
            for (const port::script::ScriptBreak& found : function->breaks) {
                BrokenScript& broken = entry(relative(found.file), found.line, function->name,
                                             found.token, found.error);
                if (leading.contains("main")) {
                    for (const ScriptCaller& hook : unit.hooks) add(broken, hook, broken.hooks);
                }
                // The "main" of a helper runs ahead of each command.
                for (const auto& [called, callers] : lines) {
                    if (!leading.contains("main") && !leading.contains(called)) continue;
                    for (const ScriptCaller& line : callers) add(broken, line, broken.commands);
                }
            }
        }
        Commands known;
        for (const ModelDef* const model : unit.models) checkCommands(*model, known);
    }

    // Scripts share most of their files.
    void noteFiles(const port::script::CheckedScript& script) {
        for (const port::script::ScriptSource* const file : script.files) {
            if (readFiles_.insert(file).second) result_.files.insert(relative(file->path));
        }
    }

    // What is wrong with a script rather than with a place in it. A bracket left open shows at the
    // place that breaks off for it, if there is one.
    void judgeWhole(const port::script::CheckedScript& script, const Unit& unit,
                    const CommandLines& lines) {
        const std::string file = relative(script.files.front()->path);
        const bool showsElsewhere =
            std::any_of(script.functions.begin(), script.functions.end(),
                        [](const auto* function) { return !function->breaks.empty(); });
        if (!script.closed && !showsElsewhere) {
            BrokenScript& broken = entry(file, 0, {}, {}, kLeftOpen);
            for (const ScriptCaller& hook : unit.hooks) add(broken, hook, broken.hooks);
            for (const auto& [called, callers] : lines) {
                for (const ScriptCaller& line : callers) add(broken, line, broken.commands);
            }
        }
        if (!unit.hooks.empty() && script.find("main") == nullptr) {
            BrokenScript& broken = entry(file, 0, {}, {}, kNoMain);
            for (const ScriptCaller& hook : unit.hooks) add(broken, hook, broken.hooks);
        }
    }

    static CallersByName callersIn(const port::script::CheckedScript& script) {
        CallersByName callers;
        for (const port::script::CheckedFunction* const function : script.functions) {
            for (const std::string& called : function->calls) {
                callers[called].push_back(function->name);
            }
        }
        return callers;
    }

    // The functions from which a run may come to `name`, itself included.
    static NameSet leadingTo(const CallersByName& callersOf, std::string_view name) {
        NameSet leading{name};
        for (std::vector<std::string_view> open{name}; !open.empty();) {
            const std::string_view next = open.back();
            open.pop_back();
            const auto callers = callersOf.find(next);
            if (callers == callersOf.end()) continue;
            for (const std::string_view caller : callers->second) {
                if (leading.insert(caller).second) open.push_back(caller);
            }
        }
        return leading;
    }

    // The "@cmd" lines that a script helps, by the function that they call.
    CommandLines linesOf(const Unit& unit) const {
        CommandLines lines;
        for (const ModelDef* const model : unit.models) {
            const auto audits = commandLines_.find(model->sourceFile);
            if (audits == commandLines_.end()) continue;
            for (const AnimationCommandAudit* const audit : audits->second) {
                const std::size_t end = audit->command.find(' ');
                lines[toLower(std::string_view(audit->command).substr(0, end))].push_back(
                    {"@cmd", model->sourceFile, audit->line});
            }
        }
        return lines;
    }

    // The frames' own texts behind the script that was checked last. Models that share it repeat
    // each other's commands, so what is `known` of a text serves all of them.
    void checkCommands(const ModelDef& model, Commands& known) {
        std::optional<OwnLines> ownLines;
        std::unordered_set<std::string_view> located;  // whose lines are found
        for (const AnimationDef& animation : model.animations) {
            std::unordered_set<std::string_view> counted;
            for (const FrameDef& frame : animation.frames) {
                if (animation.inlineScript.empty() && frame.animationCommand.empty()) continue;
                if (!counted.insert(frame.animationCommand).second) continue;
                if (isWorkDone()) {
                    ++result_.unchecked;
                    continue;
                }
                ++result_.commands;
                const std::string text = composed(animation, frame);
                const auto [entry, isNew] = known.try_emplace(text);
                if (isNew) entry->second = check_.command(text);
                const port::script::CheckedFunction& function = entry->second;
                if (function.breaks.empty() && function.mended.empty()) continue;
                if (!located.insert(entry->first).second) continue;
                if (!ownLines) ownLines.emplace(readOwnLines(model));
                for (const port::script::ScriptBreak& found : function.breaks) {
                    if (!found.file.empty() || isFull()) continue;
                    addOwnBreak(model, ownLines->at(text, found.line), found);
                }
                note(function.mended, model, text, *ownLines);
            }
        }
    }

    OwnLines readOwnLines(const ModelDef& model) {
        OwnLines own(locatingWork_);
        const fs::path path = game_.projectRoot() / PathEncoding::path(model.sourceFile);
        for (const TextLine& line : game_.lines(path)) {
            if (line.key == "@cmd" && !line.args.empty()) {
                own.add({"@cmd", line.line},
                        callOf(line.args, !game_.asWritten() && isWholeCall(line.args)));
            }
            own.add({"@script", line.line}, std::string(line.text()));
        }
        game_.release(path);
        return own;
    }

    void addOwnBreak(const ModelDef& model, const std::vector<OwnLine>& lines,
                     const port::script::ScriptBreak& found) {
        for (const OwnLine& line : lines) {
            BrokenScript& broken = entry(model.sourceFile, line.line, {}, found.token, found.error);
            if (!broken.callers.empty()) continue;
            add(broken, {line.keyword, model.sourceFile, line.line}, broken.commands);
        }
    }

    void note(std::span<const port::script::MendedPlace> mended) {
        for (const port::script::MendedPlace& place : mended) {
            if (place.file.empty()) continue;
            mended_[place.file.native()].insert({place.line, mendOf(place.mend)});
        }
    }

    // The same for a command's own lines.
    void note(std::span<const port::script::MendedPlace> mended, const ModelDef& model,
              std::string_view text, const OwnLines& own) {
        note(mended);
        const fs::path path = game_.projectRoot() / PathEncoding::path(model.sourceFile);
        for (const port::script::MendedPlace& place : mended) {
            if (!place.file.empty() || place.line == 0) continue;
            for (const OwnLine& line : own.at(text, place.line)) {
                mended_[path.native()].insert({line.line, mendOf(place.mend)});
            }
        }
    }

    [[nodiscard]] bool isWorkDone() const { return check_.work() + locatingWork_ > kMaxWork; }

    [[nodiscard]] bool isFull() {
        result_.cutShort = result_.cutShort || broken_.size() >= kMaxBroken;
        return broken_.size() >= kMaxBroken;
    }

    BrokenScript& entry(const std::string& file, std::uint64_t line, std::string_view function,
                        std::string_view token, std::string_view error) {
        // A step in front of a name is no mend, but easily written so that it is understood.
        const bool isStep =
            !game_.asWritten() && !token.empty() && (token == "++" || token == "--");
        BrokenScript made{file,
                          line,
                          std::string(function),
                          PathEncoding::text(token),
                          PathEncoding::text(error),
                          isStep ? kStepCure : std::string_view{},
                          {},
                          0,
                          0};
        const Place place{made.file, line, made.function, made.token, made.error};
        return broken_.try_emplace(place, std::move(made)).first->second;
    }

    static void add(BrokenScript& broken, const ScriptCaller& caller, std::uint64_t& total) {
        ++total;
        if (broken.callers.size() < kMaxCallers) broken.callers.push_back(caller);
    }

    // Finds the lines of hooks, in the few files that have any to show. Where several lines of a
    // file name one script, its callers stand in their order.
    void locateCallers() {
        std::map<std::string_view, std::vector<BrokenScript*>> byFile;
        for (BrokenScript& broken : result_.broken) {
            std::set<std::string_view> files;
            for (const ScriptCaller& caller : broken.callers) {
                if (!caller.script.empty() && files.insert(caller.file).second) {
                    byFile[caller.file].push_back(&broken);
                }
            }
        }
        for (const auto& [file, scripts] : byFile) {
            const fs::path path = game_.projectRoot() / PathEncoding::path(file);
            HookLines lines;
            for (const TextLine& line : game_.lines(path)) {
                if (!line.args.empty()) {
                    lines[{std::string(line.key), folded(line.args[0])}].push_back(line.line);
                }
            }
            for (BrokenScript* const broken : scripts) locateIn(file, lines, *broken);
            game_.release(path);
        }
    }

    static void locateIn(std::string_view file, const HookLines& lines, BrokenScript& broken) {
        std::map<const std::vector<std::uint64_t>*, std::size_t> taken;
        for (ScriptCaller& caller : broken.callers) {
            if (caller.file != file || caller.script.empty()) continue;
            const auto found = lines.find({std::string(caller.keyword), caller.script});
            if (found == lines.end()) continue;
            // Models may share a file, and with it its lines.
            std::size_t& next = taken[&found->second];
            caller.line = found->second[next++ % found->second.size()];
        }
    }

    static std::string folded(std::string_view path) { return toLower(normalizeDataPath(path)); }

    [[nodiscard]] std::string relative(const fs::path& file) const {
        return PathEncoding::utf8(file.lexically_relative(game_.projectRoot()));
    }

    GameReader& game_;
    ScriptKeys keys_;
    port::script::ScriptCheck check_;
    std::size_t locatingWork_ = 0;       // of finding lines, counted like check_.work()
    std::map<std::string, Unit> units_;  // by script path as written
    std::unordered_map<std::string, std::vector<const AnimationCommandAudit*>> commandLines_;
    std::map<Place, BrokenScript> broken_;
    std::unordered_set<const port::script::ScriptSource*> readFiles_;
    std::map<fs::path::string_type, std::set<MendedLine>> mended_;
    ScriptCheckup result_;
};

}  // namespace

ScriptCheckup checkScripts(GameReader& game, const std::deque<AnimationCommandAudit>& commands) {
    return Checkup(game, commands).run();
}

}  // namespace tindrel
