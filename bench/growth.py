"""Cost of each analysis over the size of its sample and the number of groups, memory at 10^7. Started by scripts/bench --growth."""
import argparse
import pathlib
import statistics
import subprocess
import sys
import tempfile

import page

HERE = pathlib.Path(__file__).parent
PICTURES = HERE.parent / "docs" / "pictures"
SIZES = [10**k for k in range(3, 8)]
GROUPS = [10**k for k in range(1, 7)]
GROUPED_PAIRS = 10**6
ROUNDS = 3

# What an analysis holds at its peak, and why. The figures beside it are measured.
HELD = {
    "BasicStatistics": "the values (8), sorted in place; without AVX2 they are copied meanwhile (16), with it NaN and zeros alone where there is a NaN or -0",
    "Frequency": "the same; the table of classes is small",
    "BasicXyStatistics": "the pairs (16); the passes need nothing more",
    "LinearRegression": "the pairs (16)",
    "LogarithmicRegression": "the pairs (16); logarithms are taken pair by pair and not kept",
    "ExponentialRegression": "the pairs (16); the same",
    "PowerRegression": "the pairs (16); the same",
    "Correlation": "the pairs (16)",
    "SingleAnova": "the pairs (16), each observation once more in its group (8), which listings and exports read, and while the groups are "
                   "made the number of each pair's group (4)",
    "LinearRegressionMultiY": "the same",
    "GoodnessOfFit": "the pairs of observed and expected counts (16)",
    "KolmogorovSmirnov2": "the pairs (16) and the cumulative counts (16), which listings read and a host may add itself",
    "Circular": "the pairs (16); angles are converted in place",
}


def measured(program, *arguments):
    """@return processor seconds, bytes held, bytes at the peak."""
    words = subprocess.run([program, *map(str, arguments)], check=True, capture_output=True, text=True).stdout.split()
    return [float(word) for word in words]


def median_seconds(program, *arguments):
    return statistics.median(measured(program, *arguments)[0] for _ in range(ROUNDS))


def write_columns(path, names, keys, value):
    """A gnuplot data file: a line of titles, then one line per key."""
    lines = ["n " + " ".join(names)] + [" ".join([str(key), *(f"{value(name, key):.6g}" for name in names)]) for key in keys]
    path.write_text("\n".join(lines) + "\n")


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench --growth", description=__doc__)
    parser.add_argument("--program", required=True, help=argparse.SUPPRESS)
    program = parser.parse_args().program
    names = subprocess.run([program, "list"], check=True, capture_output=True, text=True).stdout.split()
    if set(names) != set(HELD):
        sys.exit(f"growth.py does not say what these hold: {sorted(set(names) ^ set(HELD))}")

    seconds, memory = {}, {}
    for name in names:
        for n in SIZES:
            seconds[name, n] = median_seconds(program, name, n)
        memory[name] = measured(program, name, SIZES[-1])[1:]
        print(f"measured: {name}", file=sys.stderr)
    grouping = {groups: median_seconds(program, "SingleAnova", GROUPED_PAIRS, groups) for groups in GROUPS}

    per_value = lambda value: f"{1e9 * value:.3g}"
    growth = page.markdown(["ns per observation", *(page.power(n) for n in SIZES)],
                           [[f"`{name}`", *(per_value(seconds[name, n] / n) for n in SIZES)] for name in names])
    groups = page.markdown(["groups", *(page.power(g) for g in GROUPS)],
                           [["ns per pair", *(per_value(grouping[g] / GROUPED_PAIRS) for g in GROUPS)]])
    held = page.markdown(["analysis", "loaded", "peak", "bytes an observation at the peak, and what they are"],
                         [[f"`{name}`", f"{memory[name][0] / 1e6:.0f} MB", f"{memory[name][1] / 1e6:.0f} MB",
                           f"{memory[name][1] / SIZES[-1]:.0f}: {HELD[name]}"] for name in names])
    print(f"{growth}\n\n{groups}\n\n{held}")

    with tempfile.TemporaryDirectory() as folder:
        data = pathlib.Path(folder)
        write_columns(data / "observations.dat", names, SIZES, lambda name, n: 1e9 * seconds[name, n] / n)
        write_columns(data / "groups.dat", ["SingleAnova"], GROUPS, lambda _, g: 1e9 * grouping[g] / GROUPED_PAIRS)
        settings = f"data='{folder}'; pictures='{PICTURES}'; analyses={len(names)}"
        subprocess.run(["gnuplot", "-e", settings, str(HERE / "growth.gp")], check=True)
    page.replace("growth", growth)
    page.replace("groups", groups)
    page.replace("memory", held)
    page.replace("growth conditions", page.growth_conditions(ROUNDS))


main()
