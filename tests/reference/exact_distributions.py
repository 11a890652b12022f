#!/usr/bin/python3
"""Makes exact_distributions.csv: tails, densities and quantiles of continuous distributions to 20 digits, into the far tails.

By mpmath with 60 digits. The incomplete gamma and beta functions are computed by their series and continued fractions, each where it converges
and never as one minus the other unless that is above a half; the quantiles by Newton's method on the logarithm of the tail, from
the argument that gave the probability. Arguments are doubles and stand for exactly themselves.

Needs mpmath: /usr/bin/python3 exact_distributions.py writes exact_distributions.csv beside this file.
"""

import csv
import os

import mpmath
from mpmath import mpf

mpmath.mp.dps = 60
PRECISION = mpf(10) ** -55
SMALLEST = mpf(10) ** -307


# ---------------------------------------------------------------- incomplete gamma and beta functions: lower, upper, derivative

def lentz(first, terms):
    """first + a1 / (b1 + a2 / (b2 + ...)); terms gives the pairs (a, b)."""
    tiny = mpf(10) ** -400
    h = first or tiny
    c = h
    d = mpf(0)
    for a, b in terms:
        d = 1 / ((b + a * d) or tiny)
        c = (b + a / c) or tiny
        h *= c * d
        if abs(c * d - 1) < PRECISION:
            return h
    raise ArithmeticError


def gamma_tails(a, x):
    """P(a, x), Q(a, x) and the derivative by x."""
    density = mpmath.exp((a - 1) * mpmath.log(x) - x - mpmath.loggamma(a))
    if x < a + 1:
        term = total = 1 / a
        k = a
        while term > total * PRECISION:
            k += 1
            term *= x / k
            total += term
        lower = total * density * x
        return lower, 1 - lower, density

    def terms():
        k = 1
        while True:
            yield -k * (k - a), x - a + 2 * k + 1
            k += 1
    upper = density * x / lentz(x - a + 1, terms())
    return 1 - upper, upper, density


def beta_fraction(x, a, b):
    def terms():
        yield mpf(1), mpf(1)
        m = 0
        while True:
            yield -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1)), mpf(1)
            m += 1
            yield m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m)), mpf(1)
    return lentz(mpf(0), terms())


def beta_tails(a, b, part, rest):
    """I_x(a, b), its complement, and the derivative by x, at x = part / (part + rest)."""
    x = part / (part + rest)
    y = rest / (part + rest)
    power = mpmath.exp(a * mpmath.log(x) + b * mpmath.log(y) + mpmath.loggamma(a + b) - mpmath.loggamma(a) - mpmath.loggamma(b))
    if x < (a + 1) / (a + b + 2):
        lower = power * beta_fraction(x, a, b) / a
        return lower, 1 - lower, power / x / y
    upper = power * beta_fraction(y, b, a) / b
    return 1 - upper, upper, power / x / y


# ---------------------------------------------------------------- the distributions, for arguments above 0

def normal(z):
    return mpmath.erfc(-z / mpmath.sqrt(2)) / 2, mpmath.erfc(z / mpmath.sqrt(2)) / 2, mpmath.npdf(z)


def absolute_t(t, df):
    inside, outside, slope = beta_tails(mpf(1) / 2, df / 2, t * t, df)
    return inside, outside, slope * 2 * t * df / (df + t * t) ** 2


def chi_square(x, df):
    lower, upper, slope = gamma_tails(df / 2, x / 2)
    return lower, upper, slope / 2


def fisher(f, df1, df2):
    lower, upper, slope = beta_tails(df1 / 2, df2 / 2, df1 * f, df2)
    return lower, upper, slope * df1 * df2 / (df1 * f + df2) ** 2


def kolmogorov(x):
    if x < 1:
        odd = [(2 * k - 1) * mpmath.pi / x for k in range(1, 30)]
        lower = mpmath.sqrt(2 * mpmath.pi) / x * mpmath.fsum(mpmath.exp(-u * u / 8) for u in odd)
        slope = mpmath.sqrt(2 * mpmath.pi) / x ** 2 * mpmath.fsum((u * u / 4 - 1) * mpmath.exp(-u * u / 8) for u in odd)
        return lower, 1 - lower, slope
    upper = 2 * mpmath.fsum((-1) ** (k - 1) * mpmath.exp(-2 * (k * x) ** 2) for k in range(1, 30))
    slope = 8 * x * mpmath.fsum((-1) ** (k - 1) * k * k * mpmath.exp(-2 * (k * x) ** 2) for k in range(1, 30))
    return 1 - upper, upper, slope


def solve(distribution, start, target, which):
    """The x whose tail number which (0 lower, 1 upper) is the target."""
    u = mpmath.log(start)
    for _ in range(60):
        values = distribution(mpmath.exp(u))
        sign = 1 if which == 0 else -1
        step = sign * mpmath.log(target / values[which]) * values[which] / (values[2] * mpmath.exp(u))
        u += step
        if abs(step) < mpf(10) ** -40:
            return mpmath.exp(u)
    raise ArithmeticError


# ---------------------------------------------------------------- the table

def shown(x):
    return mpmath.nstr(x, 20, min_fixed=0, max_fixed=0)


def main():
    target = os.path.join(os.path.dirname(os.path.abspath(__file__)), "exact_distributions.csv")
    with open(target, "w", newline="") as file:
        file.write("# By mpmath with 60 digits; made by exact_distributions.py\n")
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow(["function", "arg1", "arg2", "arg3", "value"])

        def row(name, args, value):
            if SMALLEST < abs(value) < 1 / SMALLEST:
                rows.writerow([name, *map(repr, args), *[""] * (3 - len(args)), shown(value)])

        def three(prefix, distribution, x, parameters):
            """The tails and the density at x, and the points where a double next to either tail is reached."""
            if not 0.0 < x < 1e300:
                return
            exact = [mpf(p) for p in parameters]
            values = distribution(mpf(x), *exact)
            row(prefix + "Cdf", [x, *parameters], values[0])
            row(prefix + "UpperTail", [x, *parameters], values[1])
            row(prefix + "Density", [x, *parameters], values[2])
            for which, name in ((0, "Quantile"), (1, "UpperQuantile")):
                p = float(values[which])
                if 1e-305 < p <= 0.5:
                    row(prefix + name, [p, *parameters], solve(lambda y: distribution(y, *exact), x, mpf(p), which))

        for z in (-38.0, -30.5, -5.5, -1.0, -1e-9, 0.0, 1e-300, 0.3, 1.96, 3.7, 8.25, 20.0, 37.6):
            lower, upper, density = normal(mpf(z))
            row("normalCdf", [z], lower)
            row("normalUpperTail", [z], upper)
            row("normalDensity", [z], density)
            p = float(upper)
            if 1e-305 < p < 0.5:
                row("normalUpperQuantile", [p], mpmath.findroot(lambda y: mpmath.log(normal(y)[1] / mpf(p)), mpf(z)))

        degrees = (0.01, 0.5, 1.0, 1.5, 2.0, 3.0, 4.7, 9.0, 28.0, 30.25, 100.0, 999.5, 12345.0, 1e6, 3e8)
        for df in degrees:
            # From the middle out to where little is left; heavy tails go on for ever.
            for t in (1e-9, 0.02, 0.7, 1.0, 2.5, 6.0, 15.0, 36.0, 1e3, 1e10, 1e40, 1e100):
                inside, outside, density = absolute_t(mpf(t), mpf(df))
                if outside < SMALLEST:
                    continue
                row("tTwoSided", [t, df], outside)
                row("tUpperTail", [t, df], outside / 2)
                row("tUpperTail", [-t, df], inside / 2 + mpf(1) / 2)
                row("tCdf", [-t, df], outside / 2)
                row("tDensity", [t, df], density / 2)
                p = float(outside)
                if 1e-305 < p < 1:
                    start = absolute_t_point(p, t, df)
                    row("tTwoSidedQuantile", [p, df], start)
                    if p < 0.5:
                        row("tQuantile", [p / 2, df], -start)
            row("tDensity", [0.0, df], mpmath.gamma((mpf(df) + 1) / 2) / mpmath.gamma(mpf(df) / 2) / mpmath.sqrt(mpf(df) * mpmath.pi)
                if df < 1e5 else mpmath.exp(mpmath.loggamma((mpf(df) + 1) / 2) - mpmath.loggamma(mpf(df) / 2)) / mpmath.sqrt(df * mpmath.pi))

        for df in (*degrees, 5e7):
            spread = (2.0 * df) ** 0.5
            points = [1e-300, 1e-20, 1e-3, 0.1, 1.0, 3.84, 25.0, 200.0, 700.0, 1380.0]
            if df > 1.0:
                points = [df * f for f in (1e-30, 0.01, 0.3, 0.7)] + [df + s * spread for s in (-30.0, -8.0, -2.0, -0.5, 0.0, 1.0, 3.0, 9.0, 36.0)]
                points += [df * 3, df + 1300.0] if df < 1e5 else []
            for x in points:
                if x > 0.0:
                    three("chiSquare", chi_square, x, [df])

        pairs = [(1.0, 1.0), (1.0, 2.0), (1.0, 28.0), (1.0, 1e6), (2.0, 3.0), (3.0, 17.5), (0.02, 0.3), (0.5, 40.0), (7.25, 1.5), (9.0, 9.0),
                 (28.0, 1.0), (4.0, 1e8), (30.0, 200.0), (123.4, 56.7), (1e3, 1e3), (2500.0, 5.0), (4.0, 2e6), (6.0, 1e7), (1e5, 4e5), (3e6, 20.0), (2e7, 3e7), (4e9, 5e9)]
        for df1, df2 in pairs:
            spread = (2.0 / df1 + 2.0 / df2) ** 0.5
            points = [1e-250, 1e-60, 1e-10, 1e-3, 0.1, 0.9, 1.0, 1.3, 4.2, 30.0, 1e3, 1e8, 1e50, 1e200]
            points += [1.0 + s * spread for s in (-9.0, -3.0, 0.7, 2.0, 5.0, 20.0)]
            for f in points:
                if f > 0.0:
                    three("f", fisher, f, [df1, df2])

        for x in (0.0425, 0.1, 0.3, 0.5, 0.75, 0.99, 1.0, 1.01, 1.36, 2.0, 5.0, 12.0, 18.5):
            lower, upper, _ = kolmogorov(mpf(x))
            row("kolmogorovCdf", [x], lower)
            row("kolmogorovUpperTail", [x], upper)
            for which, name in ((0, "Quantile"), (1, "UpperQuantile")):
                p = float((lower, upper)[which])
                if 1e-305 < p <= 0.5:
                    row("kolmogorov" + name, [p], solve(kolmogorov, x, mpf(p), which))


def absolute_t_point(p, t, df):
    return solve(lambda y: absolute_t(y, mpf(df)), t, mpf(p), 1)


if __name__ == "__main__":
    main()
