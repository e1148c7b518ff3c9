"""Whole-screen pictures: title, select, loading, the end of a stage, and the tale's scenes."""
import math
import random

import harbour
import street
from cast import TONES, cast
from lettering import fat
from painting import Paint, hexa, mix
from raster import Canvas, Ellipse
from rig import pose

W, H = 480, 272
_people = {}


def person(name):
    if not _people:
        _people.update(cast())
    return _people[name]


def figure(p, name, q, x, y, zoom=1.0, flip=False, tint=None, amount=0.0):
    """A puppet with its ground point at x, y."""
    who = person(name)
    c = who.render(q, zoom)
    ox = who.origin[0] * zoom
    p.blit(c, who.palette, x - (c.w - ox if flip else ox), y - who.origin[1] * zoom, flip, tint, amount)


def over(p, layer, x, y):
    """One painting on another."""
    for v in range(layer.h):
        yy = y + v
        if 0 <= yy < p.h:
            for u in range(layer.w):
                xx = x + u
                c = layer.px[v * layer.w + u]
                if c is not None and 0 <= xx < p.w:
                    p.px[yy * p.w + xx] = c


def letters(p, text, x, y, size, tone="brass", weight=1.7, shadow=True, bounce=0.0):
    ramp = [hexa(t) for t in TONES[tone].split()]
    palette = [(0, 0, 0)] + ramp + [(16, 8, 22)]
    if shadow:
        c = Canvas(W, H)
        fat(c, text, x + 2, y + 3, size, [6] * 5, weight + 0.45, bounce)
        p.blit(c, palette, 0, 0)
    c = Canvas(W, H)
    end = fat(c, text, x, y, size, [1, 2, 3, 4, 5], weight, bounce)
    p.blit(c, palette, 0, 0)
    return end


def steam(p, x, y, n, spread, c=(255, 244, 226), seed=1, k0=0.5):
    r = random.Random(seed)
    for k in range(n):
        t = k / n
        cx, cy = x + math.sin(k * 0.7 + seed) * spread * (0.3 + t), y - k * 3.4
        rad = 3 + t * spread
        for yy in range(int(cy - rad), int(cy + rad) + 1):
            for xx in range(int(cx - rad), int(cx + rad) + 1):
                d = ((xx - cx) ** 2 + (yy - cy) ** 2) / rad / rad
                o = p.at(xx, yy)
                if d < 1 and o:
                    p.dot(xx, yy, mix(o, c, k0 * (1 - t) * (1 - d)))


def row_view(panel=None, shift=0):
    p = Paint(W, H, (0, 0, 0))
    over(p, street.sky(), -60, 0)
    over(p, street.towers(), -20, -18)
    over(p, street.roofs(), 0, 14)
    over(p, street.roofs(), 438, 14)
    if panel:
        over(p, panel, shift, 0)
    return p


def dock_view(panel):
    p = Paint(W, H, (0, 0, 0))
    over(p, harbour.sky(), -60, 0)
    over(p, harbour.bank(), -20, 60)
    over(p, harbour.water(), 0, 132)
    over(p, panel, 0, 0)
    return p


def caption(p, lines, y=226):
    p.shade(0, y - 12, W, 12, (8, 5, 18), 0.0, 0.9)
    p.rect(0, y, W, H - y, (10, 6, 20))
    p.rect(0, y, W, 1, hexa("8c5c34"))
    for i, line in enumerate(lines):
        p.text(line, W // 2, y + 8 + i * 18, hexa("ffe8b8"), 2, shadow=hexa("4a2030"), centre=True)


def ladle_pose(face="a"):
    return pose(x=4, y=1, lean=10, head=-4, hn=(-4, 17), pa=58, hf=(15, -2), face=face, prop="ladle", ln=(-12, 0, 0), lf=(13, 0, 0), sway=8)


def leap_pose():
    return pose(hang=1, y=4, lean=-10, head=8, ln=(-5, 12, 30), lf=(24, 12, 40), hn=(-11, 2), hf=(8, -4), en=1, face="a", ear=20, sway=14)


def title():
    p = row_view(street.street_b())
    p.shade(0, 0, W, H, (20, 10, 44), 0.22)
    for x in range(0, 250):                 # room for the menu
        k = 0.86 * max(0.0, 1 - max(0, x - 130) / 120) ** 0.8
        p.shade(x, 0, 1, H, (12, 7, 26), k)
    p.glow(330, 130, 190, 160, (90, 50, 20), 0.7)
    figure(p, "baron", pose(lean=-4, head=-6, hn=(-16, 12), pa=128, hf=(17, 14), ff="open", face="a", prop="mace", sway=-6),
           300, 300, 2.15, tint=(40, 16, 56), amount=0.80)
    p.glow(336, 128, 16, 12, (255, 90, 20), 0.9)
    figure(p, "juniper", leap_pose(), 256, 238, 1.9)
    figure(p, "bramble", ladle_pose(), 398, 266, 2.3)
    p.shade(0, 236, W, 36, (10, 5, 22), 0.0, 0.5)
    end = letters(p, "KETTLE R", 138, 17, 38)
    u = 38 / 14
    ramp = [hexa(t) for t in TONES["brass"].split()]
    ox = end
    letters(p, "OW", end, 17, 38)
    # the O is a pot: lid, knob, steam
    c = Canvas(W, H)
    c.group([(Ellipse(ox + 5 * u, 17, 13, 3.4), [1, 2, 3, 4, 5]), (Ellipse(ox + 5 * u, 12.5, 3, 2.8), [1, 2, 3, 4, 5])])
    p.blit(c, [(0, 0, 0)] + ramp, 0, 0)
    steam(p, ox + 5 * u, 8, 9, 6, seed=3, k0=0.7)
    p.text("A BREW IN TWO ROUNDS", 232, 60, hexa("ffe0a8"), 1, shadow=(20, 10, 24))
    return p


def select():
    p = Paint(W, H, (0, 0, 0))
    p.vertical([(0, hexa("2c1c34")), (0.7, hexa("5a3440")), (1, hexa("3a2430"))])
    for x in range(0, W, 40):               # panelled wall of a tea house
        p.rect(x, 46, 38, 120, hexa("4c2c3c"), hexa("6c4044"))
        p.rect(x + 3, 50, 32, 112, hexa("5c3644"), hexa("7c4c48"))
        p.rect(x + 3, 50, 32, 1, hexa("8c5c54"))
    r = random.Random(6)
    for k in range(2):                      # shelves of pots
        y = 84 + k * 44
        p.rect(0, y, W, 4, hexa("3c2028"))
        p.rect(0, y, W, 1, hexa("a87050"))
        x = 12
        while x < W - 8:
            street.teapot(p, x, y - 7, 1.5, hexa(("3a8c7c", "b83c44", "4468a8", "d8a03c", "e8dcc0", "7c4c8c", "5c8c4c")[r.randrange(7)]))
            x += 26 + r.randrange(12)
    p.rect(0, 166, W, 6, hexa("2c1824"))
    harbour_floor = Paint(W, H, None, seed=9)
    harbour.FLOOR, keep = 178, harbour.FLOOR
    harbour.quay_floor(harbour_floor, 77, [], ("8c5c44", "3c2430"), wet=False)
    harbour.FLOOR = keep
    for y in range(172, H):
        for x in range(W):
            c = harbour_floor.px[y * W + x]
            if c:
                p.px[y * W + x] = c
    p.shade(0, 0, W, H, (14, 6, 24), 0.18)
    for x in range(W):                      # darker to the left, where names are listed
        p.shade(x, 44, 1, 200, (10, 5, 20), 0.55 * max(0, 1 - x / 190))
    for y in range(40, 228):                # a cone of lamp light
        half = 26 + (y - 40) * 0.42
        for x in range(int(240 - half), int(240 + half)):
            k = (1 - abs(x - 240) / half) * 0.34
            o = p.at(x, y)
            p.dot(x, y, mix(o, (255, 214, 140), k))
    p.glow(240, 230, 110, 22, (150, 110, 60), 0.8)
    p.line(240, 0, 240, 26, (20, 12, 20))
    p.poly([(222, 44), (232, 28), (248, 28), (258, 44)], hexa("3a7c74"), hexa("1c4048"))
    p.rect(226, 44, 28, 3, hexa("fff4c0"))
    letters(p, "WHOSE ROUND", 18, 10, 22, "brass", 1.6)
    p.shade(0, 236, W, 36, (8, 4, 16), 0.75)
    p.text("BRAMBLE  STRONG, GUARDS WITH SPECIAL", 258, 242, hexa("d8b088"), 1)
    p.text("JUNIPER  FAST, JUMPS TWICE, WHISTLES", 258, 256, hexa("d8b088"), 1)
    return p


def loading():
    p = Paint(W, H, (0, 0, 0))
    p.vertical([(0, hexa("140c24")), (1, hexa("3a2034"))])
    p.glow(240, 150, 170, 110, (120, 60, 20), 0.9)
    from rig import Frame
    c = Canvas(60, 44, 5)
    f, R = Frame(28, 36), {}
    palette = [(0, 0, 0)]
    for name in ("teal", "brass", "cream"):
        R[name] = list(range(len(palette), len(palette) + 5))
        palette += [hexa(t) for t in TONES[name].split()]
    c.group([(f.cap(8, -8, 3.0, 15, -15, 2.0), R["teal"])])
    c.group([(f.ell(-11.5, -8, 5.0, 6), R["teal"])])
    c.flat(f.ell(-12, -8, 2.6, 3.6), 0)
    c.group([(f.poly([(-9, 0), (-11, -7), (-7, -14), (0, -16), (7, -14), (10, -7), (8, 0)], 8), R["teal"])])
    c.group([(f.ell(0, -15.5, 5.4, 1.9), R["brass"]), (f.ell(0, -18.4, 1.9, 1.8), R["brass"])])
    for k in range(3):
        c.group([(f.ell(-5 + k * 5, -7 + (k == 1), 1.7, 1.7), R["cream"])], outline=0.4)
    p.blit(c, palette, 100, 20)
    p.rect(150, 201, 180, 5, hexa("8c5838"), hexa("3c2028"))
    steam(p, 316, 118, 24, 12, seed=2)
    p.text("A MOMENT, IT IS BREWING", 240, 220, hexa("ffe0a8"), 2, shadow=hexa("301420"), centre=True)
    return p


def complete():
    p = row_view(street.street_c(), 0)
    p.shade(0, 0, W, H, (20, 10, 40), 0.4)
    p.glow(240, 190, 200, 120, (90, 60, 20), 0.8)
    cheer = pose(y=2, lean=-4, head=-8, hn=(-5, 19), hf=(8, -10), face="h", ear=8, sway=6, ln=(-7, 0, 0), lf=(7, 0, 0))
    figure(p, "bramble", cheer, 176, 248, 1.6)
    figure(p, "juniper", cheer, 306, 248, 1.6, flip=True)
    letters(p, "ROUND DONE!", 74, 24, 38)
    return p


def flame(p, x, y, s, t, hot=("fffbe0", "ffe070", "ff9c30", "d84020")):
    """The town's flame: tongues that waver with t."""
    for k, c in enumerate(reversed(hot)):
        f = 1 - k * 0.23
        pts = []
        for i in range(24):
            a = i / 24 * 2 * math.pi
            r = s * f * (0.62 + 0.08 * math.sin(3 * a + t * 6.28))
            px, py = math.sin(a) * r, -math.cos(a) * r
            if py < 0:
                py *= 1.9 + 0.25 * math.sin(t * 6.28 + px * 0.2)
                px *= max(0.08, 1 + py / (s * f * 2.2)) + 0.12 * math.sin(t * 6.28 + py * 0.15)
            pts.append((x + px, y + py + s * 0.2 * k))
        p.poly(pts, hexa(c))


def intro1():
    p = row_view()
    p.shade(0, 150, W, 122, (20, 10, 36), 0.3, 0.9)
    over(p, street.towers(), 220, 60)
    over(p, street.roofs(), -190, 96)
    over(p, street.roofs(), 244, 100)
    p.shade(0, 180, W, 92, (16, 8, 30), 0.0, 0.8)
    caption(p, ("IN THE TOWN OF STEEPS", "NOBODY SLEEPS BEFORE THE LAST CUP."))
    return p


def intro2():
    p = Paint(W, H, (0, 0, 0))
    p.vertical([(0, hexa("120c26")), (0.6, hexa("3c2040")), (1, hexa("1c1024"))])
    for k in range(9):                      # a vaulted kitchen
        x = 20 + k * 55
        p.rect(x, 40, 10, 190, hexa("3a2440"), hexa("241634"))
        for a in range(0, 181, 3):
            t = math.radians(a)
            p.rect(x + 32 + math.cos(t) * 27, 46 - math.sin(t) * 30, 6, 4, hexa("3a2440"))
    p.glow(240, 120, 230, 150, (170, 90, 30), 1.0)
    p.poly([(170, 226), (190, 176), (290, 176), (310, 226)], hexa("8c5038"), hexa("3c2028"))
    p.ellipse(240, 176, 50, 10, hexa("d89048"), hexa("7c4030"))
    flame(p, 240, 150, 44, 0.2)
    p.glow(240, 120, 110, 100, (120, 70, 20), 0.7)
    figure(p, "bramble", pose(lean=4, hn=(9, -12), hf=(12, -10), face="h"), 110, 224, 1.1)
    figure(p, "juniper", pose(lean=4, hn=(9, -12), hf=(12, -10), face="h"), 366, 224, 1.1, flip=True)
    caption(p, ("ONE FLAME, DEEP IN THE ROW,", "KEEPS EVERY KETTLE WARM."))
    return p


def intro3(frame, count):
    """Animated: the Baron with the flame in a jar."""
    t = frame / count
    p = Paint(W, H, (0, 0, 0))
    flick = 0.5 + 0.5 * math.sin(t * 6.283)
    p.vertical([(0, hexa("180812")), (1, mix(hexa("5c1c1c"), hexa("8c3018"), flick))])
    for k in range(16):                     # rays
        a = k / 16 * 6.283 + t * 0.393
        p.poly([(300, 84), (300 + math.cos(a) * 420, 84 + math.sin(a) * 420), (300 + math.cos(a + 0.16) * 420, 84 + math.sin(a + 0.16) * 420)],
               mix(hexa("7c2418"), hexa("b84c20"), flick))
    p.glow(300, 84, 140, 120, (150, 80, 20), 0.7 + 0.3 * flick)
    figure(p, "baron", pose(lean=2, head=-6 + 4 * math.sin(t * 12.566), hn=(4, -12), hf=(15, 4), ff="open", face="a"), 170, 300, 2.5)
    for y in range(34, 118):                # the jar
        half = 40 - 6 * abs((y - 76) / 42) ** 3 * 2
        for x in range(int(300 - half), int(300 + half)):
            edge = abs(x - 300) / half
            p.dot(x, y, mix(p.at(x, y), (190, 220, 220), 0.14 + 0.5 * edge ** 6))
    flame(p, 300, 92, 25, t)
    p.glow(300, 80, 50, 50, (90, 50, 10), 0.6)
    p.rect(268, 24, 64, 11, hexa("e4b444"), hexa("74481a"))
    p.rect(276, 116, 48, 5, hexa("e4b444"), hexa("74481a"))
    for y in range(42, 104):
        p.dot(270 + (y % 3 == 0), y, (255, 255, 240))
    caption(p, ("THEN BARON SAMOVAR, WHO TAKES NO MILK,", "TOOK IT."))
    return p


def intro4():
    p = Paint(W, H, (0, 0, 0))
    p.vertical([(0, hexa("1c2450")), (1, hexa("0c1028"))])
    p.poly([(0, 0), (256, 0), (224, 226), (0, 226)], hexa("1c5058"), hexa("0c2434"))
    p.poly([(262, 0), (W, 0), (W, 226), (230, 226)], hexa("7c1c40"), hexa("300c24"))
    for k in range(9):
        p.line(0, 20 + k * 24, 250 - k * 3, 4 + k * 24, hexa("2c7c78"))
        p.line(258 - k * 3, 20 + k * 24, W, 4 + k * 24, hexa("a82c50"))
    p.poly([(254, 0), (264, 0), (232, 226), (222, 226)], hexa("ffd870"))
    left = Paint(W, H, None)
    figure(left, "bramble", pose(lean=8, hn=(6, 3), hf=(16, 2), face="n"), 96, 296, 3.4)
    right = Paint(W, H, None)
    figure(right, "juniper", pose(lean=6, hn=(8, 2), hf=(15, -1), face="n", ear=6), 376, 322, 2.9, flip=True)
    for y in range(226):
        cut = 254 - y * 0.142
        for x in range(W):
            c = (left if x < cut else right).px[y * W + x]
            if c and (x < cut - 2 or x > cut + 12):
                p.px[y * W + x] = c
    caption(p, ("BUT TWO OF THE ROW'S OWN", "HAD NOT HAD THEIR TEA YET."))
    return p


def bridge():
    p = dock_view(Paint(1, 1))
    p.shade(0, 150, W, 122, (6, 10, 30), 0.2, 0.5)
    for x in range(W):                      # an arched bridge
        y = 196 - 46 * math.sin(x / W * math.pi)
        p.rect(x, y, 1, 16, hexa("1c1c34"), hexa("0c0c20"))
        p.rect(x, y, 1, 2, hexa("5c6c94"))
        if x % 26 < 3:
            p.rect(x, y - 18, 1, 18, hexa("10142c"))
        p.rect(x, y - 19, 1, 3, hexa("10142c"))
        arch = abs((x % 120) - 60)
        p.rect(x, y + 16, 1, max(0, 8 + (arch / 60) ** 3 * 90), hexa("12142c"), hexa("080a1c"))
    walk = pose(lean=10, ln=(-10, 0, 10), lf=(10, 2, 0), hn=(-6, -12), hf=(12, -11), sway=8, ear=10)
    figure(p, "bramble", walk, 210, 156, 1.0, tint=(16, 20, 48), amount=0.5)
    figure(p, "juniper", walk, 262, 152, 1.0, tint=(16, 20, 48), amount=0.5)
    caption(p, ("THE TRAIL OF STEAM LED TO THE DOCKS.", "THE FERRY LEAVES AT MIDNIGHT."))
    return p


def ending1():
    p = row_view(street.street_b(), 0)
    p.shade(0, 0, W, H, (255, 180, 90), 0.10)
    p.glow(240, 190, 220, 90, (150, 90, 30), 0.8)
    cheer = pose(y=2, lean=-4, head=-8, hn=(-5, 19), hf=(8, -10), face="h", ear=8, sway=6, ln=(-7, 0, 0), lf=(7, 0, 0))
    figure(p, "tubb", pose(hn=(8, 14), hf=(10, 12), face="h", lean=-4, ln=(-11, 0, 0), lf=(11, 0, 0)), 70, 212, 1.0)
    figure(p, "nib", pose(hn=(4, 16), hf=(10, -8), face="h"), 400, 210, 1.0, flip=True)
    figure(p, "magda", pose(hn=(-6, 14), hf=(8, 14), face="h"), 440, 216, 1.0, flip=True)
    figure(p, "bramble", cheer, 190, 232, 1.25)
    figure(p, "juniper", cheer, 300, 232, 1.25, flip=True)
    flame(p, 246, 206, 13, 0.4)
    p.glow(246, 196, 60, 50, (140, 90, 20), 0.9)
    caption(p, ("THE FLAME CAME HOME, AND THE ROW", "POURED FOR FRIEND AND FOE ALIKE."))
    return p


def ending2():
    p = Paint(W, H, (0, 0, 0))
    p.vertical([(0, hexa("1c1a44")), (0.6, hexa("5a3070")), (1, hexa("c65c74"))])
    over(p, street.towers(), 0, 136)
    p.shade(0, 130, W, 142, (16, 8, 36), 0.2, 0.7)
    letters(p, "THE END", 130, 50, 46)
    for i, line in enumerate(("BARON SAMOVAR NOW WASHES UP.", "NOBODY HAS TOLD HIM FOR HOW LONG.")):
        p.text(line, 240, 126 + i * 14, hexa("ffe8c8"), 1, shadow=(20, 10, 30), centre=True)
    p.text("KETTLE ROW", 240, 244, hexa("ffd870"), 1, shadow=(20, 10, 30), centre=True)
    return p
