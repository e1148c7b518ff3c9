"""Shaded, outlined shapes on a canvas of palette indexes.

A shape answers, for a pixel, how far outside it lies (negative: inside) and which way its surface
faces there. A group of shapes is first grown by a pixel in the dark end of its ramp, then filled
tone by tone from the light: that gives inked contours between limbs without drawing a line.
"""
import math

LIGHT = (-0.46, -0.66, 0.60)
BAYER = ((0, 8, 2, 10), (12, 4, 14, 6), (3, 11, 1, 9), (15, 7, 13, 5))


class Capsule:
    def __init__(self, ax, ay, ra, bx, by, rb):
        self.v = (ax, ay, ra, bx, by, rb)
        m = max(ra, rb)
        self.box = (min(ax, bx) - m, min(ay, by) - m, max(ax, bx) + m, max(ay, by) + m)

    def at(self, x, y):
        ax, ay, ra, bx, by, rb = self.v
        dx, dy = bx - ax, by - ay
        length = dx * dx + dy * dy
        t = 0.0 if length < 1e-9 else max(0.0, min(1.0, ((x - ax) * dx + (y - ay) * dy) / length))
        r = ra + (rb - ra) * t
        ox, oy = x - ax - dx * t, y - ay - dy * t
        d = math.hypot(ox, oy)
        return d - r, ox / r if r else 0, oy / r if r else 0


class Ellipse:
    def __init__(self, cx, cy, rx, ry, angle=0.0):
        self.c, self.s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
        self.v = (cx, cy, rx, ry)
        m = max(rx, ry)
        self.box = (cx - m, cy - m, cx + m, cy + m)

    def at(self, x, y):
        cx, cy, rx, ry = self.v
        dx, dy = x - cx, y - cy
        u, w = (dx * self.c + dy * self.s) / rx, (-dx * self.s + dy * self.c) / ry
        q = math.hypot(u, w)
        return (q - 1) * min(rx, ry), u * self.c - w * self.s, u * self.s + w * self.c


class Poly:
    """A closed outline; bevel is how far the rounding of the edge reaches in."""

    def __init__(self, points, bevel=5.0, smooth=True):
        self.p = spline(points) if smooth else list(points)
        self.bevel = bevel
        xs, ys = [p[0] for p in self.p], [p[1] for p in self.p]
        self.box = (min(xs), min(ys), max(xs), max(ys))

    def at(self, x, y):
        best, near, inside = 1e18, (x, y), False
        px, py = self.p[-1]
        for qx, qy in self.p:
            if (qy > y) != (py > y) and x < (px - qx) * (y - qy) / (py - qy) + qx:
                inside = not inside
            dx, dy = qx - px, qy - py
            length = dx * dx + dy * dy
            t = 0.0 if length < 1e-9 else max(0.0, min(1.0, ((x - px) * dx + (y - py) * dy) / length))
            nx, ny = px + dx * t, py + dy * t
            d = (x - nx) * (x - nx) + (y - ny) * (y - ny)
            if d < best:
                best, near = d, (nx, ny)
            px, py = qx, qy
        d = math.sqrt(best)
        if not inside:
            return d, 0.0, 0.0
        if d < 1e-6:
            return 0.0, 0.0, 0.0
        k = max(0.0, 1.0 - d / self.bevel) / d
        return -d, (near[0] - x) * k, (near[1] - y) * k


def spline(points, steps=4):
    """Closed Catmull-Rom curve through the points."""
    out, n = [], len(points)
    for i in range(n):
        p0, p1, p2, p3 = points[i - 1], points[i], points[(i + 1) % n], points[(i + 2) % n]
        for k in range(steps):
            t = k / steps
            t2, t3 = t * t, t * t * t
            out.append(tuple(0.5 * (2 * p1[a] + (p2[a] - p0[a]) * t
                                    + (2 * p0[a] - 5 * p1[a] + 4 * p2[a] - p3[a]) * t2
                                    + (3 * p1[a] - p0[a] - 3 * p2[a] + p3[a]) * t3) for a in (0, 1)))
    return out


class Canvas:
    """With a zoom every shape is drawn that much larger, from the same numbers."""

    def __init__(self, width, height, zoom=1):
        self.zoom = zoom
        width, height = int(width * zoom), int(height * zoom)
        self.w, self.h = width, height
        self.px = bytearray(width * height)
        self.owner = bytearray(width * height)

    def put(self, x, y, colour):
        z = self.zoom
        if z == 1:
            x, y = int(math.floor(x)), int(math.floor(y))
            if 0 <= x < self.w and 0 <= y < self.h:
                self.px[y * self.w + x] = colour
            return
        x, y = math.floor(x), math.floor(y)
        for v in range(max(0, int(y * z)), min(self.h, int((y + 1) * z))):
            for u in range(max(0, int(x * z)), min(self.w, int((x + 1) * z))):
                self.px[v * self.w + u] = colour

    def get(self, x, y):
        x, y = int(math.floor(x) * self.zoom), int(math.floor(y) * self.zoom)
        return self.px[y * self.w + x] if 0 <= x < self.w and 0 <= y < self.h else 0

    def _span(self, box, grow):
        z = self.zoom
        return (max(0, int((box[0] - grow) * z)), max(0, int((box[1] - grow) * z)),
                min(self.w, int((box[2] + grow) * z) + 2), min(self.h, int((box[3] + grow) * z) + 2))

    def group(self, shapes, outline=1.0, owner=0, only=None, dither=0.07, lift=0.0):
        """shapes: [(shape, ramp)]; a ramp runs from ink to highlight. only: owners painted on."""
        w, z = self.w, self.zoom
        if outline and z > 1:
            outline *= 0.75
        filled = []
        for shape, ramp in shapes:
            x0, y0, x1, y1 = self._span(shape.box, outline)
            ink = ramp[0]
            inner = []
            at = shape.at
            for y in range(y0, y1):
                row = y * w
                for x in range(x0, x1):
                    if only is not None and self.owner[row + x] not in only:
                        continue
                    d, nx, ny = at((x + 0.5) / z, (y + 0.5) / z)
                    if d <= 0:
                        inner.append((row + x, x, y, nx, ny))
                    if outline and d <= outline:
                        self.px[row + x] = ink
                        if owner:
                            self.owner[row + x] = owner
            filled.append((ramp, inner))
        lx, ly, lz = LIGHT
        for ramp, inner in filled:
            tones = len(ramp) - 1
            for at, x, y, nx, ny in inner:
                nz2 = 1 - nx * nx - ny * ny
                i = nx * lx + ny * ly + (math.sqrt(nz2) if nz2 > 0 else 0) * lz
                i = 0.5 + 0.5 * i + lift + (BAYER[y & 3][x & 3] / 15 - 0.5) * dither
                self.px[at] = ramp[1 + int(max(0.0, min(0.999, (i - 0.33) / 0.70)) * tones)]
                if owner:
                    self.owner[at] = owner

    def flat(self, shape, colour, only=None, owner=0):
        z = self.zoom
        x0, y0, x1, y1 = self._span(shape.box, 0)
        for y in range(y0, y1):
            for x in range(x0, x1):
                if only is not None and self.owner[y * self.w + x] not in only:
                    continue
                if shape.at((x + 0.5) / z, (y + 0.5) / z)[0] <= 0:
                    self.px[y * self.w + x] = colour
                    if owner:
                        self.owner[y * self.w + x] = owner

    def line(self, x0, y0, x1, y1, colour, only=None):
        n = int(max(abs(x1 - x0), abs(y1 - y0)) * 2) + 1
        for i in range(n + 1):
            x, y = x0 + (x1 - x0) * i / n, y0 + (y1 - y0) * i / n
            u, v = int(x * self.zoom), int(y * self.zoom)
            if only is None or (0 <= u < self.w and 0 <= v < self.h and self.owner[v * self.w + u] in only):
                self.put(x, y, colour)

    def arc(self, cx, cy, radius, a0, a1, width, colours, squash=1.0):
        """A swoosh: a crescent that thins toward its tail at a0; colours from edge to core."""
        span, z = a1 - a0, self.zoom
        x0, y0, x1, y1 = self._span((cx - radius, cy - radius, cx + radius, cy + radius), 1)
        for y in range(y0, y1):
            for x in range(x0, x1):
                dx, dy = (x + 0.5) / z - cx, (cy - (y + 0.5) / z) / squash
                a = math.degrees(math.atan2(dy, dx))
                t = ((a - a0) * (1 if span > 0 else -1)) % 360 / abs(span)
                if t > 1:
                    continue
                r = math.hypot(dx, dy)
                thick = width * t
                if radius - thick <= r <= radius:
                    k = (radius - r) / max(thick, 0.01)
                    if t < 0.55 and BAYER[y & 3][x & 3] / 16 > t / 0.55:
                        continue
                    self.px[y * self.w + x] = colours[1] if 0.2 < k < 0.62 and t > 0.3 else colours[0]

    def picture(self, palette):
        return self.w, self.h, bytes(self.px), palette
