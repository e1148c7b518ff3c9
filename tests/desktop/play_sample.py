#!/usr/bin/env python3
"""Plays the sample as a person would: in a window, with keys, by what the screen shows.

play_sample.py <folder of the port> [<folder for pictures>]

The folder is that of a finished port or package; it is started there as it is, and its settings and
saved games change. Exit code 77: a program that this takes is missing.
"""

import ctypes.util
import itertools
import os
import shutil
import sys
import time

from desktop import Display, Failure, Game

CANVAS = (480, 272)
SELECTED = (255, 214, 79)
PANEL = (18, 18, 24)
GAUGE = (40, 210, 70)
SPENT = (40, 40, 40)

LONGEST_FIGHT = 150  # seconds


class Menu:
    """The rows of a screen as the player finds them: where they begin, and which is bright."""

    def __init__(self, game, x, y, step, rows, size, titled=True):
        self._game = game
        self._x, self._y, self._step, self._rows, self._size = x, y, step, rows, size
        self._titled = titled

    def selected(self):
        """The index of the bright row, or None on another screen."""
        titled = len(self._game.places(SELECTED, 12, 42, 120, 15)) > 5
        if titled != self._titled:
            return None
        bright = [len(self._game.places(SELECTED, self._x, self._y + row * self._step, 120,
                                        self._size + 3)) for row in range(self._rows)]
        return bright.index(max(bright)) if max(bright) > 5 else None

    def wait(self, what, row=None):
        self._game.wait_for(what, lambda: self.selected() is not None if row is None
                            else self.selected() == row)

    def go_to(self, row, key="Down"):
        self._game.turn(key, f"row {row}", self.selected, row)


class Player:
    def __init__(self, game, pictures):
        self.game = game
        self._pictures = pictures
        self.main = Menu(game, 28, 62, 29, 5, 13, titled=False)
        self.sets = Menu(game, 28, 68, 20, 2, 10)
        self.options = Menu(game, 22, 59, 14, 11, 8)
        self.graphics = Menu(game, 14, 65, 16, 9, 8)
        self.controls = Menu(game, 18, 62, 15, 10, 8)
        self.paused = Menu(game, 30, 78, 25, 5, 11)

    def picture(self, name):
        if self._pictures:
            self.game.display.save(os.path.join(self._pictures, name + ".png"))

    # Out of play.

    def title(self):
        self.main.wait("the title", 0)
        self.picture("title")

    def change_options(self):
        game = self.game
        self.main.go_to(2)
        game.press_until("Return", "the options", lambda: self.options.selected() == 0)
        self.options.go_to(8)
        game.turn("Right", "boxes of bodies", lambda: game.setting("show_bbox"), "false")
        self.options.go_to(9)
        game.turn("Right", "boxes of attacks", lambda: game.setting("show_attack_box"), "false")
        self.options.go_to(4, "Up")
        self.picture("options")
        game.press_until("Return", "the graphics", lambda: self.graphics.selected() == 0)
        self.filter_picture()
        self.scale_picture()
        game.press_until("Escape", "the options", lambda: self.options.selected() == 4)
        game.press_until("Escape", "the main menu", lambda: self.main.selected() is not None)

    def shows_whole_pixels(self):
        """Of the title's letters: pixels of the canvas are plain squares, which no filter leaves."""
        pixel = self.game.display.pixel
        corners = [(2 * x, 2 * y) for x in range(150, 440, 7) for y in range(15, 55, 3)]
        return all(pixel(x, y) == pixel(x + 1, y) == pixel(x, y + 1) == pixel(x + 1, y + 1)
                   for x, y in corners)

    def filter_picture(self):
        game = self.game
        game.expect("sharp pixels without a filter", self.shows_whole_pixels())
        game.turn("Right", "the preset", lambda: game.setting("preset"), "crt")
        game.wait_for("the filter, and the tube's dark corners",
                      lambda: not self.shows_whole_pixels()
                      and game.display.pixel(2, 2) == (0, 0, 0))
        self.picture("crt")
        game.turn("Right", "the preset", lambda: game.setting("preset"), "original")
        game.wait_for("sharp pixels", self.shows_whole_pixels)

    def scale_picture(self):
        game = self.game
        self.graphics.go_to(4)
        bright = (14, 65 + 4 * 16, 160, 12)  # from here on the list moves under the bright row
        before = game.places(SELECTED, *bright)
        game.press_until("Down", "the row of the scale",
                         lambda: game.places(SELECTED, *bright) not in (before, set()))
        game.turn("Right", "the scale", lambda: game.setting("integer_scale"), "3")
        game.scale = 3
        self.graphics.wait("the menu at three times its size", 4)
        game.turn("Left", "the scale", lambda: game.setting("integer_scale"), "2")
        game.scale = 2
        self.graphics.wait("the menu at its old size", 4)

    def remap_attack(self):
        game = self.game
        self.main.go_to(3)
        game.press_until("Return", "the controls", lambda: self.controls.selected() == 0)
        self.controls.go_to(4)
        game.press_until("Return", "the question for a key",
                         lambda: game.places(SELECTED, 14, 218, 200, 12))
        game.press_until("k", "the new key", lambda: game.setting("key_attack") == "75")
        game.press_until("Escape", "the main menu", lambda: self.main.selected() is not None)

    def choose_character(self):
        game = self.game
        self.main.go_to(0)
        game.press_until("Return", "the campaigns", lambda: self.sets.selected() == 0)
        slot = (22, 60, 110, 12)
        game.press_until("Return", "the characters", lambda: self.sets.selected() is None
                         and game.places(SELECTED, *slot))
        first = game.places(SELECTED, *slot)
        game.press_until("Right", "another character",
                         lambda: game.places(SELECTED, *slot) not in (first, set()))
        self.picture("select")

    def begin(self):
        """Leaves the menus, and all pictures and scenes before play."""
        self.game.press_until("Return", "play", self.plays)

    # In play.

    def plays(self):
        return self.game.pixel(10, 14) == GAUGE

    def enemies(self):
        """How many life bars of enemies are shown, of the first two."""
        return sum(self.game.pixel(100, y) in (GAUGE, SPENT) for y in (32, 43))

    def energy_of_enemies(self):
        return len(self.game.places(GAUGE, 30, 28, 80, 22))

    def name_shown(self):
        return self.game.places(SELECTED, 8, 0, 60, 10)

    def fight(self):
        """The first wave: goes to meet it, then strikes, and turns where no blow has landed for long."""
        game = self.game
        game.wait_for("two enemies", lambda: self.enemies() == 2)
        energy, landed = self.energy_of_enemies(), time.monotonic()
        end = landed + LONGEST_FIGHT
        sides = itertools.cycle(("Left", "Right"))
        game.hold("Right")
        while self.enemies() > 0:
            game.press("k")
            game.look()
            now = time.monotonic()
            game.expect("the end of the first wave", now < end)
            if self.energy_of_enemies() < energy:
                game.release("Right")
                self.picture("fight")
                energy, landed = self.energy_of_enemies(), now
            elif now > landed + 5:
                game.release("Right")
                game.press(next(sides))
                landed = now - 3
        game.release("Right")

    def pause(self):
        game = self.game
        game.press_until("Escape", "the pause", lambda: self.paused.selected() == 0
                         and game.pixel(300, 220) == PANEL)
        self.picture("pause")

    def quit_from_pause(self):
        self.paused.go_to(4, "Up")
        self.game.press("Return")
        self.game.wait_for_end()


def first_run(player):
    game = player.game
    player.title()
    player.change_options()
    player.remap_attack()
    player.choose_character()
    player.begin()
    game.wait_for("the saved game", lambda: game.saved().get("player1") == "Juniper")
    name = player.name_shown()
    player.fight()
    player.pause()
    player.quit_from_pause()
    return name


def second_run(player, name):
    """What was set, chosen and saved is there again."""
    game = player.game
    player.title()
    player.main.go_to(1)
    player.begin()
    game.wait_for("the name of the one who was chosen", lambda: player.name_shown() == name)
    player.pause()
    player.quit_from_pause()
    for key, value in (("key_attack", "75"), ("integer_scale", "2"), ("preset", "custom"),
                       ("show_bbox", "false")):
        game.expect(f"{key}={value} in the settings", game.setting(key) == value)
    saved = game.saved()
    for key, value in (("stage", "0"), ("joined_mask", "1"), ("player1", "Juniper"),
                       ("alive1", "1"), ("lives", "3")):
        game.expect(f"{key}={value} in the saved game", saved.get(key) == value)


def main():
    missing = [name for name in ("Xvfb", "xdotool") if not shutil.which(name)]
    missing += [name for name in ("GL",) if not ctypes.util.find_library(name)]
    if missing:
        print("SKIPPED: not installed:", *missing)
        return 77
    folder = os.path.abspath(sys.argv[1])
    pictures = os.path.abspath(sys.argv[2]) if len(sys.argv) > 2 else None
    if pictures:
        os.makedirs(pictures, exist_ok=True)
    try:
        with Display() as display:
            game = Game(display, folder, CANVAS, 2)
            game.set_before_start("width", 960)
            game.set_before_start("height", 544)
            with game:
                name = first_run(Player(game, pictures))
            with game:
                second_run(Player(game, None), name)
    except Failure as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0


sys.exit(main())
