#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Renders a pattern and plots it as text."""

import sys

import lrasynth

MOTOR = lrasynth.Profile(motor=lrasynth.MOTOR_1040)
# A vibration that swells for 50 ms and fades until 200 ms, and a tap at 300 ms.
PATTERN = [
    lrasynth.Continuous(0, 200, [(0, 0), (50, 90, 50), (150, 60, 40), (200, 0)]),
    lrasynth.Transient(300, 80, 50),
]


def plot(samples, columns=76, rows=13):
    """Lines of text: the range of the samples of every column."""
    per_column = -(-len(samples) // columns)
    parts = [samples[i : i + per_column] for i in range(0, len(samples), per_column)]
    ranges = [(min(part), max(part)) for part in parts]
    for row in range(rows // 2, -rows // 2, -1):
        middle = row * 256 / rows
        reach = 128 / rows
        yield "".join("#" if low - reach < middle < high + reach else " " for low, high in ranges).rstrip()


def main():
    lrasynth.check(PATTERN, MOTOR)
    samples = memoryview(lrasynth.pattern(PATTERN, MOTOR)).cast("b")
    print(f"{len(samples)} samples, {len(samples) * 1000 / MOTOR.sample_rate:.0f} ms")
    print(*plot(samples), sep="\n")


if __name__ == "__main__":
    try:
        main()
    except lrasynth.Error as error:
        sys.exit(f"{sys.argv[0]}: {error}")
