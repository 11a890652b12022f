#!/usr/bin/env python3
"""Doxygen's input filter for the pages of the manual: prints the page named, as Doxygen's Markdown wants it.

Headings get the labels that links to them use, links that leave the manual become plain text, pictures are named without their folder, bold
text becomes HTML, code with an apostrophe gets the double backticks it needs, and the file names of fenced blocks, which are for the tests, are
left out.
"""
import pathlib
import re
import sys


def label(page, heading):
    """The anchor that Git hosts make of a heading, made unique by the page."""
    return page.stem + "-" + re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def link(page, text, target):
    text = text.replace("`", "")  # it would stay as it is within a link
    name, _, anchor = target.partition("#")
    if re.match(r"[a-z]+:", target):
        return f"[{text}]({target})"
    if anchor:
        return f"[{text}](#{label(page.parent / name if name else page, anchor)})"
    return f"[{text}]({target})" if name.endswith(".md") and "examples/" not in name else text


def prose(page, text):
    text = re.sub(r"^(##+) (.*)$", lambda found: f"{found.group()} {{#{label(page, found.group(2))}}}", text, flags=re.MULTILINE)
    text = re.sub(r"(?<!`)`([^`\n]*'[^`\n]*)`(?!`)", r"``\1``", text)
    text = re.sub(r"\*\*((?:(?!\n\n|\*\*).)+)\*\*", r"<b>\1</b>", text, flags=re.DOTALL)
    text = re.sub(r"!\[([^\]]*)\]\((?:[^)\s]*/)?([^)\s/]+)\)", r"![\1](\2)", text)
    return re.sub(r"(?<!!)\[([^\]]*)\]\(([^)\s]+)\)", lambda found: link(page, *found.groups()), text)


page = pathlib.Path(sys.argv[1])
parts = re.split(r"^(```.*?^```$)", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
for i, part in enumerate(parts):
    print(re.sub(r"^(```\w*).*", r"\1", part, count=1) if i % 2 == 1 else prose(page, part), end="")
