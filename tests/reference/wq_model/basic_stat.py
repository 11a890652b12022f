"""One sample of numbers, once more and independently: statistics, t test of the mean, report, listing, R export.

Step by step in IEEE doubles, sums in order. A Python float is the same double that C++ computes with; counts and indices are taken
modulo 2^64, because n - 1 and the ends of ranges wrap.
"""

import math

from wq_model import distributions as dist
from wq_model import text
from wq_model.distributions import NAN, SIZE, ceil, divide, exp, log, odd, sqrt, to_signed, to_unsigned

LARGEST = 1.7976931348623157e308
SMALLEST_NORMAL = 2.2250738585072014e-308


class Record:
    """The result of one sample."""

    def __init__(self):
        self.significance = 0.0
        self.reset()

    def reset(self):
        self.n = 0
        self.min = LARGEST
        self.max = SMALLEST_NORMAL
        self.mean = self.geoMean = self.harmMean = 0.0
        self.median = self.quartile1 = self.quartile3 = 0.0
        self.sum = self.variance = self.sampleVariance = self.stdev = self.sampleStdev = 0.0
        self.stdError = self.cv = self.sumOfSquares = 0.0
        self.lower = self.upper = 0.0


class BasicStatistics:
    def __init__(self, values=()):
        self.result = Record()
        self.data = []
        self.head = self.tail = 0.0
        self.start = self.end = self.size = 0
        self.significance = 0.05
        self.nullHypothesis = 0.0
        self.sorted = False
        self.column = "DATA"
        self.comment = ""
        self.negative = False
        for value in values:
            self.add(value)

    def add(self, x):
        self.data.append(float(x))
        self.size += 1
        self.end = self.size
        self.sorted = False

    def sort(self):
        self.data.sort(key=lambda x: (1, 0.0) if math.isnan(x) else (0, x))
        self.sorted = True

    def stored(self, start, end):
        """The indices start ... end, as far as something is stored there."""
        return range(start, min(end + 1, len(self.data)))

    # ------------------------------------------------------------ single statistics

    @staticmethod
    def standard_error(variance, n):
        return NAN if variance <= 0.0 else sqrt(divide(variance, n))

    @staticmethod
    def standard_deviation(variance):
        return NAN if variance <= 0.0 else sqrt(variance)

    @staticmethod
    def coefficient_of_variation(stdev, mean):
        return divide(stdev, mean) * 1.0 if stdev > 0.0 else 0.0

    def confidence_interval(self, mean, variance, n):
        se = self.standard_error(variance, n)
        t = dist.t_PercentPoint(self.significance, (n - 1) % SIZE)
        return mean - t * se, mean + t * se

    def student_of_means(self, mean, variance, mu0, n):
        return divide(mean - mu0, self.standard_error(variance, n))

    def quantile(self, p, q):
        if not self.sorted:
            self.sort()
        n, s = self.result.n, self.start
        below, above = p * float(n), (float(q) - p) * float(n)
        if q == 0 or not all(-2.0 ** 63 < x < 2.0 ** 63 for x in (float(q), below, above)):
            return NAN

        def quotient(x):  # of the truncated product by q, again truncated
            whole = to_signed(x)
            return abs(whole) // q * (1 if whole >= 0 else -1)

        def at(index):
            index %= SIZE
            return self.data[index] if index < len(self.data) else NAN

        a = quotient(below)
        b = quotient(above)
        if p / float(q) == 0.5 and not odd(n):
            return (at(s + a) + at(s + n - b - 1)) / 2.0
        return at(s + a)

    def geometric_mean(self, first, last):
        if last >= self.size:
            last = (self.size - 1) % SIZE
        total, count = 0.0, 0
        for i in self.stored(first, last):
            x = self.data[i]
            if math.isnan(x):
                continue
            if x > 0.0:
                total += log(x)
            if x < 0.0:
                self.negative = True
                return 0.0
            count += 1
        return exp(total * divide(1.0, count))

    # ------------------------------------------------------------ analysis

    def set_range(self):
        n = float(self.size)
        self.start = to_unsigned(ceil(self.head * n))
        self.end = (self.size - to_unsigned(self.tail * n) - 1) % SIZE

    def clamp(self):
        if self.end >= self.size and self.end > 1:
            self.end = (self.size - 1) % SIZE

    def analyse(self):
        r = self.result
        r.reset()
        if not self.sorted:
            self.sort()
        self.set_range()
        self.clamp()
        if not self.data or (self.end - self.start) % SIZE < 2:
            return False
        for i in self.stored(self.start, self.end):
            x = self.data[i]
            r.n += 1
            if x < r.min:
                r.min = x
            if r.max < x:
                r.max = x
            r.sum += x
        r.mean = divide(r.sum, r.n)

        logs = reciprocals = 0.0
        positive = finite = 0
        for i in self.stored(self.start, self.end):
            x = self.data[i]
            r.sumOfSquares += (x - r.mean) * (x - r.mean)
            if x > 0.0:
                logs += log(x)
                positive += 1
            if x < 0.0:
                self.negative = True
            if math.isfinite(divide(1.0, x)):
                reciprocals += 1.0 / x
                finite += 1
        r.variance = divide(r.sumOfSquares, r.n)
        r.sampleVariance = divide(r.sumOfSquares, (r.n - 1) % SIZE)
        r.stdev = self.standard_deviation(r.variance)
        r.sampleStdev = self.standard_deviation(r.sampleVariance)
        r.cv = self.coefficient_of_variation(r.sampleStdev, r.mean)
        r.stdError = self.standard_error(r.sampleVariance, r.n)
        r.lower, r.upper = self.confidence_interval(r.mean, r.sampleVariance, r.n)
        r.geoMean = exp(logs * divide(1.0, positive))
        r.harmMean = divide(finite, reciprocals)
        r.quartile1 = self.quantile(1.0, 4)
        r.median = self.quantile(1.0, 2)
        r.quartile3 = self.quantile(3.0, 4)
        r.significance = self.significance
        return True

    def student(self):
        r = self.result
        return self.student_of_means(r.mean, r.sampleVariance, self.nullHypothesis, r.n)

    def accept(self):
        return abs(self.student()) < abs(dist.t_PercentPoint(self.significance / 2.0, (self.result.n - 1) % SIZE))

    # ------------------------------------------------------------ output

    def report(self):
        r, g = self.result, text.plain
        df = (r.n - 1) % SIZE
        critical = g(dist.t_PercentPoint(self.significance, df))
        lines = [
            "BASIC STATISTICS",
            text.double_line(70),
            self.comment,
            "sample size     : " + str(r.n),
            "minimum value   : " + g(r.min),
            "maximum value   : " + g(r.max),
            "sum             : " + g(r.sum),
            "arithmetic mean : " + g(r.mean),
            "variance        : " + g(r.variance),
            "sample var      : " + g(r.sampleVariance),
            "sample stdev    : " + g(r.sampleStdev),
            "standard error  : " + g(r.stdError),
            "CV              : " + g(r.cv),
            "",
            g((1.0 - r.significance) * 100.0) + "% confidence interval",
            "Student t       : " + critical,
            "lower limit     : " + g(r.lower),
            "upper limit     : " + g(r.upper),
            "",
            "geometric mean  : " + ("n/a" if self.negative else g(r.geoMean)),
            "harmonic mean   : " + g(r.harmMean),
            "median          : " + g(r.median),
            "25th percentile : " + g(r.quartile1),
            "75th percentile : " + g(r.quartile3),
            text.single_line(70),
            "Hypothesis testing H0: u = " + g(self.nullHypothesis),
            "t statistic     : " + g(self.student()),
            "t" + g(self.significance) + "(2)," + str(df) + "     : " + critical,
            "H0              : " + ("accepted" if self.accept() else "rejected"),
            "",
            "",
        ]
        return "\n".join(lines) + "\n"

    def listing(self, first, last):
        """None for an empty sample: there is a message on standard error instead."""
        if not self.data:
            return None
        if last >= self.size:
            last = (self.size - 1) % SIZE
        rows = "".join(text.fixed(self.data[i], 6) + "\n" for i in self.stored(first, last))
        return self.column + "\n" + rows + text.single_line(20) + "\n"

    def export(self, comment):
        self.clamp()
        rows = "".join(text.r_number(self.data[i], 12) + "\n" for i in self.stored(self.start, self.end))
        return text.comment_lines(comment) + text.text_cell(self.column) + "\n" + rows
