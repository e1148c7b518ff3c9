#include "generator/CharacterReports.hpp"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "generator/FixedTexts.hpp"
#include "generator/TableText.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace {

using Json = JsonObject<JsonSpelling>;

// The scripts that make a model a scripted one; the others run beside combat only.
constexpr std::string ModelDef::*kCountedScripts[] = {
    &ModelDef::thinkScript,     &ModelDef::updateScript,     &ModelDef::keyScript,
    &ModelDef::onMoveXScript,   &ModelDef::onMoveZScript,    &ModelDef::onEntityCollisionScript,
    &ModelDef::animationScript, &ModelDef::takeDamageScript, &ModelDef::didHitScript,
    &ModelDef::onDrawScript,    &ModelDef::onSpawnScript,    &ModelDef::onDeathScript,
    &ModelDef::onPainScript,    &ModelDef::onFallScript,
};

struct RenderingCounts {
    std::uint64_t frames = 0, drawMethod = 0, rotated = 0, scaled = 0, alpha = 0, remap = 0;
    std::uint64_t moves = 0, scriptedModels = 0;
};

void count(RenderingCounts& counts, const FrameDef& frame) {
    ++counts.frames;
    if (frame.moveX != 0 || frame.moveZ != 0 || frame.moveA != 0) ++counts.moves;
    const DrawMethodDef& draw = frame.draw;
    if (!draw.enabled) return;
    ++counts.drawMethod;
    if (draw.rotate != 0) ++counts.rotated;
    if (draw.scaleX != 1 || draw.scaleY != 1) ++counts.scaled;
    if (draw.alphaMode != 0) ++counts.alpha;
    if (draw.remap != 0) ++counts.remap;
}

RenderingCounts count(const std::vector<ModelDef>& models) {
    RenderingCounts counts;
    for (const ModelDef& model : models) {
        for (const AnimationDef& animation : model.animations) {
            for (const FrameDef& frame : animation.frames) count(counts, frame);
        }
        if (std::any_of(std::begin(kCountedScripts), std::end(kCountedScripts),
                        [&](auto script) { return !(model.*script).empty(); })) {
            ++counts.scriptedModels;
        }
    }
    return counts;
}

void appendFrame(std::string& out, const FrameDef& frame) {
    Json row(out);
    row.add("sprite", frame.sprite)
        .add("delay", frame.delay)
        .addList("move", frame.moveX, frame.moveZ, frame.moveA)
        .name("draw");
    Json(out)
        .add("enabled", frame.draw.enabled)
        .addList("scale", frame.draw.scaleX, frame.draw.scaleY)
        .add("rotate", frame.draw.rotate)
        .add("alpha", frame.draw.alphaMode)
        .add("remap", frame.draw.remap)
        .close();
    row.close();
}

void appendModel(std::string& out, const ModelDef& model) {
    Json row(out);
    row.add("name", model.name).add("type", model.type).add("health", model.health).name("scripts");
    Json(out)
        .add("think", model.thinkScript)
        .add("update", model.updateScript)
        .add("draw", model.onDrawScript)
        .close();
    row.addEach("animations", model.animations, [&](const AnimationDef& animation) {
        Json(out)
            .add("name", animation.name)
            .addEach("frames", animation.frames,
                     [&](const FrameDef& frame) { appendFrame(out, frame); })
            .close();
    });
    row.close();
}

}  // namespace

void writeRenderingReport(const std::vector<ModelDef>& models,
                          const std::filesystem::path& outputFolder) {
    const RenderingCounts counts = count(models);
    OutputFile out(outputFolder / "reports" / "advanced-animation-rendering.txt");
    out << text::kRenderingReportTitle << "frames=" << counts.frames << '\n'
        << "drawmethod_frames=" << counts.drawMethod << '\n'
        << "rotated_frames=" << counts.rotated << '\n'
        << "scaled_frames=" << counts.scaled << '\n'
        << "alpha_frames=" << counts.alpha << '\n'
        << "remap_frames=" << counts.remap << '\n'
        << "frame_move_commands=" << counts.moves << '\n'
        << "scripted_models=" << counts.scriptedModels << '\n'
        << text::kRenderingReportNotes;
    out.close();
}

void writeGameplayData(const std::vector<ModelDef>& models,
                       const std::filesystem::path& outputFolder) {
    OutputFile out(outputFolder / "reports" / "gameplay-data.json");
    out << "{\n  \"characters\": [\n";
    std::string line;
    for (const ModelDef& model : models) {
        line = "    ";
        appendModel(line, model);
        line += &model == &models.back() ? "\n" : ",\n";
        out << line;
    }
    out << "  ]\n}\n";
    out.close();
}

}  // namespace tindrel
