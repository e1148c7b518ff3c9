#!/usr/bin/env python3
"""Writes a synthetic game with the shape of the largest real ones.

500 models with 7,000 animations and 37,000 frames in 6 MB of text, 44 stages with 2,300 spawns,
and 10,000 files in all. With --scripts also 450 script files whose includes form a dense graph.
The same arguments give the same bytes.
"""

import argparse
import pathlib
import random

MODELS = 500
ANIMATIONS_PER_MODEL = 14
FRAMES = 37_000
STAGES = 44
SPAWNS_PER_STAGE = 52
FILES = 10_000
SCRIPTS = 450

ANIMATIONS = ["idle", "walk", "run", "jump", "pain", "fall", "rise", "attack1", "attack2",
              "attack3", "attack4", "freespecial", "grab", "death"]


def header(rng, name, script):
    lines = [f"name {name}", f"type {'player' if rng.random() < 0.1 else 'enemy'}",
             f"health {rng.randrange(10, 400)}", f"speed {rng.randrange(5, 20)}", "shadow 1",
             f"icon data/chars/{name}/icon.gif", "atchain 1 2 3", "jumpheight 4",
             f"palette data/chars/{name}/pal0.gif", f"alternatepal data/chars/{name}/pal1.gif",
             "aimove chase", "defense burn 0.5 1 1", "gfxshadow 1", ""]
    lines += ["# Notes of whoever wrote this model by hand, as real files carry them."] * 14
    if script:
        lines.insert(5, f"animationscript data/scripts/s{rng.randrange(SCRIPTS):03d}.c")
    return lines


def frame(rng, name, animation, index, attacking):
    x, y = rng.randrange(40, 120), rng.randrange(80, 140)
    lines = [f"\tdelay {rng.randrange(2, 20)}", f"\toffset {x} {y}",
             f"\tbbox {x - 15} {y - 70} {rng.randrange(20, 40)} 70"]
    roll = rng.random()
    if attacking:
        lines.append(f"\tattack {x} {y - 60} 40 20 {rng.randrange(3, 40)} {rng.randrange(2)} 0 0 0 12")
    if roll < 0.05:
        lines.append(f"\tsound data/sounds/hit{rng.randrange(40)}.wav")
    lines += [f"\tmove {rng.randrange(-4, 9)}", "\tmovez 0"]
    if 0.08 < roll < 0.12:
        lines.append("\tdrawmethod scale 1.5 1.5")
    if 0.12 < roll < 0.4:
        lines.append(f"\t@cmd dasher {rng.randrange(5)} {rng.randrange(3)} 0")
    # One path in four differs from the disk in case, as hand-written games do.
    folder = name.upper() if rng.random() < 0.25 else name
    lines.append(f"\tframe data/chars/{folder}/{animation}_0.gif")
    return lines


def model_text(rng, name, frames, script):
    lines = header(rng, name, script)
    for number, animation in enumerate(ANIMATIONS):
        lines += [f"# {animation} " + "-" * 76, f"anim {animation}", "\tloop 1", f"\toffset {rng.randrange(40, 90)} 120"]
        share = frames // ANIMATIONS_PER_MODEL + (number < frames % ANIMATIONS_PER_MODEL)
        for index in range(share):
            attacking = animation.startswith("attack") and index == share // 2
            lines += frame(rng, name, animation, index, attacking)
            if attacking:
                lines.append("\tattack 0 0 0 0")
        lines.append("")
    return "\n".join(lines)


def stage_text(rng, names):
    lines = ["music data/music/stage.bor", "background data/bgs/back.gif 0.5 0.5 0 0 0 0 10 1",
             "panel data/bgs/a.gif", "panel data/bgs/b.gif", "order abababab", "direction both"]
    at = 0
    for _ in range(SPAWNS_PER_STAGE):
        at += rng.randrange(0, 120)
        lines += [f"spawn {rng.choice(names)}", f"health {rng.randrange(20, 200)}",
                  f"coords {rng.randrange(-60, 400)} {rng.randrange(180, 232)}", f"at {at}", ""]
        if rng.random() < 0.2:
            lines += [f"group 2 {rng.randrange(3, 8)}", f"at {at}", "wait", f"at {at}", ""]
    lines.append("wall 400 200 0 0 60 60 20 80")
    return "\n".join(lines)


def script_text(rng, index):
    lines = [f'#include "data/scripts/s{other:03d}.c"'
             for other in sorted(rng.sample(range(SCRIPTS), 12)) if other != index]
    for number in range(12):
        lines += [f"void helper{index}_{number}(float x, float z, int flag)", "{",
                  '\tvoid self = getlocalvar("self");',
                  f"\tif (flag == {number}) {{ changeentityproperty(self, \"velocity\", x, z); }}",
                  f"\tsetglobalvar(\"h{index}\", {number}); // step {number}", "}", ""]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--scripts", action="store_true", help="add a dense include graph")
    options = parser.parse_args()
    rng = random.Random(20)
    data = options.folder / "data"
    count = 0

    def write(relative, content):
        nonlocal count
        path = data / relative
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        count += 1

    names = [f"model{i:03d}" for i in range(MODELS)]
    write("models.txt", "".join(f"{'know' if i % 3 else 'load'} {n} data/chars/{n}/{n}.txt\n"
                                for i, n in enumerate(names)))
    write("levels.txt", "set Giant\nlives 3\ncredits 5\nz 160 232 160\n" +
          "".join(f"file data/levels/stage{i}.txt\nnext\n" for i in range(STAGES)))
    write("video.txt", "video 2\n")
    for i, name in enumerate(names):
        frames = FRAMES // MODELS + (i < FRAMES % MODELS)
        write(f"chars/{name}/{name}.txt", model_text(rng, name, frames, options.scripts))
        for picture in ("icon", "pal0", "pal1"):
            write(f"chars/{name}/{picture}.gif", b"GIF89a" + rng.randbytes(1_000))
    for i in range(STAGES):
        write(f"levels/stage{i}.txt", stage_text(rng, names))
    if options.scripts:
        for i in range(SCRIPTS):
            write(f"scripts/s{i:03d}.c", script_text(rng, i))
    for name in ["back", "a", "b"]:
        write(f"bgs/{name}.gif", rng.randbytes(60_000))
    for i in range(40):
        write(f"sounds/hit{i}.wav", rng.randbytes(30_000))
    write("music/stage.bor", rng.randbytes(900_000))
    # Sprites bring the number of files up to its mark.
    index = 0
    while count < FILES:
        animation = ANIMATIONS[index // MODELS % len(ANIMATIONS)]
        write(f"chars/{names[index % MODELS]}/{animation}_{index // MODELS // len(ANIMATIONS)}.gif",
              rng.randbytes(rng.randrange(2_000, 14_000)))
        index += 1
    print(f"{count} files below {data}")


if __name__ == "__main__":
    main()
