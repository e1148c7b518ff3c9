"""Sound effects: noise, sweeps, struck metal, and voices made of formants."""
import math
import random

from audiofiles import wav

TAU = 2 * math.pi


class Take:
    """A short recording that things are mixed into."""

    def __init__(self, seconds, rate, seed=1):
        self.rate, self.n = rate, int(seconds * rate)
        self.s = [0.0] * self.n
        self.random = random.Random(seed)

    def noise(self, amp, decay, low=1.0, start=0.0, attack=0.002, high=0.0):
        """Noise through a one-pole low pass (low, as a fraction) and a high pass."""
        y = z = 0.0
        r = self.random.random
        for i in range(int(start * self.rate), self.n):
            t = i / self.rate - start
            y += (r() * 2 - 1 - y) * low
            z += (y - z) * high
            self.s[i] += amp * min(1.0, t / attack) * math.exp(-t / decay) * (y - z if high else y)
        return self

    def sweep(self, amp, f0, f1, seconds, decay, start=0.0, shape=0.0, attack=0.002):
        """A tone that glides; shape adds harmonics."""
        ph = 0.0
        a = int(start * self.rate)
        for i in range(a, min(self.n, a + int(seconds * self.rate))):
            t = (i - a) / self.rate
            k = t / seconds
            ph += TAU * (f0 * (f1 / f0) ** k) / self.rate
            v = math.sin(ph)
            if shape:
                v = math.tanh(v * (1 + shape * 6)) * 0.8
            self.s[i] += amp * min(1.0, t / attack) * math.exp(-t / decay) * v * min(1.0, (1 - k) * 20)
        return self

    def ring(self, amp, partials, decay, start=0.0):
        a = int(start * self.rate)
        for f, w, d in partials:
            for i in range(a, self.n):
                t = (i - a) / self.rate
                e = math.exp(-t / (decay * d))
                if e < 0.003:
                    break
                self.s[i] += amp * w * e * min(1.0, t * 900) * math.sin(TAU * f * t)
        return self

    def whoosh(self, amp, seconds, f0, f1, start=0.0, q=3.0):
        """Band-passed noise whose band moves."""
        a = int(start * self.rate)
        n = min(self.n - a, int(seconds * self.rate))
        b = c = 0.0
        for i in range(n):
            k = i / n
            f = 2 * math.sin(math.pi * min(0.24, (f0 + (f1 - f0) * math.sin(k * math.pi / 2)) / self.rate))
            x = self.random.random() * 2 - 1
            b += f * c
            h = x - b - c / q
            c += f * h
            self.s[a + i] += amp * math.sin(math.pi * k) ** 1.5 * c * 0.6
        return self

    def voice(self, amp, seconds, pitch, vowels, start=0.0, rough=0.0, breath=0.05):
        """Two-formant voice. pitch: [Hz ...] and vowels: [(F1, F2) ...] spread over the time."""
        a = int(start * self.rate)
        n = min(self.n - a, int(seconds * self.rate))
        ph = 0.0
        st = [[0.0, 0.0], [0.0, 0.0], [0.0, 0.0]]

        def along(list_, k):
            x = k * (len(list_) - 1)
            i = min(int(x), len(list_) - 2)
            t = x - i
            p, q = list_[i], list_[i + 1]
            return p + (q - p) * t if not isinstance(p, tuple) else tuple(u + (v - u) * t for u, v in zip(p, q))
        for i in range(n):
            k = i / n
            f0 = along(pitch, k) * (1 + rough * (self.random.random() - 0.5))
            ph = (ph + f0 / self.rate) % 1.0
            src = (1 - 2 * ph) * 0.7 + (self.random.random() * 2 - 1) * breath
            f1, f2 = along(vowels, k)
            v = 0.0
            for m, (f, bw, w) in enumerate(((f1, 90, 1.0), (f2, 130, 0.7), (2700, 220, 0.25))):
                f = min(f, self.rate * 0.45)
                r = math.exp(-math.pi * bw / self.rate)
                y = (1 - r) * src * 2.4 + 2 * r * math.cos(TAU * f / self.rate) * st[m][0] - r * r * st[m][1]
                st[m][1], st[m][0] = st[m][0], y
                v += y * w
            e = min(1.0, k * 14) * min(1.0, (1 - k) * 5)
            self.s[a + i] += amp * e * math.tanh(v * 0.45)
        return self

    def echo(self, delay, level):
        d = int(delay * self.rate)
        for i in range(d, self.n):
            self.s[i] += self.s[i - d] * level
        return self

    def done(self, peak=0.85):
        m = max(abs(v) for v in self.s) or 1
        fade = int(0.006 * self.rate)
        return [v * peak / m * min(1.0, (self.n - 1 - i) / fade) for i, v in enumerate(self.s)]


AH, OH, EE, EH, OO = (730, 1090), (500, 850), (290, 2250), (530, 1800), (320, 800)


def play(save):
    def put(name, take, rate, bits=16, peak=0.85, stereo=None, loop=None):
        mono = take.done(peak)
        channels = [mono]
        if stereo:
            shift = int(stereo * rate)
            channels = [mono, [0.0] * shift + mono[:len(mono) - shift]]
        save("sounds/%s.wav" % name, wav(channels, rate, bits, loop))

    # Moves
    put("swing1", Take(0.18, 22050, 3).whoosh(1, 0.17, 500, 2600), 22050, 8, 0.6)
    put("swing2", Take(0.24, 22050, 4).whoosh(1, 0.23, 300, 1900), 22050, 8, 0.7)
    put("swing3", Take(0.34, 22050, 5).whoosh(1, 0.33, 180, 1300).sweep(0.12, 120, 300, 0.3, 0.2), 22050, 8, 0.75)
    put("jump", Take(0.22, 11025, 6).sweep(0.7, 240, 620, 0.2, 0.12).whoosh(0.4, 0.2, 600, 1800), 11025, 8, 0.6)
    put("land", Take(0.2, 11025, 7).sweep(1, 150, 55, 0.18, 0.06).noise(0.35, 0.03, 0.4), 11025, 8, 0.7)
    put("thud", Take(0.4, 22050, 8).sweep(1, 130, 38, 0.36, 0.11).noise(0.6, 0.05, 0.25), 22050, 8, 0.85)
    # Hits
    put("hit1", Take(0.18, 22050, 9).noise(1, 0.02, 0.75).sweep(0.8, 260, 90, 0.14, 0.05, shape=0.3), 22050, 16, 0.8)
    put("hit2", Take(0.24, 22050, 10).noise(1, 0.03, 0.6).sweep(1.0, 210, 60, 0.2, 0.07, shape=0.4), 22050, 16, 0.85)
    put("hit3", Take(0.42, 44100, 11).noise(1, 0.05, 0.35).sweep(1.2, 190, 36, 0.38, 0.12, shape=0.6).noise(0.5, 0.02, 0.9, high=0.2),
        44100, 16, 0.9, stereo=0.004)
    metal = ((523, 1, 1), (1397, .8, .7), (2210, .6, .5), (3380, .5, .35), (5130, .3, .2))
    put("clang", Take(0.7, 44100, 12).ring(0.6, metal, 0.22).noise(0.7, 0.012, 0.9, high=0.3), 44100, 16, 0.8, stereo=0.006)
    put("block", Take(0.2, 22050, 13).noise(0.8, 0.02, 0.5).ring(0.5, ((320, 1, 1), (770, .6, .6)), 0.06), 22050, 8, 0.7)
    put("ting", Take(0.5, 22050, 14).ring(0.6, ((2093, 1, 1), (4310, .5, .6), (6200, .25, .3)), 0.14), 22050, 16, 0.6)
    # Things
    t = Take(0.7, 22050, 15)
    for k in range(7):
        t.noise(0.9 - k * 0.1, 0.03, 0.5, start=0.03 + k * k * 0.009).ring(0.4, ((310 + 70 * k, 1, 1), (900 - 60 * k, .5, .5)), 0.05, 0.03 + k * k * 0.009)
    put("crash", t.sweep(0.8, 170, 60, 0.2, 0.06), 22050, 8, 0.85)
    put("coin", Take(0.5, 22050, 16).ring(0.5, ((1568, 1, 1), (3136, .4, .6)), 0.06).ring(0.6, ((2349, 1, 1), (4698, .4, .6)), 0.16, 0.07), 22050, 16, 0.6)
    t = Take(0.6, 22050, 17)
    for k, f in enumerate((523, 659, 784, 1047)):
        t.ring(0.5, ((f, 1, 1), (f * 2, .4, .6), (f * 3, .15, .4)), 0.14, k * 0.07)
    put("eat", t, 22050, 16, 0.6)
    put("take", Take(0.4, 22050, 18).ring(0.5, metal, 0.1).sweep(0.4, 400, 1200, 0.16, 0.1), 22050, 8, 0.6, stereo=0.005)
    put("throw", Take(0.3, 22050, 19).whoosh(1, 0.28, 900, 3600).ring(0.12, ((2600, 1, 1),), 0.1), 22050, 8, 0.65)
    put("steam", Take(0.9, 22050, 20).noise(1, 0.35, 0.9, attack=0.05, high=0.35).whoosh(0.5, 0.8, 3000, 5200), 22050, 8, 0.6)
    put("boom", Take(1.1, 22050, 21).noise(1, 0.22, 0.12, attack=0.004).sweep(1.1, 120, 28, 0.9, 0.3, shape=0.4).noise(0.4, 0.05, 0.8), 22050, 16, 0.9)
    put("quake", Take(0.9, 11025, 22).sweep(1, 90, 26, 0.8, 0.3, shape=0.5).noise(0.8, 0.2, 0.15), 11025, 16, 0.9)
    put("whistle", Take(0.7, 22050, 23).sweep(0.5, 900, 2100, 0.25, 1).sweep(0.5, 2100, 2050, 0.4, 0.3, 0.25).noise(0.2, 0.4, 0.9, high=0.5), 22050, 16, 0.5)
    put("select", Take(0.4, 22050, 24).ring(0.5, ((784, 1, 1), (1568, .4, .5)), 0.08).ring(0.5, ((1175, 1, 1), (2350, .4, .5)), 0.14, 0.08), 22050, 16, 0.6)
    # Voices
    def say(name, seconds, pitch, vowels, rate=22050, bits=8, rough=0.02, breath=0.06, seed=30, peak=0.6):
        put(name, Take(seconds + 0.03, rate, seed).voice(1, seconds, pitch, vowels, rough=rough, breath=breath), rate, bits, peak)
    say("bramble_hup", 0.2, [150, 190, 130], [OH, AH, AH])
    say("bramble_hah", 0.34, [140, 230, 150], [AH, AH, EH], breath=0.12)
    say("bramble_ow", 0.26, [210, 170, 120], [AH, OH, OO], rough=0.06)
    say("bramble_down", 0.8, [220, 180, 120, 80], [AH, OH, OH, OO], rough=0.08)
    say("juniper_hi", 0.18, [340, 430, 330], [EH, EE, EE])
    say("juniper_ya", 0.32, [330, 520, 380], [EE, AH, AH], breath=0.12)
    say("juniper_ow", 0.24, [480, 420, 300], [AH, OH, OO], rough=0.05)
    say("juniper_down", 0.75, [520, 430, 320, 220], [AH, AH, OH, OO], rough=0.06)
    say("nib_squeak", 0.2, [620, 900, 560], [EE, EE, EH], rough=0.08)
    say("nib_down", 0.5, [820, 640, 380, 300], [EE, EH, EH, OH], rough=0.08)
    say("magda_caw", 0.34, [300, 360, 240], [EH, AH, AH], rough=0.5, breath=0.3)
    say("magda_down", 0.6, [340, 300, 200, 150], [EH, AH, AH, AH], rough=0.5, breath=0.3)
    say("tubb_croak", 0.42, [95, 120, 80], [OO, AH, OH], rough=0.3)
    say("tubb_down", 0.9, [110, 120, 80, 55], [OH, AH, OH, OO], rough=0.3)
    t = Take(1.3, 22050, 41)
    t.voice(1, 1.15, [90, 150, 130, 100, 70], [OH, AH, AH, EH, OH], rough=0.35, breath=0.35).noise(0.12, 0.6, 0.2)
    put("baron_roar", t.echo(0.09, 0.3), 22050, 16, 0.9)
    t = Take(1.3, 22050, 42)
    for k in range(5):
        t.voice(0.9, 0.17, [150 - k * 8, 120 - k * 7], [AH, OH], start=0.02 + k * 0.22, rough=0.12, breath=0.25)
    put("baron_laugh", t.echo(0.11, 0.25), 22050, 16, 0.8)
    say("baron_ow", 0.4, [140, 120, 90], [AH, OH, OH], rough=0.2)
    t = Take(2.2, 22050, 43)
    t.voice(1, 1.9, [150, 170, 120, 90, 50], [AH, AH, OH, OH, OO], rough=0.3, breath=0.3).noise(0.5, 0.8, 0.9, start=0.6, attack=0.2, high=0.4)
    put("baron_down", t.echo(0.13, 0.35), 22050, 16, 0.9)
    # Rain, as a loop that has no seam: the tail is folded back over the head.
    t = Take(3.2, 22050, 44)
    t.noise(0.5, 1e9, 0.8, high=0.25)
    drops = random.Random(45)
    for k in range(150):
        s0 = drops.random() * 3.1
        f = 1800 + drops.random() * 3200
        t.sweep(0.5 * drops.random(), f, f * 1.3, 0.02, 0.006, s0)
    n, fold = int(2.8 * 22050), int(0.3 * 22050)
    s = t.s[:]
    for i in range(fold):
        k = i / fold
        s[i] = s[i] * k + s[n + i] * (1 - k)
    m = max(abs(v) for v in s[:n])
    save("sounds/rain.wav", wav([[v / m * 0.3 for v in s[:n]]], 22050, 8, loop=(0, n - 1)))
