#!/usr/bin/env bash
# The README's example as a reader copies it: its C++, its CMake lines, and what it says is printed.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/readme_example"

# block LANGUAGE: the README's one code block of that language.
block()
{
    awk -v fence="\`\`\`$1" '$0 == fence { inside = 1; ++blocks; next } $0 == "```" { inside = 0 } inside { print }
                              END { exit blocks != 1 }' "$SOURCE/README.md" || fail "README.md does not have one block of $1"
}

mkdir project
block cpp >project/main.cpp
block cmake >project/CMakeLists.txt
block text >expected.txt
"$CMAKE" -S project -B build -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="$WARNINGS -Werror"
"$CMAKE" --build build
expect_output expected.txt build/resistivity
