#!/usr/bin/env python3
"""arrows.py SOURCE BUILD: nothing includes what stands above it.

Reads the include lists that the build itself recorded (ninja -t deps) and the include paths of its compiler calls
(compile_commands.json). A folder may use itself and those named for it below.
"""

import json
import os
import re
import subprocess
import sys

NUMBERS = {"support/numbers"}
UDF = {"support/wq_udf"} | NUMBERS
REPORT = {"support/wq_report"} | UDF
STAT = {"include", "src"} | REPORT
PUBLIC_STAT = STAT - {"src"}
EXACT = {"exact"} | PUBLIC_STAT
TOOLS = {"tools"} | EXACT

MAY_USE = {
    "support/numbers": NUMBERS,
    "support/wq_udf": UDF,
    "support/wq_report": REPORT,
    "src": STAT,
    "exact": EXACT,
    "tools": TOOLS,
}
# An include path that names the folder of several rooms; what is taken from them is seen in the include lists.
SHARED_PATHS = {"support"}


def room_of(path):
    """The folder with rules that a path below the source folder is in; None for others. Sources gathered into one stand where their target does."""
    path = re.sub(r"^build/[^/]+/(?=.*/Unity/)", "", path)
    for room in sorted(MAY_USE.keys() | TOOLS, key=len, reverse=True):
        if path == room or path.startswith(room + "/"):
            return room
    return None


def include_lists(build):
    """Source file and what it included, as the build recorded it."""
    text = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, capture_output=True, text=True).stdout
    for block in text.split("\n\n"):
        lines = [line.strip() for line in block.splitlines()[1:] if line.startswith("    ")]
        if lines:
            yield [os.path.normpath(os.path.join(build, line)) for line in lines]


def include_paths(build):
    """Source file and the folders it may name headers from."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        for entry in json.load(file):
            if re.search(r"\s-o tests/", entry["command"]):  # a test with a copy of its own
                continue
            folders = re.findall(r"(?:^|\s)(?:-I|-isystem |-iquote )(\S+)", entry["command"])
            yield [os.path.normpath(os.path.join(entry["directory"], path)) for path in [entry["file"], *folders]]


def wrong_arrows(source, uses, shared):
    """Pairs of a file and what it must not use."""
    wrong = set()
    seen = dict.fromkeys(MAY_USE, 0)
    for using, *used in uses:
        using = os.path.relpath(using, source)
        room = room_of(using)
        if room not in MAY_USE:
            continue
        seen[room] += 1
        for path in used:
            path = os.path.relpath(path, source)
            if path.startswith((os.pardir, "build" + os.sep)) or path in shared:
                continue
            if room_of(path) not in MAY_USE[room]:
                wrong.add((using, path))
    return wrong, seen


def main():
    source, build = (os.path.realpath(path) for path in sys.argv[1:])
    included, files = wrong_arrows(source, include_lists(build), set())
    named, _ = wrong_arrows(source, include_paths(build), SHARED_PATHS)
    for room, count in files.items():
        if os.path.isdir(os.path.join(source, room)):
            print(f"{count} sources in {room}")
            if count == 0 and any(name.endswith(".cpp") for _, _, names in os.walk(os.path.join(source, room)) for name in names):
                sys.exit(f"FAILED: the build recorded no include list of {room}")
    for using, path in sorted(included):
        print(f"{using} includes {path}")
    for using, path in sorted(named):
        print(f"{using} is compiled with the include path {path}")
    sys.exit("FAILED: arrows that point upwards" if included or named else 0)


if __name__ == "__main__":
    main()
