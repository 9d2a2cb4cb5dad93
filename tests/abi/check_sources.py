#!/usr/bin/env python3
"""Reads sources as Microsoft's compiler would: in clang's mode for it, warnings being errors.

usage: check_sources.py INCLUDE_DIR... -- FILE...

The system's headers are those of the mingw compiler; an INCLUDE_DIR below build/windows-deps holds
those of other libraries, in which warnings do not count.
"""

import subprocess
import sys

from check_vtables import WARNINGS, microsoft_flags


def main():
    split = sys.argv.index("--")
    include_dirs, files = sys.argv[1:split], sys.argv[split + 1:]
    command = ["clang++", "-std=c++20", "-fsyntax-only", *microsoft_flags(), *WARNINGS]
    for folder in include_dirs:
        command += ["-isystem" if "windows-deps" in folder else "-I", folder]
    failed = sum(subprocess.run([*command, file]).returncode != 0 for file in files)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
