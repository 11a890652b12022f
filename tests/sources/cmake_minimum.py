"""cmake_minimum.py SOURCE: the oldest CMake that will do is the same wherever it is named."""

import json
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
presets = json.loads((source / "CMakePresets.json").read_text())["cmakeMinimumRequired"]
minimum = f"{presets['major']}.{presets['minor']}"

found = []
for pattern in ("CMakeLists.txt", "docs/**/*.md", "README.md", "tests/**/CMakeLists.txt", "tools/**/CMakeLists.txt"):
    for file in sorted(source.glob(pattern)):
        for version in re.findall(r"cmake_minimum_required\(VERSION ([0-9.]+)|\bCMake ([0-9]+\.[0-9.]*[0-9])", file.read_text()):
            found.append((file.relative_to(source), "".join(version)))

if len(found) < 5:
    sys.exit(f"only {len(found)} places name a version: {found}")
others = [f"{file}: {version}" for file, version in found if version != minimum]
if others:
    sys.exit(f"CMakePresets.json names {minimum}, but\n" + "\n".join(others))
print(f"{minimum} in {len(found)} places")
