#include "generator/StageTables.hpp"

#include <algorithm>
#include <array>
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

void appendShape(std::string& out, const std::array<float, 9>& shape) {
    out += '{';
    appendList(out, shape, [&](float value) { appendShapeFloat(out, value); });
    out += '}';
}

// appendRow(out, record, prefix) for each record: the names of its arrays begin with `prefix`.
#define RECORD(Row, Record)                                         \
    void appendRow(std::string& out, const Record& record,          \
                   [[maybe_unused]] std::string_view prefix = {}) { \
        StageRow row(out, ",");
#define FIELD(type, name, value) row.fields(record.name);
#define SHAPE(name) row.nested([&] { appendShape(out, record.name); });
#define LIST(element, name, count, array) row.listed(prefix, #array, record.name.size());
#define END_RECORD \
    row.close();   \
    }
#include "reader/Stages.def"

// The arrays of one stage, named by its index.
class StageWriter {
  public:
    StageWriter(OutputFile& out, const StageDef& stage, std::size_t index)
        : out_(out), stage_(stage), prefix_("s" + std::to_string(index) + "_") {}

    void writeArrays() {
        writePanels();
        writeArray("Layer", "layers", stage_.layers,
                   R"({"","",0.5f,0.5f,0,0,0,0,0,0,0,0,0,0,0,0,0.0f,0.0f},)");
        writeArray("Spawn", "spawns", stage_.spawns,
                   R"({-1,"","","","","",0,0,0,0,0,-1,0,0,false,false,false},)");
        writeArray("Geometry", "geometry", stage_.geometry, R"({"",0,0,0,0,0,0},)");
        writeArray("StageEvent", "events", stage_.events, R"({-1,"",0,0,0,false,""},)");
        writeArray("StageInstruction", "instructions", inSequence(stage_), "{-1,-1,-1},");
        writeScene("scene", stage_.sceneAnimations);
        writeScene("post_scene", stage_.postSceneAnimations);
    }

    void writeRow() {
        text_ = "  ";
        appendRow(text_, stage_, prefix_);
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
        writeArray("CutsceneAnimation", name, animations, R"({"",0,0,0,0,180,0,"",false,false},)");
    }

    template <class List>
    void writeArray(std::string_view type, std::string_view name, const List& list,
                    std::string_view placeholder) {
        out_ << "static const " << type << ' ' << prefix_ << name << "[] = {\n";
        if (list.empty()) out_ << "  " << placeholder << '\n';
        for (const auto& element : list) {
            text_ = "  ";
            appendRow(text_, element);
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
