#!/usr/bin/env python3
"""Draws the icon of the Windows programs: tools/draw-icon.py > runtime/platform/windows.ico"""
import struct
import sys

GOLD, DARK, LIGHT = (255, 214, 79), (44, 34, 52), (237, 237, 242)


def colour(x, y):
    """Of a place in a square from 0 to 1: a T on a golden disc; None outside of it."""
    distance = ((x - 0.5) ** 2 + (y - 0.5) ** 2) ** 0.5
    if distance > 0.48:
        return None
    if distance > 0.41:
        return DARK
    bar = 0.27 <= y <= 0.40 and 0.25 <= x <= 0.75
    stem = 0.40 <= y <= 0.76 and 0.43 <= x <= 0.57
    return DARK if bar or stem else (LIGHT if x + y < 0.62 else GOLD)


def pixel(column, row, size):
    """The mean of 16 places, blue, green, red, alpha."""
    places = [colour((column + (i + 0.5) / 4) / size, (row + (j + 0.5) / 4) / size)
              for i in range(4) for j in range(4)]
    seen = [place for place in places if place]
    if not seen:
        return bytes(4)
    red, green, blue = (sum(channel) // len(seen) for channel in zip(*seen))
    return bytes((blue, green, red, 255 * len(seen) // 16))


def picture(size):
    rows = [b"".join(pixel(column, row, size) for column in range(size)) for row in range(size)]
    mask = bytes((size + 31) // 32 * 4 * size)
    head = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    return head + b"".join(reversed(rows)) + mask


def main():
    sizes = (16, 24, 32, 48)
    pictures = [picture(size) for size in sizes]
    out = struct.pack("<HHH", 0, 1, len(sizes))
    at = len(out) + 16 * len(sizes)
    for size, data in zip(sizes, pictures):
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(data), at)
        at += len(data)
    sys.stdout.buffer.write(out + b"".join(pictures))


main()
