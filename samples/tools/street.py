"""Kettle Row: the sky, the roofs behind, and the row's three panels."""
import math
import random

from painting import Paint, hexa, mix

DUSK = [(0.0, hexa("1c1a44")), (0.28, hexa("3a2a66")), (0.52, hexa("7a3f7e")), (0.72, hexa("c65c74")), (0.88, hexa("f09060")), (1.0, hexa("ffcf7c"))]
LAMP = (255, 176, 84)
WARM = hexa("ffd27a")
BASE, KERB, ROAD = 168, 176, 181        # where walls end, the kerb begins, the road begins


def sky():
    p = Paint(560, 190, seed=4)
    p.vertical(DUSK, 0, 136)
    p.rect(0, 136, 560, 54, DUSK[-1][1])
    r = random.Random(11)
    for _ in range(70):                     # stars, only high up
        x, y = r.randrange(560), int(r.random() ** 2 * 80)
        p.dot(x, y, mix(p.at(x, y), (255, 250, 230), 0.35 + r.random() * 0.5))
    p.glow(400, 120, 240, 90, (70, 40, 14), 0.9)
    for n in range(9):                      # long clouds, lit from below
        cx, cy, w = r.randrange(560), 22 + n * 10 + r.randrange(8), 60 + r.randrange(110)
        for k in range(7):
            ex, ey, rx = cx + r.randrange(-w // 2, w // 2), cy + r.randrange(-2, 3), 14 + r.randrange(26)
            for y in range(int(ey - 4), int(ey + 5)):
                for x in range(int(ex - rx), int(ex + rx)):
                    d = ((x - ex) / rx) ** 2 + ((y - ey) / 4.5) ** 2
                    o = p.at(x, y)
                    if d < 1 and o:
                        p.dot(x, y, mix(o, hexa("ffb27a") if y > ey + 1 else hexa("5a3a78"), 0.28 * (1 - d)))
    p.ellipse(118, 46, 15, 15, hexa("ffeec4"), hexa("ffd49c"))
    p.ellipse(124, 42, 12, 12, p.at(140, 40))
    p.glow(116, 46, 60, 50, (70, 50, 50), 0.7)
    return p


def windows(p, x, y, w, h, r, tone, lit=0.45, cell=(7, 10)):
    for wy in range(y + 4, y + h - 6, cell[1]):
        for wx in range(x + 3, x + w - 5, cell[0]):
            if r.random() < lit:
                c = mix(hexa("ffb050"), hexa("ffe29a"), r.random())
                p.rect(wx, wy, 3, 4, c)
                p.dot(wx + 1, wy + 1, hexa("fff6cc"))
            else:
                p.rect(wx, wy, 3, 4, tone)


def towers():
    """Far off: the town on its hill, the great kettle tower in the middle."""
    p = Paint(480, 140, seed=5)
    r = random.Random(21)
    body, dark = hexa("52366c"), hexa("432b5e")
    x = 0
    while x < 480:
        w = 18 + r.randrange(26)
        h = 30 + r.randrange(44) + int(26 * math.exp(-((x - 250) / 110) ** 2))
        top = 140 - h
        p.rect(x, top, w, h, mix(body, hexa("8a4c74"), 0.1), hexa("7a4470"))
        p.poly([(x - 3, top), (x + w / 2, top - 9 - r.randrange(10)), (x + w + 3, top)], dark, body)
        if r.random() < 0.5:
            p.rect(x + w - 6, top - 12, 4, 12, dark)
        windows(p, x, top, w, h - 8, r, hexa("46306a"), 0.3, (8, 11))
        x += w - 3
    # the kettle tower: a round belly, spout and handle, and a thread of steam
    cx, top = 262, 22
    p.rect(cx - 12, top + 26, 24, 118, hexa("6a4276"), hexa("7a4470"))
    p.ellipse(cx, top + 20, 25, 18, hexa("a86a80"), hexa("543468"))
    p.poly([(cx + 18, top + 22), (cx + 40, top + 4), (cx + 44, top + 8), (cx + 24, top + 32)], hexa("8a5678"))
    for a in range(60, 300, 3):
        t = math.radians(a)
        p.rect(cx - 25 + math.cos(t) * 13, top + 18 - math.sin(t) * 13, 3, 3, hexa("6a4276"))
    p.rect(cx - 12, top - 2, 24, 5, hexa("9a6480"))
    p.ellipse(cx, top - 5, 4, 4, hexa("b87c88"))
    for k in range(5):
        p.rect(cx - 16 + k * 8, top + 18, 4, 5, hexa("ffd890"))
    windows(p, cx - 12, top + 44, 24, 60, r, hexa("46306a"), 0.8, (7, 12))
    return p


def roofs():
    """Nearer: steep roofs and chimneys, a darker band with more windows."""
    p = Paint(440, 156, seed=6)
    r = random.Random(33)
    x = -10
    while x < 440:
        w = 44 + r.randrange(36)
        top = 70 + r.randrange(34)
        wall = mix(hexa("3c2850"), hexa("4a2e4e"), r.random())
        p.rect(x, top, w, 156 - top, wall, hexa("2c2040"))
        apex = top - 22 - r.randrange(14)
        p.poly([(x - 5, top + 2), (x + w * 0.3, apex), (x + w * 0.7, apex), (x + w + 5, top + 2)], hexa("6a3c5c"), hexa("40284a"))
        for yy in range(int(apex) + 3, top, 4):
            for xx in range(x - 4, x + w + 4, 5):
                o = p.at(xx + (yy // 4 % 2) * 2, yy)
                if o and yy < top:
                    p.dot(xx + (yy // 4 % 2) * 2, yy, mix(o, (20, 14, 30), 0.4))
        p.line(x + w * 0.3, apex, x + w * 0.7, apex, hexa("b0607c"))
        cx = x + int(w * 0.6)
        p.rect(cx, apex - 14, 8, 18, hexa("4c2c48"), hexa("382444"))
        p.rect(cx - 1, apex - 16, 10, 3, hexa("7c4860"))
        for k in range(6):
            d = 2.4 - k * 0.25
            sx, sy = cx + 4 + math.sin(k * 1.1) * 2 + k * 1.2, apex - 19 - k * 3
            p.ellipse(sx, sy, d, d * 0.8, mix(hexa("8c5c80"), hexa("5c4080"), k / 6))
        windows(p, x + 2, top + 4, w - 4, 80, r, hexa("241a38"), 0.5, (11, 15))
        x += w - 2
    return p


def brick(p, x, y, w, h, a, b, seed):
    r = random.Random(seed)
    p.rect(x, y, w, h, a, b)
    for row, yy in enumerate(range(int(y), int(y + h), 4)):
        for xx in range(int(x) - (row % 2) * 4, int(x + w), 8):
            k = r.random()
            x0, x1 = max(x, xx), min(x + w, xx + 7)
            if x1 > x0 and k < 0.35:
                base = mix(a, b, (yy - y) / h)
                p.rect(x0, yy, x1 - x0, min(3, y + h - yy), mix(base, (255, 190, 140) if k < 0.16 else (12, 6, 24), 0.13))
        p.rect(x, yy + 3, w, 1, mix(mix(a, b, (yy - y) / h), (10, 6, 20), 0.28))


def planks(p, x, y, w, h, a, b, seed, step=9):
    r = random.Random(seed)
    p.rect(x, y, w, h, a, b)
    for xx in range(int(x), int(x + w), step):
        tone = r.random() * 0.16
        p.shade(xx, y, min(step, x + w - xx), h, (0, 0, 10), tone)
        p.shade(xx, y, 1, h, (8, 4, 16), 0.5)
        if xx + 1 < x + w:
            p.shade(xx + 1, y, 1, h, (255, 200, 140), 0.12)


def tiles(p, x0, x1, top, bottom, slope, a, b):
    """A strip of roof seen from the street: rows of round tiles."""
    for y in range(int(top), int(bottom)):
        t = (y - top) / max(1, bottom - top)
        s = slope * (1 - t)
        for x in range(int(x0 + s), int(x1 - s)):
            row = int((y - top) // 4)
            u = (x + (row % 2) * 3) % 6
            k = 0.0 if u in (2, 3) else 0.12 if u in (1, 4) else 0.3
            v = (y - top) % 4
            c = mix(mix(a, b, t), (12, 8, 24), k + (0.34 if v == 3 else 0))
            p.dot(x, y, mix(c, (255, 190, 150), 0.16) if v == 0 and u in (2, 3) else c)


def lit_window(p, x, y, w, h, frame, r, curtain=None):
    p.rect(x - 2, y - 2, w + 4, h + 4, mix(frame, (0, 0, 0), 0.45))
    p.rect(x - 1, y - 1, w + 2, h + 2, frame)
    p.rect(x, y, w, h, hexa("ffe6a0"), hexa("f09a48"))
    if curtain:
        for yy in range(h):
            d = int(w * (0.36 - 0.16 * math.sin(yy / h * math.pi * 0.9)))
            p.rect(x, y + yy, d, 1, mix(curtain, (255, 190, 100), 0.25))
            p.rect(x + w - d, y + yy, d, 1, mix(curtain, (20, 8, 20), 0.15))
    p.rect(x + w // 2, y, 1, h, frame)
    p.rect(x, y + h // 2, w, 1, frame)
    p.rect(x - 3, y + h + 1, w + 6, 2, mix(frame, (255, 220, 170), 0.3))
    p.rect(x - 3, y + h + 3, w + 6, 1, (26, 16, 30))


def teapot(p, x, y, s, c):
    dark, light = mix(c, (20, 8, 24), 0.45), mix(c, (255, 240, 210), 0.5)
    p.ellipse(x, y, 5 * s, 4 * s, c, dark)
    p.line(x + 4 * s, y, x + 7 * s, y - 3 * s, dark, max(1, int(s * 1.4)))
    for a in range(90, 270, 12):
        t = math.radians(a)
        p.dot(x - 5 * s + math.cos(t) * 2.4 * s, y - math.sin(t) * 2.6 * s, dark)
    p.rect(x - 2 * s, y - 4.4 * s, 4 * s, max(1, s), dark)
    p.dot(x, y - 5 * s, c)
    p.rect(x - 2.4 * s, y - 2 * s, max(1, s), max(1, s), light)


def shop_window(p, x, y, w, h, frame, r, goods):
    p.rect(x - 3, y - 3, w + 6, h + 8, mix(frame, (0, 0, 0), 0.5))
    p.rect(x - 2, y - 2, w + 4, h + 6, frame)
    p.rect(x, y, w, h, hexa("fff0b4"), hexa("e88a3c"))
    p.glow(x + w / 2, y + 6, w * 0.6, h * 0.7, (50, 44, 30), 0.8)
    colours = [hexa(c) for c in ("3a8c7c", "b83c44", "4468a8", "d8a03c", "e8dcc0", "7c4c8c")]
    for k in range(2):
        sy = y + h // 2 + k * (h // 2 - 2)
        p.rect(x, sy, w, 2, mix(frame, (30, 12, 10), 0.4))
        gx = x + 8
        while gx < x + w - 7:
            c = colours[r.randrange(6)]
            if goods == "tea":
                teapot(p, gx, sy - 5, 1, c)
                gx += 15 + r.randrange(4)
            elif goods == "buns":
                p.ellipse(gx, sy - 2.5, 5, 3.4, hexa("fff4dc"), hexa("d8a878"))
                if r.random() < 0.4:
                    p.ellipse(gx + 2, sy - 6, 5, 3.2, hexa("fff4dc"), hexa("d8a878"))
                gx += 11 + r.randrange(3)
            else:
                hh = 5 + r.randrange(6)
                p.rect(gx - 3, sy - hh, 6, hh, c, mix(c, (20, 10, 30), 0.4))
                p.rect(gx - 3, sy - hh, 6, 1, mix(c, (255, 255, 230), 0.5))
                p.rect(gx - 2, sy - hh + 2, 4, 2, hexa("f4e4c0"))
                gx += 9 + r.randrange(3)
    for k in range(1, 3):
        p.rect(x + w * k // 3, y, 1, h, frame)
    for k in range(h):                      # a slanting shine on the glass
        p.dot(x + 8 + (h - k) // 2, y + k, mix(p.at(x + 8 + (h - k) // 2, y + k) or frame, (255, 255, 255), 0.35))


def door(p, x, y, w, h, c, r):
    p.rect(x - 3, y - 3, w + 6, h + 3, mix(c, (0, 0, 0), 0.55))
    p.rect(x - 2, y - 2, w + 4, h + 2, mix(c, (255, 200, 140), 0.2))
    p.rect(x, y, w, h, c, mix(c, (10, 4, 20), 0.35))
    p.rect(x + 4, y + 4, w - 8, h // 3, hexa("ffdc90"), hexa("e89040"))
    p.rect(x + w // 2, y + 4, 1, h // 3, c)
    p.rect(x + 4, y + h // 2, w - 8, h // 2 - 6, mix(c, (0, 0, 0), 0.25))
    p.rect(x + 4, y + h // 2, w - 8, 1, mix(c, (255, 220, 180), 0.3))
    p.rect(x + w - 5, y + h // 2 - 2, 2, 3, hexa("ffd860"))
    p.rect(x - 5, y + h, w + 10, 3, hexa("7a6a78"), hexa("4c4058"))


def awning(p, x, y, w, d, a, b):
    for k in range(d):
        s = k * 0.5
        for xx in range(int(x - s), int(x + w + s)):
            stripe = int((xx - x + s) / ((w + 2 * s) / (w // 9))) % 2
            c = a if stripe else b
            p.dot(xx, y + k, mix(c, (20, 8, 30), 0.30 * k / d))
    s = d * 0.5
    n = w // 9
    for i in range(n):
        c = a if i % 2 else b
        x0 = x - s + i * (w + d) / n
        for k in range(5):
            wd = (w + d) / n
            inset = 0 if k < 3 else (1 if k == 3 else 2.6)
            p.rect(x0 + inset, y + d + k, wd - 2 * inset, 1, mix(c, (20, 8, 30), 0.38))
    p.shade(x - s, y + d + 5, w + d, 8, (10, 4, 20), 0.4, 0.0)


def sign_board(p, text, cx, y, a, ink, scale=1):
    from lettering import width
    w = width(text, scale) + 12
    h = 7 * scale + 8
    x = cx - w // 2
    p.rect(x - 1, y - 1, w + 2, h + 2, (24, 12, 24))
    p.rect(x, y, w, h, mix(a, (255, 230, 180), 0.12), mix(a, (0, 0, 0), 0.25))
    p.rect(x + 1, y + 1, w - 2, 1, mix(a, (255, 230, 180), 0.4))
    p.rect(x + 1, y + h - 2, w - 2, 1, mix(a, (0, 0, 0), 0.4))
    p.text(text, cx, y + 4, ink, scale, shadow=mix(a, (0, 0, 0), 0.6), centre=True)


def lantern(p, x, y, c, s=1.0):
    p.line(x, y - 8 * s, x, y, (30, 20, 30))
    p.rect(x - 3 * s, y - 1, 6 * s, 2, (50, 28, 24))
    p.ellipse(x, y + 6 * s, 6.2 * s, 6.4 * s, mix(c, (255, 255, 220), 0.55), c)
    for k in (-0.55, 0.0, 0.55):
        for yy in range(int(-5 * s), int(6 * s)):
            p.dot(x + k * 6 * s * math.sqrt(max(0, 1 - (yy / (6.4 * s)) ** 2)), y + 6 * s + yy, mix(c, (120, 20, 20), 0.25))
    p.ellipse(x - 1.5 * s, y + 5 * s, 2.2 * s, 2.8 * s, (255, 250, 214))
    p.rect(x - 3 * s, y + 12 * s, 6 * s, 2, (50, 28, 24))
    p.line(x, y + 13 * s, x, y + 17 * s, mix(c, (80, 20, 20), 0.3))


def string_of_lanterns(p, x0, y0, x1, y1, sag, n, colours, lights):
    px, py = x0, y0
    for i in range(1, 41):
        t = i / 40
        x, y = x0 + (x1 - x0) * t, y0 + (y1 - y0) * t + sag * 4 * t * (1 - t)
        p.line(px, py, x, y, (34, 22, 38))
        px, py = x, y
    for i in range(n):
        t = (i + 0.5) / n
        x, y = x0 + (x1 - x0) * t, y0 + (y1 - y0) * t + sag * 4 * t * (1 - t)
        c = colours[i % len(colours)]
        lantern(p, x, y + 4, c, 0.8)
        lights.append((x, y + 9, 30, c))


def ground(p, lights, reflect, seed, x_shift=0):
    """Pavement, kerb and wet cobbles that hold the lights upside down."""
    r = random.Random(seed)
    p.rect(0, BASE, p.w, KERB - BASE, hexa("5a4a62"), hexa("6e5a6c"))
    for x in range(0, p.w, 24):
        p.line(x + 4, BASE, x, KERB, hexa("443850"))
    p.rect(0, BASE, p.w, 2, hexa("2c2238"))
    p.rect(0, KERB, p.w, 2, hexa("9c8488"))
    p.rect(0, KERB + 2, p.w, 3, hexa("2e2440"))
    stone = {}
    rows, y, row = {}, float(ROAD), 0           # rows of stones grow toward the viewer
    while y < p.h:
        high = 3.2 + 5.4 * (y - ROAD) / (p.h - ROAD)
        for yy in range(int(y), int(y + high)):
            rows[yy] = (row, high * 2.3, yy == int(y), yy == int(y + high) - 1)
        y, row = int(y + high), row + 1
    for y in range(ROAD, p.h):
        t = (y - ROAD) / (p.h - ROAD)
        row, wide, top, edge = rows[y]
        base = mix(hexa("4a3e5c"), hexa("251e36"), t * 0.9)
        for x in range(p.w):
            place = (x + row * 37 % 23 + (row % 2) * wide * 0.5) / wide
            col = int(place)
            key = (row, col)
            tone = stone.get(key)
            if tone is None:
                tone = stone[key] = r.random()
            c = mix(base, (124, 104, 128), 0.05 + 0.13 * tone)
            side = int(place + 1 / wide) != col
            # the mirror: the facade above, stretched, broken by the stones
            wob = int(2.2 * math.sin(y * 0.9 + tone * 5) + (tone - 0.5) * 5)
            sy = BASE - 4 - int((y - ROAD) * 1.55)
            o = reflect(x + wob, sy)
            if o:
                lum = (o[0] * 3 + o[1] * 4 + o[2]) / 8
                k = 0.10 + 0.50 * max(0.0, (lum - 70) / 185) * (1 - 0.45 * t)
                c = mix(c, o, k * (0.65 + 0.7 * tone))
            if top:
                c = mix(c, (190, 150, 150), 0.16 + 0.12 * tone)
            if edge or side:
                c = mix(c, (10, 6, 22), 0.55)
            p.px[y * p.w + x] = c
    for x, y, rad, c in lights:
        p.glow(x, ROAD + 22, rad * 0.9, 24, mix(c, (0, 0, 0), 0.55), 0.55)


def finish(p, lights, seed):
    base = list(p.px)

    def reflect(x, y):
        if 0 <= y < BASE:
            return base[y * p.w + int(x) % p.w]
        return None
    for x, y, rad, c in lights:
        p.glow(x, y, rad, rad * 0.9, mix(c, (0, 0, 0), 0.35), 0.85, 2.4)
    base = list(p.px)
    ground(p, lights, reflect, seed)
    return p


def facade(p, x, w, top, r, wall, style, roof, lights, name=None, goods="tea", awn=None, floors=1, board=None):
    """One house of the row."""
    if style == "brick":
        brick(p, x, top, w, BASE - top, wall, mix(wall, (24, 12, 36), 0.45), r.randrange(999))
    elif style == "wood":
        planks(p, x, top, w, BASE - top, wall, mix(wall, (24, 12, 36), 0.45), r.randrange(999))
    else:
        p.rect(x, top, w, BASE - top, wall, mix(wall, (40, 20, 50), 0.4))
        p.speckle(x, top, w, BASE - top, 16, r.randrange(999))
        beam = mix(wall, (40, 16, 24), 0.78)
        for bx in (x, x + w - 5):
            p.rect(bx, top, 5, BASE - top, beam, mix(beam, (0, 0, 0), 0.3))
        p.rect(x, top + (BASE - top) // 3, w, 4, beam)
        p.line(x + 5, top + 4, x + w // 2 - 14, top + (BASE - top) // 3, beam, 3)
        p.line(x + w - 6, top + 4, x + w // 2 + 14, top + (BASE - top) // 3, beam, 3)
    # roof and its shadow
    rh = 24
    tiles(p, x - 7, x + w + 7, top - rh, top + 3, 11, roof, mix(roof, (20, 10, 34), 0.4))
    p.rect(x - 7, top + 3, w + 14, 2, (26, 14, 30))
    p.shade(x, top + 5, w, 9, (10, 5, 24), 0.55, 0.0)
    # upper windows
    for f in range(floors):
        wy = top + 16 + f * 34
        n = max(1, w // 52)
        for k in range(n):
            wx = x + int(w * (k + 0.5) / n) - 9
            lit = r.random() < 0.75
            if lit:
                lit_window(p, wx, wy, 18, 20, mix(wall, (50, 24, 24), 0.6), r, (hexa("8c3c50"), hexa("3c6c78"), hexa("a87838"))[r.randrange(3)])
                lights.append((wx + 9, wy + 12, 22, (150, 96, 40)))
            else:
                lit_window(p, wx, wy, 18, 20, mix(wall, (50, 24, 24), 0.6), r)
                p.rect(wx, wy, 18, 20, hexa("38305c"), hexa("241c40"))
                p.line(wx + 3, wy + 15, wx + 12, wy + 3, hexa("6c6494"))
                p.rect(wx + 9, wy, 1, 20, mix(wall, (50, 24, 24), 0.6))
            if r.random() < 0.4:                # flower box
                p.rect(wx - 2, wy + 20, 22, 4, hexa("7a4428"), hexa("4c2820"))
                for q in range(9):
                    p.rect(wx - 1 + q * 2.4, wy + 17 + r.randrange(3), 2, 3, (hexa("4c8c4c"), hexa("d85a6c"), hexa("3c7044"))[r.randrange(3)])
    # the shop
    sy = BASE - 58
    if board:
        sign_board(p, board[0], x + w // 2, sy - (18 if len(board) < 4 or board[3] == 1 else 26), hexa(board[1]), hexa(board[2]), board[3] if len(board) > 3 else 1)
    dw = 24
    left = r.random() < 0.5
    sw = w - dw - 34
    wx, dx = (x + 12, x + w - dw - 12) if left else (x + dw + 22, x + 12)
    shop_window(p, wx, sy + 10, sw, 34, mix(wall, (70, 34, 20), 0.6), r, goods)
    door(p, dx, sy + 8, dw, BASE - sy - 10, mix(roof, (30, 14, 30), 0.25), r)
    p.rect(x, BASE - 8, w, 8, mix(wall, (20, 10, 30), 0.6), mix(wall, (10, 5, 20), 0.75))
    lights.append((wx + sw / 2, sy + 28, 58, (140, 84, 30)))
    if awn:
        awning(p, wx - 4, sy, sw + 8, 11, hexa(awn[0]), hexa(awn[1]))


def hanging_pot(p, x, y, c, lights):
    p.line(x, y, x + 16, y, (30, 20, 30), 2)
    p.line(x, y + 8, x + 8, y, (30, 20, 30))
    p.line(x + 14, y, x + 14, y + 6, (30, 20, 30))
    teapot(p, x + 14, y + 13, 1.7, c)


def street_a():
    p = Paint(480, 272, seed=7)
    r, lights = random.Random(71), []
    facade(p, 0, 142, 56, r, hexa("a05848"), "brick", hexa("6a3c5c"), lights, goods="tea", awn=("c8424c", "f4e4c4"), board=("OOLONG & SONS", "3a2030", "ffdc8c"))
    # an alley with stairs and washing
    p.rect(142, 96, 46, BASE - 96, hexa("3a2c50"), hexa("241c38"))
    for k in range(9):
        p.rect(148 + k * 2, BASE - 6 - k * 7, 36 - k * 3, 7, mix(hexa("6a5a70"), hexa("40344c"), k / 9))
        p.rect(148 + k * 2, BASE - 6 - k * 7, 36 - k * 3, 1, hexa("9c8894"))
    p.line(142, 112, 188, 106, (20, 14, 26))
    for k, c in enumerate(("e8dcc0", "b04c58", "5a88a8", "e0b060")):
        p.rect(147 + k * 10, 112 - k, 8, 13 + k % 2 * 4, hexa(c), mix(hexa(c), (30, 16, 40), 0.4))
    facade(p, 188, 126, 40, r, hexa("dcb888"), "timber", hexa("3c5a6c"), lights, goods="books", board=("KETTLES MENDED", "204038", "bfe8c0"), floors=1)
    facade(p, 314, 166, 64, r, hexa("5c7470"), "wood", hexa("8c4c48"), lights, goods="buns", awn=("e0a040", "fff0cc"), board=("HOT BUNS", "7c2430", "ffe8b0", 1))
    hanging_pot(p, 142, 118, hexa("d89040"), lights)
    string_of_lanterns(p, 20, 56, 250, 58, 12, 7, [(255, 110, 70), (255, 190, 90)], lights)
    string_of_lanterns(p, 250, 58, 478, 66, 9, 6, [(255, 190, 90), (255, 110, 70)], lights)
    return finish(p, lights, 711)


def street_b():
    p = Paint(480, 272, seed=8)
    r, lights = random.Random(87), []
    facade(p, 0, 122, 74, r, hexa("7c4c6c"), "brick", hexa("4a4468"), lights, goods="tea", awn=("3c7c78", "e8f0d8"), board=("MINT MINT MINT", "1c3c38", "a8f0c8"))
    facade(p, 122, 190, 34, r, hexa("b87848"), "timber", hexa("5c3448"), lights, goods="tea", awn=("b83848", "ffe8c0"), floors=1, board=("THE LAST CUP", "2c1838", "ffd870", 2))
    # a little square with a tree and a bench
    p.rect(312, 150, 60, BASE - 150, hexa("6a4a58"), hexa("4c3850"))
    for y in range(152, BASE, 5):
        p.rect(312, y, 60, 1, hexa("3c2c44"))
    p.rect(338, 92, 7, 74, hexa("4c3034"), hexa("30202c"))
    rr = random.Random(5)
    for k in range(70):
        a, d = rr.random() * 6.28, rr.random() ** 0.6 * 34
        x, y = 342 + math.cos(a) * d * 1.1, 78 + math.sin(a) * d * 0.8
        c = mix(hexa("3a5c4c"), hexa("d87c50"), max(0, min(1, 0.5 - math.sin(a) * d / 60)) * rr.random())
        p.ellipse(x, y, 6, 4.6, c, mix(c, (16, 14, 34), 0.4))
    for k in range(26):
        a, d = rr.random() * 6.28, rr.random() ** 0.6 * 30
        p.rect(342 + math.cos(a) * d, 74 + math.sin(a) * d * 0.8, 2, 1, hexa("f0b070"))
    p.rect(318, 156, 44, 3, hexa("9c6438"), hexa("6c4028"))
    p.rect(322, 159, 3, 9, (36, 24, 30))
    p.rect(355, 159, 3, 9, (36, 24, 30))
    lantern(p, 326, 92, (255, 180, 90))
    lights.append((326, 98, 34, (255, 170, 90)))
    facade(p, 372, 108, 58, r, hexa("64708c"), "wood", hexa("6c4440"), lights, goods="books", board=("MAPS & LEAVES", "38283c", "f0d8a0"))
    string_of_lanterns(p, 60, 62, 330, 54, 12, 8, [(255, 190, 90), (255, 120, 80), (240, 150, 190)], lights)
    return finish(p, lights, 812)


def stall(p, x, y, lights):
    """The noodle stall that stands out into the road; y is its foot."""
    w, h = 104, 74
    p.rect(x + 4, y - 30, w - 8, 30, hexa("7c4430"), hexa("46242c"))
    for k in range(0, w - 8, 8):
        p.rect(x + 4 + k, y - 30, 1, 30, hexa("38202a"))
    p.rect(x, y - 34, w, 5, hexa("d09858"), hexa("8c5838"))
    for px in (x + 5, x + w - 8):
        p.rect(px, y - h + 8, 3, h - 40, hexa("4c2c2c"))
    p.rect(x + 8, y - h + 14, w - 16, h - 48, hexa("ffe0a0"), hexa("c86c34"))
    for k, c in enumerate(("b83c44", "f0e4c8", "3a7c74", "d8a040", "f0e4c8", "7c4870")):
        teapot(p, x + 18 + k * 14, y - 39, 1.2, hexa(c))
    awning(p, x - 2, y - h, w + 4, 14, hexa("2c6c70"), hexa("f4e8cc"))
    sign_board(p, "NOODLES IN TEA", x + w // 2, y - 24, hexa("2c1830"), hexa("ffd870"))
    for k in range(14):
        t = k / 14
        p.ellipse(x + 30 + math.sin(k) * 4 + k, y - 42 - k * 3.2, 3 + k * 0.3, 2.2, mix(hexa("fff0d0"), hexa("a890a8"), t))
    for dx in (6, w - 6):
        lantern(p, x + dx, y - h + 20, (255, 90, 60), 0.9)
        lights.append((x + dx, y - h + 26, 34, (255, 110, 60)))


def street_c():
    p = Paint(480, 272, seed=9)
    r, lights = random.Random(95), []
    facade(p, 0, 136, 48, r, hexa("8c6048"), "wood", hexa("50405c"), lights, goods="books", awn=("4c5c9c", "e4e0d0"), board=("SPOONS", "402028", "f0d090", 2))
    # the gate to the harbour road
    p.rect(136, 70, 16, BASE - 70, hexa("5c5068"), hexa("3c3450"))
    p.rect(252, 70, 16, BASE - 70, hexa("5c5068"), hexa("3c3450"))
    for y in range(74, BASE, 9):
        p.rect(136, y, 16, 1, hexa("2c2440"))
        p.rect(252, y, 16, 1, hexa("2c2440"))
    tiles(p, 118, 286, 44, 62, 16, hexa("8c4048"), hexa("582c40"))
    p.rect(126, 62, 152, 9, hexa("7c3c40"), hexa("4c2434"))
    sign_board(p, "KETTLE ROW", 202, 74, hexa("3c1c2c"), hexa("ffd870"), 1)
    p.rect(152, 71, 100, BASE - 71, hexa("4c3a60"), hexa("30264a"))
    sign_board(p, "KETTLE ROW", 202, 74, hexa("3c1c2c"), hexa("ffd870"), 1)
    for k in range(5):
        windows(p, 154 + k * 20, 100 + k % 2 * 12, 18, 50, r, hexa("2c2244"), 0.5)
    facade(p, 268, 120, 66, r, hexa("a8645c"), "brick", hexa("3c5468"), lights, goods="buns", awn=("d87c3c", "fff0d0"), board=("SOUP UNTIL LATE", "2c2840", "f8d8a0"))
    facade(p, 388, 92, 40, r, hexa("cca078"), "timber", hexa("6c3850"), lights, goods="tea", board=("CHAI", "283c2c", "f0e0a0", 2))
    string_of_lanterns(p, 2, 62, 140, 62, 8, 4, [(255, 150, 80), (255, 210, 110)], lights)
    string_of_lanterns(p, 268, 60, 470, 62, 10, 6, [(255, 110, 70), (255, 190, 90)], lights)
    finish(p, lights, 913)
    extra = []
    stall(p, 148, 192, extra)
    for x, y, rad, c in extra:
        p.glow(x, y, rad, rad, mix(c, (0, 0, 0), 0.4), 0.8)
    p.shade(150, 192, 100, 6, (6, 4, 18), 0.6, 0.1)
    return p


def lamp():
    """A street lamp that stands among the actors."""
    p = Paint(60, 160, seed=10)
    iron, light = hexa("2a2438"), hexa("5c5470")
    p.rect(27, 34, 6, 112, iron)
    p.rect(28, 34, 1, 112, light)
    p.poly([(20, 152), (24, 140), (36, 140), (40, 152)], iron)
    p.rect(18, 150, 24, 5, iron)
    p.rect(18, 150, 24, 1, light)
    p.rect(24, 62, 12, 3, iron)
    for s in (-1, 1):
        for k in range(20):
            t = k / 19
            p.rect(29 + s * 14 * math.sin(t * 1.57), 48 - 14 * (1 - math.cos(t * 3.14)) / 2 * 0.8, 2, 2, iron)
    p.poly([(22, 34), (19, 14), (41, 14), (38, 34)], hexa("fff2bc"), hexa("ffb85c"))
    p.rect(29, 14, 2, 20, iron)
    p.poly([(16, 14), (30, 3), (44, 14)], iron)
    p.rect(29, 0, 2, 4, iron)
    p.line(24, 10, 30, 5, light)
    p.rect(20, 33, 20, 3, iron)
    # a notice
    p.rect(22, 84, 16, 20, hexa("e8dcc0"), hexa("b89c88"))
    for y in range(87, 102, 3):
        p.rect(24, y, 12 - y % 4, 1, hexa("4c3440"))
    return p


def front():
    """Nearest of all: awnings, crates and a cat, as dark shapes at the lower edge."""
    p = Paint(700, 272, seed=12)
    dark, rim = hexa("120c1e"), hexa("4a3048")

    def edge(points):
        p.poly(points, dark)
        for (ax, ay), (bx, by) in zip(points, points[1:]):
            if abs(by - ay) < abs(bx - ax) * 3:
                p.line(ax, ay, bx, by, rim)
    edge([(34, 272), (34, 259), (98, 259), (98, 272)])
    edge([(56, 259), (58, 249), (90, 249), (92, 259)])
    for x in (40, 52, 78):
        p.line(x, 260, x, 272, hexa("2a1c30"))
    edge([(430, 272), (436, 258), (560, 258), (566, 272)])
    p.ellipse(500, 254, 16, 9, dark)
    p.ellipse(515, 246, 7, 6, dark)
    p.poly([(509, 243), (510, 236), (514, 241)], dark)
    p.poly([(516, 241), (520, 236), (521, 243)], dark)
    for k in range(22):
        p.rect(484 - k * 0.8, 256 - math.sin(k / 7) * 9, 3, 3, dark)
    p.dot(517, 246, hexa("ffd860"))
    p.dot(513, 246, hexa("ffd860"))
    for k in range(12):
        p.line(640 + k * 3, 272, 634 + k * 4.4, 246 - (k * 7 % 11), dark, 2)
    return p
