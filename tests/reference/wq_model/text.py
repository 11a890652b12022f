"""Numbers and lines as reports, listings and R exports print them.

Reports write a number as a C++ stream does: in its default state ('%.6g') or in fixed notation. Exports write what is not finite as R
spells it.
"""

import math


def plain(x):
    """A number as a stream in its default state prints it, six significant digits; every NaN is 'nan', whatever its sign."""
    return "nan" if math.isnan(x) else "%.6g" % x


def fixed(x, k):
    """A number with k digits after the point; every NaN is 'nan'."""
    return "nan" if math.isnan(x) else "%.*f" % (k, x)


def r_number(x, k):
    """A number cell of an export: k digits after the point, and NaN, Inf, -Inf."""
    if math.isnan(x):
        return "NaN"
    if math.isinf(x):
        return "Inf" if x > 0.0 else "-Inf"
    return "%.*f" % (k, x)


cell = r_number


def text_cell(text, separator="\t"):
    """A text cell of an export: in double quotes, inner ones doubled, when R would else take it apart."""
    if any(c in text for c in (separator, '"', "#", "\n", "\r")):
        return '"' + text.replace('"', '""') + '"'
    return text


def comment_lines(comment):
    """The lines that head an export: '# ' before each line of the comment, '#' for an empty one."""
    lines = comment.split("\n")
    if len(lines) > 1 and lines[-1] == "":
        lines.pop()
    return "".join(("# " + line if line else "#") + "\n" for line in lines)


def single_line(n):
    return "-" * n


def double_line(n):
    return "=" * n
