"""Checks that the library and its peers agree, times them turn by turn, and prints the table. Started by scripts/bench."""
import argparse
import array
import fnmatch
import math
import pathlib
import random
import statistics
import subprocess
import sys
import time

import page
from page import LIBRARY
from programs import Cpp, Script
from rows import PLAIN, Value, all_rows

HERE = pathlib.Path(__file__).parent


class Disagreement(Exception):
    pass


def arguments_of(row, inputs):
    """@return the argument tuples of a distribution row, as wq_bench wrote them."""
    table = array.array("d", (inputs / f"{row.id}.f64").read_bytes())
    width = len(table) // row.per
    return [table[i:i + width] for i in range(0, len(table), width)]


def farthest_difference(row, library, peer, name, arguments):
    """
    @return of a peer's figures, the difference that comes nearest to its tolerance, as text; "same" for none, "" where all are drawn anew.
    Raises Disagreement for one beyond its tolerance.
    """
    if len(peer) != len(library):
        raise Disagreement(f"{row.id}: {name} gives {len(peer)} figures, the library {len(library)}")
    used, farthest = -1.0, ""
    for i, (ours, theirs) in enumerate(zip(library, peer)):
        figure = row.figures[0 if arguments else i]
        where = arguments[i] if arguments else None
        allowance = figure.allowance(where)
        if math.isnan(ours) or math.isnan(theirs) or allowance is None:
            continue
        difference = abs(theirs - ours)
        allowed = 0.0 if name == PLAIN and arguments else allowance[0] * abs(ours) + allowance[1]
        if difference > allowed:
            of = f" of {list(where)}" if where else ""
            raise Disagreement(f"{row.id}: {figure.name}{of} is {ours!r}, by {name} {theirs!r}")
        if figure.drawn:
            continue
        farthest = farthest or "same"
        if difference and difference / allowed > used:
            used = difference / allowed
            if figure.expected is not None:
                farthest = f"{difference:.0f} {figure.name}"
            else:
                farthest = f"{difference / abs(ours):.0e} of {figure.name}" if allowance[0] else f"{difference:.0e} in {figure.name}"
    return farthest


def check_library(row, answers, arguments):
    """The library's own figures: none missing but the p that a row leaves out, and those as expected of which that is known."""
    if len(answers) != (len(arguments) if arguments else len(row.figures)):
        raise Disagreement(f"{row.id}: the library gives {len(answers)} figures")
    if not arguments:
        for figure, value in zip(row.figures, answers):
            if math.isnan(value) and not (figure.name == "p" and "without-p" in row.id):
                raise Disagreement(f"{row.id}: the library gives no {figure.name}")
            if figure.expected is not None and value != figure.expected:
                raise Disagreement(f"{row.id}: {figure.name} is {value!r}, expected {figure.expected!r}")


def check(rows, programs, inputs):
    """@return by row and contender, how far the answers lie from the library's."""
    distances = {}
    for row in rows:
        arguments = arguments_of(row, inputs) if isinstance(row.figures[0], Value) else None
        library = programs[0].answers(row.id, LIBRARY)
        check_library(row, library, arguments)
        for program in programs:
            for name in program.rows.get(row.id, []):
                distances[row.id, name] = farthest_difference(row, library, program.answers(row.id, name), name, arguments)
        for program in programs:
            program.forget()
        print(f"answers agree: {row.id}", file=sys.stderr)
    return distances


def measure(row, programs, rounds, least, slow_rounds, most):
    """
    @param least processor seconds of one contender in a round, or one call.
    @param slow_rounds after so many, contenders that take more than four times as long as the best peer are left out.
    @param most seconds after which no further round begins; three are made in any case.
    @return by contender, processor seconds of a call in each round.
    """
    times = {}
    begin = time.monotonic()
    for turn in range(rounds):
        if turn >= 3 and time.monotonic() - begin > most:
            break
        best = min((statistics.median(values) for name, values in times.items() if row.is_peer(name)), default=0.0)
        order = programs[:]
        random.shuffle(order)
        for program in order:
            names = [name for name in program.rows.get(row.id, [])
                     if turn < slow_rounds or statistics.median(times[name]) < 4 * best or name == LIBRARY]
            if names:
                for name, seconds in program.seconds(row.id, names, least).items():
                    times.setdefault(name, []).append(seconds)
    for program in programs:
        program.forget()
    return times


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__)
    parser.add_argument("--rows", metavar="PATTERN", action="append", help="only the row of this name, or those with it in their name")
    parser.add_argument("--answers", action="store_true", help="compares the answers and times nothing")
    parser.add_argument("--check", action="store_true",
                        help="compares the ratios with the committed ones, and fails where one is a quarter above the greatest of them")
    parser.add_argument("--quick", action="store_true", help="small rows, few rounds: for work on the library")
    parser.add_argument("--rounds", type=int, help="how often each contender is timed")
    parser.add_argument("--list", action="store_true", help="names the rows")
    parser.add_argument("--program", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--inputs", required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()

    rows = all_rows()
    whole = not arguments.rows and not arguments.quick
    if arguments.rows:
        ids = {row.id for row in rows}
        chosen = lambda id, pattern: id == pattern if pattern in ids else pattern in id or fnmatch.fnmatch(id, pattern)
        rows = [row for row in rows if any(chosen(row.id, pattern) for pattern in arguments.rows)]
    elif arguments.quick:
        rows = [row for row in rows if row.quick]
    if arguments.list:
        print("\n".join(row.id for row in rows))
        return 0
    if not rows:
        print("no such row", file=sys.stderr)
        return 2

    subprocess.run([arguments.program, arguments.inputs, "make"], check=True)
    programs = [Cpp(arguments.program, arguments.inputs),
                Script(["Rscript", "--vanilla", str(HERE / "peers.R"), arguments.inputs]),
                Script(["/usr/bin/python3", str(HERE / "peers.py"), arguments.inputs])]
    begin = time.time()
    try:
        distances = check(rows, programs, pathlib.Path(arguments.inputs))
    except Disagreement as disagreement:
        print(f"The answers do not agree, so nothing was timed. {disagreement}", file=sys.stderr)
        return 1
    print(f"checked in {time.time() - begin:.0f} s", file=sys.stderr)
    if arguments.answers:
        return 0

    rounds = arguments.rounds or (3 if arguments.quick else 7)
    results = []
    for row in rows:
        times = measure(row, programs, rounds, 0.02, 1, 10) if arguments.quick else measure(row, programs, rounds, 0.05, 2, 40)
        results.append(page.Result(row, times, {name: distances[row.id, name] for name in times}))
        print(f"timed: {row.id}, {time.time() - begin:.0f} s", file=sys.stderr)
    for program in programs:
        program.end()

    print(page.table(results))
    if arguments.check:
        comparison, worse = page.compared(results, page.Runs.committed())
        print(comparison)
        return 1 if worse else 0
    if whole:
        page.write_results(results, rounds, begin)
    return 0


if __name__ == "__main__":
    sys.exit(main())
