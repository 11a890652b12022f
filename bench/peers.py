#!/usr/bin/python3
"""NumPy, SciPy and pandas at the benchmarks' rows. Reads commands from standard input, one per line, and answers each with one line:
answers ROW NAME        the figures of one contender of a row
time ROW NAME SECONDS   processor seconds of one call; calls are repeated for about so long
list                    every row and its contenders, "row name name ...", separated by ';'
forget                  drops the inputs held in memory
"""
import gc
import os
import sys
import time

for library in ("OPENBLAS", "MKL", "OMP", "BLIS", "NUMEXPR"):
    os.environ[library + "_NUM_THREADS"] = "1"  # processor time is compared, and threads only add to it

import numpy as np
import pandas as pd
from scipy import special, stats

FOLDER = sys.argv[1]
NAN = float("nan")


class Contender:
    """prepare() makes an input; work(input) is timed. A contender that uses up its input gets a fresh one for each of `calls` calls."""

    def __init__(self, prepare, work, fresh=False, calls=1):
        self.prepare, self.work, self.fresh, self.calls = prepare, work, fresh, calls

    def answers(self):
        return self.work(self.prepare())

    def seconds(self, least):
        spent, calls = 0.0, 0
        prepared = None
        while spent < least or calls == 0:
            inputs = [self.prepare() for _ in range(self.calls)] if self.fresh or prepared is None else prepared
            prepared = inputs
            begin = time.process_time()
            for given in inputs:
                self.work(given)
            spent += time.process_time() - begin
            calls += len(inputs)
            del inputs
            if self.fresh:
                prepared = None
        return spent / calls


inputs = {}


def read(name, n=None):
    if name not in inputs:
        inputs[name] = np.fromfile(f"{FOLDER}/{name}.f64")
    return inputs[name][:n]


# ---------------------------------------------------------------- one sample


def summary(x):
    """x is reordered in place, as far as the quartiles need it."""
    n = len(x)
    places = [n // 4, (n - 1) // 2, n // 2, 3 * n // 4]
    x.partition(places)
    mean = x.mean()
    variance = x.var(ddof=1)
    half = special.stdtrit(n - 1, 0.975) * np.sqrt(variance / n)
    q1, m1, m2, q3 = x[places]
    return [n, mean * n, mean, variance, np.exp(np.log(x).mean()), 1.0 / (1.0 / x).mean(), x.min(), q1, (m1 + m2) / 2, q3, x.max(), half]


def summary_sorted(x):
    n = len(x)
    x.sort()
    mean = x.mean()
    variance = x.var(ddof=1)
    half = special.stdtrit(n - 1, 0.975) * np.sqrt(variance / n)
    return [n, mean * n, mean, variance, np.exp(np.log(x).mean()), 1.0 / (1.0 / x).mean(), x[0], x[n // 4],
            (x[(n - 1) // 2] + x[n // 2]) / 2, x[3 * n // 4], x[-1], half]


# ---------------------------------------------------------------- regression


def line(x, y, mean_x, mean_y, squares_x, squares_y, products):
    n = len(x)
    b = products / squares_x
    standard_error = np.sqrt((squares_y - b * products) / (n - 2) / squares_x)
    t = b / standard_error
    return [n, mean_y - b * mean_x, b, standard_error, t, 2 * special.stdtr(n - 2, -abs(t))]


def by_numpy(xy):
    x, y = xy
    mean_x, mean_y = x.mean(), y.mean()
    dx, dy = x - mean_x, y - mean_y
    return line(x, y, mean_x, mean_y, dx @ dx, dy @ dy, dx @ dy)


def by_scipy(xy):
    r = stats.linregress(*xy)
    return [len(xy[0]), r.intercept, r.slope, r.stderr, r.slope / r.stderr, r.pvalue]


# ---------------------------------------------------------------- grouping


def anova(n, sums, squares):
    N, a = n.sum(), len(n)
    correction = sums.sum() ** 2 / N
    among = (sums * sums / n).sum() - correction
    within = squares - correction - among
    return [a, N, among, within, among / (a - 1) / (within / (N - a))]


def by_pandas(frame):
    groups = frame.groupby("g", sort=False)["y"].agg(["count", "sum"])
    y = frame["y"].to_numpy()
    return anova(groups["count"].to_numpy(), groups["sum"].to_numpy(), y @ y)


def by_unique(gy):
    g, y = gy
    _, place = np.unique(g, return_inverse=True)
    return anova(np.bincount(place), np.bincount(place, weights=y), y @ y)


# ---------------------------------------------------------------- reading


def compared(values, written):
    different = values != written
    return [len(values), int(different.sum()), int((np.abs(values - written) > 4.5e-16 * np.abs(written)).sum())]


def read_csv(path, **options):
    return pd.read_csv(path, header=None, engine="c", **options)


class Reader(Contender):
    """The reading alone is timed; the answers compare what was read with what was written."""

    def __init__(self, work, compare):
        super().__init__(lambda: None, lambda _: work())
        self.compare = compare

    def answers(self):
        return self.compare(self.work(None))


def pair_answers(frame):
    written = read("decimals", 5000000)
    x, y = (compared(frame[i].to_numpy(), written) for i in (0, 1))
    return [x[0], x[1] + y[1], x[2] + y[2]]


# ---------------------------------------------------------------- random numbers


def mersenne():
    """NumPy's generator in the state in which the library's starts."""
    bits = np.random.MT19937()
    bits._legacy_seeding(0)
    return np.random.Generator(bits)


def integers(generator, n):
    return generator.integers(0, 2**32, size=n, dtype=np.uint32)


class Draws(Contender):
    """Draws are compared as the C++ ones are: the first five after 999, then mean, least and largest of a million."""

    def __init__(self, make, draw, same_start):
        super().__init__(make, lambda generator: draw(generator, 1000000))
        self.draw, self.same_start = draw, same_start

    def answers(self):
        generator = self.prepare()
        integers(generator, 999)
        values = self.draw(generator, 1000000).astype(float)
        return (list(values[:5]) if self.same_start else [NAN] * 5) + [values.mean(), values.min(), values.max()]


# ---------------------------------------------------------------- all of them

ROWS = {}


def enter(row, name, contender):
    ROWS.setdefault(row, {})[name] = contender


for kind in ("normal", "uniform", "lognormal", "rounded", "ascending"):
    for n in (1000, 10000, 100000, 1000000, 10000000):
        if kind == "normal" or n in (1000, 100000, 10000000):
            copy = lambda kind=kind, n=n: read(kind, n).copy()
            calls = max(1, 100000 // n)
            enter(f"one-sample-{kind}/{n}", "numpy", Contender(copy, summary, True, calls))
            enter(f"one-sample-{kind}/{n}", "numpy-sort", Contender(copy, summary_sorted, True, calls))

for n in (1000, 10000, 100000, 1000000, 10000000):
    columns = lambda n=n: (read("x", n), read("y", n))
    for row in ("regression", "regression-without-p"):
        enter(f"{row}/{n}", "numpy", Contender(columns, by_numpy))
        enter(f"{row}/{n}", "scipy", Contender(columns, by_scipy))

for groups in (10, 100, 1000, 10000, 100000, 1000000):
    ids = f"groups-{groups}"
    frame = lambda ids=ids: pd.DataFrame({"g": read(ids), "y": read("grouped")})
    enter(f"anova/{groups}", "pandas", Contender(frame, by_pandas))
    enter(f"anova/{groups}", "numpy", Contender(lambda ids=ids: (read(ids), read("grouped")), by_unique))

for row, file, written in (("reading-17-digits/10000000", "numbers-17-digits.txt", "normal"),
                           ("reading-3-decimals/10000000", "numbers-3-decimals.txt", "decimals")):
    path = f"{FOLDER}/{file}"
    check = lambda frame, written=written: compared(frame[0].to_numpy(), read(written))
    enter(row, "pandas", Reader(lambda path=path: read_csv(path, dtype=float), check))
enter("reading-pairs/5000000", "pandas", Reader(lambda: read_csv(f"{FOLDER}/pairs.txt", sep=";", dtype=float), pair_answers))

DISTRIBUTIONS = {
    "chi-square-prob": (2, lambda x, df: special.chdtr(df, x)),
    "F-prob": (3, lambda f, df1, df2: special.fdtr(df1, df2, f)),
    "F-point": (3, lambda p, df1, df2: special.fdtri(df1, df2, p)),
    "t-prob": (2, lambda t, df: special.stdtr(df, -t)),
    "t-point": (2, lambda alpha, df: -special.stdtrit(df, alpha / 2)),
    "chi-square-point": (2, lambda p, df: special.chdtri(df, 1 - p)),
    "normal-point": (1, special.ndtri),
}
for row, (width, function) in DISTRIBUTIONS.items():
    table = lambda row=row, width=width: [np.ascontiguousarray(column) for column in read(row).reshape(-1, width).T]
    enter(row, "scipy", Contender(table, lambda columns, function=function: function(*columns)))

enter("random-integer", "numpy", Draws(mersenne, integers, True))
enter("random-integer", "numpy-pcg64", Draws(np.random.default_rng, integers, False))
enter("random-real", "numpy", Draws(mersenne, lambda g, n: g.random(n), False))
enter("random-real", "numpy-pcg64", Draws(np.random.default_rng, lambda g, n: g.random(n), False))


def main():
    for command in sys.stdin:
        words = command.split()
        if words[0] == "list":
            print(";".join(" ".join([row, *contenders]) for row, contenders in ROWS.items()), flush=True)
        elif words[0] == "forget":
            inputs.clear()
            gc.collect()
            print("forgotten", flush=True)
        elif words[0] == "answers":
            print(" ".join(repr(float(value)) for value in ROWS[words[1]][words[2]].answers()), flush=True)
        elif words[0] == "time":
            print(repr(ROWS[words[1]][words[2]].seconds(float(words[3]))), flush=True)


main()
