"""Key poses and the in-betweens of every animation."""
import math

from rig import blend, pose


def tween(*keys):
    """keys: (pose, frames until the next one). The last key is its own frame."""
    out = []
    for i, (p, n) in enumerate(keys):
        if i + 1 < len(keys):
            for k in range(n):
                t = k / n
                out.append(blend(p, keys[i + 1][0], t * t * (3 - 2 * t)))
        else:
            out.append(p)
    return out


def idle(base, n=4):
    out = []
    for i in range(n):
        a = 2 * math.pi * i / n
        s = (1 - math.cos(a)) / 2
        out.append(pose(base, y=base["y"] - 1.4 * s, hy=base["hy"] - 0.4 * s, lean=base["lean"] + 1.2 * s,
                        hn=(base["hn"][0] + 0.4 * s, base["hn"][1] - 0.9 * s),
                        hf=(base["hf"][0] + 0.5 * s, base["hf"][1] - 1.3 * s),
                        ear=base["ear"] + 5 * math.sin(a - 0.8), sway=base["sway"] + 3 * math.sin(a - 0.9),
                        tail=base["tail"] + 5 * math.sin(a - 0.6)))
    return out


def walk(base, n=8, stride=10.5, height=5.0, bob=1.4, lean=7, swing=7):
    out = []
    for i in range(n):
        th = -2 * math.pi * i / n
        feet = []
        for ph in (0, math.pi):
            a = th + ph
            lift = max(0.0, math.sin(a))
            feet.append((stride * math.cos(a), height * lift, 24 * math.sin(a) * (1 if math.cos(a) < 0 else -0.6)))
        arm = math.cos(th)
        p = pose(base, lean=lean, y=base["y"] * 0.4 + bob * (abs(math.sin(th)) - 0.5),
                 ln=feet[0], lf=feet[1],
                 ear=base["ear"] + 6 * math.cos(2 * th + 0.8), sway=base["sway"] + 5 + 3 * math.cos(2 * th + 0.6),
                 tail=base["tail"] + 8 * math.cos(th + 0.5))
        if swing:
            p["hn"] = (3 - swing * arm, -14 + 3 * max(0, -arm))
            p["hf"] = (5 + swing * arm, -12 + 3 * max(0, arm))
        out.append(p)
    return out


def run(base, n=8):
    out = []
    for i in range(n):
        th = -2 * math.pi * i / n
        feet = []
        for ph in (0, math.pi):
            a = th + ph
            lift = max(0.0, math.sin(a))
            feet.append((16 * math.cos(a) - 2, 11 * lift + 2 * max(0, -math.cos(a)), 46 * max(0, -math.cos(a)) * (0.3 + lift)))
        arm = math.cos(th)
        out.append(pose(base, lean=24, head=-6, y=1 + 2.6 * (abs(math.sin(th + 0.4)) - 0.4), face="a",
                        ln=feet[0], lf=feet[1], hn=(1 - 11 * arm, -9 + 4 * max(0, -arm)),
                        hf=(5 + 11 * arm, -8 + 5 * max(0, arm)), ear=26 + 5 * math.cos(2 * th),
                        sway=base["sway"] - 4 + 3 * math.cos(2 * th), tail=6 * math.cos(2 * th)))
    return out


def lie(base, rot=-84, **over):
    p = pose(base, rot=rot, hang=1, lean=-6, head=-8, y=-15, x=2, face="p", ln=(-2, 3, 10), lf=(5, 5, 10),
             hn=(8, 8), hf=(12, 12), en=-1, ef=-1, ear=-34, sway=0, fn="open", ff="open")
    p.update(over)
    return p


def common(base):
    """What everybody on the street can do."""
    m = {}
    m["idle"] = idle(base)
    m["walk"] = walk(base)
    hurt = pose(base, x=-4, y=-1, lean=-16, head=-14, face="p", hn=(10, -8), hf=(15, 3), ear=-22, sway=-7, tail=-8,
                ln=(-12, 0, 0), lf=(7, 0, 0), fn="open", ff="open")
    m["pain"] = [hurt, pose(hurt, x=-2, lean=-8, head=-6, ear=14, sway=6, hn=(8, -10), hf=(12, -4))]
    belly = pose(base, x=-6, y=-4, lean=30, head=16, face="p", hn=(10, -12), hf=(12, -13), ln=(-9, 0, 0), lf=(5, 0, 0),
                 ear=-28, sway=7, tail=10)
    m["pain2"] = [belly, pose(belly, y=-2, lean=20, head=6, ear=12)]
    f1 = pose(base, rot=-26, hang=1, y=3, x=-2, lean=-14, head=-16, face="p", ln=(-2, 4, 10), lf=(12, 9, 30),
              hn=(14, 4), hf=(18, 10), ear=-30, sway=-9, tail=-10, fn="open", ff="open")
    f2 = pose(f1, rot=-58, y=4, ln=(0, 6, 20), lf=(11, 12, 40), ear=-20)
    f3 = lie(base, rot=-74, y=-8, ln=(2, 4, 20), lf=(10, 9, 30))
    m["fall"] = [f1, f2, f3, lie(base)]
    m["death"] = [lie(base, face="p", hn=(12, 4), hf=(4, 14))]
    up1 = pose(base, x=-2, y=-13, lean=38, head=-10, face="p", ln=(-8, 0, 0), lf=(10, 0, 0), hn=(9, -16), hf=(12, -16), ear=10)
    up2 = pose(base, x=0, y=-7, lean=24, head=-4, hn=(6, -14), hf=(10, -12), ear=-6)
    m["rise"] = [pose(lie(base), rot=-52, y=-13, hn=(-3, -12), en=1, lf=(8, 8, 0)), up1, up2]
    m["grabbed"] = [pose(base, x=0, lean=-10, head=-10, face="p", hn=(12, 0), hf=(14, -2), y=1, ear=-14, sway=-4,
                         ln=(-6, 0, 0), lf=(6, 2, -14), fn="open", ff="open")]
    return m


def brawler(base):
    """The heroes' moves; enemies borrow from them."""
    b = base
    m = common(b)
    m["run"] = run(b)
    m["up"] = walk(b, 6, stride=6, lean=3, swing=5)
    take = pose(b, y=-6, lean=16, hn=(-2, -13), hf=(4, -13), ear=10, sway=4, face="n")
    rise = pose(b, hang=1, y=4, lean=10, head=-8, ln=(-7, 3, 30), lf=(8, 11, 10), hn=(4, 6), hf=(12, 9), ear=24, sway=10, tail=8)
    apex = pose(b, hang=1, y=4, lean=14, ln=(-3, 10, 20), lf=(9, 13, 10), hn=(4, -10), hf=(12, -6), ear=0, sway=0)
    drop = pose(b, hang=1, y=4, lean=6, head=6, ln=(-8, 4, -6), lf=(5, 6, -4), hn=(-6, 5), hf=(10, 7), en=-1, ear=-34, sway=-14, tail=-12)
    land = pose(b, y=-9, lean=22, head=-6, hn=(0, -14), hf=(8, -14), ear=14, sway=-6, ln=(-11, 0, 0), lf=(11, 0, 0))
    m["jump"] = [rise, apex, drop, land, take]
    m["runjump"] = [pose(rise, lean=24, ln=(-14, 3, 40), lf=(14, 9, 0)), pose(apex, lean=26, ln=(-15, 6, 50), lf=(13, 11, 0)),
                    pose(drop, lean=14), land]
    # attack1: a jab with the far fist
    w = pose(b, x=-2, lean=0, hf=(3, -6), hn=(7, -6), ear=6)
    h = pose(b, x=5, lean=17, head=-6, hf=(23, -1), hn=(3, -8), face="a", farfront=0, lf=(12, 0, 0), ear=20, sway=8,
             fx=(("lines", 26, 42, 3, 3, 0, 12),))
    m["attack1"] = [w, h, blend(h, b, 0.55)]
    # attack2: the near fist swings across
    w = pose(b, x=-3, lean=-6, hn=(-10, -3), en=1, hf=(9, -4), ear=8, sway=6)
    h = pose(b, x=7, y=-1, lean=22, head=-8, hn=(24, 0), hf=(0, -9), face="a", lf=(13, 0, 0), ear=24, sway=-8,
             fx=(("arc", 6, 41, 33, 195, 368, 13, 0.5),))
    m["attack2"] = [w, h, blend(h, b, 0.5)]
    # attack3: a front kick
    w = pose(b, x=-4, y=1, lean=-8, lf=(5, 13, 20), hn=(6, -5), hf=(8, -2), ear=6)
    h = pose(b, x=-3, y=2, lean=-24, head=14, lf=(31, 27, 64), ln=(-7, 0, 0), hn=(-4, -10), hf=(10, -3), face="a", ear=-16, sway=-8,
             fx=(("lines", 36, 30, 3, 3, 0, 14),))
    m["attack3"] = [w, h, pose(h, lean=-18, lf=(26, 22, 50), fx=()), blend(h, b, 0.6)]
    # attack4: an uppercut that leaves the ground
    w = pose(b, x=-2, y=-9, lean=30, head=-8, hn=(2, -19), hf=(12, -3), ear=-10, sway=5, ln=(-10, 0, 0), lf=(10, 0, 0))
    h = pose(b, x=6, y=5, lean=-6, head=-16, hn=(12, 19), en=1, hf=(0, -11), face="a", ln=(-7, 2, 26), lf=(10, 4, 8), ear=-40,
             sway=-14, fx=(("arc", 8, 42, 33, -64, 78, 10),))
    m["attack4"] = [pose(w, y=-4, lean=16), w, h, pose(h, y=7, fx=(), ear=-24, sway=-10), blend(h, b, 0.6)]
    # in the air
    kick = pose(b, hang=1, y=4, lean=-14, head=12, ln=(-3, 13, 0), lf=(24, 9, 30), hn=(-6, -3), hf=(6, -6), face="a", ear=16, sway=10,
                fx=(("lines", 24, 18, 3, 3, 0, 16),))
    m["jumpattack"] = [pose(apex, ln=(-2, 14, 0), lf=(6, 16, 0)), kick, pose(kick, fx=())]
    # charge
    go = pose(b, x=6, y=-3, lean=40, head=-22, hn=(8, -6), hf=(17, -6), ln=(-17, 0, 40), lf=(8, 0, 0), face="a", ear=40, sway=-4)
    m["dash"] = [pose(b, x=-4, y=-5, lean=6, hf=(4, -6), hn=(0, -9), ear=-10), pose(go, fx=(("lines", -8, 30, 14, 5, 0, 22),)),
                 pose(go, x=8, ln=(-19, 2, 50), fx=(("lines", -6, 30, 14, 5, 0, 30),)), blend(go, b, 0.5)]
    # spin: two opposite halves; the game mirrors every other frame
    s1 = pose(b, y=2, lean=4, hn=(-15, 0), hf=(17, 1), face="a", ln=(-5, 0, 0), lf=(6, 5, 0), ear=36, sway=16, tail=14,
              fx=(("arc", 0, 36, 40, 165, 385, 15, 0.36),))
    s2 = pose(s1, hn=(15, 2), hf=(-12, 2), fx=(("arc", 0, 36, 40, -15, 195, 15, 0.36),), ear=-30, sway=-12)
    m["special"] = [pose(b, y=-7, lean=18, hn=(-8, -8), hf=(-2, -10), ear=-8, sway=-6), s1, s2, s1, s2, blend(s1, b, 0.7)]
    # both hands forward: a gust of steam
    wind = pose(b, x=-5, y=-4, lean=-8, head=-4, hn=(-10, -5), hf=(-4, -5), fn="open", ff="open", ear=-10, sway=-6)
    push = pose(b, x=6, y=-3, lean=20, hn=(22, -2), hf=(17, -1), fn="open", ff="open", face="a", lf=(14, 0, 0), ear=24, sway=9,
                fx=(("burst", 30, 40, 12, 8, 12, 0),))
    m["gust"] = [wind, pose(wind, x=-6, y=-5, fx=(("burst", -10, 36, 6, 6, 0, 0),)), push, pose(push, fx=()), blend(push, b, 0.6)]
    m["charge"] = [pose(wind, y=-6, fx=(("burst", -6, 34, 9, 8, 20, 0),)), pose(b, x=9, y=-2, lean=26, hn=(25, 1), hf=(0, -9), face="a",
                   lf=(15, 0, 0), ear=30, sway=12, fx=(("burst", 38, 42, 15, 10, 0, 0), ("lines", 14, 42, 7, 4, 0, 26))),
                   pose(b, x=6, lean=18, hn=(21, -2), hf=(2, -8), face="a", lf=(13, 0, 0))]
    m["grab"] = [pose(b, x=3, lean=14, hn=(16, -2), hf=(15, 0), fn="open", ff="open", lf=(12, 0, 0))]
    m["grabattack"] = [pose(b, x=1, lean=8, hn=(12, -3), hf=(14, 0), lf=(3, 10, 0), face="n"),
                       pose(b, x=5, lean=12, hn=(13, -5), hf=(14, 0), lf=(13, 17, 24), face="a", ear=-14)]
    m["throw"] = [pose(b, y=-5, lean=16, hn=(14, -4), hf=(14, -4)), pose(b, y=2, lean=-14, head=-8, hn=(3, 16), hf=(9, 17), face="a", ear=-20),
                  pose(b, x=4, y=-3, lean=36, hn=(21, -6), hf=(19, -3), face="a", lf=(13, 0, 0), ear=30, sway=10, fn="open", ff="open",
                       fx=(("arc", 2, 34, 34, 120, 0, 8),)),
                  pose(b, x=2, lean=20, hn=(14, -9), hf=(15, -8))]
    m["block"] = [pose(b, x=-3, y=-2, lean=-4, head=6, hn=(10, 5), hf=(13, 7), ear=22)]
    m["blockpain"] = [pose(b, x=-6, y=-3, lean=-10, head=4, hn=(9, 6), hf=(11, 8), ear=34, sway=-6, ln=(-13, 0, 0))]
    m["guardbreak"] = [pose(m["pain"][0], y=-3, fx=(("sweat", 4, 66, 1.2, 0, 0, 0),)), m["pain"][1]]
    m["get"] = [pose(b, y=-12, lean=36, head=4, hn=(9, -16), hf=(11, -14), fn="open", ear=10), pose(b, y=-6, lean=18, hn=(8, -9))]
    m["dodge"] = [pose(b, x=-8, y=-6, lean=-16, head=10, hn=(4, -8), hf=(9, -6), ln=(-14, 0, 0), lf=(2, 0, 0), ear=-20, sway=10)]
    cheer = pose(b, y=1, lean=-4, head=-8, hn=(-5, 19), hf=(8, -10), face="h", ear=-6, ln=(-7, 0, 0), lf=(7, 0, 0))
    m["win"] = [pose(b, y=-5, lean=10, hn=(2, -8), hf=(9, -8), face="n"), cheer, pose(cheer, y=3, hn=(-4, 20), ear=10, sway=6),
                pose(cheer, y=0, ear=-12, sway=-5)]
    m["spawn"] = [pose(drop, hn=(-8, 10), hf=(12, 12)), land, pose(land, y=-4, lean=12)]
    return m


def armed(base, prop):
    """Standing, walking and hitting with a thing in the near hand."""
    b = pose(base, prop=prop, pa=62, hn=(9, -6))
    m = {"idle": idle(b), "walk": walk(b, 8, swing=0), "run": [pose(p, prop=prop, pa=70) for p in run(base)]}
    if prop == "ladle":
        w = pose(b, x=-4, lean=-14, head=4, hn=(-8, 13), en=1, pa=128, hf=(12, -3), ear=8, sway=6)
        h = pose(b, x=7, y=-2, lean=24, hn=(20, -7), pa=-18, hf=(-2, -9), face="a", lf=(13, 0, 0), ear=26, sway=9,
                 fx=(("arc", 8, 36, 44, 118, -22, 13),))
        m["attack1"] = [w, h, pose(h, pa=-30, hn=(17, -12), fx=()), blend(h, b, 0.6)]
        w = pose(b, x=-2, y=-6, lean=24, hn=(-2, -17), pa=-140, ear=-8)
        h = pose(b, x=5, y=4, lean=-8, head=-12, hn=(15, 15), pa=80, face="a", ear=-36, sway=-12, fx=(("arc", 4, 40, 44, -70, 88, 13),))
        m["attack2"] = [w, h, pose(h, fx=(), pa=98), blend(h, b, 0.6)]
        air = pose(b, hang=1, y=4, lean=18, ln=(-6, 9, 20), lf=(9, 12, 10), hn=(18, -4), pa=-10, hf=(2, -8), face="a",
                   ear=24, sway=10, fx=(("arc", 4, 34, 42, 120, -20, 12),))
        m["jumpattack"] = [pose(air, lean=-6, hn=(-5, 14), pa=130, fx=()), air, pose(air, fx=())]
    else:
        w = pose(b, x=-4, lean=-16, head=4, hn=(-9, 11), pa=120, hf=(14, 2), ear=6)
        h = pose(b, x=6, lean=22, hn=(22, 0), prop=None, hf=(0, -9), face="a", lf=(13, 0, 0), fn="open", ear=26, sway=8,
                 fx=(("lines", 22, 44, 3, 3, 0, 16),))
        m["attack1"] = [w, pose(w, x=-5, lean=-20, pa=140), h, pose(h, lean=16, hn=(18, -6), fx=()), b]
    return m


def crew():
    """Every character's animations: name -> {animation: [poses]}."""
    out = {}
    stance = pose()
    b = pose(stance, lean=7, ln=(-9, 0, 0), lf=(9, 0, 0))
    out["bramble"] = brawler(b)
    out["bramble"]["stance"] = [b]
    light = pose(stance, lean=5, y=0, ln=(-8, 0, 0), lf=(8, 0, 0), hn=(8, -8), hf=(12, -5), ear=0)
    m = brawler(light)
    # Juniper kicks where Bramble punches.
    w = pose(light, x=-3, y=2, lean=-12, lf=(6, 15, 10), hn=(2, -6), hf=(8, -2), ear=8)
    h = pose(light, x=-2, y=3, lean=-36, head=24, lf=(30, 40, 78), ln=(-6, 0, 0), hn=(-8, -8), hf=(9, 0), face="a", ear=-24, sway=-12,
             fx=(("arc", 2, 34, 42, -50, 34, 9),))
    m["attack3"] = [w, h, pose(h, fx=(), lf=(26, 34, 60)), blend(h, light, 0.6)]
    flip = [pose(light, hang=1, y=18, rot=r, lean=22, ln=(-2, 14, 0), lf=(6, 15, 0), hn=(2, -10), hf=(6, -10), ear=30, sway=12, face="a")
            for r in (-30, -110, -190, -270)]
    kick = pose(light, hang=1, y=10, rot=-36, lean=-8, lf=(22, 15, 60), ln=(0, 8, 0), hn=(-8, 6), hf=(-2, 8), face="a", ear=-30, sway=-14,
                fx=(("arc", 0, 30, 42, -70, 60, 11),))
    m["attack4"] = [pose(light, y=-9, lean=24, hn=(-2, -14), hf=(4, -14), ear=-8), kick, flip[1], flip[2], flip[3],
                    pose(light, y=-8, lean=20, hn=(0, -14), hf=(8, -14), ear=14)]
    m["stance"] = [light]
    out["juniper"] = m
    low = pose(stance, lean=15, head=-6, y=-2, ln=(-9, 0, 0), lf=(9, 0, 0), hn=(8, -9), hf=(12, -6), tail=0)
    out["nib"] = brawler(low)
    bird = pose(stance, lean=12, head=-4, hn=(7, -9), hf=(11, -6), ln=(-6, 0, 0), lf=(7, 0, 0))
    m = brawler(bird)
    w = pose(bird, x=-4, lean=-10, head=-14, hn=(-6, -4), hf=(2, -4))
    h = pose(bird, x=7, y=-3, lean=38, head=16, hx=5, hn=(-10, 0), hf=(-8, 2), face="a", tail=16, fx=(("lines", 34, 38, 3, 3, 0, 10),))
    m["attack1"] = [w, h, blend(h, bird, 0.6)]
    toss = armed(bird, "spoon")["attack1"]
    m["toss"] = toss
    out["magda"] = m
    wide = pose(stance, lean=3, ln=(-11, 0, 0), lf=(11, 0, 0), hn=(10, -14), hf=(11, -12))
    m = brawler(wide)
    m["walk"] = walk(wide, 8, stride=8, height=4, bob=1.0, lean=2, swing=4)
    w = pose(wide, x=-6, lean=-18, head=6, hn=(-6, -8), hf=(2, -8))
    h = pose(wide, x=12, lean=-10, head=6, hn=(-8, -6), hf=(0, -6), face="a", lf=(20, 0, 0), fx=(("burst", 32, 28, 12, 8, 0, 0),))
    m["attack1"] = [w, h, pose(h, x=8, fx=()), blend(h, wide, 0.5)]
    w = pose(wide, y=1, x=-3, lean=-16, head=-8, hn=(2, 20), hf=(8, 20), face="a")
    h = pose(wide, y=-6, x=6, lean=36, hn=(20, -10), hf=(17, -10), face="a", fx=(("arc", 4, 28, 44, 130, -20, 11),))
    m["attack2"] = [pose(w, y=-3, lean=6, hn=(8, -4), hf=(10, -4)), w, h, pose(h, fx=()), blend(h, wide, 0.6)]
    out["tubb"] = m
    big = pose(stance, lean=2, ln=(-11, 0, 0), lf=(11, 0, 0), hn=(1, -14), hf=(9, -9), prop="mace", pa=122)
    m = common(big)
    m["walk"] = walk(big, 8, stride=10, height=5, bob=1.4, lean=3, swing=0)
    w = pose(big, x=-5, lean=-18, head=6, hn=(-6, 12), pa=136, hf=(11, -6), face="n")
    h = pose(big, x=9, y=-3, lean=22, hn=(15, -10), pa=-16, hf=(-3, -8), face="a", lf=(15, 0, 0), sway=10,
             fx=(("arc", 8, 36, 52, 120, -24, 15),))
    m["attack1"] = [pose(w, x=-2, lean=-8, hn=(-2, 4), pa=110), w, h, pose(h, pa=-30, fx=()), blend(h, big, 0.6)]
    s = pose(big, x=-3, y=-2, lean=-10, head=-10, hf=(10, -4), face="n")
    b = pose(big, x=4, y=-3, lean=14, head=8, hf=(12, -8), face="a", sway=6)
    m["attack2"] = [s, pose(s, y=-3), b, pose(b, head=11), pose(b, head=6), blend(b, big, 0.6)]
    w = pose(big, x=-4, lean=-12, hf=(-6, 12), ef=1)
    m["attack3"] = [w, pose(big, x=5, lean=18, hf=(19, 6), face="a", ff="open", sway=6), blend(b, big, 0.5)]
    up = pose(big, y=3, lean=-10, head=-10, hn=(3, 17), hf=(7, 16), pa=96, face="a")
    dn = pose(big, y=-9, lean=38, hn=(14, -13), hf=(12, -13), pa=-40, face="a", sway=10, fx=(("arc", 6, 32, 54, 126, -38, 15),))
    m["attack4"] = [pose(big, y=-5, lean=14, hn=(8, -14)), up, pose(up, y=5), dn, pose(dn, fx=()), blend(dn, big, 0.6)]
    fall = pose(big, hang=1, lean=6, hn=(-4, 14), pa=110, hf=(10, 13), ln=(-7, 3, 0), lf=(7, 6, 0), face="a", sway=-18)
    squat = pose(big, y=-10, lean=26, hn=(8, -14), hf=(10, -14), pa=10, ln=(-14, 0, 0), lf=(14, 0, 0), sway=8)
    roar = pose(big, y=1, lean=-12, head=-14, hn=(-10, 4), hf=(15, 5), pa=120, face="a", sway=-4)
    m["spawn"] = [fall, squat, squat, roar, pose(roar, head=-10)]
    m["win"] = [roar, pose(roar, head=-9, face="h")]
    out["baron"] = m
    return out
