"""The characters of Kettle Row, as puppets."""
import math

from raster import Capsule, Ellipse, Poly
from rig import Puppet

# From ink to highlight: shadows lean to violet, lights to yellow.
TONES = {
    "cream": "3a2a3e 85708a c4ad9e eddfc2 fffbe8",
    "teal": "0c2430 174858 1f6c70 38987f 7fd0a2",
    "slate": "12101c 2a2840 474860 6c7088 a2a8b4",
    "white": "342e48 8680a0 bebcd0 e9e8ec fffffb",
    "brown": "20121a 47282c 6c4038 94604a c08c62",
    "mustard": "42200e 8c4c18 cc8424 f4bc44 ffe88a",
    "red": "340a1a 701a2c b02c34 e25242 ff9068",
    "pink": "40202c 8c4654 c87072 ee9e8e ffccb4",
    "tan": "341c22 7a4a40 b4825a e0b27e fce0b0",
    "crimson": "2c0820 641034 a02044 d84454 ff8878",
    "navy": "0c0e22 1e2450 343e82 546cae 8aaad8",
    "grey": "1c1a24 46424e 6e6870 989090 c8beb4",
    "olive": "1a1c10 3c4020 626428 929040 c4c072",
    "green": "0c2418 1e5030 34803c 6cb24a b4de70",
    "belly": "40381c 8c7c3c c4b45c ece08c fffac4",
    "black": "08060e 181626 2c2c44 4a5070 8490b0",
    "blue": "08142c 143460 205c9c 3c90d0 88d0f4",
    "yellow": "46240a 9c5c14 dc9820 fccc3c fff29a",
    "steel": "141a24 3c4856 6c7c8a a4b4bc e8f4f4",
    "wood": "281410 5c3420 8c5830 bc8448 e4b878",
    "copper": "2e0e10 6c2a20 a8502c dc8444 ffc880",
    "brass": "30180a 74481a b07c28 e4b444 fff0a0",
    "wine": "220818 481028 701c3c 983450 c86478",
    "boar": "26141a 563034 84524a b07c66 d8ac8c",
    "glow": "3a1a20 ffd86a fffbe0",
    "ink": "0e0a14 fffdf4 2a1828 a8303c ff9a94",
}
# ink: outline, eye white, dark line, mouth, tongue


class Person(Puppet):
    materials = ()

    def colours(self):
        return {n: TONES[t] for n, t in self.materials}

    def ink(self, i):
        return self.ramps["ink"][i]

    def eye(self, c, h, x, y, face, size=2, slant=1):
        """A readable eye: white, pupil, brow; shut when hurt, arched when happy."""
        white, dark = self.ink(1), self.ink(0)
        if face == "p":
            for d in range(-1, 3):
                c.put(*h.p(x + d, y - abs(d - 0.5) * 0.8 + 0.5), dark)
            return
        if face == "h":
            for d in range(-1, 3):
                c.put(*h.p(x + d, y + abs(d - 0.5) * 0.9 - 1), dark)
            return
        px, py = h.p(x, y)
        px, py = int(px), int(py)
        for dy in range(-1, size):
            for dx in range(-1, 2):
                c.put(px + dx, py + dy, white)
        for dy in range(-1, size):
            c.put(px + 1, py + dy, dark)
            if size > 2 and dy > -1:
                c.put(px, py + dy, dark)
        for d in range(-2, 3):
            c.put(px + d, py - 2 - (1 if slant and d < -0 else 0) + (1 if face == "a" and d > 0 else 0), dark)


class Bramble(Person):
    """The badger who carries tea. Broad shoulders, apron, red kerchief."""
    materials = (("ink", "ink"), ("fur", "slate"), ("white", "white"), ("vest", "teal"), ("shirt", "cream"),
                 ("trousers", "brown"), ("apron", "mustard"), ("scarf", "red"), ("paw", "pink"), ("glow", "glow"),
                 ("steel", "steel"), ("wood", "wood"))
    size, origin = (132, 112), (62, 104)
    hip, torso, neck = 23.0, 19.0, 9.0
    shoulder_r, elbow_r, wrist_r, hand_r = 5.4, 4.6, 4.0, 5.0
    thigh_r, knee_r, ankle_r = 6.0, 4.8, 3.8
    near_shoulder, far_shoulder = (-6.5, 2.5), (6.5, 1.5)
    near_hip, far_hip = (-4.5, -1.0), (4.0, -1.0)
    upper, fore = 11.5, 12.0
    reach, girth = 1.08, 4.0
    foot = (9.0, 3.4)

    def draw_back(self, c, j):
        t = j["trunk"]
        q = j["q"]
        a = q["tail"]
        c.group([(t.cap(-9, -2, 4.2, -15, -1 - a * 0.25, 3.2), self.ramps["fur"]),
                 (t.cap(-15, -1 - a * 0.25, 3.0, -18, -3 - a * 0.4, 1.8), self.ramps["white"])])
        # kerchief ends fly behind
        s = q["sway"]
        c.group([(t.poly([(-6, -20), (-14 - s * 0.3, -22 + s * 0.4), (-17 - s * 0.5, -18 + s * 0.7), (-9, -17)], 3),
                  self.ramps["scarf"])])

    def draw_torso(self, c, j):
        t, q = j["trunk"], j["q"]
        R = self.ramps
        c.group([(t.poly([(-9.5, 2), (-11, -8), (-10.5, -17), (-6, -22), (5, -22), (9.5, -17), (10.5, -8), (9, 2)], 9),
                  R["shirt"])], owner=1)
        # open vest: two panels that leave the shirt in the middle
        c.group([(t.poly([(-10, 0), (-11.5, -9), (-11, -17), (-7, -22), (-2, -21), (0, -12), (-1, 0)], 6), R["vest"])],
                owner=2)
        c.group([(t.poly([(5, 0), (6, -11), (5, -20), (9, -18), (11, -9), (9.5, 0)], 4), R["vest"])], owner=2)
        # apron, swings with the step
        s = q["sway"] * 0.35
        c.group([(t.poly([(-9, -5), (9.5, -6), (10.5 + s, 5), (7 + s, 11), (-6 + s, 11), (-10 + s, 4)], 6), R["apron"])],
                owner=3)
        c.group([(t.poly([(-1.5 + s * .6, 2), (6.5 + s * .6, 1.5), (6 + s * .8, 7), (-1 + s * .8, 7)], 3), R["apron"])],
                outline=0.7, owner=3, lift=-0.06)
        for x in range(-9, 10):
            c.put(*t.p(x, -5 - (x + 9) * 0.05), R["apron"][1])
        # kerchief
        c.group([(t.poly([(-8, -20), (0, -23), (8, -20), (7, -17), (3, -13.5), (-1, -16), (-7, -17)], 3), R["scarf"])])

    def arm_looks(self, side):
        return {"upper": "shirt", "fore": "fur", "hand": "fur"}

    def dress_arm(self, c, j, side, f):
        e, s = j["el" + side], j["sh" + side]
        # rolled sleeve
        k = 0.78
        x, y = s[0] + (e[0] - s[0]) * k, s[1] + (e[1] - s[1]) * k
        c.group([(Capsule(x, y, 5.0, x + (e[0] - x) * 0.6, y + (e[1] - y) * 0.6, 5.0), self.ramps["shirt"])],
                lift=-0.02 if side == "n" else -0.12)

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        c.group([(h.ell(7, -8.5, 2.8, 3.2), R["fur"])])
        c.group([(h.ell(0, 0, 11.2, 9.8), R["white"]), (h.cap(6, 3, 6.4, 13, 4.6, 3.9), R["white"])], owner=10)
        c.group([(h.poly([(-2.5, 7.5), (3, 10.5), (-3, 10.5), (-10, 6), (-12, 0), (-10, -6), (-7, -2), (-6, 3)], 5), R["fur"])],
                outline=0, only=(10,), owner=10)
        stripe = R["fur"]
        c.group([(h.poly([(15, 1.4), (10, -1.2), (5, -5.8), (-2, -7.6), (-9, -6), (-10, 0), (-4, 2.6), (4, 2.2), (10, 2.4)], 5),
                  stripe)], outline=0, only=(10,), owner=10, lift=-0.06)
        c.group([(h.ell(-6.5, -9, 4.0, 4.4, -20), R["fur"])])
        c.flat(h.ell(-6, -8.6, 1.9, 2.3, -20), R["paw"][2])
        for a in range(-3, 3):
            c.put(*h.p(-6.5 + a, -13 + abs(a) * 0.6), R["white"][3])
        c.group([(h.ell(16.2, 2.6, 2.6, 2.2), R["fur"])], lift=-0.15)
        c.put(*h.p(15.6, 1.6), R["fur"][4])
        if face in ("a", "h"):
            c.flat(h.poly([(5, 6.6), (14, 6.2), (12, 11.5), (6, 10.6)], 2), self.ink(0))
            c.flat(h.poly([(6.4, 7.6), (13, 7.2), (11.4, 10.4), (7, 9.8)], 2), self.ink(3))
            c.line(*h.p(6.5, 7.2), *h.p(13, 6.8), self.ink(1))
        else:
            c.line(*h.p(5.5, 7.8), *h.p(13.8, 6.6), self.ink(2))
            if face == "p":
                c.line(*h.p(7, 8.8), *h.p(12, 8.2), self.ink(1))
        white, dark = self.ink(1), self.ink(0)
        if face in ("p", "h"):
            for d in range(-2, 3):
                c.put(*h.p(5.5 + d, -1.5 + (1 if face == "p" else -1) * (1 - abs(d) * 0.8)), white)
        else:
            x, y = h.p(6, -1.4)
            x, y = int(x), int(y)
            for dx in range(-1, 2):
                for dy in range(-1, 2):
                    c.put(x + dx, y + dy, white)
            for dy in range(-1, 2):
                c.put(x + 1, y + dy, dark)
            c.put(x, y, dark)
            for d in range(-2, 3):
                c.put(x + d, y - 2 + (1 if d > 0 else 0), R["fur"][1])


class Juniper(Person):
    """The hare who dances on roofs. Long ears, long scarf, short crimson jacket."""
    materials = (("ink", "ink"), ("fur", "tan"), ("belly", "cream"), ("jacket", "crimson"), ("trim", "mustard"),
                 ("trousers", "navy"), ("scarf", "teal"), ("nose", "pink"), ("glow", "glow"), ("steel", "steel"),
                 ("wood", "wood"))
    size, origin = (136, 124), (64, 116)
    hip, torso, neck = 27.0, 17.5, 8.5
    thigh, shin = 15.0, 14.0
    shoulder_r, elbow_r, wrist_r, hand_r = 3.9, 3.4, 2.9, 3.7
    thigh_r, knee_r, ankle_r = 5.4, 3.6, 2.8
    near_shoulder, far_shoulder = (-4.5, 2.2), (4.5, 1.6)
    near_hip, far_hip = (-3.0, 0.0), (3.0, 0.0)
    upper, fore = 10.5, 10.8
    foot = (11.0, 3.0)
    scarf_len = 24
    girth = 4.0

    def draw_back(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        s = q["sway"]
        c.group([(t.ell(-8, -1, 4.4, 4.2), R["belly"])])
        L = self.scarf_len
        pts_a = [(-2, -19), (-10, -20 + s * 0.2), (-L * 0.7, -18 + s * 0.7), (-L, -15 + s), (-L - 2, -10 + s),
                 (-L * 0.65, -13 + s * 0.7), (-9, -15 + s * 0.2), (-3, -15.5)]
        c.group([(t.poly(pts_a, 3), R["scarf"])])
        pts_b = [(-3, -17), (-9, -15), (-15, -9 + s * 0.6), (-17, -3 + s * 0.9), (-12, -4 + s * 0.7), (-8, -11), (-3, -14)]
        c.group([(t.poly(pts_b, 3), R["scarf"])], lift=-0.1)

    def draw_torso(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        s = q["sway"] * 0.4
        c.group([(t.poly([(-6, 3), (-7.5, -3), (-5.5, -9), (-7.5, -16), (-4, -20.5), (3.5, -20.5), (7.5, -16), (6, -9), (7.5, -2), (6, 3)], 7),
                  R["jacket"])], owner=1)
        # skirt of the jacket
        c.group([(t.poly([(-7, -5), (6.8, -5), (8.5 + s, 4), (6 + s, 6.5), (1 + s, 4.5), (-3 + s, 7), (-9 + s, 5)], 5),
                  R["jacket"])], owner=2)
        c.group([(t.poly([(-6.6, -7), (6.6, -8), (7, -4.2), (-7, -3.6)], 3), R["trim"])])
        c.group([(t.cap(5, -5, 2.2, 6 + s, 2, 1.2), R["trim"])], lift=-0.05)
        # lapel
        for k in range(12):
            c.put(*t.p(5.5 - k * 0.45, -18.5 + k), R["trim"][3])
            c.put(*t.p(4.5 - k * 0.45, -18.5 + k), R["trim"][1])
        # scarf wound round the neck
        c.group([(t.ell(0.5, -19.5, 7, 3.9), R["scarf"])])
        for k in range(-4, 5):
            c.put(*t.p(0.5 + k, -19.2 + k * 0.15), R["scarf"][1])

    def arm_looks(self, side):
        return {"upper": "jacket", "fore": "fur", "hand": "fur"}

    def leg_looks(self, side):
        return {"thigh": "trousers", "shin": "fur", "foot": "fur"}

    def dress_arm(self, c, j, side, f):
        e, h = j["el" + side], j["ha" + side]
        lift = 0 if side == "n" else -0.1
        c.group([(Capsule(e[0], e[1], 4.1, e[0] + (h[0] - e[0]) * 0.12, e[1] + (h[1] - e[1]) * 0.12, 4.2), self.ramps["trim"])], lift=lift)
        k0, k1 = 0.62, 0.86
        c.group([(Capsule(e[0] + (h[0] - e[0]) * k0, e[1] + (h[1] - e[1]) * k0, 3.1,
                          e[0] + (h[0] - e[0]) * k1, e[1] + (h[1] - e[1]) * k1, 3.1), self.ramps["belly"])], lift=lift)

    def dress_leg(self, c, j, side):
        k, a = j["knee" + side], j["ankle" + side]
        lift = 0 if side == "n" else -0.1
        c.group([(Capsule(k[0], k[1], 4.3, k[0] + (a[0] - k[0]) * 0.25, k[1] + (a[1] - k[1]) * 0.25, 4.2), self.ramps["trousers"])], lift=lift)
        c.group([(Capsule(k[0] + (a[0] - k[0]) * 0.62, k[1] + (a[1] - k[1]) * 0.62, 3.3,
                          k[0] + (a[0] - k[0]) * 0.9, k[1] + (a[1] - k[1]) * 0.9, 3.2), self.ramps["belly"])], lift=lift)

    def draw_ear(self, c, h, x, y, angle, lift):
        e = h.child(x, y, angle)
        R = self.ramps
        c.group([(e.poly([(-2.4, 1), (-4.4, -9), (-3.6, -19), (0, -26), (3.2, -19), (4.0, -9), (2.6, 1)], 4), R["fur"])], lift=lift)
        c.group([(e.poly([(-0.6, -3), (-2.0, -10), (-1.2, -18), (0.4, -21), (2.0, -17), (2.0, -10), (1, -3)], 3), R["nose"])],
                outline=0, lift=lift - 0.02)
        c.flat(e.poly([(-2.4, -20), (0, -26), (2.6, -20.5), (0, -22)], 3), R["fur"][1])

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        self.draw_ear(c, h, 1.5, -6, -12 - q["ear"], -0.12)
        c.group([(h.ell(0, 0, 9.0, 8.6), R["fur"]), (h.cap(4.5, 2.6, 5.6, 8.6, 3.4, 4.3), R["fur"])], owner=10)
        c.group([(h.poly([(5, 2.6), (10, 0.6), (14, 3), (12, 8), (5, 9), (0, 8)], 4), R["belly"])], outline=0, only=(10,), owner=10)
        c.group([(h.poly([(-8, 3), (-4, 3), (-3, 7), (-7, 8), (-10, 6)], 4), R["belly"])], outline=0, only=(10,), owner=10, lift=-0.06)
        # tuft
        c.group([(h.poly([(-2, -8), (3, -10.5), (6, -8), (4.5, -5), (1, -6)], 3), R["fur"])], outline=0.8, lift=0.05)
        self.draw_ear(c, h, -4, -6, -24 - q["ear"] * 1.3, 0.0)
        c.flat(h.ell(12.6, 1.2, 1.6, 1.2), R["nose"][3])
        c.put(*h.p(12.6, 2.4), R["nose"][1])
        if face in ("a", "h"):
            c.flat(h.poly([(6, 5.4), (11.6, 5), (10, 9), (6.8, 8.4)], 2), self.ink(0))
            c.flat(h.ell(8.8, 7.2, 1.6, 1.2), self.ink(3))
            c.put(*h.p(10.4, 5.6), self.ink(1))
        else:
            c.line(*h.p(7, 6), *h.p(11.6, 5), self.ink(2))
            c.put(*h.p(11, 6), self.ink(1))
        x, y = h.p(5, -1.2)
        x, y = int(x), int(y)
        white, dark = self.ink(1), self.ink(0)
        if face == "p":
            for d in (-2, -1, 0, 1, 2):
                c.put(x + d, y - abs(d) // 2 + 1, dark)
                c.put(x + d, y + abs(d) // 2 - 1, dark if abs(d) == 2 else c.get(x + d, y + abs(d) // 2 - 1))
        elif face == "h":
            for d in (-2, -1, 0, 1, 2):
                c.put(x + d, y - 1 + (1 if abs(d) == 2 else 0), dark)
        else:
            for dy in range(-2, 2):
                for dx in (-1, 0, 1):
                    c.put(x + dx, y + dy, white)
            for dy in range(-2, 2):
                c.put(x + 1, y + dy, dark)
            c.put(x, y - 1, dark)
            c.put(x, y, dark)
            for d in range(-2, 3):
                c.put(x + d, y - 3 + (1 if (face == "a") and d > 0 else 0), R["fur"][0])
            c.put(x + 2, y - 2, R["fur"][0])


class Nib(Person):
    """Alley rat: flat cap, striped jersey, bare tail."""
    materials = (("ink", "ink"), ("fur", "grey"), ("jersey", "cream"), ("stripe", "red"), ("cap", "olive"),
                 ("trousers", "slate"), ("skin", "pink"), ("glow", "glow"), ("steel", "steel"), ("wood", "wood"))
    size, origin = (124, 108), (58, 100)
    hip, torso, neck = 22.0, 17.5, 8.0
    thigh, shin = 12.0, 12.0
    shoulder_r, elbow_r, wrist_r, hand_r = 4.0, 3.3, 2.7, 3.6
    thigh_r, knee_r, ankle_r = 4.8, 3.8, 3.0
    unit = 0.94

    def draw_back(self, c, j):
        t, q = j["trunk"], j["q"]
        k = 1 - 0.5 * j["flat"]
        pts = [(-6, 0), (-14 * k, 4 + q["tail"] * 0.2), (-21 * k, 2 + q["tail"] * 0.5), (-26 * k, -6 + q["tail"])]
        shapes = []
        for (ax, ay), (bx, by), r in zip(pts, pts[1:], (2.4, 1.9, 1.4)):
            shapes.append((t.cap(ax, ay, r, bx, by, r - 0.5), self.ramps["skin"]))
        c.group(shapes)

    def draw_torso(self, c, j):
        t, R = j["trunk"], self.ramps
        c.group([(t.poly([(-7, 3), (-8.5, -6), (-7.5, -15), (-4, -20), (4, -20), (7.5, -15), (8, -6), (7, 3)], 7), R["jersey"])], owner=1)
        for k in range(4):
            y = -16.5 + k * 5
            c.group([(t.poly([(-12, y), (12, y - 1.2), (12, y + 1.2), (-12, y + 2.4)], 7, smooth=False), R["stripe"])],
                    outline=0, only=(1,), owner=1, lift=0.02)
        c.group([(t.poly([(-7.4, 0), (7.4, -0.6), (7.4, 2.6), (-7.4, 3)], 3), R["wood"])])
        c.flat(t.ell(4, 1.2, 1.6, 1.6), R["steel"][4])

    def arm_looks(self, side):
        return {"upper": "jersey", "fore": "fur", "hand": "skin"}

    def dress_arm(self, c, j, side, f):
        s, e = j["sh" + side], j["el" + side]
        dx, dy = e[0] - s[0], e[1] - s[1]
        n = math.hypot(dx, dy) or 1
        ux, uy = dx / n, dy / n
        for k in (-0.08, 0.42, 0.92):
            x, y = s[0] + dx * k, s[1] + dy * k
            band = [(x - uy * 6, y + ux * 6), (x + uy * 6, y - ux * 6),
                    (x + uy * 6 + ux * 2.2, y - ux * 6 + uy * 2.2), (x - uy * 6 + ux * 2.2, y + ux * 6 + uy * 2.2)]
            c.group([(Poly(band, 3, smooth=False), self.ramps["stripe"])], outline=0, only=(9,),
                    lift=0.06 if side == "n" else -0.1)

    def leg_looks(self, side):
        return {"thigh": "trousers", "shin": "trousers", "foot": "skin"}

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        c.group([(h.ell(3, -8.5, 4.0, 4.4), R["fur"])])
        c.flat(h.ell(3.4, -8.2, 2.2, 2.6), R["skin"][1])
        c.group([(h.ell(0, 0, 9, 8.2), R["fur"]), (h.cap(4, 1.6, 6.4, 15.5, 5.2, 2.3), R["fur"])], owner=10)
        c.group([(h.ell(3, 7, 7, 3.6, 20), R["jersey"])], outline=0, only=(10,), lift=-0.16)
        c.group([(h.ell(17.4, 4.8, 2.1, 1.9), R["skin"])])
        # cap with a peak
        c.group([(h.poly([(-9, -3.5), (-9.5, -8), (-3, -11.5), (5, -10), (8, -5), (2, -4.6)], 5), R["cap"])])
        c.group([(h.poly([(3, -6.5), (9, -7), (14, -4), (13, -2.4), (4, -3.8)], 3), R["cap"])], lift=-0.05)
        c.group([(h.ell(-6, -6.5, 5.2, 5.6, -15), R["fur"])])
        c.group([(h.ell(-5.4, -6, 3.2, 3.7, -15), R["skin"])], outline=0, lift=-0.04)
        if face in ("a", "h"):
            c.flat(h.poly([(5, 6), (15, 6.6), (11, 11), (6, 10)], 2), self.ink(0))
            c.flat(h.ell(9.5, 8.6, 2.6, 1.3), self.ink(3))
        else:
            c.line(*h.p(6, 7), *h.p(14, 7.2), self.ink(2))
        for k in range(3):
            c.put(*h.p(13.4, 7 + k), self.ink(1))
            c.put(*h.p(12.4, 7 + k), self.ink(1))
        self.eye(c, h, 5, -1, face)
        for y in (0, 2):
            c.line(*h.p(13, 3 + y), *h.p(9, 3.6 + y * 1.5), R["fur"][0])


class Magda(Person):
    """Magpie who throws teaspoons: wing coat, long tail, red headscarf."""
    materials = (("ink", "ink"), ("fur", "black"), ("white", "white"), ("sheen", "blue"), ("beak", "yellow"),
                 ("scarf", "red"), ("legs", "grey"), ("glow", "glow"), ("steel", "steel"), ("wood", "wood"))
    size, origin = (132, 112), (64, 104)
    hip, torso, neck = 24.0, 17.0, 8.5
    thigh, shin = 13.0, 13.0
    thigh_r, knee_r, ankle_r = 5.0, 2.6, 1.8
    shoulder_r, elbow_r, wrist_r, hand_r = 4.2, 3.6, 2.8, 3.2
    foot = (8.5, 2.6)
    girth = 4.0

    def draw_back(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        a = q["tail"] * 0.5
        fold = 1 - 0.55 * j["flat"]             # she lies on it
        for k, (dx, dy) in enumerate(((-27 * fold, 9), (-31 * fold, 4), (-29 * fold, -1))):
            c.group([(t.poly([(-4, -4), (-16 * fold, 0 + dy * 0.3 + a * 0.4), (dx, dy + a), (dx + 2, dy + 4 + a), (-15 * fold, 5 + dy * 0.3 + a * 0.4), (-5, 1)], 3),
                      R["sheen" if k == 1 else "fur"])])

    def draw_torso(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        s = q["sway"] * 0.3
        c.group([(t.poly([(-6.5, 3), (-8.5, -5), (-7.5, -14), (-4, -19), (4, -19), (8, -13), (9, -5), (6, 4)], 8), R["fur"])], owner=1)
        c.group([(t.poly([(-1, 3), (-2, -8), (2, -15), (6, -15), (9.5, -8), (8, 4)], 6), R["white"])], outline=0, only=(1,), owner=1)
        c.group([(t.poly([(-9 + s, 6), (-10, -6), (-8, -16), (-3, -17), (-2, -6), (-4 + s, 4)], 5), R["sheen"])])
        c.group([(t.poly([(-6, -17), (0, -20), (7, -17), (5, -13), (1, -14), (-5, -14)], 3), R["scarf"])])

    def arm_looks(self, side):
        return {"upper": "fur", "fore": "sheen", "hand": "fur"}

    def leg_looks(self, side):
        return {"thigh": "fur", "shin": "legs", "foot": "legs"}

    def dress_arm(self, c, j, side, f):
        # finger feathers
        R = self.ramps
        lift = 0 if side == "n" else -0.1
        e, h = j["el" + side], j["ha" + side]
        dx, dy = h[0] - e[0], h[1] - e[1]
        n = math.hypot(dx, dy) or 1
        nx, ny = -dy / n, dx / n
        if ny < 0:
            nx, ny = -nx, -ny
        p = [(e[0], e[1]), (h[0] + dx / n * 2, h[1] + dy / n * 2),
             (h[0] - dx * 0.1 + nx * 7, h[1] - dy * 0.1 + ny * 7), (e[0] + dx * 0.3 + nx * 8, e[1] + dy * 0.3 + ny * 8)]
        c.group([(Poly(p, 4), R["fur"])], lift=lift - 0.05)
        for k in (0.25, 0.5, 0.75):
            c.line(e[0] + dx * k, e[1] + dy * k, e[0] + dx * k + nx * 5.5, e[1] + dy * k + ny * 5.5, R["sheen"][2])

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        gape = 3.5 if face in ("a", "p", "h") else 0.6
        c.group([(h.poly([(5, 1.5), (11, 2 + gape * 0.4), (17.5, 3 + gape), (11, 5 + gape), (5, 5)], 3), R["beak"])], lift=-0.1)
        c.group([(h.ell(0, 0, 8.6, 8.2), R["fur"])], owner=10)
        c.group([(h.poly([(5, -3.4), (12, -2.8), (20, 2.2), (12, 2.6), (5, 2.6)], 3), R["beak"])])
        c.group([(h.ell(4.2, -0.6, 3.6, 3.6), R["white"])], outline=0, only=(10,))
        # headscarf with a knot behind
        c.group([(h.poly([(-8, -5), (-15, -7 + q["sway"] * 0.2), (-18, -3 + q["sway"] * 0.5), (-13, -2), (-8, -2)], 3), R["scarf"])])
        c.group([(h.poly([(-9, -1), (-8.5, -7), (-2, -10.4), (5, -8.6), (7.6, -4.4), (0, -4.4)], 5), R["scarf"])])
        for x, y in ((-4, -7), (1, -7.6), (-7, -4)):
            c.put(*h.p(x, y), R["white"][3])
        self.eye(c, h, 4.5, -0.5, face, 2)


class Tubb(Person):
    """Toad bruiser: a barrel in braces, with a bowler hat."""
    materials = (("ink", "ink"), ("skin", "green"), ("belly", "belly"), ("trousers", "brown"), ("hat", "black"),
                 ("braces", "red"), ("shirt", "cream"), ("glow", "glow"), ("steel", "steel"), ("wood", "wood"))
    size, origin = (148, 120), (68, 110)
    hip, torso, neck = 18.0, 25.0, 5.5
    thigh, shin = 10.5, 10.5
    thigh_r, knee_r, ankle_r = 7.5, 6.0, 4.6
    shoulder_r, elbow_r, wrist_r, hand_r = 6.4, 5.6, 5.2, 6.2
    upper, fore = 13.0, 12.5
    near_shoulder, far_shoulder = (-10.0, 7.0), (9.0, 5.0)
    near_hip, far_hip = (-7.0, 0.0), (7.0, 0.0)
    foot = (12.0, 3.6)
    reach, girth = 1.22, 13.0

    def draw_torso(self, c, j):
        t, R = j["trunk"], self.ramps
        c.group([(t.poly([(-13, 4), (-18, -7), (-16, -19), (-9, -26), (8, -26), (16, -19), (18.5, -7), (13, 4)], 14), R["skin"])], owner=1)
        c.group([(t.poly([(-6, 4), (-9, -8), (-5, -21), (6, -22), (15, -16), (18, -6), (12, 4)], 10), R["belly"])], outline=0, only=(1,), owner=1)
        c.group([(t.poly([(-15, 6), (-16.5, -3), (-2, 0.5), (16.5, -3.5), (14.5, 6)], 5), R["trousers"])])
        for x0, x1 in ((-9, -7.5), (8, 10)):
            c.line(*t.p(x0, -24), *t.p(x1, -2), R["braces"][0], only=(1,))
            c.line(*t.p(x0 + 1, -24), *t.p(x1 + 1, -2), R["braces"][3], only=(1,))
            c.line(*t.p(x0 + 2, -24), *t.p(x1 + 2, -2), R["braces"][2], only=(1,))
            c.line(*t.p(x0 + 3, -24), *t.p(x1 + 3, -2), R["braces"][0], only=(1,))
        for x, y in ((-13, -14), (-15, -8), (-11, -20)):
            c.flat(t.ell(x, y, 1.4, 1.2), R["skin"][1])
        # bow tie
        c.group([(t.poly([(2, -22.5), (7, -25), (7, -20)], 2), R["braces"]), (t.poly([(2, -22.5), (-3, -25), (-3, -20)], 2), R["braces"])])

    def arm_looks(self, side):
        return {"upper": "skin", "fore": "skin", "hand": "skin"}

    def leg_looks(self, side):
        return {"thigh": "trousers", "shin": "trousers", "foot": "skin"}

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        c.group([(h.ell(8, -6.5, 5.0, 5.2), R["skin"])])
        c.group([(h.ell(1, 1, 15, 8.6), R["skin"]), (h.ell(-5, -6, 5.2, 5.4), R["skin"])], owner=10)
        c.group([(h.poly([(-8, 5), (4, 6.5), (15, 4), (13, 9), (2, 11), (-8, 9)], 4), R["belly"])], outline=0, only=(10,))
        wide = face in ("a", "h")
        if wide:
            c.flat(h.poly([(-8, 3.4), (4, 4.4), (15, 2), (12, 8.4), (2, 9.6), (-6, 7.4)], 2), self.ink(0))
            c.flat(h.ell(4, 7.2, 6, 1.9), self.ink(3))
        else:
            for k in range(25):
                c.put(*h.p(-9 + k, 4.4 + math.sin(k / 24 * math.pi) * 1.2), self.ink(0))
        # bowler
        hat = h.child(-7, -10, -16)
        c.group([(hat.poly([(-8, 0), (-7.5, -6), (-3, -10), (4, -10), (8, -6), (8, 0)], 5), R["hat"])])
        c.group([(hat.poly([(-8, -2.4), (8, -2.4), (8, 0), (-8, 0)], 3, False), R["braces"])], outline=0)
        c.group([(hat.poly([(-12, 0), (12, 0), (10, 2.4), (-10, 2.4)], 2), R["hat"])])
        white, dark = self.ink(1), self.ink(0)
        for ex, ey in ((9, -7), (-3.4, -6.4)):
            x, y = h.p(ex, ey)
            x, y = int(x), int(y)
            if face == "p":
                c.line(x - 2, y - 1, x + 2, y + 1, dark)
                c.line(x - 2, y + 1, x + 2, y - 1, dark)
            else:
                c.flat(Ellipse(x + .5, y + .5, 3.0, 2.8), white)
                c.flat(Ellipse(x + 1.5, y + .9, 1.5, 1.7), dark)
                c.put(x + 1, y, white)
                for d in range(-3, 4):
                    c.put(x + d, y - 2 + (1 if d > 1 else 0), R["skin"][1])
        c.put(*h.p(15, -1), self.ink(2))
        c.put(*h.p(13, -1), self.ink(2))


class Baron(Person):
    """Baron Samovar: a boar in a wine coat, belted into a brass boiler with a tap and a chimney hat."""
    materials = (("ink", "ink"), ("fur", "boar"), ("coat", "wine"), ("brass", "brass"), ("copper", "copper"),
                 ("trousers", "slate"), ("tusk", "cream"), ("snout", "pink"), ("glow", "glow"), ("steel", "steel"),
                 ("wood", "wood"), ("white", "white"))
    size, origin = (188, 156), (86, 146)
    hip, torso, neck = 30.0, 33.0, 9.0
    thigh, shin = 17.0, 17.0
    thigh_r, knee_r, ankle_r = 9.5, 7.5, 6.0
    shoulder_r, elbow_r, wrist_r, hand_r = 9.0, 7.4, 6.6, 7.4
    upper, fore = 17.0, 17.0
    near_shoulder, far_shoulder = (-14.0, 6.0), (13.0, 4.0)
    near_hip, far_hip = (-8.0, 0.0), (8.0, 0.0)
    foot = (13.0, 5.0)
    unit, reach, girth = 1.35, 1.2, 12.0

    def draw_back(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        s = q["sway"] * 0.8
        c.group([(t.poly([(-12, -28), (-22, -12), (-30 - s * 0.4, 8 + s * 0.3), (-27 - s, 22), (-14 - s * 0.5, 20), (-4, 8), (-4, -20)], 8), R["coat"])], lift=-0.06)

    def draw_torso(self, c, j):
        t, q, R = j["trunk"], j["q"], self.ramps
        s = q["sway"] * 0.3
        c.group([(t.poly([(-16, 6), (-20, -8), (-20, -22), (-13, -33), (11, -33), (19, -22), (20, -8), (16, 6)], 14), R["coat"])], owner=1)
        # boiler
        c.group([(t.poly([(-9, 4), (-12, -8), (-11, -20), (-6, -28), (10, -28), (17, -20), (19, -8), (15, 4)], 13), R["brass"])], owner=2)
        for y in (-22, -4):
            for k in range(40):
                x = -12 + k * 0.8
                c.put(*t.p(x, y + math.sin(k / 39 * math.pi) * 2), R["brass"][1])
                if k % 6 == 2:
                    c.put(*t.p(x, y + 1 + math.sin(k / 39 * math.pi) * 2), R["brass"][4])
        # gauge and tap
        c.group([(t.ell(6, -14, 5.2, 5.2), R["copper"])])
        c.flat(t.ell(6, -14, 3.8, 3.8), R["white"][3])
        c.line(*t.p(6, -14), *t.p(8.4, -16.4), R["coat"][2])
        c.group([(t.cap(15, -1, 2.0, 21, 1, 1.7), R["copper"]), (t.cap(21, 1, 1.6, 21, 4, 1.6), R["copper"]),
                 (t.cap(17, -4, 1.2, 20, -4, 1.2), R["copper"])])
        # coat front and lapels
        c.group([(t.poly([(-17, 8), (-21, -8), (-20, -24), (-13, -32), (-8, -28), (-12, -16), (-12, 0), (-10 + s, 16), (-18 + s, 18)], 7), R["coat"])], owner=3)
        c.group([(t.poly([(-13, -31), (-7, -30), (-9, -20), (-13, -14), (-16, -22)], 3), R["brass"])], lift=-0.05)
        # fur collar
        c.group([(t.poly([(-15, -30), (-6, -35), (8, -35), (16, -29), (8, -27), (-6, -27)], 4), R["white"])])

    def arm_looks(self, side):
        return {"upper": "coat", "fore": "coat", "hand": "fur"}

    def leg_looks(self, side):
        return {"thigh": "trousers", "shin": "trousers", "foot": "fur"}

    def dress_arm(self, c, j, side, f):
        e, h = j["el" + side], j["ha" + side]
        lift = 0 if side == "n" else -0.1
        k, g = 0.62, 0.72
        c.group([(Capsule(e[0] + (h[0] - e[0]) * k, e[1] + (h[1] - e[1]) * k, 7.2,
                          e[0] + (h[0] - e[0]) * g, e[1] + (h[1] - e[1]) * g, 7.0), self.ramps["brass"])], lift=lift)
        r = 6.9
        c.group([(f.ell(r * 0.5, 0, r, r * 0.95), self.ramps["fur"])], lift=lift)
        for d in (-2.4, 0, 2.4):
            c.put(*f.p(r * 1.2, d), self.ramps["fur"][1])

    def dress_leg(self, c, j, side):
        k, a = j["knee" + side], j["ankle" + side]
        lift = 0 if side == "n" else -0.1
        c.group([(Capsule(k[0] + (a[0] - k[0]) * 0.45, k[1] + (a[1] - k[1]) * 0.45, 7.2, a[0], a[1], 6.6), self.ramps["copper"])], lift=lift)

    def draw_head(self, c, j):
        q, h, R = j["q"], j["head"], self.ramps
        face = q["face"]
        c.group([(h.poly([(4, -10), (9, -18), (12, -11)], 3), R["fur"])])
        c.group([(h.ell(0, 0, 14.5, 13), R["fur"]), (h.cap(8, 4, 9, 17, 6, 6.6), R["fur"])], owner=10)
        # jaw and tusks
        if face in ("a", "h"):
            c.flat(h.poly([(3, 10), (17, 11), (14, 18), (4, 17)], 2), self.ink(0))
            c.flat(h.ell(10, 15, 4.4, 2.0), self.ink(3))
        else:
            c.line(*h.p(3, 11.6), *h.p(18, 11.4), self.ink(2))
        c.group([(h.ell(22, 5.4, 3.4, 6.4, 8), R["snout"])])
        c.flat(h.ell(22.4, 3, 1.0, 1.5), self.ink(2))
        c.flat(h.ell(22.4, 7.6, 1.0, 1.5), self.ink(2))
        c.group([(h.poly([(12, 12.5), (17, 11.5), (20, 5), (21.5, 1), (17, 4), (13, 9)], 3), R["tusk"])])
        c.group([(h.poly([(4, 13), (8, 12), (9.4, 6), (9, 3), (6, 6), (4, 10)], 3), R["tusk"])], lift=-0.08)
        # whiskers (sideburns)
        c.group([(h.poly([(-12, -1), (-6, 1), (-2, 8), (-5, 15), (-9, 12), (-15, 12), (-15, 5)], 5), R["white"])], lift=-0.05)
        # ear
        c.group([(h.poly([(-10, -6), (-16, -15), (-6, -13), (-4, -7)], 4), R["fur"])])
        c.flat(h.poly([(-9, -8), (-13, -13), (-7, -11.5)], 2), R["snout"][2])
        # chimney hat
        hat = h.child(-2, -11, -6)
        c.group([(hat.poly([(-8, 0), (-7, -14), (8, -14), (9, 0)], 8, False), R["copper"])])
        c.group([(hat.poly([(-9, -13), (10, -13), (11, -17), (-10, -17)], 5, False), R["brass"])])
        c.group([(hat.poly([(-8.4, -2), (9, -2), (9, -5), (-8.2, -5)], 5, False), R["brass"])], outline=0)
        c.group([(hat.poly([(-14, 1), (15, 1), (12, 4), (-12, 4)], 3), R["copper"])])
        # eye and monocle
        if face == "p":
            c.line(*h.p(5, -4), *h.p(10, -1), self.ink(0))
            c.line(*h.p(5, -1), *h.p(10, -4), self.ink(0))
        else:
            c.flat(h.ell(7.6, -2.4, 3.0, 2.6), self.ink(1))
            c.flat(h.ell(8.8, -2.2, 1.3, 1.7), self.ink(0))
            c.line(*h.p(3.4, -6.4), *h.p(11.4, -4.4), self.ink(0))
            c.line(*h.p(3.4, -7.2), *h.p(11.4, -5.2), self.ink(0))
        for k in range(24):
            a = k / 24 * 2 * math.pi
            c.put(*h.p(7.6 + math.cos(a) * 4.4, -2.4 + math.sin(a) * 4.2), R["brass"][4 if k % 8 < 4 else 2])


def cast():
    return {"bramble": Bramble(), "juniper": Juniper(), "nib": Nib(), "magda": Magda(), "tubb": Tubb(), "baron": Baron()}
