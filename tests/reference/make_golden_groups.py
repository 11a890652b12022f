#!/usr/bin/python3
"""Writes tests/golden/{anova,multiy}_*.txt: reports, listings and files of these analyses as they must be.

The samples stand in test_single_anova and test_regression_multi_y under the same names.
"""

import math
import pathlib

from wq_model.anova import LinearRegressionMultiY, SingleAnova

GOLDEN = pathlib.Path(__file__).resolve().parent.parent / "golden"


def write(name, content):
    (GOLDEN / (name + ".txt")).write_text(content, newline="")


# ---------------------------------------------------------------- single classification

def anova(name, pairs, comment="", export_comment="", significance=0.05, groups=(), analysed=1, outputs="report results listing export"):
    """groups: ids given to createGroup before the pairs are gathered."""
    test = SingleAnova(pairs)
    test.comment = comment
    test.significance = significance
    for identifier in groups:
        test.create_group(identifier)
    test.create_series()
    for _ in range(analysed):
        test.analyse()
    if "report" in outputs:
        write("anova_" + name + "_report", test.report())
    if "results" in outputs:
        write("anova_" + name + "_results", test.test_results())
    if "listing" in outputs:
        write("anova_" + name + "_listing", test.listing(0, 10))
    if "export" in outputs:
        write("anova_" + name + "_export", test.export(export_comment))


def balanced(groups, size):
    """Group g holds g + (7 j mod 11) / 4 for j = 0 ... size - 1: figures without rounding."""
    return [(g, g + (7 * j % 11) / 4) for g in range(1, groups + 1) for j in range(size)]


def stiff(offset, repeats):
    """The constructed sets of Simon and Lesage: c, then c - 0.1 and c + 0.1 in turn."""
    pairs = []
    for i, tenths in enumerate((4, 3, 5, 3, 5, 3, 5, 3, 5)):
        c = 10 * offset + tenths
        pairs.append((i + 1, c / 10))
        pairs += [pair for _ in range(repeats) for pair in ((i + 1, (c - 1) / 10), (i + 1, (c + 1) / 10))]
    return pairs


TWO = [(1, 10), (1, 12), (2, 20), (2, 22)]
MIXED = [(1, 10), (2, 20), (1, 12), (2, 22), (3, 5)]

anova("two_groups", TWO, "Two groups of two", "Two groups of two")
anova("mixed_order", MIXED, "Unequal sizes", "two lines\nof comment", significance=0.01)
anova("two_and_twelve", balanced(3, 5), "Three groups of five", outputs="report results")
anova("rejected", balanced(4, 30), significance=0.025, outputs="report")
anova("two_groups_of_14", balanced(2, 14), outputs="report")
anova("two_groups_of_14_at_01", balanced(2, 14), significance=0.1, outputs="report")
anova("ten_groups_of_200", balanced(10, 200), significance=0.025, outputs="report")
anova("analysed_twice", MIXED, analysed=2, outputs="report results")
anova("not_analysed", MIXED, "Before any analysis", analysed=0)
anova("empty", [], "Nothing")
anova("one_group", [(7, 1.5), (7, 2.5), (7, 4)])
anova("groups_of_one", [(1, 2), (2, 4), (3, 3)])
anova("one_observation", [(4, 4)])
anova("equal_observations", [(1, 3), (1, 3), (2, 3), (2, 3)])
anova("created_without_observations", TWO, groups=[9, 2, 2], export_comment="groups 0 and 2 have no observations")
anova("ids_and_values", [(-0.0, 0.1), (0.0, -2.5), (math.nan, 1e15), (math.nan, 123456.789), (math.inf, 1e-7), (-1e-3, 1234567),
                         (1e20, -0.0), (2.5, math.nan), (2.5, math.inf), (-math.inf, -math.inf)], "Numbers of all kinds", "numbers")
anova("stiff_within_negative", stiff(10 ** 12, 10), outputs="report")
anova("stiff_many", stiff(10 ** 12, 100), outputs="report")


# ---------------------------------------------------------------- several y per x

SERIES = "1:10:2\n2;24\n# note\n3|30|1\n"


def multiy(name, pairs, comment="", significance=0.05, analysed=1):
    test = LinearRegressionMultiY()
    test.comment = comment
    test.significance = significance
    if isinstance(pairs, str):
        test.read_series(pairs)
    else:
        test.pairs = [(float(x), float(y)) for x, y in pairs]
    test.create_series()
    for _ in range(analysed):
        test.analyse()
    write("multiy_" + name, test.report())


def around(line, half_width):
    """Two observations around each point (x, mean)."""
    return [(x, mean + side * half_width) for x, mean in line for side in (-1, 1)]


FALLING = around([(0, 4.125), (2, 2.875), (4, 1.875), (6, 1.125)], 0.25)
RISING = around([(1, 2.2), (2, 4.1), (3, 5.6), (4, 8.3), (5, 9.6)], 0.5)

multiy("falling", FALLING, "A line that falls")
multiy("rising_five_groups", RISING, "Five groups")
multiy("rising_at_one_percent", RISING, significance=0.01)
multiy("not_significant", around([(1, 3), (2, 3.03125), (3, 3)], 2.0), "No line")
multiy("exact_line", around([(2, 3), (4, 2), (6, 1)], 0.25))
multiy("no_slope", around([(1, 5), (2, 9), (3, 5)], 0.25))
multiy("series_file", SERIES, "From a series file")
multiy("one_x", [(2, 3), (2, 4), (2, 6)])
multiy("equal_observations", around([(1, 3), (2, 3), (3, 3)], 0.0))
multiy("empty", [])
multiy("not_analysed", RISING, analysed=0)
multiy("analysed_twice", RISING, analysed=2)
