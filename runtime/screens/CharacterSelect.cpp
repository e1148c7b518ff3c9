#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "AnimationLookup.hpp"
#include "MenuInput.hpp"
#include "MenuScreens.hpp"
#include "MenuText.hpp"
#include "Players.hpp"
#include "Settings.hpp"
#include "StageLoading.hpp"

namespace port {
namespace {

// What a model shows of itself: its choosing, else as it stands, else as it walks.
const generated::Animation* previewAnimation(const generated::Character& model) {
    for (const char* name : {"select", "idle", "walk"}) {
        const generated::Animation* animation = findAnimation(&model, name);
        if (animation && animation->frameCount > 0) return animation;
    }
    return nullptr;
}

const generated::Frame& previewFrame(const generated::Animation& animation, std::uint64_t tick) {
    const auto ticksOf = [](const generated::Frame& frame) {
        return static_cast<std::uint64_t>(std::max(1, frame.delay));
    };
    std::uint64_t cycle = 0;
    for (std::size_t i = 0; i < animation.frameCount; ++i) cycle += ticksOf(animation.frames[i]);
    std::uint64_t left = tick % cycle;
    std::size_t frame = 0;
    for (; left >= ticksOf(animation.frames[frame]); ++frame) {
        left -= ticksOf(animation.frames[frame]);
    }
    return animation.frames[frame];
}

class CharacterSelect final : public Screen {
  public:
    explicit CharacterSelect(Game& game) : game_(game), models_(selectableModels()) {}

    FrontendState update(const TickInput& input) override {
        const MenuInput menu = menuInput(input, game_.config);
        turn(0, menu.rightward());
        for (int slot = 0; slot < places(); ++slot) readPad(input, slot);
        if (menu.back) return FrontendState::MainMenu;
        if (menu.accept || input.buttonPressed(game_.config.player1Gamepad, kPadStart)) begin();
        return game_.frontend.state;
    }

    void draw(DrawList& list) const override {
        if (!game_.frontend.selectBackground) addText(list, 20, 46, 14, "SELECT CHARACTERS", true);
        int joined = 0;
        for (int slot = 0; slot < places(); ++slot) {
            addText(list, 22, 60 + 18 * slot, 8, rowOf(slot), slot == 0);
            joined += place(slot).joined ? 1 : 0;
        }
        int drawn = 0;
        for (int slot = 0; slot < places(); ++slot) {
            if (place(slot).joined && modelOf(slot))
                addPreview(list, *modelOf(slot), drawn++, joined);
        }
        const int height = game_.config.logicalHeight;
        addText(list, 14, std::max(150, height - 30), 7, "P1 arrows choose | pads D-PAD choose");
        addText(list, 14, std::max(166, height - 14), 7, "ENTER / P1 START begin   B leaves");
    }

  private:
    [[nodiscard]] int places() const { return std::min(kMostPlayers, game_.config.maxPlayers); }
    [[nodiscard]] PlayerSlot& place(int slot) const {
        return game_.world.slots[static_cast<std::size_t>(slot)];
    }
    // Null without models.
    [[nodiscard]] const generated::Character* modelOf(int slot) const {
        if (models_.empty()) return nullptr;
        const int last = static_cast<int>(models_.size()) - 1;
        return models_[static_cast<std::size_t>(std::clamp(place(slot).selectIndex, 0, last))];
    }
    [[nodiscard]] std::string rowOf(int slot) const {
        std::string row = "P" + std::to_string(slot + 1) + "  ";
        if (!place(slot).joined || !modelOf(slot)) return row + "PRESS A/START TO JOIN";
        return row + "< " + modelOf(slot)->name + " >";
    }

    void turn(int slot, int step) {
        place(slot).selectIndex =
            wrapped(place(slot).selectIndex, step, static_cast<int>(models_.size()));
    }

    // Player 1's pad has chosen with the other keys of the menu already.
    void readPad(const TickInput& input, int slot) {
        const int pad = gamepadOfSlot(game_.config, slot);
        const auto pressed = [&](unsigned buttons) { return input.buttonPressed(pad, buttons); };
        if (pressed(kPadA | kPadStart)) place(slot).joined = true;
        if (slot == 0) return;
        if (pressed(kPadB)) place(slot).joined = false;
        if (place(slot).joined) turn(slot, int{pressed(kPadRight)} - int{pressed(kPadLeft)});
    }

    void begin() {
        if (models_.empty()) return;
        World& world = game_.world;
        world.player1.model = modelOf(0);
        int joined = 0;
        for (const PlayerSlot& slot : world.slots) joined += slot.joined ? 1 : 0;
        game_.config.activePlayers = std::max(1, joined);
        saveSettings(game_);
        beginGame(game_);
    }

    void addPreview(DrawList& list, const generated::Character& model, int place, int count) const {
        constexpr int kLeastRow = 80, kAboveBottom = 44;
        const generated::Animation* animation = previewAnimation(model);
        if (!animation) return;
        const generated::Frame& frame = previewFrame(*animation, game_.frontend.tick);
        SpritePtr image =
            game_.sprites.load(game_.renderer, game_.dataRoot, frame.sprite, nullptr, 0);
        if (!image) return;
        const RuntimeConfig& config = game_.config;
        const int x = config.logicalWidth * (place + 1) / (std::max(1, count) + 1);
        const int y = std::max(kLeastRow, config.logicalHeight - kAboveBottom);
        const auto offset = [](int at, int back) {
            return static_cast<int>(
                std::clamp<std::int64_t>(std::int64_t{at} - back, INT32_MIN / 2, INT32_MAX / 2));
        };
        list.addBackdrop(
            DrawImage{std::move(image), offset(x, frame.offsetX), offset(y, frame.offsetY)});
    }

    Game& game_;
    const std::vector<const generated::Character*> models_;
};

}  // namespace

std::unique_ptr<Screen> characterSelect(Game& game) {
    return std::make_unique<CharacterSelect>(game);
}

}  // namespace port
