#!/usr/bin/python3
"""Counts the digits 0 to 9 among the first 1000 decimals of pi and of e and writes examples/data/pi_e_digits.txt."""

import pathlib

from mpmath import e, mp, nstr, pi

DECIMALS = 1000
mp.dps = DECIMALS + 30


def decimals(number):
    return nstr(+number, DECIMALS + 20, strip_zeros=False).split(".")[1][:DECIMALS]


lines = ["# Digits 0 to 9 among the first 1000 decimals of pi;of e. Counted with mpmath."]
lines += [f"{decimals(pi).count(digit)};{decimals(e).count(digit)}" for digit in "0123456789"]
target = pathlib.Path(__file__).resolve().parents[2] / "examples" / "data" / "pi_e_digits.txt"
target.write_text("\n".join(lines) + "\n")
