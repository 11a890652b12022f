#!/usr/bin/python3
"""Checks that what wqstat --json prints keeps to docs/wqstat.schema.json, that the schema refuses what does not, and that it says of
everything that is called a probability, or may be taken for one, what it is one of.

Usage: check_schema.py WQSTAT SCHEMA DATA    DATA: the folder of the example data
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not there")
    sys.exit(77)

WQSTAT, SCHEMA, DATA = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])

# Each analysis with its options, and each with data that leave results undefined.
ORDINARY = [
    "describe --mu 5.5 --head 0.1 --tail 0.1 cavendish.txt",
    "pairs nist_norris.txt",
    "regress --model linear nist_norris.txt",
    "regress --model logarithmic nist_norris.txt",
    "regress --model exponential nist_norris.txt",
    "regress --model power nist_norris.txt",
    "correlate --alpha 0.01 toothgrowth_supp.txt",
    "anova toothgrowth_supp.txt",
    "anova --observations toothgrowth_supp.txt",
    "multiy seedlings.txt",
    "multiy --observations seedlings.txt",
    "fit mendel_peas.txt",
    "fit --yates --no-williams mendel_peas.txt",
    "ks pi_e_digits.txt",
    "variances nist_sirstv_instrument1.txt nist_sirstv_instrument2.txt",
    "frequency --classes 7 cavendish.txt",
    "circular --unit degrees directions.txt",
    "circular --unit bins --bins 360 --bin0 1 --bin-name degree directions.txt",
]
EXTREME = {
    "describe equal.txt": "2\n2\n2\n",
    "describe infinite.txt": "-inf\n1\ninf\n",
    "pairs equal_pairs.txt": "1;1\n1;1\n",
    "regress --model linear vertical.txt": "1;2\n1;5\n",
    "regress --model power one_pair.txt": "1;2\n",
    "correlate two.txt": "1;2\n2;5\n",
    "anova one.txt": "1;2\n",
    "multiy one_series.txt": "1;2;3\n",
    "multiy no_line.txt": "1;2;1\n2;3;1\n1;3;1\n2;2;1\n",
    "fit nothing.txt": "0;0\n",
    "ks one_sample.txt": "3;0\n4;0\n",
    "variances flat.txt flat.txt": "1\n1\n1\n",
    "frequency flat.txt": "1\n1\n1\n",
    "circular one_angle.txt": "1;0\n",
}

def document(arguments, folder, options):
    words = [str(folder / word) if word.endswith(".txt") else word for word in arguments.split()]
    done = subprocess.run([WQSTAT] + words + ["--json"] + options, stdout=subprocess.PIPE, check=True, timeout=60)
    # NaN and Infinity are no JSON, though this parser would take them.
    return json.loads(done.stdout.decode("utf-8"), parse_constant=lambda name: sys.exit(f"{arguments}: {name} is no JSON"))


def members(value, path=()):
    """The path of each member of an object, at any depth; of an array only the first item."""
    if isinstance(value, dict):
        for name, member in value.items():
            yield path + (name,)
            yield from members(member, path + (name,))
    elif isinstance(value, list) and value:
        yield from members(value[0], path + (0,))


def damaged(json_document, path, change):
    copied = copy.deepcopy(json_document)
    place = copied
    for name in path[:-1]:
        place = place[name]
    change(place, path[-1])
    return copied


OPTIONAL = {("textbook", "GAdjusted"), ("textbook", "pTheseSizes"), ("textbook", "criticalDTheseSizes"),
            ("result", "groups", 0, "observations"), ("result", "anova", "groups", 0, "observations")}
DAMAGES = {
    "removed": lambda place, name: place.pop(name),
    "of another type": lambda place, name: place.update({name: "no such value"} if place[name] != "no such value" else {name: 0}),
    "joined by another": lambda place, name: place.update({name + "?": 0}),
}
TEXTS = {("wqstat",), ("comment",), ("hypothesis",), ("settings", "binName")}  # any text will do


def check_arrays(validator):
    """Several analyses are an array of documents, of which each is held against the schema."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "table.txt").write_text("s,v\na,1\nb,2\na,2\nb,4\na,4\nb,7\n", encoding="utf-8")
        for arguments in ["describe --column v --by s table.txt", "describe --column v table.txt table.txt"]:
            found = document(arguments, folder, ["--no-warnings"])
            if len(found) != 2 or ("by" in found[0]) != ("--by" in arguments):
                sys.exit(f"{arguments}: not what was expected")
            for error in validator.iter_errors(found):
                sys.exit(f"{arguments}: {list(error.absolute_path)}: {error.message}")
            for path in members(found[1]):
                if path not in OPTIONAL | {("by",), ("table",), ("table", "x")} and validator.is_valid(
                        [found[0], damaged(found[1], path, DAMAGES["removed"])]):
                    sys.exit(f"{arguments}: {path} removed from the second document is taken for valid")
        if validator.is_valid([]):
            sys.exit("an array without documents is taken for valid")


def check_columns(validator):
    """What columns prints of its own kind; nothing may be left out of it, and nothing else be there."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "table.txt").write_text("n,s,d,m,e,i\n1.5,a,2024-01-05,1,,inf\n2,b,2024-01-06T10:00,x,NA,1\n4,a,2024-02-01,3,,2\n", encoding="utf-8")
        found = document("columns table.txt", folder, [])
        kinds = [column["kind"] for column in found["columns"]]
        if kinds != ["number", "label", "date", "mixed", "empty", "number"]:
            sys.exit(f"columns: {kinds}")
        for error in validator.iter_errors(found):
            sys.exit(f"columns: {list(error.absolute_path)}: {error.message}")
        texts = {("wqstat",), ("columns", 0, "title")}
        # An element may be missing from a list, and be what every list of its kind may hold.
        for path in members(found):
            for what, change in DAMAGES.items():
                if isinstance(path[-1], int) or (what == "of another type" and path in texts):
                    continue
                if validator.is_valid(damaged(found, path, change)):
                    sys.exit(f"columns: {path} {what} is taken for valid")


def undescribed(schema):
    """The members that may be taken for a probability, and the schema does not say of what, nor that they are none."""
    named = re.compile(r"p([A-Z]\w*)?|\w*Probability|\w*[sS]ignificance|\w+Tail|alpha")
    said = re.compile(r"P\(.+\).* if |[Pp]robability of|[Tt]he level|share of all|[Oo]ne minus .* p of")

    def members_of(place, path):
        if isinstance(place, dict):
            for name, member in place.get("properties", {}).items():
                if isinstance(member, dict) and named.fullmatch(name) and "properties" not in member:
                    yield path + (name,), member.get("description", "")
            for name, inner in place.items():
                yield from members_of(inner, path if name == "properties" else path + (name,))

    found = list(members_of(schema["$defs"], ()))
    if len(found) < 30:
        sys.exit(f"only {len(found)} members are called probabilities")
    return [path for path, text in found if not said.search(text)]


def check_descriptions(schema):
    missing = undescribed(schema)
    if missing:
        sys.exit("the schema does not say what these are: " + ", ".join("/".join(path) for path in missing))
    silent = copy.deepcopy(schema)
    del silent["$defs"]["circularDocument"]["properties"]["result"]["properties"]["p"]["description"]
    if len(undescribed(silent)) != 1:
        sys.exit("a p without a description is taken for described")


def main():
    schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
    checker = jsonschema.Draft202012Validator
    checker.check_schema(schema)
    validator = checker(schema)
    check_descriptions(schema)
    check_arrays(validator)
    check_columns(validator)
    checked = refused = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for arguments, text in EXTREME.items():
            (folder / arguments.split()[-1]).write_text(text, encoding="utf-8")
        for arguments, where in [(line, DATA) for line in ORDINARY] + [(line, folder) for line in EXTREME]:
            for options in [["--no-warnings"], ["--no-warnings", "--textbook"]]:
                found = document(arguments, where, options)
                for error in validator.iter_errors(found):
                    sys.exit(f"{arguments}: {list(error.absolute_path)}: {error.message}")
                checked += 1
                if where is folder:
                    continue
                for path in members(found):
                    for what, change in DAMAGES.items():
                        if (what == "removed" and path in OPTIONAL) or (what == "of another type" and path in TEXTS):
                            continue
                        if validator.is_valid(damaged(found, path, change)):
                            sys.exit(f"{arguments}: {path} {what} is taken for valid")
                        refused += 1
    print(f"{checked} documents are valid, {refused} damaged ones are not")


if __name__ == "__main__":
    main()
