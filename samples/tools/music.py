"""Three tunes, played by a small sequencer of oscillators, plucked strings and drums.

A part is a string of notes: name, octave and length in sixteenths (c4:2), - for a rest, and | as
a bar line for the eye. Parts of a tune repeat until its bars are full.
"""
import math
import random

from audiofiles import bor, wav

TAU = 2 * math.pi
RATE = 22050
NAMES = {"c": 0, "d": 2, "e": 4, "f": 5, "g": 7, "a": 9, "b": 11}


def pitch(name):
    n = NAMES[name[0]]
    rest = name[1:]
    if rest[0] in "#b":
        n += 1 if rest[0] == "#" else -1
        rest = rest[1:]
    return 440.0 * 2 ** ((n + 12 * (int(rest) + 1) - 69) / 12)


def notes(text):
    """[(start in sixteenths, length, frequency or None)]"""
    out, at = [], 0
    for word in text.split():
        if word == "|":
            continue
        name, _, length = word.partition(":")
        length = int(length or 2)
        for one in name.split("+"):
            out.append((at, length, None if one == "-" else pitch(one)))
        at += length
    return out, at


class Band:
    def __init__(self, bars, bpm, swing=0.0, tail=0.0):
        self.step = 60.0 / bpm / 4
        self.swing = swing
        self.bars = bars
        self.n = int(bars * 16 * self.step * RATE)
        self.mix = [0.0] * self.n
        self.random = random.Random(9)

    def time(self, at):
        s = at * self.step
        if at % 2:
            s += self.swing * self.step
        return s

    def play(self, voice, text, amp, first=0, bars=None, **kind):
        part, length = notes(text)
        end = (first + (bars or self.bars - first)) * 16
        base = first * 16
        while base < end:
            for at, n, f in part:
                if f and base + at < end:
                    t0 = self.time(base + at)
                    voice(self, int(t0 * RATE), self.time(base + at + n) - t0, f, amp, **kind)
            base += length

    def add(self, i, v):
        self.mix[i % self.n] += v           # what rings on past the end belongs to the loop's start

    # Instruments -------------------------------------------------------------------------------
    def pluck(self, start, seconds, f, amp, ring=0.996, bright=0.5):
        """A string: a burst of noise in a delay line."""
        n = max(2, int(RATE / f))
        line = [self.random.random() * 2 - 1 for _ in range(n)]
        for k in range(2):
            line = [(line[i] + line[i - 1]) * 0.5 for i in range(n)] if bright < 0.6 else line
        p = 0
        last = 0.0
        total = int(min(seconds * 2.2 + 0.25, 1.8) * RATE)
        for i in range(total):
            v = line[p]
            line[p] = (v * (0.5 + bright * 0.35) + last * (0.5 - bright * 0.35)) * ring
            last = v
            p = (p + 1) % n
            e = min(1.0, (total - i) / 900)
            self.add(start + i, v * amp * e)

    def reed(self, start, seconds, f, amp, vibrato=5.2, bite=0.45):
        """Accordion: two pulse waves a hair apart."""
        n = int(seconds * RATE * 0.97)
        a = b = 0.0
        lp = 0.0
        for i in range(n):
            t = i / RATE
            v = 1 + 0.004 * math.sin(TAU * vibrato * t) * min(1.0, t * 4)
            a = (a + f * v / RATE) % 1.0
            b = (b + f * 1.006 * v / RATE) % 1.0
            s = (1 if a < 0.35 else -0.54) + (1 if b < 0.42 else -0.72)
            lp += (s - lp) * bite
            e = min(1.0, t / 0.03) * min(1.0, (n - i) / 700)
            self.add(start + i, lp * amp * 0.4 * e)

    def bell(self, start, seconds, f, amp, decay=0.5):
        n = int(min(1.4, decay * 3) * RATE)
        for i in range(n):
            t = i / RATE
            e = math.exp(-t / decay)
            self.add(start + i, amp * e * (math.sin(TAU * f * t + 1.6 * e * math.sin(TAU * f * 3.5 * t)) * min(1.0, t * 700)))

    def bass(self, start, seconds, f, amp):
        n = int(seconds * RATE * 0.95)
        ph = 0.0
        for i in range(n):
            t = i / RATE
            ph = (ph + f / RATE) % 1.0
            s = 4 * abs(ph - 0.5) - 1
            s = math.tanh(1.8 * (s * 0.8 + 0.3 * math.sin(TAU * ph)))
            e = min(1.0, t / 0.006) * math.exp(-t * 1.6) * min(1.0, (n - i) / 400)
            self.add(start + i, s * amp * e)

    def brass(self, start, seconds, f, amp):
        n = int(seconds * RATE * 0.95)
        ph = lp = 0.0
        for i in range(n):
            t = i / RATE
            ph = (ph + f * (1 + 0.003 * math.sin(TAU * 5 * t)) / RATE) % 1.0
            lp += ((1 - 2 * ph) - lp) * (0.12 + 0.35 * min(1.0, t / 0.08))
            e = min(1.0, t / 0.02) * min(1.0, (n - i) / 800)
            self.add(start + i, lp * amp * e)

    def drums(self, pattern, amp, first=0, bars=None):
        """k kick, s snare, h hat, o open hat, t tom, w woodblock; one character a sixteenth."""
        pattern = pattern.replace(" ", "").replace("|", "")
        end = (first + (bars or self.bars - first)) * 16
        for at in range(first * 16, end):
            what = pattern[(at - first * 16) % len(pattern)]
            if what != "-":
                self.drum(int(self.time(at) * RATE), what, amp)

    def drum(self, start, what, amp):
        r = self.random
        if what == "k":
            ph = 0.0
            for i in range(int(0.2 * RATE)):
                t = i / RATE
                ph += TAU * (44 + 120 * math.exp(-t * 40)) / RATE
                self.add(start + i, amp * 1.2 * math.sin(ph) * math.exp(-t * 16))
        elif what == "s":
            lp = 0.0
            for i in range(int(0.16 * RATE)):
                t = i / RATE
                x = r.random() * 2 - 1
                lp += (x - lp) * 0.6
                self.add(start + i, amp * (0.62 * lp * math.exp(-t * 24) + 0.4 * math.sin(TAU * 190 * t) * math.exp(-t * 30)))
        elif what in "ho":
            lp = 0.0
            n, d = (0.05, 90) if what == "h" else (0.2, 18)
            for i in range(int(n * RATE)):
                t = i / RATE
                x = r.random() * 2 - 1
                lp += (x - lp) * 0.4
                self.add(start + i, amp * 0.3 * (x - lp) * math.exp(-t * d))
        elif what == "t":
            for i in range(int(0.25 * RATE)):
                t = i / RATE
                self.add(start + i, amp * 0.9 * math.sin(TAU * (110 - 60 * t) * t) * math.exp(-t * 12))
        elif what == "w":
            for i in range(int(0.06 * RATE)):
                t = i / RATE
                self.add(start + i, amp * 0.5 * math.sin(TAU * 820 * t) * math.exp(-t * 70))

    def echo(self, seconds, level):
        d = int(seconds * RATE)
        src = self.mix[:]
        for k in (1, 2, 3):
            g = level ** k
            for i in range(self.n):
                self.mix[(i + d * k) % self.n] += src[i] * g
        return self

    def done(self, peak=0.86):
        m = max(abs(v) for v in self.mix)
        return [math.tanh(v / m * 1.25) / math.tanh(1.25) * peak for v in self.mix]


def row():
    """Kettle Row: a street waltz that forgot to be one, in D dorian, with an accordion."""
    b = Band(20, 112, swing=0.28)
    B = Band
    chords = ("- d4+f4+a4:2 - d4+f4+a4:2 - d4+f4+a4:2 - d4+f4+a4:2 | - c4+e4+g4:2 - c4+e4+g4:2 - c4+e4+g4:2 - c4+e4+g4:2 | "
              "- a3+c4+e4:2 - a3+c4+e4:2 - a3+c4+e4:2 - a3+c4+e4:2 | - g3+b3+d4:2 - g3+b3+d4:2 - a3+c#4+e4:2 - a3+c#4+e4:2 |")
    bass = ("d2:3 d2:1 a2:4 d2:3 f2:1 a2:4 | c2:3 c2:1 g2:4 c2:3 e2:1 g2:4 | a1:3 a1:1 e2:4 a1:3 c2:1 e2:4 | g1:3 g1:1 d2:4 a1:3 a1:1 c#2:4 |")
    one = ("d5:3 e5:1 f5:2 a5:2 g5:2 f5:2 e5:2 d5:2 | e5:3 f5:1 g5:2 e5:2 c5:6 -:2 | c5:3 d5:1 e5:2 a5:2 g5:2 e5:2 d5:2 c5:2 | d5:4 b4:2 d5:2 c#5:6 -:2 |")
    two = ("a5:4 g5:2 f5:2 a5:2 g5:2 f5:2 e5:2 | g5:4 f5:2 e5:2 g5:8 | e5:4 d5:2 c5:2 e5:2 d5:2 c5:2 a4:2 | b4:2 d5:2 g5:2 b5:2 a5:6 -:2 |")
    b.play(B.pluck, chords, 0.20, bright=0.4)
    b.play(B.bass, bass, 0.36)
    b.play(B.reed, one, 0.20, first=4, bars=4)
    b.play(B.reed, two, 0.20, first=8, bars=4)
    b.play(B.bell, one, 0.10, first=12, bars=4, decay=0.3)
    b.play(B.reed, "d4:16 | c4:16 | a3:16 | g3:8 a3:8 |", 0.12, first=12, bars=4)
    b.play(B.reed, two, 0.19, first=16, bars=4)
    b.play(B.pluck, one, 0.16, first=16, bars=4, bright=0.8)
    b.drums("k--hw-h-s--hk-h-", 0.34, first=0, bars=4)
    b.drums("k-hhw-h-s-hhk-hwk-hhw-h-s-hhkshs", 0.36, first=4)
    return b.echo(0.21, 0.22).done()


def docks():
    """The night ferry: plucked strings over a walking bass, cool and wet."""
    b = Band(20, 124, swing=0.12)
    B = Band
    riff = ("e4:1 -:1 g4:1 a4:1 -:1 b4:2 a4:1 g4:2 e4:2 d4:2 e4:2 | e4:1 -:1 g4:1 a4:1 -:1 b4:2 d5:1 b4:2 a4:2 g4:2 a4:2 | "
            "c4:1 -:1 e4:1 g4:1 -:1 a4:2 g4:1 e4:2 d4:2 c4:2 d4:2 | b3:1 -:1 d#4:1 f#4:1 -:1 a4:2 f#4:1 b4:4 a4:2 f#4:2 |")
    bass = ("e2:2 e2:2 g2:2 a2:2 b2:2 a2:2 g2:2 d2:2 | e2:2 e2:2 g2:2 a2:2 b2:2 d3:2 b2:2 a2:2 | "
            "c2:2 c2:2 e2:2 g2:2 a2:2 g2:2 e2:2 d2:2 | b1:2 b1:2 d#2:2 f#2:2 a2:2 f#2:2 b2:2 b1:2 |")
    lead = ("e5:6 d5:2 b4:4 d5:4 | e5:4 g5:4 f#5:2 e5:2 d5:4 | c5:6 b4:2 g4:4 a4:4 | b4:4 d#5:4 f#5:4 a5:2 b5:2 |")
    high = ("g5:3 a5:1 b5:4 a5:2 g5:2 e5:4 | g5:3 a5:1 b5:2 d6:2 b5:4 a5:4 | e5:3 g5:1 a5:4 g5:2 e5:2 d5:4 | f#5:4 b5:4 a5:2 f#5:2 d#5:4 |")
    b.play(B.pluck, riff, 0.24, bright=0.6)
    b.play(B.bass, bass, 0.38)
    b.play(B.bell, lead, 0.13, first=4, bars=8, decay=0.6)
    b.play(B.reed, lead, 0.13, first=8, bars=4, bite=0.2)
    b.play(B.reed, high, 0.17, first=12, bars=8, bite=0.32)
    b.play(B.bell, "e6:4 -:4 b5:4 -:4 | g6:4 -:4 d6:4 -:4 |", 0.05, first=12, bars=8, decay=0.4)
    b.drums("k--hs--hk-kh-sh-", 0.34, first=0, bars=4)
    b.drums("k-hhs-hhk-khs-hoktkhs-hhk-khs-ts", 0.38, first=4)
    return b.echo(0.18, 0.25).done()


def boss():
    """The Baron boils: low brass in seven-league boots."""
    b = Band(16, 138)
    B = Band
    bass = ("c2:1 c2:1 c3:1 c2:1 eb2:2 c2:2 c2:1 c2:1 c3:1 c2:1 f#2:2 g2:2 | ab1:1 ab1:1 ab2:1 ab1:1 c2:2 ab1:2 g1:1 g1:1 g2:1 g1:1 b1:2 d2:2 |")
    stab = ("c3+g3:2 -:2 c3+g3:2 -:2 eb3+bb3:4 d3+a3:2 f#3+c4:2 | ab2+eb3:2 -:2 ab2+eb3:2 -:2 g2+d3:4 g2+f3:2 b2+d3:2 |")
    lead = ("c5:4 eb5:2 g5:2 f#5:4 g5:2 c6:2 | bb5:2 ab5:2 g5:2 f5:2 g5:6 -:2 | c5:4 eb5:2 ab5:2 g5:4 f5:2 eb5:2 | d5:2 f5:2 b5:2 d6:2 c6:2 b5:2 g5:4 |")
    b.play(B.bass, bass, 0.42)
    b.play(B.brass, stab, 0.17)
    b.play(B.brass, lead, 0.24, first=4, bars=8)
    b.play(B.bell, lead, 0.10, first=8, bars=8, decay=0.25)
    b.play(B.reed, "c4:16 | g3:16 | ab3:16 | g3:8 b3:8 |", 0.15, first=8, bars=8)
    b.play(B.brass, lead, 0.20, first=12, bars=4)
    b.drums("k-k-s-k-k-kks-ss", 0.40, first=0, bars=4)
    b.drums("kkk-skk-kkkkskthk-k-s-k-kkkksstt", 0.42, first=4)
    return b.echo(0.11, 0.2).done(0.9)


def parlour():
    """Before the tale begins: a music box and a slow string."""
    b = Band(8, 84)
    B = Band
    b.play(B.bell, "d5:4 f5:4 a5:4 d6:4 | c5:4 e5:4 g5:6 e5:2 | a4:4 c5:4 e5:4 a5:4 | g4:4 b4:4 c#5:8 |", 0.2, decay=0.7)
    b.play(B.pluck, "d3:8 a3:8 | c3:8 g3:8 | a2:8 e3:8 | g2:8 a2:8 |", 0.3, bright=0.3)
    b.play(B.reed, "a4:8 g4:8 | e4:8 g4:8 | c5:8 b4:8 | d5:8 c#5:8 |", 0.08, first=4, bars=4, bite=0.2)
    return b.echo(0.36, 0.3).done(0.8)


def play(save):
    save("music/row.bor", bor(row(), "Kettle Row", "The Kettle Row band"))
    save("music/docks.bor", bor(docks(), "The Night Ferry", "The Kettle Row band"))
    save("music/boss.bor", bor(boss(), "The Baron Boils", "The Kettle Row band"))
    tune = parlour()
    save("music/parlour.wav", wav([tune], RATE, 8, loop=(0, len(tune) - 1)))
