#!/usr/bin/env python3
"""Compares what the shared library exports with exports.txt.

usage: check_exports.py [--renew] LIBRARY

Only strong symbols count: what inline functions and templates leave behind differs from compiler
to compiler, and every program brings its own. --renew writes the list anew; a line that goes, or
changes, breaks the programs that are linked with the library.
"""

import subprocess
import sys
from pathlib import Path

LIST = Path(__file__).resolve().parent / "exports.txt"
STRONG = set("ABCDGRST")


def exported(library):
    lines = subprocess.run(["nm", "-D", "-C", "--defined-only", library], check=True,
                           capture_output=True, text=True).stdout.splitlines()
    rows = (line.split(" ", 2) for line in lines)
    return sorted({name for _, kind, name in rows if kind in STRONG})


def main():
    found = exported(sys.argv[-1])
    if "--renew" in sys.argv:
        LIST.write_text("\n".join(found) + "\n")
        return 0
    wanted = LIST.read_text().splitlines()
    for name in sorted(set(wanted) - set(found)):
        print(f"no longer exported: {name}")
    for name in sorted(set(found) - set(wanted)):
        print(f"not in exports.txt: {name}")
    print(f"{len(found)} symbols compared")
    return 0 if found == wanted else 1


if __name__ == "__main__":
    sys.exit(main())
