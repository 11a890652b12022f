"""The rows of the comparison: what is done, and what the contenders must agree on."""
from dataclasses import dataclass, field

from page import LIBRARY, LIMIT, power

PLAIN = "plain"  # straightforward C++ of what the library has to do


@dataclass
class Figure:
    """One of the figures that every contender of a row gives; a peer agrees when |peer - library| <= relative |library| + absolute."""

    name: str
    relative: float = 0.0
    absolute: float = 0.0
    expected: float = None  # what the library itself must give
    drawn: bool = False  # differs by chance: how far tells nothing

    def allowance(self, arguments):
        """@return the relative and the absolute tolerance; None where nothing is promised."""
        return self.relative, self.absolute


@dataclass
class Value(Figure):
    """The value of a distribution function, one of a thousand; the tolerance is what the manual promises for its arguments."""

    tolerance: object = None  # of the arguments: a pair as allowance gives it, or None

    def allowance(self, arguments):
        return self.tolerance(*arguments)


@dataclass
class Row:
    id: str  # as the programs know it
    title: str  # as the table shows it
    figures: list  # of Figure; or one Value that stands for each of the thousand
    per: int = 1  # what one call does so many times
    beside: dict = field(default_factory=dict)  # contenders that do less or other work, and why: shown, but never the best peer
    quick: bool = True  # part of a quick run

    def is_peer(self, contender):
        return contender not in (LIBRARY, PLAIN, LIMIT) and contender not in self.beside


ROUNDING = 1e-10  # sums in another order, other formulas of the same figure

SUMMARY = [Figure("n"), Figure("sum", 1e-12), Figure("mean", 1e-12), Figure("variance", ROUNDING), Figure("geometric mean", ROUNDING),
           Figure("harmonic mean", ROUNDING), Figure("minimum"), Figure("quartile 1"), Figure("median", 1e-15), Figure("quartile 3"),
           Figure("maximum"), Figure("half the interval", 3e-3)]  # the library's t quantile is an approximation
LINE = [Figure("n"), Figure("a", 1e-8), Figure("b", 1e-8), Figure("standard error of b", 1e-8), Figure("t", 1e-8), Figure("p", 0, 1e-9)]
ANOVA = [Figure("groups"), Figure("observations"), Figure("sum of squares among", 1e-6), Figure("sum of squares within", 1e-9),
         Figure("F", 1e-6)]
COPIED = [Figure("values"), Figure("first value"), Figure("last value")]
READ = [Figure("numbers"), Figure("numbers not exactly as written", absolute=float("inf"), expected=0),
        Figure("numbers off by more than the last bit", expected=0)]
WRITTEN = [Figure("rows"), Figure("bytes"), Figure("hash of the bytes")]


def drawn(largest):
    """The first five draws, of contenders that start as the library does; mean, least and largest of a million."""
    return [Figure(f"draw {i}") for i in range(1, 6)] + [
        Figure("mean", absolute=largest * 7 / 12**0.5 / 1000, drawn=True), Figure("least", absolute=largest * 2e-5, drawn=True),
        Figure("largest", absolute=largest * 2e-5, drawn=True)]


def chi_square_prob(x, df):
    return 2e-6, 0.0


def f_prob(f, df1, df2):
    """Half-integer parameters shift the series of the incomplete beta function; the manual says by how much."""
    df, f = (df1, f) if f > 1 else (df2, 1 / f)
    if df % 2 == 0 or df >= 15:
        return 0.0, 2e-7
    if df >= 5:
        return 0.0, 0.005
    if df == 3:
        return 0.0, 0.0015 if f > 2 else 0.1
    return (0.0, 0.005 if f > 5 else 0.021) if f > 4 else None


def f_point(p, df1, df2):
    return (5e-6 if df1 % 2 == 0 else 3.5e-3), 0.0


def t_prob(t, df):
    return 0.0, 2e-13


def t_point(alpha, df):
    return (0.023 if df >= 5 else 0.12), 0.0


def chi_square_point(p, df):
    return (0.007 if df >= 10 else 0.035), 0.0


def normal_point(p):
    return 0.0, 3e-3


THIRTY_TWO_BITS = "draws 32 bits for a real, the library and NumPy 53 and more"
ANOTHER_GENERATOR = "another generator than the Mersenne Twister"


def all_rows():
    rows = []
    for n in (1000, 100000, 10000000):
        rows.append(Row(f"one-sample-normal/{n}", f"one-sample `analyse`, {power(n)} normal values", SUMMARY, quick=n < 10**7))
    for kind, title in (("uniform", "uniform"), ("lognormal", "log-normal"), ("rounded", "rounded"), ("ascending", "sorted")):
        rows.append(Row(f"one-sample-{kind}/10000000", f"... 10^7 {title} values", SUMMARY, quick=False))
    for n in (100000, 10000000):
        title = f"`copyFrom`, {power(n)} values" if n < 10**7 else f"... {power(n)}"
        rows.append(Row(f"copying/{n}", title, COPIED, quick=n < 10**7))
    rows.append(Row("regression/1000", "`LinearRegression::analyse`, 10^3 pairs", LINE))
    for n in (100000, 10000000):
        rows.append(Row(f"regression-without-p/{n}", f"... {power(n)}, without `t_Prob`", LINE, quick=n < 10**7))
    rows.append(Row("regression/10000000", "... 10^7, whole", LINE, quick=False))
    for groups in (10, 10000, 100000):
        title = "Anova of 10^6 pairs, 10 groups" if groups == 10 else f"... {power(groups)} groups"
        rows.append(Row(f"anova/{groups}", title, ANOVA))
    rows.append(Row("reading-17-digits/10000000", "reading 10^7 numbers of 17 digits", READ, quick=False))
    rows.append(Row("reading-3-decimals/10000000", "reading 10^7 numbers with 3 decimals", READ, quick=False))
    rows.append(Row("reading-pairs/5000000", "reading 5·10^6 pairs", READ, quick=False))
    rows.append(Row("exporting/10000000", "exporting 10^7 values, 12 decimals", WRITTEN, quick=False,
                    beside={"data.table": "15 significant digits"}))
    for id, title, tolerance in (
            ("chi-square-prob", "`chiSquareProb`, df 1 ... 30", chi_square_prob),
            ("F-prob", "`F_Prob`, df 1 ... 30", f_prob),
            ("F-point", "`F_PercentPoint`, df 2 ... 30", f_point),
            ("t-prob", "`t_Prob`, df 10", t_prob),
            ("t-point", "`t_PercentPoint`, df 3 ... 100", t_point),
            ("chi-square-point", "`chiSquarePoint`, df 1 ... 30", chi_square_point),
            ("normal-point", "`normalPercentPoint`", normal_point)):
        rows.append(Row(id, title, [Value("value", tolerance=tolerance)], per=1000))
    rows.append(Row("random-integer", "`Random.getInteger()`", drawn(2**32), per=10**6, beside={"numpy-pcg64": ANOTHER_GENERATOR}))
    rows.append(Row("random-real", "`Random.getReal()`", drawn(1), per=10**6, beside={
        "numpy-pcg64": ANOTHER_GENERATOR, "boost-32": THIRTY_TWO_BITS, "gsl": THIRTY_TWO_BITS, "r": THIRTY_TWO_BITS}))
    return rows
