"""Things: what hands hold, what lies on the street, what flies and bursts."""
import math

from raster import BAYER, Canvas, Ellipse
from rig import Frame


def draw_held(puppet, c, f, name):
    """f: at the hand, x along the thing."""
    R = puppet.ramps
    if name == "ladle":
        ladle(c, f, R)
    elif name == "spoon":
        spoon(c, f, R)
    elif name == "mace":
        c.group([(f.cap(-8, 0, 2.2, 26, 0, 2.0), R["wood"])])
        c.group([(f.ell(32, 0, 9.5, 9.0), R["copper"])])
        c.group([(f.ell(32, 0, 4.0, 9.4), R["brass"])], outline=0)
        for x, y in ((26, -4), (38, -4), (26, 4), (38, 4)):
            c.put(*f.p(x, y), R["brass"][4])


def ladle(c, f, R):
    c.group([(f.cap(-5, 0, 1.3, 20, 0, 1.3), R["wood"])])
    c.group([(f.ell(24, 1.5, 5.4, 5.0), R["steel"])])
    c.flat(f.ell(23.6, 0.4, 3.2, 2.4), R["steel"][1])


def spoon(c, f, R):
    c.group([(f.cap(-2, 0, 0.9, 8, 0, 0.8), R["steel"])])
    c.group([(f.ell(11, 0, 3.2, 2.2), R["steel"])])
    c.put(*f.p(11, -0.6), R["steel"][4])


def palette_box():
    """The shared palette of all things."""
    from cast import Person

    class Box(Person):
        materials = (("ink", "ink"), ("wood", "wood"), ("steel", "steel"), ("cream", "cream"), ("red", "red"),
                     ("brass", "brass"), ("copper", "copper"), ("teal", "teal"), ("white", "white"), ("grey", "grey"),
                     ("green", "green"), ("brown", "brown"), ("glow", "glow"), ("fire", "mustard"), ("slate", "slate"))
    return Box()


def sprites():
    """All props: path below data/chars -> list of canvases of one size, and the palette."""
    box = palette_box()
    R = box.ramps
    out = {}

    def add(path, size, count, draw):
        frames = []
        for i in range(count):
            c = Canvas(*size)
            draw(c, i)
            frames.append(c)
        out[path] = frames

    # Food --------------------------------------------------------------------------------------
    def bun(c, i):
        f = Frame(16, 24 - (0, 0, 1, 0)[i % 4])
        c.group([(f.poly([(-10, 0), (-11, -5), (-6, -11), (0, -13), (6, -11), (11, -5), (10, 0)], 8), R["cream"])])
        for k in (-4, 0, 4):
            c.line(*f.p(k * 0.3, -12), *f.p(k, -7), R["cream"][1])
        c.flat(f.ell(0, -11.5, 1.6, 1.2), R["red"][3])
        steam(c, 16, 8, i, 1)

    def steam(c, x, y, i, n):
        for k in range(n * 3):
            yy = y + 3 - k * 3 - (i % 4) * 0.7
            xx = x + math.sin(k * 1.7 + i * 1.57) * 2.2
            if yy >= 0:
                c.put(xx, yy, R["white"][3])
                c.put(xx, yy - 1, R["white"][2])

    add("items/bun", (32, 28), 4, bun)

    def tea(c, i):
        f = Frame(18, 28)
        c.group([(f.cap(9, -9, 2.6, 13, -13, 2.0), R["teal"])])
        c.group([(f.ell(-12, -8, 3.6, 4.4), R["teal"])])
        c.group([(f.ell(-12, -8, 1.6, 2.4), R["slate"])], outline=0)
        c.group([(f.poly([(-9, 0), (-11, -7), (-7, -14), (0, -16), (7, -14), (10, -7), (8, 0)], 8), R["teal"])])
        c.group([(f.ell(0, -15.5, 5, 1.8), R["brass"]), (f.ell(0, -18, 1.8, 1.6), R["brass"])])
        for k in range(3):
            c.flat(f.ell(-4 + k * 4, -7, 1.3, 1.3), R["cream"][3])
        steam(c, 32, 10, i, 1)
    add("items/tea", (40, 32), 4, tea)

    def button(c, i):
        w = (6.5, 4.2, 1.2, 4.2)[i]
        f = Frame(10, 10)
        c.group([(f.ell(0, 0, w, 6.5), R["brass"])])
        if w > 2:
            c.group([(f.ell(0, 0, w * 0.62, 4), R["brass"])], outline=0, lift=-0.12)
            for sx in (-1, 1):
                for sy in (-1, 1):
                    c.put(10 + sx * w * 0.25, 10 + sy * 1.7, R["ink"][0])
    add("items/button", (20, 20), 4, button)
    add("items/ladle", (44, 22), 1, lambda c, i: ladle(c, Frame(9, 11, 8), R))

    def spoons(c, i):
        for a in (-60, -40, -75):
            spoon(c, Frame(14, 24, a), R)
        f = Frame(14, 27)
        c.group([(f.poly([(-7, 0), (-8, -9), (8, -9), (7, 0)], 4), R["red"])])
        c.group([(f.poly([(-8, -7.4), (8, -7.4), (8, -9), (-8, -9)], 3, False), R["cream"])], outline=0)
    add("items/spoons", (30, 30), 1, spoons)

    # Street furniture ----------------------------------------------------------------------------
    def crate(c, i):
        dx, broken = (0, 2, -1)[i] if i < 3 else 0, i
        f = Frame(28 + dx, 54)
        w, h = 19, 34
        c.group([(f.poly([(-w, 0), (-w, -h), (w, -h), (w, 0)], 5, False), R["wood"])], dither=0.02)
        for k in range(4):
            y = -h + 4 + k * 9
            c.line(*f.p(-w + 1, y + 7), *f.p(w - 1, y + 7), R["wood"][0])
            for x in range(-w + 3, w - 2, 5):
                c.line(*f.p(x + (k % 2) * 2, y + 3), *f.p(x + 2 + (k % 2) * 2, y + 3), R["wood"][2])
        for x0 in (-w, w - 6):
            c.group([(f.poly([(x0, 0), (x0, -h), (x0 + 6, -h), (x0 + 6, 0)], 3, False), R["wood"])], dither=0.02, lift=0.03)
            for y in (-4, -h + 4):
                c.put(*f.p(x0 + 3, y), R["steel"][1])
        c.group([(f.poly([(-w, -h), (-w + 6, -h - 8), (w + 6, -h - 8), (w, -h)], 3, False), R["wood"])], lift=0.16, dither=0.02)
        c.group([(f.poly([(w, 0), (w, -h), (w + 6, -h - 8), (w + 6, -7)], 3, False), R["wood"])], lift=-0.22, dither=0.02)
        # a leaf, the mark of the tea houses
        c.group([(f.poly([(-8, -14), (-2, -23), (7, -22), (6, -14), (-1, -11)], 4), R["green"])], outline=0.8)
        c.line(*f.p(-8, -13), *f.p(5, -20), R["green"][1])
        if i == 2:
            for k in range(5):
                c.line(*f.p(-10 + k * 2, -h + k * 4), *f.p(-4 + k * 3, -h + 6 + k * 4), R["ink"][0])

    add("street/crate", (64, 60), 3, crate)

    def splinters(c, i):
        k = 1.0 + i * 1.1
        for n in range(9):
            a = math.radians(200 + n * 35)
            x, y = 40 + math.cos(a) * 9 * k, 44 + math.sin(a) * 8 * k + i * i * 2.2
            f = Frame(x, y, n * 47 + i * 70)
            c.group([(f.poly([(-7, -2), (6, -2.6), (8, 1), (-6, 2.4)], 2, False), R["wood"])], outline=0.8)
    add("street/splinters", (80, 80), 4, splinters)

    def barrel(c, i):
        dx = (0, 2, -1)[i]
        f = Frame(22 + dx, 50)
        c.group([(f.poly([(-12, 0), (-16, -10), (-16.5, -20), (-15, -30), (-12, -38), (12, -38), (15, -30), (16.5, -20), (16, -10), (12, 0)], 13), R["brown"])])
        for x in (-9, -3, 3, 9):
            for y in range(-36, 0):
                c.put(*f.p(x * (1 + 0.25 * math.sin(-y / 38 * math.pi)), y), R["brown"][1])
        for y in (-31, -19, -7):
            c.group([(f.poly([(-16.6, y - 2), (0, y - 0.6), (16.6, y - 2), (16.6, y + 1.4), (0, y + 2.8), (-16.6, y + 1.4)], 4, False), R["steel"])], outline=0.6)
        c.group([(f.ell(0, -38, 12, 3), R["wood"])], lift=0.1)
    add("street/barrel", (46, 54), 3, barrel)

    def pallet(c, i):
        """Stacked freight: the top is a platform."""
        f = Frame(60, 92)
        for k, (x0, x1, y0, y1) in enumerate(((-46, -2, -34, 0), (2, 46, -34, 0))):
            c.group([(f.poly([(x0, y1), (x0, y0), (x1, y0), (x1, y1)], 5, False), R["wood"])], dither=0.02)
            for n in range(1, 4):
                c.line(*f.p(x0 + 1, y0 + n * 8), *f.p(x1 - 1, y0 + n * 8), R["wood"][0])
            c.line(*f.p(x0 + 3, y0 + 2), *f.p(x1 - 3, y1 - 2), R["wood"][1])
            c.line(*f.p(x0 + 4, y0 + 2), *f.p(x1 - 2, y1 - 2), R["wood"][4])
        c.group([(f.poly([(-48, -34), (-32, -52), (50, -52), (48, -34)], 4, False), R["teal"])], lift=0.08)
        for n in range(6):
            c.line(*f.p(-40 + n * 15, -36), *f.p(-28 + n * 15, -50), R["teal"][1])
        c.group([(f.poly([(46, 0), (46, -34), (52, -52), (54, -16)], 3, False), R["wood"])], lift=-0.2)
        for x in (-46, 0, 44):
            c.line(*f.p(x, -34), *f.p(x, 0), R["slate"][1])
            c.line(*f.p(x + 1, -34), *f.p(x + 1, 0), R["slate"][4])
    add("street/pallet", (120, 96), 1, pallet)

    def sign(c, i):
        """The gate at the end of the row: an arrow of lamps that runs."""
        f = Frame(24, 84)
        c.group([(f.cap(0, 0, 2.4, 0, -60, 2.0), R["slate"])])
        c.group([(f.poly([(-18, -52), (8, -52), (8, -57), (22, -47), (8, -37), (8, -42), (-18, -42)], 4, False), R["red"])])
        for k in range(5):
            on = (k + i) % 4 == 0
            c.flat(f.ell(-14 + k * 6, -47, 1.8, 1.8), R["glow"][2 if on else 1])
    add("street/sign", (50, 88), 4, sign)

    # Flying things -----------------------------------------------------------------------------
    add("shots/spoon", (32, 32), 4, lambda c, i: spoon(c, Frame(16 - 4 * math.cos(i * math.pi / 2), 16 - 4 * math.sin(i * math.pi / 2), i * 90), R))

    def pot(c, i):
        f = Frame(16, 17, i * 90)
        c.group([(f.ell(0, 1, 8.5, 8), R["copper"])])
        c.group([(f.ell(0, -6, 5, 1.8), R["brass"]), (f.ell(0, -8.6, 1.8, 1.6), R["brass"])])
        c.group([(f.cap(8, -1, 1.8, 12, -5, 1.3), R["copper"])])
        c.flat(f.ell(-2.5, -1.5, 1.6, 2.2, 20), R["copper"][4])
        if i % 2:
            c.put(*f.p(13, -7), R["white"][3])
    add("shots/pot", (34, 34), 4, pot)

    def cloud(c, x, y, r, tone, seed=0):
        shapes = []
        for n in range(6):
            a = n * 1.047 + seed
            shapes.append((Ellipse(x + math.cos(a) * r * 0.55, y + math.sin(a) * r * 0.42, r * 0.55, r * 0.5), R[tone]))
        shapes.append((Ellipse(x, y, r * 0.7, r * 0.62), R[tone]))
        c.group(shapes, dither=0.12, lift=0.06)

    def gust(c, i):
        cloud(c, 24, 20, 11 + i, "white", i * 0.6)
        cloud(c, 11 - i, 23, 5, "white", i)
        cloud(c, 13, 14 - i, 4, "white", i)
        c.arc(24, 20, 15, -60, 60, 4, (R["glow"][1], R["glow"][2]))
    add("shots/gust", (46, 40), 3, gust)

    def blast(c, i):
        r = (10, 19, 24, 24, 20, 14)[i]
        cloud(c, 36, 36 - i * 2, r, "fire" if i < 3 else "white", i * 0.9)
        if i < 3:
            cloud(c, 36, 37 - i * 2, r * 0.55, "cream", i)
        if i > 3:
            for y in range(72):
                for x in range(72):
                    if BAYER[y & 3][x & 3] < (0, 0, 0, 0, 6, 11)[i]:
                        c.px[y * 72 + x] = 0
    add("shots/blast", (72, 72), 6, blast)

    # Effects -----------------------------------------------------------------------------------
    def star(c, i, colours, big):
        n, r = 8, big * (0.5, 1.0, 0.85, 0.6)[i]
        for k in range(n):
            a = k * 2 * math.pi / n + 0.3 + i * 0.12
            long = r if k % 2 == 0 else r * 0.6
            f = Frame(24, 24, math.degrees(a))
            w = (3.4, 3.0, 1.8, 0.9)[i]
            c.flat(f.poly([(long * (0, .1, .45, .7)[i], -w), (long, 0), (long * (0, .1, .45, .7)[i], w)], 2, False), colours[0])
        for k in range(n):
            a = k * 2 * math.pi / n + 0.3 + i * 0.12
            long = r * (0.8 if k % 2 == 0 else 0.45)
            f = Frame(24, 24, math.degrees(a))
            c.flat(f.poly([(long * (0, .2, .55, .8)[i], -1.4), (long, 0), (long * (0, .2, .55, .8)[i], 1.4)], 2, False), colours[1])
        if i < 2:
            c.flat(Ellipse(24, 24, r * 0.34, r * 0.34), colours[1])
    add("effects/flash", (48, 48), 4, lambda c, i: star(c, i, (R["fire"][3], R["glow"][2]), 21))
    add("effects/bflash", (48, 48), 4, lambda c, i: star(c, i, (R["teal"][3], R["white"][4]), 15))

    def clang(c, i):
        star(c, i, (R["red"][3], R["fire"][4]), 22)
        for k in range(6):
            a = k * 1.05 + 0.5
            d = 10 + i * 5
            c.put(24 + math.cos(a) * d, 24 + math.sin(a) * d * 0.8 + i, R["glow"][2])
    add("effects/spark", (48, 48), 4, clang)

    def dust(c, i):
        for sx in (-1, 1):
            cloud(c, 32 + sx * (8 + i * 5), 20 - i * 1.6, (5, 5.5, 4.5, 3)[i], "grey", i + sx)
        if i > 1:
            for y in range(c.h):
                for x in range(c.w):
                    if BAYER[y & 3][x & 3] < (0, 0, 5, 10)[i]:
                        c.px[y * c.w + x] = 0
    add("effects/dust", (64, 28), 4, dust)

    def puff(c, i):
        y = 20 + (0, -1, -2, -1)[i]
        cloud(c, 22, y, 10, "white", i * 0.4)
        cloud(c, 12 - i % 2, y + 8, 4, "white", i)
        f = Frame(22, y)
        for sx in (1, 6):
            c.flat(f.ell(sx, -1, 1.2, 1.8), R["ink"][0])
        c.line(*f.p(2, 3), *f.p(5, 3), R["ink"][3])
        c.put(*f.p(-1, 2), R["red"][4])
        c.put(*f.p(8, 2), R["red"][4])
    add("effects/puff", (44, 40), 4, puff)

    def kettle(c, i):
        """The Baron's helper: a kettle on three legs that boils over."""
        f = Frame(30, 50)
        b = (0, 1, 0, 2)[i]
        for x in (-9, 0, 9):
            c.group([(f.cap(x * 0.8, -8, 2.2, x * 1.2, -1, 1.8), R["slate"])])
        c.group([(f.poly([(-12, -6), (-15, -14), (-11, -25 - b), (0, -29 - b), (11, -25 - b), (15, -14), (12, -6)], 11), R["copper"])])
        c.group([(f.cap(13, -16, 3, 22, -25 - b, 2.2), R["copper"])])
        c.group([(f.ell(0, -29 - b, 7, 2.2), R["brass"]), (f.ell(0, -32 - b, 2, 2), R["brass"])])
        for sx in (-4, 6):
            c.flat(f.ell(sx, -18 - b, 2.6, 3.0), R["ink"][1])
            c.flat(f.ell(sx + 1, -17.4 - b, 1.2, 1.6), R["ink"][0])
            c.line(*f.p(sx - 3, -22 - b + (1 if sx < 0 else -1) * -1), *f.p(sx + 3, -22 - b + (1 if sx < 0 else -1)), R["ink"][0])
        if i > 1:
            cloud(c, 56 + i * 2, 22 - b, 6 + i, "white", i)
    add("foes/kettle", (76, 56), 4, kettle)
    return out, box


def icons(people):
    """Portraits for the status bar: heads cut from the puppets."""
    from rig import pose
    out = {}
    for name, p in people.items():
        for mood, suffix in (("n", ""), ("p", "_ko")):
            q = pose(face=mood, lean=0)
            c = p.render(q)
            head = p.solve(q)["head"]
            small = Canvas(26, 24)
            x0, y0 = int(head.x) - (11 if name != "baron" else 8), int(head.y) - 12
            for y in range(24):
                for x in range(26):
                    if 0 <= x0 + x < c.w and 0 <= y0 + y < c.h:
                        small.px[y * 26 + x] = c.px[(y0 + y) * c.w + x0 + x]
            ink = p.ramps["ink"][0]
            for x in range(26):
                small.px[x] = small.px[23 * 26 + x] = ink
            for y in range(24):
                small.px[y * 26] = small.px[y * 26 + 25] = ink
            out[name + suffix] = small
    return out


def shadow(size):
    """Ground shadows 1 to 6: flat dithered ellipses."""
    w, h = 14 + size * 9, 6 + size * 2
    c = Canvas(w, h)
    for y in range(h):
        for x in range(w):
            d = ((x + 0.5 - w / 2) / (w / 2)) ** 2 + ((y + 0.5 - h / 2) / (h / 2)) ** 2
            if d < 0.62 or (d < 1 and (x + y) % 2 == 0):
                c.px[y * w + x] = 1
    return c.picture([(255, 0, 255), (14, 10, 24)])
