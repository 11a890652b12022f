#!/usr/bin/env python3
"""Every relative link of the manual leads to a file (and a heading) that exists, every page is linked from the index, and
every public function of the distributions header has its row in the manual."""
import pathlib
import re
import sys


def anchors(page):
    """The heading anchors as Git hosts make them."""
    for heading in re.findall(r"^#+ (.*)$", page.read_text(encoding="utf-8"), re.MULTILINE):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


root = pathlib.Path(sys.argv[1])
docs = root / "docs"
pages = sorted(docs.rglob("*.md"))
problems = []
linked = set()
for page in [*pages, *root.glob("*.md")]:
    text = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
    for link in re.findall(r"\]\(([^)\s]+)\)", text):
        if re.match(r"[a-z]+:", link):
            continue
        name, _, anchor = link.partition("#")
        target = (page.parent / name).resolve() if name else page
        if not target.exists():
            problems.append(f"{page}: {link} leads nowhere")
        elif anchor and anchor not in anchors(target):
            problems.append(f"{page}: {link} leads to no heading")
        if page == docs / "README.md":
            linked.add(target)
problems += [f"{page} is not linked from the index" for page in pages if page not in linked and page.name != "README.md"]

header = (root / "include/wq_stat/distributions.h").read_text(encoding="utf-8")
manual = (docs / "distributions.md").read_text(encoding="utf-8")
functions = set(re.findall(r"^(?:WQ_STAT_EXPORT|inline) \w+ (\w+)\(", header, re.MULTILINE))
problems += [f"distributions.md does not describe {name}" for name in sorted(functions) if f"`{name}(" not in manual]

print(*problems, sep="\n")
print(f"{len(pages)} pages, {len(functions)} functions, {len(problems)} problems")
sys.exit(1 if problems or not functions else 0)
