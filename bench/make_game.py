#!/usr/bin/env python3
"""Writes a synthetic game with the shape of large real ones. The same arguments give the same bytes.

plain      500 models with 7,000 animations and 37,000 frames in 6 MB of text, 44 stages with 2,300
           spawns, and 10,000 files in all.
scripted   The same, and 450 script files whose includes form a dense graph.
script-heavy
           850 script files that import each other twice as densely, 1,700 inline scripts in 150
           models, and 10,000 pictures, of which most are never named.
"""

import argparse
import dataclasses
import pathlib
import random

STAGES = 44
SPAWNS_PER_STAGE = 52


@dataclasses.dataclass(frozen=True)
class Shape:
    models: int = 500
    frames: int = 37_000
    files: int = 10_000
    scripts: int = 0
    includes: int = 12  # of each script file
    directive: str = "include"  # "import" takes a file once, "include" each time
    inline_scripts: int = 0


SHAPES = {
    "plain": Shape(),
    "scripted": Shape(scripts=450),
    "script-heavy": Shape(models=150, frames=11_000, files=11_100, scripts=850, includes=24,
                          directive="import", inline_scripts=1_700),
}

ANIMATIONS = ["idle", "walk", "run", "jump", "pain", "fall", "rise", "attack1", "attack2",
              "attack3", "attack4", "freespecial", "grab", "death"]


def header(rng, name, scripts):
    lines = [f"name {name}", f"type {'player' if rng.random() < 0.1 else 'enemy'}",
             f"health {rng.randrange(10, 400)}", f"speed {rng.randrange(5, 20)}", "shadow 1",
             f"icon data/chars/{name}/icon.gif", "atchain 1 2 3", "jumpheight 4",
             f"palette data/chars/{name}/pal0.gif", f"alternatepal data/chars/{name}/pal1.gif",
             "aimove chase", "defense burn 0.5 1 1", "gfxshadow 1", ""]
    lines += ["# Notes of whoever wrote this model by hand, as real files carry them."] * 14
    if scripts:
        lines.insert(5, f"animationscript data/scripts/s{rng.randrange(scripts):03d}.c")
    return lines


def inline_script(rng):
    lines = ["\t@script", "\tvoid self = getlocalvar(\"self\");"]
    for number in range(rng.randrange(1, 6)):
        lines += [f"\tif (frame == {number}) {{",
                  f"\t\tchangeentityproperty(self, \"velocity\", {rng.randrange(5)}, 0, {number});",
                  "\t}"]
    return lines + ["\t@end_script"]


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


def share_of(total, count, index):
    """What the index-th of `count` gets where `total` things are dealt out evenly."""
    return total // count + (index < total % count)


def model_text(rng, name, frames, scripts, inline_scripts):
    lines = header(rng, name, scripts)
    for number, animation in enumerate(ANIMATIONS):
        lines += [f"# {animation} " + "-" * 76, f"anim {animation}", "\tloop 1",
                  f"\toffset {rng.randrange(40, 90)} 120"]
        if number < inline_scripts:
            lines += inline_script(rng)
        share = share_of(frames, len(ANIMATIONS), number)
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


def script_text(rng, index, shape):
    lines = [f'#{shape.directive} "data/scripts/s{other:03d}.c"'
             for other in sorted(rng.sample(range(shape.scripts), shape.includes))
             if other != index]
    for number in range(12):
        lines += [f"void helper{index}_{number}(float x, float z, int flag)", "{",
                  '\tvoid self = getlocalvar("self");',
                  f"\tif (flag == {number}) {{ changeentityproperty(self, \"velocity\", x, z); }}",
                  f"\tsetglobalvar(\"h{index}\", {number}); // step {number}", "}", ""]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--shape", choices=SHAPES, default="plain")
    options = parser.parse_args()
    shape = SHAPES[options.shape]
    rng = random.Random(20)
    data = options.folder / "data"
    count = 0

    def write(relative, content):
        nonlocal count
        path = data / relative
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        count += 1

    names = [f"model{i:03d}" for i in range(shape.models)]
    write("models.txt", "".join(f"{'know' if i % 3 else 'load'} {n} data/chars/{n}/{n}.txt\n"
                                for i, n in enumerate(names)))
    write("levels.txt", "set Giant\nlives 3\ncredits 5\nz 160 232 160\n" +
          "".join(f"file data/levels/stage{i}.txt\nnext\n" for i in range(STAGES)))
    write("video.txt", "video 2\n")
    for i, name in enumerate(names):
        write(f"chars/{name}/{name}.txt",
              model_text(rng, name, share_of(shape.frames, shape.models, i), shape.scripts,
                         share_of(shape.inline_scripts, shape.models, i)))
        for picture in ("icon", "pal0", "pal1"):
            write(f"chars/{name}/{picture}.gif", b"GIF89a" + rng.randbytes(1_000))
    for i in range(STAGES):
        write(f"levels/stage{i}.txt", stage_text(rng, names))
    for i in range(shape.scripts):
        write(f"scripts/s{i:03d}.c", script_text(rng, i, shape))
    for name in ["back", "a", "b"]:
        write(f"bgs/{name}.gif", rng.randbytes(60_000))
    for i in range(40):
        write(f"sounds/hit{i}.wav", rng.randbytes(30_000))
    write("music/stage.bor", rng.randbytes(900_000))
    # Sprites bring the number of files up to its mark.
    index = 0
    while count < shape.files:
        take, model = divmod(index, len(names))
        take, animation = divmod(take, len(ANIMATIONS))
        write(f"chars/{names[model]}/{ANIMATIONS[animation]}_{take}.gif",
              rng.randbytes(rng.randrange(2_000, 14_000)))
        index += 1
    print(f"{count} files below {data}")


if __name__ == "__main__":
    main()
