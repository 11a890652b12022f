#!/usr/bin/env python3
"""compare.py EXPECTED FOUND: how far two outputs of figures.cpp agree.

Prints "figures|bits|remark" for the table of platforms; the lines that differ go to standard error.
"""

import sys


def read(path):
    with open(path, encoding="latin-1") as file:
        return file.read().split("\n")


def main():
    expected, found = (read(path) for path in sys.argv[1:])
    figures = texts = same_figures = same_bits = same_texts = 0
    for a, b in zip(expected, found):
        if a.startswith("figure "):
            figures += 1
            same_bits += a == b
            same_figures += a.rsplit(" ", 1)[0] == b.rsplit(" ", 1)[0]
        else:
            texts += 1
            same_texts += a == b
        if a != b:
            print(f"- {a}\n+ {b}", file=sys.stderr)
    remark = "all texts equal" if same_texts == texts else f"{texts - same_texts} of {texts} lines of text differ"
    if len(expected) != len(found):
        remark = f"{len(found)} lines instead of {len(expected)}"

    def count(same):
        return f"all {figures}" if same == figures else f"{same} of {figures}"

    print(f"{count(same_figures)}|{count(same_bits)}|{remark}")


if __name__ == "__main__":
    main()
