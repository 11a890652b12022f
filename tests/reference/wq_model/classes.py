"""Goodness of fit, Kolmogorov-Smirnov, two variances, frequency classes and directions, once more and independently.

Each class follows its analysis step by step in IEEE doubles, sums in order, and gives its reports and files as text. A Python
float is the same double that C++ computes with.
"""

import math

from wq_model import distributions as dist
from wq_model import text
from wq_model.basic_stat import BasicStatistics, Record
from wq_model.distributions import PI, SIZE, cos, divide, log, sin, sqrt, to_signed, to_unsigned


def floor(x):
    return float(math.floor(x)) if math.isfinite(x) else x


def verdict(accepted):
    return "accepted" if accepted else "rejected"


class Paired(BasicStatistics):
    """A sample of pairs, in their order."""

    def __init__(self, pairs=()):
        super().__init__()
        self.pairs = []
        for x, y in pairs:
            self.add(x, y)

    def add(self, x, y):
        self.pairs.append([float(x), float(y)])
        self.size = len(self.pairs)
        self.end = self.size - 1

    def in_range(self):
        """The indices start ... end, as far as a pair is stored there."""
        return range(self.start, min(self.end + 1, len(self.pairs)))


# ---------------------------------------------------------------- observed against expected frequencies

class GoodnessOfFit(Paired):
    def __init__(self, pairs=()):
        super().__init__(pairs)
        self.hypothesis = "observed and expected distributions do not differ"
        self.yates = False
        self.williams = True
        self.X2 = 0.0
        self.G = 0.0
        self.G_adjusted = 0.0

    def analyse(self):
        self.set_range()
        k = self.size
        self.X2 = 0.0
        self.G = 0.0
        total = 0
        yates = self.yates and k == 2
        for i in self.in_range():
            o, e = self.pairs[i]
            total = (total + to_unsigned(o)) % SIZE
            d = o - e
            if yates:
                d = abs(d) - 0.5
            self.X2 = self.X2 + divide(d * d, e)
            self.G = self.G + o * log(divide(o, e))
        self.G = 2.0 * self.G
        self.G_adjusted = self.G
        if self.williams:
            if k == 2:
                q = 1.0 + divide(1.0, 2.0 * float(total))
            else:
                q = 1.0 + divide(float(k) + 1.0, 6.0 * float(total))
            self.G_adjusted = divide(self.G, q)
        return True

    def df(self):
        return (self.size - 1) % SIZE

    def critical(self):
        return dist.chiSquarePoint(1.0 - self.significance, self.df())

    def accept(self):
        c = self.critical()
        if self.X2 >= c or self.G >= c or (self.williams and self.G_adjusted >= c):
            return False
        return True

    def report(self):
        def f(x):
            return text.fixed(x, 3)

        def p(x):
            return f(dist.chiSquareProb(x, self.df()))

        out = "GOODNESS OF FIT STATISTICS\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += "Ho: " + self.hypothesis + "\n"
        out += "[Chi-square]\n"
        out += "X2    : " + f(self.X2) + "  ( p=" + p(self.X2) + ")\n\n"
        out += "[G-test]\n"
        out += "G     : " + f(self.G) + "  ( p=" + p(self.G) + ")\n\n"
        if self.williams:
            out += "G adj : " + f(self.G_adjusted) + "  ( p=" + p(self.G_adjusted) + ")\n\n"
        out += "X2 " + f(self.significance) + "," + str(self.df()) + ": " + f(self.critical()) + "\n"
        out += "Ho    : " + verdict(self.accept()) + "\n"
        return out


# ---------------------------------------------------------------- two samples over the same classes

class KolmogorovSmirnov2(Paired):
    def __init__(self, pairs=()):
        super().__init__(pairs)
        self.hypothesis = "both data samples drawn from same continuous distribution"
        self.columns = ["F1", "F2", "relF1", "relF2", "diff"]
        self.series = []
        self.D = 0.0
        self.n1 = 0
        self.n2 = 0

    def cumulative(self):
        self.n1 = 0
        self.n2 = 0
        c1 = 0.0
        c2 = 0.0
        for i in self.in_range():
            x, y = self.pairs[i]
            c1 = c1 + x
            c2 = c2 + y
            self.series.append((c1, c2))

    def analyse(self):
        self.n1 = to_unsigned(self.series[-1][0]) if self.series else 0
        self.n2 = to_unsigned(self.series[-1][1]) if self.series else 0
        for c1, c2 in self.series:
            d = abs(divide(c1, self.n1) - divide(c2, self.n2))
            if d > self.D:
                self.D = d
        return True

    def critical(self):
        return dist.D_TwoSamples(self.significance, self.n1, self.n2)

    def accept(self):
        return self.critical() >= self.D

    def report(self):
        def f(x):
            return text.fixed(x, 3)

        out = "KOLMOGOROV-SMIRNOV TWO SAMPLE TEST\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += "H0: " + self.hypothesis + "\n"
        out += "n1      : " + str(self.n1) + "\n"
        out += "n2      : " + str(self.n2) + "\n"
        out += "D       : " + f(self.D) + "\n"
        out += "D(" + f(self.significance) + "): " + f(self.critical()) + "\n"
        out += "H0      : " + verdict(self.accept()) + "\n"
        return out

    def frequencies(self):
        widths = (12, 12, 8, 8, 8)

        def row(cells):
            return " ".join(cell.rjust(width) for cell, width in zip(cells, widths)) + "\n"

        out = row((self.columns + [""] * 5)[:5])
        out += text.single_line(70) + "\n"
        for c1, c2 in self.series:
            relative1 = divide(c1, self.n1)
            relative2 = divide(c2, self.n2)
            out += row([text.fixed(x, 3) for x in (c1, c2, relative1, relative2, abs(relative1 - relative2))])
        return out


# ---------------------------------------------------------------- the variances of two samples

class TwoSamples(BasicStatistics):
    """Of the two records n and sampleVariance are used; BasicStatistics.analyse(test) fills the first from the test's own sample."""

    def __init__(self, values=()):
        super().__init__(values)
        self.hypothesis = "the sample variances do not differ"
        self.second = Record()
        self.F = 0.0
        self.F_probability = 0.0
        self.critical_F = 0.0
        self.df1 = 0
        self.df2 = 0

    def analyse(self):
        n1, v1 = self.result.n, self.result.sampleVariance
        n2, v2 = self.second.n, self.second.sampleVariance
        if v1 > v2:
            self.df1 = (n1 - 1) % SIZE
            self.df2 = (n2 - 1) % SIZE
        else:
            self.df1 = (n2 - 1) % SIZE
            self.df2 = (n1 - 1) % SIZE
        self.F = self.ratio(v1, v2)
        self.F_probability = dist.F_Prob(self.F, self.df1, self.df2)
        self.critical_F = dist.F_PercentPoint(1.0 - self.significance / 2.0, self.df1, self.df2)
        return True

    @staticmethod
    def ratio(v1, v2):
        return divide(v1, v2) if v1 > v2 else divide(v2, v1)

    def accept(self):
        return self.critical_F > self.F

    def report(self):
        g = text.plain
        out = "TEST VARIANCES OF TWO SAMPLES\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += "Ho: " + self.hypothesis + "\n"
        out += "sample size 1  : " + str(self.result.n) + "\n"
        out += "sample var 1   : " + g(self.result.sampleVariance) + "\n"
        out += "sample size 2  : " + str(self.second.n) + "\n"
        out += "sample var 2   : " + g(self.second.sampleVariance) + "\n"
        out += "F              : " + g(self.F) + " (p = " + g(self.F_probability) + ")\n"
        out += "Critical value : F " + g(self.significance) + "[" + str(self.df1) + "," + str(self.df2) + "] = "
        out += g(self.critical_F) + "\n"
        out += "H0             : " + verdict(self.accept()) + "\n"
        return out


# ---------------------------------------------------------------- classes of equal width

class Frequency(BasicStatistics):
    def __init__(self, values=()):
        super().__init__(values)
        self.counts = []
        self.rates = []
        self.classes = 0
        self.start_class = 0.0
        self.width = 0.0

    def auto_class_width(self, k):
        if self.size == 0 or not BasicStatistics.analyse(self):
            return False
        self.classes = k if k > 0 else 10
        self.width = divide(self.result.max - self.result.min, self.classes)
        self.start_class = self.result.min
        return True

    def init_frequency(self, k):
        self.counts += [0] * k
        self.rates += [0.0] * k
        self.classes = k
        return True

    def build_table(self):
        for i in range(self.start, min(self.end, len(self.data))):
            c = to_unsigned(floor(divide(self.data[i] - self.start_class, self.width)))
            if c >= self.classes:
                c = (self.classes - 1) % SIZE
            if c < len(self.counts):
                self.counts[c] += 1

    def analyse(self):
        self.set_range()
        m = (self.end - self.start + 1) % SIZE
        BasicStatistics.analyse(self)
        for j in self.rows():
            self.rates[j] = divide(self.counts[j], m)
        return True

    def rows(self):
        return range(min(self.classes, len(self.counts)))

    def lower(self, j):
        return self.start_class + float(j) * self.width

    def report(self):
        out = "FREQUENCY CLASSES\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += "Class [low  - high] Frequency rate\n"
        for j in self.rows():
            out += str(j).rjust(5) + " [" + text.fixed(self.lower(j), 3) + "-" + text.fixed(self.lower(j + 1), 3) + "] "
            out += str(self.counts[j]) + " " + text.fixed(self.rates[j], 4) + "\n"
        return out

    def table_file(self, comment):
        out = text.comment_lines(comment)
        out += "\t".join(["class", "start", "end", "mid", "observed", "rate"]) + "\n"
        for j in self.rows():
            upper = self.lower(j + 1)
            cells = [str(j), text.cell(self.lower(j), 6), text.cell(upper, 6), text.cell(upper - 0.5 * self.width, 6),
                     str(self.counts[j]), text.cell(self.rates[j], 6)]
            out += "\t".join(cells) + "\n"
        return out


# ---------------------------------------------------------------- directions

RADIANS, DEGREES, BIN_NUMBERS = 0, 1, 2
TWO_PI = 6.283185307179586


class Circular(Paired):
    def __init__(self, pairs=(), unit=RADIANS, bins=0, bin0=0.0, bin_name=""):
        super().__init__(pairs)
        self.hypothesis = "Data are uniformely distributed around the circle"
        self.unit = unit
        self.bins = bins
        self.bin0 = bin0
        self.bin_name = bin_name
        self.grouped = False
        self.bin_size = 0.0
        self.n = 0
        self.a = self.r = self.s = self.s_prime = self.R = self.z = self.p = self.used_significance = 0.0
        self.mean_bin = 0
        self.accepted = False

    def convert_to_radians(self):
        self.set_range()
        for i in self.in_range():
            if self.unit == DEGREES:
                self.pairs[i][0] = dist.degreeToRadian(self.pairs[i][0])
            elif self.unit == BIN_NUMBERS:
                self.pairs[i][0] = self.pairs[i][0] * self.bin_size

    def analyse(self):
        self.a = self.r = 0.0
        self.n = 0
        self.set_range()
        self.grouped = any(self.pairs[i][1] > 0.0 for i in self.in_range())
        self.bin_size = divide(TWO_PI, self.bins)
        if self.unit != RADIANS:
            self.convert_to_radians()
        sines = 0.0
        cosines = 0.0
        m = 0
        for i in self.in_range():
            x, y = self.pairs[i]
            if self.grouped:
                theta = x - 0.5 * self.bin_size
                sines += sin(theta) * y
                cosines += cos(theta) * y
                m = (m + to_signed(y)) % SIZE
            else:
                sines += sin(x)
                cosines += cos(x)
                m += 1
        mean_cosine = divide(cosines, m)
        mean_sine = divide(sines, m)
        self.r = dist.computeResultant(mean_cosine, mean_sine)
        self.a = dist.computeAngle(mean_cosine, mean_sine)
        if self.grouped:
            d = self.bin_size
            self.r = self.r * divide(d * PI / TWO_PI, sin(d / 2.0))
        self.s = sqrt(2.0 * (1.0 - self.r))
        self.s_prime = sqrt(-2.0 * log(self.r))
        self.R = float(m) * self.r
        self.z = divide(self.R * self.R, m)
        self.p = dist.rayleighsProb(self.z, m)
        self.used_significance = self.significance
        self.accepted = self.accept()
        self.n = m
        self.mean_bin = (to_unsigned(divide(self.a, self.bin_size)) + to_unsigned(self.bin0)) % SIZE
        return True

    def accept(self):
        return self.p >= self.significance

    def report(self):
        g = text.plain
        out = "RAYLEIGH'S STATISTICS\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += "Ho: " + self.hypothesis + "\n"
        out += "sample size     : " + str(self.n) + "\n"
        out += "Grouped data    : " + ("true" if self.grouped else "false") + "\n"
        out += ("rc" if self.grouped else "r ") + "              : " + g(self.r) + "\n"
        out += "a               : " + g(self.a) + " radians / " + g(dist.radianToDegree(self.a)) + " degrees\n"
        out += "s               : " + g(self.s) + "\n"
        out += "s'              : " + g(self.s_prime) + "\n"
        if self.grouped:
            out += "Number of bins  : " + str(self.bins) + "\n"
            out += "Size of bin     : " + g(self.bin_size) + " radians\n"
            out += "Mean bin#       : " + self.bin_name + " #" + str(self.mean_bin) + "\n"
        out += "R               : " + g(self.R) + "\n"
        out += "z               : " + g(self.z) + "\n"
        out += "p               : " + g(self.p) + "\n"
        out += "signifance level: " + g(self.used_significance) + "\n"
        out += "H0              : " + verdict(self.accepted) + "\n"
        if self.grouped:
            out += "rc: resultant corrected for grouped data \n"
        out += "\n"
        return out
