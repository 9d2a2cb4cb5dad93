#!/usr/bin/env python3
"""Prints how many lines and branches of each folder the tests reach.

usage: coverage_report.py PROJECT COVERAGE [FOLDER]

Reads summary.json and lcov.info of the folder COVERAGE. With FOLDER, a folder of the project, also
prints each of its lines with something that is not reached. The exit code is 1 when a folder is
below its mark.
"""

import json
import os
import sys
from collections import defaultdict
from pathlib import Path

# Percent of the lines, and of the branches, that must be reached.
MARKS = {"tooldb/storage": 95, "tooldb/xml": 95, "tooldb/platform": 90, "tooldb/model": 90,
         "tooldb/profile": 90, "geom": 90, "filters": 90, "apps": 90}


def folder_of(file: Path) -> str:
    parts = file.parts
    return "/".join(parts[:2] if parts[0] == "tooldb" else parts[:1])


def in_project(project: Path, name: str):
    """A file's path in the project; the compiler may name it by a way round."""
    return Path(os.path.relpath(os.path.normpath(name), project))


def sums(project: Path, summary: Path):
    folders = defaultdict(lambda: {"lines": [0, 0], "branches": [0, 0]})
    for entry in json.loads(summary.read_text())["data"][0]["files"]:
        name = folder_of(in_project(project, entry["filename"]))
        if name not in MARKS:
            continue
        folder = folders[name]
        for kind, sum_ in folder.items():
            sum_[0] += entry["summary"][kind]["covered"]
            sum_[1] += entry["summary"][kind]["count"]
    return folders


def percent(reached: int, count: int) -> float:
    return 100 * reached / count if count else 100


def print_table(folders) -> bool:
    passed = True
    print(f"{'':16} {'lines':>14} {'branches':>14}  mark")
    for name, kinds in sorted(folders.items()):
        mark = MARKS[name]
        shares = [percent(*kinds["lines"]), percent(*kinds["branches"])]
        counts = [f"{kinds[k][1]:6} {share:6.2f}%" for k, share in zip(("lines", "branches"), shares)]
        low = min(shares) < mark
        passed = passed and not low
        print(f"{name:16} {counts[0]:>14} {counts[1]:>14}  {mark}{'  below' if low else ''}")
    return passed


def unreached(project: Path, records: Path, folder: str):
    """Line numbers by file: of lines, and of branches with the way that is not taken."""
    found = defaultdict(lambda: defaultdict(set))
    file = None
    ways = defaultdict(int)
    for record in records.read_text().splitlines():
        kind, _, rest = record.partition(":")
        if kind == "SF":
            file = in_project(project, rest)
        elif kind == "DA" and rest.split(",")[1] == "0":
            found[file][int(rest.split(",")[0])].add("line")
        elif kind == "BRDA":
            line, _, branch, taken = rest.split(",")
            ways[file, int(line), branch] += 0 if taken == "-" else int(taken)
    for (where, line, branch), taken in ways.items():
        if taken == 0:
            found[where][line].add("never true" if int(branch) % 2 == 0 else "never false")
    return {f: lines for f, lines in sorted(found.items()) if str(f).startswith(folder)}


def main() -> int:
    project, coverage = Path(sys.argv[1]), Path(sys.argv[2])
    passed = print_table(sums(project, coverage / "summary.json"))
    if len(sys.argv) > 3:
        for file, lines in unreached(project, coverage / "lcov.info", sys.argv[3]).items():
            source = (project / file).read_text().splitlines()
            for number, what in sorted(lines.items()):
                print(f"{file}:{number}: {', '.join(sorted(what))}: {source[number - 1].strip()}")
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
