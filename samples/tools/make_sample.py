#!/usr/bin/env python3
"""Draws every picture and plays every sound of the sample game into samples/game/data.

Same bytes on every run: no clock, no network, nothing but the standard library.
    python3 samples/tools/make_sample.py [part ...]     parts: people things scenery sounds music
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.dont_write_bytecode = True

DATA = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "game", "data")


def save(path, data):
    path = os.path.join(DATA, path)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)


def people():
    import costumes
    from cast import cast
    from imagefiles import act, gif, png
    from moves import armed, crew
    from props import icons
    from rig import pose
    puppets, moves = cast(), crew()
    for name, puppet in puppets.items():
        wanted = costumes.USED[name]
        sets = [("", {a: moves[name][a] for a in wanted})]
        if name in ("bramble", "juniper"):
            base = moves[name]["stance"][0]
            for prop in ("ladle", "spoon"):
                sets.append((prop + "/", armed(base, prop)))
        for folder, animations in sets:
            for animation, poses in animations.items():
                for i, p in enumerate(poses):
                    c = puppet.render(p)
                    save("chars/%s/%s%s_%d.gif" % (name, folder, animation, i + 1), gif(c.picture(puppet.palette)))
        # Costumes: the standing picture with another colour table, or the table alone.
        still = puppet.render(pose())
        save("chars/%s/palettes/base.gif" % name, gif(still.picture(puppet.palette)))
        for i, (form, changes) in enumerate(costumes.ALTERNATES[name]):
            palette = puppet.recoloured(changes)
            path = "chars/%s/palettes/alt%d.%s" % (name, i + 1, form)
            if form == "act":
                save(path, act(palette, long_form=i % 2 == 1))
            elif form == "png":
                save(path, png(still.picture(palette)))
            else:
                save(path, gif(still.picture(palette)))
    for name, c in icons(puppets).items():
        who = name.replace("_ko", "")
        save("chars/%s/icon%s.gif" % (who, "_ko" if name.endswith("_ko") else ""), gif(c.picture(puppets[who].palette)))


def things():
    from imagefiles import gif, png
    from props import shadow, sprites
    frames, box = sprites()
    for path, canvases in frames.items():
        for i, c in enumerate(canvases):
            picture = c.picture(box.palette)
            # Buttons and shots come as PNG, the rest as GIF; the dust is interlaced.
            if path in ("items/button", "shots/gust", "effects/bflash"):
                save("chars/%s_%d.png" % (path, i + 1), png(picture))
            else:
                save("chars/%s_%d.gif" % (path, i + 1), gif(picture, interlace=path == "effects/dust"))
    for n in range(1, 7):
        save("sprites/shadow%d.gif" % n, gif(shadow(n)))


def scenery():
    import scenery as s
    s.paint(save)


def sounds():
    import sounds as s
    s.play(save)


def music():
    import music as m
    m.play(save)


PARTS = (people, things, scenery, sounds, music)

if __name__ == "__main__":
    for part in PARTS:
        if len(sys.argv) == 1 or part.__name__ in sys.argv[1:]:
            part()
