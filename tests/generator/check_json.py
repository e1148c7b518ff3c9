"""Parses the JSON reports of the sample tables and looks at what a wrong escape would spoil."""
import json
import pathlib
import sys

folder = pathlib.Path(sys.argv[1])


def load(name):
    return json.loads((folder / name).read_text(encoding="utf-8"))


characters = load("gameplay-data.json")["characters"]
assert len(characters) == 10, len(characters)
assert characters[0]["name"].startswith('name0\t\r\n"\\? \u00e9\x1b'), characters[0]["name"]
frame = characters[0]["animations"][1]["frames"][1]
assert list(frame) == ["sprite", "delay", "move", "draw"], frame
assert list(frame["draw"]) == ["enabled", "scale", "rotate", "alpha", "remap"], frame
assert len(frame["move"]) == 3 and len(frame["draw"]["scale"]) == 2, frame
assert characters[9]["animations"] == [{"name": "walkoff", "frames": []}], characters[9]

stages = load("stage-data.json")["stages"]
assert len(stages) == 10, len(stages)
assert list(stages[0]) == [
    "source", "set", "order", "branch", "direction", "cameraType", "chapter", "canSave",
    "skipSelect", "completeBg", "noShare", "ifComplete", "campaignEnd", "background", "music",
    "bossmusic", "water", "scene", "postSceneCount", "z", "panels", "layers", "levelScript",
    "spawns", "events", "instructions", "geometry"], list(stages[0])
assert [i["sequence"] for i in stages[0]["instructions"]] == [1, 2, 2, 3], stages[0]
assert [len(stages[0][key]) for key in ("panels", "layers", "spawns", "events", "geometry")] == [
    2, 2, 2, 2, 2], stages[0]
assert len(stages[0]["spawns"][0]["coords"]) == 3, stages[0]
assert stages[9]["spawns"] == [] and stages[9]["z"] == [160, 232], stages[9]
