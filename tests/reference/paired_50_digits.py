#!/usr/bin/python3
"""Prints the rows of the tables in test_basic_xy_stat, test_regression and test_correlation: figures in 50 digits.

From the definitions, not step by step: moments about the exact mean, the least squares line through x or ln x and y or ln y, the
distributions of t and F as incomplete beta functions. For an odd number of degrees of freedom the library's A(t) is the textbook
one times pi^2 / 4. Decimal figures are taken as the doubles a program reads. Each figure is also compared with
wq_model/paired.py; one that lies further off than its conditioning explains ends the script.
"""

import pathlib

from mpmath import betainc, exp, log, mp, mpf, nstr, pi, sqrt

from wq_model import paired

mp.dps = 50

DATA = pathlib.Path(__file__).resolve().parent.parent.parent / "examples" / "data"
NORRIS = [tuple(float(v) for v in line.split(";"))
          for line in (DATA / "nist_norris.txt").read_text().split("\n") if line and "#" not in line]
ORDINARY = [(1, 2.5), (2, 4), (3, 5.25), (4, 8), (5, 9.5), (6, 13), (7, 16.25), (8, 20), (9, 25.5), (10, 31)]
FALLING = [(0.5, 32), (1, 20), (2, 13), (4, 8), (8, 5.5), (16, 3)]
WIDE = [(1e-5, 7e7), (0.25, 1e4), (3, 0.1), (1e4, 0.3), (7e7, 1e-5)]
OFFSET = [(1000001, 3000003), (1000003, 3000005), (1000002, 3000010)]


def show(name, figures, model, tolerance, probabilities=()):
    """Figures must be relatively close, probabilities, which are one minus something, absolutely: (exact, plain, tolerance)."""
    assert len(figures) == len(model)
    for exact, plain in zip(figures, model):
        if not abs(mpf(plain) - exact) <= tolerance * abs(exact):
            raise SystemExit(f"{name}: {nstr(exact, 18)} in 50 digits, {plain!r} in doubles")
    for exact, plain, allowed in probabilities:
        if not abs(mpf(plain) - exact) <= allowed:
            raise SystemExit(f"{name}: {nstr(exact, 18)} in 50 digits, {plain!r} in doubles")
    print('{"%s", %s},' % (name, ", ".join(nstr(figure, 18) for figure in (*figures, *(row[0] for row in probabilities)))))


def sums(pairs):
    n = len(pairs)
    mx, my = sum(x for x, y in pairs) / n, sum(y for x, y in pairs) / n
    return (n, mx, my, sum((x - mx) ** 2 for x, y in pairs), sum((y - my) ** 2 for x, y in pairs),
            sum((x - mx) * (y - my) for x, y in pairs))


def A(t, df):
    """The probability of a |t| below the observed one, negative for a negative t, as the library has it."""
    inner = 1 - betainc(mpf(df) / 2, mpf(1) / 2, 0, df / (df + t * t), regularized=True)
    return (1 if t > 0 else -1) * inner * (pi ** 2 / 4 if df % 2 else 1)


def moments(name, pairs, tolerance):
    n, mx, my, xx, yy, xy = sums([(mpf(x), mpf(y)) for x, y in pairs])
    model = paired.BasicXyStatistics(pairs)
    model.analyse()
    show(name, (n * mx, mx, xx, xx / n, xx / (n - 1), n * my, my, yy, yy / n, yy / (n - 1), xy, xy / (n - 1)),
         [figure for r in (model.x, model.y) for figure in (r.sum, r.mean, r.sumOfSquares, r.variance, r.sampleVariance)]
         + [model.sumProducts, model.covariance], tolerance)


def fit(name, cls, pairs, tolerance):
    of_x = log if cls in (paired.LogarithmicRegression, paired.PowerRegression) else mpf
    of_y = log if cls in (paired.ExponentialRegression, paired.PowerRegression) else mpf
    n, mx, my, xx, yy, xy = sums([(of_x(mpf(x)), of_y(mpf(y))) for x, y in pairs])
    b = xy / xx
    a = my - b * mx
    explained = xy ** 2 / xx
    unexplained = yy - explained
    residual = unexplained / (n - 2)
    se_b = sqrt(residual / xx)
    t = b / se_b
    model = cls(pairs)
    model.analyse()
    show(cls.__name__ + '", "' + name,
         (exp(a) if of_y is log else a, b, explained, unexplained, residual, se_b, t, mx, my, sqrt(residual / n)),
         (model.a, model.b, model.explained, model.unexplained, model.residualVariance, model.seB, model.tB, model.meanX, model.meanY,
          model.seY), tolerance, [(1 - A(t, n - 2), model.pB, 1e-12)])


def correlation(name, pairs, tolerance):
    n, mx, my, xx, yy, xy = sums([(mpf(x), mpf(y)) for x, y in pairs])
    r = xy / sqrt(xx * yy)
    t = r * sqrt((n - 2) / (1 - r * r))
    F = (1 + abs(r)) / (1 - abs(r))
    half = mpf(n - 2) / 2       # an integer: for halves of odd numbers the library's series is another one
    assert n % 2 == 0
    model = paired.Correlation(pairs)
    model.analyse()
    upper = betainc(half, half, 0, (1 - abs(r)) / 2, regularized=True)
    show(name, (r, t, F), (model.r, model.t, model.F), tolerance,
         [(A(t, n - 2), model.tSignificance, 1e-12), (upper, model.FSignificance, 1e-7 * upper)])     # where its series ends


def given_rho(r, rho, n):
    """z of r against z of rho; up to 50 pairs both with their small-sample corrections."""
    z, zeta = mp.atanh(mpf(r)), mp.atanh(mpf(rho))
    if n <= 50:
        z -= (3 * z + mpf(r)) / (4 * (n - 1))
        zeta -= (3 * zeta + mpf(rho)) / (4 * (n - 1))
        t = (z - zeta) * sqrt(n - 1)
    else:
        t = (z - zeta) * sqrt(n - 3)
    model = paired.Correlation()
    p = model.significance_t1(r, rho, n)
    for exact, plain in ((t, model.t), (1 - A(t, n - 2), p)):
        if not abs(mpf(plain) - exact) <= 1e-12:
            raise SystemExit(f"{r}, {rho}, {n}: {nstr(exact, 18)} in 50 digits, {plain!r} in doubles")
    print("{%s, %s, %d, %s, %s}," % (r, rho, n, nstr(t, 18), nstr(1 - A(t, n - 2), 18)))


def limits(r, n, alpha):
    """Around z of r, with the normal quantile of Abramowitz and Stegun 26.2.22: what t is for infinitely many degrees of freedom."""
    s = sqrt(-2 * log(mpf(alpha) / 2))
    c = s - (mpf("2.30753") + mpf("0.27061") * s) / (1 + s * (mpf("0.99229") + mpf("0.04481") * s))
    z, h = mp.atanh(mpf(r)), c / sqrt(n - 3)
    model = paired.Correlation()
    model.significance = alpha
    for exact, plain in zip((z - h, z + h), model.confidence_limits(r, n)):
        if not abs(mpf(plain) - exact) <= 1e-6 * c:     # exp(w^2 / df) - 1 has half of its digits
            raise SystemExit(f"{r}, {n}, {alpha}: {nstr(exact, 18)} in 50 digits, {plain!r} in doubles")
    print("{%s, %d, %s, %s, %s}," % (r, n, alpha, nstr(z - h, 18), nstr(z + h, 18)))


def main():
    print("moments: x sum, mean, sum of squares, variance, sample variance; the same of y; sum of products, covariance")
    moments("ordinary", ORDINARY, 1e-14)
    moments("falling", FALLING, 1e-14)
    moments("wide", WIDE, 1e-14)
    moments("large offset", OFFSET, 1e-12)
    moments("Norris", NORRIS, 1e-13)
    print("regressions: a, b, explained, unexplained, residual variance, se of b, t, mean X, mean Y, se of Y, p")
    for cls in (paired.LinearRegression, paired.LogarithmicRegression, paired.ExponentialRegression, paired.PowerRegression):
        fit("ordinary", cls, ORDINARY, 1e-12)
        fit("falling", cls, FALLING, 1e-12)
    fit("wide", paired.PowerRegression, WIDE, 1e-12)
    fit("Norris", paired.LinearRegression, NORRIS, 1e-9)
    print("correlation: r, t, F, significance of t, of F")
    correlation("ordinary", ORDINARY, 1e-12)
    correlation("falling", FALLING, 1e-12)
    correlation("strongly negative", [(x, -y) for x, y in ORDINARY], 1e-12)
    correlation("scattered", [(i / 4, 0.125 * i / 4 + (37 * i * i % 101) / 32) for i in range(60)], 1e-12)

    print("a given rho: r, rho, n, t, p")
    for row in ((0.5, 0.25, 10), (0.5, 0.25, 11), (-0.875, 0.5, 50), (-0.875, 0.5, 51), (0.75, 0.5, 50), (0.75, 0.5, 51), (0.5, 0.5, 20),
                (0.125, -0.25, 100), (0.0, 0.0625, 1000)):
        given_rho(*row)
    print("limits: r, n, significance, lower, upper")
    for row in ((0.5, 51, 0.05), (0.5, 51, 0.01), (0.0, 103, 0.05), (-0.9375, 1003, 0.1)):
        limits(*row)


main()
