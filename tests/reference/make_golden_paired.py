#!/usr/bin/python3
"""Writes tests/golden/{pairs,regression,correlation}_*.txt: reports, listings and R exports of these analyses as they must be.

The samples stand in test_basic_xy_stat, test_regression and test_correlation under the same names.
"""

import math
import pathlib

from wq_model.paired import (BasicXyStatistics, Correlation, ExponentialRegression, LinearRegression, LogarithmicRegression,
                             PowerRegression)

TESTS = pathlib.Path(__file__).resolve().parent.parent
GOLDEN = TESTS / "golden"
SHIPPED = TESTS.parent / "examples" / "data"


def write(name, content):
    (GOLDEN / (name + ".txt")).write_text(content, newline="")


def read(name):
    """The pairs and the comment of a plain file: x;y on a line, the last line with '#' is the comment."""
    pairs, comment = [], ""
    for line in (SHIPPED / name).read_text().split("\n"):
        if "#" in line:
            comment = line.replace("#", "")
        elif line:
            x, y = line.split(";")
            pairs.append((float(x), float(y)))
    return pairs, comment


NORRIS, NORRIS_COMMENT = read("nist_norris.txt")
ORDINARY = [(1, 2.5), (2, 4), (3, 5.25), (4, 8), (5, 9.5), (6, 13), (7, 16.25), (8, 20), (9, 25.5), (10, 31)]
FALLING = [(0.5, 32), (1, 20), (2, 13), (4, 8), (8, 5.5), (16, 3)]


# ---------------------------------------------------------------- pairs

def pairs(name, sample, comment="", export_comment="", head=0.0, tail=0.0, columns=("X", "Y"), analysed=True, listing=(0, 1000),
          outputs="report listing export"):
    test = BasicXyStatistics(sample)
    test.comment = comment
    test.head, test.tail = head, tail
    test.columns = list(columns)
    if analysed:
        test.analyse()
    if "report" in outputs:
        write("pairs_" + name + "_report", test.report())
    if "listing" in outputs:
        write("pairs_" + name + "_listing", test.listing(*listing))
    if "export" in outputs:
        write("pairs_" + name + "_export", test.export(export_comment))


FIVE = [(1, 10), (2, 20), (3, 30), (4, 40), (5, 50)]

pairs("ordinary", ORDINARY, "Ten pairs", "Ten pairs")
pairs("negative", [(-1, -5), (-2.5, -4), (-3, 0.5), (-8, -16)], "x below 0")
pairs("two_identical", [(1.5, 2), (1.5, 2)])
pairs("one_pair", [(1.5, 2)], export_comment="not analysed")
pairs("new_object", [], analysed=False)
pairs("empty", [])
pairs("not_analysed", ORDINARY, analysed=False, export_comment="two lines\nof comment\n")
pairs("trimmed", ORDINARY, "Trimmed", "without both ends", head=0.15, tail=0.29)
pairs("all_trimmed_away", ORDINARY, head=0.9, tail=0.9)
pairs("huge_and_tiny", [(1e300, 1e-300), (-1e6, 999999.5), (1234567, 0.0001), (0.00001234567, -0.0)])
pairs("nan_and_infinite", [(3, math.nan), (math.nan, 1), (math.inf, 2), (2, -math.inf)])
pairs("nan", [(3, 1), (math.nan, 2), (5, 4)], outputs="report")
pairs("listing_part", FIVE, analysed=False, listing=(1, 2), outputs="listing")
pairs("listing_up_to_the_count", FIVE, analysed=False, listing=(3, 5), outputs="listing")
pairs("listing_backwards", FIVE, analysed=False, listing=(3, 1), outputs="listing")
pairs("columns_named", FIVE, columns=("length [mm]", "mass"), outputs="listing export")
pairs("columns_unnamed", FIVE, columns=("", ""), outputs="listing export")
pairs("columns_quoted", FIVE, columns=('a "b"', "c\td#"), outputs="export")
pairs("columns_split", FIVE, columns=("a|b", "c"), outputs="listing export")
pairs("norris", NORRIS, NORRIS_COMMENT, "Norris")


# ---------------------------------------------------------------- regressions

MODELS = {
    "linear": LinearRegression,
    "logarithmic": LogarithmicRegression,
    "exponential": ExponentialRegression,
    "power": PowerRegression,
}


def regression(name, sample, comment="", significance=0.05, analysed=True, models=tuple(MODELS)):
    for model in models:
        test = MODELS[model](sample)
        test.comment = comment
        test.significance = significance
        if analysed:
            test.analyse()
        write("regression_" + name + "_" + model, test.report())


regression("ordinary", ORDINARY, "Ten pairs")
regression("falling", FALLING, "b below 0")
regression("at_one_percent", ORDINARY, significance=0.01)
regression("zero_x", [(0, 4), (1, 3), (2, 5), (4, 8)], "x = 0 once")
regression("negative_x", [(-1, 4), (1, 3), (2, 5), (4, 8)], "x below 0 once")
regression("zero_y", [(1, 0), (2, 3), (3, 5), (5, 8)], "y = 0 once")
regression("negative_y", [(1, -2), (2, 3), (3, 5), (5, 8)], "y below 0 once")
regression("nan_x", [(math.nan, 2), (2, 3), (3, 5), (5, 8)])
regression("nan_y", [(1, math.nan), (2, 3), (3, 5), (5, 8)])
regression("none_kept", [(-1, -2), (-2, -4), (-4, -3)])
regression("one_kept", [(-1, -2), (2, 3), (-4, -3)])
regression("one_pair", [(2, 3)])
regression("empty", [])
regression("not_analysed", ORDINARY, "Before any analysis", analysed=False)
regression("equal_x", [(2, 3), (2, 4), (2, 6)], models=("linear",))
regression("equal_y", [(1, 3), (2, 3), (6, 3)], models=("linear",))
regression("exact_line", [(1, 1.5), (2, 1), (3, 0.5), (4, 0), (5, -0.5)], models=("linear",))
regression("two_pairs", [(1, 3), (2, 5)], models=("linear",))
regression("two_identical", [(1.5, 2), (1.5, 2)], models=("linear",))
regression("norris", NORRIS, NORRIS_COMMENT, models=("linear",))


# ---------------------------------------------------------------- correlation

def correlation(name, sample, comment="", significance=0.05, analysed=True, hypothesis=None):
    test = Correlation(sample)
    test.comment = comment
    test.significance = significance
    if hypothesis is not None:
        test.hypothesis = hypothesis
    if analysed:
        test.analyse()
    write("correlation_" + name, test.report())


def scattered(n, slope):
    """Around a line, without rounding: x = i / 4, y = slope x + (37 i^2 mod 101) / 32."""
    return [(i / 4, slope * i / 4 + (37 * i * i % 101) / 32) for i in range(n)]


def line(n, slope):
    """Exactly on a line, x and y without rounding."""
    return [(i / 8, slope * i / 8) for i in range(n)]


correlation("ordinary", ORDINARY, "Ten pairs")
correlation("strongly_negative", [(x, -y) for x, y in ORDINARY], "The t test accepts H0")
correlation("weak", scattered(30, 0.0), "Thirty pairs")
correlation("none", [(1, 2), (2, 1), (3, 1), (4, 2)], "r = 0")
correlation("fifty", scattered(50, 0.125), "No limits up to 50 pairs")
correlation("fifty_one", scattered(51, 0.125), "Limits from 51 pairs on")
correlation("fifty_one_at_one_percent", scattered(51, 0.125), significance=0.01)
correlation("fifty_one_falling", scattered(51, -0.25))
correlation("perfect", line(12, 2))
correlation("perfect_odd", line(13, 2))
correlation("perfect_falling", line(12, -2))
correlation("perfect_sixty", line(60, 4))
correlation("perfect_falling_sixty", line(60, -4))
correlation("rounded_beyond_one", [(1, 3), (3, 7), (7, 15)], "r is the double above 1")
correlation("two_pairs", [(1, 2), (3, 5)])
correlation("three_pairs", [(1, 2), (2, 7), (3, 5)])
correlation("equal_x", [(2, 3), (2, 4), (2, 6)])
correlation("one_pair", [(2, 3)])
correlation("empty", [])
correlation("not_analysed", ORDINARY, "Before any analysis", analysed=False)
correlation("other_hypothesis", ORDINARY, hypothesis="rho is 0 in all towns")
correlation("norris", NORRIS, NORRIS_COMMENT)
