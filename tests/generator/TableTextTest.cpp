#include "generator/TableText.hpp"

#include <gtest/gtest.h>

#include "TempFolder.hpp"
#include "generator/CharacterTables.hpp"
#include "generator/StageTables.hpp"

namespace tindrel::test {
namespace {

std::string printed(void (*append)(std::string&, float), float value) {
    std::string out;
    append(out, value);
    return out;
}

TEST(TableText, FloatsHaveTheFormOfTheirTable) {
    struct Case {
        float value;
        const char *fixed, *shortest, *shape, *json;
    };
    const Case cases[] = {
        {0.0F, "0.0f", "0.0f", "0.00000000f", "0"},
        {-0.0F, "-0.0f", "-0.0f", "-0.00000000f", "-0"},
        {2.0F, "2.0f", "2.0f", "2.00000000f", "2"},
        {12.5F, "12.5f", "12.5f", "12.5000000f", "12.5"},
        {100.0F, "100.0f", "100.0f", "100.000000f", "100"},
        {0.1234F, "0.123f", "0.1234f", "0.123400003f", "0.1234"},
        {-0.0625F, "-0.062f", "-0.0625f", "-0.0625000000f", "-0.0625"},
        {0.00005F, "0.0f", "4.9999999e-05f", "4.99999987e-05f", "5e-05"},
        {-999999.0F, "-999999.0f", "-999999.0f", "-999999.000f", "-999999"},
        {1e6F, "1000000.0f", "1000000.0f", "1000000.00f", "1e+06"},
        {1234567.0F, "1234567.0f", "1234567.0f", "1234567.00f", "1.23457e+06"},
        {123456792.0F, "123456792.0f", "1.2345679e+08f", "123456792.f", "1.23457e+08"},
        {1e8F, "100000000.0f", "1e+08f", "100000000.f", "1e+08"},
        {1e9F, "1000000000.0f", "1e+09f", "1.00000000e+09f", "1e+09"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(printed(appendFixedFloat, c.value), c.fixed) << c.value;
        EXPECT_EQ(printed(appendShortFloat, c.value), c.shortest) << c.value;
        EXPECT_EQ(printed(appendShapeFloat, c.value), c.shape) << c.value;
        EXPECT_EQ(printed(appendJsonFloat, c.value), c.json) << c.value;
    }
}

TEST(TableText, ControlBytesAreWrittenAsNumbers) {
    const auto spelled = [](const Escapes& escapes) {
        std::string out;
        appendEscaped(out,
                      std::string_view("\0\1\t\n\r\x1F"
                                       "7\x7F\"",
                                       9),
                      escapes);
        return out;
    };
    EXPECT_EQ(spelled(CharacterSpelling::kEscapes), "\\000\\001\\t\\n\\r\\0377\x7F\\\"");
    EXPECT_EQ(spelled(StageSpelling::kEscapes), "\\000\\001\t\\n\r\\0377\x7F\\\"");
    EXPECT_EQ(spelled(JsonSpelling::kEscapes), "\\u0000\\u0001\\t\\n\\r\\u001f7\x7F\\\"");
}

// The lines of `text` that begin with `start`, with their line ends.
std::string linesWith(const std::string& text, std::string_view start) {
    std::string found;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at) + 1;
        if (text.compare(at, start.size(), start) == 0) found += text.substr(at, end - at);
        at = end;
    }
    return found;
}

// The beginning of a row, as long as what is expected of it.
#define EXPECT_PREFIX(text, expected) \
    EXPECT_EQ((text).substr(0, std::string_view(expected).size()), expected)

class TableFiles : public testing::Test {
  protected:
    TableFiles() { std::filesystem::create_directories(folder_.path() / "reports"); }

    std::string characters(const std::vector<ModelDef>& models) {
        writeGeneratedCharacters(models, folder_.path());
        return folder_.read("runtime/generated/GeneratedCharacters.cpp");
    }
    std::string stages(const std::vector<StageDef>& stages) {
        writeGeneratedStages(stages, folder_.path());
        return folder_.read("runtime/generated/GeneratedStages.cpp");
    }

    TempFolder folder_;
};

TEST_F(TableFiles, TablesOfAnEmptyGame) {
    EXPECT_EQ(characters({}),
              "#include \"GeneratedCharacters.hpp\"\nnamespace generated {\n"
              "const Character kCharacters[] = {\n  {},\n};\n"
              "const std::size_t kCharacterCount = 0;\n}\n");
    EXPECT_EQ(folder_.read("reports/gameplay-data.json"), "{\n  \"characters\": [\n  ]\n}\n");
    EXPECT_EQ(stages({}),
              "#include \"GeneratedStages.hpp\"\nnamespace generated {\n"
              "const Stage kStages[] = {\n  {},\n};\nconst std::size_t kStageCount=0;\n}\n");
    EXPECT_EQ(folder_.read("reports/stage-data.json"), "{\n  \"stages\": [\n  ]\n}\n");
}

TEST_F(TableFiles, RowsOfACharacter) {
    ModelDef model;
    model.name = "a\"b\\\t\r\n";
    model.attackChain = {1, 2};
    model.commands = {{"D,F,A", "special1"}, {"A", "attack1"}};
    model.alternatePalettes = {"a.gif", "b.gif"};
    model.paletteRemaps = {{"a.gif", "b.gif"}};
    model.defenses.resize(1);
    AnimationDef& idle = model.animations.emplace_back();
    idle.name = "idle";
    idle.frames.resize(1);
    idle.frames[0].sprite = "hero\\1.gif";
    idle.cancels = {{1, 2, 0, "A", "x"}, {3, 4, 1, "B", "y"}};
    model.animations.emplace_back().name = "walkoff";
    const std::string table = characters({model});

    EXPECT_EQ(linesWith(table, "static const "),
              "static const Frame c0_a0_frames[] = {\n"
              "static const Cancel c0_a0_cancels[] = {{1,2,0,\"A\",\"x\"},{3,4,1,\"B\",\"y\"}};\n"
              "static const Frame c0_a1_frames[] = {\n"
              "static const int c0_chain[] = {1,2};\n"
              "static const Command c0_commands[] = {{\"D,F,A\",\"special1\"},"
              "{\"A\",\"attack1\"}};\n"
              "static const char* c0_weapons[] = {nullptr};\n"
              "static const char* c0_altpals[] = {\"a.gif\",\"b.gif\"};\n"
              "static const PaletteRemap c0_remaps[] = {{\"a.gif\",\"b.gif\"}};\n"
              "static const Defense c0_defenses[] = {{\"all\",1.0f,1.0f,1.0f,0,0,0.0f,false,0,"
              "false}};\n"
              "static const Animation c0_animations[] = {\n");
    EXPECT_PREFIX(
        linesWith(table, "  {\"hero"),
        R"(  {"hero\\1.gif", 1, 0, 0, false, {0,0,0,0}, false, )"
        R"({0.0f,0.0f,0.0f,0.0f,0.0f,0.0f,0.0f,0.0f}, false, )"
        R"({0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,-1,0}, false, 0.0f, -3, 0, "", "", )"
        R"(0.0f, 0.0f, 0.0f, {false, 1.0f, 1.0f, false, false, 0.0f, 0, 0, 0, 0, 0, 0, false}, )"
        "false, 0.0f, \"\", \"\"");
    EXPECT_EQ(linesWith(table, "  {\"\",1,"),
              "  {\"\",1,0,0,false,{0,0,0,0},false,{0,0,0,0,0,0,0,0},false,"
              "{0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,-1,0},false,0.0f,-3,0,\"\",\"\",0,0,0,"
              "{false,1,1,false,false,0,0,0,0,0,false},false,0.0f,\"\",\"\"}\n");
    EXPECT_PREFIX(linesWith(table, "  {\"idle"),
                  "  {\"idle\", c0_a0_frames, 1, false, 0, -1, -1, -1, 0.0f, 0.0f,");
    EXPECT_PREFIX(linesWith(table, "  {\"walkoff"),
                  "  {\"walkoff\", c0_a1_frames, 0, false, 0, -1");
    EXPECT_NE(table.find("  {\"\", \"a\\\"b\\\\\\t\\r\\n\", \"none\", "), std::string::npos);
    EXPECT_EQ(linesWith(table, "const std"), "const std::size_t kCharacterCount = 1;\n");
}

TEST_F(TableFiles, RowsOfAStage) {
    StageDef stage;
    stage.setName = "tab\there";
    stage.panels = {"a.gif", "b.gif"};
    stage.geometry.resize(1);
    stage.geometry[0].kind = "wall";
    stage.geometry[0].shape[7] = 12.5F;
    stage.instructions = {{2, 1, 5}, {1, 0, 6}};
    const std::string table = stages({stage});

    EXPECT_EQ(table.substr(0, table.find("const Stage ")),
              R"(#include "GeneratedStages.hpp"
namespace generated {
static const char* s0_panels[] = {"a.gif","b.gif"};
static const Layer s0_layers[] = {
  {"","",0.5f,0.5f,0,0,0,0,0,0,0,0,0,0,0,0,0.0f,0.0f},
};
static const Spawn s0_spawns[] = {
  {-1,"","","","","",0,0,0,0,0,-1,0,0,false,false,false},
};
static const Geometry s0_geometry[] = {
  {"wall",0,0,0,0,0,0,false,{0.00000000f,0.00000000f,0.00000000f,0.00000000f,0.00000000f,0.00000000f,0.00000000f,12.5000000f,0.00000000f}},
};
static const StageEvent s0_events[] = {
  {-1,"",0,0,0,false,""},
};
static const StageInstruction s0_instructions[] = {
  {1,0,6},
  {2,1,5},
};
static const CutsceneAnimation s0_scene[] = {
  {"",0,0,0,0,180,0,"",false,false},
};
static const CutsceneAnimation s0_post_scene[] = {
  {"",0,0,0,0,180,0,"",false,false},
};
)");
    EXPECT_PREFIX(linesWith(table, "  {\"\",\"tab"),
                  "  {\"\",\"tab\there\",\"right\",\"\",\"\",\"\",true,false,0,0,0,0,");
    EXPECT_NE(table.find(",s0_panels,2,s0_layers,0,s0_spawns,0,s0_geometry,1,s0_events,0,"
                         "s0_instructions,2,"),
              std::string::npos);
}

TEST_F(TableFiles, RenderingReportCounts) {
    ModelDef model;
    model.onKillScript = "not counted";
    model.animations.resize(1);
    std::vector<FrameDef>& frames = model.animations[0].frames;
    frames.resize(4);
    frames[0].draw.rotate = 5;  // not enabled
    frames[0].moveA = 1;
    for (std::size_t i = 1; i < frames.size(); ++i) frames[i].draw.enabled = true;
    frames[1].draw.scaleY = 0.5F;
    frames[1].draw.remap = -1;
    frames[2].draw.alphaMode = 2;
    frames[3].draw.rotate = 90;
    ModelDef scripted;
    scripted.onFallScript = "data/scripts/fall.c";
    characters({model, scripted});
    EXPECT_PREFIX(folder_.read("reports/advanced-animation-rendering.txt"),
                  "Tindrel Builder v0.34.32 gameplay parity report\nframes=4\ndrawmethod_frames=3\n"
                  "rotated_frames=1\nscaled_frames=1\nalpha_frames=1\nremap_frames=1\n"
                  "frame_move_commands=1\nscripted_models=1\nnative_drawmethod=");
}

}  // namespace
}  // namespace tindrel::test
