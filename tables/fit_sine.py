#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the coefficients of the polynomial in src/tone/fast_sine.h: an odd one of degree 7 whose largest distance from
the sine on 0..1.6 is as small as can be (E. Remez, 1934), rounded to single precision. Given that header, fails unless
they stand there."""

import math
import pathlib
import struct
import sys

LIMIT = 1.6
POWERS = (1, 3, 5, 7)


def solved(rows):
    """By Gauss and Jordan, with the largest pivot of each column. The last entry of a row is its right side."""
    size = len(rows)
    for i in range(size):
        pivot = max(range(i, size), key=lambda row: abs(rows[row][i]))
        rows[i], rows[pivot] = rows[pivot], rows[i]
        rows[i] = [value / rows[i][i] for value in rows[i]]
        for j in range(size):
            if j != i:
                rows[j] = [a - rows[j][i] * b for a, b in zip(rows[j], rows[i])]
    return [row[-1] for row in rows]


def error(coefficients, r):
    return sum(c * r**power for c, power in zip(coefficients, POWERS)) - math.sin(r)


def extremes(coefficients, steps=20000):
    """The places of the largest error between its changes of sign."""
    found, largest = [], 0.0
    for i in range(1, steps + 1):
        r = LIMIT * i / steps
        here = error(coefficients, r)
        if not found or here * error(coefficients, found[-1]) < 0:
            found.append(r)
            largest = abs(here)
        elif abs(here) > largest:
            found[-1], largest = r, abs(here)
    return found


def minimax():
    count = len(POWERS) + 1
    points = [LIMIT * math.sin(math.pi / 2 * (i + 0.5) / count) for i in range(count)]
    for _ in range(20):
        rows = [[r**power for power in POWERS] + [(-1) ** i, math.sin(r)] for i, r in enumerate(points)]
        coefficients = solved(rows)[:-1]
        points = extremes(coefficients)[-count:]
    return coefficients, abs(error(coefficients, points[0]))


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def main(header=None):
    exact, bound = minimax()
    lines = [f"kC{power} = {single(coefficient):.17g}F;" for power, coefficient in zip(POWERS, exact)]
    print(*lines, f"largest error {bound:.3g}", sep="\n")
    return header is not None and not all(line in pathlib.Path(header).read_text() for line in lines)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
