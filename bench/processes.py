"""
Whole processes side by side, start-up included: wqstat on tables beside R with data.table, datamash and Miller, and its JSON beside its
report. Started by scripts/bench --processes. Answers are compared before anything is timed; wall time, processor time and peak memory.
"""
import argparse
import csv
import json
import math
import os
import pathlib
import random
import statistics
import subprocess
import sys

import page

LABELS = 1000
QUICK_ROWS, ROWS = 10**6, 10**7
QUICK_PAIRS, PAIRS = 2 * 10**5, 2 * 10**6


def make_table(path, rows):
    """Rows of 20 bytes: a number, one of a thousand labels, a value with three decimals. The first rows have the labels in order."""
    draw = random.Random(20261122)
    with open(path, "w", encoding="ascii") as file:
        file.write("plot,site,value\n")
        for begin in range(0, rows, 10**5):
            lines = []
            for i in range(begin, min(begin + 10**5, rows)):
                label = i if i < LABELS else int(draw.random() * LABELS)
                lines.append(f"{i},s{label:03d},{100 + label / 500 + draw.gauss(0, 10):.3f}\n")
            file.write("".join(lines))


def make_pairs(path, pairs):
    """In the library's own format, two observations to a group, so that a document is as long as it can be."""
    draw = random.Random(20261123)
    with open(path, "w", encoding="ascii") as file:
        for i in range(pairs):
            file.write(f"{i // 2};{draw.gauss(100, 10):.3f}\n")


def input_file(folder, name, make, size):
    path = folder / f"{name}_{size}"
    if not path.exists():
        part = path.with_suffix(".part")
        make(part, size)
        part.rename(path)
    return str(path)


# ---------------------------------------------------------------- the contenders

R_HEAD = "suppressPackageStartupMessages(library(data.table)); "


def r_script(code, path):
    return ["Rscript", "--vanilla", "-e", R_HEAD + code, path]


R_DESCRIBE = """d <- fread(commandArgs(TRUE)[1], select = 'value'); cat(sprintf('%.17g', t.test(d$value)$estimate))"""
R_THREE_MEANS = """v <- fread(commandArgs(TRUE)[1], select = 'value')$value;
cat(sprintf('%.17g', c(mean(v), exp(mean(log(v))), 1 / mean(1 / v))))"""
R_ANOVA = """d <- fread(commandArgs(TRUE)[1], select = c('site', 'value'));
cat(sprintf('%.17g', oneway.test(value ~ site, data = d, var.equal = TRUE)$statistic))"""
R_MEANS = """d <- fread(commandArgs(TRUE)[1], select = c('site', 'value')); fwrite(d[, .(m = mean(value)), by = site], col.names = FALSE)"""


def first_number(text):
    return [float(text.split()[0])]


def numbers(separator):
    return lambda text: [float(word) for word in text.split(separator)]


def of_json(*path):
    def read(text):
        found = json.loads(text)
        for name in path:
            found = found[name]
        return [float(found)]
    return read


def three_means(text):
    result = json.loads(text)["result"]
    return [result["mean"], result["geoMean"], result["harmMean"]]


def means_of_json(text):
    document = json.loads(text)
    return [group["mean"] for _, group in sorted(zip(document["table"]["labels"], document["result"]["groups"]))]


def means_of_rows(text):
    """Lines of a label and its mean, with or without titles."""
    return [float(mean) for _, mean in sorted(row for row in csv.reader(text.splitlines()) if row and row[1] not in ("value_mean", "mean(value)"))]


class Row:
    def __init__(self, title, contenders):
        self.title = title
        self.contenders = contenders  # by name: the command, and what reads the answer out of its output


def all_rows(wqstat, table, pairs):
    describe = [wqstat, "describe", "--column", "value", "--json", table]
    anova = [wqstat, "anova", "--group", "site", "--value", "value", "--json", table]
    report = [wqstat, "anova", "--no-warnings", pairs]
    document = [wqstat, "anova", "--no-warnings", "--json", pairs]
    f_of_report = lambda text: [float(text.split("Among groups")[1].split("\n")[0].split("\t")[-1])]
    return [
        Row("describe a column", {
            "wqstat": (describe, of_json("result", "mean")),
            "R, fread and t.test": (r_script(R_DESCRIBE, table), first_number),
            "datamash": (["sh", "-c", 'exec datamash -t , --header-in --format %.17g mean 3 < "$0"', table], first_number),
            "Miller": (["mlr", "--icsv", "--ojson", "stats1", "-a", "mean", "-f", "value", table],
                       lambda text: [json.loads(text)[0]["value_mean"]]),
        }),
        Row("the three means of a column", {
            "wqstat": (describe, three_means),
            "R, fread and mean": (r_script(R_THREE_MEANS, table), numbers(None)),
            "datamash": (["sh", "-c", 'exec datamash -t , --header-in --format %.17g mean 3 geomean 3 harmmean 3 < "$0"', table], numbers(",")),
        }),
        Row("anova by a column of labels", {
            "wqstat": (anova, of_json("textbook", "fs")),
            "R, fread and oneway.test": (r_script(R_ANOVA, table), first_number),
        }),
        Row("means by a column of labels", {
            "wqstat": (anova, means_of_json),
            "R, fread and data.table": (r_script(R_MEANS, table), means_of_rows),
            "datamash": (["sh", "-c", 'exec datamash -t , --header-in -s --format %.17g -g 2 mean 3 < "$0"', table], means_of_rows),
            "Miller": (["mlr", "--icsv", "--ocsv", "stats1", "-a", "mean", "-f", "value", "-g", "site", table], means_of_rows),
        }),
        Row("anova --json beside the report", {
            "wqstat": (document, lambda text: [float(f"{json.loads(text)['result']['among']['fs']:.3f}")]),
            "wqstat, report": (report, f_of_report),
        }),
    ]


# ---------------------------------------------------------------- measuring

def answers(command, read):
    return read(subprocess.run(command, check=True, capture_output=True, text=True, stdin=subprocess.DEVNULL).stdout)


def check(rows):
    for row in rows:
        expected = answers(*row.contenders["wqstat"])
        for name, contender in row.contenders.items():
            found = answers(*contender)
            if len(found) != len(expected) or not all(math.isclose(a, b, rel_tol=1e-8) for a, b in zip(found, expected)):
                sys.exit(f"The answers do not agree, so nothing was timed. {row.title}: {found[:3]} by {name}, {expected[:3]} by wqstat")
        print(f"answers agree: {row.title}", file=sys.stderr)


# A process counts what its parent held when it was started, so that a small one starts it.
MEASURE = """
import os, sys, time
null = os.open(os.devnull, os.O_RDWR)
begin = time.perf_counter()
child = os.posix_spawnp(sys.argv[1], sys.argv[1:], os.environ, file_actions=[(os.POSIX_SPAWN_DUP2, null, n) for n in range(3)])
_, status, usage = os.wait4(child, 0)
print(time.perf_counter() - begin, usage.ru_utime + usage.ru_stime, 1024 * usage.ru_maxrss)
sys.exit(os.waitstatus_to_exitcode(status))
"""


def measured(command):
    """@return seconds on the wall, seconds of processors, bytes at the peak, of the process and of those it waits for."""
    output = subprocess.run([sys.executable, "-I", "-S", "-c", MEASURE, *command], check=True, capture_output=True, text=True).stdout
    return [float(word) for word in output.split()]


def measure(rows, rounds):
    """@return by row and contender, the medians."""
    results = {}
    for row in rows:
        runs = {name: [] for name in row.contenders}
        for _ in range(rounds):
            for name in random.sample(list(runs), len(runs)):
                runs[name].append(measured(row.contenders[name][0]))
        for name, values in runs.items():
            results[row.title, name] = [statistics.median(figures) for figures in zip(*values)]
        print(f"timed: {row.title}", file=sys.stderr)
    return results


def table_of(rows, results):
    lines = []
    for row in rows:
        own = results[row.title, "wqstat"][0]
        for name in row.contenders:
            wall, processor, memory = results[row.title, name]
            ratio = "" if name == "wqstat" else f"{own / wall:.2f}"
            lines.append([row.title, name, page.duration(wall), page.duration(processor), f"{memory / 1e6:.0f} MB", ratio])
    return page.markdown(["work", "program", "time", "processor time", "memory", "wqstat's time to it"], lines)


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench --processes", description=__doc__)
    parser.add_argument("--quick", action="store_true", help="a tenth of the data, three rounds, and the page stays as it is")
    parser.add_argument("--rounds", type=int, help="how often each program is timed")
    parser.add_argument("--wqstat", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--inputs", required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    folder = pathlib.Path(arguments.inputs)
    size, pairs = (QUICK_ROWS, QUICK_PAIRS) if arguments.quick else (ROWS, PAIRS)
    rounds = arguments.rounds or (3 if arguments.quick else 5)
    rows = all_rows(arguments.wqstat, input_file(folder, "table.csv", make_table, size), input_file(folder, "pairs.txt", make_pairs, pairs))
    check(rows)
    text = table_of(rows, measure(rows, rounds))
    print(text)
    if not arguments.quick:
        page.replace("processes", text)
        page.replace("processes conditions", page.process_conditions(rounds, size, pairs))


if __name__ == "__main__":
    main()
