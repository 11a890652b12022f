#!/usr/bin/python3
"""Makes distributions.csv: what each formula of <wq_stat/distributions.h> gives when nothing is rounded.

The steps of wq_model/distributions.py run with numbers that carry a double and, beside it, the same value in 50 digits. Every
decision (which tail, when a series or an iteration ends) is the double's, so the 50 digits follow the library's own loops and show
what it must give but for rounding. A third part of each number bounds, to first order, how far the roundings of the double (half a
unit in the last place per operation, a unit per elementary function) can have carried it: the column `rounding`. It matters where
digits cancel, as in 1 - betaRatio(...) close to 1.

The doubles of the arguments and constants are exact numbers here. 0.05 means the double next to 0.05.

Needs mpmath: /usr/bin/python3 distributions_table.py writes distributions.csv beside this file.
"""

import csv
import math
import os
import sys

import mpmath

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from wq_model import distributions as model

mpmath.mp.dps = 50
HALF = 2.0 ** -53


class Digits:
    """A double, its value without rounding, and a bound of the difference."""
    __slots__ = ("double", "digits", "bound")

    def __init__(self, double, digits=None, bound=0.0, roundings=1):
        if isinstance(double, Digits):
            double, digits, bound, roundings = double.double, double.digits, double.bound, 0
        self.double = float(double)
        finite = math.isfinite(self.double)
        self.digits = mpmath.mpf(self.double) if digits is None or not finite else digits
        exact = bound == 0.0 and self.digits == self.double  # what can be represented is not rounded
        self.bound = bound + roundings * HALF * abs(self.double) if finite and not exact else 0.0

    def __float__(self):
        return self.double

    def __neg__(self):
        return Digits(-self.double, -self.digits, self.bound, 0)

    def __abs__(self):
        return Digits(abs(self.double), abs(self.digits), self.bound, 0)

    def __add__(self, other):
        other = Digits(other)
        return Digits(self.double + other.double, self.digits + other.digits, self.bound + other.bound)

    def __sub__(self, other):
        return self + -Digits(other)

    def __mul__(self, other):
        other = Digits(other)
        return Digits(self.double * other.double, self.digits * other.digits,
                      abs(self.double) * other.bound + abs(other.double) * self.bound)

    def __truediv__(self, other):
        other = Digits(other)
        if other.double == 0.0 or other.digits == 0:
            return Digits(model.divide(self.double, other.double))
        quotient = self.double / other.double
        return Digits(quotient, self.digits / other.digits, (self.bound + abs(quotient) * other.bound) / abs(other.double))

    __radd__ = __add__
    __rmul__ = __mul__
    divided = __truediv__

    def __rsub__(self, other):
        return -self + other

    def __rtruediv__(self, other):
        return Digits(other) / self

    def __eq__(self, other):
        return self.double == float(other)

    def __lt__(self, other):
        return self.double < float(other)

    def __le__(self, other):
        return self.double <= float(other)

    def __gt__(self, other):
        return self.double > float(other)

    def __ge__(self, other):
        return self.double >= float(other)

    def through(self, ieee, exact, slope, defined):
        """An elementary function; slope bounds how a small error grows."""
        double = ieee(self.double)
        if not math.isfinite(double) or not defined(self.digits):
            return Digits(double)
        return Digits(double, exact(self.digits), self.bound * slope, 2)

    def log(self):
        return self.through(model.log, mpmath.log, 1.0 / abs(self.double) if self.double else 0.0, lambda x: x > 0)

    def exp(self):
        return self.through(model.exp, mpmath.exp, model.exp(self.double), lambda x: True)

    def sqrt(self):
        return self.through(model.sqrt, mpmath.sqrt, 0.5 / math.sqrt(self.double) if self.double > 0.0 else 0.0, lambda x: x >= 0)

    def sin(self):
        return self.through(model.sin, mpmath.sin, 1.0, lambda x: True)

    def cos(self):
        return self.through(model.cos, mpmath.cos, 1.0, lambda x: True)

    def atan(self):
        return self.through(model.atan, mpmath.atan, 1.0, lambda x: True)

    def arc(self, ieee, exact):
        beyond = 1.0 - self.double * self.double
        if beyond > 0.0:
            return self.through(ieee, exact, 1.0 / math.sqrt(beyond), lambda x: abs(x) <= 1)
        double = ieee(self.double)  # the end of the range: an error e of the argument becomes sqrt(2 e)
        return Digits(double, exact(min(max(self.digits, -1), 1)), math.sqrt(2.0 * self.bound), 2)

    def asin(self):
        return self.arc(model.asin, mpmath.asin)

    def acos(self):
        return self.arc(model.acos, mpmath.acos)


def exp(x):
    return model.exp(model.real(x))


def sine(x):
    return model.sin(model.real(x))


def square(x):
    return x * x


def cubic(x):
    return x * x * x - 2.0 * x + 5.0


INTEGRANDS = {"exp": exp, "sin": sine, "square": square, "cubic": cubic, "normalDensity": model.normalDensity}


def ln_beta(p, q):
    return model.lnGamma(p) + model.lnGamma(q) - model.lnGamma(p + q)


SHAPES = [(0.5, 0.5), (0.5, 5.0), (5.0, 0.5), (1.0, 1.0), (1.0, 4.0), (2.0, 5.0), (2.5, 1.5), (1.5, 6.0), (5.0, 5.0), (6.0, 1.5),
          (13.0, 0.5), (12.5, 0.5), (0.5, 12.5), (10.0, 20.5), (30.0, 30.0), (50.5, 3.0), (3.0, 50.5), (100.0, 250.0)]


def arguments():
    """All rows: a function's name and its arguments, counts as int, reals as float."""
    for n in list(range(0, 31)) + [50, 100, 150, 169, 170]:
        yield "factorial", n
    for x in [0.5 * k for k in range(1, 41)] + [27.0, 50.5, 100.0, 100.5, 500.5, 1000.0, 2500.5, 5000.0, 2.3, 0.3, 7.75, 0.0, -1.5]:
        yield "lnGamma", x
    for p, q in SHAPES:
        for x in (1e-12, 0.001, 0.05, 0.2, 0.37, 0.5, 5 / 7, 0.9, 0.96, 0.999):
            yield "betaRatio", x, p, q, ln_beta(p, q)
        for alpha in (0.001, 0.01, 0.05, 0.1, 0.3, 0.5, 0.6, 0.9, 0.95, 0.99):
            if endless(alpha, p, q):
                continue
            yield "inverseBetaRatio", alpha, p, q, ln_beta(p, q)
    for f, a, b in (("square", 0.0, 2.0), ("square", -1.0, 1.0), ("square", 3.0, 5.0), ("cubic", 0.0, 2.0)):
        yield "simpsonIntegral", f, a, b
    for f, a, b in (("exp", 0.0, 1.0), ("exp", -2.0, 3.0), ("exp", 1.0, 0.0), ("sin", 0.0, 3.0), ("sin", -1.0, 1.5),
                    ("square", 0.0, 3.0), ("cubic", -1.0, 2.0), ("normalDensity", 0.0, 1.96), ("normalDensity", -3.0, 3.0)):
        yield "quadratureIntegral", f, a, b
    for n, p in ((4, 0.5), (1, 0.3), (10, 0.05), (20, 0.37), (27, 0.95), (100, 0.02), (300, 0.4)):
        for k in sorted({0, 1, 2, 3, n // 2, n - 1, n}):
            yield "binomial", k, n, p
    for x in (-40.0, -9.5, -5.0, -3.0, -2.5758, -1.96, -1.6449, -1.0, -0.5, -1e-12, 0.0, 0.05, 0.25, 0.67, 1.0, 1.2816, 1.96,
              2.3263, 3.1, 4.0, 6.5, 12.0):
        yield "normalDensity", x
        yield "normalProb", x
        yield "normalProbApprox", x
    for p in (1e-12, 1e-6, 1e-4, 0.001, 0.005, 0.01, 0.025, 0.05, 0.1, 0.2, 0.3, 0.4, 0.499, 0.5, 0.501, 0.6, 0.75, 0.8, 0.9, 0.95,
              0.975, 0.99, 0.995, 0.999, 0.9999, 1 - 1e-9):
        yield "normalPercentPoint", p
    for df in (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 15, 20, 29, 30, 99, 100, 271, 1000):
        for t in (-4.0, -1.5, -0.2, 0.0, 1e-12, 0.05, 0.5, 1.0, 1.5, 2.0, 2.7764, 4.5, 50.0):
            yield "t_Prob", t, df, len(str(t)) % 2 == 0
        for alpha in (0.5, 0.2, 0.1, 0.05, 0.025, 0.02, 0.01, 0.001, 1e-6, 1.5):
            yield "t_PercentPoint", alpha, df
    for df in (1, 2, 3, 4, 5, 6, 7, 8, 10, 15, 20, 29, 30, 50, 100, 271, 1000):
        for x in (1e-12, 0.05, 0.5, 1.0, 2.0, 3.841, 5.0, 7.815, 18.307, 31.41, 50.0, 100.0, 1000.0):
            yield "chiSquareProb", x, df
        for p in (0.001, 0.01, 0.05, 0.1, 0.5, 0.9, 0.95, 0.975, 0.99, 0.999):
            yield "chiSquarePoint", p, df
    for df1 in (1, 2, 3, 4, 5, 7, 10, 30):
        for df2 in (1, 2, 3, 4, 5, 10, 12, 25, 26, 27, 60, 93, 100, 300):
            for f in (0.05, 0.5, 0.95, 1.0, 1.7, 3.10493, 4.965, 20.0):
                yield "F_Prob", f, df1, df2
            for p in (0.05, 0.5, 0.8, 0.9, 0.95, 0.975, 0.99):
                if not endless(1.0 - p, df2 / 2.0, df1 / 2.0):
                    yield "F_PercentPoint", p, df1, df2
    for r in (-0.99, -0.5, -1e-12, 0.0, 0.05, 0.1, 0.5, 0.9, 0.95, 0.99, 0.999999):
        yield "z_TransformBig", r
        for n in (2, 3, 5, 10, 27, 100, 10000):
            yield "z_TransformSmall", r, n
    for z in (-50.0, -3.0, -1.0, -0.05, -1e-12, 0.0, 0.3, 0.5, 1.0, 2.5, 10.0, 300.0):
        yield "z_to_r", z
    for alpha in (0.2, 0.1, 0.05, 0.025, 0.01, 0.001, 1e-12, 2.0, 1.5):
        for n in (100, 101, 150, 500, 10000, 2 ** 60):
            yield "D_GoodnessOfFit", alpha, n
        for n1, n2 in ((30, 30), (27, 40), (26, 40), (40, 26), (20, 35), (20, 41), (41, 20), (41, 41), (1, 41),
                       (100, 100), (1000, 27), (10000, 500)):
            yield "D_TwoSamples", alpha, n1, n2
    for x in (0.0, 0.01, 0.03, 0.035, 0.05, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8276, 0.95, 1.0, 1.2238, 1.3581, 1.36, 1.48,
              1.6276, 1.9495, 2.5, 5.0, 10.0, 18.0, 19.5, 25.0, -1.0):
        yield "D_Prob", x
    for n in (0, 1, 2, 3, 5, 7, 10, 27, 49, 50, 100, 2 ** 60):
        for z in (0.0, 1e-12, 0.05, 0.5, 1.0, 2.0, 2.9957, 4.6052, 6.9, 20.0, -1.0):
            yield "rayleighsProb", z, n
    for x in (-360.0, -90.0, -1.0, 0.0, 1e-12, 0.5, 1.0, 45.0, 57.3, 180.0, 359.9):
        yield "degreeToRadian", x
        yield "radianToDegree", x
        yield "computeCircleArea", x
    for x in (-50.0, -2.0, -0.5, -1e-3, 0.0, 1e-3, 0.5, 1.0, 3.0):
        for y in (-50.0, -4.0, -0.5, -1e-3, 0.0, 1e-3, 0.5, 1.0, 4.0):
            yield "computeResultant", x, y
            yield "computeAngle", x, y


def endless(alpha, p, q):
    """Whether the plain iteration has no end. Where it circles, the steps are chaotic and say nothing in 50 digits."""
    visits = []
    model.inverseBetaRatio(alpha, p, q, ln_beta(p, q), visits)
    return bool(visits) and visits[-1] is False


def value(name, args):
    """The function's value in digits. Counts, flags and integrands go in as they are."""
    digits = [INTEGRANDS[a] if isinstance(a, str) else Digits(a) if isinstance(a, float) else a for a in args]
    result = Digits(getattr(model, name)(*digits))
    if name == "inverseBetaRatio":
        result.bound = newton_bound(*args).bound
    if name == "F_PercentPoint" and args[0] != 0.0:
        p, df1, df2 = args
        a, b = df2 / 2.0, df1 / 2.0
        x = newton_bound(1.0 - p, a, b, ln_beta(a, b))
        result.bound = (df2 * (1.0 - x) / (df1 * x)).bound
    return result


def newton_bound(alpha, p, q, beta):
    """The x that inverseBetaRatio finds, with the rounding of its last step only: Newton's iteration forgets the errors before."""
    visits = []
    model.inverseBetaRatio(alpha, p, q, beta, visits)
    if not visits:
        return Digits(alpha)
    if alpha > 0.5:
        q = p
    last = visits[-2]
    x = Digits(last, mpmath.mpf(last), HALF * last, 0)
    slope = model.exp((1.0 - p) * model.log(last) + (1.0 - q) * model.log(1.0 - last) + beta)
    ratio = model.betaRatio(Digits(last), p, q, Digits(beta, mpmath.mpf(beta), HALF * abs(beta), 0))
    x.bound += slope * ratio.bound
    return 1.0 - x if alpha > 0.5 else x


def cell(a):
    if isinstance(a, bool):
        return str(int(a))
    return repr(a) if isinstance(a, float) else str(a)


def main():
    target = os.path.join(os.path.dirname(os.path.abspath(__file__)), "distributions.csv")
    with open(target, "w", newline="") as file:
        file.write("# What the formulas give in 50 digits, and how far rounding may carry a double; made by distributions_table.py\n")
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow(["function", "arg1", "arg2", "arg3", "arg4", "value", "rounding"])
        for name, *args in arguments():
            result = value(name, args)
            if not math.isfinite(result.double):
                raise SystemExit(f"{name}{tuple(args)} is not finite")
            if name == "F_PercentPoint" and abs(result.double - result.digits) > 1e-9 * abs(result.digits):
                continue  # the iteration circled before it converged; its path hangs on the last bits
            cells = [cell(a) for a in args]
            rows.writerow([name, *cells, *[""] * (4 - len(cells)), mpmath.nstr(result.digits, 20), "%.2g" % result.bound])


if __name__ == "__main__":
    main()
