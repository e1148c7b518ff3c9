#!/usr/bin/env python3
"""Presses Ctrl+C under Wine: interrupt.py <tools/wine.sh> <session_child.exe> <game.pak> <work folder>

Each way of working with a temporary session ends soon, with its tools, and leaves no session.
"""
import glob
import os
import pty
import select
import sys
import time

PATIENCE = 30  # seconds; by itself each takes a minute


def wait(what, condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"Ctrl+C: {what}")
        time.sleep(0.1)


def main():
    wine, child, pak, work = sys.argv[1:]
    sessions = os.path.join(os.environ["WINEPREFIX"], "drive_c/users/*/Temp/Tindrel-Builder/*")
    for way in ("idle", "unpack", "tool", "build"):
        said = os.path.join(work, f"interrupt-{way}.txt")
        output = os.open(said, os.O_CREAT | os.O_TRUNC | os.O_WRONLY)
        process, terminal = pty.fork()
        if process == 0:
            os.dup2(output, 1)
            os.execv(wine, [wine, child, way, pak])

        def has_ended():
            # What the console draws has to be taken from it.
            while select.select([terminal], [], [], 0)[0]:
                try:
                    os.read(terminal, 4096)
                except OSError:
                    break
            return os.waitpid(process, os.WNOHANG) != (0, 0)

        def is_ready():
            with open(said, "rb") as file:
                return has_ended() or b"ready" in file.read()

        wait(f"{way} does not begin", is_ready)
        os.write(terminal, b"\3")
        try:
            wait(f"{way} does not end", has_ended)
        finally:
            os.close(terminal)
        # A helper that lived on would make the folder anew.
        time.sleep(0.5)
        left = glob.glob(sessions)
        if left:
            sys.exit(f"Ctrl+C: {way} leaves {left}")
    print("Ctrl+C ends the builder, its tools and commands, and leaves no session")


main()
