// The tables of the sample records, compiled into this program, beside the records themselves.

#include <gtest/gtest.h>

#include <algorithm>

#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "generator/SampleRecords.hpp"
#include "generator/SharedFields.hpp"

namespace tindrel::test {
namespace {

struct Compare {
    template <class T>
    void operator()(const char* name, const T& inRow, const T& inRecord) {
        EXPECT_EQ(inRow, inRecord) << name;
    }
    void operator()(const char* name, const char* inRow, const std::string& inRecord) {
        ASSERT_NE(inRow, nullptr) << name;
        EXPECT_EQ(inRow, inRecord) << name;
    }
};

template <class Row, class Record, class CompareElement>
void compareList(const char* name, const Row* rows, std::size_t count,
                 const std::vector<Record>& records, CompareElement compareElement) {
    ASSERT_EQ(count, records.size()) << name;
    for (std::size_t i = 0; i < count; ++i) {
        SCOPED_TRACE(std::string(name) + " " + std::to_string(i));
        compareElement(rows[i], records[i]);
    }
}

// For lists of records whose members all are shared.
#define COMPARE_LIST(list, count, visitElement)                           \
    compareList(#list, row.list, row.count, record.list,                  \
                [](const auto& element, const auto& elementRecord) {      \
                    Compare compareElement;                               \
                    visitElement(compareElement, element, elementRecord); \
                })

const auto compareText = [](const char* row, const std::string& record) { EXPECT_EQ(row, record); };

void compareAnimation(const generated::Animation& row, const AnimationDef& record) {
    Compare compare;
    visitAnimation(compare, row, record);
    COMPARE_LIST(frames, frameCount, visitFrame);
    COMPARE_LIST(cancels, cancelCount, visitCancel);
}

TEST(CompiledTables, EveryFieldOfACharacterArrives) {
    const std::vector<ModelDef> models = sampleModels();
    ASSERT_EQ(generated::kCharacterCount, models.size());
    for (std::size_t i = 0; i < models.size(); ++i) {
        SCOPED_TRACE("model " + std::to_string(i));
        const generated::Character& row = generated::kCharacters[i];
        const ModelDef& record = models[i];
        Compare compare;
        visitCharacter(compare, row, record);
        compareList("attackChain", row.attackChain, row.attackChainCount, record.attackChain,
                    [](int link, std::int32_t inRecord) { EXPECT_EQ(link, inRecord); });
        compareList("weapons", row.weapons, row.weaponCount, record.weapons, compareText);
        compareList("alternatePalettes", row.alternatePalettes, row.alternatePaletteCount,
                    record.alternatePalettes, compareText);
        COMPARE_LIST(commands, commandCount, visitCommand);
        COMPARE_LIST(paletteRemaps, paletteRemapCount, visitPaletteRemap);
        COMPARE_LIST(defenses, defenseCount, visitDefense);
        compareList("animations", row.animations, row.animationCount, record.animations,
                    compareAnimation);
    }
}

TEST(CompiledTables, EveryFieldOfAStageArrives) {
    const std::vector<StageDef> stages = sampleStages();
    ASSERT_EQ(generated::kStageCount, stages.size());
    for (std::size_t i = 0; i < stages.size(); ++i) {
        SCOPED_TRACE("stage " + std::to_string(i));
        const generated::Stage& row = generated::kStages[i];
        StageDef record = stages[i];
        std::stable_sort(record.instructions.begin(), record.instructions.end(),
                         [](auto& a, auto& b) { return a.sequence < b.sequence; });
        Compare compare;
        visitStage(compare, row, record);
        compareList("panels", row.panels, row.panelCount, record.panels, compareText);
        COMPARE_LIST(layers, layerCount, visitLayer);
        COMPARE_LIST(spawns, spawnCount, visitSpawn);
        COMPARE_LIST(events, eventCount, visitStageEvent);
        COMPARE_LIST(instructions, instructionCount, visitStageInstruction);
        COMPARE_LIST(sceneAnimations, sceneAnimationCount, visitCutsceneAnimation);
        COMPARE_LIST(postSceneAnimations, postSceneAnimationCount, visitCutsceneAnimation);
        COMPARE_LIST(geometry, geometryCount, visitGeometry);
        for (std::size_t j = 0; j < row.geometryCount; ++j) {
            EXPECT_TRUE(std::ranges::equal(row.geometry[j].shape, record.geometry[j].shape)) << j;
        }
    }
}

TEST(CompiledTables, EmptyListsHaveTheirPlaceholders) {
    const generated::Character& character = generated::kCharacters[kSampleRecords];
    EXPECT_EQ(character.attackChain, nullptr);
    EXPECT_EQ(character.commands, nullptr);
    EXPECT_EQ(character.alternatePalettes, nullptr);
    EXPECT_EQ(character.paletteRemaps, nullptr);
    EXPECT_EQ(character.defenses, nullptr);
    EXPECT_EQ(character.weapons[0], nullptr);
    const generated::Animation& animation = character.animations[0];
    EXPECT_EQ(animation.frameCount, 0U);
    EXPECT_EQ(animation.frames[0].delay, 1);
    EXPECT_EQ(animation.frames[0].attack.landingType, -1);
    EXPECT_EQ(animation.frames[0].dropVy, -3);
    EXPECT_EQ(animation.cancels, nullptr);

    const generated::Stage& stage = generated::kStages[kSampleRecords];
    EXPECT_EQ(stage.panels[0], nullptr);
    EXPECT_EQ(stage.layers[0].xRatio, 0.5F);
    EXPECT_EQ(stage.spawns[0].id, -1);
    EXPECT_EQ(stage.geometry[0].h, 0);
    EXPECT_EQ(stage.events[0].id, -1);
    EXPECT_EQ(stage.instructions[0].refId, -1);
    EXPECT_EQ(stage.sceneAnimations[0].durationTicks, 180);
    EXPECT_EQ(stage.postSceneAnimations[0].durationTicks, 180);
}

}  // namespace
}  // namespace tindrel::test
