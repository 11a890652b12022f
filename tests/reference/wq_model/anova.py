"""Single classification Anova and linear regression with several y per x, once more and independently.

Each class follows its analysis step by step in IEEE doubles, sums in order, and gives its reports, listings and files as text. A
Python float is the same double that C++ computes with; counts are taken modulo 2^64 where they may wrap.
"""

import re

from wq_model import distributions as dist
from wq_model import text
from wq_model.distributions import SIZE, divide, sqrt

ROW_AMONG = "Among groups       \t"
ROW_WITHIN = "Within groups       \t"
ROW_TOTAL = "Total groups         \t"
HEADING = "Source of variation\tdf\tSS\t\tMS\texp MS\tFs\n"


def fixed(x):
    return text.fixed(x, 3)


class Source:
    """One row of the table."""

    def __init__(self):
        self.df = 0
        self.ss = self.ms = self.fs = self.expected = 0.0


class Group:
    def __init__(self, identifier):
        self.id = float(identifier)
        self.n = 0
        self.mean = self.sum = self.squares = self.ss = self.variance = 0.0
        self.observations = []


class SingleAnova:
    def __init__(self, pairs=()):
        self.significance = 0.05
        self.comment = ""
        self.pairs = [(float(x), float(y)) for x, y in pairs]
        self.groups = []
        self.groups_created = 0
        self.mean_size = self.n0 = self.component = 0.0
        self.total, self.among, self.within = Source(), Source(), Source()
        self.equal = True
        self.reset()

    def reset(self):
        self.group_count = self.N = 0
        self.grand_total = self.correction = self.squares = self.group_totals = self.squared_sizes = self.ratio = 0.0
        self.total.df, self.total.ss = 0, 0.0
        for source in (self.among, self.within):
            source.df, source.ss, source.ms, source.expected = 0, 0.0, 0.0, 0.0
        self.among.fs = 0.0

    def get_group(self, identifier):
        for group in self.groups:
            if group.id == float(identifier):
                return group
        return None

    def create_group(self, identifier):
        self.groups.append(Group(identifier))
        self.groups_created += 1
        return self.groups[-1]

    def create_series(self):
        for x, y in self.pairs:
            group = self.get_group(x) or self.create_group(x)
            group.observations.append(y)
        return len(self.pairs) > 0

    def analyse(self):
        self.reset()
        for group in self.groups:
            group.sum = group.squares = 0.0
            for y in group.observations:
                group.sum += y
                group.squares += y * y
            group.n = len(group.observations)
            group.mean = divide(group.sum, group.n)
            for y in group.observations:                 # what an earlier analysis left there stays in
                group.ss += (y - group.mean) * (y - group.mean)
            group.variance = divide(group.ss, group.n - 1) if group.n > 1 else 0.0
            self.N += group.n
            self.grand_total += group.sum
            self.squares += group.squares
            self.group_totals += divide(group.sum * group.sum, group.n)
            self.squared_sizes += float(group.n) * float(group.n)
        a = self.group_count = len(self.groups)
        N = float(self.N)
        self.correction = divide(self.grand_total * self.grand_total, N)
        total, among, within = self.total, self.among, self.within
        total.df = (self.N - 1) % SIZE
        total.ss = self.squares - self.correction
        among.df = (a - 1) % SIZE
        among.ss = self.group_totals - self.correction
        among.ms = divide(among.ss, among.df)
        within.df = (self.N - a) % SIZE
        within.ss = total.ss - among.ss
        within.ms = divide(within.ss, within.df)
        among.fs = divide(among.ms, within.ms)
        self.mean_size = divide(N, a)
        self.n0 = (N - divide(self.squared_sizes, N)) * divide(1.0, (a - 1) % SIZE)
        within.expected = within.ms
        self.component = divide(among.ms - within.ms, self.n0)
        among.expected = self.component + within.expected
        self.ratio = divide(self.component, within.ms + self.component)
        sizes = {group.n for group in self.groups}
        self.equal = self.n0 == self.mean_size or (a > 1 and len(sizes) == 1)
        return True

    def critical(self):
        return dist.F_PercentPoint(1.0 - self.significance, self.among.df, self.within.df)

    def probability(self):
        return dist.F_Prob(self.among.fs, self.among.df, self.within.df)

    def among_row(self):
        s = self.among
        return ROW_AMONG + f"{s.df}\t{fixed(s.ss)}\t{fixed(s.ms)}\t{fixed(s.expected)}\t{fixed(s.fs)}\n"

    def within_and_total_rows(self):
        s = self.within
        out = ROW_WITHIN + f"{s.df}\t{fixed(s.ss)}\t{fixed(s.ms)}\t{fixed(s.expected)}\n"
        return out + ROW_TOTAL + f"{self.total.df}\t{fixed(self.total.ss)}\t\n"

    def critical_label(self):
        return f"F{fixed(self.significance)}[{self.among.df}, {self.within.df}] = {fixed(self.critical())}"

    def report(self):
        out = "Single Classification Anova\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n"
        out += HEADING
        out += text.single_line(70) + "\n"
        out += self.among_row() + self.within_and_total_rows()
        out += text.single_line(70) + "\n"
        out += self.critical_label() + "\tP[F] =" + fixed(self.probability()) + "\tr_i = " + fixed(self.ratio) + "\n"
        out += "H0 [no added variance component among groups] is "
        out += ("rejected" if self.among.fs > self.critical() else "accepted") + ".\n"
        return out

    def test_results(self):
        out = "Anova samples\n"
        out += text.single_line(70) + "\n"
        for group in self.groups:
            out += "Group                       : " + fixed(group.id) + "\n"
            out += "n                           : " + str(group.n) + "\n"
            out += "Sum                         : " + fixed(group.sum) + "\n"
            out += "Mean                        : " + fixed(group.mean) + "\n"
            out += "Sum of squared observations : " + fixed(group.squares) + "\n"
            out += "Sum of squares              : " + fixed(group.ss) + "\n"
            out += "Variance                    : " + fixed(group.variance) + "\n"
            out += "n"                                      # the letter, and no line end
        out += "\n"
        out += "Total observations          : " + str(self.N) + "\n"
        out += "Grand total                 : " + fixed(self.grand_total) + "\n"
        out += "Sum of squared observations : " + fixed(self.squares) + "\n"
        out += "Sum of squared group totals : " + fixed(self.group_totals) + "\n"
        out += "Correction term             : " + fixed(self.correction) + "\n"
        out += "arithmetic mean sample size : " + fixed(self.mean_size) + "\n"
        out += "mean sample size (n0)       : " + fixed(self.n0) + "\n"
        out += "variance component (r)      : " + fixed(self.component) + "\n"
        return out + "\n"

    def listing(self, first, last):
        out = ""
        for i in range(first, min(last, len(self.groups))):
            group = self.groups[i]
            out += f"Series {i}: id ={text.plain(group.id)}\n"
            out += "".join(text.plain(y) + " " for y in group.observations)
            out += f" [{len(group.observations)}]\n"
        return out + "-\n"

    def export(self, comment):
        out = text.comment_lines(comment)
        for i, group in enumerate(self.groups):
            # the position asks for a separator behind it, the observations do not: those get theirs from the next cell
            out += f"{i}\t" + "\t".join(text.cell(y, 4) for y in group.observations) + "\n"
        return out


class LinearRegressionMultiY(SingleAnova):
    def __init__(self, pairs=()):
        super().__init__(pairs)
        self.fitted = True
        self.reset_rows()

    def reset_rows(self):
        self.sum_x = self.sum_x2 = self.sum_xt = self.correction_x = self.ss_x = self.sp_xy = 0.0
        self.a = self.b = self.explained = self.unexplained = self.se_b = self.t_b = self.p_t = 0.0
        self.lower = self.upper = 0.0
        self.regression, self.deviations = Source(), Source()

    def read_series(self, content):
        """The pairs of a series file, given as its text; well-formed numbers and short lines only."""
        self.pairs = []
        count = 0
        for line in content.split("\n"):
            fields = [field for field in re.split("[:;|]", line) if field]
            if "#" in line or not fields:
                continue
            x = float(fields[0])
            y = float(fields[1]) if len(fields) > 1 else 0.0
            if len(fields) > 2:
                count = int(fields[2])
            self.pairs += [(x, y)] * count

    def analyse(self):
        self.reset_rows()
        super().analyse()
        among, within = self.among, self.within
        c = divide(1.0, among.df) * dist.F_Prob(1.0 - self.significance, 1, within.df)
        self.fitted = not c > among.fs
        if not self.fitted:
            return True
        N = float(self.N)
        for group in self.groups:
            self.sum_x += group.n * group.id
            self.sum_x2 += group.n * (group.id * group.id)
            self.sum_xt += group.id * group.sum
        self.correction_x = divide(self.sum_x * self.sum_x, N)
        self.ss_x = self.sum_x2 - self.correction_x
        self.sp_xy = self.sum_xt - divide(self.sum_x * self.grand_total, N)
        self.explained = divide(self.sp_xy * self.sp_xy, self.ss_x)
        self.unexplained = among.ss - self.explained
        self.b = divide(self.sp_xy, self.ss_x)
        self.a = divide(self.grand_total, N) - divide(self.b * self.sum_x, N)
        regression, deviations = self.regression, self.deviations
        regression.df = 1
        regression.ss = self.explained
        regression.ms = regression.ss / 1.0
        deviations.df = 2                                # whatever the number of groups
        deviations.ss = self.unexplained
        deviations.ms = deviations.ss / 2.0
        deviations.fs = divide(deviations.ms, within.ms)
        regression.fs = divide(regression.ms, deviations.ms)
        confidence = 1.0 - self.significance
        t = dist.t_PercentPoint((confidence + 1.0) * 0.5, 2)
        self.se_b = sqrt(divide(deviations.ms, self.ss_x))
        self.t_b = divide(self.b, self.se_b)
        self.p_t = dist.t_Prob(self.t_b, 2, False)
        self.lower = self.b - t * self.se_b
        self.upper = self.b + t * self.se_b
        return True

    def report(self):
        out = "\nLINEAR REGRESSION MULTI Y ANALYSIS\n"
        out += text.double_line(70) + "\n"
        out += self.comment + "\n\n"
        out += "[Anova table]\n"
        out += HEADING
        out += text.single_line(70) + "\n"
        out += self.among_row()
        if self.fitted:
            for label, s in (("Linear regression  \t", self.regression), ("Deviations         \t", self.deviations)):
                out += label + f"{s.df}\t{fixed(s.ss)}\t{fixed(s.ms)}\t{fixed(s.expected)}\t{fixed(s.fs)}\n"
        out += self.within_and_total_rows()
        out += text.single_line(70) + "\n"
        out += self.critical_label() + "\tP[F] = " + fixed(self.probability()) + "\n\n"
        if not self.fitted:
            return out + "No significant regression\n"
        out += "regression               : y = " + fixed(self.a) + (" + " if self.b >= 0.0 else "") + fixed(self.b) + "x\n\n"
        out += "constant a               : " + fixed(self.a) + "\n"
        out += "regression coefficient b : " + fixed(self.b) + "\n"
        out += "explained                : " + fixed(self.explained) + "\n"
        out += "unexplained              : " + fixed(self.unexplained) + "\n"
        out += "standard error of b      : " + fixed(self.se_b) + "\n"
        out += "t value for b            : " + fixed(self.t_b) + "\n"
        out += "P[t value]               : " + fixed(self.p_t) + "\n"
        out += "lower limit b            : " + fixed(self.lower) + "\n"
        out += "upper limit b            : " + fixed(self.upper) + "\n"
        return out
