"""The table, and the manual's page that shows it."""
import datetime
import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
from dataclasses import dataclass

PAGE = pathlib.Path(__file__).parent.parent / "docs" / "benchmarks.md"
RUNS = pathlib.Path(__file__).parent / "runs.json"  # the ratios of the runs that the page shows
MOST_RUNS = 5
APART = 600  # seconds at least from the begin of a run to that of the next that counts beside it
LIBRARY = "wq_stat"
LIMIT = "limit"  # what the work takes at least: operations that wait for each other, or a virtual call into a library

# Column of the table and full name of each contender.
CONTENDERS = {
    "wq_stat": ("wq_stat", "the library"),
    "plain": ("plain", "plain C++"),
    "limit": ("limit", "the limit"),
    "std": ("C++ std", "C++ standard library"),
    "boost": ("Boost", "Boost"),
    "boost-32": ("Boost", "Boost, 32 bits"),
    "boost-vqsort": ("Boost", "Boost + vqsort"),
    "boost-spreadsort": ("Boost", "Boost + spreadsort"),
    "gsl": ("GSL", "GSL"),
    "r": ("R", "R"),
    "r-sort": ("R", "R, radix sort"),
    "r-lm.fit": ("R", "R, .lm.fit"),
    "r-match": ("R", "R, match"),
    "data.table": ("R", "data.table"),
    "numpy": ("Python", "NumPy"),
    "numpy-sort": ("Python", "NumPy, sort"),
    "numpy-pcg64": ("Python", "NumPy, PCG64"),
    "scipy": ("Python", "SciPy"),
    "pandas": ("Python", "pandas"),
}
COLUMNS = ["wq_stat", "limit", "plain", "C++ std", "Boost", "GSL", "R", "Python"]


@dataclass
class Result:
    row: object
    times: dict  # processor seconds of a call in each round, by contender
    distances: dict  # how far the answers lie from the library's, by contender

    def median(self, name):
        return statistics.median(self.times[name]) / self.row.per

    def spread(self, name):
        """@return the middle half of the rounds, as a share of the median."""
        values = sorted(self.times[name])
        if len(values) < 3:
            return None
        low, _, high = statistics.quantiles(values, n=4, method="inclusive")
        return (high - low) / statistics.median(values)

    def best_peer(self):
        return min(filter(self.row.is_peer, self.times), key=self.median)

    def ratio(self):
        return self.median(LIBRARY) / self.median(self.best_peer())

    def cell(self, column):
        """@return the time of the column's fastest contender; in brackets when it does other work."""
        there = [name for name in self.times if CONTENDERS[name][0] == column]
        if not there:
            return ""
        fastest = min(there, key=lambda name: (name in self.row.beside, self.median(name)))
        text = duration(self.median(fastest))
        return f"({text})" if fastest in self.row.beside else text


def duration(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3), ("µs", 1e-6), ("ns", 1e-9)):
        if seconds >= size or unit == "ns":
            value = seconds / size
            return f"{value:.0f} {unit}" if value >= 100 else f"{value:.3g} {unit}"


def percent(share):
    return "?" if share is None else f"{100 * share:.0f} %"


def markdown(head, lines):
    """A table with its columns in line, readable in a terminal too."""
    widths = [max(len(line[i]) for line in [head, *lines]) for i in range(len(head))]
    row = lambda cells: "| " + " | ".join(cell.ljust(width) for cell, width in zip(cells, widths)) + " |"
    return "\n".join([row(head), "|" + "|".join("-" * (width + 2) for width in widths) + "|", *map(row, lines)])


class Runs:
    """The ratios of the last runs on one processor, by row: what a run is compared with."""

    def __init__(self, kept):
        self.processor = kept["processor"]
        self.runs = kept["runs"]  # each with its begin, in seconds since 1970, and its ratios

    @staticmethod
    def committed():
        return Runs(json.loads(RUNS.read_text()) if RUNS.exists() else {"processor": "", "runs": []})

    def add(self, begin, results):
        """A run on another processor begins anew; one that began soon after the last takes its place."""
        if self.processor != processor():
            self.processor, self.runs = processor(), []
        if self.runs and begin - self.runs[-1]["begin"] < APART:
            self.runs.pop()
        self.runs = [*self.runs, {"begin": round(begin), "ratios": {result.row.id: round(result.ratio(), 3) for result in results}}][-MOST_RUNS:]

    def save(self):
        RUNS.write_text(json.dumps({"processor": self.processor, "runs": self.runs}, indent=1) + "\n")

    def ratios(self, row):
        return sorted(run["ratios"][row.id] for run in self.runs if row.id in run["ratios"])


def runs_table(results, runs):
    """Of each row the ratios of all runs; it is ahead where the greatest of them is below 1."""
    lines = []
    for result in results:
        ratios = runs.ratios(result.row)
        limit = f"{result.median(LIBRARY) / result.median(LIMIT):.2f}" if LIMIT in result.times else ""
        lines.append([result.row.title, str(len(ratios)), f"{ratios[0]:.2f}", f"{statistics.median(ratios):.2f}", f"{ratios[-1]:.2f}",
                      "yes" if ratios[-1] < 1 else "no", limit])
    return markdown(["work", "runs", "least", "median", "greatest", "ahead", "to the limit"], lines)


def compared(results, runs):
    """@return a table of the ratios beside those committed, and whether one is a quarter above the greatest of them."""
    worse = False
    lines = []
    for result in results:
        ratios = runs.ratios(result.row)
        ratio = result.ratio()
        verdict = "new" if not ratios else "slower" if ratio > 1.25 * ratios[-1] else "faster" if ratio < ratios[0] / 1.25 else ""
        worse = worse or verdict == "slower"
        known = f"{ratios[0]:.2f} ... {ratios[-1]:.2f}" if ratios else ""
        lines.append([result.row.title, f"{ratio:.2f}", known, verdict])
    return markdown(["work", "ratio", "committed", ""], lines), worse


def table(results):
    columns = [column for column in COLUMNS if any(result.cell(column) for result in results)]
    head = ["work", *columns, "best peer", "ratio", "spread"]
    lines = []
    for result in results:
        peer = result.best_peer()
        lines.append([result.row.title, *map(result.cell, columns), CONTENDERS[peer][1], f"{result.ratio():.2f}",
                      f"{percent(result.spread(LIBRARY))}, {percent(result.spread(peer))}"])
    return markdown(head, lines)


def details(results):
    """Every contender of every row: time, spread, and how far its answers lie from the library's."""
    lines = []
    for result in results:
        for name in sorted(result.times, key=result.median):
            lines.append([result.row.title, CONTENDERS[name][1] + (f" ({result.row.beside[name]})" if name in result.row.beside else ""),
                          duration(result.median(name)), percent(result.spread(name)), str(len(result.times[name])),
                          "" if name == LIBRARY else result.distances[name]])
    return markdown(["work", "contender", "median", "spread", "rounds", "farthest answer"], lines)


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def processor():
    """@return its name, with the widest of the vectors that the sorts choose among: of one name there are several."""
    facts = dict(re.findall(r"(?m)^(model name|flags)\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text()))
    flags = facts.get("flags", "").split()
    vectors = next((f" with {name}" for flag, name in [("avx512f", "AVX-512"), ("avx2", "AVX2")] if flag in flags), "")
    return facts.get("model name", platform.processor()).strip() + vectors


def versions():
    packages = ["libboost-dev", "libgsl-dev", "libhwy-dev", "r-base-core", "r-cran-data.table", "python3-numpy", "python3-scipy",
                "python3-pandas", "libbenchmark-dev"]
    text = output_of("dpkg-query", "-W", "-f", "${Package} ${Version}, ", *packages).rstrip(", ")
    return re.sub(r"[+-]\S*?(?=,|$)", "", text)


def replace(marker, text):
    """Puts the text between the page's comments `<!-- marker -->` and `<!-- end of marker -->`."""
    begin, end = f"<!-- {marker} -->", f"<!-- end of {marker} -->"
    page = PAGE.read_text()
    before, rest = page.split(begin)
    after = rest.split(end)[1]
    PAGE.write_text(f"{before}{begin}\n{text}\n{end}{after}")


def power(n):
    return "10^" + str(len(str(n)) - 1)


def machine():
    return f"{datetime.date.today():%d %B %Y}; {processor()}, {os.cpu_count()} cores; {output_of('c++', '--version').splitlines()[0]}, -O3"


def process_conditions(rounds, rows, pairs):
    text = output_of("dpkg-query", "-W", "-f", "${Package} ${Version}, ", "r-base-core", "r-cran-data.table", "datamash", "miller")
    return (f"{machine()}; a table of {rows} rows, {pairs} pairs in {pairs // 2} groups; medians of {rounds} runs, in random order. "
            f"Peers: {text.rstrip(', ')}.")


def growth_conditions(rounds):
    return f"{machine()}; medians of {rounds} processes, each with one to a thousand analyses."


def conditions(rounds):
    return (f"{machine()}; {rounds} rounds, fewer (see below) for contenders that take more than four times as long as the best. "
            f"Peers: {versions()}.")


def write_results(results, rounds, begin):
    runs = Runs.committed()
    runs.add(begin, results)
    runs.save()
    replace("runs", runs_table(results, runs))
    replace("conditions", conditions(rounds))
    replace("table", table(results))
    replace("details", details(results))
