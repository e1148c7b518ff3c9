#include "analysis/HtmlGallery.hpp"

#include <algorithm>
#include <iterator>
#include <map>

#include "PathEncoding.hpp"
#include "analysis/SpritePreview.hpp"
#include "reader/TextLines.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kMaxPictures = 600;
// Sprites beyond these are linked as they are, so that the page stays light.
constexpr std::uintmax_t kMaxEmbeddedSprite = 32U << 10U;
constexpr std::uint64_t kMaxEmbedded = 4U << 20U;

// Pixels that a cropped sprite may fill, as the style sheet has it.
constexpr int kShotPixels = 160;

// What browsers draw.
constexpr std::string_view kWebPictures[] = {".gif", ".png", ".bmp", ".jpg", ".jpeg", ".webp"};

// People first; what merely flies about or lies around is folded away.
constexpr std::string_view kOpenTypes[] = {"player", "enemy", "npc"};

bool isWebPicture(const fs::path& file) {
    const std::string extension = toLower(PathEncoding::utf8(file.extension()));
    return std::find(std::begin(kWebPictures), std::end(kWebPictures), extension) !=
           std::end(kWebPictures);
}

// The sprite's part that shows the figure, enlarged by a whole factor where it is small.
std::string cropStyle(const SpriteCrop& crop) {
    const int percent =
        crop.side <= kShotPixels ? kShotPixels / crop.side * 100 : kShotPixels * 100 / crop.side;
    const std::string side = std::to_string(crop.side);
    return "width:" + side + "px;height:" + side + "px;object-position:" + std::to_string(-crop.x) +
           "px " + std::to_string(-crop.y) + "px;transform:scale(" + std::to_string(percent) + "%)";
}

}  // namespace

HtmlGallery::Sprite HtmlGallery::spriteOf(const ModelDef& model) {
    const AnimationDef* chosen = nullptr;
    for (const AnimationDef& animation : model.animations) {
        if (animation.frames.empty()) continue;
        if (chosen == nullptr) chosen = &animation;
        if (equalsFolded(animation.name, "idle")) {
            chosen = &animation;
            break;
        }
    }
    if (chosen == nullptr) return {};
    for (const FrameDef& frame : chosen->frames) {
        if (frame.sprite.empty() || equalsFolded(frame.sprite, "none")) continue;
        if (const NativePath* const file = assets_.picture(frame.sprite)) return {file, &frame};
    }
    return {};
}

const NativePath* HtmlGallery::pictureOf(const StageDef& stage) {
    if (!stage.background.empty()) {
        if (const NativePath* const file = assets_.picture(stage.background)) return file;
    }
    for (const std::string& panel : stage.panels) {
        if (const NativePath* const file = assets_.picture(panel)) return file;
    }
    return nullptr;
}

// A sprite whose background would show is carried within the page, without it.
std::string HtmlGallery::spriteUrl(const fs::path& file) {
    const std::string bytes =
        readFileBytes(file, std::min(kMaxEmbeddedSprite, kMaxEmbedded - embeddedBytes_));
    if (const auto picture = withTransparentBackground(bytes)) {
        embeddedBytes_ += bytes.size();
        return dataUrl(*picture);
    }
    return links_.to(file);
}

void HtmlGallery::writePicture(const NativePath* file, const std::string& url, std::string_view alt,
                               const FrameDef* frame) {
    out_ << "<div class=\"shot\">";
    if (file != nullptr && !url.empty() && isWebPicture(*file)) {
        out_ << "<img loading=\"lazy\" decoding=\"async\" alt=\"" << escapeHtml(alt) << '"';
        const auto crop = frame != nullptr ? cropOf(*frame) : std::nullopt;
        if (crop) out_ << " class=\"cut\" style=\"" << cropStyle(*crop) << '"';
        out_ << " src=\"" << url << "\">";
    } else {
        out_ << (file == nullptr ? "no picture found" : "no preview");
    }
    out_ << "</div>";
}

void HtmlGallery::writeCaption(std::string_view name, const std::string& facts,
                               const std::string& sourceFile) {
    const std::string url = links_.toSource(sourceFile);
    out_ << "<figcaption><b>";
    if (!url.empty()) out_ << "<a href=\"" << url << "\">";
    out_ << escapeHtml(name);
    if (!url.empty()) out_ << "</a>";
    out_ << "</b>" << facts;
    const auto open = openLines_.find(sourceFile);
    if (open != openLines_.end()) {
        out_ << "<br><span class=\"left\">" << counted(open->second, "line", "lines")
             << " to look at</span>";
    }
    out_ << "</figcaption></figure>\n";
}

void HtmlGallery::writeCharacters() {
    const std::vector<ModelDef>& models = game_.models();
    if (models.empty()) return;
    page_.openSection("characters", "Characters",
                      "Every model with its idle picture, or the first that it has.");
    std::map<std::string, std::vector<const ModelDef*>> byType;
    for (const ModelDef& model : models) byType[toLower(model.type)].push_back(&model);
    std::size_t left = kMaxPictures;
    for (const std::string_view type : kOpenTypes) {
        const auto group = byType.find(std::string(type));
        if (group == byType.end()) continue;
        writeCharacterGroup(group->first, group->second, true, left);
        byType.erase(group);
    }
    for (const auto& [type, group] : byType) writeCharacterGroup(type, group, false, left);
    page_.writeRest(models.size(), kMaxPictures, "models");
    out_ << "</section>\n";
}

void HtmlGallery::writeCharacterGroup(const std::string& type,
                                      const std::vector<const ModelDef*>& models, bool open,
                                      std::size_t& left) {
    if (left == 0) return;
    page_.openFold(type, models.size(), open);
    out_ << "<div class=\"gallery\">\n";
    for (const ModelDef* const model : models) {
        if (left == 0) break;
        --left;
        const Sprite sprite = spriteOf(*model);
        out_ << "<figure>";
        writePicture(sprite.file, sprite.file == nullptr ? std::string() : spriteUrl(*sprite.file),
                     model->modelName, sprite.frame);
        writeCaption(model->modelName, counted(model->animations.size(), "animation", "animations"),
                     model->sourceFile);
    }
    out_ << "</div></details>\n";
}

void HtmlGallery::writeStages() {
    const std::vector<StageDef>& stages = game_.stages();
    if (stages.empty()) return;
    page_.openSection("stages", "Stages",
                      "In the order of play, with their background or first panel.");
    std::size_t left = kMaxPictures;
    for (auto first = stages.begin(); first != stages.end() && left > 0;) {
        const auto last = std::find_if(first, stages.end(), [&](const StageDef& stage) {
            return stage.setOrder != first->setOrder;
        });
        page_.openFold(first->setName, static_cast<std::size_t>(last - first),
                       first == stages.begin());
        out_ << "<div class=\"gallery wide\">\n";
        for (; first != last && left > 0; ++first, --left) writeStage(*first);
        first = last;
        out_ << "</div></details>\n";
    }
    page_.writeRest(stages.size(), kMaxPictures, "stages");
    out_ << "</section>\n";
}

void HtmlGallery::writeStage(const StageDef& stage) {
    const std::string name = PathEncoding::utf8(PathEncoding::path(stage.sourceFile).stem());
    const NativePath* const picture = pictureOf(stage);
    out_ << "<figure>";
    writePicture(picture, picture == nullptr ? std::string() : links_.to(*picture), name, nullptr);
    writeCaption(name,
                 counted(stage.spawns.size(), "spawn", "spawns") + ", " +
                     counted(stage.panels.size(), "panel", "panels"),
                 stage.sourceFile);
}

}  // namespace tindrel
