"""Painting in full colour, and the way down to a palette with ordered dithering."""
import math
import random

from lettering import dots, width
from raster import BAYER

KEY = (255, 0, 255)


def mix(a, b, t):
    return tuple(int(p + (q - p) * t) for p, q in zip(a, b))


def hexa(text):
    return tuple(int(text[i:i + 2], 16) for i in (0, 2, 4))


def steps(stops, t):
    """A colour along [(place, colour) ...]."""
    for (p0, c0), (p1, c1) in zip(stops, stops[1:]):
        if t <= p1:
            return mix(c0, c1, max(0.0, (t - p0) / (p1 - p0)))
    return stops[-1][1]


class Paint:
    """Pixels are (r, g, b), or None where nothing is painted."""

    def __init__(self, w, h, colour=None, seed=1):
        self.w, self.h = w, h
        self.px = [colour] * (w * h)
        self.random = random.Random(seed)

    def dot(self, x, y, colour):
        x, y = int(x), int(y)
        if 0 <= x < self.w and 0 <= y < self.h:
            self.px[y * self.w + x] = colour

    def at(self, x, y):
        x, y = int(x), int(y)
        return self.px[y * self.w + x] if 0 <= x < self.w and 0 <= y < self.h else None

    def rect(self, x, y, w, h, colour, to=None):
        """A rectangle; with a second colour it runs from top to bottom."""
        x0, x1 = max(0, int(x)), min(self.w, int(x + w))
        y0 = int(y)
        for yy in range(max(0, y0), min(self.h, int(y + h))):
            c = mix(colour, to, (yy - y0) / max(1, h - 1)) if to else colour
            self.px[yy * self.w + x0:yy * self.w + x1] = [c] * max(0, x1 - x0)

    def vertical(self, stops, y0=0, y1=None):
        y1 = self.h if y1 is None else y1
        for y in range(y0, y1):
            self.rect(0, y, self.w, 1, steps(stops, (y - y0) / max(1, y1 - y0 - 1)))

    def poly(self, points, colour, to=None):
        ys = [p[1] for p in points]
        lo, hi = min(ys), max(ys)
        for y in range(max(0, int(lo)), min(self.h, int(hi) + 1)):
            c = mix(colour, to, (y - lo) / max(1, hi - lo)) if to else colour
            yy = y + 0.5
            xs = []
            for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
                if (ay > yy) != (by > yy):
                    xs.append(ax + (bx - ax) * (yy - ay) / (by - ay))
            xs.sort()
            for a, b in zip(xs[::2], xs[1::2]):
                a, b = max(0, int(a + 0.5)), min(self.w, int(b + 0.5))
                if b > a:
                    self.px[y * self.w + a:y * self.w + b] = [c] * (b - a)

    def ellipse(self, cx, cy, rx, ry, colour, to=None):
        for y in range(max(0, int(cy - ry)), min(self.h, int(cy + ry) + 1)):
            k = 1 - ((y + 0.5 - cy) / ry) ** 2
            if k > 0:
                d = rx * math.sqrt(k)
                c = mix(colour, to, (y - cy + ry) / (2 * ry)) if to else colour
                self.rect(cx - d + 0.5, y, 2 * d, 1, c)

    def line(self, x0, y0, x1, y1, colour, thick=1):
        n = int(max(abs(x1 - x0), abs(y1 - y0))) + 1
        for i in range(n + 1):
            x, y = x0 + (x1 - x0) * i / n, y0 + (y1 - y0) * i / n
            if thick == 1:
                self.dot(x, y, colour)
            else:
                self.rect(x - thick // 2, y - thick // 2, thick, thick, colour)

    def glow(self, cx, cy, rx, ry, colour, strength=1.0, power=2.0):
        """Light added to what is painted; where nothing is painted it leaves no trace."""
        r, g, b = colour
        for y in range(max(0, int(cy - ry)), min(self.h, int(cy + ry) + 1)):
            dy = (y + 0.5 - cy) / ry
            for x in range(max(0, int(cx - rx)), min(self.w, int(cx + rx) + 1)):
                dx = (x + 0.5 - cx) / rx
                d = dx * dx + dy * dy
                if d < 1:
                    o = self.px[y * self.w + x]
                    if o is not None:
                        k = strength * (1 - d) ** power
                        self.px[y * self.w + x] = (min(255, int(o[0] + r * k)), min(255, int(o[1] + g * k)), min(255, int(o[2] + b * k)))

    def shade(self, x, y, w, h, colour, amount, to=None):
        """Moves a rectangle toward a colour; the amount may run from top to bottom."""
        for yy in range(max(0, int(y)), min(self.h, int(y + h))):
            k = amount if to is None else amount + (to - amount) * (yy - y) / max(1, h - 1)
            for xx in range(max(0, int(x)), min(self.w, int(x + w))):
                o = self.px[yy * self.w + xx]
                if o is not None:
                    self.px[yy * self.w + xx] = mix(o, colour, k)

    def text(self, text, x, y, colour, scale=1, shadow=None, centre=False):
        if centre:
            x -= width(text, scale) // 2
        if shadow:
            self.text(text, x + scale, y + scale, shadow, scale)
        for u, v in dots(text):
            self.rect(x + u * scale, y + v * scale, scale, scale, colour)

    def blit(self, canvas, palette, x, y, flip=False, tint=None, amount=0.0):
        """A sprite's canvas onto the painting; tint pulls its colours toward one."""
        for v in range(canvas.h):
            yy = int(y) + v
            if not 0 <= yy < self.h:
                continue
            for u in range(canvas.w):
                k = canvas.px[v * canvas.w + (canvas.w - 1 - u if flip else u)]
                xx = int(x) + u
                if k and 0 <= xx < self.w:
                    c = palette[k]
                    self.px[yy * self.w + xx] = mix(c, tint, amount) if tint else c

    def speckle(self, x, y, w, h, amount, seed=3):
        r = random.Random(seed)
        for yy in range(max(0, int(y)), min(self.h, int(y + h))):
            for xx in range(max(0, int(x)), min(self.w, int(x + w))):
                o = self.px[yy * self.w + xx]
                if o is not None:
                    d = int((r.random() - 0.5) * amount)
                    self.px[yy * self.w + xx] = (max(0, min(255, o[0] + d)), max(0, min(255, o[1] + d)), max(0, min(255, o[2] + d)))


def palette_of(paintings, count):
    """Median cut over all the paintings' colours; entry 0 is kept for transparency."""
    seen = {}
    for p in paintings:
        for c in p.px:
            if c is not None:
                k = (c[0] >> 2, c[1] >> 2, c[2] >> 2)
                seen[k] = seen.get(k, 0) + 1
    boxes = [sorted(seen.items())]
    while len(boxes) < count - 1:
        best, score, axis = -1, 0, 0
        for i, box in enumerate(boxes):
            if len(box) < 2:
                continue
            weight = sum(n for _, n in box)
            for a in range(3):
                lo = min(k[a] for k, _ in box)
                hi = max(k[a] for k, _ in box)
                s = (hi - lo) * (1.2 if a == 1 else 1.0) * weight ** 0.38
                if s > score:
                    best, score, axis = i, s, a
        if best < 0:
            break
        box = sorted(boxes.pop(best), key=lambda e: (e[0][axis], e[0]))
        half, acc, cut = sum(n for _, n in box) / 2, 0, 1
        for i, (_, n) in enumerate(box):
            acc += n
            if acc >= half:
                cut = min(max(1, i), len(box) - 1)
                break
        boxes += [box[:cut], box[cut:]]
    out = [KEY]
    for box in boxes:
        n = sum(w for _, w in box)
        c = tuple(min(255, int(sum(k[a] * w for k, w in box) / n * 4 + 2)) for a in range(3))
        while c in out:
            c = (c[0], c[1], c[2] + 1 if c[2] < 255 else 0)
        out.append(c)
    return out


def reduce(paint, palette, dither=12.0):
    """(w, h, pixels, palette) with 4x4 ordered dithering."""
    cache, out = {}, bytearray(paint.w * paint.h)
    table = [(i, c) for i, c in enumerate(palette)][1:]
    i = 0
    for y in range(paint.h):
        row = BAYER[y & 3]
        for x in range(paint.w):
            c = paint.px[i]
            if c is not None:
                d = (row[x & 3] / 15 - 0.5) * dither
                key = (int(c[0] + d) >> 2, int(c[1] + d) >> 2, int(c[2] + d) >> 2)
                k = cache.get(key)
                if k is None:
                    r, g, b = key[0] * 4 + 2, key[1] * 4 + 2, key[2] * 4 + 2
                    k = min(table, key=lambda e: 3 * (e[1][0] - r) ** 2 + 5 * (e[1][1] - g) ** 2 + 2 * (e[1][2] - b) ** 2)[0]
                    cache[key] = k
                out[i] = k
            i += 1
    return paint.w, paint.h, bytes(out), palette
