#!/usr/bin/env python3
"""Checks who may include whom, and which calls may stand where.

Reads every source file below the project's folder (the first argument) and prints one line per
breach; the exit code is 1 when there is one.
"""

import re
import sys
from graphlib import CycleError, TopologicalSorter
from pathlib import Path

# From the lowest up: a folder includes only itself and what stands before it.
LAYERS = ["tooldb/platform", "geom", "tooldb/model", "tooldb/profile", "tooldb/xml",
          "tooldb/storage"]

# The layer that each public header belongs to.
PUBLIC = {
    "tooldb/platform": {"error", "export", "version"},
    "geom": {"geometry", "placement", "stl"},
    "tooldb/model": {"composite_item", "cutting_conditions", "item", "object", "scene", "tool",
                     "tool_parts", "type_names"},
    "tooldb/profile": {"contour", "profile", "tool_makers"},
    "tooldb/xml": {"xml_reader"},
    "tooldb/storage": {"file_manager", "tool_components_db", "tool_db", "util"},
}

# Programs see the public headers, their own, and those of the folders named here.
CLIENTS = {"apps": ["filters"], "filters": [], "examples": []}

SYSTEM_HEADERS = re.compile(
    r"windows|winsock2?|io|direct|process|unistd|fcntl|dlfcn|dirent|fnmatch|glob|pwd|spawn|"
    r"poll|termios|langinfo|sys/.*|boost/filesystem(?!/path\.hpp).*|filesystem|fstream")
SYSTEM_CALLS = re.compile(r"\b(?:::)?(?:fopen|freopen|opendir|LoadLibrary[AW]?|dlopen|system|getenv)\s*\(")

# Calls whose result depends on the locale; numbers and case rules have functions of their own.
LOCALE_CALLS = re.compile(
    r"\b(?:atof|strtod|strtof|strtold|stod|stof|stold|toupper|tolower|isalpha|isalnum|isdigit|"
    r"isspace|isupper|islower|ispunct|isprint|isxdigit|setlocale|strcoll|"
    r"s?n?printf|fprintf|vsn?printf|sscanf)\s*\(|\bstd::(?:locale|[io]?stringstream)\b")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)


def sources(root, folders):
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in {".h", ".cpp"}:
                yield path.relative_to(root).as_posix(), path.read_text(encoding="utf-8")


def layer_of(file):
    if file.startswith("include/tooldb/"):
        return next((layer for layer, names in PUBLIC.items() if Path(file).stem in names), None)
    return next((layer for layer in LAYERS if file.startswith(layer + "/")), None)


def resolve(name, file, root):
    """The project's file that an include means, relative to the root; None for any other."""
    beside = Path(file).parent / name
    for candidate in (Path(name), Path("include") / name, beside):
        if (root / candidate).is_file():
            return candidate.as_posix()
    return "include/tooldb/version.h" if name == "tooldb/version.h" else None


class Checker:
    def __init__(self, root):
        self.root = root
        self.breaches = []
        self.graph = {}

    def report(self, file, text):
        self.breaches.append(f"{file}: {text}")

    def check_layer(self, file, own, included):
        """`own` is a layer's name; `included` a file of the project."""
        target = layer_of(included)
        if target is None:
            self.report(file, f"includes {included}, which is of no layer")
        elif LAYERS.index(target) > LAYERS.index(own):
            self.report(file, f"includes {included} of the higher layer {target}")

    def check_client(self, file, included):
        top = file.split("/")[0]
        seen = ["include/tooldb", top, *CLIENTS.get(top, [])]
        if not included.startswith(tuple(folder + "/" for folder in seen)):
            self.report(file, f"includes {included}, which is no public header")

    def check_calls(self, file, text, rules):
        code = COMMENT_OR_TEXT.sub(lambda m: "\n" * m.group().count("\n"), text)
        for rule, pattern in rules:
            for match in pattern.finditer(code):
                line = code.count("\n", 0, match.start()) + 1
                self.report(file, f"line {line}: {match.group().strip('( ')} ({rule})")

    def check_file(self, file, text):
        own = layer_of(file)
        in_platform = own == "tooldb/platform"
        self.graph[file] = []
        for bracket, name in INCLUDE.findall(text):
            included = resolve(name, file, self.root)
            if included is None:
                if own and not in_platform and SYSTEM_HEADERS.fullmatch(name.removesuffix(".h")):
                    self.report(file, f"includes <{name}>, which only tooldb/platform may")
                continue
            self.graph[file].append(included)
            if own:
                self.check_layer(file, own, included)
            elif not file.startswith("include/"):
                self.check_client(file, included)
        rules = [("locale", LOCALE_CALLS)]
        if not in_platform and own:
            rules.append(("system", SYSTEM_CALLS))
        self.check_calls(file, text, rules)

    def check_public_headers(self):
        """Every public header has a layer and is part of the umbrella header."""
        umbrella = self.graph.get("include/tooldb/tooldb.h", [])
        for file in self.graph:
            if not file.startswith("include/") or file.endswith("/tooldb.h"):
                continue
            if file not in umbrella:
                self.report(file, "is missing from tooldb/tooldb.h")
            if layer_of(file) is None:
                self.report(file, "belongs to no layer")

    def check_circles(self):
        try:
            TopologicalSorter(self.graph).prepare()
        except CycleError as error:
            self.report(error.args[1][0], "is included in a circle: " + ", ".join(error.args[1]))


def main():
    checker = Checker(Path(sys.argv[1]).resolve())
    for file, text in sources(checker.root, ["include"] + LAYERS + list(CLIENTS)):
        checker.check_file(file, text)
    if not checker.graph:
        print("no source file found")
        return 1
    checker.check_public_headers()
    checker.check_circles()
    print("\n".join(checker.breaches) or f"{len(checker.graph)} files keep to their layers")
    return 1 if checker.breaches else 0


if __name__ == "__main__":
    sys.exit(main())
