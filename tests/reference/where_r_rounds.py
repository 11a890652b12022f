#!/usr/bin/env python3
"""The figures of whereRRounds in wqstat/test_against_r.cpp, from the decimals of the data files, with 60 digits and with whole numbers.

Usage: /usr/bin/python3 where_r_rounds.py NORRIS IRIS_CLASSES   (needs mpmath)
"""

import re
import sys
from fractions import Fraction
from math import comb

import mpmath

mpmath.mp.dps = 60


def pairs_in(name):
    with open(name, encoding="utf-8") as file:
        lines = [line.split("#")[0].strip() for line in file]
    return [[Fraction(field) for field in re.split("[;:|]", line)[:2]] for line in lines if line]


def number(fraction):
    return mpmath.mpf(fraction.numerator) / fraction.denominator


def tail(a, b, x):
    return mpmath.betainc(a, b, 0, x, regularized=True)


def correlation(pairs):
    """The two-sided p of t, and the upper tail of F = (1 + |r|) / (1 - |r|)."""
    n = len(pairs)
    mean_x, mean_y = (sum(pair[i] for pair in pairs) / n for i in (0, 1))
    xy = sum((x - mean_x) * (y - mean_y) for x, y in pairs)
    rest = 1 - xy * xy / (sum((x - mean_x) ** 2 for x, _ in pairs) * sum((y - mean_y) ** 2 for _, y in pairs))
    df = mpmath.mpf(n - 2)
    below_one = number(rest) / (1 + mpmath.sqrt(1 - number(rest)))
    return tail(df / 2, mpmath.mpf(1) / 2, number(rest)), tail(df / 2, df / 2, below_one / 2)


def arrangements(pairs):
    """The share of all arrangements, given the ties, whose D is no smaller. Equal values have no order: only where a class ends is there a D."""
    n1, n2 = (int(sum(pair[i] for pair in pairs)) for i in (0, 1))
    first = second = steps = 0
    ends = set()
    for x, y in pairs:
        first += int(x)
        second += int(y)
        ends.add(first + second)
        steps = max(steps, abs(first * n2 - second * n1))
    ways = [[0] * (n2 + 1) for _ in range(n1 + 1)]
    for i in range(n1 + 1):
        for j in range(n2 + 1):
            if i + j not in ends or abs(i * n2 - j * n1) < steps:
                ways[i][j] = 1 if i == j == 0 else (ways[i - 1][j] if i else 0) + (ways[i][j - 1] if j else 0)
    return number(1 - Fraction(ways[n1][n2], comb(n1 + n2, n1)))


two_sided, upper = correlation(pairs_in(sys.argv[1]))
for name, value in (("p of t", two_sided), ("upper tail of F", upper), ("p of F", 2 * upper), ("p of D", arrangements(pairs_in(sys.argv[2])))):
    print(name, mpmath.nstr(value, 17))
