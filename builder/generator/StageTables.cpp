#include "generator/StageTables.hpp"

#include <algorithm>
#include <string>
#include <string_view>

#include "generator/RuntimeEmission.hpp"
#include "generator/TableText.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace {

using StageRow = Row<StageSpelling>;
using Json = JsonObject<JsonSpelling>;

std::vector<StageInstructionDef> inSequence(const StageDef& stage) {
    std::vector<StageInstructionDef> rows = stage.instructions;
    std::stable_sort(rows.begin(), rows.end(), [](const auto& left, const auto& right) {
        return left.sequence < right.sequence;
    });
    return rows;
}

// The arrays of one stage, named by its index.
class StageWriter {
  public:
    StageWriter(OutputFile& out, const StageDef& stage, std::size_t index)
        : out_(out), stage_(stage), prefix_("s" + std::to_string(index) + "_") {}

    void writeArrays() {
        writePanels();
        writeArray(
            "Layer", "layers", stage_.layers,
            R"({"","",0.5f,0.5f,0,0,0,0,0,0,0,0,0,0,0,0,0.0f,0.0f},)", [&](const LayerDef& l) {
                StageRow(text_, ",")
                    .fields(l.kind, l.path, l.xRatio, l.zRatio, l.xOffset, l.zOffset, l.xSpacing,
                            l.zSpacing, l.xRepeat, l.zRepeat, l.zOrder, l.transparency, l.alpha,
                            l.waterMode, l.amplitude, l.wavelength, l.waveSpeed, l.bgSpeedRatio)
                    .close();
            });
        writeArray(
            "Spawn", "spawns", stage_.spawns,
            R"({-1,"","","","","",0,0,0,0,0,-1,0,0,false,false,false},)", [&](const SpawnDef& s) {
                StageRow(text_, ",")
                    .fields(s.id, s.model, s.alias, s.item, s.map, s.spawnScript, s.x, s.z, s.a,
                            s.y, s.at, s.health, s.score, s.spawnType, s.boss, s.flip, s.hasAt)
                    .close();
            });
        writeArray("Geometry", "geometry", stage_.geometry, R"({"",0,0,0,0,0,0},)",
                   [&](const GeometryDef& g) {
                       std::string shape = "{";
                       appendList(shape, g.shape,
                                  [&](float value) { appendShapeFloat(shape, value); });
                       shape += '}';
                       StageRow(text_, ",")
                           .fields(g.kind, g.x, g.z, g.w, g.h, g.depth, g.altitude, g.openborShape,
                                   Verbatim{shape})
                           .close();
                   });
        writeArray("StageEvent", "events", stage_.events, R"({-1,"",0,0,0,false,""},)",
                   [&](const StageEventDef& e) {
                       StageRow(text_, ",")
                           .fields(e.id, e.kind, e.at, e.value, e.group, e.hasAt, e.text)
                           .close();
                   });
        writeArray("StageInstruction", "instructions", inSequence(stage_), "{-1,-1,-1},",
                   [&](const StageInstructionDef& i) {
                       StageRow(text_, ",").fields(i.sequence, i.kind, i.refId).close();
                   });
        writeScene("scene", stage_.sceneAnimations);
        writeScene("post_scene", stage_.postSceneAnimations);
    }

    void writeRow() {
        const StageDef& s = stage_;
        const std::string panels = prefix_ + "panels", layers = prefix_ + "layers";
        const std::string spawns = prefix_ + "spawns", geometry = prefix_ + "geometry";
        const std::string events = prefix_ + "events", instructions = prefix_ + "instructions";
        const std::string scene = prefix_ + "scene", postScene = prefix_ + "post_scene";
        text_ = "  ";
        StageRow(text_, ",")
            .fields(s.sourceFile, s.setName, s.direction, s.typeName, s.background, s.music,
                    s.musicLoop, s.endLevel, s.order, s.setOrder, s.lives, s.credits, s.canSave,
                    s.skipSelect, s.completeBg, s.noShare, s.ifComplete, s.cameraType,
                    s.scrollSpeed, s.campaignEnd, s.zMin, s.zMax, s.backgroundHeight,
                    s.playerStartX, s.playerStartZ, s.playerStartA, s.player1SpawnDefined,
                    Verbatim{panels}, s.panels.size(), Verbatim{layers}, s.layers.size(),
                    Verbatim{spawns}, s.spawns.size(), Verbatim{geometry}, s.geometry.size(),
                    Verbatim{events}, s.events.size(), Verbatim{instructions},
                    s.instructions.size(), s.branchName, s.nextStage, s.branchStage, s.levelScript,
                    s.bossMusic, s.bossMusicOffset, s.waterPath, s.waterWarp, s.rockMode,
                    s.preSceneFile, s.sceneMusic, s.sceneMusicLoop, Verbatim{scene},
                    s.sceneAnimations.size(), s.postSceneMusic, s.postSceneMusicLoop,
                    Verbatim{postScene}, s.postSceneAnimations.size(), s.chapter, s.player2StartX,
                    s.player2StartZ, s.player2StartA, s.player3StartX, s.player3StartZ,
                    s.player3StartA, s.player4StartX, s.player4StartZ, s.player4StartA,
                    s.player2SpawnDefined, s.player3SpawnDefined, s.player4SpawnDefined,
                    s.setWeapon, s.cameraOffsetX, s.cameraOffsetY, s.stageLightX, s.stageLightY,
                    s.shadowColor, s.shadowAlpha, s.setTime, s.noSlow, s.noTime)
            .close();
        text_ += ",\n";
        out_ << text_;
    }

  private:
    void writePanels() {
        text_.clear();
        appendList(text_, stage_.panels,
                   [&](const std::string& panel) { appendValue<StageSpelling>(text_, panel); });
        if (stage_.panels.empty()) text_ = "nullptr";
        out_ << "static const char* " << prefix_ << "panels[] = {" << text_ << "};\n";
    }

    void writeScene(std::string_view name, const std::vector<CutsceneAnimationDef>& animations) {
        writeArray("CutsceneAnimation", name, animations, R"({"",0,0,0,0,180,0,"",false,false},)",
                   [&](const CutsceneAnimationDef& a) {
                       StageRow(text_, ",")
                           .fields(a.path, a.x, a.y, a.skip, a.noSkip, a.durationTicks,
                                   a.sceneIndex, a.musicBefore, a.musicLoop, a.silenceBefore)
                           .close();
                   });
    }

    template <class List, class Append>
    void writeArray(std::string_view type, std::string_view name, const List& list,
                    std::string_view placeholder, Append appendRow) {
        out_ << "static const " << type << ' ' << prefix_ << name << "[] = {\n";
        if (list.empty()) out_ << "  " << placeholder << '\n';
        for (const auto& element : list) {
            text_ = "  ";
            appendRow(element);
            text_ += ",\n";
            out_ << text_;
        }
        out_ << "};\n";
    }

    OutputFile& out_;
    const StageDef& stage_;
    std::string prefix_;
    std::string text_;  // the row at work
};

void appendStage(std::string& out, const StageDef& stage) {
    Json row(out);
    row.add("source", stage.sourceFile)
        .add("set", stage.setName)
        .add("order", stage.order)
        .add("branch", stage.branchName)
        .add("direction", stage.direction)
        .add("cameraType", stage.cameraType)
        .add("chapter", stage.chapter)
        .add("canSave", stage.canSave)
        .add("skipSelect", stage.skipSelect)
        .add("completeBg", stage.completeBg)
        .add("noShare", stage.noShare)
        .add("ifComplete", stage.ifComplete)
        .add("campaignEnd", stage.campaignEnd)
        .add("background", stage.background)
        .add("music", stage.music)
        .add("bossmusic", stage.bossMusic)
        .add("water", stage.waterPath)
        .add("scene", stage.preSceneFile)
        .add("postSceneCount", stage.postSceneAnimations.size())
        .addList("z", stage.zMin, stage.zMax)
        .addEach("panels", stage.panels,
                 [&](const std::string& panel) { appendValue<JsonSpelling>(out, panel); })
        .addEach("layers", stage.layers,
                 [&](const LayerDef& layer) {
                     Json(out)
                         .add("kind", layer.kind)
                         .add("path", layer.path)
                         .add("xRatio", layer.xRatio)
                         .add("zRatio", layer.zRatio)
                         .add("zOrder", layer.zOrder)
                         .close();
                 })
        .add("levelScript", stage.levelScript)
        .addEach("spawns", stage.spawns,
                 [&](const SpawnDef& spawn) {
                     Json(out)
                         .add("id", spawn.id)
                         .add("model", spawn.model)
                         .add("spawnScript", spawn.spawnScript)
                         .addList("coords", spawn.x, spawn.z, spawn.a)
                         .add("at", spawn.at)
                         .add("hasAt", spawn.hasAt)
                         .add("boss", spawn.boss)
                         .add("type", spawn.spawnType)
                         .close();
                 })
        .addEach("events", stage.events,
                 [&](const StageEventDef& event) {
                     Json(out)
                         .add("id", event.id)
                         .add("kind", event.kind)
                         .add("at", event.at)
                         .add("value", event.value)
                         .close();
                 })
        .addEach("instructions", inSequence(stage),
                 [&](const StageInstructionDef& instruction) {
                     Json(out)
                         .add("sequence", instruction.sequence)
                         .add("kind", instruction.kind)
                         .add("refId", instruction.refId)
                         .close();
                 })
        .addEach("geometry", stage.geometry, [&](const GeometryDef& geometry) {
            Json(out)
                .add("kind", geometry.kind)
                .addList("rect", geometry.x, geometry.z, geometry.w, geometry.h)
                .close();
        });
    row.close();
}

void writeStageData(const std::vector<StageDef>& stages,
                    const std::filesystem::path& outputFolder) {
    OutputFile out(outputFolder / "reports" / "stage-data.json");
    out << "{\n  \"stages\": [\n";
    std::string line;
    for (const StageDef& stage : stages) {
        line = "    ";
        appendStage(line, stage);
        line += &stage == &stages.back() ? "\n" : ",\n";
        out << line;
    }
    out << "  ]\n}\n";
    out.close();
}

}  // namespace

void writeGeneratedStages(const std::vector<StageDef>& stages,
                          const std::filesystem::path& outputFolder) {
    const std::filesystem::path folder = outputFolder / "runtime" / "generated";
    createDirectories(folder);

    OutputFile header(folder / "GeneratedStages.hpp");
    header << schemaHeader("GeneratedStages.hpp");
    header.close();

    OutputFile out(folder / "GeneratedStages.cpp");
    out << "#include \"GeneratedStages.hpp\"\nnamespace generated {\n";
    for (std::size_t i = 0; i < stages.size(); ++i) StageWriter(out, stages[i], i).writeArrays();
    out << "const Stage kStages[] = {\n";
    if (stages.empty()) out << "  {},\n";
    for (std::size_t i = 0; i < stages.size(); ++i) StageWriter(out, stages[i], i).writeRow();
    out << "};\nconst std::size_t kStageCount=" << stages.size() << ";\n}\n";
    out.close();

    writeStageData(stages, outputFolder);
}

}  // namespace tindrel
