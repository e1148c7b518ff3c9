"""A display without a monitor, its picture as pixels, and a game in a window on it."""

import mmap
import os
import select
import struct
import subprocess
import tempfile
import time
import zlib

WIDTH, HEIGHT = 960, 544
LONGEST_WAIT = 40  # seconds; far more than a loaded machine needs for anything


class Failure(Exception):
    """What should have been seen was not."""


class Display:
    """An X server in memory (Xvfb) that keeps its screen in a file. look() takes a picture of it, which
    all else reads until the next look. Pixels are (red, green, blue)."""

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory()
        ours, theirs = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(theirs), "-screen", "0", f"{WIDTH}x{HEIGHT}x24",
             "-fbdir", self._folder.name, "-nolisten", "tcp"],
            pass_fds=[theirs], stderr=subprocess.DEVNULL)
        os.close(theirs)
        if not select.select([ours], [], [], LONGEST_WAIT)[0]:
            raise Failure("Xvfb does not start")
        with os.fdopen(ours) as pipe:
            self.name = ":" + pipe.readline().strip()
        with open(os.path.join(self._folder.name, "Xvfb_screen0"), "rb") as file:
            self._memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(">25I", self._memory[:100])
        self._pitch = header[12]
        self._first = header[0] + 12 * header[19]  # behind the header and the colour map
        self.look()
        return self

    def __exit__(self, *_):
        self._memory.close()
        self._server.terminate()
        self._server.wait()
        self._folder.cleanup()

    def look(self):
        self._picture = self._memory[self._first:]

    def _line(self, x, y, width):
        start = y * self._pitch + 4 * x
        return self._picture[start:start + 4 * width]

    def pixel(self, x, y):
        blue, green, red, _ = self._line(x, y, 1)
        return red, green, blue

    def places(self, color, left, top, width, height):
        """Where in an area exactly that colour shows, as a set of (x, y) inside the area."""
        wanted = bytes(reversed(color))
        found = set()
        for y in range(max(0, -top), min(height, HEIGHT - top)):
            start = max(0, -left)
            line = self._line(left + start, top + y, min(width, WIDTH - left) - start)
            found.update((start + x // 4, y) for x in range(0, len(line), 4)
                         if line[x:x + 3] == wanted)
        return found

    def save(self, path):
        lines = []
        for y in range(HEIGHT):
            line = self._line(0, y, WIDTH)
            rgb = bytearray(3 * WIDTH)
            rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
            lines.append(b"\0" + rgb)

        def chunk(kind, data):
            return (struct.pack(">I", len(data)) + kind + data +
                    struct.pack(">I", zlib.crc32(kind + data)))

        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" +
                       chunk(b"IHDR", struct.pack(">2I5B", WIDTH, HEIGHT, 8, 2, 0, 0, 0)) +
                       chunk(b"IDAT", zlib.compress(b"".join(lines))) + chunk(b"IEND", b""))


class Game:
    """A port that runs in a window of the display. Places are those of its logical canvas."""

    def __init__(self, display, folder, canvas, scale):
        self.display = display
        self.folder = folder
        self._canvas = canvas
        self.scale = scale
        self._environment = dict(os.environ, DISPLAY=display.name, ALSOFT_DRIVERS="null")
        self._environment.pop("WAYLAND_DISPLAY", None)
        self._environment.pop("SDL_VIDEODRIVER", None)

    def __enter__(self):
        self._log = open(os.path.join(self.folder, "output.log"), "ab")
        self._process = subprocess.Popen([os.path.join(self.folder, "OpenBOR-Port")],
                                         env=self._environment, stdout=self._log, stderr=self._log)
        self.wait_for("the window", self._focus)
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()
        self._log.close()

    def _xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self._environment,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def _focus(self):  # there is no window manager that would
        return self._xdotool("search", "--onlyvisible", "--class", "TindrelPort", "windowfocus")

    # What a player does.

    def hold(self, key):
        self._xdotool("keydown", key)

    def release(self, key):
        self._xdotool("keyup", key)

    def press(self, key):
        self._xdotool("key", key)

    def press_until(self, key, what, seen):
        """Presses as often as it takes, each time after a good while without an effect."""
        end = time.monotonic() + LONGEST_WAIT
        while time.monotonic() < end:
            self.press(key)
            if self._comes(seen, 1.5):
                return
        self._fail(what)

    def turn(self, key, what, reading, wanted):
        """Presses until the reading is as wanted, and goes on only once each press has shown. A
        reading is None where there is nothing to read yet."""
        end = time.monotonic() + LONGEST_WAIT
        while True:
            self.wait_for(what, lambda: reading() is not None)
            before = reading()
            if before == wanted:
                return
            if time.monotonic() > end:
                self._fail(f"{what}: {before}, not {wanted}")
            self.press(key)
            self._comes(lambda: reading() not in (before, None), 3)

    # What a player sees.

    def wait_for(self, what, seen, limit=LONGEST_WAIT):
        if not self._comes(seen, limit):
            self._fail(what)

    def look(self):
        self.display.look()

    def expect(self, what, seen):
        if not seen:
            self._fail(what)

    def wait_for_end(self):
        try:
            code = self._process.wait(LONGEST_WAIT)
        except subprocess.TimeoutExpired:
            self._fail("the end of the program")
        if code != 0:
            raise Failure(f"The program ended with {code}")

    def _comes(self, seen, limit):
        end = time.monotonic() + limit
        while True:
            self.look()
            if seen():
                return True
            if time.monotonic() > end:
                return False
            if self._process.poll() is not None:
                raise Failure(f"The program ended by itself with {self._process.returncode}")
            time.sleep(0.02)

    def _fail(self, what):
        path = os.path.join(self.folder, "failure.png")
        self.display.save(path)
        raise Failure(f"Not seen: {what}. The screen is in {path}")

    def _place(self, x, y):
        return ((WIDTH - self._canvas[0] * self.scale) // 2 + x * self.scale,
                (HEIGHT - self._canvas[1] * self.scale) // 2 + y * self.scale)

    def pixel(self, x, y):
        return self.display.pixel(*self._place(x, y))

    def places(self, color, x, y, width, height):
        return self.display.places(color, *self._place(x, y), width * self.scale,
                                   height * self.scale)

    def set_before_start(self, key, value):
        path = os.path.join(self.folder, "config", "graphics.ini")
        with open(path, encoding="utf-8") as file:
            lines = file.readlines()
        with open(path, "w", encoding="utf-8") as file:
            file.writelines(f"{key}={value}\n" if line.startswith(key + "=") else line
                            for line in lines)

    def setting(self, key):
        """A value of the settings file as it stands on disk, or None."""
        with open(os.path.join(self.folder, "config", "graphics.ini"), encoding="utf-8") as file:
            for line in file:
                name, _, value = line.partition("=")
                if name == key:
                    return value.strip()
        return None

    def saved(self):
        """The saved game as a dictionary, empty where there is none."""
        try:
            with open(os.path.join(self.folder, "saves", "slot1.sav"), encoding="utf-8") as file:
                return dict(line.rstrip("\n").split("=", 1) for line in file)
        except FileNotFoundError:
            return {}
