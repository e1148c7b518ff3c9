#!/usr/bin/env python3
"""Compares what two builders wrote: compare_trees.py <own folder> <other folder>

Line ends are the systems' own; what names a path of the machine is compared with all paths written
alike. Prints the first differing line of each file that differs, and ends with 1 then.
"""
import os
import re
import sys

TEMPORARY = re.compile(
    rb"(?i)([A-Z]:)?/(tmp|users/[^/]+/(AppData/Local/)?Temp)/Tindrel-Builder/[^ |\"<\n]*")
DRIVE = re.compile(rb"(?<![A-Za-z])[A-Z]:(?=/)")


def files(folder):
    return {os.path.relpath(os.path.join(path, name), folder)
            for path, _, names in os.walk(folder) for name in names}


def read(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def alike(data, folder):
    data = data.replace(b"\r\n", b"\n").replace(b"<wbr>", b"")
    data = re.sub(rb"\\+", b"/", data)
    data = TEMPORARY.sub(b"TEMPORARY", data)
    return DRIVE.sub(b"", data).replace(os.path.realpath(folder).encode(), b"WORK")


def main():
    own, other = sys.argv[1:]
    top = [os.path.dirname(os.path.realpath(folder)) for folder in (own, other)]
    names, others = files(own), files(other)
    wrong = [f"{name}: only one of them wrote it" for name in sorted(names ^ others)]
    for name in sorted(names & others):
        one, two = read(own, name), read(other, name)
        if one == two:
            continue
        lines = [alike(data, folder).split(b"\n") for data, folder in zip((one, two), top)]
        if lines[0] != lines[1]:
            pairs = zip(lines[0] + [b"(end)"], lines[1] + [b"(end)"])
            first = next((pair for pair in pairs if pair[0] != pair[1]), lines)
            wrong.append(f"{name} differs:\n    {first[0][:200]}\n    {first[1][:200]}")
    print(f"{len(names)} files compared")
    print("\n".join(wrong[:40]), end="\n" if wrong else "")
    return 1 if wrong else 0


sys.exit(main())
