#!/usr/bin/env python3
"""Runs the examples of one page of the manual, in order, in a fresh copy of the example data.

    ```cpp               a program: compiled against the built libraries and run
    ```sh                commands, run by sh -eu with the built wqstat on PATH
    ```r                 a script for Rscript
    ```text              what the block before it prints on standard output, exactly
    ```LANG file=NAME    any block with a file name is not run but written to that file

A block that fails or prints something else, a text block that belongs to nothing, and a page without examples fail the test. Blocks whose program is
not there (R, gnuplot, or wqstat when the tools are not built) are named and left out, and the test counts as skipped.

An SVG picture that the page shows has to be drawn by its examples, under the same name, as it is committed. With WQ_RENEW_PICTURES=1 in the
environment it is replaced by what they draw.
"""
import argparse
import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys

SKIPPED = 77
FENCE = re.compile(r"^```(\w*)[ \t]*(?:file=(\S+))?[ \t]*$")


def blocks(page):
    """(line number, language, file name or None, text) of each fenced block."""
    start = None
    for number, line in enumerate(page.read_text(encoding="utf-8").split("\n"), 1):
        if start is None:
            fence = FENCE.match(line)
            if fence:
                start, (language, name), text = number, fence.groups(), []
            elif line.startswith("```"):
                sys.exit(f"{page}:{number}: what is this block? {line}")
        elif line == "```":
            yield start, language, name, "".join(row + "\n" for row in text)
            start = None
        else:
            text.append(line)
    if start is not None:
        sys.exit(f"{page}:{start}: the block has no end")


def run(command, folder, env, text=None):
    return subprocess.run(command, cwd=folder, env=env, input=text, text=True, encoding="utf-8", stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, timeout=300)


def same_picture(committed, drawn):
    """Byte by byte, but another version of gnuplot draws another file: then the texts, which have the numbers, decide."""
    pictures = [path.read_text(encoding="utf-8") for path in (committed, drawn)]
    version, texts = re.compile(r"<metadata>(.*?)</metadata>", re.DOTALL), re.compile(r"<text>(.*?)</text>", re.DOTALL)
    if version.findall(pictures[0]) == version.findall(pictures[1]):
        return pictures[0] == pictures[1]
    written = [sorted(re.sub(r"<[^>]*>", "", text).strip() for text in texts.findall(picture)) for picture in pictures]
    return bool(written[0]) and written[0] == written[1]


def picture_problems(page, work):
    """What is wrong with the SVG pictures that the page shows; none when they are to be renewed."""
    for link in dict.fromkeys(re.findall(r"!\[[^]]*\]\(([^)\s]+\.svg)\)", page.read_text(encoding="utf-8"))):
        committed = page.parent / link
        drawn = work / committed.name
        if not drawn.exists():
            yield f"{page}: no example draws {committed.name}"
        elif os.environ.get("WQ_RENEW_PICTURES") == "1":
            shutil.copyfile(drawn, committed)
        elif not committed.exists() or not same_picture(committed, drawn):
            yield (f"{page}: {link} is not what the example draws ({drawn}); where that is right, renew it: "
                   "WQ_RENEW_PICTURES=1 ctest --test-dir BUILD -R '^docs[.]'")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("page", type=pathlib.Path)
    parser.add_argument("--data", type=pathlib.Path, required=True, help="folder of the example data")
    parser.add_argument("--work", type=pathlib.Path, required=True, help="folder to run in; emptied first")
    parser.add_argument("--bin", required=True, help="folder of wqstat")
    parser.add_argument("--prefix", type=pathlib.Path, help="an installed tree, for examples that build a host of their own")
    parser.add_argument("--compile", required=True, help="compiler and its arguments, separated by ';'")
    parser.add_argument("--link", required=True, help="what follows the source, likewise")
    options = parser.parse_args()

    env = dict(os.environ, LC_ALL="C.UTF-8", PATH=options.bin + os.pathsep + os.environ["PATH"])
    if options.prefix:
        env["CMAKE_PREFIX_PATH"] = str(options.prefix)
        env["PKG_CONFIG_PATH"] = os.pathsep.join(str(file.parent) for file in options.prefix.rglob("*.pc"))
    shutil.rmtree(options.work, ignore_errors=True)
    shutil.copytree(options.data, options.work)

    ran, failures, skipped, output = 0, 0, [], None
    for line, language, name, text in blocks(options.page):
        where = f"{options.page}:{line}"
        if name:
            (options.work / name).write_text(text, encoding="utf-8")
            output = None
            continue
        if language == "text":
            if output is None:
                sys.exit(f"{where}: the output of which block?")
            if text != output and output is not skipped:
                failures += 1
                print(f"{where}: the example prints something else")
                sys.stdout.writelines(difflib.unified_diff(text.splitlines(True), output.splitlines(True), "manual", "example"))
            output = None
            continue
        output = None
        if language == "cpp":
            source, program = options.work / f"line{line}.cpp", options.work / f"line{line}"
            source.write_text(text, encoding="utf-8")
            done = run([*options.compile.split(";"), str(source), "-o", str(program), *options.link.split(";")], options.work, env)
            if done.returncode == 0:
                done = run([str(program)], options.work, env)
        elif language == "sh":
            if re.search(r"^\s*wqstat\b", text, re.MULTILINE) and not shutil.which("wqstat", path=env["PATH"]):
                skipped.append(f"{where}: wqstat is not built")
                output = skipped
                continue
            if "--plot" in text and not shutil.which("gnuplot", path=env["PATH"]):
                skipped.append(f"{where}: there is no gnuplot")
                output = skipped
                continue
            done = run(["sh", "-eu"], options.work, env, text)
        elif language == "r":
            if not shutil.which("Rscript"):
                skipped.append(f"{where}: there is no Rscript")
                output = skipped
                continue
            done = run(["Rscript", "--vanilla", "-"], options.work, env, text)
        else:
            continue
        ran += 1
        output = done.stdout
        if done.returncode != 0:
            failures += 1
            print(f"{where}: exit status {done.returncode}\n{done.stdout}{done.stderr}")

    if not skipped:
        for problem in picture_problems(options.page, options.work):
            failures += 1
            print(problem)

    print(f"{options.page}: {ran} examples run, {failures} failed")
    for reason in skipped:
        print(f"skipped: {reason}")
    if skipped and not failures:
        return SKIPPED
    return 1 if failures or ran == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
