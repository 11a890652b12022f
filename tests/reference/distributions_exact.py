#!/usr/bin/python3
"""Makes distributions_exact.csv: functions whose every step IEEE arithmetic rounds correctly, bit for bit.

These functions use + - * / and square roots only. Here each step is an exact fraction that is rounded once to the nearest double,
so the result is what any IEEE machine must give. Values are written in hexadecimal.

/usr/bin/python3 distributions_exact.py writes distributions_exact.csv beside this file.
"""

import csv
import math
import os
from fractions import Fraction


def rounded(x):
    """The double next to a fraction, as a fraction."""
    return Fraction(float(x))


def root(x):
    """The double next to the square root of a fraction."""
    if x == 0:
        return Fraction(0)
    shift = 0
    while x < 4 ** 60:           # an integer root of more than 60 bits, and a sticky bit for what is left
        x *= 4
        shift += 1
    whole = math.isqrt(x.numerator // x.denominator)
    exact = whole * whole == x
    return rounded(Fraction(2 * whole + (0 if exact else 1), 2 * 2 ** shift))


def factorial(n):
    product = Fraction(1)
    for k in range(1, n + 1):
        try:
            product = rounded(product * k)
        except OverflowError:
            return Fraction(-1)
    return product


def binomial(k, n, p):
    q = rounded(1 - p)
    r = Fraction(1)
    for _ in range(n):
        r = rounded(r * q)
    for i in range(k):
        r = rounded(rounded(rounded(r * (n - i)) * p) / rounded((i + 1) * q))
    return r


def resultant(x, y):
    return root(rounded(rounded(x * x) + rounded(y * y)))


DEGREE = Fraction(0.017453292519943295)
RADIAN = Fraction(57.29577951308232)
PI = Fraction(3.141592653589793)


def main():
    reals = [0.0, 1.0, 0.1, 1 / 3, 0.5, 2.0, 3.0, 1e-5, 45.0, 57.29577951308232, 90.0, 123.456, 180.0, 270.0, 359.9, 1e6, 6.02e23]
    target = os.path.join(os.path.dirname(os.path.abspath(__file__)), "distributions_exact.csv")
    with open(target, "w", newline="") as file:
        file.write("# Functions without an elementary function in them, every step rounded correctly; made by distributions_exact.py\n")
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow(["function", "arg1", "arg2", "arg3", "arg4", "value"])

        def row(name, args, value):
            rows.writerow([name, *map(repr, args), *[""] * (4 - len(args)), float(value).hex()])

        for n in range(0, 175):
            row("factorial", [n], factorial(n))
        for p in (0.5, 0.25, 0.05, 0.3, 0.37, 0.95, 1e-12, 0.0):
            for n in (0, 1, 4, 5, 10, 27, 100, 400):
                for k in sorted({0, 1, 2, n // 3, n // 2, max(n - 1, 0), n, n + 1, n + 7}):
                    row("binomial", [k, n, p], binomial(k, n, Fraction(p)))
        for x in reals:
            row("degreeToRadian", [x], rounded(DEGREE * Fraction(x)))
            row("radianToDegree", [x], rounded(RADIAN * Fraction(x)))
            row("computeCircleArea", [x], rounded(PI * rounded(Fraction(x) ** 2)))
            for y in reals:
                row("computeResultant", [x, -y], resultant(Fraction(x), Fraction(y)))


if __name__ == "__main__":
    main()
