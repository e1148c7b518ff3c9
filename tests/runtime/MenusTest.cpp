#include <gtest/gtest.h>

#include <climits>
#include <deque>
#include <fstream>
#include <random>
#include <sstream>
#include <variant>

#include "Campaigns.hpp"
#include "EngineTrial.hpp"
#include "Hud.hpp"
#include "Progress.hpp"
#include "SavedGame.hpp"

namespace port {
namespace {

struct Menus : WindowTrial {
    std::deque<int> presses;  // a key for each pass, with a pass between them to let it go

    Menus() {
        EXPECT_TRUE(initialize());
        beforePass = [this] {
            if (!keysDown.empty()) {
                keysDown.clear();
            } else if (!presses.empty()) {
                keysDown = {presses.front()};
                presses.pop_front();
            }
        };
    }
    // Presses the keys one after the other.
    FrontendState press(std::deque<int> keys) {
        presses = std::move(keys);
        passesUntilClosed = 2 * static_cast<int>(presses.size()) + 1;
        EXPECT_TRUE(game.renderer.initialize(game.config)) << "a window that closed opens again";
        run();
        return game.frontend.state;
    }
    // The texts that are shown, the chosen ones marked.
    [[nodiscard]] std::vector<std::string> shownTexts() const {
        std::vector<std::string> texts;
        for (const DrawShape& shape : game.drawing.backdrop()) {
            const auto* line = std::get_if<DrawTextLine>(&shape);
            if (line) texts.push_back((line->selected ? "*" : "") + line->text);
        }
        return texts;
    }
    [[nodiscard]] bool shows(const std::string& text) const {
        const auto texts = shownTexts();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }
    [[nodiscard]] std::string settings() const {
        std::ifstream in(folder.path() / "config" / "graphics.ini");
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

constexpr int kUp = kKeyUp, kDown = kKeyDown, kLeft = kKeyLeft, kRight = kKeyRight;

TEST_F(Menus, EveryScreenShowsItsRowsInTheirPlaces) {
    begin(0);
    Frontend& frontend = game.frontend;
    frontend.campaigns.assign(12, {0, "Set", 0});
    frontend.campaigns[11].requirement = 3;
    frontend.campaignIndex = 11;
    frontend.controlsIndex = 21;
    frontend.titleBackground = nullptr;
    frontend.graphicsOptionIndex = 14;
    frontend.legacyKeyLabels["attack1"] = "Punch";
    world.slots[2].joined = true;
    struct Screenful {
        FrontendState state;
        std::set<std::string> some;  // of its lines
        std::size_t lines;           // in all, with the two of the program's name
    };
    const Screenful screens[] = {
        {FrontendState::MainMenu,
         {"10,6 15* TINDREL PORT", "11,25 8 Tindrel Builder", "28,62 13* NEW GAME",
          "28,178 13 QUIT", "18,216 8 ENTER/J select  UP/DOWN navigate"},
         8},
        {FrontendState::LevelSetSelect,
         {"20,42 14* SELECT GAME", "28,68 10 Set", "28,208 10* Set  [LOCKED 3]",
          "20,204 7 Finish the game 3 time(s) to unlock", "20,220 7 ENTER select   ESC back"},
         13},
        {FrontendState::CharacterSelect,
         {"20,46 14* SELECT CHARACTERS", "22,60 8* P1  < Hero >", "22,96 8 P3  < Hero >",
          "22,114 8 P4  PRESS A/START TO JOIN", "14,210 7 P1 arrows choose | pads D-PAD choose",
          "14,226 7 ENTER / P1 START begin   B leaves"},
         9},
        {FrontendState::Paused, {"24,49 15* PAUSED", "30,78 11* CONTINUE", "30,178 11 QUIT"}, 6},
        {FrontendState::GameOver,
         {"78,92 24* GAME OVER", "35,138 9 ENTER CONTINUE   ESC MAIN MENU"},
         4},
        {FrontendState::Controls,
         {"18,43 13* CONTROLS / REMAP", "18,62 8 PAD JUMP: 8192", "18,137 8 P1 GAMEPAD: 1",
          "18,197 8* BACK", "14,218 7 ENTER remap | LEFT/RIGHT pad slot"},
         14},
        {FrontendState::Options,
         {"18,44 14* OPTIONS", "22,59 8* FULLSCREEN: OFF", "22,129 8 MASTER: 100%", "22,199 8 BACK",
          "20,222 7 LEFT/RIGHT change"},
         15},
        {FrontendState::GraphicsOptions,
         {"12,42 13* OPTIONS > GRAPHICS", "14,65 8 TEXTURE: nearest", "14,145 8 CONTRAST: 100%",
          "14,193 8* SHARPEN: 0%", "14,220 7 ESC back  LEFT/RIGHT change"},
         13},
    };
    for (const auto& [state, some, lines] : screens) {
        frontend.state = state;
        EXPECT_EQ(press({}), state);
        std::set<std::string> shown;
        bool panel = false;
        for (const DrawShape& shape : game.drawing.backdrop()) {
            const auto* box = std::get_if<DrawRectangle>(&shape);
            panel = panel || (box && *box == DrawRectangle{8, 22, 304, 210, 0x121218});
            if (const auto* line = std::get_if<DrawTextLine>(&shape)) {
                shown.insert(std::to_string(line->x) + "," + std::to_string(line->y) + " " +
                             std::to_string(line->size) + (line->selected ? "* " : " ") +
                             line->text);
            }
        }
        for (const std::string& line : some) EXPECT_TRUE(shown.contains(line)) << line;
        EXPECT_EQ(shown.size(), lines) << static_cast<int>(state);
        EXPECT_EQ(panel, state == FrontendState::Paused);
    }
    frontend.state = FrontendState::Controls;
    frontend.controlsIndex = 8;
    press({});
    EXPECT_TRUE(shows("Punch KEY: 74") && shows("PAD Punch: 4096"));
}

TEST_F(Menus, RowsGoRoundAndOptionsAreKeptAtOnce) {
    EXPECT_EQ(press({kUp}), FrontendState::MainMenu);
    EXPECT_TRUE(shows("*QUIT"));
    EXPECT_EQ(press({kDown, kDown, kDown, kKeyEnter}), FrontendState::Options);
    EXPECT_TRUE(shows("*FULLSCREEN: OFF"));
    press({kDown, kRight, kDown, kRight, kDown, kKeyEnter});
    EXPECT_TRUE(shows("RESOLUTION: 1920x1080"));
    EXPECT_TRUE(shows("FPS: 120"));
    EXPECT_TRUE(shows("*V-SYNC: OFF"));
    EXPECT_NE(settings().find("width=1920"), std::string::npos);
    press({kDown, kKeyEnter});
    EXPECT_EQ(press({kRight}), FrontendState::GraphicsOptions);
    EXPECT_TRUE(shows("*PRESET: improved"));
    press({kDown, kDown, kDown, kDown, kKeyEnter});
    EXPECT_TRUE(shows("*FILL 16:9: ON"));
    EXPECT_TRUE(shows("KEEP 4:3: OFF"));
    EXPECT_TRUE(shows("PIXEL PERFECT: OFF"));
    EXPECT_TRUE(shows("PRESET: custom"));
    EXPECT_EQ(press({kKeyEscape, kKeyEscape}), FrontendState::MainMenu);
}

TEST_F(Menus, AKeyIsCapturedOnlyAfterEightPasses) {
    press({kDown, kDown, kDown, kKeyEnter});
    ASSERT_EQ(game.frontend.state, FrontendState::Controls);
    press({kKeyEnter, 'Q', 'Q', 'Q', 'Q'});  // the last of these comes in the ninth pass
    EXPECT_TRUE(shows("*LEFT KEY: 37"));
    EXPECT_TRUE(shows("*PRESS A NEW KEY..."));
    press({'R'});
    EXPECT_EQ(game.config.keyLeft, 'R');
    EXPECT_TRUE(shows("ENTER remap | LEFT/RIGHT pad slot"));
    EXPECT_NE(settings().find("key_left=82"), std::string::npos);
}

TEST_F(Menus, AGameBeginsIsPausedLeftAndContinued) {
    game.frontend.campaigns = {{0, "First", 0}, {0, "Second", 2}};
    EXPECT_EQ(press({kKeyEnter}), FrontendState::LevelSetSelect);
    EXPECT_EQ(press({kDown, kKeyEnter}), FrontendState::LevelSetSelect);
    EXPECT_TRUE(shows("*Second  [LOCKED 2]"));
    EXPECT_TRUE(shows("Finish the game 2 time(s) to unlock"));
    EXPECT_EQ(press({kUp, kKeyEnter}), FrontendState::CharacterSelect);
    EXPECT_FALSE(loadProgress(game)) << "nothing is saved yet";
    EXPECT_EQ(press({kRight, kKeyEnter}), FrontendState::Playing);
    const std::string chosen = world.player1.model->name;
    const int lives = world.player1.livesRemaining = 7;
    generated::Stage row = *world.stage.row;
    row.canSave = 0;
    world.stage.row = &row;
    saveProgress(game);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "saves")) << "the stage does not want it";
    row.canSave = 1;
    saveProgress(game);
    world.stage.row = &generated::kStages[0];

    const std::uint64_t tick = world.tick;
    EXPECT_EQ(press({kKeyEscape, kDown, kKeyEnter}), FrontendState::Options);
    EXPECT_EQ(press({kKeyEscape}), FrontendState::Paused);
    EXPECT_EQ(world.tick, tick);
    EXPECT_EQ(press({kDown, kDown, kKeyEnter}), FrontendState::MainMenu);

    world.player1.model = nullptr;
    EXPECT_EQ(press({kDown, kKeyEnter}), FrontendState::Playing);
    EXPECT_EQ(world.player1.model->name, chosen);
    EXPECT_EQ(world.player1.livesRemaining, lives);
    std::filesystem::remove(folder.path() / "saves" / "slot1.sav");
    EXPECT_FALSE(loadProgress(game));
}

TEST_F(Menus, UnlocksCountFinishedGames) {
    loadUnlockProgress(game);
    EXPECT_EQ(game.frontend.completionCount, 0);
    finishProgress(game);
    folder.write("saves/slot1.sav", "stage=0\n");
    finishProgress(game);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "saves" / "slot1.sav"));
    game.frontend.completionCount = 0;
    loadUnlockProgress(game);
    EXPECT_EQ(game.frontend.completionCount, 2);
    game.frontend.completionCount = INT_MAX;
    finishProgress(game);
    EXPECT_EQ(game.frontend.completionCount, INT_MAX);
}

SavedPlayer savedAs(const char* model, int alive, int health, std::int64_t score) {
    return {.model = model,
            .alive = alive,
            .health = health,
            .mp = 0,
            .palette = 0,
            .lives = 0,
            .credits = 0,
            .weaponUses = 0,
            .weaponDrops = 0,
            .score = score,
            .weapon = {},
            .weaponItem = {}};
}

TEST(SavedGames, AreWrittenInTheirOrderAndReadAsFarAsTheyParse) {
    SavedGame save;
    save.stage = 3;
    save.activePlayers = 2;
    save.joinedMask = 5;
    save.lives = save.credits = 0;
    save.players[0] = savedAs("Ann", 1, 40, 1LL << 40);
    save.players[2] = savedAs("Bob", 0, 0, 0);
    save.players[2]->weapon = "Club";
    std::ostringstream out;
    writeSavedGame(out, save);
    EXPECT_TRUE(out.str().starts_with(
        "save_version=3\nstage=3\nchapter=0\nactive_players=2\njoined_mask=5\nlives=0\ncredits=0\n"
        "player1=Ann\nalive1=1\nhealth1=40\nmp1=0\npalette1=0\nscore1=1099511627776\nlives1=0\n"
        "credits1=0\nweapon1=\nweapon_uses1=0\nweapon_item1=\nweapon_drops1=0\nplayer3=Bob\n"))
        << out.str();
    std::istringstream whole(out.str());
    EXPECT_EQ(readSavedGame(whole), save);

    std::istringstream odd(
        "stage=x\nactive_players=99\njoined_mask=-4\nlives=-3\ncredits=9999999999\nnonsense\n"
        "health1=\nhealth1=12z\nplayer5=No\n=1\n");
    const SavedGame read = readSavedGame(odd);
    EXPECT_EQ(read.stage, 0);
    EXPECT_EQ(read.activePlayers, 4);
    EXPECT_EQ(read.joinedMask, 1);
    EXPECT_EQ(read.lives, 0);
    EXPECT_FALSE(read.credits);
    EXPECT_EQ(read.players[0]->health, 12);
}

TEST_F(Menus, ASaveThatSaysNothingOfAPlayerSaysWhatAllHave) {
    world.player1.score = 900;
    folder.write("saves/slot1.sav", "joined_mask=3\nlives=5\ncredits=2\nhealth2=1\n");
    quietly([&] { EXPECT_TRUE(loadProgress(game)); });
    ASSERT_EQ(world.coop.size(), 1U);
    for (const PlayerActor* player :
         {static_cast<PlayerActor*>(&world.player1), static_cast<PlayerActor*>(&world.coop[0])}) {
        EXPECT_EQ(player->livesRemaining, 5);
        EXPECT_EQ(player->creditsRemaining, 2);
    }
    EXPECT_EQ(world.player1.score, 0);
    EXPECT_EQ(world.player1.health, world.player1.maxHealth);
    EXPECT_EQ(world.coop[0].health, 1);
    std::filesystem::remove(folder.path() / "saves" / "slot1.sav");
    std::filesystem::create_directories(folder.path() / "saves" / "slot1.sav");
    EXPECT_FALSE(loadProgress(game)) << "a folder is no saved game";
}

// A save that is cut or changed at any place loads what parses.
TEST_F(Menus, NoSaveIsTooBrokenToBeLoaded) {
    press({kKeyEnter, kKeyEnter, kKeyEnter});
    std::ostringstream out;
    SavedGame save;
    save.joinedMask = 15;
    for (auto& player : save.players) player = savedAs("hero", 1, 5, 9);
    writeSavedGame(out, save);
    std::mt19937 random(1);
    for (int i = 0; i < 60; ++i) {
        std::string text = out.str().substr(0, random() % (out.str().size() + 1));
        for (int change = 0; change < 3 && !text.empty(); ++change) {
            text[random() % text.size()] = "0-=9\n\xFF"[random() % 6];
        }
        folder.write("saves/slot1.sav", text);
        quietly([&] { EXPECT_TRUE(loadProgress(game)) << text; });
        EXPECT_LT(world.stage.index, generated::kStageCount);
        EXPECT_GE(world.player1.health, 0);
    }
}

TEST_F(Menus, TheHudShowsWhoIsThereAndWhatIsLeft) {
    press({kKeyEnter, kKeyEnter, kKeyEnter});
    begin(0);
    DrawList list;
    const SpriteSource sprites{game.sprites, game.renderer, game.dataRoot};
    world.player1.health = world.player1.maxHealth / 2;
    RuntimeEntity enemy;
    generated::Character model = *world.player1.model;
    model.type = "enemy";
    model.name = "Foe";
    model.lifeBarStatusDefined = true;
    model.lifeBarWidth = 30;
    model.lifeBarHeight = 20;
    model.lifeBarOrientation = 1;
    model.lifeBarType = 0;
    model.lifeBarGraphLayer = -1;  // behind all other parts
    enemy.model = &model;
    enemy.health = 6;
    world.entities.clear();
    world.entities.add(enemy);
    model.iconPath = "";
    addHud(world, game.config, {}, sprites, list);
    list.sort();
    std::vector<DrawRectangle> bars;
    std::vector<std::string> texts;
    for (const DrawCommand& command : list.scene()) {
        EXPECT_EQ(command.kind, SceneKind::Hud);
        if (const auto* bar = std::get_if<DrawRectangle>(&list.shape(command)))
            bars.push_back(*bar);
        if (const auto* line = std::get_if<DrawTextLine>(&list.shape(command))) {
            texts.push_back(line->text);
        }
    }
    ASSERT_EQ(bars.size(), 6U);
    EXPECT_EQ(bars[0], (DrawRectangle{8, 10, 70, 7, 0x282828}));
    EXPECT_EQ(bars[1], (DrawRectangle{8, 10, 35, 7, 0x28D246}));
    EXPECT_EQ(bars[2], (DrawRectangle{12, 28 + 20 - 6, 30, 6, 0x28D246})) << "a pixel a point";
    EXPECT_EQ(bars[3], (DrawRectangle{13, 29, 30, 20, 0x0F0F0F}));
    EXPECT_EQ(bars[4], (DrawRectangle{11, 27, 32, 22, 0x464646}));
    EXPECT_EQ(bars[5], (DrawRectangle{12, 28, 30, 20, 0x141414}));
    EXPECT_EQ(texts.front(), world.player1.model->name);
    EXPECT_EQ(texts.back(), "Foe");
}

}  // namespace
}  // namespace port
