#include "GameStart.hpp"

#include <algorithm>
#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "FileBytes.hpp"
#include "FrontendScreens.hpp"
#include "Log.hpp"
#include "Players.hpp"
#include "StageLoading.hpp"
#include "StageRules.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

void readLifeBarSize(Game& game) {
    const auto file = runtimeCasePath(game.dataRoot / "lifebar.txt");
    std::istringstream in(readSmallText(file).value_or(""));
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        rest = rest.substr(0, rest.find('#'));
        const std::string command = foldAscii(takeWord(rest));
        if (command != "lbarsize" && command != "lifebarsize") continue;
        const auto width = leadingInt(takeWord(rest));
        const auto height = leadingInt(takeWord(rest));
        if (!width || !height) continue;
        game.hud = {std::max(8, *width), std::max(2, *height)};
    }
}

void readLogicalSize(Game& game) {
    const auto file = game.root / "config" / "openbor-video.ini";
    std::istringstream in(readSmallText(file).value_or(""));
    eachKeyValue(in, [&game](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (key == "logical_width") game.config.logicalWidth = std::max(160, *value);
        if (key == "logical_height") game.config.logicalHeight = std::max(120, *value);
    });
}

void logServices(const Game& game) {
    const RuntimeConfig& config = game.config;
    logLine("Renderer: ", game.renderer.backend());
    logLine("Characters: ", generated::kCharacterCount, " Stages: ", generated::kStageCount);
    logLine("Graphics: preset=", config.graphicsPreset, " upscale=", config.upscaleMode,
            " filter=", config.textureFilter, " vsync=", config.vsync, " fps=", config.fpsLimit);
    logLine("Audio volumes master=", game.audio.masterVolume(), " music=", game.audio.musicVolume(),
            " effects=", game.audio.effectsVolume());
}

void choosePlayerModel(Game& game) {
    const std::span characters(generated::kCharacters, generated::kCharacterCount);
    if (characters.empty()) return;
    Player1& player = game.world.player1;
    const auto playable = std::ranges::find_if(characters, [](const generated::Character& model) {
        return equalsFolded(model.type, "player");
    });
    player.model = playable == characters.end() ? &characters.front() : &*playable;
    player.health = player.maxHealth = std::max(1, player.model->health);
    startIdle(player);
    logLine("Combat ready: player=", player.model->name, " hp=", player.health,
            " enemyAI=", game.config.enemyAI ? "on" : "off",
            " cameraLock=", game.config.cameraLockOnCombat ? "on" : "off");
}

}  // namespace

void readSettings(Game& game, const std::filesystem::path& portRoot) {
    game.root = portRoot;
    game.dataRoot = portRoot / "assets" / "openbor-data";
    game.config = loadRuntimeConfig(portRoot / "config" / "graphics.ini");
    readLifeBarSize(game);
    readLogicalSize(game);
}

bool startServices(Game& game) {
    game.scripts.open(game.root, game.dataRoot, &game.host, game.config.asWritten);
    game.effects.open(game.dataRoot);
    if (!game.renderer.initialize(game.config)) return false;
    if (!game.audio.initialize(game.config)) {
        warnLine("Audio warning: ", game.audio.lastError());
    }
    logServices(game);
    if (generated::kStageCount > 0) game.world.stage = freshStageRun(0);
    game.world.player1 = freshPlayer<Player1>(0, kPlayer1Handle);
    loadFrontend(game);
    choosePlayerModel(game);
    return true;
}

void enterFirstState(Game& game) {
    if (!game.renderer.headless()) {
        game.ownProgress = true;
        game.world.slots[0].joined = true;
        enterMainMenu(game);
        return;
    }
    // Nobody is there to choose in a menu.
    game.drive = PlayerDrive::Nobody;
    game.skipsMenus = true;
    game.frontend.state = FrontendState::Playing;
    for (int slot = 0; slot < kMostPlayers; ++slot) {
        game.world.slots[static_cast<std::size_t>(slot)].joined = slot < game.config.activePlayers;
    }
    beginGame(game);
}

}  // namespace port
