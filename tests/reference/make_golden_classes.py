#!/usr/bin/python3
"""Writes tests/golden/{fit,ks,variances,frequency,circular}_*.txt: reports, listings and files of these analyses as they must be.

The samples stand in test_goodness_fit, test_kolmogorov, test_two_samples, test_frequency and test_circular under the same names.
Also writes tests/golden/example_*.txt: what the programs in examples/ print for the data files that examples/CMakeLists.txt names.
"""

import math
import pathlib

from wq_model import text
from wq_model.anova import SingleAnova
from wq_model.basic_stat import BasicStatistics
from wq_model.classes import BIN_NUMBERS, DEGREES, Circular, Frequency, GoodnessOfFit, KolmogorovSmirnov2, TwoSamples

TESTS = pathlib.Path(__file__).resolve().parents[1]
GOLDEN = TESTS / "golden"
DATA = TESTS.parent / "examples" / "data"


def write(name, content):
    (GOLDEN / (name + ".txt")).write_text(content, newline="")


# ---------------------------------------------------------------- goodness of fit

PEAS = [(315, 312.75), (101, 104.25), (108, 104.25), (32, 34.75)]
TWO = [(30, 25), (20, 25)]


def fit(name, classes, comment="", yates=False, williams=True, significance=0.05, head=0.0, analysed=True):
    test = GoodnessOfFit(classes)
    test.comment = comment
    test.yates = yates
    test.williams = williams
    test.significance = significance
    test.head = head
    if analysed:
        test.analyse()
    write("fit_" + name, test.report())


fit("peas", PEAS, "Seeds of a dihybrid cross, 9:3:3:1")
fit("peas_no_williams", PEAS, "Seeds of a dihybrid cross, 9:3:3:1", williams=False)
fit("yates", TWO, "Two classes", yates=True)
fit("two_classes", TWO, "Two classes")
fit("rejected", [(10, 20), (20, 20), (30, 20)], yates=True, significance=0.01)
fit("nothing_observed", [(0, 1), (12, 11)])
fit("nothing_expected", [(3, 0), (12, 11)])
fit("empty", [])
fit("one_class", [(5, 4)])
fit("before_analysis", PEAS, analysed=False)
fit("head", PEAS, head=0.25)


# ---------------------------------------------------------------- Kolmogorov-Smirnov

THIRTY = [(2, 9), (5, 8), (8, 6), (9, 4), (6, 3)]
TWENTY = [(10, 2), (5, 4), (5, 6), (0, 8)]


def ks(name, classes, comment="", significance=0.05, columns=None, cumulated=True, analysed=True, repeats=1):
    test = KolmogorovSmirnov2(classes)
    test.comment = comment
    test.significance = significance
    if columns is not None:
        test.columns = columns
    if cumulated:
        for _ in range(repeats):
            test.cumulative()
    if analysed:
        test.analyse()
    write("ks_" + name, test.report())
    write("ks_" + name + "_table", test.frequencies())


ks("thirty", THIRTY, "Two samples of 30")
ks("thirty_at_one_percent", THIRTY, significance=0.01)
ks("twenty", TWENTY, "Two samples of 20, too small for a critical value", significance=0.01)
ks("equal", [(5, 5), (7, 7), (8, 8)])
ks("fractions", [(1.5, 0.5), (1.25, 1.0), (0.2, 2.0)], columns=["before", "after"])
ks("long_names", [(123456789, 1), (0.0005, 99999999999.5)],
   columns=["frequency before", "frequency after", "relative 1", "relative 2", "difference"])
ks("twice", THIRTY, repeats=2)
ks("not_analysed", TWENTY, analysed=False)
ks("not_cumulated", TWENTY, cumulated=False)
ks("empty", [])


# ---------------------------------------------------------------- two variances

def variances(name, n1=0, variance1=0.0, n2=0, variance2=0.0, comment="", significance=0.05, analysed=True):
    test = TwoSamples()
    test.result.n, test.result.sampleVariance = n1, float(variance1)
    test.second.n, test.second.sampleVariance = n2, float(variance2)
    test.comment = comment
    test.significance = significance
    if analysed:
        test.analyse()
    write("variances_" + name, test.report())


variances("first_larger", 4, 12.5, 13, 3.125, comment="Four readings against thirteen")
variances("second_larger", 13, 0.000123456789, 4, 1234567.875, significance=0.01)
variances("equal", 5, 2.5, 9, 2.5)
variances("one_zero", 5, 0.0, 9, 2.5)
variances("both_zero", 5, 0.0, 9, 0.0)
variances("no_size", 0, 4.0, 9, 2.0)
variances("empty")
variances("before_analysis", 4, 12.5, 13, 3.125, analysed=False)


# ---------------------------------------------------------------- frequency classes

def frequency(name, values, k, comment="", table_comment="", start=None):
    test = Frequency(values)
    test.comment = comment
    test.auto_class_width(k)
    if start is not None:
        test.start_class = start
    test.init_frequency(test.classes)
    test.build_table()
    test.analyse()
    write("frequency_" + name, test.report())
    write("frequency_" + name + "_export", test.table_file(table_comment))


frequency("zero_to_ten", range(11), 0, "The values 0 to 10", "The values 0 to 10")
frequency("worked_row", [2.6, 1.0, 3.0, 1.2, 2.1, 1.4, 1.6, 2.2], 4, table_comment="two lines\nof comment")
frequency("equal_values", [2.5, 2.5, 2.5], 3)
frequency("start_by_hand", [3, 1, 4, 1, 5, 9, 2, 6], 4, start=2.0)
frequency("not_finite", [1, math.inf, 2, math.nan, 3], 2)
frequency("empty", [], 4)


# ---------------------------------------------------------------- directions

FAN = [(x, 0) for x in (40, 55, 60, 72, 88, 101, 140, 325)]
MONTHS = [(i + 1, f) for i, f in enumerate((5, 4, 6, 9, 14, 18, 22, 17, 11, 8, 6, 5))]


def circular(name, pairs, comment="", significance=0.05, analysed=1, **options):
    test = Circular(pairs, **options)
    test.comment = comment
    test.significance = significance
    for _ in range(analysed):
        test.analyse()
    write("circular_" + name, test.report())


circular("degrees", FAN, "A fan of directions", unit=DEGREES)
circular("degrees_analysed_twice", FAN, unit=DEGREES, analysed=2)
circular("quarter_turns", [(1, 0), (90, 0), (200, 0), (271, 0)], "Spread around the circle", significance=0.01, unit=DEGREES)
circular("radians", [(3.5, 0), (4.0, 0), (3.75, 0), (4.25, 0)])
circular("months", MONTHS, "Cases by month", unit=BIN_NUMBERS, bins=12, bin0=1.0, bin_name="month")
circular("radians_with_frequencies", [(2.0, 7), (4.0, 3), (6.0, 2)], bins=3)
circular("weights_with_fractions", [(1, 2.75), (2, 3.5), (3, 1.25)], unit=BIN_NUMBERS, bins=8)
circular("no_bins", [(1, 2), (2, 3)], unit=BIN_NUMBERS, bin_name="hour")
circular("one_angle", [(0, 0)])
circular("empty", [])
circular("before_analysis", FAN, analysed=0)


# ---------------------------------------------------------------- example programs

def read(name):
    """The comment lines of a data file, without their '#', and its other lines."""
    lines = [line for line in (DATA / name).read_text().split("\n") if line]
    return [line.replace("#", "") for line in lines if "#" in line], [line for line in lines if "#" not in line]


def values(name, analysis):
    """Loads numbers; the comment lines are strung together."""
    comments, lines = read(name)
    for line in lines:
        analysis.add(float(line))
    analysis.comment = "".join(comments)
    return analysis


def pairs(name, analysis_class):
    """Loads pairs; the last comment line stays."""
    comments, lines = read(name)
    analysis = analysis_class([line.split(";") for line in lines])
    analysis.comment = comments[-1]
    return analysis


sample = values("cavendish.txt", BasicStatistics())
sample.nullHypothesis = 5.517
sample.analyse()
spread = sample.result.quartile3 - sample.result.quartile1
write("example_one_sample", sample.report() + "interquartile range: " + text.plain(spread) + "\n")

anova = pairs("nist_sirstv.txt", SingleAnova)
anova.create_series()
anova.analyse()
write("example_anova_series", anova.listing(0, len(anova.groups)) + anova.report() + anova.test_results())

digits = pairs("pi_e_digits.txt", KolmogorovSmirnov2)
digits.cumulative()
digits.analyse()
digits.columns = ["sample 1", "sample 2", "rel. 1", "rel. 2", "diff."]
write("example_kolmogorov_cumulative", digits.report() + digits.frequencies())

instruments = values("nist_sirstv_instrument1.txt", TwoSamples())
other = values("nist_sirstv_instrument2.txt", BasicStatistics())
BasicStatistics.analyse(instruments)
other.analyse()
instruments.second = other.result
instruments.analyse()
write("example_two_variances", instruments.report())

density = values("cavendish.txt", Frequency())
density.auto_class_width(8)
density.init_frequency(density.classes)
density.build_table()
density.analyse()
write("example_frequency_table", density.report())
