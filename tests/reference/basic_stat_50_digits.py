#!/usr/bin/python3
"""Prints the rows of the table in test_basic_stat: statistics of small samples in 50 digits.

From the definitions, not step by step: moments about the exact mean, the geometric mean of the positive values, the harmonic mean
of those other than 0. Student's t of the interval is the normal quantile of Abramowitz and Stegun 26.2.22 stretched to
sqrt(df (exp(w^2 / df) - 1)), w = z (8 df + 3) / (8 df + 1).
"""

from mpmath import exp, fprod, log, mp, mpf, root, sqrt

mp.dps = 50

CAVENDISH = ("5.50 5.61 4.88 5.07 5.26 5.55 5.36 5.29 5.58 5.65 5.57 5.53 5.62 5.29 5.44 5.34 5.79 5.10 5.27 5.39 5.42 5.47 5.63 "
             "5.34 5.46 5.30 5.75 5.68 5.85").split()

SAMPLES = {
    "one to four": [1, 2, 3, 4],
    "ordinary": [4.5, 2.25, 8, 3.125, 6, 5.5, 7.75, 1.5, 9, 3],
    "zeros": [0, 4, 4, 0, 2, 8],
    "negative values": [-3, 1.5, 4, -0.25, 12, 7],
    "all negative": [-1, -2, -4, -8, -16],
    "large offset": [10000001, 10000003, 10000002],
    "wide": ["1e-5", "0.25", 3, "1e4", "7e7"],
    "Cavendish": [float(x) for x in CAVENDISH],
}


def normal_point(p):
    t = sqrt(-2 * log(1 - (mpf("0.5") + abs(p - mpf("0.5")))))
    y = t - (mpf("2.30753") + mpf("0.27061") * t) / (1 + t * (mpf("0.99229") + mpf("0.04481") * t))
    return y if p > mpf("0.5") else -y


def t_point(alpha, df):
    w = normal_point(alpha / 2) * mpf(8 * df + 3) / (8 * df + 1)
    return sqrt(df * (exp(w * w / df) - 1))


for name, values in SAMPLES.items():
    values = [mpf(float(x)) for x in values]
    n = len(values)
    mean = sum(values) / n
    squares = sum((x - mean) ** 2 for x in values)
    variance = squares / (n - 1)
    error = sqrt(variance / n)
    positive = [x for x in values if x > 0]
    geometric = root(fprod(positive), len(positive)) if positive else mp.nan
    other = [x for x in values if x != 0]
    harmonic = len(other) / sum(1 / x for x in other)
    t = t_point(mpf("0.05"), n - 1)
    figures = (mean, squares, squares / n, variance, sqrt(squares / n), sqrt(variance), error, sqrt(variance) / mean, geometric,
               harmonic, mean - t * error, mean + t * error)
    print('{"%s", %s},' % (name, ", ".join("nan" if mp.isnan(x) else mp.nstr(x, 18) for x in figures)))
