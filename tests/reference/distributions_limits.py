#!/usr/bin/python3
"""Makes distributions_limits.csv: what kind of result each function gives for all combinations of extreme arguments.

One line per function, one letter per combination: n NaN, + and - the infinities, . a finite number. The first argument changes
slowest; the values are those of test_distributions_limits.cpp, in the same order. Computed by wq_model/distributions.py, whose
helpers give IEEE infinities and NaN where Python would raise. The functions with an iteration are left out: the test says itself
what they must give.

/usr/bin/python3 distributions_limits.py writes distributions_limits.csv beside this file.
"""

import contextlib
import io
import itertools
import math
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from wq_model import distributions as model

COUNTS = [0, 1, 2, 3, 5, 10, 27, 100, 10 ** 4, 2 ** 60, 2 ** 64 - 2, 2 ** 64 - 1]
REALS = [math.nan, math.inf, -math.inf] + [sign * x for x in (0.0, 1e-320, 1e-12, 0.05, 0.5, 0.95, 1.0, 2.0, 50.0, 1e6, 1e300)
                                          for sign in (1.0, -1.0)]
FLAGS = [False, True]

FUNCTIONS = {
    "factorial": [COUNTS], "lnGamma": [REALS],
    "normalDensity": [REALS], "normalProb": [REALS], "normalProbApprox": [REALS], "normalPercentPoint": [REALS],
    "t_Prob": [REALS, COUNTS, FLAGS], "t_PercentPoint": [REALS, COUNTS],
    "chiSquareProb": [REALS, COUNTS], "chiSquarePoint": [REALS, COUNTS], "F_Prob": [REALS, COUNTS, COUNTS],
    "z_TransformBig": [REALS], "z_TransformSmall": [REALS, COUNTS], "z_to_r": [REALS],
    "D_GoodnessOfFit": [REALS, COUNTS], "D_TwoSamples": [REALS, COUNTS, COUNTS], "D_Prob": [REALS], "rayleighsProb": [REALS, COUNTS],
    "degreeToRadian": [REALS], "radianToDegree": [REALS], "computeResultant": [REALS, REALS], "computeAngle": [REALS, REALS],
    "computeCircleArea": [REALS],
}


def kind(x):
    if math.isnan(x):
        return "n"
    if math.isinf(x):
        return "+" if x > 0.0 else "-"
    return "."


def main():
    target = os.path.join(os.path.dirname(os.path.abspath(__file__)), "distributions_limits.csv")
    with open(target, "w") as file:
        file.write("# n NaN, + - infinities, . finite, for all combinations of extreme arguments; made by distributions_limits.py\n")
        file.write("function,kinds\n")
        for name, lists in FUNCTIONS.items():
            with contextlib.redirect_stdout(io.StringIO()):
                kinds = "".join(kind(getattr(model, name)(*arguments)) for arguments in itertools.product(*lists))
            file.write(f"{name},{kinds}\n")


if __name__ == "__main__":
    main()
