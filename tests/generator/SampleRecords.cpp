#include "generator/SampleRecords.hpp"

#include <limits>
#include <string>
#include <type_traits>

#include "generator/SharedFields.hpp"

namespace tindrel::test {
namespace {

// Numbers the members of one record in the order of the visit.
class Fill {
  public:
    Fill(int record, std::string_view escapes) : record_(record), escapes_(escapes) {}

    template <class T>
    void operator()(const char* name, T&, T& value) {
        ++number_;
        if constexpr (std::is_same_v<T, bool>) {
            value = ((number_ >> record_) & 1) != 0;
        } else if constexpr (std::is_same_v<T, std::string>) {
            value = name + std::to_string(record_) + escapes_ + std::to_string(number_);
        } else if constexpr (std::is_same_v<T, float>) {
            value = static_cast<float>(1000 * record_ + number_) + 0.125F;
        } else {
            value = 1000 * record_ - number_;
        }
    }

    std::string text(const char* name) {
        std::string value;
        (*this)(name, value, value);
        return value;
    }

  private:
    int record_;
    std::string escapes_;
    int number_ = 0;
};

// A digit follows the last byte.
constexpr std::string_view kCharacterEscapes = "\t\r\n\"\\? \xC3\xA9\x1B";
constexpr std::string_view kStageEscapes = "\t\n\"\\? \xC3\xA9\x1B";

ModelDef model(int record) {
    Fill fill(record, kCharacterEscapes);
    ModelDef model;
    visitCharacter(fill, model, model);
    model.attackChain = {record, -1, 2};
    model.weapons = {fill.text("weapon"), fill.text("weapon")};
    model.alternatePalettes = {fill.text("palette"), fill.text("palette")};
    model.commands.resize(2);
    for (CommandDef& command : model.commands) visitCommand(fill, command, command);
    model.paletteRemaps.resize(2);
    for (PaletteRemapDef& remap : model.paletteRemaps) visitPaletteRemap(fill, remap, remap);
    model.defenses.resize(2);
    for (DefenseDef& defense : model.defenses) visitDefense(fill, defense, defense);
    model.animations.resize(2);
    for (AnimationDef& animation : model.animations) {
        visitAnimation(fill, animation, animation);
        animation.frames.resize(2);
        for (FrameDef& frame : animation.frames) visitFrame(fill, frame, frame);
        animation.cancels.resize(2);
        for (CancelDef& cancel : animation.cancels) visitCancel(fill, cancel, cancel);
    }
    return model;
}

StageDef stage(int record) {
    Fill fill(record, kStageEscapes);
    StageDef stage;
    visitStage(fill, stage, stage);
    stage.panels = {fill.text("panel"), fill.text("panel")};
    stage.layers.resize(2);
    for (LayerDef& layer : stage.layers) visitLayer(fill, layer, layer);
    stage.spawns.resize(2);
    for (SpawnDef& spawn : stage.spawns) visitSpawn(fill, spawn, spawn);
    stage.geometry.resize(2);
    for (GeometryDef& geometry : stage.geometry) {
        visitGeometry(fill, geometry, geometry);
        for (float& value : geometry.shape) fill("shape", value, value);
    }
    stage.events.resize(2);
    for (StageEventDef& event : stage.events) visitStageEvent(fill, event, event);
    // Closed out of turn, as a reader of nested settings closes them.
    stage.instructions = {{3, 1, 30}, {1, 0, 10}, {2, 1, 20}, {2, 0, 21}};
    stage.sceneAnimations.resize(2);
    for (auto& scene : stage.sceneAnimations) visitCutsceneAnimation(fill, scene, scene);
    stage.postSceneAnimations.resize(1);
    for (auto& scene : stage.postSceneAnimations) visitCutsceneAnimation(fill, scene, scene);
    return stage;
}

}  // namespace

std::vector<ModelDef> sampleModels() {
    std::vector<ModelDef> models;
    for (int record = 0; record < kSampleRecords; ++record) models.push_back(model(record));
    ModelDef& bare = models.emplace_back();
    bare.animations.emplace_back().name = "walkoff";
    bare.health = std::numeric_limits<std::int32_t>::min();
    bare.speed = -std::numeric_limits<float>::max();
    return models;
}

std::vector<StageDef> sampleStages() {
    std::vector<StageDef> stages;
    for (int record = 0; record < kSampleRecords; ++record) stages.push_back(stage(record));
    StageDef& bare = stages.emplace_back();
    bare.lives = std::numeric_limits<std::int32_t>::min();
    return stages;
}

}  // namespace tindrel::test
