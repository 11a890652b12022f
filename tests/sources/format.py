#!/usr/bin/env python3
"""format.py SOURCE: every file of C++ or C stands as clang-format 14 lays it out by .clang-format. Without that version the test is skipped, but
fails where WQ_NEEDS_PROGRAMS is set."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

FOLDERS = ["bench", "cmake", "examples", "exact", "include", "src", "support", "tests", "tools"]
SKIPPED = 77


def main():
    source = pathlib.Path(sys.argv[1])
    program = shutil.which("clang-format-14") or shutil.which("clang-format")
    version = subprocess.run([program, "--version"], capture_output=True, text=True, check=True).stdout if program else "none"
    if not re.search(r"\b14\.", version):  # others lay out differently
        print(f"needs clang-format 14 (Debian package: clang-format), here is {version}")
        return 1 if os.environ.get("WQ_NEEDS_PROGRAMS") else SKIPPED
    files = sorted(str(p) for folder in FOLDERS for p in (source / folder).rglob("*") if p.suffix in (".c", ".cpp", ".h"))
    if len(files) < 300:
        print(f"only {len(files)} files found in {source}")
        return 1
    checked = subprocess.run([program, "--dry-run", "--Werror", "--ferror-limit=1", *files], capture_output=True, text=True, check=False)
    if checked.returncode != 0:
        print(checked.stderr, "\nclang-format -i FILE sets a file right; around a table stands // clang-format off.", sep="")
    return checked.returncode


if __name__ == "__main__":
    sys.exit(main())
