#!/usr/bin/python3
"""Makes distributions_textbook.csv: what each function of <wq_stat/distributions.h> is named for, to 15 digits.

The library's functions are approximations; these are the values they approximate, by mpmath in 30 digits: incomplete gamma and
beta functions (the latter by its continued fraction), and bisection for the quantiles. The significance of Rayleigh's z is the
exact one of a random walk, from exact_rayleigh.csv.

It then prints how far the formulas, as wq_model/distributions.py computes them, depart from these values, region by region,
beside what the header says. test_distributions.cpp holds the library to the same statements.

Needs mpmath: /usr/bin/python3 distributions_textbook.py writes distributions_textbook.csv beside this file.
"""

import contextlib
import csv
import io
import math
import os
import sys

import mpmath
from mpmath import mpf

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from wq_model import distributions as model

mpmath.mp.dps = 30


# ---------------------------------------------------------------- the textbook values

def continued_fraction(x, a, b):
    """Lentz's method for the continued fraction of the incomplete beta function."""
    tiny = mpf(10) ** -300
    c = mpf(1)
    d = 1 / ((1 - (a + b) * x / (a + 1)) or tiny)
    h = d
    m = 1
    while True:
        for factor in (m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m)), -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1))):
            d = 1 / ((1 + factor * d) or tiny)
            c = (1 + factor / c) or tiny
            h *= c * d
        if abs(c * d - 1) < mpf(10) ** -27:
            return h
        m += 1


def incomplete_beta(x, rest, a, b):
    """I_x(a, b), rest = 1 - x."""
    if x <= 0 or rest <= 0:
        return mpf(0) if x <= 0 else mpf(1)
    factor = mpmath.exp(a * mpmath.log(x) + b * mpmath.log(rest) + mpmath.loggamma(a + b) - mpmath.loggamma(a) - mpmath.loggamma(b))
    if x < (a + 1) / (a + b + 2):
        return factor * continued_fraction(x, a, b) / a
    return 1 - factor * continued_fraction(rest, b, a) / b


def normal(x):
    return mpmath.ncdf(x)


def normal_quantile(p):
    return mpmath.sqrt(2) * mpmath.erfinv(2 * mpf(p) - 1)


def t_upper(t, df):
    t, df = mpf(t), mpf(df)
    tail = incomplete_beta(df / (df + t * t), t * t / (df + t * t), df / 2, mpf(1) / 2) / 2
    return tail if t >= 0 else 1 - tail


def chi_square(x, df):
    return mpmath.gammainc(mpf(df) / 2, 0, mpf(x) / 2, regularized=True)


def f_lower(f, df1, df2):
    f = mpf(f)
    whole = df1 * f + df2
    return incomplete_beta(df1 * f / whole, df2 / whole, mpf(df1) / 2, mpf(df2) / 2)


def root(rising, level):
    """The x > 0 where a rising function reaches a level."""
    low, high = mpf(0), mpf(1)
    while rising(high) < level:
        low, high = high, 4 * high
    for _ in range(64):
        middle = (low + high) / 2
        if rising(middle) < level:
            low = middle
        else:
            high = middle
    return (low + high) / 2


def kolmogorov(x):
    x = mpf(x)
    if x < 0.7:
        return 1 - mpmath.sqrt(2 * mpmath.pi) / x * sum(mpmath.exp(-(2 * k - 1) ** 2 * mpmath.pi ** 2 / (8 * x * x)) for k in range(1, 20))
    return 2 * sum((-1) ** (j - 1) * mpmath.exp(-2 * j * j * x * x) for j in range(1, 30))


def rayleigh(z, n):
    """From the table that exact_rayleigh.c makes."""
    if not WALKS:
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "exact_rayleigh.csv"), encoding="utf-8") as file:
            for name, at, steps, _, value in csv.reader(line for line in file if line.startswith("rayleigh")):
                WALKS[name, float(at), int(steps)] = mpf(value)
    return WALKS["rayleighUpperTail", z, n]


WALKS = {}


def rows():
    """function, arguments, exact value."""
    for x in (-200.0, -40.0, -12.63, -8.0, -5.0, -3.0, -1.96, -1.3, -1.0, -0.5, 0.0, 0.23, 0.67, 1.0, 1.2816, 1.82, 1.96, 2.5758,
              3.0, 4.0, 5.5, 9.0, 30.0, 1000.0, 50000.0):
        yield "normalProb", (x,), normal(x)
        yield "normalProbApprox", (x,), normal(x)
        yield "normalDensity", (x,), mpmath.exp(-mpf(x) * x / 2) / mpmath.sqrt(2 * mpmath.pi)
    for n in (1, 2, 5, 10, 22, 23, 50, 100, 169, 170):
        yield "factorial", (n,), mpmath.factorial(n)
    for n, p in ((4, 0.5), (10, 0.05), (27, 0.95), (100, 0.02), (300, 0.4)):
        for k in sorted({0, 1, 3, n // 2, n}):
            yield "binomial", (k, n, p), mpmath.binomial(n, k) * mpf(p) ** k * (1 - mpf(p)) ** (n - k)
    for x, y in ((1.0, 0.0), (0.0, 2.0), (-1.0, 0.0), (0.0, -3.0), (3.0, 4.0), (-3.0, 4.0), (-3.0, -4.0), (3.0, -4.0),
                 (1.0, 1e-9), (3.0, 3e-8), (-3.0, -2.98e-8), (-1.0, 1e-8), (1e-8, -1.0), (1.0, -1e-9), (1e-8, 1.0)):
        angle = mpmath.atan2(mpf(y), mpf(x))
        yield "computeAngle", (x, y), angle if angle >= 0 else angle + 2 * mpmath.pi
    for p in (1e-15, 1e-12, 1e-9, 1e-6, 1e-5, 1e-4, 0.001, 0.005, 0.01, 0.025, 0.05, 0.1, 0.2, 0.278, 0.4, 0.5, 0.6, 0.722, 0.8, 0.9, 0.95,
              0.975, 0.99, 0.999, 1 - 1e-6, 1 - 1e-12):
        yield "normalPercentPoint", (p,), normal_quantile(p)
    for x in [0.5, 1.5, 2.5, 3.0, 3.5, 5.0, 10.5, 50.0, 100.5, 500.0, 1771.5, 6389.0, 10000.0, 100000.5]:
        yield "lnGamma", (x,), mpmath.loggamma(x)
    for df in (1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 20, 29, 30, 100, 101, 1000, 10000):
        for t in (-2.0, -0.5, 0.0, 0.2, 0.5, 0.7, 0.76, 1.0, 1.5, 2.0, 2.5, 4.0, 20.0):
            yield "t_Prob", (t, df, 1), t_upper(t, df)
            yield "t_Prob", (t, df, 0), 2 * t_upper(t, df)
        for alpha in (0.5, 0.2, 0.1, 0.05, 0.02, 0.01, 0.001):
            yield "t_PercentPoint", (alpha, df), root(lambda t: -t_upper(t, df), -mpf(alpha) / 2)
    for df in (1, 2, 3, 4, 5, 8, 10, 20, 29, 30, 100, 300):
        for x in (0.01, 0.5, 1.0, 3.841, 10.0, 31.41, 60.0, 100.0, 140.0, 195.0, 400.0, 1000.0, 1390.0):
            yield "chiSquareProb", (x, df), chi_square(x, df)
        for p in (0.01, 0.05, 0.1, 0.5, 0.9, 0.95, 0.975, 0.99, 0.999):
            yield "chiSquarePoint", (p, df), root(lambda x: chi_square(x, df), mpf(p))
    for df1 in (1, 2, 3, 4, 5, 6, 7, 10, 15, 30, 100):
        for df2 in (1, 2, 3, 4, 5, 6, 8, 10, 15, 26, 30, 100, 1000):
            for f in (0.05, 0.3, 0.7, 0.9, 1.1, 1.5, 2.0, 3.0, 4.0, 5.0, 7.0, 10.0, 50.0):
                yield "F_Prob", (f, df1, df2), f_lower(f, df1, df2)
            for p in (0.8, 0.9, 0.95, 0.975, 0.99):
                yield "F_PercentPoint", (p, df1, df2), root(lambda f: f_lower(f, df1, df2), mpf(p))
    for r in (-0.99, -0.5, -0.1, 0.0, 0.001, 0.3, 0.8, 0.99):
        yield "z_TransformBig", (r,), mpmath.atanh(r)
    for z in (-20.0, -3.0, -1.0, -0.01, 0.0, 0.3, 1.0, 2.5, 700.0):
        yield "z_to_r", (z,), mpmath.tanh(z)
    for x in (0.031, 0.035, 0.05, 0.1, 0.15, 0.25, 0.3, 0.4, 0.5, 0.7, 0.9, 1.08, 1.36, 2.0, 2.5, 5.0, 10.0, 18.0):
        yield "D_Prob", (x,), kolmogorov(x)
    for n in (7, 10, 20, 49, 50, 100):
        for z in (0.1, 0.5, 1.0, 2.0, 3.0, 4.0, 4.6, 6.0, 6.9):
            yield "rayleighsProb", (z, n), rayleigh(z, n)


# ---------------------------------------------------------------- how far the formulas are off

def even_tail(f, df1, df2):
    """The second parameter of the tail that is summed is an integer."""
    return (df1 if f > 1.0 else df2) % 2 == 0


# function, what the header says, region, relative (or absolute), bound said there
STATEMENTS = [
    ("factorial", "n <= 170", lambda a: True, True, 1e-15),
    ("normalDensity", "|x| <= 5", lambda a: abs(a[0]) <= 5.0, True, 6e-15),
    ("binomial", "n <= 300, P > 1e-300", lambda a: True, True, 3e-16 * 900),
    ("computeAngle", "everywhere", lambda a: True, False, 3e-8),
    ("normalProb", "|x| <= 5e4", lambda a: abs(a[0]) <= 5e4, False, 1e-9),
    ("normalProbApprox", "everywhere", lambda a: True, False, 2.5e-4),
    ("normalPercentPoint", "1e-15 ... 1 - 1e-15", lambda a: True, False, 3e-3),
    ("lnGamma", "x <= 1e4", lambda a: a[0] <= 1e4, True, 1e-14),
    ("lnGamma", "x <= 1e5", lambda a: a[0] <= 100001.0, True, 1e-13),
    ("t_Prob", "even df <= 1e4", lambda a: a[1] % 2 == 0, False, 2e-13),
    ("t_Prob", "odd df, one-sided", lambda a: a[1] % 2 == 1 and a[2], False, 0.74),
    ("t_Prob", "odd df, two-sided", lambda a: a[1] % 2 == 1 and not a[2], False, 1.48),
    ("t_PercentPoint", "0.05, df 1", lambda a: a[0] == 0.05 and a[1] == 1, True, 0.4),
    ("t_PercentPoint", "0.05, df 2", lambda a: a[0] == 0.05 and a[1] == 2, True, 0.042),
    ("t_PercentPoint", "0.05, df 3, 4", lambda a: a[0] == 0.05 and a[1] in (3, 4), True, 0.013),
    ("t_PercentPoint", "0.05, df >= 5", lambda a: a[0] == 0.05 and a[1] >= 5, True, 0.003),
    ("t_PercentPoint", "0.05, df >= 8", lambda a: a[0] == 0.05 and a[1] >= 8, True, 0.001),
    ("t_PercentPoint", "0.001 ... 0.5, df >= 10", lambda a: 0.001 <= a[0] <= 0.5 and a[1] >= 10, True, 0.005),
    ("chiSquareProb", "x <= 200, result > 1e-300", lambda a: a[0] <= 200.0 and chi_square(*a) > 1e-300, True, 2e-6),
    ("chiSquareProb", "x <= 1400, result > 1e-300", lambda a: a[0] <= 1400.0 and chi_square(*a) > 1e-300, True, 6e-6),
    ("chiSquarePoint", "0.95, df 1", lambda a: a[0] == 0.95 and a[1] == 1, True, 0.026),
    ("chiSquarePoint", "0.95, df 2", lambda a: a[0] == 0.95 and a[1] == 2, True, 0.01),
    ("chiSquarePoint", "0.95, df >= 3", lambda a: a[0] == 0.95 and a[1] >= 3, True, 0.006),
    ("chiSquarePoint", "0.95, df >= 10", lambda a: a[0] == 0.95 and a[1] >= 10, True, 0.001),
    ("chiSquarePoint", "0.5 ... 0.999, all df", lambda a: a[0] >= 0.5, True, 0.035),
    ("chiSquarePoint", "0.5 ... 0.999, df >= 10", lambda a: a[0] >= 0.5 and a[1] >= 10, True, 0.007),
    ("chiSquarePoint", "0.05, df 2", lambda a: a[0] == 0.05 and a[1] == 2, True, 0.24),
    ("chiSquarePoint", "0.05, df >= 10", lambda a: a[0] == 0.05 and a[1] >= 10, True, 0.003),
    ("F_Prob", "even df1 for f > 1, even df2 for f < 1; df <= 2000", lambda a: even_tail(*a), False, 2e-7),
    ("F_Prob", "df1 = 1, f >= 4", lambda a: a[1] == 1 and a[0] >= 4.0, False, 0.021),
    ("F_Prob", "df1 = 1, f >= 5", lambda a: a[1] == 1 and a[0] >= 5.0, False, 0.005),
    ("F_Prob", "df1 = 1, f >= 10", lambda a: a[1] == 1 and a[0] >= 10.0, False, 6e-5),
    ("F_Prob", "df1 = 3, f > 1", lambda a: a[1] == 3 and a[0] > 1.0, False, 0.1),
    ("F_Prob", "df1 = 3, f >= 2", lambda a: a[1] == 3 and a[0] >= 2.0, False, 0.0015),
    ("F_Prob", "odd df1 >= 5, f > 1", lambda a: a[1] % 2 == 1 and a[1] >= 5 and a[0] > 1.0, False, 0.005),
    ("F_Prob", "odd df1 >= 15, f > 1", lambda a: a[1] % 2 == 1 and a[1] >= 15 and a[0] > 1.0, False, 2e-7),
    ("F_PercentPoint", "even df1, p 0.8 ... 0.99, df2 = 1", lambda a: a[1] % 2 == 0, True, 1e-5),
    ("F_PercentPoint", "even df1, p 0.8 ... 0.99, df2 >= 2", lambda a: a[1] % 2 == 0 and a[2] >= 2, True, 2e-7),
    ("F_PercentPoint", "df1 = 1, p 0.95, df2 <= 10", lambda a: a[0] == 0.95 and a[1] == 1 and a[2] <= 10, True, 0.02),
    ("F_PercentPoint", "df1 = 1, p 0.95", lambda a: a[0] == 0.95 and a[1] == 1, True, 0.24),
    ("F_PercentPoint", "df1 = 1, p 0.975", lambda a: a[0] == 0.975 and a[1] == 1, True, 0.1),
    ("F_PercentPoint", "df1 = 1, p 0.9", lambda a: a[0] == 0.9 and a[1] == 1, True, 0.13),
    ("F_PercentPoint", "df1 = 1, p 0.8", lambda a: a[0] == 0.8 and a[1] == 1, True, 0.76),
    ("F_PercentPoint", "df1 = 1, p 0.99", lambda a: a[0] == 0.99 and a[1] == 1, True, 0.015),
    ("F_PercentPoint", "df1 = 3, p >= 0.95", lambda a: a[0] >= 0.95 and a[1] == 3, True, 0.001),
    ("F_PercentPoint", "odd df1 >= 5, p >= 0.95", lambda a: a[0] >= 0.95 and a[1] % 2 == 1 and a[1] >= 5, True, 3e-5),
    ("z_TransformBig", "|r| <= 0.99", lambda a: True, False, 1e-15),
    ("z_to_r", "|z| <= 700", lambda a: True, False, 1e-15),
    ("D_Prob", "0.031 ... 18", lambda a: True, False, 5e-9),
    ("D_Prob", "0.3 ... 18", lambda a: a[0] >= 0.3, True, 1e-8),
    ("rayleighsProb", "n 7 ... 49", lambda a: a[1] < 50, False, 1e-3),
    ("rayleighsProb", "n >= 50", lambda a: a[1] >= 50, False, 2.5e-3),
    ("rayleighsProb", "n 10 ... 49, z <= 4.6", lambda a: 10 <= a[1] < 50 and a[0] <= 4.6, True, 0.01),
]


def departure(name, args, exact, relative):
    with contextlib.redirect_stdout(io.StringIO()):
        given = getattr(model, name)(*args)
    off = abs(mpf(given) - exact)
    if not relative:
        return float(off)
    return float(off / abs(exact)) if exact else float(off)


def main():
    table = [(name, args, exact) for name, args, exact in rows()]
    target = os.path.join(os.path.dirname(os.path.abspath(__file__)), "distributions_textbook.csv")
    with open(target, "w", newline="") as file:
        file.write("# Exact values of what the functions approximate; made by distributions_textbook.py\n")
        out = csv.writer(file, lineterminator="\n")
        out.writerow(["function", "arg1", "arg2", "arg3", "exact"])
        for name, args, exact in table:
            out.writerow([name, *map(repr, args), *[""] * (3 - len(args)), mpmath.nstr(mpf(exact), 15)])
    for name, where, inside, relative, bound in STATEMENTS:
        worst = max((departure(n, a, e, relative), a) for n, a, e in table if n == name and inside(a))
        print("%-20s %-52s %s %9.2g of %9.2g at %s%s" % (name, where, "rel" if relative else "abs", worst[0], bound, worst[1],
                                                        "" if worst[0] <= bound else "   EXCEEDED"))


if __name__ == "__main__":
    main()
