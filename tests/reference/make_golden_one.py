#!/usr/bin/python3
"""Writes tests/golden/basic_*.txt: reports, listings and R exports of one sample as they must be.

The samples stand in test_basic_stat under the same names. Of real files that the project does not ship, only the report is
kept; the folder they come from is the first argument, and without it those reports stay as they are.
"""

import math
import pathlib
import sys

from wq_model.basic_stat import BasicStatistics

TESTS = pathlib.Path(__file__).resolve().parent.parent
GOLDEN = TESTS / "golden"
SHIPPED = TESTS.parent / "examples" / "data"


def write(name, content):
    (GOLDEN / ("basic_" + name + ".txt")).write_text(content, newline="")


def sample(name, values, comment="", significance=0.05, mu=0.0, head=0.0, tail=0.0, column="DATA", export_comment="", analysed=True,
           listing=(0, 1000), outputs="report listing export"):
    test = BasicStatistics(values)
    test.comment = comment
    test.significance = significance
    test.nullHypothesis = mu
    test.head, test.tail = head, tail
    test.column = column
    if analysed:
        test.analyse()
    if "report" in outputs:
        write(name + "_report", test.report())
    if "listing" in outputs and test.listing(*listing) is not None:
        write(name + "_listing", test.listing(*listing))
    if "export" in outputs:
        write(name + "_export", test.export(export_comment))


def read(path):
    """The numbers and the comment of a plain file: one number per line, lines with '#' are comments."""
    values, comment = [], ""
    for line in path.read_text().split("\n"):
        if "#" in line:
            comment += line.replace("#", "")
        elif line:
            values.append(float(line))
    return values, comment


ORDINARY = [4.5, 2.25, 8, 3.125, 6, 5.5, 7.75, 1.5, 9, 3]
TWENTY_FIVE = [(7 * i % 25) + 0.5 for i in range(25)]

sample("ordinary", ORDINARY, "Ten values", export_comment="Ten values")
sample("ordinary_at_01", ORDINARY, "Ten values", significance=0.01, outputs="report")
sample("ordinary_mu", ORDINARY, "Ten values", mu=5.0, outputs="report")
sample("between_the_levels", ORDINARY, "Ten values", mu=7.1, outputs="report")
sample("one_to_four", [1, 2, 3, 4], export_comment="two lines\nof comment\n")
sample("negative_values", [-3, 1.5, 4, -0.25, 12, 7])
sample("zeros", [0, 4, 4, 0, 2, 8])
sample("only_zeros", [0, 0, 0], outputs="report")
sample("all_negative", [-1, -2, -4, -8, -16])
sample("three_equal", [2.5, 2.5, 2.5])
sample("trimmed_10", ORDINARY, "Trimmed", head=0.1, tail=0.1, export_comment="without both ends")
sample("trimmed_25", TWENTY_FIVE, "Trimmed", head=0.1, tail=0.1)
sample("all_trimmed_away", ORDINARY, head=0.9, tail=0.9)
sample("huge_and_tiny", [1e300, -1e300, 1e-300, 1e6, 999999.5, 1234567, 0.0001, 0.00001234567], outputs="report listing")
sample("nan_and_infinite", [3, math.nan, 1, math.inf, 2, -math.inf])
sample("nan", [3, math.nan, 1, 2, 7], export_comment="")
sample("not_analysed", ORDINARY, analysed=False)
sample("new_object", [], analysed=False)
sample("one_value_not_analysed", [2.5], analysed=False, export_comment="one value")
sample("two_values", [1, 2], "Too few")
sample("listing_part", [5, 4, 3, 2, 1], analysed=False, listing=(1, 2), outputs="listing")
sample("listing_empty_range", [5, 4, 3, 2, 1], analysed=False, listing=(3, 1), outputs="listing")
sample("column_named", [5, 4, 3, 2, 1], column="length [mm]", outputs="listing export")
sample("column_unnamed", [5, 4, 3, 2, 1], column="", outputs="listing export")
sample("column_quoted", [5, 4, 3, 2, 1], column='a "b"\tc#', outputs="export")

for name in ("cavendish", "nist_numacc1", "nist_numacc3"):
    values, comment = read(SHIPPED / (name + ".txt"))
    sample(name, values, comment, export_comment=name)

if len(sys.argv) > 1:
    for name in ("nist_lew", "nist_mavro"):
        values, comment = read(pathlib.Path(sys.argv[1]) / "values" / (name + ".txt"))
        sample(name, values, comment, outputs="report")
