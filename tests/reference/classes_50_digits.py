#!/usr/bin/python3
"""Figures of the tests of frequencies, variances and directions, from the textbook formulas with 50 digits.

Prints the values that stand in the tables of test_goodness_fit, test_kolmogorov, test_two_samples and test_circular. Decimal figures are
taken as the doubles a program reads.
"""

from mpmath import cos, log, mp, mpf, nstr, pi, sin, sqrt

mp.dps = 50


def show(name, **values):
    """Where the formula leaves the real numbers the programs have NaN."""
    values = {key: value if isinstance(value, mpf) else mp.nan for key, value in values.items()}
    print(name + ": " + ", ".join(f"{key} = {nstr(value, 18)}" for key, value in values.items()))


def fit(name, classes, yates=False, williams=True):
    k = len(classes)
    pairs = [(mpf(o), mpf(e)) for o, e in classes]
    half = mpf(1) / 2 if yates and k == 2 else 0
    x2 = sum((abs(o - e) - half) ** 2 / e for o, e in pairs)
    g = 2 * sum(o * log(o / e) for o, e in pairs)
    total = sum(int(o) for o, e in classes)
    q = 1 if not williams else 1 + mpf(1) / (2 * total) if k == 2 else 1 + mpf(k + 1) / (6 * total)
    show("fit, " + name, X2=x2, G=g, Gadj=g / q)


def two_sample_d(name, classes):
    n1 = int(sum(x for x, y in classes))
    n2 = int(sum(y for x, y in classes))
    c1 = c2 = mpf(0)
    d = mpf(0)
    for x, y in classes:
        c1 += mpf(x)
        c2 += mpf(y)
        d = max(d, abs(c1 / n1 - c2 / n2))
    show("two samples, " + name, n1=mpf(n1), n2=mpf(n2), D=d)


def circular(name, angles, unit=mpf(1), bins=None, bin0=0):
    """angles: (x, frequency), frequency 0 when not grouped; unit: radians per unit of x."""
    grouped = any(f > 0 for x, f in angles)
    d = 2 * pi / bins if bins else None
    weights = [(mpf(x) * unit - (d / 2 if grouped else 0), mpf(f) if grouped else mpf(1)) for x, f in angles]
    n = sum(int(f) for x, f in angles) if grouped else len(angles)
    c = sum(w * cos(t) for t, w in weights) / n
    s = sum(w * sin(t) for t, w in weights) / n
    r = sqrt(c * c + s * s)
    a = mp.atan2(s, c) % (2 * pi)
    if grouped:
        r *= (d / 2) / sin(d / 2)
    z = n * r * r
    p = mp.exp(-z)
    if n < 50:
        p *= 1 + (2 * z - z ** 2) / (4 * n) - (24 * z - 132 * z ** 2 + 76 * z ** 3 - 9 * z ** 4) / (288 * mpf(n) ** 2)
    show("directions, " + name, n=mpf(n), a=a, r=r, s=sqrt(2 * (1 - r)), sPrime=sqrt(-2 * log(r)), R=n * r, z=z, p=p,
         meanBin=mpf(int(a / d) + bin0) if bins else mpf(0))


EVEN = [(30, 25), (20, 25)]
FIVE = [(10, 12), (14, 12), (9, 12), (13, 12), (14, 12)]
fit("two classes", EVEN)
fit("two classes, Yates", EVEN, yates=True)
fit("two classes, Yates, difference below a half", [(10.25, 10), (9.75, 10)], yates=True)
fit("three classes, Yates", [(10, 20), (20, 20), (30, 20)], yates=True)
fit("five classes", FIVE)
fit("five classes, no Williams", FIVE, williams=False)
fit("fractions", [(1.9, 2), (2.9, 2), (0.9, 1.7)])
fit("peas", [(315, 312.75), (101, 104.25), (108, 104.25), (32, 34.75)])

two_sample_d("equal columns", [(5, 5), (7, 7), (8, 8)])
two_sample_d("mirrored", [(3, 1), (2, 2), (1, 3)])
two_sample_d("different sizes", [(10, 2), (5, 4), (5, 6), (0, 8)])
two_sample_d("fractions", [(1.5, 0.5), (1.25, 1.0), (0.2, 2.0)])

DEGREE = pi / 180
MONTHS = [5, 4, 6, 9, 14, 18, 22, 17, 11, 8, 6, 5]
circular("quarter turns but one, degrees", [(10, 0), (95, 0), (200, 0)], DEGREE)
circular("a fan of degrees", [(x, 0) for x in (40, 55, 60, 72, 88, 101, 140, 325)], DEGREE)
circular("radians, third quadrant", [(x, 0) for x in (3.5, 4.0, 3.75, 4.25)])
circular("months", [(i + 1, f) for i, f in enumerate(MONTHS)], 2 * pi / 12, 12, 1)
circular("thirds of a turn, radians with frequencies", [(2.0, 7), (4.0, 3), (6.0, 2)], 1, 3)
circular("weights with fractions", [(1, 2.75), (2, 3.5), (3, 1.25)], 2 * pi / 8, 8)
circular("one bin of twelve", [(3, 10)], 2 * pi / 12, 12)
circular("a weight taken off", [(1.0, 5), (1.0, -3)], 1, 4)
