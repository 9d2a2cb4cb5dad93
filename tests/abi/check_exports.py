#!/usr/bin/env python3
"""Compares what the shared library exports with exports.txt.

usage: check_exports.py [--renew] LIBRARY

Of a shared object only strong symbols count: what inline functions and templates leave behind
differs from compiler to compiler, and every program brings its own. A DLL also exports what its
classes are made of; that, and private classes, are not listed. --renew writes the list anew; a line
that goes, or changes, breaks the programs that are linked with the library.
"""

import re
import subprocess
import sys
from pathlib import Path

LIST = Path(__file__).resolve().parent / "exports.txt"
STRONG = set("ABCDGRST")
UNLISTED = re.compile(r"(vtable|typeinfo) for (tdb|kin)\w+|tdbItem::Placement::.*")


def output_of(*command, text=None):
    return subprocess.run(command, check=True, input=text, capture_output=True, text=True).stdout


def exported_by_object(library):
    rows = (line.split(" ", 2) for line in output_of(
        "nm", "-D", "-C", "--defined-only", library).splitlines())
    return {name for _, kind, name in rows if kind in STRONG}


def exported_by_dll(library):
    headers = output_of("x86_64-w64-mingw32-objdump", "-p", library)
    table = headers.split("[Ordinal/Name Pointer] Table\n")[1].split("\n\n")[0]
    symbols = "\n".join(line.split()[-1] for line in table.splitlines())
    names = output_of("x86_64-w64-mingw32-c++filt", text=symbols).splitlines()
    # size_t is another type there.
    return {name.replace("unsigned long long", "unsigned long") for name in names}


def exported(library):
    find = exported_by_dll if library.endswith(".dll") else exported_by_object
    return sorted(name for name in find(library) if not UNLISTED.fullmatch(name))


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
