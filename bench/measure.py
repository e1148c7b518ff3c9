#!/usr/bin/env python3
"""Measures the builder on synthetic games, each figure beside a baseline of the same run.

    bench/measure.py <tindrel-builder> [--rounds N] [--game FOLDER]

Prints the CPU time, of the program and of the system for it, of `convert` beside `cp -r` of the same
data folder and of `analyze` beside `wc -w` over the same text, the peak memory of both, and what the
compiler needs for the generated tables. Machines are shared, so rounds alternate and the medians
count.
"""

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
QUIET = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
TEXT_SUFFIXES = {".txt", ".c", ".h", ".cfg"}
CONVERT_AIM = 1.3  # times cp -r
ANALYZE_AIM = 3.0  # times wc -w
MEMORY_AIM = 256  # MiB


def run(command, **options):
    """CPU seconds and peak memory in MiB of one command with its children."""
    child = subprocess.Popen([str(part) for part in command], **{**QUIET, **options})
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"{command[0]} ended with {child.returncode}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def measure(builder, game, scratch, rounds):
    data = game / "data"
    texts = sorted(p for p in data.rglob("*") if p.suffix in TEXT_SUFFIXES)
    listing = scratch / "texts"
    listing.write_bytes(b"\0".join(os.fsencode(p) for p in texts))
    copy, port, reports = scratch / "copy", scratch / "port", scratch / "reports"
    seconds = {"cp": [], "convert": [], "wc": [], "analyze": []}
    memory = {"convert": 0, "analyze": 0}
    for _ in range(rounds):
        for folder in (copy, port):
            shutil.rmtree(folder, ignore_errors=True)
        seconds["cp"].append(run(["cp", "-r", data, copy])[0])
        cpu, peak = run([builder, "convert", game, port])
        seconds["convert"].append(cpu)
        memory["convert"] = max(memory["convert"], peak)
        seconds["wc"].append(run(["wc", "-w", f"--files0-from={listing}"],
                                 env={**os.environ, "LC_ALL": "C"})[0])
        cpu, peak = run([builder, "analyze", game, reports])
        seconds["analyze"].append(cpu)
        memory["analyze"] = max(memory["analyze"], peak)
    median = {name: statistics.median(values) for name, values in seconds.items()}
    for name, value in median.items():
        print(f"  {name:8} {value * 1000:8.0f} ms")
    print(f"  convert / cp -r : {median['convert'] / median['cp']:.2f}  (aim {CONVERT_AIM})")
    print(f"  analyze / wc -w : {median['analyze'] / median['wc']:.2f}  (aim {ANALYZE_AIM})")
    print(f"  peak memory     : convert {memory['convert']:.0f} MiB, "
          f"analyze {memory['analyze']:.0f} MiB  (aim {MEMORY_AIM})")
    return port


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("builder", type=pathlib.Path)
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--game", type=pathlib.Path, help="measure this game instead")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="tindrel-bench-") as folder:
        scratch = pathlib.Path(folder)
        games = {"the given game": options.game}
        if options.game is None:
            games = {shape: scratch / shape for shape in ("plain", "scripted", "script-heavy")}
            for shape, game in games.items():
                subprocess.run([HERE / "make_game.py", game, "--shape", shape], check=True, **QUIET)
        for title, game in games.items():
            print(f"{title}:")
            port = measure(options.builder, game, scratch, options.rounds)
        print("generated tables, g++ -O0:")
        for table in ("GeneratedCharacters", "GeneratedStages"):
            source = port / "runtime" / "generated" / f"{table}.cpp"
            cpu, peak = run(["g++", "-std=c++20", "-O0", "-c", source, "-o", scratch / "t.o"])
            print(f"  {table:20} {source.stat().st_size / 1e6:6.1f} MB of source, "
                  f"{cpu:5.1f} s, {peak:5.0f} MiB")


if __name__ == "__main__":
    main()
