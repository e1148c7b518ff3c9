"""A cut-out puppet: joints from a few targets, limbs as shaded capsules, clothes as soft polygons.

Poses are written in pixels of a standing hero, x forward (to the right) and y up:
  x, y       shift of the pelvis            lean, head  degrees, positive leans forward
  ln, lf     near and far foot: x, y from the origin on the ground, toe angle
  hn, hf     near and far hand, from their shoulder; en, ef: +1 elbow low, -1 elbow high
  hang       1 in the air: feet are counted from the pelvis, not the ground
  rot        turn of the whole body about the pelvis (for falls and flips)
  face       n calm, a shouting, p hurt, h happy      prop, pa  thing in the near hand, its angle
  sway, ear, tail   what follows the motion late      fx  swooshes, drawn last
"""
import math

from raster import Canvas, Capsule, Ellipse, Poly

REST = dict(x=0.0, y=0.0, lean=6.0, head=0.0, hx=0.0, hy=0.0, rot=0.0,
            ln=(-9, 0, 0), lf=(9, 0, 0), hn=(9, -7), hf=(13, -3), en=1, ef=1,
            tail=0.0, ear=0.0, sway=0.0, face="n", fn="fist", ff="fist",
            prop=None, pa=60.0, fx=(), farfront=0, hang=0)


def pose(base=None, **over):
    out = dict(base or REST)
    out.update(over)
    return out


def blend(a, b, t):
    """Between two poses; what cannot be mixed changes at the half."""
    out = {}
    for key, va in a.items():
        vb = b[key]
        if isinstance(va, (int, float)) and isinstance(vb, (int, float)) and key not in ("en", "ef", "farfront", "hang"):
            out[key] = va + (vb - va) * t
        elif isinstance(va, tuple) and va and len(va) == len(vb) and isinstance(va[0], (int, float)):
            out[key] = tuple(p + (q - p) * t for p, q in zip(va, vb))
        else:
            out[key] = va if t < 0.5 else vb
    out["fx"] = a["fx"] if t < 0.5 else b["fx"]
    return out


class Frame:
    """A local frame: x right, y down, turned by angle (clockwise on the screen is positive)."""

    def __init__(self, x, y, angle=0.0, scale=1.0):
        self.x, self.y, self.angle, self.scale = x, y, angle, scale
        self.c, self.s = math.cos(math.radians(angle)), math.sin(math.radians(angle))

    def p(self, x, y):
        x, y = x * self.scale, y * self.scale
        return self.x + x * self.c - y * self.s, self.y + x * self.s + y * self.c

    def ell(self, x, y, rx, ry, angle=0.0):
        cx, cy = self.p(x, y)
        return Ellipse(cx, cy, rx * self.scale, ry * self.scale, self.angle + angle)

    def cap(self, ax, ay, ra, bx, by, rb):
        (px, py), (qx, qy) = self.p(ax, ay), self.p(bx, by)
        return Capsule(px, py, ra * self.scale, qx, qy, rb * self.scale)

    def poly(self, points, bevel=5.0, smooth=True):
        return Poly([self.p(x, y) for x, y in points], bevel * self.scale, smooth)

    def child(self, x, y, angle=0.0):
        px, py = self.p(x, y)
        return Frame(px, py, self.angle + angle, self.scale)


def two_bones(ax, ay, tx, ty, l1, l2, bend):
    """Joint and end of a limb that reaches for a target; bend chooses the side of the joint."""
    dx, dy = tx - ax, ty - ay
    d = math.hypot(dx, dy)
    reach = l1 + l2 - 0.3
    if d > reach:
        tx, ty = ax + dx / d * reach, ay + dy / d * reach
        dx, dy, d = tx - ax, ty - ay, reach
    d = max(d, abs(l1 - l2) + 0.3, 0.3)
    a = math.acos(max(-1.0, min(1.0, (l1 * l1 + d * d - l2 * l2) / (2 * l1 * d))))
    base = math.atan2(dy, dx) + a * bend
    return (ax + math.cos(base) * l1, ay + math.sin(base) * l1), (tx, ty)


class Puppet:
    """Measures and looks of one character. Subclasses draw torso, head, limbs and props."""
    size = (124, 112)
    origin = (58, 102)
    hip, torso = 24.0, 19.0
    thigh, shin, upper, fore = 13.0, 13.0, 10.5, 10.5
    thigh_r, knee_r, ankle_r = 5.2, 4.2, 3.2
    shoulder_r, elbow_r, wrist_r, hand_r = 4.2, 3.6, 3.0, 4.0
    near_shoulder, far_shoulder = (-5.0, 2.0), (5.0, 1.0)
    near_hip, far_hip = (-3.5, 0.0), (3.5, 0.0)
    foot = (9.0, 3.2)
    neck = 10.0
    unit = 1.0
    reach = 1.0
    girth = 0.0                                 # how high the pelvis lies when the body is flat

    def __init__(self):
        self.palette = [(255, 0, 255)]
        self.ramps = {}
        for name, tones in self.colours().items():
            self.ramp(name, tones)

    def colours(self):
        return {}

    def ramp(self, name, tones):
        indexes = []
        for tone in tones.split():
            rgb = tuple(int(tone[i:i + 2], 16) for i in (0, 2, 4))
            while rgb in self.palette:          # a remap needs colours that occur once
                rgb = (rgb[0], rgb[1], rgb[2] - 1 if rgb[2] else 1)
            indexes.append(len(self.palette))
            self.palette.append(rgb)
        self.ramps[name] = indexes

    def recoloured(self, changes):
        """The palette with some ramps replaced: an alternate costume."""
        out = list(self.palette)
        for name, tones in changes.items():
            for index, tone in zip(self.ramps[name], tones.split()):
                rgb = tuple(int(tone[i:i + 2], 16) for i in (0, 2, 4))
                while rgb in out[:index]:
                    rgb = (rgb[0], rgb[1], rgb[2] - 1 if rgb[2] else 1)
                out[index] = rgb
        return out

    # Solving the pose ---------------------------------------------------------------------------
    def solve(self, q):
        ox, oy = self.origin
        u = self.unit
        rot = q["rot"]
        flat = min(1.0, abs(rot) / 80) if q["hang"] and abs(rot) < 100 else 0.0
        px, py = ox + q["x"] * u, oy - (self.hip + q["y"] * u) - self.girth * flat
        body = Frame(px, py, rot)
        lean = q["lean"]
        trunk = Frame(px, py, rot + lean)
        j = {"body": body, "trunk": trunk, "q": q, "flat": flat}
        for side, shoulder, hip in (("n", self.near_shoulder, self.near_hip), ("f", self.far_shoulder, self.far_hip)):
            hx, hy = trunk.p(hip[0], hip[1])
            fx, fy, toe = q["l" + side]
            # Feet are given from the ground; with a turned body they turn along.
            if q["hang"]:                       # in the air: feet follow the pelvis
                tx, ty = body.p(fx * u, self.hip - fy * u - self.foot[1] - 1)
            else:
                tx, ty = body.p(fx * u - q["x"] * u, self.hip + q["y"] * u - fy * u - self.foot[1] - 1)
            knee, ankle = two_bones(hx, hy, tx, ty, self.thigh, self.shin, -1)
            j["hip" + side], j["knee" + side], j["ankle" + side] = (hx, hy), knee, ankle
            j["toe" + side] = rot - toe
            sx, sy = trunk.p(shoulder[0], -self.torso + shoulder[1])
            gx, gy = q["h" + side]
            r = self.reach * u
            cx, cy = body.c, body.s
            dx, dy = gx * r, -gy * r
            hand = (sx + dx * cx - dy * cy, sy + dx * cy + dy * cx)
            elbow, hand = two_bones(sx, sy, hand[0], hand[1], self.upper, self.fore, q["e" + side])
            j["sh" + side], j["el" + side], j["ha" + side] = (sx, sy), elbow, hand
        nx, ny = trunk.p(0.5 + q["hx"], -self.torso - self.neck - q["hy"])
        j["head"] = Frame(nx, ny, rot + lean * 0.35 + q["head"])
        return j

    # Drawing ------------------------------------------------------------------------------------
    def render(self, q, zoom=1):
        c = Canvas(*self.size, zoom)
        j = self.solve(q)
        self.draw_back(c, j)
        if not q["farfront"]:
            self.draw_arm(c, j, "f")
        self.draw_leg(c, j, "f")
        self.draw_leg(c, j, "n")
        self.draw_torso(c, j)
        self.draw_head(c, j)
        if q["farfront"]:
            self.draw_arm(c, j, "f")
        self.draw_front(c, j)
        self.draw_arm(c, j, "n")
        self.draw_fx(c, j)
        return c

    def draw_back(self, c, j):
        pass

    def draw_front(self, c, j):
        pass

    def leg_looks(self, side):
        return {"thigh": "trousers", "shin": "trousers", "foot": "fur"}

    def arm_looks(self, side):
        return {"upper": "shirt", "fore": "fur", "hand": "fur"}

    def draw_leg(self, c, j, side):
        look = self.leg_looks(side)
        lift = -0.10 if side == "f" else 0.0
        h, k, a = j["hip" + side], j["knee" + side], j["ankle" + side]
        f = Frame(a[0], a[1], j["toe" + side])
        length, height = self.foot
        c.group([(Capsule(k[0], k[1], self.knee_r, a[0], a[1], self.ankle_r), self.ramps[look["shin"]]),
                 (Capsule(h[0], h[1], self.thigh_r, k[0], k[1], self.knee_r), self.ramps[look["thigh"]])],
                lift=lift, owner=7)
        self.dress_leg(c, j, side)
        c.group([(f.poly([(-3.2, -2.2), (1.5, -2.6), (length, 0.8), (length + 0.4, height + 1), (-3.4, height + 1)], 4),
                  self.ramps[look["foot"]])], lift=lift, owner=6)

    def dress_leg(self, c, j, side):
        pass

    def draw_arm(self, c, j, side):
        look = self.arm_looks(side)
        q = j["q"]
        lift = -0.10 if side == "f" else 0.0
        s, e, h = j["sh" + side], j["el" + side], j["ha" + side]
        angle = math.degrees(math.atan2(h[1] - e[1], h[0] - e[0]))
        f = Frame(h[0], h[1], angle)
        holding = side == "n" and q["prop"]
        if holding:
            self.draw_prop(c, Frame(h[0], h[1], j["body"].angle - q["pa"]), q["prop"])
        hand = []
        r = self.hand_r
        if q["f" + side] == "open":
            hand = [(f.cap(0, 0, r * 0.8, r * 1.1, -0.5, r * 0.62), self.ramps[look["hand"]]),
                    (f.cap(0, 0, r * 0.5, r * 0.4, r * 0.95, r * 0.42), self.ramps[look["hand"]])]
        else:
            hand = [(f.ell(r * 0.3, 0, r, r * 0.95), self.ramps[look["hand"]])]
        c.group([(Capsule(e[0], e[1], self.elbow_r, h[0], h[1], self.wrist_r), self.ramps[look["fore"]])]
                + hand, lift=lift, owner=8)
        c.group([(Capsule(s[0], s[1], self.shoulder_r, e[0], e[1], self.elbow_r + 0.4), self.ramps[look["upper"]])],
                lift=lift, owner=9)
        self.dress_arm(c, j, side, f)

    def dress_arm(self, c, j, side, f):
        pass

    def draw_prop(self, c, f, name):
        from props import draw_held
        draw_held(self, c, f, name)

    def draw_fx(self, c, j):
        glow = self.ramps["glow"]
        for kind, x, y, r, a0, a1, w, *squash in j["q"]["fx"]:
            px, py = j["body"].p(x * self.unit, self.hip - y * self.unit)
            if kind == "arc":
                c.arc(px, py, r * self.unit, a0, a1, w * self.unit, (glow[1], glow[2]), *squash)
            elif kind == "burst":
                for i in range(int(a0)):
                    a = math.radians(a1 + i * 360 / a0)
                    d0, d1 = r * 0.45, r * (1.0 if i % 2 else 0.75)
                    c.line(px + math.cos(a) * d0, py + math.sin(a) * d0, px + math.cos(a) * d1, py + math.sin(a) * d1,
                           glow[2] if i % 2 else glow[1])
            elif kind == "lines":               # speed lines trailing to the left
                for i in range(int(a0)):
                    yy = py - r + 2 * r * i / max(1, a0 - 1)
                    k = (i * 7 % 5)
                    c.line(px - w + k * 2, yy, px - k, yy, glow[1])
            elif kind == "sweat":
                for dx, dy in ((-2, -2), (1, -5), (4, -3)):
                    c.put(px + dx * r, py + dy * r, glow[2])
                    c.put(px + dx * r, py + dy * r + 1, glow[1])
