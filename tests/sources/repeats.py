#!/usr/bin/env python3
"""repeats.py SOURCE: no six lines of code stand twice in the libraries and tools.

Compares lines without their white space. What is no code does not count: empty lines, comments, brackets alone, #include lines, using-declarations
and lists of files.
"""

import pathlib
import re
import sys

FOLDERS = ["exact", "src", "include", "support", "tools"]
LONGEST = 5
NOT_CODE = re.compile(r"""//.* | /?\*.* | [\[\](){};,]* | \#\s*include\b.* | using\b.* | [\w./-]+\.(cpp|h)\)?""", re.VERBOSE)


def code_of(path):
    """The lines that count, as (number, text without white space)."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        text = "".join(line.split())
        if not NOT_CODE.fullmatch(line.strip()) and not NOT_CODE.fullmatch(text):
            yield number, text


def main():
    source = pathlib.Path(sys.argv[1])
    files = sorted(p for folder in FOLDERS for p in (source / folder).rglob("*") if p.suffix in (".cpp", ".h") or p.name == "CMakeLists.txt")
    seen = {}  # run of lines: where it began first
    repeats = []
    for path in files:
        code = list(code_of(path))
        skip_to = 0
        for i in range(len(code) - LONGEST):
            run = tuple(text for _, text in code[i : i + LONGEST + 1])
            place = f"{path.relative_to(source)}:{code[i][0]}"
            if run not in seen:
                seen[run] = place
            elif i >= skip_to:
                repeats.append(f"{place} repeats {seen[run]}")
                skip_to = i + LONGEST + 1
    print(f"{len(files)} files, {len(seen)} runs of {LONGEST + 1} lines", *repeats, sep="\n")
    return 1 if repeats or len(files) < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
