"""Paired samples, the four regressions and the correlation, once more and independently: analysis, report, listing, R export.

Step by step in IEEE doubles, sums in order. A Python float is the same double that C++ computes with; counts and indices are taken
modulo 2^64, because n - 1, n - 2 and the ends of ranges wrap.
"""

import math

from wq_model import distributions as dist
from wq_model import text
from wq_model.basic_stat import BasicStatistics, Record
from wq_model.distributions import SIZE, divide, exp, log, sqrt

INFINITE_DF = 4294967295


class BasicXyStatistics(BasicStatistics):
    """Of the records x and y only what the analysis fills is of interest; the number of pairs stands in x alone."""

    def __init__(self, pairs=()):
        self.pairs = []
        super().__init__()
        self.x, self.y = Record(), Record()
        self.sumProducts = self.covariance = 0.0
        self.columns = ["X", "Y"]
        for x, y in pairs:
            self.add(x, y)

    def add(self, x, y):
        self.pairs.append((float(x), float(y)))
        self.size = len(self.pairs)
        self.end = len(self.pairs) - 1

    def stored(self, start, end):
        return range(start, min(end + 1, len(self.pairs)))

    def range(self):
        return [self.pairs[i] for i in self.stored(self.start, self.end)]

    def geometric_mean(self, start, end):
        if end >= self.size:
            end = (self.size - 1) % SIZE
        total, count = 0.0, 0
        for i in self.stored(start, end):
            v = self.pairs[i][1]
            if math.isnan(v):
                continue
            if v > 0.0:
                total += log(v)
            if v < 0.0:
                self.negative = True
                return 0.0
            count += 1
        return exp(divide(1.0, count) * total)

    def reset(self):
        self.x.reset()
        self.y.reset()
        self.sumProducts = 0.0

    def passes(self, kept, of_x, of_y):
        """Both passes over the range. The first one counts what is kept, extremes of the raw values; the second one takes every pair."""
        x, y = self.x, self.y
        for a, b in self.range():
            if not kept(a, b):
                continue
            x.n += 1
            for record, value in ((x, a), (y, b)):
                if value < record.min:
                    record.min = value
                if record.max < value:
                    record.max = value
            x.sum += of_x(a)
            y.sum += of_y(b)
        n = float(x.n)
        x.mean = divide(x.sum, n)
        y.mean = divide(y.sum, n)
        for a, b in self.range():
            dx = of_x(a) - x.mean
            dy = of_y(b) - y.mean
            x.sumOfSquares += dx * dx
            y.sumOfSquares += dy * dy
            self.sumProducts += dx * dy
        for record in (x, y):
            record.variance = divide(record.sumOfSquares, n)
            record.sampleVariance = divide(record.sumOfSquares, n - 1.0)

    def analyse_pairs(self):
        self.reset()
        self.set_range()
        if not self.pairs or (self.end - self.start) % SIZE < 1:
            return False
        self.passes(lambda a, b: True, lambda a: a, lambda b: b)
        self.covariance = divide(self.sumProducts, float(self.x.n) - 1.0)
        return True

    def analyse(self):
        return self.analyse_pairs()

    # ------------------------------------------------------------ output

    def report(self):
        g = text.plain
        out = "BASIC XY STATISTICS\n" + text.double_line(70) + "\n" + self.comment + "\n"
        out += "Data pairs         : " + str(self.x.n) + "\n"
        for name, record in (("X", self.x), ("Y", self.y)):
            out += "sum of " + name + "           : " + g(record.sum) + "\n"
            out += "mean of " + name + "          : " + g(record.mean) + "\n"
            out += "variance of " + name + "      : " + g(record.variance) + "\n"
            out += "sample var of " + name + "    : " + g(record.sampleVariance) + "\n"
            out += "sample stdev of " + name + "  : " + g(self.standard_deviation(record.sampleVariance)) + "\n"
            out += "standard error of " + name + ": " + g(self.standard_error(record.sampleVariance, self.x.n)) + "\n"
            out += "sum of squares of " + name + ": " + g(record.sumOfSquares) + "\n"
            out += "\n"
        out += "sum of products XY : " + g(self.sumProducts) + "\n"
        out += "covariance XY      : " + g(self.covariance) + "\n"
        return out + "\n\n"

    def listing(self, start, end):
        end = min(end, self.size)
        out = self.columns[0] + " " + self.columns[1] + "\n"
        for i in self.stored(start, end):
            out += text.plain(self.pairs[i][0]) + " " + text.plain(self.pairs[i][1]) + "\n"
        return out + "\n"

    def export(self, comment):
        titles = (self.columns[0] + "|" + self.columns[1]).split("|")
        out = text.comment_lines(comment) + "\t".join(text.text_cell(title) for title in titles) + "\n"
        for x, y in self.range():
            out += text.r_number(x, 6) + "\t" + text.r_number(y, 6) + "\n"
        return out


# ---------------------------------------------------------------- regressions

def raw(value):
    return value


class Regression(BasicXyStatistics):
    """The straight line through what analyse_data_pair prepared."""

    def __init__(self, pairs=()):
        super().__init__(pairs)
        self.meanX = self.meanY = 0.0
        self.reset_regression()

    def reset_regression(self):
        self.a = self.b = self.explained = self.unexplained = self.residualVariance = 0.0
        self.seB = self.tB = self.pB = self.seY = 0.0
        self.limitsB = self.limitsY = (0.0, 0.0)
        self.n = 0

    def reset(self):
        super().reset()
        self.reset_regression()

    def analyse_data_pair(self):
        return True

    def analyse(self):
        if not self.analyse_data_pair():
            return False
        x, y = self.x, self.y
        self.n = x.n
        df = (x.n - 2) % SIZE
        t = dist.t_PercentPoint(self.significance, df)
        self.b = divide(self.sumProducts, x.sumOfSquares)
        self.a = y.mean - self.b * x.mean
        self.explained = divide(self.sumProducts * self.sumProducts, x.sumOfSquares)
        self.unexplained = y.sumOfSquares - self.explained
        self.residualVariance = divide(self.unexplained, df)
        self.seB = sqrt(divide(self.residualVariance, x.sumOfSquares))
        self.tB = divide(self.b, self.seB)
        self.pB = dist.t_Prob(self.tB, df, False)
        self.limitsB = (self.b - t * self.seB, self.b + t * self.seB)
        self.meanX, self.meanY = x.mean, y.mean
        self.seY = sqrt(divide(self.residualVariance, self.n))
        self.limitsY = (y.mean - t * self.seY, y.mean + t * self.seY)
        return True

    def block(self):
        g = text.plain
        df = (self.n - 2) % SIZE
        lines = [
            "n                        : " + str(self.n),
            "constant a               : " + g(self.a),
            "regression coefficient b : " + g(self.b),
            "explained                : " + g(self.explained),
            "unexplained              : " + g(self.unexplained),
            "standard error of b      : " + g(self.seB),
            "t value for b            : " + g(self.tB),
            "t." + g(self.significance) + "[" + str(df) + "]  :" + g(dist.t_PercentPoint(self.significance, df)),
            "lower limit b            : " + g(self.limitsB[0]),
            "upper limit b            : " + g(self.limitsB[1]),
            "mean X,Y                 : " + g(self.meanX) + ", " + g(self.meanY),
            "standard error of Y at X : " + g(self.seY),
            "upper limit Y            : " + g(self.limitsY[0]),     # the two labels stand against each other's value
            "lower limit Y            : " + g(self.limitsY[1]),
        ]
        return "\n".join(lines) + "\n"

    TITLE = None
    FORMULA = ("", "", "")
    BEFORE_BLOCK = ""

    def report(self):
        if self.TITLE is None:
            return ""
        out = self.TITLE + "\n" + text.double_line(70) + "\n" + self.comment + "\n"
        before_a, before_b, after_b = self.FORMULA
        out += before_a + text.plain(self.a) + before_b + text.plain(self.b) + after_b + "\n"
        return out + self.BEFORE_BLOCK + self.block()


class LinearRegression(Regression):
    TITLE = "LINEAR REGRESSION ANALYSIS"
    FORMULA = ("y = ", " + ", "x")

    def analyse_data_pair(self):
        return self.analyse_pairs()


class Transformed(Regression):
    """A line through logarithms. There is no minimum number of pairs, and covariance keeps its value."""

    BEFORE_BLOCK = "\n"
    KEPT = OF_X = OF_Y = None
    BACK = False

    def analyse_data_pair(self):
        cls = type(self)
        self.reset()
        self.set_range()
        self.passes(cls.KEPT, cls.OF_X, cls.OF_Y)
        return True

    def analyse(self):
        if not super().analyse():
            return False
        if self.BACK:
            self.a = exp(self.a)
        return True


def positive_x(a):
    return not 0.0 >= a           # a NaN is kept


class LogarithmicRegression(Transformed):
    TITLE = "LOGARITHMIC REGRESSION ANALYSIS"
    FORMULA = ("y = ", " + ", "ln(x)")
    KEPT = staticmethod(lambda a, b: positive_x(a))
    OF_X, OF_Y = staticmethod(log), staticmethod(raw)


class ExponentialRegression(Transformed):
    TITLE = "EXPONENTIAL REGRESSION ANALYSIS"
    FORMULA = ("y = ", "e^(", "x)")
    KEPT = staticmethod(lambda a, b: b > 0.0)
    OF_X, OF_Y = staticmethod(raw), staticmethod(log)
    BACK = True


class PowerRegression(Transformed):
    TITLE = "POWER REGRESSION ANALYSIS"
    FORMULA = ("y = ", "x^", "")
    KEPT = staticmethod(lambda a, b: positive_x(a) and b > 0.0)
    OF_X, OF_Y = staticmethod(log), staticmethod(log)
    BACK = True


# ---------------------------------------------------------------- correlation

class Correlation(BasicXyStatistics):
    def __init__(self, pairs=()):
        super().__init__(pairs)
        self.hypothesis = "no correlation (rho=0)"
        self.r = self.t = self.tSignificance = self.F = self.FSignificance = 0.0
        self.limits = (0.0, 0.0)

    def reset(self):
        super().reset()
        self.r = 0.0

    def analyse(self):
        if not self.analyse_pairs():
            return False
        n = self.x.n
        self.r = divide(self.sumProducts, sqrt(self.x.sumOfSquares * self.y.sumOfSquares))
        self.limits = self.confidence_limits(self.r, n)
        self.tSignificance = self.significance_t0(self.r, n)
        self.FSignificance = self.significance_F(self.r, n)
        return True

    def significance_t0(self, r, n):
        df = (n - 2) % SIZE
        self.t = r * sqrt(divide(df, 1.0 - r * r))
        return 1.0 - dist.t_Prob(self.t, df, False)

    def significance_t1(self, r, rho, n):
        if n < 10:
            return 0.0
        self.t = self.t_small_n(r, rho, n) if n <= 50 else self.t_big_n(r, rho, n)
        return dist.t_Prob(self.t, (n - 2) % SIZE, False)

    @staticmethod
    def t_small_n(r, rho, n):
        z = dist.z_TransformSmall(r, n)
        zeta = dist.z_TransformBig(rho)
        corrected = zeta - divide(3.0 * zeta + rho, (4 * n - 4) % SIZE)
        return (z - corrected) * sqrt(float(n - 1))

    @staticmethod
    def t_big_n(r, rho, n):
        return (dist.z_TransformBig(r) - dist.z_TransformBig(rho)) * sqrt(float(n - 3))

    def significance_F(self, r, n):
        df = (n - 2) % SIZE
        self.F = divide(1.0 + abs(r), 1.0 - abs(r))
        return 1.0 - dist.F_Prob(self.F, df, df)

    def confidence_limits(self, r, n):
        if not n > 50:
            return 0.0, 0.0
        c = dist.t_PercentPoint(self.significance, INFINITE_DF)
        z = dist.z_TransformBig(r)
        h = divide(c, sqrt(float(n - 3)))
        return z - h, z + h

    def accept_t(self):
        return self.significance > self.tSignificance

    def accept_F(self):
        return self.FSignificance >= self.significance

    def report(self):
        def f(value):
            return text.fixed(value, 3)

        def verdict(accepted):
            return "accepted" if accepted else "rejected"

        lower, upper = (f(limit) for limit in self.limits) if self.x.n > 50 else ("n/a", "n/a")
        lines = [
            "CORRELATION ANALYSIS",
            text.double_line(70),
            self.comment,
            "H0: " + self.hypothesis,
            "observations (n)           : " + str(self.x.n),
            "correlation coefficient    : " + f(self.r),
            "lower limit                : " + lower,
            "upper limit                : " + upper,
            "significance level         : " + f(self.significance),
            "t value                    : " + f(self.t) + " ( p = " + f(self.tSignificance) + ")",
            "H0                         : " + verdict(self.accept_t()),
            "F value                    : " + f(self.F) + " ( p = " + f(self.FSignificance) + ")",
            "H0                         : " + verdict(self.accept_F()),
            "",
            "",
        ]
        return "\n".join(lines) + "\n"
