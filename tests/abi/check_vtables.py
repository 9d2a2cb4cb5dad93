#!/usr/bin/env python3
"""Compares the virtual tables of the exported classes with vtables.txt, under both ABIs.

usage: check_vtables.py {itanium|microsoft|msvc} INCLUDE_DIR...

clang lays the classes out and prints their tables: under the Itanium ABI; under Microsoft's, with
the standard library of the mingw compiler, whose headers it can read in that mode; and as
Microsoft's compiler sees the headers, with its macros, its extensions and no others, and the parts
of the standard library that they need declared in msvc/.
"""

import re
import subprocess
import sys
import tempfile
from itertools import zip_longest
from pathlib import Path

HERE = Path(__file__).resolve().parent
MINGW = "x86_64-w64-mingw32-g++-posix"
ATOMIC_TYPES = ["BOOL", "CHAR", "CHAR16_T", "CHAR32_T", "WCHAR_T", "SHORT", "INT", "LONG",
                "LLONG", "POINTER"]
WARNINGS = ["-Wall", "-Wextra", "-Wshadow", "-Wconversion", "-Wgnu", "-Wmicrosoft", "-Wextra-semi",
            "-Werror"]


def read_table(path):
    """{class: [operations by slot]}, the slots of the base included."""
    table = {}
    current = None
    for number, line in enumerate(path.read_text().splitlines(), 1):
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        if match := re.fullmatch(r"class (\w+)(?: : (\w+))?", line):
            current = table[match[1]] = list(table[match[2]]) if match[2] else []
            continue
        slot, operation = line.split(" ", 1)
        if int(slot) != len(current):
            sys.exit(f"{path.name}:{number}: slot {slot} where {len(current)} is next")
        current.append(operation)
    return table


def probe_source(classes):
    """A class derived from each one, whose constructor makes the compiler lay out its table."""
    lines = ['#include "tooldb/tooldb.h"']
    for name in classes:
        probe = f"Probe_{name}"
        lines += [f"struct {probe} : {name} {{ {probe}(const {probe}&); }};",
                  f"{probe}::{probe}(const {probe}& other) : {name}(other) {{}}"]
    return "\n".join(lines) + "\n"


def mingw_include_dirs():
    """The folders of the mingw compiler without its own two: clang has its own of those."""
    found = subprocess.run([MINGW, "-E", "-v", "-x", "c++", "/dev/null"], check=True,
                           capture_output=True, text=True).stderr
    listed = found.split("search starts here:\n")[-1].split("End of search")[0].split()
    own = re.compile(r"/lib/gcc/[^/]+/[^/]+/include(-fixed)?$")
    return [folder for folder in listed if not own.search(folder)]


def microsoft_flags():
    flags = ["--target=x86_64-pc-windows-msvc", "-nostdinc++", "-fgnuc-version=12.2.0",
             "-U_MSC_VER", "-U_MSC_FULL_VER", "-U_MSC_EXTENSIONS", "-fno-ms-compatibility",
             "-fms-extensions", "-D__MINGW32__", "-D__MINGW64__", "-DWIN32", "-DTDB_MS_ABI",
             "-D__declspec(a)=__attribute__((a))", "-D_GLIBCXX_USE_CXX11_ABI=0",
             "-D__GCC_ATOMIC_TEST_AND_SET_TRUEVAL=1", "-DTOOLDB_STATIC"]
    flags += [f"-D__GCC_ATOMIC_{name}_LOCK_FREE=2" for name in ATOMIC_TYPES]
    for folder in mingw_include_dirs():
        flags += ["-isystem", folder]
    return flags


def msvc_flags():
    return ["--target=x86_64-pc-windows-msvc", "-nostdinc", "-fms-compatibility-version=19.30",
            "-isystem", str(HERE / "msvc"), *WARNINGS]


FLAGS = {
    "itanium": lambda: ["--target=x86_64-pc-linux-gnu"],
    "microsoft": microsoft_flags,
    "msvc": msvc_flags,
}


def dump(abi, include_dirs, classes):
    flags = FLAGS[abi]()
    with tempfile.TemporaryDirectory() as folder:
        source = Path(folder) / "probe.cpp"
        source.write_text(probe_source(classes))
        command = ["clang++", "-std=c++20", *flags, *(f"-I{d}" for d in include_dirs), "-c",
                   "-Xclang", "-fdump-vtable-layouts", "-o", str(Path(folder) / "probe.o"),
                   str(source)]
        result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(result.stderr)
    return result.stdout


def operation_of(entry):
    """The name and arguments of a table entry, without return type and class; None for others."""
    if re.search(r"::~\w+\(\) \[(complete|scalar deleting|vector deleting)\]", entry):
        return "~"
    match = re.search(r"\w+::(\w+\(.*\)(?: const)?)(?: \[pure\])?$", entry)
    return match[1] if match else None


def read_dump(text):
    """{class: [operations by slot]} of the probes' tables in clang's output."""
    tables = {}
    current = None
    for line in text.splitlines():
        if match := re.match(r"V(?:FT|t)able for .*'(?:Probe_)(\w+)' \(\d+ entries\)", line):
            current = tables[match[1]] = []
        elif match := re.match(r" *\d+ \| (.*)", line):
            operation = operation_of(match[1])
            if current is not None and operation:
                current.append(operation)
        elif not line.startswith(" "):
            current = None
    return tables


def main():
    abi, include_dirs = sys.argv[1], sys.argv[2:]
    wanted = read_table(HERE / "vtables.txt")
    found = read_dump(dump(abi, include_dirs, wanted))
    wrong = 0
    for name, operations in wanted.items():
        pairs = zip_longest(operations, found.get(name, []), fillvalue="nothing")
        for slot, (want, have) in enumerate(pairs):
            if want != have:
                wrong += 1
                print(f"{name}, slot {slot}: {have}, where vtables.txt has {want}")
    slots = sum(len(operations) for operations in wanted.values())
    print(f"{abi}: {slots} slots of {len(wanted)} classes compared, {wrong} differ")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
