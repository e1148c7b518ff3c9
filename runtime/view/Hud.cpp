#include "Hud.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ModelFacts.hpp"

namespace port {
namespace {

constexpr int kInFrontOfAll = 50 + 10000;  // of the stage's deepest row
constexpr int kMargin = 8;
constexpr int kTextSize = 7;
constexpr int kPlayerRow = 10;
constexpr int kEnemyX = 12, kFirstEnemyRow = 28, kLastEnemyRow = 120, kEnemyGap = 3;
// Larger bars and places than this are cut off anyway.
constexpr int kFarthest = 1 << 14;

constexpr ColorKey kGaugeColor = 0x28D246;      // 40, 210, 70
constexpr ColorKey kGaugeBackColor = 0x282828;  // 40, 40, 40
constexpr ColorKey kShadowColor = 0x0F0F0F;     // 15, 15, 15
constexpr ColorKey kBorderColor = 0x464646;     // 70, 70, 70
constexpr ColorKey kBackfillColor = 0x141414;   // 20, 20, 20

struct Place {
    int x = 0, y = 0;
};

Place shownAt(int x, int y, Place otherwise) {
    return {x >= 0 ? std::min(x, kFarthest) : otherwise.x,
            y >= 0 ? std::min(y, kFarthest) : otherwise.y};
}

// Whose bar is drawn, and how.
struct Bar {
    const generated::Character& model;
    int health = 0, maxHealth = 1;
    std::string label;
    Place at;
    bool selected = false;
    int palette = 0;
    bool popup = false;  // the model's own bar where it has one
};

struct Gauge {
    int width = 0, height = 0;
    bool upright = false;  // fills from the bottom
    int fill = 0;          // along its length
};

Gauge gaugeOf(const Bar& bar, const HudSize& size) {
    const generated::Character& model = bar.model;
    Gauge gauge{size.barWidth, size.barHeight};
    if (bar.popup) {
        gauge = {std::max(1, model.lifeBarWidth), std::max(1, model.lifeBarHeight),
                 model.lifeBarOrientation == 1};
    }
    gauge.width = std::min(gauge.width, kFarthest);
    gauge.height = std::min(gauge.height, kFarthest);
    const std::int64_t capacity = gauge.upright ? gauge.height : gauge.width;
    const std::int64_t health = std::max(0, bar.health);
    const bool inProportion = !bar.popup || model.lifeBarType == 1;
    // In proportion, health above its maximum reaches beyond the gauge.
    const std::int64_t fill =
        inProportion ? capacity * health / std::max(1, bar.maxHealth) : std::min(capacity, health);
    gauge.fill = static_cast<int>(std::min<std::int64_t>(kFarthest, fill));
    return gauge;
}

class Hud {
  public:
    Hud(const World& world, const RuntimeConfig& config, const HudSize& size,
        const SpriteSource& sprites, DrawList& list)
        : world_(world),
          config_(config),
          size_{std::min(size.barWidth, kFarthest), std::min(size.barHeight, kFarthest)},
          sprites_(sprites),
          list_(list) {
        const int zMax = world.stage.row ? world.stage.row->zMax : kDefaultZMax;
        z_ = std::clamp(zMax, -kFarthest, kFarthest) + kInFrontOfAll;
    }

    void addAll() {
        addPlayer(world_.player1, 0, {kMargin, kPlayerRow});
        addMeans();
        for (std::size_t i = 0; i < world_.coop.size(); ++i) {
            const int x = kMargin + static_cast<int>(i + 1) * (size_.barWidth + kMargin);
            addPlayer(world_.coop[i], world_.coop[i].playerSlot, {x, kPlayerRow});
        }
        addEnemies();
    }

  private:
    template <class Shape>
    void add(Shape shape) {
        list_.add(SceneKind::Hud, z_, 0, 0, DrawShape(std::move(shape)));
    }
    void addText(Place at, std::string text, bool selected) {
        add(DrawTextLine{at.x, at.y, kTextSize, std::move(text), selected});
    }

    void addPlayer(const PlayerActor& player, int slot, Place at) {
        if (!player.model) return;
        std::string label = player.model->name;
        if (label.empty()) label = "P" + std::to_string(slot + 1);
        addBar({*player.model, player.health, player.maxHealth, std::move(label), at, slot == 0,
                player.paletteMap});
    }

    // Shared by all, unless the stage gives everybody their own.
    void addMeans() {
        const generated::Stage* stage = world_.stage.row;
        if (!stage || (stage->lives <= 0 && stage->credits <= 0)) return;
        const auto means = [](const PlayerActor& player, const char* lives, const char* credits) {
            return lives + std::to_string(player.livesRemaining) + credits +
                   std::to_string(player.creditsRemaining);
        };
        std::string text;
        if (stage->noShare > 0) {
            text = "P1" + means(world_.player1, " L", " C");
            for (const RuntimeCoopPlayer& player : world_.coop) {
                text += "  P" + std::to_string(player.playerSlot + 1) + means(player, " L", " C");
            }
        } else {
            text = means(world_.player1, "LIVES ", "  CREDITS ");
        }
        addText({kMargin, std::max(8, config_.logicalHeight - 12)}, std::move(text), false);
    }

    void addEnemies() {
        int row = kFirstEnemyRow;
        for (const RuntimeEntity& entity : world_.entities) {
            if (!entity.visible || !entity.alive || !entity.model) continue;
            const generated::Character& model = *entity.model;
            if ((openborTypeBit(&model) & (kTypeEnemy | kTypeObstacle)) == 0) continue;
            const bool popup = model.lifeBarStatusDefined;
            if (!popup && model.noLife) continue;
            addBar({model,
                    entity.health,
                    entity.maxHealth,
                    model.name,
                    {kEnemyX, row},
                    false,
                    entity.paletteMap,
                    popup});
            const int height = popup ? std::max(1, model.lifeBarHeight) : size_.barHeight;
            row += std::min(height, kFarthest) + kEnemyGap;
            if (row > kLastEnemyRow) return;
        }
    }

    [[nodiscard]] SpritePtr iconOf(const Bar& bar) const {
        const generated::Character& model = bar.model;
        const bool dead = bar.health <= 0 && *model.iconDiePath != '\0';
        const bool coloured = model.iconUsesPalette && bar.palette > 0;
        return sprites_.cache.load(sprites_.renderer, sprites_.dataRoot,
                                   dead ? model.iconDiePath : model.iconPath,
                                   coloured ? &model : nullptr, coloured ? bar.palette : 0);
    }

    void addBar(Bar bar) {
        const generated::Character& model = bar.model;
        bar.at = shownAt(model.lifePositionX, model.lifePositionY, bar.at);
        SpritePtr icon = iconOf(bar);
        if (bar.popup) {
            addLayeredBar(bar, icon);
            return;
        }
        addLabel(bar);
        if (icon) addIcon(bar, std::move(icon));
        if (model.noLife || model.lifeBarStatus == 0) return;
        const Gauge gauge = gaugeOf(bar, size_);
        add(DrawRectangle{bar.at.x, bar.at.y, gauge.width, gauge.height, kGaugeBackColor});
        addFill(bar.at, gauge);
    }

    void addLabel(const Bar& bar) {
        const generated::Character& model = bar.model;
        addText(shownAt(model.namePositionX, model.namePositionY, {bar.at.x, bar.at.y - 8}),
                bar.label, bar.selected);
    }

    void addIcon(const Bar& bar, SpritePtr icon) {
        constexpr int kGap = 3;
        const Place beside{std::max(0, bar.at.x - icon->width - kGap), bar.at.y - icon->height / 2};
        const Place at = shownAt(bar.model.iconPositionX, bar.model.iconPositionY, beside);
        add(DrawImage{std::move(icon), at.x, at.y});
    }

    void addFill(Place at, const Gauge& gauge) {
        if (gauge.upright) {
            add(DrawRectangle{at.x, at.y + gauge.height - gauge.fill, gauge.width, gauge.fill,
                              kGaugeColor});
        } else {
            add(DrawRectangle{at.x, at.y, gauge.fill, gauge.height, kGaugeColor});
        }
    }

    // The model says what lies in front of what.
    void addLayeredBar(const Bar& bar, const SpritePtr& icon) {
        enum class Part { Label, Icon, Shadow, Border, Backfill, Graph };
        const generated::Character& model = bar.model;
        std::vector<std::pair<int, Part>> parts{{0, Part::Label}};
        if (icon) parts.emplace_back(0, Part::Icon);
        if (model.lifeBarNoBorder == 0) {
            parts.emplace_back(model.lifeBarShadowLayer, Part::Shadow);
            parts.emplace_back(model.lifeBarBorderLayer, Part::Border);
        }
        parts.emplace_back(model.lifeBarBackfillLayer, Part::Backfill);
        parts.emplace_back(model.lifeBarGraphLayer, Part::Graph);
        std::ranges::stable_sort(parts, {}, &std::pair<int, Part>::first);
        const Gauge gauge = gaugeOf(bar, size_);
        const auto [x, y] = bar.at;
        for (const auto& [layer, part] : parts) {
            switch (part) {
                case Part::Label:
                    addLabel(bar);
                    break;
                case Part::Icon:
                    addIcon(bar, icon);
                    break;
                case Part::Shadow:
                    add(DrawRectangle{x + 1, y + 1, gauge.width, gauge.height, kShadowColor});
                    break;
                case Part::Border:
                    add(DrawRectangle{x - 1, y - 1, gauge.width + 2, gauge.height + 2,
                                      kBorderColor});
                    break;
                case Part::Backfill:
                    add(DrawRectangle{x, y, gauge.width, gauge.height, kBackfillColor});
                    break;
                case Part::Graph:
                    addFill(bar.at, gauge);
                    break;
            }
        }
    }

    const World& world_;
    const RuntimeConfig& config_;
    const HudSize size_;
    const SpriteSource& sprites_;
    DrawList& list_;
    int z_ = 0;
};

}  // namespace

void addHud(const World& world, const RuntimeConfig& config, const HudSize& size,
            const SpriteSource& sprites, DrawList& list) {
    Hud(world, config, size, sprites, list).addAll();
}

}  // namespace port
