#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Holds the include graph of the library to cmake/floors.txt.

Fails for an edge between folders that is used and not listed, one that is listed and not
used, a cycle, an umbrella header used inside the library, and an include that is not written
from the root. Usage: check-floors.py [ROOT], where ROOT holds cmake/ and shared/cpp/src/.
"""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def read_floors(path):
    """The listed edges, {folder: set of folders}, in the order of the file: lower floors first."""
    floors = {}
    for line in path.read_text().splitlines():
        line = line.split("#")[0].strip()
        if line:
            folder, _, below = line.partition("->")
            floors[folder.strip()] = {name.strip() for name in below.split(",") if name.strip()}
    return floors


def folder_of(path, floors):
    """The listed folder that holds a path, the deepest one where they nest."""
    matches = [f for f in floors if path.startswith(f + "/")]
    return max(matches, key=len, default=None)


def used_edges(source, floors, complaints):
    """The edges between folders that the sources use, each with one place that uses it."""
    used = {}
    for path in sorted(source.rglob("*")):
        name = path.relative_to(source).as_posix()
        if path.suffix not in (".h", ".cpp", ".inc") or is_umbrella(name):
            continue
        folder = folder_of(name, floors)
        if folder is None:
            complaints.append(f"{name}: its folder is not listed in floors.txt")
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            target = match.group(1)
            place = f"{name}:{number}"
            # A header that the build makes stands in the tree as its template.
            if not any((source / (target + end)).is_file() for end in ("", ".in")):
                complaints.append(f'{place}: "{target}" is not written from the include root')
            elif is_umbrella(target):
                complaints.append(f'{place}: umbrella "{target}" is for hosts only')
            else:
                below = folder_of(target, floors)
                if below != folder:
                    used.setdefault((folder, below), place)
    return used


def is_umbrella(name):
    parts = name.split("/")
    return len(parts) > 1 and parts[-1] == parts[-2] + ".h"


def main(root):
    floors = read_floors(root / "cmake/floors.txt")
    complaints = []
    used = used_edges(root / "shared/cpp/src", floors, complaints)
    order = {folder: rank for rank, folder in enumerate(floors)}
    for (upper, lower), place in sorted(used.items()):
        if lower not in floors[upper]:
            complaints.append(f"{place}: {upper} may not include {lower}")
    for upper, below in floors.items():
        for lower in sorted(below):
            if lower not in order:
                complaints.append(f"floors.txt: {upper} -> {lower}: there is no such folder")
            # Listed lower floors first, a graph whose edges all point back has no cycle.
            elif order[lower] >= order[upper]:
                complaints.append(f"floors.txt: {upper} -> {lower} points upwards")
            elif (upper, lower) not in used:
                complaints.append(f"floors.txt: {upper} -> {lower} is listed and not used")
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")))
