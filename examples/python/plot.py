#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Renders a pattern into an array and plots it as text."""

import ctypes
import sys

import lrasynth

# A vibration that swells for 50 ms and fades until 200 ms, and a tap at 300 ms.
# One record of 17 integers each; lrasynth.h names the fields.
PATTERN = [
    *(4096, 0, 0, 0, 200, 0, 0, 0, 50, 90, 50, 150, 60, 40, 200, 0, 0),
    *(4097, 300, 80, 50, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
]
LIMIT_MS = 10000


def render(library, values):
    """The pattern's samples as signed amplitudes."""
    pattern = (ctypes.c_int32 * len(values))(*values)
    length = library.getLongSignalBufferLength(1, 0, pattern, len(pattern))
    out = (ctypes.c_uint8 * length)()  # zeroed, which is rest
    if library.getLongSignalData(1, 0, pattern, out, len(pattern), LIMIT_MS) != 0:
        raise ValueError("the library refused the pattern")
    return memoryview(out).cast("B").cast("b")


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
    library = lrasynth.load()
    library.setChipType(0)
    library.setMotorType(1040)
    samples = render(library, PATTERN)
    print(f"{len(samples)} samples, {len(samples) * 1000 / lrasynth.data(library, 'SAMPLE_RATE').value:.0f} ms")
    print(*plot(samples), sep="\n")


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError) as error:
        sys.exit(f"{sys.argv[0]}: {error}")
