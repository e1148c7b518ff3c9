"""Which animations each character ships, and the colours of the alternate costumes."""

HERO = ("idle", "walk", "run", "up", "jump", "runjump", "jumpattack", "attack1", "attack2", "attack3", "attack4", "special",
        "dash", "gust", "grab", "grabattack", "throw", "pain", "pain2", "fall", "rise", "block", "blockpain", "guardbreak",
        "get", "death", "win", "spawn")

USED = {
    "bramble": HERO + ("charge",),
    "juniper": tuple(a for a in HERO if a not in ("gust", "guardbreak")) + ("dodge",),
    "nib": ("idle", "walk", "run", "attack1", "attack3", "dash", "pain", "pain2", "fall", "rise", "grabbed", "death", "dodge", "spawn"),
    "magda": ("idle", "walk", "attack1", "toss", "pain", "fall", "rise", "grabbed", "death", "dodge"),
    "tubb": ("idle", "walk", "attack1", "attack2", "pain", "fall", "rise", "grabbed", "death", "block"),
    "baron": ("idle", "walk", "attack1", "attack2", "attack3", "attack4", "pain", "fall", "rise", "death", "spawn", "win"),
}

ALTERNATES = {
    "bramble": (
        ("act", {"vest": "2a0c28 541a44 8c2c5c c4507c f090a4", "apron": "1c2430 3c4c58 6c8084 a8bcb0 e8f0d8", "scarf": "102c1c 1c5430 34844c 6cb868 b8e488"}),
        ("act", {"fur": "2a140e 543020 845038 b47c54 e0b488", "vest": "0c1830 18306c 2c58a4 5090d4 98ccf0", "apron": "340c14 701c28 ac3840 dc6858 fca888"}),
        ("gif", {"vest": "241c08 4c3c10 84701c bca438 ecdc78", "apron": "141430 282c5c 484c90 7c80c0 b8bce8", "scarf": "301838 603070 9850a4 cc84cc f0c0e8"}),
    ),
    "juniper": (
        ("gif", {"jacket": "0c2430 174858 1f6c70 38987f 7fd0a2"}),
        ("gif", {"jacket": "1c1438 382868 5c449c 8c70cc c4acf0", "scarf": "42200e 8c4c18 cc8424 f4bc44 ffe88a", "trim": "2e0e10 6c2a20 a8502c dc8444 ffc880"}),
        ("png", {"fur": "1c1a24 46424e 6e6870 989090 c8beb4", "jacket": "0c2418 1e5030 34803c 6cb24a b4de70", "scarf": "340a1a 701a2c b02c34 e25242 ff9068"}),
        ("gif", {"fur": "342e48 8680a0 bebcd0 e9e8ec fffffb", "jacket": "181418 342c34 584c54 84747c b8a8ac", "scarf": "0c1830 18306c 2c58a4 5090d4 98ccf0"}),
    ),
    "nib": (
        ("gif", {"stripe": "0c2418 1e5030 34803c 6cb24a b4de70", "cap": "20121a 47282c 6c4038 94604a c08c62"}),
        ("gif", {"fur": "2a1a14 54382c 80604c ac8c70 dcc4a0", "stripe": "08142c 143460 205c9c 3c90d0 88d0f4", "cap": "08060e 181626 2c2c44 4a5070 8490b0"}),
    ),
    "magda": (("gif", {"scarf": "301838 603070 9850a4 cc84cc f0c0e8", "sheen": "0c2418 1e5030 34803c 6cb24a b4de70"}),),
    "tubb": (("gif", {"skin": "2a1c10 5c4020 8c6c34 bc9c54 e8d48c", "braces": "08142c 143460 205c9c 3c90d0 88d0f4"}),),
    # the boiler glows when he is angry, and frosts over when he is cold
    "baron": (("gif", {"brass": "380808 8c1c14 d84820 ff8c34 ffe088", "copper": "2c0808 701414 b83020 f06838 ffb070"}),
              ("act", {"brass": "142838 305870 5c90a8 98c8d4 e4fcfc", "coat": "101c38 203860 386090 6490bc a4c8e4", "fur": "182438 38506c 6484a0 98b4c8 d4e8f0"})),
}
