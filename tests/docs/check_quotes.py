#!/usr/bin/env python3
"""Checks that what the documents quote from files still stands there.

A fenced block after a comment "<!-- the whole of FILE -->" must be that file; after
"<!-- from FILE -->" it must stand in it, line for line. The argument is the project's folder.
"""

import re
import sys
from pathlib import Path

QUOTE = re.compile(r"<!-- (the whole of|from) (\S+) -->\n```\w*\n(.*?)```", re.S)


def main():
    root = Path(sys.argv[1])
    quotes = wrong = 0
    for document in [root / "README.md", root / "CONTRIBUTING.md", *root.glob("docs/*.md")]:
        for how, name, quoted in QUOTE.findall(document.read_text(encoding="utf-8")):
            quotes += 1
            text = (root / name).read_text(encoding="utf-8")
            if quoted != text if how == "the whole of" else quoted not in text:
                wrong += 1
                print(f"{document.relative_to(root)}: the quotation of {name} has changed")
    print(f"{quotes} quotations compared, {wrong} differ")
    return 1 if wrong or not quotes else 0


if __name__ == "__main__":
    sys.exit(main())
