"""The docks: a moonlit sky, the far bank, the water, the quay and the ferry."""
import math
import random

from painting import Paint, hexa, mix
from street import brick, lantern, planks, sign_board, teapot, tiles, windows

NIGHT = [(0.0, hexa("070b22")), (0.35, hexa("10204a")), (0.7, hexa("2a4a80")), (0.9, hexa("5c86a8")), (1.0, hexa("8cb4bc"))]
EDGE, FLOOR = 166, 178
GOLD = (255, 180, 90)


def sky():
    p = Paint(560, 136, seed=4)
    p.vertical(NIGHT)
    r = random.Random(12)
    for _ in range(120):
        x, y = r.randrange(560), int(r.random() ** 1.6 * 100)
        p.dot(x, y, mix(p.at(x, y), (240, 250, 255), 0.3 + r.random() * 0.6))
        if r.random() < 0.06:
            for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1)):
                p.dot(x + dx, y + dy, mix(p.at(x, y), (120, 150, 200), 0.5))
    p.glow(360, 50, 130, 100, (60, 80, 100), 0.9)
    p.ellipse(360, 50, 24, 24, hexa("fffbe6"), hexa("dfe6dc"))
    for x, y, d in ((352, 44, 6), (368, 56, 4.5), (364, 40, 3), (350, 58, 3)):
        p.ellipse(x, y, d, d * 0.85, hexa("d8dcd0"))
    for n in range(8):
        cx, cy, w = r.randrange(560), 24 + n * 12, 70 + r.randrange(120)
        for k in range(9):
            ex, ey, rx = cx + r.randrange(-w // 2, w // 2), cy + r.randrange(-3, 4), 14 + r.randrange(28)
            for y in range(int(ey - 5), int(ey + 6)):
                for x in range(int(ex - rx), int(ex + rx)):
                    d = ((x - ex) / rx) ** 2 + ((y - ey) / 5) ** 2
                    o = p.at(x, y)
                    if d < 1 and o:
                        near = max(0, 1 - math.hypot(x - 360, (y - 50) * 1.4) / 170)
                        p.dot(x, y, mix(o, mix(hexa("2c3c68"), hexa("c8d4d8"), near if y < ey else near * 0.4), 0.34 * (1 - d)))
    return p


def bank():
    p = Paint(520, 74, seed=5)
    r = random.Random(77)
    for x in range(520):                    # hills
        h = 20 + 10 * math.sin(x * 2 * math.pi / 520 * 3 + 1) + 7 * math.sin(x * 2 * math.pi / 520 * 7)
        p.rect(x, 74 - h, 1, h, hexa("22386a"), hexa("1c3058"))
    x = 0
    while x < 516:
        w = min(14 + r.randrange(20), 518 - x)
        h = 12 + r.randrange(22)
        p.rect(x, 74 - h, w, h, hexa("182a54"), hexa("122044"))
        p.poly([(x - 2, 74 - h), (x + w / 2, 66 - h), (x + w + 2, 74 - h)], hexa("14244a"))
        windows(p, x, 72 - h, w, h, r, hexa("142448"), 0.34, (6, 8))
        x += w + r.randrange(7)
    p.rect(428, 12, 9, 62, hexa("34507c"), hexa("1e3460"))
    p.rect(425, 6, 15, 7, hexa("fff0b0"))
    p.poly([(424, 6), (432, 0), (441, 6)], hexa("1a2c54"))
    p.glow(432, 9, 40, 20, (140, 110, 40), 0.9)
    p.rect(0, 72, 520, 2, hexa("0c1a38"))
    return p


def water():
    p = Paint(480, 62, seed=6)
    p.vertical([(0, hexa("6c94b0")), (0.16, hexa("34608c")), (0.5, hexa("1a3c68")), (1, hexa("0c2044"))])
    r = random.Random(31)
    for k in range(420):
        y = int(r.random() ** 1.3 * 62)
        t = y / 62
        w = int(3 + t * 13 * r.random())
        x = r.randrange(480)
        c = mix(p.at(0, y), hexa("b8dce0") if r.random() < 0.5 else hexa("061430"), 0.18 + 0.3 * r.random())
        for d in range(w):
            p.dot((x + d) % 480, y, c)
    for cx, c in ((40, "ffc070"), (120, "ffb060"), (196, "ffe0a0"), (290, "ffb060"), (352, "fff4d0"), (430, "ffd080")):
        for y in range(0, 56, 2):
            w = 2 + (y * 7 + cx) % 5 + y // 9
            x = cx + int(3 * math.sin(y * 0.6 + cx)) - w // 2
            k = 0.7 * (1 - y / 60)
            for d in range(w):
                p.dot(x + d, y, mix(p.at(x + d, y) or (0, 0, 0), hexa(c), k))
    return p


def quay_floor(p, seed, lights, tone=("6c5a58", "2c2430"), wet=True):
    """Planks along the quay, broader toward the viewer, wet and lamplit."""
    r = random.Random(seed)
    a, b = hexa(tone[0]), hexa(tone[1])
    p.rect(0, EDGE, p.w, FLOOR - EDGE, hexa("4c4048"), hexa("2a2230"))
    p.rect(0, EDGE, p.w, 2, hexa("8c7c80"))
    p.rect(0, FLOOR - 2, p.w, 2, hexa("120e1c"))
    for x in range(8, p.w, 48):
        p.rect(x, EDGE + 4, 4, 3, hexa("1c1824"))
    y, row = float(FLOOR), 0
    while y < p.h:
        high = 4.5 + 8.5 * (y - FLOOR) / (p.h - FLOOR)
        t = (y - FLOOR) / (p.h - FLOOR)
        base = mix(a, b, t ** 0.8)
        x = -r.randrange(60)
        while x < p.w:
            w = 70 + r.randrange(70)
            k = (r.random() - 0.5) * 0.24
            c = mix(base, (255, 220, 190), k) if k > 0 else mix(base, (0, 0, 12), -k)
            for yy in range(int(y), int(y + high)):
                if yy >= p.h:
                    break
                for xx in range(max(0, x), min(p.w, x + w)):
                    grain = math.sin(xx * 0.13 + yy * 2.1 + row) + math.sin(xx * 0.051 + yy * 4.0)
                    p.px[yy * p.w + xx] = mix(c, (0, 0, 10), 0.12) if grain > 1.1 else c
                e = int(y)
                if yy == e:
                    for xx in range(max(0, x), min(p.w, x + w)):
                        p.px[yy * p.w + xx] = mix(c, (170, 190, 220), 0.30)
            p.rect(x, y, 1, high, mix(base, (0, 0, 8), 0.6))
            p.rect(x + 3, y + high * 0.4, 1, 1, mix(base, (0, 0, 8), 0.6))
            p.rect(x + w - 4, y + high * 0.4, 1, 1, mix(base, (0, 0, 8), 0.6))
            x += w
        p.rect(0, int(y + high) - 1, p.w, 1, mix(base, (0, 0, 10), 0.7))
        y, row = int(y + high), row + 1
    rr = random.Random(seed + 1)
    for k in range(7 if wet else 0):        # puddles that hold the sky
        cx, cy, rx = rr.randrange(p.w), FLOOR + 14 + rr.randrange(70), 16 + rr.randrange(26)
        ry = rx * 0.16
        for yy in range(int(cy - ry), int(cy + ry) + 1):
            for xx in range(int(cx - rx), int(cx + rx) + 1):
                d = ((xx - cx) / rx) ** 2 + ((yy - cy) / ry) ** 2
                o = p.at(xx, yy)
                if d < 1 and o:
                    p.dot(xx, yy, mix(o, hexa("5c80a4") if yy < cy else hexa("28405c"), 0.42 if d < 0.8 else 0.2))
    for x, y, rad, c in lights:
        p.glow(x, FLOOR + 24, rad * 1.2, 30, mix(c, (0, 0, 0), 0.45), 0.7)


def post_lamp(p, x, lights, h=86):
    top = EDGE + 6 - h
    p.rect(x - 2, top, 4, h, hexa("2a2430"), hexa("1a1624"))
    p.rect(x - 2, top, 1, h, hexa("5a6480"))
    p.line(x, top + 3, x + 16, top + 3, hexa("2a2430"), 2)
    lantern(p, x + 15, top + 12, GOLD, 1.0)
    lights.append((x + 15, top + 18, 56, GOLD))


def rail(p, x0, x1):
    for x in range(x0, x1 + 1, 22):
        p.rect(x, EDGE - 20, 3, 24, hexa("54484c"), hexa("2e2630"))
        p.rect(x, EDGE - 20, 3, 1, hexa("9a8c88"))
    for y in (EDGE - 16, EDGE - 8):
        for x in range(x0, x1):
            sag = 2 * math.sin(((x - x0) % 22) / 22 * math.pi)
            p.rect(x, y + sag, 1, 2, hexa("a08868"))


def light_up(p, lights):
    for x, y, rad, c in lights:
        p.glow(x, y, rad, rad * 0.9, mix(c, (0, 0, 0), 0.25), 0.85, 2.2)


def freight(p, x, y, n, seed):
    r = random.Random(seed)
    for k in range(n):
        w, h = 26 + r.randrange(12), 18 + r.randrange(10)
        c = mix(hexa("7c5438"), hexa("5c4c4c"), r.random())
        p.rect(x, y - h, w, h, c, mix(c, (10, 8, 24), 0.5))
        p.rect(x, y - h, w, 2, mix(c, (200, 200, 220), 0.3))
        for q in range(0, w, 6):
            p.rect(x + q, y - h, 1, h, mix(c, (0, 0, 0), 0.4))
        p.line(x + 2, y - h + 3, x + w - 3, y - 3, mix(c, (0, 0, 0), 0.3), 2)
        x += w + 2


def barrels(p, x, y, n):
    for k in range(n):
        cx = x + k * 19
        p.ellipse(cx, y - 12, 9, 14, hexa("7a4c38"), hexa("2c1c28"))
        p.rect(cx - 8, y - 25, 16, 3, hexa("6c5a58"))
        for yy in (y - 19, y - 7):
            p.rect(cx - 9, yy, 18, 2, hexa("4c5468"))


def quay_a():
    p, lights = Paint(480, 272, seed=20), []
    # ticket booth
    planks(p, 34, 84, 96, 86, hexa("3c6468"), hexa("1c3040"), 3, 8)
    tiles(p, 24, 140, 64, 86, 12, hexa("7c3c48"), hexa("442438"))
    p.rect(48, 104, 46, 30, hexa("fff0b8"), hexa("e88c3c"))
    p.rect(70, 104, 2, 30, hexa("2c3c40"))
    p.ellipse(60, 124, 8, 10, hexa("3a2438"))
    p.ellipse(60, 114, 6, 6, hexa("3a2438"))
    p.rect(44, 134, 54, 4, hexa("a87848"), hexa("6c4830"))
    p.rect(104, 100, 20, EDGE - 100, hexa("2c4850"), hexa("182830"))
    p.rect(107, 104, 14, 18, hexa("ffd890"), hexa("d88840"))
    sign_board(p, "NIGHT FERRY", 80, 89, hexa("182838"), hexa("ffe0a0"))
    lights.append((70, 118, 60, GOLD))
    rail(p, 150, 470)
    post_lamp(p, 176, lights)
    post_lamp(p, 420, lights)
    p.ellipse(300, EDGE - 10, 11, 11, hexa("e8e0d0"))
    p.ellipse(300, EDGE - 10, 6, 6, hexa("24365c"))
    for a in (45, 135, 225, 315):
        p.rect(300 + 8.4 * math.cos(math.radians(a)) - 2, EDGE - 10 + 8.4 * math.sin(math.radians(a)) - 2, 5, 5, hexa("c84848"))
    freight(p, 340, EDGE + 6, 2, 8)
    barrels(p, 14, EDGE + 8, 1)
    light_up(p, lights)
    quay_floor(p, 201, lights)
    # the hole: near edge y 252 from 236 to 314, far edge y 226 from 236 to 328
    hole = [(236, 226), (328, 226), (314, 252), (236, 252)]
    p.poly(hole, hexa("050a1c"), hexa("0c2444"))
    for k in range(18):
        x, y = 240 + (k * 37) % 74, 232 + (k * 11) % 18
        p.rect(x, y, 5 + k % 4, 1, hexa("3c6c94") if k % 3 else hexa("8cb8c8"))
    for k in range(9):                      # broken plank ends
        x = 236 + k * 10.4
        p.poly([(x, 225), (x + 9, 225), (x + 7 - k % 3, 229 + k % 4 * 2), (x + 3, 228 + (k * 3) % 5)], hexa("7c6258"), hexa("3a2c30"))
        x = 236 + k * 8.8
        p.poly([(x, 254), (x + 8, 254), (x + 5, 249 - k % 3), (x + 2, 251)], hexa("50403c"))
    for y in range(226, 253):
        p.rect(235, y, 2, 1, hexa("1c1620"))
    p.rect(196, 214, 3, 22, hexa("5a3c30"))     # a trestle to warn
    p.rect(226, 214, 3, 22, hexa("5a3c30"))
    p.rect(190, 211, 44, 6, hexa("e8dcc0"))
    for k in range(5):
        p.poly([(191 + k * 9, 217), (196 + k * 9, 211), (200 + k * 9, 211), (195 + k * 9, 217)], hexa("c03c3c"))
    return p


def quay_b():
    p, lights = Paint(480, 272, seed=21), []
    rail(p, 200, 478)
    # crane behind the rail
    p.poly([(330, EDGE), (336, 60), (346, 60), (356, EDGE)], hexa("20304c"), hexa("16223c"))
    for y in range(66, EDGE, 12):
        p.line(334, y, 350, y + 12, hexa("38507c"))
        p.line(350, y, 334, y + 12, hexa("38507c"))
    p.line(340, 62, 438, 26, hexa("20304c"), 4)
    p.line(340, 62, 300, 74, hexa("20304c"), 4)
    p.rect(288, 70, 18, 14, hexa("2c3c58"))
    p.line(436, 28, 436, 96, hexa("506890"))
    p.rect(420, 96, 32, 24, hexa("8c6040"), hexa("54343c"))
    p.line(420, 96, 436, 86, hexa("a08868"))
    p.line(452, 96, 436, 86, hexa("a08868"))
    teapot(p, 436, 110, 1, hexa("d8b070"))
    p.ellipse(341, 58, 6, 6, hexa("ffe0a0"))
    lights.append((341, 58, 26, (255, 200, 120)))
    post_lamp(p, 236, lights)
    post_lamp(p, 470, lights, 80)
    light_up(p, lights)
    quay_floor(p, 202, lights)
    # the warehouse stands out to y 198, x 40 to 190
    brick(p, 40, 62, 150, 136, hexa("6c4850"), hexa("2c2034"), 5)
    tiles(p, 30, 200, 30, 64, 18, hexa("3c4c6c"), hexa("24304c"))
    p.rect(30, 64, 170, 3, hexa("141020"))
    planks(p, 84, 116, 62, 82, hexa("4c6c60"), hexa("20302c"), 9, 10)
    p.rect(80, 112, 70, 4, hexa("2c2434"))
    p.rect(114, 116, 2, 82, hexa("141c1c"))
    p.rect(108, 152, 4, 8, hexa("d8b060"))
    p.rect(118, 152, 4, 8, hexa("d8b060"))
    for x in (54, 158):
        p.rect(x - 2, 94, 22, 24, hexa("281c2c"))
        p.rect(x, 96, 18, 20, hexa("ffdc90"), hexa("d07838"))
        p.rect(x + 8, 96, 2, 20, hexa("281c2c"))
        p.rect(x, 105, 18, 2, hexa("281c2c"))
        p.glow(x + 9, 108, 30, 28, (120, 76, 30), 0.8)
    sign_board(p, "LEAVES & CO", 115, 76, hexa("1c2438"), hexa("ffe0a0"), 2)
    lantern(p, 72, 126, GOLD, 1.0)
    p.glow(72, 132, 44, 44, (150, 90, 40), 0.8)
    p.shade(36, 198, 158, 6, (2, 2, 12), 0.6, 0.1)
    p.glow(110, 214, 70, 20, (110, 70, 34), 0.7)
    return p


def boat(p, x, y, w, c, mast, lights, name=None):
    p.poly([(x, y - 30), (x + w, y - 34), (x + w - 12, y + 6), (x + 12, y + 6)], c, mix(c, (6, 8, 24), 0.55))
    p.line(x, y - 30, x + w, y - 34, mix(c, (255, 255, 240), 0.5), 2)
    p.line(x + 3, y - 24, x + w - 4, y - 27, mix(c, (0, 0, 0), 0.35))
    mx = x + w * 0.45
    p.rect(mx, y - mast, 3, mast - 30, hexa("6c5040"), hexa("3c2c34"))
    p.line(mx + 1, y - mast + 4, x + 4, y - 22, hexa("70809c"))
    p.line(mx + 1, y - mast + 4, x + w - 4, y - 26, hexa("70809c"))
    p.rect(mx - 26, y - 62, 56, 5, hexa("d8d0c0"), hexa("8c8ca0"))
    for k in range(6):
        p.rect(mx - 24 + k * 10, y - 62, 2, 6, hexa("6c6c80"))
    p.rect(x + w * 0.6, y - 48, 24, 16, mix(c, (255, 240, 220), 0.35), mix(c, (0, 0, 0), 0.2))
    p.rect(x + w * 0.6 + 5, y - 44, 6, 6, hexa("ffe0a0"))
    p.rect(x + w * 0.6 + 14, y - 44, 6, 6, hexa("ffe0a0"))
    lights.append((x + w * 0.6 + 12, y - 41, 24, GOLD))
    if name:
        p.text(name, x + w * 0.14, y - 26, mix(c, (255, 250, 230), 0.7))


def quay_c():
    p, lights = Paint(480, 272, seed=22), []
    boat(p, 18, EDGE, 130, hexa("8c3c44"), 118, lights, "PEKOE")
    boat(p, 196, EDGE + 2, 146, hexa("3c6c78"), 134, lights, "DARJEELING")
    boat(p, 380, EDGE, 120, hexa("a87840"), 108, lights, "ASSAM")
    rail(p, 2, 478)
    post_lamp(p, 168, lights)
    post_lamp(p, 356, lights)
    freight(p, 60, EDGE + 8, 3, 18)
    barrels(p, 286, EDGE + 8, 3)
    light_up(p, lights)
    quay_floor(p, 203, lights)
    for k in range(34):                     # a coil of rope
        a = k / 34 * 12.56
        p.rect(420 + math.cos(a) * (12 + k * 0.12), 190 + math.sin(a) * 4 - k * 0.18, 3, 2, hexa("b89868") if k % 2 else hexa("7c6448"))
    return p


def ferry():
    p, lights = Paint(480, 272, seed=23), []
    white = hexa("b8b0b4")
    # cabin
    p.rect(86, 66, 394, EDGE - 66, white, hexa("60648c"))
    for y in range(70, EDGE, 6):
        p.shade(86, y, 394, 1, (30, 30, 60), 0.22)
    p.rect(76, 58, 404, 9, hexa("a83c44"), hexa("6c2838"))
    p.rect(76, 66, 404, 2, hexa("3c2438"))
    p.rect(86, 118, 394, 4, hexa("a83c44"), hexa("702c3c"))
    for k in range(8):
        x = 108 + k * 46
        if k in (3,):
            continue
        p.ellipse(x, 92, 11, 11, hexa("9c7040"))
        p.ellipse(x, 92, 8.6, 8.6, hexa("fff0b8"), hexa("f0a050"))
        p.line(x - 5, 96, x + 3, 86, hexa("fffbe0"))
        lights.append((x, 92, 22, (130, 90, 50)))
    p.rect(234, 74, 36, EDGE - 74, hexa("7c4834"), hexa("4c2c2c"))
    p.rect(238, 80, 28, 30, hexa("ffe0a0"), hexa("e09048"))
    p.rect(251, 80, 2, 30, hexa("5c3428"))
    sign_board(p, "S.S. SAMOVAR", 370, 126, hexa("1c2438"), hexa("ffd870"), 1)
    # funnel shaped like a samovar
    p.poly([(296, 58), (300, 22), (336, 22), (340, 58)], hexa("d8a048"), hexa("8c5828"))
    p.rect(298, 26, 40, 4, hexa("a83c44"))
    p.rect(297, 50, 42, 4, hexa("a83c44"))
    p.ellipse(318, 21, 20, 4, hexa("f0c468"), hexa("6c4020"))
    teapot(p, 318, 42, 1.4, hexa("7c2c38"))
    for k in range(9):
        p.ellipse(318 + k * 6 + math.sin(k) * 4, 14 - k * 1.8, 9 + k, 4 + k * 0.5, mix(hexa("c8ccd8"), hexa("5c7090"), k / 9))
    # upper rail and lamps along the eaves
    for x in range(90, 480, 14):
        p.rect(x, 46, 2, 12, hexa("d8d0c0"))
    p.rect(86, 45, 394, 2, white)
    for k in range(9):
        x = 96 + k * 46
        lantern(p, x, 74, (255, 110, 70) if k % 2 else (255, 200, 100), 0.75)
        lights.append((x, 79, 18, (150, 80, 44)))
    # gangway and bollards at the left
    p.poly([(0, EDGE + 2), (60, EDGE - 12), (88, EDGE - 12), (88, EDGE + 2)], hexa("8c6848"), hexa("4c3834"))
    for x in range(4, 86, 10):
        p.line(x, EDGE + 1, x + 4, EDGE - 10, hexa("3c2c2c"))
    post_lamp(p, 40, lights, 100)
    rail(p, 92, 226)
    rail(p, 280, 478)
    light_up(p, lights)
    quay_floor(p, 204, lights, ("a07850", "4c3434"))
    # where the quay ends and the deck begins
    for y in range(FLOOR, 272):
        x = int(66 - (y - FLOOR) * 0.5)
        p.rect(0, y, x, 1, mix(hexa("5c4c50"), hexa("2a222c"), (y - FLOOR) / 94))
        p.rect(x, y, 4, 1, hexa("d8b060") if (y // 6) % 2 else hexa("2c2434"))
    return p


def bollard():
    p = Paint(54, 84, seed=24)
    iron = hexa("1a2030")
    p.rect(18, 30, 18, 48, hexa("3c4860"), iron)
    p.ellipse(27, 30, 14, 7, hexa("5c6c88"), hexa("28324a"))
    p.rect(18, 30, 2, 48, hexa("6c80a0"))
    for k in range(5):
        for x in range(14, 40):
            p.rect(x, 44 + k * 4 + 2 * math.sin((x - 14) / 26 * math.pi), 1, 3, hexa("b09060") if (x + k * 2) % 5 else hexa("6c5440"))
    p.rect(12, 76, 30, 6, iron)
    p.rect(12, 76, 30, 1, hexa("5c6c88"))
    return p


def front():
    p = Paint(640, 272, seed=25)
    dark, rim = hexa("060a18"), hexa("24365c")
    for x0 in (90, 470):
        p.rect(x0, 236, 18, 36, dark)
        p.rect(x0 - 3, 232, 24, 6, dark)
        p.rect(x0 - 3, 232, 24, 1, rim)
    for x in range(108, 470):
        y = 246 + 16 * math.sin((x - 108) / 362 * math.pi)
        p.rect(x, y, 1, 4, dark if (x // 3) % 2 else hexa("101a30"))
        p.dot(x, y, rim)
    p.poly([(540, 272), (548, 256), (616, 256), (624, 272)], dark)
    p.line(548, 256, 616, 256, rim)
    return p
