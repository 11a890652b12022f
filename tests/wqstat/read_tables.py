#!/usr/bin/env python3
"""Tables as other programs write them. Usage: read_tables.py WQSTAT [CLASS...]

Spellings: one table in forty spellings gives one result.
AgainstCsvModule: labels and numbers are those that Python's csv module reads, on tables that it wrote.
RealData: the sets of the folder WQ_REFERENCE_DATA, rewritten as CSV with labels, give the figures of its expected.csv.
"""
import codecs
import csv
import gzip
import io
import itertools
import json
import math
import os
import random
import subprocess
import sys
import tempfile
import unittest

WQSTAT = ""
DATA = ""


def run(arguments, status=0):
    """What wqstat prints on standard output."""
    ended = subprocess.run([WQSTAT, *arguments], capture_output=True, check=False)
    if ended.returncode != status:
        raise AssertionError(f"{arguments}: status {ended.returncode}\n{ended.stderr.decode()}")
    return ended.stdout.decode("utf-8", "surrogateescape")


def text_of(rows, separator, quoting=csv.QUOTE_MINIMAL, line_end="\n"):
    text = io.StringIO()
    csv.writer(text, delimiter=separator, quoting=quoting, lineterminator=line_end).writerows(rows)
    return text.getvalue()


class InFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = os.path.join(folder.name, "data.csv")

    def write(self, content):
        if isinstance(content, str):
            content = content.encode("utf-8", "surrogateescape")
        with open(self.path, "wb") as file:
            file.write(content)
        return self.path


class Spellings(InFolder):
    rows = [
        ("plant", "treatment", "height cm"),
        (1, "ctrl", 4.17), (2, 'twice "daily"', 5.58), (3, "ctrl", 5.125), (4, "low; slow", 6.0), (5, "a, b or c", 4.5),
        (6, 'twice "daily"', -5.5), (7, "two\nlines", 1e-3), (8, "grün", 4.75), (9, "a|b", 2.5), (10, "", 3.25), (11, "ctrl", None),
        (12, "two\nlines", 0.5), (13, "grün", 7.25),
    ]
    encodings = {"plain": ("utf-8", b""), "mark": ("utf-8", codecs.BOM_UTF8), "low": ("utf-16-le", codecs.BOM_UTF16_LE),
                 "high": ("utf-16-be", codecs.BOM_UTF16_BE)}

    def spelled(self, separator, comma, header, quoting, line_end, encoding, packed):
        def cell(value):
            if value is None or (value == "" and separator == " "):  # a run of blanks holds no empty field
                return "NA"
            return format(value, ".6f").replace(".", "," if comma else ".") if isinstance(value, float) else value
        rows = [[cell(value) for value in row] for row in self.rows]
        text = text_of(rows if header else rows[1:], separator, quoting, line_end)
        codec, mark = self.encodings[encoding]
        content = mark + text.encode(codec)
        return gzip.compress(content) if packed else content

    def test_forty_spellings_give_one_result(self):
        choices = itertools.cycle(itertools.product([csv.QUOTE_MINIMAL, csv.QUOTE_ALL, csv.QUOTE_NONNUMERIC], ["\n", "\r\n"], self.encodings,
                                                    [False, True]))
        for _ in range(7):
            next(choices)
        results = {}
        for separator, comma, header, again in itertools.product(",;\t| ", [False, True], [True, False], [0, 1]):
            spelling = (separator, comma, header, *next(choices))
            for _ in range(6):  # neighbours in the cycle differ in little
                next(choices)
            self.write(self.spelled(*spelling))
            columns = ["--group", "treatment", "--value", "height cm"] if header else ["--no-header", "--group", "2", "--value", "3"]
            document = json.loads(run(["anova", "--json", *columns, self.path]))
            titles = document["table"].pop("x"), document["table"].pop("y")
            self.assertEqual(titles, ("treatment", "height cm") if header else ("column 2", "column 3"))
            results[(*spelling, again)] = (run(["anova", *columns, self.path]), document)
        self.assertEqual(len(results), 40)
        (report, document), *others = results.values()
        self.assertIn('group 2: twice "daily"\n', report)
        self.assertIn("group 5: two\\x0alines\n", report)
        self.assertEqual(document["result"]["totalObservations"], 11)
        for spelling, result in results.items():
            self.assertEqual(result, (report, document), spelling)


class AgainstCsvModule(InFolder):
    texts = ["ctrl", "a b", "x", 'say "no"', '"', "1,5", ";", "|", "two\nlines", "two\r\nlines", "é", "Ω 1", "#3", "<<", "'", "\\", "=1+1", "N",
             " a b", "x ", "  x"]

    @staticmethod
    def shown(text):
        return text.replace("\n", "\\x0a").replace("\r", "\\r")

    def test_labels_and_numbers(self):
        chance = random.Random(14)
        for trial in range(150):
            separator = chance.choice(",;\t|")
            quoting = chance.choice([csv.QUOTE_MINIMAL, csv.QUOTE_ALL, csv.QUOTE_NONNUMERIC])
            line_end = chance.choice(["\n", "\r\n"])
            rows = [["label", "other", "value"]]
            for _ in range(chance.randint(4, 40)):
                number = chance.choice([chance.randint(-99, 99), chance.uniform(-1, 1), chance.gauss(0, 1e9), chance.uniform(0, 1e-9)])
                rows.append([chance.choice(self.texts), chance.choice(self.texts), number])
            text = text_of(rows, separator, quoting, line_end)
            self.write(text)
            read = list(csv.reader(io.StringIO(text, newline=""), delimiter=separator))
            groups = {}
            for label, _, value in read[1:]:
                if quoting == csv.QUOTE_MINIMAL:  # which leaves blanks without quotes
                    label = label.strip(" ")
                groups.setdefault(label, []).append(float(value))
            columns = ["--separator", separator, "--group", "label", "--value", "value"]
            report = run(["anova", *columns, self.path])
            key = [f"group {number}: {self.shown(label)}" for number, label in enumerate(groups, 1)]
            self.assertEqual([line for line in report.split("\n") if line.startswith("group ")], key, (trial, text))
            document = json.loads(run(["anova", "--json", *OBSERVATIONS, *columns, self.path]))
            self.assertEqual(document["table"], {"x": "label", "y": "value", "item": "group", "labels": list(groups)}, (trial, text))
            found = [group["observations"] for group in document["result"]["groups"]]
            self.assertEqual(found, list(groups.values()), (trial, text))


# How the fields of expected.csv are called in the documents of --json, where they are called otherwise.
COMMANDS = {
    "BasicStatistics": ["describe"], "BasicXyStatistics": ["pairs"], "Correlation": ["correlate"],
    "LinearRegression": ["regress", "--model", "linear"], "LogarithmicRegression": ["regress", "--model", "logarithmic"],
    "ExponentialRegression": ["regress", "--model", "exponential"], "PowerRegression": ["regress", "--model", "power"],
    "SingleAnova": ["anova"], "LinearRegressionMultiY": ["multiy"], "GoodnessOfFit": ["fit"], "KolmogorovSmirnov2": ["ks"],
    "TwoSamples": ["variances"], "Frequency": ["frequency"], "Circular": ["circular"],
}
COLUMNS = {
    "values": ["--column", "value"], "pairs": ["--x", "x (first)", "--y", "y"], "groups": ["--group", "group", "--value", "value"],
    "series": ["--x", "x", "--y", "y", "--count", "n"], "fit": ["--observed", "first", "--expected", "second"],
    "ks": ["--class", "class", "--count1", "first", "--count2", "second"],
}
HEADERS = {"values": ["row", "value"], "pairs": ["x (first)", "y"], "groups": ["group", "value"], "series": ["x", "y", "n"],
           "classes": ["class", "first", "second"], "angles": ["angle", "n"]}
# What a report shows as n/a, though the record holds it: null in the documents.
NOT_SHOWN = {
    ("BasicStatistics", "geoMean"): "geometric mean  : n/a",
    ("Correlation", "confidenceLimits.lower"): "lower limit                : n/a",
    ("Correlation", "confidenceLimits.upper"): "upper limit                : n/a",
}
MULTI_Y_ANOVA = {"groupCount", "totalObservations", "grandTotal", "among", "within", "total"}


def options_of(analysis, text):
    """The options of expected.csv as wqstat has them."""
    words = []
    for option in text.split():
        name, value = option.split("=")
        if name == "mu0":
            words += ["--mu", value]
        elif name in ("head", "tail", "bins", "bin0"):
            words += ["--" + name, value]
        elif name == "yates" and value == "1":
            words += ["--yates"]
        elif name == "williams" and value == "0":
            words += ["--no-williams"]
        elif name == "autoClassWidth" and value != "0":
            words += ["--classes", value]
        elif name == "type":
            words += ["--unit", {"DEGREES": "degrees", "RADIANS": "radians", "BIN_NUMBERS": "bins"}[value]]
        elif name not in ("yates", "williams", "autoClassWidth"):
            raise ValueError(f"{analysis}: {option}")
    return words


def native_rows(path):
    """The fields of a data file, line by line; a missing repeat count is the last one."""
    rows = []
    with open(path, encoding="utf-8") as file:
        for line in file:
            if "#" in line or not line.strip():
                continue
            for separator in ":|":
                line = line.replace(separator, ";")
            rows.append([field.strip() for field in line.strip().split(";") if field.strip()])
    return rows


def as_table(kind, path):
    """The rows of a data file as a table with a header, texts in place of group numbers and counted classes."""
    rows = native_rows(path)
    if kind == "values":
        rows = [[f"row {number}", *row] for number, row in enumerate(rows, 1)]
    elif kind == "groups":
        rows = [[f"group no. {float(row[0]):g}", row[1]] for row in rows]
    elif kind == "classes":
        rows = [[f"class {number}, {chr(96 + number)}", *row] for number, row in enumerate(rows, 1)]
    elif kind == "series":
        for previous, row in zip([None] + rows, rows):
            if len(row) == 2:
                row.append(previous[2])
    return text_of([HEADERS[kind]] + rows, ",")


def pointer_of(analysis, field):
    """The path of a field in a document."""
    path = field.replace("[", ".").replace("]", "").split(".")
    if analysis == "LinearRegressionMultiY" and path[0] in MULTI_Y_ANOVA:
        return ["anova", *path]
    if analysis == "Correlation" and path == ["n"]:
        return ["xy", "n"]
    if analysis == "BasicXyStatistics" and path == ["x", "n"]:
        return ["n"]
    if path[0] == "cumulative":
        return ["cumulativeFrequencies", path[1], {"first": "F1", "second": "F2"}[path[2]]]
    return path


class RealData(InFolder):
    def document(self, file, file2, analysis, options):
        kind = file.split("/")[0]
        self.write(as_table(kind, os.path.join(DATA, file)))
        files = [self.path]
        if file2:
            files.append(self.path + "2")
            with open(files[1], "w", encoding="utf-8") as second:
                second.write(as_table(kind, os.path.join(DATA, file2)))
        columns = {"GoodnessOfFit": COLUMNS["fit"], "KolmogorovSmirnov2": COLUMNS["ks"]}.get(analysis) or COLUMNS.get(kind)
        if kind == "angles":
            grouped = any(float(row[1]) != 0 for row in native_rows(os.path.join(DATA, file)))
            columns = ["--column", "angle"] + (["--count", "n"] if grouped else [])
        command = [*COMMANDS[analysis], *options_of(analysis, options), *columns, *files]
        document = json.loads(run([*command, "--json"]))
        if any(not_shown[0] == analysis for not_shown in NOT_SHOWN):
            document["shown"] = run(command)
        return document

    def value(self, document, analysis, field):
        if analysis == "KolmogorovSmirnov2" and field == "D_TwoSamples":
            return document["report"]["criticalD"]
        if analysis == "Frequency" and field == "classes":
            return document["settings"]["classes"]
        if field == "StudentOfMeans":
            return document["report"]["t"]
        member = document["result"]
        for name in pointer_of(analysis, field):
            member = member[int(name) if isinstance(member, list) else name]
        return None if member is None else float(member)

    def test_expected_figures(self):
        if not DATA:
            self.skipTest("WQ_REFERENCE_DATA names no folder")
        documents = {}
        compared = 0
        with open(os.path.join(DATA, "expected.csv"), encoding="utf-8") as expected:
            for row in csv.DictReader(expected):
                field = row["field"]
                # The textbook's values are not the report's; this mean is no part of a report.
                if row["basis"] == "textbook" or field.startswith("exact.") or field == "geometricMean(all)" or row["digits"] in ("", "0"):
                    continue
                key = (row["file"], row["file2"], row["analysis"], row["options"])
                if key not in documents:
                    documents[key] = self.document(*key)
                found = self.value(documents[key], row["analysis"], field)
                if row["analysis"] == "SingleAnova" and field.endswith(".id"):
                    continue  # the table has labels, numbered by first appearance
                if found is None:  # what the record holds and the report does not show
                    self.assertIn(NOT_SHOWN[row["analysis"], field], documents[key]["shown"].split("\n"))
                    continue
                wanted = float(row["value"])
                tolerance = 10.0 ** -int(row["digits"]) * (abs(wanted) if wanted != 0.0 else 1.0)
                self.assertTrue(math.isclose(found, wanted, rel_tol=0.0, abs_tol=tolerance), f"{key} {field}: {found}, expected {wanted}")
                compared += 1
        self.assertGreater(len(documents), 60)
        self.assertGreater(compared, 1000)


OBSERVATIONS = []

if __name__ == "__main__":
    WQSTAT = sys.argv.pop(1)
    DATA = os.environ.get("WQ_REFERENCE_DATA", "")
    if b"--observations" in subprocess.run([WQSTAT, "anova", "--help"], capture_output=True, check=True).stdout:
        OBSERVATIONS = ["--observations"]
    unittest.main()
